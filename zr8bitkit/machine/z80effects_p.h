#pragma once

// What the instructions of the Z80 do. Private to the kit.

#include "z80calculations_p.h"

namespace ZR::Z80 {

/// What the opcode says in its bits 5 to 3, 2 to 0, and 5 to 4.
constexpr int yOf(int opcode)
{
    return opcode >> 3 & 7;
}
constexpr int zOf(int opcode)
{
    return opcode & 7;
}
constexpr int pOf(int opcode)
{
    return opcode >> 4 & 3;
}

/// Runs an opcode with the operand bytes, without PC: the chip's target becomes the next instruction's place.
using Effect = void (*)(Chip &c, int opcode, const quint8 *operand);

/// The effects with X in place of HL: HL itself, IX or IY.
template <Pair X>
struct Effects : Calculations
{
    static constexpr Register plain[] = {B, C, D, E, H, L, F, A}; ///< by their numbers, of which 6 is none
    static constexpr Register halves[] = {B, C, D, E, Register(X + 1), Register(X), F, A};
    static constexpr Pair pairs[] = {BC, DE, X, SP};
    static constexpr Pair pushed[] = {BC, DE, X, AF};

    // The registers that an opcode tells, by the letters that forms of operands have for them.
    static Register r(int o) { return plain[yOf(o)]; }
    static Register s(int o) { return plain[zOf(o)]; }
    static Register y(int o) { return halves[yOf(o)]; }
    static Register z(int o) { return halves[zOf(o)]; }
    static Pair p(int o) { return pairs[pOf(o)]; }
    static Pair q(int o) { return pushed[pOf(o)]; }

    /// The address of the operand in memory.
    static int at(Chip &c, const quint8 *operand)
    {
        if constexpr (X == HL)
            return c.get(HL);
        else
            return c.set(WZ, c.get(X) + static_cast<signed char>(operand[0]));
    }

    // clang-format off
    static void nop(Chip &, int, const quint8 *) {}
    static void prefix(Chip &c, int, const quint8 *) { c.last = WasPrefix; c.set(Q, c.lastQ); }
    static void halt(Chip &c, int, const quint8 *) { c.haltedAt = c.fetched ? c.target : c.pc; }
    static void di(Chip &c, int, const quint8 *) { c.set(IFF1, c.set(IFF2, 0)); }
    static void ei(Chip &c, int, const quint8 *)
    {
        c.set(IFF1, c.set(IFF2, 1));
        c.last = EnabledInterrupts;
    }
    static void im(Chip &c, int o, const quint8 *) { c.set(IM, yOf(o) & 2 ? 1 + (yOf(o) & 1) : 0); }

    static void ld(Chip &c, int o, const quint8 *) { c.set(y(o), c.get(z(o))); }
    static void ldByte(Chip &c, int o, const quint8 *m) { c.set(y(o), m[0]); }
    static void ldFrom(Chip &c, int o, const quint8 *m) { c.set(r(o), c.read(at(c, m))); }
    static void ldTo(Chip &c, int o, const quint8 *m) { c.write(at(c, m), c.get(s(o))); }
    static void ldByteTo(Chip &c, int, const quint8 *m) { c.write(at(c, m), m[X == HL ? 0 : 1]); }
    static void ldWord(Chip &c, int o, const quint8 *m) { c.set(p(o), wordOf(m)); }
    static void ldWordFrom(Chip &c, int o, const quint8 *m)
    {
        c.set(p(o), c.word(wordOf(m)));
        c.set(WZ, wordOf(m) + 1);
    }
    static void ldWordTo(Chip &c, int o, const quint8 *m)
    {
        c.setWord(wordOf(m), c.get(p(o)));
        c.set(WZ, wordOf(m) + 1);
    }
    static void loadA(Chip &c, int address) { c.set(A, c.read(address)); c.set(WZ, address + 1); }
    static void storeA(Chip &c, int address)
    {
        c.write(address, c.get(A));
        c.set(WZ, ((address + 1) & ByteMask) | c.get(A) << 8);
    }
    static void ldAFrom(Chip &c, int, const quint8 *m) { loadA(c, wordOf(m)); }
    static void ldATo(Chip &c, int, const quint8 *m) { storeA(c, wordOf(m)); }
    static void ldAFromPair(Chip &c, int o, const quint8 *) { loadA(c, c.get(p(o))); }
    static void ldAToPair(Chip &c, int o, const quint8 *) { storeA(c, c.get(p(o))); }
    static void ldSP(Chip &c, int, const quint8 *) { c.set(SP, c.get(X)); }
    template <Register To> static void ldFromA(Chip &c, int, const quint8 *) { c.set(To, c.get(A)); }
    template <Register From> static void ldToA(Chip &c, int, const quint8 *)
    {
        c.setFlags((flagsOf(c.set(A, c.get(From))) & ~FlagP) | (c.get(IFF2) ? FlagP : 0) | c.flags(FlagC));
        c.last = LoadedIFF2;
    }

    static void push(Chip &c, int o, const quint8 *) { c.push(c.get(q(o))); }
    static void pop(Chip &c, int o, const quint8 *) { c.set(q(o), c.pop()); }
    static void exAF(Chip &c, int, const quint8 *) { c.swap(AF, ShadowAF); }
    static void exDE(Chip &c, int, const quint8 *) { c.swap(DE, HL); }
    static void exx(Chip &c, int, const quint8 *)
    {
        c.swap(BC, ShadowBC);
        c.swap(DE, ShadowDE);
        c.swap(HL, ShadowHL);
    }
    static void exSP(Chip &c, int, const quint8 *)
    {
        const int value = c.pop();
        c.push(c.get(X));
        c.set(WZ, c.set(X, value));
    }

    static void inc(Chip &c, int o, const quint8 *) { c.set(y(o), increased(c, c.get(y(o)))); }
    static void dec(Chip &c, int o, const quint8 *) { c.set(y(o), decreased(c, c.get(y(o)))); }
    static void incAt(Chip &c, int, const quint8 *m)
    {
        const int address = at(c, m);
        c.write(address, increased(c, c.read(address)));
    }
    static void decAt(Chip &c, int, const quint8 *m)
    {
        const int address = at(c, m);
        c.write(address, decreased(c, c.read(address)));
    }
    static void incWord(Chip &c, int o, const quint8 *) { c.set(p(o), c.get(p(o)) + 1); }
    static void decWord(Chip &c, int o, const quint8 *) { c.set(p(o), c.get(p(o)) - 1); }
    static void alu(Chip &c, int o, const quint8 *) { calculate(c, yOf(o), c.get(z(o))); }
    static void aluAt(Chip &c, int o, const quint8 *m) { calculate(c, yOf(o), c.read(at(c, m))); }
    static void aluByte(Chip &c, int o, const quint8 *m) { calculate(c, yOf(o), m[0]); }
    static void adcWord(Chip &c, int o, const quint8 *) { calculateWord<1>(c, c.get(p(o))); }
    static void sbcWord(Chip &c, int o, const quint8 *) { calculateWord<-1>(c, c.get(p(o))); }
    // clang-format on

    static void addWord(Chip &c, int o, const quint8 *)
    {
        const int x = c.get(X);
        const int m = c.get(p(o));
        const int sum = x + m;
        c.set(WZ, x + 1);
        c.set(X, sum);
        c.setFlags(c.flags(FlagS | FlagZ | FlagP) | (sum >> 8 & FlagsXY) | ((x ^ m ^ sum) >> 8 & FlagH) |
                   sum >> 16);
    }

    static void neg(Chip &c, int, const quint8 *)
    {
        const int m = c.get(A);
        c.set(A, 0);
        c.set(A, difference(c, m, 0));
    }

    /// RLCA, RRCA, RLA, RRA, DAA, CPL, SCF and CCF.
    static void accumulator(Chip &c, int o, const quint8 *)
    {
        // clang-format off
        switch (yOf(o)) {
        case 4: return daa(c);
        case 5:
            c.set(A, ~c.get(A));
            return c.setFlags(c.flags(~FlagsXY) | FlagH | FlagN | (c.get(A) & FlagsXY));
        case 6: return changeCarry(c, FlagC);
        case 7: return changeCarry(c, c.flag(FlagC) ? FlagH : FlagC);
        default:
            const int result = shifted(c, yOf(o), c.get(A));
            c.setFlags(c.flags(FlagS | FlagZ | FlagP) | (c.set(A, result) & FlagsXY) | result >> 8);
        }
        // clang-format on
    }

    // clang-format off
    static void rotate(Chip &c, int o, const quint8 *) { c.set(s(o), rotated(c, yOf(o), c.get(s(o)))); }
    static void bit(Chip &c, int o, const quint8 *) { const int m = c.get(s(o)); test(c, yOf(o), m, m); }
    static void res(Chip &c, int o, const quint8 *) { c.set(s(o), c.get(s(o)) & ~(1 << yOf(o))); }
    static void set(Chip &c, int o, const quint8 *) { c.set(s(o), c.get(s(o)) | 1 << yOf(o)); }
    // clang-format on

    static void bitAt(Chip &c, int o, const quint8 *operand)
    {
        const int value = c.read(at(c, operand)); // sets WZ
        test(c, yOf(o), value, c.get(WZ) >> 8);
    }

    /// Writes a byte back, and copies it to the register of the opcode, if there is one.
    static void putBack(Chip &c, int o, int address, int value)
    {
        c.write(address, value);
        if (zOf(o) != 6)
            c.set(s(o), value);
    }
    static void rotateAt(Chip &c, int o, const quint8 *m)
    {
        const int address = at(c, m);
        putBack(c, o, address, rotated(c, yOf(o), c.read(address)));
    }
    static void resAt(Chip &c, int o, const quint8 *m)
    {
        const int address = at(c, m);
        putBack(c, o, address, c.read(address) & ~(1 << yOf(o)));
    }
    static void setAt(Chip &c, int o, const quint8 *m)
    {
        const int address = at(c, m);
        putBack(c, o, address, c.read(address) | 1 << yOf(o));
    }
    /// RLD turns the digits of memory and of the low half of A to the left, RRD to the right.
    static void rotateDigits(Chip &c, int o, const quint8 *)
    {
        const bool left = yOf(o) & 1;
        const int a = c.get(A);
        const int address = c.get(HL);
        const int m = c.read(address);
        c.write(address, left ? m << 4 | (a & 0x0F) : m >> 4 | a << 4);
        c.set(WZ, address + 1);
        c.setFlags(flagsOf(c.set(A, (a & 0xF0) | (left ? m >> 4 : m & 0x0F))) | c.flags(FlagC));
    }

    // clang-format off
    static void jp(Chip &c, int, const quint8 *m) { c.jump(wordOf(m)); }
    static void jpX(Chip &c, int, const quint8 *) { c.target = c.get(X); }
    static void jpIf(Chip &c, int o, const quint8 *m)
    {
        c.set(WZ, wordOf(m));
        if (condition(c, yOf(o)))
            c.target = wordOf(m);
    }
    static void jr(Chip &c, int, const quint8 *m) { c.jump(c.target + static_cast<signed char>(m[0])); }
    static void jrWhen(Chip &c, bool taken, const quint8 *m)
    {
        if (!taken)
            return;
        c.cycles += c.more;
        jr(c, 0, m);
    }
    static void jrIf(Chip &c, int o, const quint8 *m) { jrWhen(c, condition(c, yOf(o) - 4), m); }
    static void djnz(Chip &c, int, const quint8 *m) { jrWhen(c, c.set(B, c.get(B) - 1) != 0, m); }
    static void call(Chip &c, int, const quint8 *m) { c.call(wordOf(m)); }
    static void callIf(Chip &c, int o, const quint8 *m)
    {
        c.set(WZ, wordOf(m));
        if (!condition(c, yOf(o)))
            return;
        c.cycles += c.more;
        c.call(wordOf(m));
    }
    static void rst(Chip &c, int o, const quint8 *) { c.call(yOf(o) * 8); }
    static void ret(Chip &c, int, const quint8 *) { c.jump(c.pop()); }
    static void retIf(Chip &c, int o, const quint8 *)
    {
        if (!condition(c, yOf(o)))
            return;
        c.cycles += c.more;
        c.jump(c.pop());
    }
    static void retn(Chip &c, int, const quint8 *) { c.set(IFF1, c.get(IFF2)); c.jump(c.pop()); }

    static void inA(Chip &c, int, const quint8 *m)
    {
        const int port = m[0] | c.get(A) << 8;
        c.set(A, c.in(port));
        c.set(WZ, port + 1);
    }
    static void outA(Chip &c, int, const quint8 *m)
    {
        c.out(m[0] | c.get(A) << 8, c.get(A));
        c.set(WZ, ((m[0] + 1) & ByteMask) | c.get(A) << 8);
    }
    static int inByte(Chip &c)
    {
        const int value = c.in(c.get(BC));
        c.set(WZ, c.get(BC) + 1);
        c.setFlags(flagsOf(value) | c.flags(FlagC));
        return value;
    }
    static void outByte(Chip &c, int value) { c.out(c.get(BC), value); c.set(WZ, c.get(BC) + 1); }
    static void in(Chip &c, int o, const quint8 *) { c.set(r(o), inByte(c)); }
    static void inFlags(Chip &c, int, const quint8 *) { inByte(c); }
    static void out(Chip &c, int o, const quint8 *) { outByte(c, c.get(r(o))); }
    static void outZero(Chip &c, int, const quint8 *) { outByte(c, 0); }
    // clang-format on

    // Block instructions count up or down by bit 0 of y, and repeat themselves by bit 1.

    static int stepOf(int o) { return yOf(o) & 1 ? -1 : 1; }
    static bool repeats(int o) { return (yOf(o) & 2) != 0; }

    static void copyBlock(Chip &c, int o, const quint8 *)
    {
        const int value = c.read(c.get(HL));
        c.write(c.get(DE), value);
        c.set(HL, c.get(HL) + stepOf(o));
        c.set(DE, c.get(DE) + stepOf(o));
        const bool more = c.set(BC, c.get(BC) - 1) != 0;
        const int sum = value + c.get(A);
        c.setFlags(c.flags(FlagS | FlagZ | FlagC) | (sum & FlagX) | (sum << 4 & FlagY) | (more ? FlagP : 0));
        if (more && repeats(o))
            repeat(c);
    }

    static void compareBlock(Chip &c, int o, const quint8 *)
    {
        const int carry = c.flags(FlagC);
        const int result = difference(c, c.read(c.get(HL)), 0);
        c.set(HL, c.get(HL) + stepOf(o));
        c.set(WZ, c.get(WZ) + stepOf(o));
        const bool more = c.set(BC, c.get(BC) - 1) != 0;
        const int less = (result - (c.flag(FlagH) ? 1 : 0)) & ByteMask;
        c.setFlags(c.flags(FlagS | FlagZ | FlagH | FlagN) | (less & FlagX) | (less << 4 & FlagY) |
                   (more ? FlagP : 0) | carry);
        if (more && !c.flag(FlagZ) && repeats(o))
            repeat(c);
    }

    /// The flags of a transfer between port and memory. The sum is that of the byte and what counts with it.
    static void endTransfer(Chip &c, int o, int value, int sum)
    {
        const int b = c.get(B);
        const int carry = sum > ByteMask ? FlagH | FlagC : 0;
        c.setFlags((flagsOf(b) & ~FlagP) | (value >> 6 & FlagN) | carry | (flagsOf((sum & 7) ^ b) & FlagP));
        if (b != 0 && repeats(o))
            repeatTransfer(c, value);
    }

    static void inBlock(Chip &c, int o, const quint8 *)
    {
        const int value = c.in(c.get(BC));
        c.write(c.get(HL), value);
        c.set(WZ, c.get(BC) + stepOf(o));
        c.set(HL, c.get(HL) + stepOf(o));
        c.set(B, c.get(B) - 1);
        endTransfer(c, o, value, value + ((c.get(C) + stepOf(o)) & ByteMask));
    }

    static void outBlock(Chip &c, int o, const quint8 *)
    {
        const int value = c.read(c.get(HL));
        c.set(B, c.get(B) - 1);
        c.out(c.get(BC), value);
        c.set(WZ, c.get(BC) + stepOf(o));
        c.set(HL, c.get(HL) + stepOf(o));
        endTransfer(c, o, value, value + c.get(L));
    }
};

} // namespace ZR::Z80
