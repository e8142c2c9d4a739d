#ifndef ZR8BITDISASSEMBLER_H
#define ZR8BITDISASSEMBLER_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>
#include <memory>

namespace ZR {

class ZR8BitROM;

/// The instructions that a program is made of.
enum class ZR8BitInstructionSet
{
    MOS6510Base,       ///< the nine rows of ZR8BitProcMOS6510: ADC and TAX
    MOS6510Documented, ///< the 151 opcodes of the data sheet
    MOS6510All,        ///< every opcode
    Z80                ///< all pages of the Z80
};

/// Writes instructions as assemblers do.
///
///     const ZR::ZR8BitDisassembler disassembler(ZR::ZR8BitInstructionSet::MOS6510Documented);
///     disassembler.instruction(*memory, 0x200).text; // "ADC $0308,X"
///
/// A branch shows its target, an opcode that the set does not have ".BYTE $02". Instructions that the Z80's
/// data sheet does not have are written as in "DEFB $DD,$2C ; INC IXL", since assemblers do not agree on
/// them, and so are second encodings; a prefix that another one makes void is a DEFB of its own. Addresses
/// have 16 bits, and $0000 follows $FFFF; of an address that is given, the lower 16 bits count. May be used
/// from any number of threads at once, if what was given to setNames() may.
class ZR8BITKIT_EXPORT ZR8BitDisassembler
{
public:
    /// An instruction at its address. May grow at its end.
    struct Instruction
    {
        int address = 0;    ///< of its first byte
        QByteArray bytes;   ///< as many as it is long
        QString text;       ///< as assemblers write it
        int target = -1;    ///< the address in its operand, without an index, or of a branch; -1 for none
        bool jumps = false; ///< whether the program goes on at target, always or at times
        int longest = 3;    ///< how many bytes the longest instruction of the set has
    };

    /// Gives the byte at an address.
    using Reader = std::function<quint8(quint16 address)>;
    /// Gives the name of an address, or an empty text.
    using Names = std::function<QString(quint16 address)>;

    /// For the instructions of a set.
    explicit ZR8BitDisassembler(ZR8BitInstructionSet set);
    ~ZR8BitDisassembler();

    /// Sets who names the targets of instructions in their texts, as in "JSR print". Without names, as at
    /// first, they are numbers.
    void setNames(Names names);

    /// The instruction that bytes begin with, to stand at an address. One that is cut is a ".BYTE" of its
    /// opcode; no bytes give no instruction.
    Instruction instruction(const QByteArray &bytes, int address) const;

    /// The instruction at an address, of which each byte is read once, in order.
    Instruction instruction(const Reader &read, int address) const;

    /// The instruction at an address of a memory. Bytes beyond the end of a short one are 0, as the processor
    /// reads them, and are no failure of the block.
    Instruction instruction(ZR8BitROM &memory, int address) const;

    /// All instructions of bytes, of which the first one stands at an address.
    QList<Instruction> instructions(const QByteArray &bytes, int address) const;

    /// A line for a listing, as in "0200  7D 08 03  ADC $0308,X".
    static QString listingLine(const Instruction &instruction);

private:
    struct Private;

    std::unique_ptr<Private> _d;
};

} // namespace ZR

#endif
