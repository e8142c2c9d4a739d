#pragma once

// How the Z80 runs an instruction and takes an interrupt. Private to the kit.

#include "z80decoder_p.h"

namespace ZR::Z80 {

constexpr int HandlerOfNMI = 0x0066;
constexpr int HandlerOfMode1 = 0x0038;
constexpr int CyclesOfHalt = 4;
constexpr int CyclesOfNMI = 11;
constexpr int CyclesOfMode0 = 2; ///< more than its instruction takes
constexpr int CyclesOfMode1 = 13;
constexpr int CyclesOfMode2 = 19;

/// Runs an instruction at the chip's pc, up to its target.
inline void perform(Chip &c, const Instruction &instruction, int opcode, const quint8 *operand)
{
    c.lastQ = c.get(Q);
    c.set(Q, 0);
    c.last = Other;
    c.cycles += instruction.cycles;
    c.more = instruction.more;
    c.countR(instruction.fetches);
    instruction.effect(c, opcode, operand);
}

inline void takeNMI(Chip &c)
{
    c.cycles += CyclesOfNMI;
    c.countR(1);
    c.call(HandlerOfNMI);
}

inline void takeIRQ(Chip &c)
{
    c.set(IFF2, 0);
    if (c.get(IM) == 0) {
        const std::array<quint8, 4> operand = {c.irqData, c.irqData, c.irqData, c.irqData};
        c.cycles += CyclesOfMode0;
        perform(c, pages[Main][c.irqData], c.irqData, operand.data());
        return;
    }
    c.countR(1);
    if (c.get(IM) == 1) {
        c.cycles += CyclesOfMode1;
        c.call(HandlerOfMode1);
        return;
    }
    c.cycles += CyclesOfMode2;
    c.push(c.target); // before the look-up, which the stack may change
    c.jump(c.word(c.get(I) << 8 | c.irqData));
}

inline void takeInterrupt(Chip &c, bool isNMI)
{
    if (!isNMI && c.last == LoadedIFF2)
        c.set(F, c.flags(~FlagP));
    c.pc = c.target = c.get(PC);
    c.haltedAt = Chip::Nowhere;
    c.last = Other;
    c.set(Q, 0);
    c.set(IFF1, 0);
    if (isNMI)
        takeNMI(c);
    else
        takeIRQ(c);
}

/// Whether an instruction that has left PC as it was will do so for ever: JP and JR.
inline bool isEndless(const Instruction &instruction)
{
    return instruction.line->name[0] == 'J';
}

inline bool isCall(const Instruction &instruction)
{
    const QLatin1String name(instruction.line->name);
    return name == QLatin1String("CALL") || name == QLatin1String("RST");
}

/// Whether it is LDIR or another block instruction that repeats itself.
inline bool repeats(const Decoded &decoded)
{
    return decoded.page == ED && (decoded.opcode & 0xF4) == 0xB0;
}

} // namespace ZR::Z80
