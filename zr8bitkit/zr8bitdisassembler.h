#pragma once

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QString>

#include <array>

namespace ZR {

class ZR8BitProcCommand;
class ZR8BitROM;

/// Writes instructions as assemblers do, from the instruction table of a processor.
///
///     const ZR::ZR8BitDisassembler disassembler(processor->commandList());
///     disassembler.instruction(*memory, 0x200).text; // "ADC $0308,X"
///
/// The last line of a row's description shows its operand: "ADC cccc,X" with cc for a byte and cccc for a
/// word, "BNE rr" for a branch, of which the target is shown. A row that shows none gives its mnemonic alone,
/// an opcode without a row ".BYTE $02". Addresses have 16 bits, and $0000 follows $FFFF.
///
/// Copies what it needs of the table. May be used from any number of threads at once.
class ZR8BITKIT_EXPORT ZR8BitDisassembler
{
public:
    /// An instruction at its address.
    struct Instruction
    {
        int address = 0;  ///< of its first byte
        QByteArray bytes; ///< as many as it is long
        QString text;     ///< as assemblers write it
    };

    /// For the instructions of a table, as a processor's commandList() gives it behind its init().
    explicit ZR8BitDisassembler(const QHash<unsigned char, ZR8BitProcCommand *> &rows);
    ~ZR8BitDisassembler();

    /// The instruction that bytes begin with, to stand at an address. One that is cut is a ".BYTE" of its
    /// opcode; no bytes give no instruction.
    Instruction instruction(const QByteArray &bytes, int address) const;

    /// The instruction at an address of a memory. Bytes beyond the end of a short one are 0, as the processor
    /// reads them, and are no failure of the block.
    Instruction instruction(ZR8BitROM &memory, int address) const;

    /// A line for a listing, as in "0200  7D 08 03  ADC $0308,X".
    static QString listingLine(const Instruction &instruction);

private:
    /// What a row says of its instruction.
    struct Pattern
    {
        int length = 0; ///< in bytes, 0 without a row
        QString text;
    };

    std::array<Pattern, 256> _patterns;
};

} // namespace ZR
