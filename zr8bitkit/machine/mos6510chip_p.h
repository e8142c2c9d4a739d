#pragma once

// The MOS 6510 as its instructions see it: registers, memory and the instruction that runs. Private to the
// kit.

#include "zr8bitchipcore_p.h"

#include <QtCore/QtEndian>

namespace ZR::MOS6510 {

// clang-format off
/// Positions of the registers in their block.
enum Register { AC, XR, YR, SP, PS, PC, PCHigh, RegisterBytes };
enum Flag { FlagC = 0x01, FlagZ = 0x02, FlagI = 0x04, FlagD = 0x08,
            FlagB = 0x10, FlagUnused = 0x20, FlagV = 0x40, FlagN = 0x80 };
enum Vector { VectorNMI = 0xFFFA, VectorReset = 0xFFFC, VectorIRQ = 0xFFFE };
// clang-format on

constexpr int AddressMask = 0xFFFF;
constexpr int PageMask = 0xFF00;
constexpr int ByteMask = 0x00FF;
constexpr int StackPage = 0x0100;
constexpr int UnstableBits = 0xEE; ///< what ANE and LXA find in the accumulator besides its own
constexpr int InChip = -1;         ///< in place of an address: the operand is no byte of the memory

/// The chip and the instruction that runs, as the effects see them. Operations that set a register
/// return what it holds then, so that an effect can be one expression.
struct Chip : ZR8BitChipCore
{
    explicit Chip(ZR8BitRAM *const &mainMemory)
        : ZR8BitChipCore(
              mainMemory,
              {{"AC", AC, 1}, {"XR", XR, 1}, {"YR", YR, 1}, {"SP", SP, 1}, {"PS", PS, 1}, {"PC", PC, 2}})
    {
        addPart("delayed I", delayedI, Set);
        addPart("JAM", jam);
    }

    int get(Register reg) const { return registers[reg]; }
    int set(Register reg, int value) { return registers[reg] = static_cast<quint8>(value); }
    int programCounter() const { return qFromLittleEndian<quint16>(registers + PC); }

    bool flag(Flag flag) const { return (get(PS) & flag) != 0; }
    int carry() const { return flag(FlagC) ? 1 : 0; }
    /// Copies the flags of the mask from bits.
    int setFlags(int mask, int bits) { return set(PS, (get(PS) & ~mask) | (bits & mask)); }
    int setFlag(Flag flag, bool on) { return setFlags(flag, on ? flag : 0); }
    /// Sets N and Z by the low byte of a value, and returns that byte.
    int setNZ(int value)
    {
        const int byte = value & ByteMask;
        setFlags(FlagN | FlagZ, (byte & FlagN) | (byte == 0 ? FlagZ : 0));
        return byte;
    }
    /// Lets interrupts see the flag I as it is now for one more instruction.
    void delayI() { delayedI = flag(FlagI) ? Set : Clear; }
    /// Whether an interrupt would be refused that can be.
    bool refusesIRQ() const { return delayedI == AsStatus ? flag(FlagI) : delayedI == Set; }

    /// The word at an address. Its high byte comes from the same page, as the chip takes it.
    int word(int at) const
    {
        if ((at & ByteMask) != ByteMask)
            return ZR8BitChipCore::word(at);
        const int low = read(at);
        return low | read(at & PageMask) << 8;
    }

    /// Takes an operand that has no address.
    int hold(int operand)
    {
        held = operand;
        return InChip;
    }
    int offset(int from, int distance)
    {
        base = from;
        return (from + distance) & AddressMask;
    }
    /// Whether offset() left the page.
    bool crosses() const { return base != InChip && ((base ^ address) & PageMask) != 0; }
    int operand() const { return address == InChip ? held : read(address); }
    /// Writes to where the operand is.
    void putBack(int value)
    {
        if (address == InChip)
            set(AC, value);
        else
            write(address, value);
    }

    int push(int value)
    {
        write(StackPage | get(SP), value);
        return set(SP, get(SP) - 1);
    }
    int pull() { return read(StackPage | set(SP, get(SP) + 1)); }
    int pushWord(int value)
    {
        push(value >> 8);
        return push(value);
    }
    int pullWord()
    {
        const int low = pull();
        return low | pull() << 8;
    }
    int pushStatus(int b) { return push((get(PS) & ~FlagB) | FlagUnused | b); }
    int pullStatus() { return setFlags(~(FlagB | FlagUnused), pull()); }
    /// Returns the address that the vector holds.
    int interrupt(int returnAddress, int b, Vector vector)
    {
        pushWord(returnAddress);
        pushStatus(b);
        setFlag(FlagI, true);
        return word(vector);
    }

    /// The flag I as interrupts see it.
    enum DelayedI : quint8
    {
        AsStatus,
        Clear,
        Set
    };

    DelayedI delayedI = AsStatus;
    quint8 jam = 0;       ///< the opcode that has stopped the processor until a reset, or 0
    int pc = 0;           ///< where the instruction is
    int target = 0;       ///< where the next one is
    int base = InChip;    ///< the address without the offset; InChip for none
    int address = InChip; ///< the operand's address
    int held = 0;         ///< the operand when it has no address
};

} // namespace ZR::MOS6510
