#pragma once

// How the MOS 6510 fetches and runs an instruction. Private to the kit.

#include "mos6510tables_p.h"

namespace ZR::MOS6510 {

constexpr int AddressSpace = 0x10000;

/// The bytes of the instruction at PC as a number, the opcode being the low one; those after its end are
/// undefined. From a block opcode and first operand byte come by one access, where it has both.
inline int fetch(const Chip &chip)
{
    const int pc = chip.programCounter();
    const bool hasBoth = !chip.bus && pc + 1 < qMin(chip.mainMemory->size(), AddressSpace);
    int bytes = hasBoth ? static_cast<quint16>(chip.mainMemory->wordValue(pc)) : chip.read(pc);
    const int length = instructions[static_cast<quint8>(bytes)].mode().length;
    for (int i = hasBoth ? 2 : 1; i < length; ++i)
        bytes |= chip.read((pc + i) & AddressMask) << 8 * i;
    return bytes;
}

/// The operand bytes of a row as a number.
inline int operandOf(const Instruction &instruction, const char *params)
{
    const int length = instruction.mode().length;
    const int low = length > 1 ? static_cast<quint8>(params[0]) : 0;
    return length > 2 ? low | static_cast<quint8>(params[1]) << 8 : low;
}

/// Runs the instruction at PC, but leaves PC to the caller. The mode takes of the operand as many bytes as it
/// has.
inline void perform(Chip &chip, const Instruction &instruction, int operand)
{
    const Mnemonic &mnemonic = instruction.mnemonic();
    const Mode &mode = instruction.mode();
    chip.setFlag(FlagUnused, true);
    chip.pc = chip.programCounter();
    chip.target = (chip.pc + mode.length) & AddressMask;
    chip.base = InChip;
    chip.address = mode.locate(chip, mode.length > 2 ? operand & AddressMask : operand & ByteMask);
    chip.cycles += static_cast<quint64>(instruction.cycles());
    if (mnemonic.access == Read && chip.crosses())
        ++chip.cycles;

    const bool reads = mnemonic.access == Read || mnemonic.access == Modify;
    const int result = mnemonic.effect(chip, reads ? chip.operand() : 0);
    if (mnemonic.access == Write || mnemonic.access == Modify)
        chip.putBack(result);
}

/// Whether an instruction that has left PC as it was will do so for ever.
inline bool isEndless(const Instruction &instruction, int pc)
{
    const Effect effect = instruction.mnemonic().effect;
    if (effect == Effects::jsr || effect == Effects::brk)
        return pc + 2 < StackPage || pc > (StackPage | ByteMask); // else it may overwrite itself
    return effect == Effects::jmp || instruction.mode().locate == Locations::relative;
}

} // namespace ZR::MOS6510
