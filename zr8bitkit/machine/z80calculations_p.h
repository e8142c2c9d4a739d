#pragma once

// What the instructions of the Z80 calculate, wherever their operands are. Private to the kit.

#include "z80chip_p.h"

namespace ZR::Z80 {

struct Calculations
{
    static int wordOf(const quint8 *operand) { return operand[0] | operand[1] << 8; }

    static bool condition(const Chip &c, int y)
    {
        constexpr Flag flags[] = {FlagZ, FlagC, FlagP, FlagS};
        return c.flag(flags[y >> 1]) == ((y & 1) != 0);
    }

    static void add(Chip &c, int m, int carry)
    {
        const int a = c.get(A);
        const int sum = a + m + carry;
        const int overflow = (a ^ sum) & (m ^ sum) & 0x80;
        c.setFlags((flagsOf(c.set(A, sum)) & ~FlagP) | ((a ^ m ^ sum) & FlagH) | (overflow ? FlagP : 0) |
                   sum >> 8);
    }

    /// Sets the flags of A less m, and returns that.
    static int difference(Chip &c, int m, int carry)
    {
        const int a = c.get(A);
        const int result = a - m - carry;
        const int overflow = (a ^ m) & (a ^ result) & 0x80;
        c.setFlags((flagsOf(result) & ~FlagP) | ((a ^ m ^ result) & FlagH) | (overflow ? FlagP : 0) | FlagN |
                   (result >> 8 & FlagC));
        return result;
    }

    static void logic(Chip &c, int result, int h = 0) { c.setFlags(flagsOf(c.set(A, result)) | h); }

    /// ADD, ADC, SUB, SBC, AND, XOR, OR and CP.
    static void calculate(Chip &c, int y, int m)
    {
        // clang-format off
        switch (y) {
        case 0: return add(c, m, 0);
        case 1: return add(c, m, c.flags(FlagC));
        case 2: c.set(A, difference(c, m, 0)); return;
        case 3: c.set(A, difference(c, m, c.flags(FlagC))); return;
        case 4: return logic(c, c.get(A) & m, FlagH);
        case 5: return logic(c, c.get(A) ^ m);
        case 6: return logic(c, c.get(A) | m);
        default:
            difference(c, m, 0);
            c.setFlags(c.flags(~FlagsXY) | (m & FlagsXY));
        }
        // clang-format on
    }

    static int increased(Chip &c, int m)
    {
        const int result = (m + 1) & ByteMask;
        c.setFlags((flagsOf(result) & ~FlagP) | ((result & 0x0F) == 0 ? FlagH : 0) |
                   (result == 0x80 ? FlagP : 0) | c.flags(FlagC));
        return result;
    }

    static int decreased(Chip &c, int m)
    {
        const int result = (m - 1) & ByteMask;
        c.setFlags((flagsOf(result) & ~FlagP) | ((m & 0x0F) == 0 ? FlagH : 0) | (m == 0x80 ? FlagP : 0) |
                   FlagN | c.flags(FlagC));
        return result;
    }

    /// RLC, RRC, RL, RR, SLA, SRA, SLL and SRL: the result, with the bit that was shifted out as bit 8.
    static int shifted(const Chip &c, int y, int m)
    {
        const int carry = c.flags(FlagC);
        const int out = (y & 1 ? m : m >> 7) << 8 & 0x100;
        // clang-format off
        switch (y) {
        case 0: return out | (m << 1 & ByteMask) | m >> 7;
        case 1: return out | m >> 1 | (m << 7 & ByteMask);
        case 2: return out | (m << 1 & ByteMask) | carry;
        case 3: return out | m >> 1 | carry << 7;
        case 4: return out | (m << 1 & ByteMask);
        case 5: return out | m >> 1 | (m & 0x80);
        case 6: return out | (m << 1 & ByteMask) | 1;
        default: return out | m >> 1;
        }
        // clang-format on
    }

    static int rotated(Chip &c, int y, int m)
    {
        const int result = shifted(c, y, m);
        c.setFlags(flagsOf(result) | result >> 8);
        return result & ByteMask;
    }

    /// Tests a bit. X and Y are those of another byte.
    static void test(Chip &c, int bit, int m, int xy)
    {
        const int tested = m & 1 << bit;
        c.setFlags((tested & FlagS) | (tested == 0 ? FlagZ | FlagP : 0) | FlagH | (xy & FlagsXY) |
                   c.flags(FlagC));
    }

    static void daa(Chip &c)
    {
        const int a = c.get(A);
        const bool leaves = c.flag(FlagC) || a > 0x99;
        const int correction = (c.flag(FlagH) || (a & 0x0F) > 9 ? 0x06 : 0) | (leaves ? 0x60 : 0);
        const int result = c.set(A, c.flag(FlagN) ? a - correction : a + correction);
        c.setFlags(flagsOf(result) | c.flags(FlagN) | ((a ^ result) & FlagH) | (leaves ? FlagC : 0));
    }

    /// The Y and X of SCF and CCF come from A alone when the instruction before has set the flags.
    static void changeCarry(Chip &c, int flags)
    {
        c.setFlags(c.flags(FlagS | FlagZ | FlagP) | (((c.lastQ ^ c.get(F)) | c.get(A)) & FlagsXY) | flags);
    }

    /// ADC and SBC of words, told apart by the sign.
    template <int Sign>
    static void calculateWord(Chip &c, int m)
    {
        const int hl = c.get(HL);
        const int result = hl + Sign * (m + c.flags(FlagC));
        const int overflow = (hl ^ result) & (Sign > 0 ? m ^ result : hl ^ m) & 0x8000;
        c.set(WZ, hl + 1);
        c.set(HL, result);
        c.setFlags((result >> 8 & (FlagS | FlagsXY)) | (c.get(HL) == 0 ? FlagZ : 0) |
                   ((hl ^ m ^ result) >> 8 & FlagH) | (overflow ? FlagP : 0) | (Sign < 0 ? FlagN : 0) |
                   (result >> 16 & FlagC));
    }

    /// The instruction runs once more. While it is left to, the flags Y and X show where it stands.
    static void repeat(Chip &c)
    {
        c.cycles += c.more;
        c.target = c.pc;
        c.set(WZ, c.pc + 1);
        c.setFlags(c.flags(~FlagsXY) | (c.pc >> 8 & FlagsXY));
    }

    /// The same for a transfer between port and memory, where P and H show how B goes on.
    static void repeatTransfer(Chip &c, int value)
    {
        const int b = c.get(B);
        const bool falls = value & 0x80;
        int flags = c.get(F);
        int next = b;
        if (flags & FlagC) {
            next = falls ? b - 1 : b + 1;
            flags = (flags & ~FlagH) | ((b & 0x0F) == (falls ? 0x00 : 0x0F) ? FlagH : 0);
        }
        if (!(flagsOf(next & 7) & FlagP))
            flags ^= FlagP;
        c.setFlags(flags);
        repeat(c);
    }
};

} // namespace ZR::Z80
