#pragma once

// The Z80 as plain numbers, written from what is known of the NMOS chip and apart from the kit's processor,
// which fuzzers run beside it. A prefix that another one makes void is a step of its own.

#include "z80parts.h"

#include <utility>

class Z80Model : public Z80Parts
{
public:
    bool irq = false;   ///< the line, a level
    int irqData = 0xFF; ///< what a device puts on the bus for it
    bool nmi = false;   ///< an edge that waits to be taken
    static constexpr bool isJammed = false;

    /// Takes an interrupt where there is one, and runs an instruction or a void prefix. Returns its length.
    int step()
    {
        if (nmi && !isPrefixed)
            interrupt(true);
        else if (irq && acceptsIRQ())
            interrupt(false);
        isShielded = isPrefixed = isFlagLoaded = false;
        length = 0;
        newQ = 0;
        if (isHalted) {
            countR();
            cycles += 4;
            length = 1;
        } else {
            run();
        }
        q = newQ;
        return length;
    }

    bool acceptsIRQ() const { return iff1 != 0 && !isShielded; }

    void reset()
    {
        pc = i = r = im = 0;
        iff1 = iff2 = 0;
        isHalted = nmi = isShielded = isPrefixed = isFlagLoaded = false;
        q = 0;
        sp = 0xFFFF;
        a = f = 0xFF;
    }

private:
    // clang-format off

    bool isShielded = false;   ///< from an IRQ: after EI and a void prefix
    bool isPrefixed = false;   ///< after a void prefix an NMI waits, too
    bool isFlagLoaded = false; ///< LD A,I has just put IFF2 into P, which an interrupt spoils

    void run()
    {
        // The least T states of the first and the last quarter of the opcodes.
        static constexpr uint8_t times[2][64] = {
            {4, 10, 7, 6, 4, 4, 7, 4, 4, 11, 7, 6, 4, 4, 7, 4, 8, 10, 7, 6, 4, 4, 7, 4, 7, 11, 7, 6, 4, 4, 7, 4,
             7, 10, 16, 6, 4, 4, 7, 4, 7, 11, 16, 6, 4, 4, 7, 4, 7, 10, 13, 6, 11, 11, 10, 4, 7, 11, 13, 6, 4, 4, 7, 4},
            {5, 10, 10, 10, 10, 11, 7, 11, 5, 10, 10, 8, 10, 10, 7, 11, 5, 10, 10, 11, 10, 11, 7, 11, 5, 4, 10, 11, 10, 4, 7, 11,
             5, 10, 10, 19, 10, 11, 7, 11, 5, 4, 10, 4, 10, 8, 7, 11, 5, 10, 10, 4, 10, 11, 7, 11, 5, 6, 10, 4, 10, 4, 7, 11}};
        prefix = 0;
        int opcode = fetchOpcode();
        if (opcode == 0xDD || opcode == 0xFD) {
            cycles += 4;
            const int next = byte(pc);
            isShielded = isPrefixed = next == 0xDD || next == 0xFD || next == 0xED;
            if (isPrefixed) {
                newQ = q;
                return;
            }
            prefix = opcode;
            opcode = fetchOpcode();
        }
        const int x = opcode >> 6, y = opcode >> 3 & 7, z = opcode & 7;
        if (x == 1 || x == 2)
            cycles += (z == 6) != (x == 1 && y == 6) ? 7 : 4;
        else
            cycles += times[x / 3][opcode & 63];
        switch (x) {
        case 0: runLow(y, z); break;
        case 1: load(y, z); break;
        case 2: combine(y, z == 6 ? byte(place()) : reg(z)); break;
        default: runHigh(y, z);
        }
    }

    /// 0x00 to 0x3F.
    void runLow(int y, int z)
    {
        const int p = y >> 1;
        const bool isOdd = y & 1;
        const int address = (z >= 4 && z <= 6 && y == 6) ? place(z == 6 ? 5 : 8) : -1;
        const auto store = [&](int value) { address < 0 ? void(reg(y) = value) : write(address, value); };
        const int old = address < 0 ? reg(y) : byte(address);
        switch (z) {
        case 0: runRelative(y); break;
        case 1: isOdd ? addToPair(pairOrSP(p)) : setPairOrSP(p, fetchWord()); break;
        case 2: loadIndirect(y); break;
        case 3: setPairOrSP(p, pairOrSP(p) + (isOdd ? -1 : 1)); break;
        case 4: store(increment(old, 1)); break;
        case 5: store(increment(old, -1)); break;
        case 6: store(fetch()); break;
        default: runAccumulator(y);
        }
    }

    /// NOP, EX AF, DJNZ, JR.
    void runRelative(int y)
    {
        if (y == 1)
            exchange(3, otherAF);
        if (y < 2)
            return;
        if (y == 2)
            b = (b - 1) & 0xFF;
        const int offset = fetchOffset();
        if (y == 2 ? b != 0 : y == 3 || condition(y - 4)) {
            cycles += 5;
            jump(pc + offset);
        }
    }

    void loadIndirect(int y)
    {
        const int address = y < 4 ? pair(y >> 1) : fetchWord();
        wz = (address + 1) & 0xFFFF;
        switch (y) {
        case 0: case 2: case 6: write(address, a); wz = wordOf(a, wz & 0xFF); break;
        case 4: writeWord(address, pair(2)); break;
        case 5: setPair(2, word(address)); break;
        default: a = byte(address);
        }
    }

    /// The operations of one byte on the accumulator and the carry.
    void runAccumulator(int y)
    {
        const int kept = f & (S | Z | P);
        const int seen = ((q ^ f) | a) & (Y | X);
        switch (y) {
        case 4: adjust(); break;
        case 5: a ^= 0xFF; setFlags(kept | (f & C) | H | N | (a & (Y | X))); break; // CPL
        case 6: setFlags(kept | seen | C); break; // SCF
        case 7: setFlags(kept | seen | (f & C ? H : C)); break; // CCF
        default: a = shift(y, a); setFlags(kept | (a & (Y | X)) | (f & C));
        }
    }

    /// LD r,r, and HALT. H and L are those of HL beside (IX+d).
    void load(int y, int z)
    {
        isHalted = y == 6 && z == 6;
        if (isHalted)
            return;
        const int address = y == 6 || z == 6 ? place() : -1;
        prefix = address < 0 ? prefix : 0;
        if (y == 6)
            write(address, reg(z));
        else
            reg(y) = z == 6 ? byte(address) : reg(z);
    }

    /// 0xC0 to 0xFF.
    void runHigh(int y, int z)
    {
        const int p = y >> 1;
        const bool isOdd = y & 1;
        switch (z) {
        case 0: if (condition(y)) { cycles += 6; jump(pop()); } break; // RET
        case 1: isOdd ? runReturn(p) : setPair(p, pop()); break;
        case 2: wz = fetchWord(); pc = condition(y) ? wz : pc; break; // JP
        case 3: runMixed(y); break;
        case 4: callIf(condition(y)); break;
        case 5: !isOdd ? push(pair(p)) : y == 1 ? callIf(true) : runExtended(fetchOpcode()); break;
        case 6: combine(y, fetch()); break;
        default: call(8 * y); // RST
        }
    }

    void callIf(bool taken)
    {
        wz = fetchWord();
        if (taken) {
            cycles += 7;
            call(wz);
        }
    }

    /// RET, EXX, JP (HL), LD SP,HL.
    void runReturn(int p)
    {
        switch (p) {
        case 0: jump(pop()); break;
        case 1: prefix = 0; exchange(0, otherBC); exchange(1, otherDE); exchange(2, otherHL); break;
        case 2: pc = pair(2); break;
        default: sp = pair(2);
        }
    }

    void runMixed(int y)
    {
        const int port = y == 2 || y == 3 ? wordOf(a, fetch()) : 0;
        switch (y) {
        case 0: jump(fetchWord()); break;
        case 1: runBits(); break;
        case 2: out(port, a); wz = wordOf(a, (port + 1) & 0xFF); break;
        case 3: a = in(port); wz = (port + 1) & 0xFFFF; break;
        case 4: wz = word(sp); writeWord(sp, pair(2)); setPair(2, wz); break; // EX (SP),HL
        case 5: std::swap(d, h); std::swap(e, l); break; // EX DE,HL
        default: isShielded = y == 7; iff1 = iff2 = isShielded; // DI, EI
        }
    }

    /// After 0xCB.
    void runBits()
    {
        const bool isIndexed = prefix != 0;
        const int address = place(4);
        const int opcode = isIndexed ? fetch() : fetchOpcode();
        const int y = opcode >> 3 & 7, z = opcode & 7;
        const bool isMemory = isIndexed || z == 6;
        prefix = 0;
        const int value = isMemory ? byte(address) : reg(z);
        int result = value;
        switch (opcode >> 6) {
        case 0: result = shift(y, value); break;
        case 1: {
            const int bit = value & 1 << y;
            const int seen = isMemory ? wz >> 8 : value;
            cycles += isMemory ? 4 : 0;
            setFlags((f & C) | H | (bit & S) | on(bit == 0, Z | P) | (seen & (Y | X)));
            return;
        }
        case 2: result = value & ~(1 << y); break;
        default: result = value | 1 << y;
        }
        if (isMemory) {
            cycles += 7;
            write(address, result);
        }
        if (z != 6)
            reg(z) = result;
    }

    /// After 0xED.
    void runExtended(int opcode)
    {
        const int y = opcode >> 3 & 7, z = opcode & 7, p = y >> 1;
        const bool isOdd = y & 1;
        if ((opcode & 0xE4) == 0xA0)
            runBlock(y, z);
        if (opcode >> 6 != 1)
            return;
        const int oldBC = pair(0);
        const int address = z == 3 ? fetchWord() : oldBC;
        if (z < 2 || z == 3)
            wz = (address + 1) & 0xFFFF;
        int value = 0;
        switch (z) {
        case 0: // IN
            cycles += 4;
            value = in(address);
            setFlags((f & C) | sign(value) | parity(value));
            if (y != 6)
                reg(y) = value;
            break;
        case 1: cycles += 4; out(address, y == 6 ? 0 : reg(y)); break;
        case 2: cycles += 7; addWithCarry(pairOrSP(p), isOdd); break;
        case 3: cycles += 12; isOdd ? setPairOrSP(p, word(address)) : writeWord(address, pairOrSP(p)); break;
        case 4: a = subtract(0, a, 0); break; // NEG
        case 5: cycles += 6; iff1 = iff2; jump(pop()); break; // RETN, RETI
        case 6: im = (y & 2) == 0 ? 0 : isOdd ? 2 : 1; break;
        default: runSpecial(y);
        }
    }

    void runSpecial(int y)
    {
        cycles += y < 4 ? 1 : y < 6 ? 10 : 0;
        switch (y) {
        case 0: i = a; break;
        case 1: r = a; break;
        case 2: case 3: a = y == 2 ? i : r; setFlags((f & C) | sign(a) | on(iff2 != 0, P)); isFlagLoaded = true; break;
        case 4: case 5: { // RRD, RLD
            const int all = wordOf(a & 15, byte(pair(2)));
            const int turned = y == 4 ? all >> 4 | (all & 15) << 8 : (all << 4 & 0xFF0) | all >> 8;
            wz = (pair(2) + 1) & 0xFFFF;
            write(pair(2), turned);
            a = (a & 0xF0) | turned >> 8;
            setFlags((f & C) | sign(a) | parity(a));
            break;
        }
        default: break;
        }
    }

    /// LDI and so on, z: load, compare, in, out; y: up, down, and the two that repeat.
    void runBlock(int y, int z)
    {
        const int by = y & 1 ? -1 : 1;
        cycles += 8;
        const bool isAgain = (z < 2 ? copyOrCompare(by, z == 1) : transfer(by, z == 3)) && y >= 6;
        if (!isAgain)
            return;
        cycles += 5;
        pc = (pc - 2) & 0xFFFF;
        wz = (pc + 1) & 0xFFFF;
        setFlags((f & ~(Y | X)) | (pc >> 8 & (Y | X)));
        if (z < 2)
            return;
        if (f & C) { // the count is corrected once more, and its flags are seen
            const int corrected = f & N ? b - 1 : b + 1;
            setFlags((f & ~H) | on((b & 15) == (f & N ? 0 : 15), H));
            setFlags(f ^ P ^ parity(corrected & 7));
        } else {
            setFlags(f ^ P ^ parity(b & 7));
        }
    }

    /// Returns whether there is more to do.
    bool copyOrCompare(int by, bool compares)
    {
        const int value = byte(pair(2));
        int seen = a + value;
        setPair(0, pair(0) - 1);
        if (compares) {
            const int carry = f & C;
            subtract(a, value, 0);
            seen = a - value - (f & H ? 1 : 0);
            setFlags((f & (S | Z | H | N)) | carry);
            wz = (wz + by) & 0xFFFF;
        } else {
            write(pair(1), value);
            setPair(1, pair(1) + by);
            setFlags(f & (S | Z | C));
        }
        setPair(2, pair(2) + by);
        setFlags(f | (seen & X) | on(seen & 2, Y) | on(pair(0) != 0, P));
        return pair(0) != 0 && !(compares && (f & Z));
    }

    bool transfer(int by, bool isOut)
    {
        const int port = pair(0);
        const int value = isOut ? byte(pair(2)) : in(port);
        b = (b - 1) & 0xFF;
        if (isOut)
            out(pair(0), value);
        else
            write(pair(2), value);
        wz = ((isOut ? pair(0) : port) + by) & 0xFFFF;
        setPair(2, pair(2) + by);
        const int sum = value + (isOut ? l : (c + by) & 0xFF);
        setFlags(sign(b) | on(value & 0x80, N) | on(sum > 0xFF, H | C) | parity((sum & 7) ^ b));
        return b != 0;
    }

    void interrupt(bool isNMI)
    {
        if (isNMI) {
            nmi = false;
        } else {
            iff2 = 0;
            f = isFlagLoaded ? f & ~P : f;
        }
        iff1 = q = 0;
        isHalted = false;
        countR();
        cycles += isNMI ? 11 : im == 2 ? 19 : 13;
        push(pc);
        jump(isNMI ? 0x66 : im == 2 ? word(wordOf(i, irqData)) : im == 1 ? 0x38 : irqData & 0x38);
    }
};

/// A register by the id that hosts have for it, and the bits that it can hold.
struct Z80Register
{
    const char *id;
    int Z80Model::*member;
    int bits;
};

// clang-format off
inline constexpr Z80Register z80Registers[] = {
    {"A", &Z80Model::a, 0xFF}, {"F", &Z80Model::f, 0xFF}, {"B", &Z80Model::b, 0xFF}, {"C", &Z80Model::c, 0xFF},
    {"D", &Z80Model::d, 0xFF}, {"E", &Z80Model::e, 0xFF}, {"H", &Z80Model::h, 0xFF}, {"L", &Z80Model::l, 0xFF},
    {"IXH", &Z80Model::ixh, 0xFF}, {"IXL", &Z80Model::ixl, 0xFF}, {"IYH", &Z80Model::iyh, 0xFF},
    {"IYL", &Z80Model::iyl, 0xFF}, {"I", &Z80Model::i, 0xFF}, {"R", &Z80Model::r, 0xFF}, {"Q", &Z80Model::q, 0xFF},
    {"IFF1", &Z80Model::iff1, 1}, {"IFF2", &Z80Model::iff2, 1}, {"IM", &Z80Model::im, 1},
    {"SP", &Z80Model::sp, 0xFFFF}, {"PC", &Z80Model::pc, 0xFFFF}, {"WZ", &Z80Model::wz, 0xFFFF},
    {"AF'", &Z80Model::otherAF, 0xFFFF}, {"BC'", &Z80Model::otherBC, 0xFFFF}, {"DE'", &Z80Model::otherDE, 0xFFFF},
    {"HL'", &Z80Model::otherHL, 0xFFFF}};
// clang-format on
