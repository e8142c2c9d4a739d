#pragma once

// Where the instructions of the MOS 6510 find their operands, and what they do with them. Private to the kit.

#include "mos6510chip_p.h"

namespace ZR::MOS6510 {

/// Gives the operand's address, from the operand bytes as a number.
using Locate = int (*)(Chip &c, int bytes);

// clang-format off
struct Locations
{
    static int implied(Chip &c, int bytes) { return c.hold(bytes); }
    static int accumulator(Chip &c, int) { return c.hold(c.get(AC)); }
    static int direct(Chip &, int bytes) { return bytes; }
    static int indirect(Chip &c, int bytes) { return c.word(bytes); }
    static int relative(Chip &c, int bytes) { return c.offset(c.target, static_cast<signed char>(bytes)); }
    template <Register X> static int zeropage(Chip &c, int bytes) { return (bytes + c.get(X)) & ByteMask; }
    template <Register X> static int absolute(Chip &c, int bytes) { return c.offset(bytes, c.get(X)); }
    static int indexedIndirect(Chip &c, int bytes) { return c.word(zeropage<XR>(c, bytes)); }
    static int indirectIndexed(Chip &c, int bytes) { return absolute<YR>(c, c.word(bytes)); }
};
// clang-format on

/// What a mnemonic does. m is the operand, where the mnemonic reads one; the result is what it writes.
using Effect = int (*)(Chip &c, int m);

struct Effects
{
    /// Two effects, the second one with the result of the first.
    template <Effect First, Effect Second>
    static int both(Chip &c, int m)
    {
        const int result = First(c, m);
        Second(c, result);
        return result;
    }

    /// Gives the flags and the result of a shift, from the bit that it shifts out.
    static int shifted(Chip &c, int result, int out)
    {
        c.setFlag(FlagC, out != 0);
        return c.setNZ(result);
    }

    /// Gives the flags of a comparison, and the difference.
    static int difference(Chip &c, int value, int m)
    {
        c.setFlag(FlagC, value >= m);
        return c.setNZ(value - m);
    }

    // clang-format off
    static int nothing(Chip &, int) { return 0; }
    template <Register R> static int load(Chip &c, int m) { return c.set(R, c.setNZ(m)); }
    template <Register R> static int store(Chip &c, int) { return c.get(R); }
    template <Register R, Register To> static int transfer(Chip &c, int) { return load<To>(c, c.get(R)); }
    static int txs(Chip &c, int) { return c.set(SP, c.get(XR)); }
    template <int Step> static int count(Chip &c, int m) { return c.setNZ(m + Step); }
    template <Register R, int Step> static int count(Chip &c, int) { return load<R>(c, c.get(R) + Step); }
    template <Register R> static int compare(Chip &c, int m) { return difference(c, c.get(R), m); }
    template <Flag F, bool On> static int put(Chip &c, int) { return c.setFlag(F, On); }
    template <bool On> static int putI(Chip &c, int) { c.delayI(); return c.setFlag(FlagI, On); }

    static int andAC(Chip &c, int m) { return load<AC>(c, c.get(AC) & m); }
    static int eor(Chip &c, int m) { return load<AC>(c, c.get(AC) ^ m); }
    static int ora(Chip &c, int m) { return load<AC>(c, c.get(AC) | m); }
    static int asl(Chip &c, int m) { return shifted(c, m << 1, m & 0x80); }
    static int lsr(Chip &c, int m) { return shifted(c, m >> 1, m & 0x01); }
    static int rol(Chip &c, int m) { return shifted(c, m << 1 | c.carry(), m & 0x80); }
    static int ror(Chip &c, int m) { return shifted(c, m >> 1 | c.carry() << 7, m & 0x01); }

    static int pha(Chip &c, int) { return c.push(c.get(AC)); }
    static int php(Chip &c, int) { return c.pushStatus(FlagB); }
    static int pla(Chip &c, int) { return load<AC>(c, c.pull()); }
    static int plp(Chip &c, int) { c.delayI(); return c.pullStatus(); }
    static int jmp(Chip &c, int) { return c.target = c.address; }
    static int rts(Chip &c, int) { return c.target = c.pullWord() + 1; }
    static int rti(Chip &c, int) { c.pullStatus(); return c.target = c.pullWord(); }
    /// The return address skips a byte.
    static int brk(Chip &c, int) { return c.target = c.interrupt(c.pc + 2, FlagB, VectorIRQ); }
    /// Leaves PC where it is. That the processor stops is up to its handler.
    static int jam(Chip &c, int) { return c.target = c.pc; }

    static int sax(Chip &c, int) { return c.get(AC) & c.get(XR); }
    static int anc(Chip &c, int m) { return c.setFlag(FlagC, (andAC(c, m) & FlagN) != 0); }
    static int alr(Chip &c, int m) { return c.set(AC, lsr(c, c.get(AC) & m)); }
    static int sbx(Chip &c, int m) { return c.set(XR, difference(c, sax(c, m), m)); }
    static int lax(Chip &c, int m) { return c.set(XR, load<AC>(c, m)); }
    static int las(Chip &c, int m) { return c.set(SP, lax(c, c.get(SP) & m)); }
    static int ane(Chip &c, int m) { return load<AC>(c, (c.get(AC) | UnstableBits) & c.get(XR) & m); }
    static int lxa(Chip &c, int m) { return lax(c, (c.get(AC) | UnstableBits) & m); }
    // clang-format on

    static int bit(Chip &c, int m)
    {
        return c.setFlags(FlagN | FlagV | FlagZ, (m & (FlagN | FlagV)) | ((c.get(AC) & m) == 0 ? FlagZ : 0));
    }

    /// In decimal mode Z is that of the binary sum, and N and V are those before the high digit is corrected.
    static int adc(Chip &c, int m)
    {
        const int a = c.get(AC);
        const int carry = c.carry();
        const bool decimal = c.flag(FlagD);
        int sum = a + m + carry;
        c.setNZ(sum);
        if (decimal) {
            int low = (a & 0x0F) + (m & 0x0F) + carry;
            if (low > 0x09)
                low = ((low + 0x06) & 0x0F) + 0x10;
            sum = (a & 0xF0) + (m & 0xF0) + low;
            c.setFlags(FlagN, sum);
        }
        c.setFlag(FlagV, (~(a ^ m) & (a ^ sum) & 0x80) != 0);
        if (decimal && sum > 0x9F)
            sum += 0x60;
        c.setFlag(FlagC, sum > ByteMask);
        return c.set(AC, sum);
    }

    /// In decimal mode all flags are those of the binary difference.
    static int sbc(Chip &c, int m)
    {
        const int a = c.get(AC);
        const int borrow = 1 - c.carry();
        int result = a - m - borrow;
        c.setNZ(result);
        c.setFlag(FlagV, ((a ^ m) & (a ^ result) & 0x80) != 0);
        c.setFlag(FlagC, result >= 0);
        if (c.flag(FlagD)) {
            int low = (a & 0x0F) - (m & 0x0F) - borrow;
            if (low < 0)
                low = ((low - 0x06) & 0x0F) - 0x10;
            result = (a & 0xF0) - (m & 0xF0) + low;
            if (result < 0)
                result -= 0x60;
        }
        return c.set(AC, result);
    }

    template <Flag F, bool On>
    static int branch(Chip &c, int)
    {
        if (c.flag(F) != On)
            return 0;
        c.cycles += c.crosses() ? 2 : 1;
        return jmp(c, 0);
    }

    /// The chip pushes before it fetches the high byte of the address, which the push may have changed.
    static int jsr(Chip &c, int)
    {
        const int last = (c.pc + 2) & AddressMask;
        c.pushWord(last);
        return c.target = c.fetched ? (c.address & ByteMask) | c.read(last) << 8 : c.address;
    }

    /// V and C tell what the correction of decimal digits looks at.
    static int arr(Chip &c, int m)
    {
        const int masked = c.get(AC) & m;
        int result = c.setNZ(masked >> 1 | c.carry() << 7);
        c.setFlag(FlagV, ((masked ^ result) & 0x40) != 0);
        c.setFlag(FlagC, (masked & 0x80) != 0);
        if (c.flag(FlagD)) {
            c.setFlag(FlagC, (masked & 0xF0) + (masked & 0x10) > 0x50);
            if ((masked & 0x0F) + (masked & 0x01) > 0x05)
                result = (result & 0xF0) | ((result + 0x06) & 0x0F);
            if (c.flag(FlagC))
                result += 0x60;
        }
        return c.set(AC, result);
    }

    /// Where the index leaves the page, what is written becomes the high byte of the address, too.
    template <Effect Value>
    static int storeAndHigh(Chip &c, int)
    {
        const int value = Value(c, 0) & ((c.base >> 8) + 1);
        if (c.crosses())
            c.address = (c.address & ByteMask) | value << 8;
        return value;
    }

    static int tas(Chip &c, int m)
    {
        c.set(SP, sax(c, m));
        return storeAndHigh<sax>(c, m);
    }
};

} // namespace ZR::MOS6510
