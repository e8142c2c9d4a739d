#pragma once

// The NMOS 6510 as plain numbers, written from what is known of the chip and apart from the kit's processor,
// which tests and fuzzers run beside it. All memory is RAM. Unstable opcodes have $EE as their constant.

#include <array>
#include <cstdint>

class Mos6510Model
{
public:
    std::array<uint8_t, 0x10000> memory{};
    int a = 0, x = 0, y = 0, s = 0, p = 0x20, pc = 0;
    uint64_t cycles = 0;
    bool irq = false;      ///< the line, a level
    bool nmi = false;      ///< an edge that waits to be taken
    bool isJammed = false; ///< until a reset

    /// Takes an interrupt where there is one, and runs an instruction. Returns its length, 0 while jammed.
    int step()
    {
        if (isJammed)
            return 0;
        if (nmi)
            interrupt(0xFFFA);
        else if (irq && acceptsIRQ())
            interrupt(0xFFFE);
        length = 0;
        const int before = p;
        const int opcode = fetch();
        run(opcode);
        p |= Unused;
        isLate = opcode == 0x58 || opcode == 0x78 || opcode == 0x28; // CLI, SEI, PLP
        oldP = before;
        return length;
    }

    bool acceptsIRQ() const { return !((isLate ? oldP : p) & I); }

    void reset()
    {
        s = 0xFD;
        p |= I | Unused;
        pc = word(0xFFFC);
        nmi = isJammed = isLate = false;
    }

private:
    // clang-format off

    static constexpr int C = 0x01, Z = 0x02, I = 0x04, D = 0x08, B = 0x10, Unused = 0x20, V = 0x40, N = 0x80;

    bool isLate = false; ///< an IRQ sees I as it was before the last instruction
    int oldP = 0;        ///< the flags before it
    int length = 0;      ///< bytes of the instruction that were fetched

    int byte(int address) const { return memory[address & 0xFFFF]; }
    int word(int address) const { return byte(address) | byte(address + 1) << 8; }
    int zeroPageWord(int address) const { return byte(address & 0xFF) | byte((address + 1) & 0xFF) << 8; }
    void write(int address, int value) { memory[address & 0xFFFF] = static_cast<uint8_t>(value); }

    int fetch() { const int value = byte(pc); pc = (pc + 1) & 0xFFFF; ++length; return value; }

    int fetchWord() { const int low = fetch(); return low | fetch() << 8; }

    void push(int value) { write(0x100 + s, value); s = (s - 1) & 0xFF; }

    void pushWord(int value) { push(value >> 8); push(value); }

    int pull() { s = (s + 1) & 0xFF; return byte(0x100 + s); }

    int pullWord() { const int low = pull(); return low | pull() << 8; }

    /// The flags from the stack; B is none, and stays as the host has set it.
    void pullFlags() { p = (pull() & ~B) | (p & B) | Unused; }
    void setFlag(int flag, bool on) { p = on ? p | flag : p & ~flag; }

    /// Sets N and Z by a byte, which it returns.
    int test(int value)
    {
        value &= 0xFF;
        setFlag(N, value & 0x80);
        setFlag(Z, value == 0);
        return value;
    }

    /// An interrupt, and BRK, which returns after its second byte.
    void interrupt(int vector, bool isBreak = false)
    {
        nmi = nmi && vector != 0xFFFA;
        pushWord(pc + isBreak);
        push(isBreak ? p | Unused | B : (p | Unused) & ~B);
        p |= I;
        pc = word(vector);
        cycles += 7;
    }

    void add(int m)
    {
        int sum = a + m + (p & C);
        setFlag(Z, (sum & 0xFF) == 0);
        if (p & D) {
            const int low = (a & 15) + (m & 15) + (p & C);
            sum = (a & 0xF0) + (m & 0xF0) + (low > 9 ? ((low + 6) & 15) + 16 : low);
        }
        setFlag(N, sum & 0x80);
        setFlag(V, ~(a ^ m) & (a ^ sum) & 0x80);
        sum += (p & D) && sum >= 0xA0 ? 0x60 : 0;
        setFlag(C, sum > 0xFF);
        a = sum & 0xFF;
    }

    void subtract(int m)
    {
        const int difference = a - m - (~p & C);
        int result = difference;
        if (p & D) {
            const int low = (a & 15) - (m & 15) - (~p & C);
            result = (a & 0xF0) - (m & 0xF0) + (low < 0 ? ((low - 6) & 15) - 16 : low);
            result -= result < 0 ? 0x60 : 0;
        }
        test(difference);
        setFlag(V, (a ^ m) & (a ^ difference) & 0x80);
        setFlag(C, difference >= 0);
        a = result & 0xFF;
    }

    void compare(int reg, int m) { test(reg - m); setFlag(C, reg >= m); }

    void arr(int m)
    {
        const int both = a & m;
        a = test(both >> 1 | (p & C) << 7);
        const bool isBinary = !(p & D);
        setFlag(V, ((isBinary ? a << 1 : both) ^ a) & 0x40);
        setFlag(C, isBinary ? a & 0x40 : (both & 0xF0) + (both & 0x10) > 0x50);
        if (!isBinary && (both & 15) + (both & 1) > 5)
            a = (a & 0xF0) | ((a + 6) & 15);
        if (!isBinary && (p & C))
            a = (a + 0x60) & 0xFF;
    }

    void branch(bool taken)
    {
        const int offset = fetch();
        const int target = (pc + (offset ^ 0x80) - 0x80) & 0xFFFF;
        cycles += !taken ? 2 : (target ^ pc) & 0xFF00 ? 4 : 3;
        pc = taken ? target : pc;
    }

    /// An address and an index; across a page a read takes a cycle more, and all else always.
    int indexed(int base, int index, bool isRead)
    {
        const int address = (base + index) & 0xFFFF;
        cycles += !isRead || ((address ^ base) & 0xFF00);
        return address;
    }

    /// SHA, SHX, SHY and TAS: the page spoils what is stored, which spoils the address across a page.
    void storeSpoiled(int base, int index, int value)
    {
        value &= (base >> 8) + 1;
        const int address = indexed(base, index, false);
        write((address ^ base) & 0xFF00 ? value << 8 | (address & 0xFF) : address, value);
    }

    /// The address of the operand, with the cycles that a read takes.
    int operand(int opcode, bool isRead = true)
    {
        const int index = (opcode & 0xD6) == 0x96 ? y : x; // STX, LDX, and what is made of them
        switch (opcode & 0x1C) {
        case 0x04: cycles += 3; return fetch();
        case 0x0C: cycles += 4; return fetchWord();
        case 0x10: cycles += 5; return indexed(zeroPageWord(fetch()), y, isRead);
        case 0x14: cycles += 4; return (fetch() + index) & 0xFF;
        case 0x18: cycles += 4; return indexed(fetchWord(), y, isRead);
        case 0x1C: cycles += 4; return indexed(fetchWord(), index, isRead);
        default: break;
        }
        if ((opcode & 0x1D) == 0x01) {
            cycles += 6;
            return zeroPageWord(fetch() + x);
        }
        cycles += 2; // immediate
        fetch();
        return pc - 1;
    }

    /// What columns 2 and 3 do in memory, by the row of the opcode.
    int modify(int row, int m)
    {
        const int carry = p & C;
        if (row < 4)
            setFlag(C, m & (row < 2 ? 0x80 : 1));
        switch (row) {
        case 0: return test(m << 1); // ASL
        case 1: return test(m << 1 | carry); // ROL
        case 2: return test(m >> 1); // LSR
        case 3: return test(m >> 1 | carry << 7); // ROR
        case 6: return test(m - 1); // DEC
        default: return test(m + 1); // INC
        }
    }

    /// What columns 1 and 3 do to the accumulator, by the row of the opcode.
    void combine(int row, int m)
    {
        switch (row) {
        case 0: a = test(a | m); break; // ORA
        case 1: a = test(a & m); break; // AND
        case 2: a = test(a ^ m); break; // EOR
        case 3: add(m); break; // ADC
        case 5: a = test(m); break; // LDA
        case 6: compare(a, m); break; // CMP
        default: subtract(m); // SBC
        }
    }

    /// The opcodes that stand alone in the matrix.
    void run(int opcode)
    {
        const int flags[] = {N, V, C, Z};
        const int low = opcode & 0x1F;
        if ((opcode & 0x0D) == 0x08)
            cycles += 2; // one byte; the stack takes more
        switch (opcode) {
        case 0x00: interrupt(0xFFFE, true); break; // BRK
        case 0x08: push(p | B | Unused); cycles += 1; break; // PHP
        case 0x28: pullFlags(); cycles += 2; break; // PLP
        case 0x48: push(a); cycles += 1; break; // PHA
        case 0x68: a = test(pull()); cycles += 2; break; // PLA
        case 0x40: pullFlags(); pc = pullWord(); cycles += 6; break; // RTI
        case 0x60: pc = (pullWord() + 1) & 0xFFFF; cycles += 6; break; // RTS
        case 0x4C: pc = fetchWord(); cycles += 3; break; // JMP
        case 0x6C: { // JMP (word), whose pointer stays in its page
            const int pointer = fetchWord();
            pc = byte(pointer) | byte((pointer & 0xFF00) | ((pointer + 1) & 0xFF)) << 8;
            cycles += 5;
            break;
        }
        case 0x20: { // JSR, which fetches the high byte after it has pushed
            const int lowByte = fetch();
            pushWord(pc);
            pc = lowByte | fetch() << 8;
            cycles += 6;
            break;
        }
        case 0x18: case 0x38: setFlag(C, opcode & 0x20); break;
        case 0x58: case 0x78: setFlag(I, opcode & 0x20); break;
        case 0xD8: case 0xF8: setFlag(D, opcode & 0x20); break;
        case 0xB8: setFlag(V, false); break;
        case 0x88: y = test(y - 1); break; // DEY
        case 0xC8: y = test(y + 1); break; // INY
        case 0xCA: x = test(x - 1); break; // DEX
        case 0xE8: x = test(x + 1); break; // INX
        case 0x8A: a = test(x); break; // TXA
        case 0x98: a = test(y); break; // TYA
        case 0x9A: s = x; break; // TXS
        case 0xA8: y = test(a); break; // TAY
        case 0xAA: x = test(a); break; // TAX
        case 0xBA: x = test(s); break; // TSX
        case 0x0A: case 0x2A: case 0x4A: case 0x6A: a = modify(opcode >> 5, a); break;
        case 0xEA: case 0x1A: case 0x3A: case 0x5A: case 0x7A: case 0xDA: case 0xFA: break; // NOP
        case 0x0B: case 0x2B: combine(1, byte(operand(opcode))); setFlag(C, a & 0x80); break; // ANC
        case 0x4B: a = modify(2, a & byte(operand(opcode))); break; // ALR
        case 0x6B: arr(byte(operand(opcode))); break;
        case 0x8B: a = test((a | 0xEE) & x & byte(operand(opcode))); break; // ANE
        case 0xAB: a = x = test((a | 0xEE) & byte(operand(opcode))); break; // LXA
        case 0xBB: a = x = s = test(s & byte(operand(opcode))); break; // LAS
        case 0xCB: { // SBX
            const int m = byte(operand(opcode));
            compare(a & x, m);
            x = ((a & x) - m) & 0xFF;
            break;
        }
        case 0x93: cycles += 5; storeSpoiled(zeroPageWord(fetch()), y, a & x); break; // SHA
        case 0x9F: cycles += 4; storeSpoiled(fetchWord(), y, a & x); break; // SHA
        case 0x9B: cycles += 4; storeSpoiled(fetchWord(), y, s = a & x); break; // TAS
        case 0x9C: cycles += 4; storeSpoiled(fetchWord(), x, y); break; // SHY
        case 0x9E: cycles += 4; storeSpoiled(fetchWord(), y, x); break; // SHX
        default:
            if (low == 0x10) {
                branch(((p & flags[opcode >> 6]) != 0) == ((opcode & 0x20) != 0));
            } else if (low == 0x12 || (opcode & 0x9F) == 0x02) { // JAM, which leaves PC
                pc = (pc - 1) & 0xFFFF;
                isJammed = true;
                cycles += 2;
            } else {
                runRegular(opcode);
            }
        }
    }

    /// The opcodes that their row and column explain.
    void runRegular(int opcode)
    {
        const int row = opcode >> 5;
        const bool isImmediate = (opcode & 0x14) == 0 && (opcode & 0x1D) != 1;
        const bool isStore = row == 4 && !isImmediate;
        const bool isModified = (opcode & 2) && row != 4 && row != 5 && !isImmediate;
        const int address = operand(opcode, !isStore && !isModified);
        const int m = byte(address);
        if (isModified) {
            cycles += 2;
            const int modified = modify(row, m);
            write(address, modified);
            if (opcode & 1)
                combine(row, modified);
        } else if (isStore) {
            const int stored[] = {y, a, x, a & x};
            write(address, stored[opcode & 3]);
        } else if ((opcode & 1) && row != 4) {
            combine(row, m);
            x = (opcode & 2) && row == 5 ? a : x; // LAX
        } else if (opcode & 2) {
            x = row == 5 ? test(m) : x; // LDX or NOP
        } else if (row == 5) {
            y = test(m); // LDY
        } else if (row >= 6 && !(opcode & 0x10)) {
            compare(row == 6 ? y : x, m);              // CPY, CPX
        } else if (opcode == 0x24 || opcode == 0x2C) { // BIT
            setFlag(Z, (a & m) == 0);
            p = (p & ~(N | V)) | (m & (N | V));
        }
    }
};
