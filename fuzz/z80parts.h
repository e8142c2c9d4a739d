#pragma once

// The registers, the memory and the calculations of the Z80 as plain numbers, for a model of it. All memory
// is RAM.

#include <array>
#include <cstdint>
#include <functional>

class Z80Parts
{
public:
    std::array<uint8_t, 0x10000> memory{};
    std::function<int(int port)> in;
    std::function<void(int port, int value)> out;

    int b = 0, c = 0, d = 0, e = 0, h = 0, l = 0, f = 0xFF, a = 0xFF;
    int ixh = 0, ixl = 0, iyh = 0, iyl = 0;
    int otherBC = 0, otherDE = 0, otherHL = 0, otherAF = 0;
    int sp = 0xFFFF, pc = 0, wz = 0, i = 0, r = 0, im = 0;
    int iff1 = 0, iff2 = 0;
    int q = 0; ///< the flags, when the last instruction has set them
    bool isHalted = false;
    uint64_t cycles = 0;

protected:
    // clang-format off

    static constexpr int C = 0x01, N = 0x02, P = 0x04, X = 0x08, H = 0x10, Y = 0x20, Z = 0x40, S = 0x80;

    int length = 0; ///< bytes of the instruction that were fetched
    int newQ = 0;
    int prefix = 0; ///< 0xDD, 0xFD, or 0

    static int wordOf(int high, int low) { return high << 8 | low; }
    int byte(int address) const { return memory[address & 0xFFFF]; }
    int word(int address) const { return wordOf(byte(address + 1), byte(address)); }
    void write(int address, int value) { memory[address & 0xFFFF] = static_cast<uint8_t>(value); }
    void writeWord(int address, int value) { write(address, value); write(address + 1, value >> 8); }

    void countR() { r = (r & 0x80) | ((r + 1) & 0x7F); }
    int fetch() { const int value = byte(pc); pc = (pc + 1) & 0xFFFF; ++length; return value; }
    int fetchOpcode() { countR(); return fetch(); }
    int fetchWord() { const int low = fetch(); return wordOf(fetch(), low); }
    int fetchOffset() { return (fetch() ^ 0x80) - 0x80; }

    void push(int value)
    {
        sp = (sp - 2) & 0xFFFF;
        write(sp + 1, value >> 8); // the high byte first
        write(sp, value);
    }

    int pop() { sp = (sp + 2) & 0xFFFF; return word(sp - 2); }

    void jump(int address) { pc = wz = address & 0xFFFF; }
    void call(int address) { push(pc); jump(address); }

    // Registers, as the bits of an opcode tell them

    int &reg(int index)
    {
        int *const plain[] = {&b, &c, &d, &e, &h, &l, &f, &a};
        int *const halves[] = {&ixh, &ixl, &iyh, &iyl};
        const bool isHalf = prefix != 0 && (index & 6) == 4;
        return isHalf ? *halves[(prefix == 0xFD ? 2 : 0) + (index & 1)] : *plain[index];
    }

    /// BC, DE, HL or its index register, AF.
    int pair(int index) { return index == 3 ? wordOf(a, f) : wordOf(reg(2 * index), reg(2 * index + 1)); }

    void setPair(int index, int value)
    {
        (index == 3 ? a : reg(2 * index)) = value >> 8 & 0xFF;
        (index == 3 ? f : reg(2 * index + 1)) = value & 0xFF;
    }

    void exchange(int index, int &other)
    {
        const int old = pair(index);
        setPair(index, other);
        other = old;
    }

    int pairOrSP(int index) { return index == 3 ? sp : pair(index); }

    void setPairOrSP(int index, int value)
    {
        if (index == 3)
            sp = value & 0xFFFF;
        else
            setPair(index, value);
    }

    /// The address of (HL), or of (IX+d), which takes longer.
    int place(int longer = 8)
    {
        if (prefix == 0)
            return pair(2);
        cycles += static_cast<unsigned>(longer);
        wz = (pair(2) + fetchOffset()) & 0xFFFF;
        return wz;
    }

    // Flags

    void setFlags(int flags) { newQ = f = flags & 0xFF; }
    static int on(bool condition, int flag) { return condition ? flag : 0; }

    static int parity(int value)
    {
        bool isEven = true;
        for (value &= 0xFF; value != 0; value &= value - 1)
            isEven = !isEven;
        return on(isEven, P);
    }

    /// S, Z, Y and X by a byte.
    static int sign(int value) { return (value & (S | Y | X)) | on((value & 0xFF) == 0, Z); }

    bool condition(int y) const
    {
        const int flags[] = {Z, C, P, S};
        return ((f & flags[y >> 1]) != 0) == ((y & 1) != 0);
    }

    int add(int left, int right, int carry)
    {
        const int sum = left + right + carry;
        setFlags(sign(sum) | ((left ^ right ^ sum) & H) | on(~(left ^ right) & (left ^ sum) & 0x80, P) |
                 on(sum > 0xFF, C));
        return sum & 0xFF;
    }

    int subtract(int left, int right, int carry)
    {
        const int rest = left - right - carry;
        setFlags(sign(rest) | ((left ^ right ^ rest) & H) | on((left ^ right) & (left ^ rest) & 0x80, P) | N |
                 on(rest < 0, C));
        return rest & 0xFF;
    }

    int increment(int value, int by)
    {
        const int carry = f & C;
        const int result = by > 0 ? add(value, 1, 0) : subtract(value, 1, 0);
        setFlags((f & ~C) | carry);
        return result;
    }

    void addToPair(int right)
    {
        const int left = pair(2);
        const int sum = left + right;
        wz = (left + 1) & 0xFFFF;
        setFlags((f & (S | Z | P)) | (sum >> 8 & (Y | X)) | ((left ^ right ^ sum) >> 8 & H) |
                 on(sum > 0xFFFF, C));
        setPair(2, sum);
    }

    /// ADC HL and SBC HL: two bytes, one after the other.
    void addWithCarry(int right, bool isAdd)
    {
        wz = (pair(2) + 1) & 0xFFFF;
        l = isAdd ? add(l, right & 0xFF, f & C) : subtract(l, right & 0xFF, f & C);
        h = isAdd ? add(h, right >> 8, f & C) : subtract(h, right >> 8, f & C);
        setFlags((f & ~Z) | on(h == 0 && l == 0, Z));
    }

    void adjust() // DAA
    {
        int by = (f & H) || (a & 15) > 9 ? 6 : 0;
        const bool carries = (f & C) || a > 0x99;
        by += carries ? 0x60 : 0;
        const int result = (f & N) ? a - by : a + by;
        setFlags(sign(result) | ((a ^ result) & H) | parity(result) | (f & N) | on(carries, C));
        a = result & 0xFF;
    }

    /// The eight operations on the accumulator.
    void combine(int y, int value)
    {
        switch (y) {
        case 0: a = add(a, value, 0); break;
        case 1: a = add(a, value, f & C); break;
        case 2: a = subtract(a, value, 0); break;
        case 3: a = subtract(a, value, f & C); break;
        case 4: a &= value; setFlags(sign(a) | H | parity(a)); break;
        case 5: a ^= value; setFlags(sign(a) | parity(a)); break;
        case 6: a |= value; setFlags(sign(a) | parity(a)); break;
        default: subtract(a, value, 0); setFlags((f & ~(Y | X)) | (value & (Y | X))); // CP
        }
    }

    /// RLC, RRC, RL, RR, SLA, SRA, SLL, SRL.
    int shift(int y, int value)
    {
        const int carry = f & C;
        int result = 0;
        switch (y) {
        case 0: result = value << 1 | value >> 7; break;
        case 1: result = value >> 1 | value << 7; break;
        case 2: result = value << 1 | carry; break;
        case 3: result = value >> 1 | carry << 7; break;
        case 4: result = value << 1; break;
        case 5: result = value >> 1 | (value & 0x80); break;
        case 6: result = value << 1 | 1; break;
        default: result = value >> 1;
        }
        result &= 0xFF;
        setFlags(sign(result) | parity(result) | on(value & (y & 1 ? 1 : 0x80), C));
        return result;
    }
    // clang-format on
};
