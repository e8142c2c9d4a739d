#pragma once

// The Z80 as its instructions see it: registers, memory, ports and the instruction that runs. Private to the
// kit.

#include "zr8bitchipcore_p.h"

#include <array>

namespace ZR::Z80 {

// clang-format off
/// Positions of the registers in their block. A pair has its low byte first.
enum Register { F, A, C, B, E, D, L, H, IXL, IXH, IYL, IYH, I = 26, R, IFF1, IFF2, IM, Q, RegisterBytes };
enum Pair { AF = F, BC = C, DE = E, HL = L, IX = IXL, IY = IYL, SP = 12, PC = 14, WZ = 16,
            ShadowAF = 18, ShadowBC = 20, ShadowDE = 22, ShadowHL = 24 };
enum Flag { FlagC = 0x01, FlagN = 0x02, FlagP = 0x04, FlagX = 0x08,
            FlagH = 0x10, FlagY = 0x20, FlagZ = 0x40, FlagS = 0x80 };
/// What the instruction that ran last means for an interrupt before the next one.
enum Last : quint8 { Other, EnabledInterrupts, WasPrefix, LoadedIFF2 };
// clang-format on

constexpr int FlagsXY = FlagX | FlagY;
constexpr int ByteMask = 0x00FF;
constexpr int AddressMask = 0xFFFF;

/// The flags S, Z, Y, X and P, as the parity, of each byte.
constexpr std::array<quint8, 256> flagsOfBytes()
{
    std::array<quint8, 256> flags = {};
    for (int value = 0; value <= ByteMask; ++value) {
        int odd = value ^ value >> 4;
        odd ^= odd >> 2;
        odd ^= odd >> 1;
        flags[static_cast<quint8>(value)] = static_cast<quint8>(
            (value & (FlagS | FlagsXY)) | (value == 0 ? FlagZ : 0) | (odd & 1 ? 0 : FlagP));
    }
    return flags;
}

/// The same for the low byte of a value.
inline int flagsOf(int value)
{
    static constexpr std::array<quint8, 256> flags = flagsOfBytes();
    return flags[static_cast<quint8>(value)];
}

/// The chip and the instruction that runs. Operations that set a register return what it holds then.
/// Addresses and ports are cut to 16 bits.
struct Chip : ZR8BitChipCore
{
    explicit Chip(ZR8BitRAM *const &mainMemory)
        : ZR8BitChipCore(
              mainMemory,
              {{"A", A, 1},          {"F", F, 1},          {"B", B, 1},          {"C", C, 1},
               {"D", D, 1},          {"E", E, 1},          {"H", H, 1},          {"L", L, 1},
               {"IXH", IXH, 1},      {"IXL", IXL, 1},      {"IYH", IYH, 1},      {"IYL", IYL, 1},
               {"I", I, 1},          {"R", R, 1},          {"IFF1", IFF1, 1},    {"IFF2", IFF2, 1},
               {"IM", IM, 1},        {"Q", Q, 1},          {"AF", AF, 2},        {"BC", BC, 2},
               {"DE", DE, 2},        {"HL", HL, 2},        {"IX", IX, 2},        {"IY", IY, 2},
               {"SP", SP, 2},        {"WZ", WZ, 2},        {"AF'", ShadowAF, 2}, {"BC'", ShadowBC, 2},
               {"DE'", ShadowDE, 2}, {"HL'", ShadowHL, 2}, {"PC", PC, 2}})
    {
        addPart("IRQ data", irqData);
        parts.push_back({"halted", 1, 1, [this] { return quint64(isHalted()); },
                         [this](quint64 value) { haltedAt = value ? get(PC) : Nowhere; }});
        addPart("last instruction", last, LoadedIFF2);
    }

    int get(Register reg) const { return registers[reg]; }
    int set(Register reg, int value) { return registers[reg] = static_cast<quint8>(value); }
    int get(Pair pair) const { return registers[pair] | registers[pair + 1] << 8; }
    int set(Pair pair, int value)
    {
        registers[pair] = static_cast<quint8>(value);
        registers[pair + 1] = static_cast<quint8>(value >> 8);
        return value & AddressMask;
    }
    void swap(Pair one, Pair other)
    {
        const int value = get(one);
        set(one, get(other));
        set(other, value);
    }

    /// Whether a HALT waits. It does not where the host has moved PC since.
    bool isHalted() const { return haltedAt == get(PC); }
    bool flag(Flag flag) const { return (get(F) & flag) != 0; }
    int flags(int mask) const { return get(F) & mask; }
    /// Sets the flags as a calculation does, which Q remembers.
    void setFlags(int flags) { set(Q, set(F, flags)); }

    int read(int at) const { return ZR8BitChipCore::read(at & AddressMask); }
    void write(int at, int value) const { ZR8BitChipCore::write(at & AddressMask, value); }
    int word(int at) const
    {
        if ((at & AddressMask) != AddressMask)
            return ZR8BitChipCore::word(at & AddressMask);
        const int low = read(at);
        return low | read(at + 1) << 8;
    }
    void setWord(int at, int value) const
    {
        write(at, value);
        write(at + 1, value >> 8);
    }
    void push(int value)
    {
        write(set(SP, get(SP) - 1), value >> 8);
        write(set(SP, get(SP) - 1), value);
    }
    int pop()
    {
        const int value = word(get(SP));
        set(SP, get(SP) + 2);
        return value;
    }

    /// Counts opcodes and prefixes that were fetched. Bit 7 of R stays.
    void countR(int fetches) { set(R, (get(R) & 0x80) | ((get(R) + fetches) & 0x7F)); }
    /// Goes on at an address.
    void jump(int address) { target = set(WZ, address); }
    void call(int address)
    {
        push(target);
        jump(address);
    }

    quint8 irqData = 0xFF;  ///< what the device on IRQ puts on the bus
    int haltedAt = Nowhere; ///< the program counter, where a HALT waits
    Last last = Other;
    int pc = 0;      ///< where the instruction is
    int target = 0;  ///< where the next one is
    quint8 more = 0; ///< T states more, when the instruction jumps or repeats itself
    int lastQ = 0;   ///< Q as the instruction before left it
};

} // namespace ZR::Z80
