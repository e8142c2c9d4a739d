#include <zr8bitkit/zr8bitdisassembler.h>

#include "mos6510tables_p.h"
#include "z80texts_p.h"
#include "zr8bitdisassembler_p.h"

#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bitrom.h>

#include <utility>

namespace ZR {

namespace {

constexpr int AddressMask = 0xFFFF;

bool isOfSet(const MOS6510::Instruction &instruction, ZR8BitInstructionSet set)
{
    switch (set) {
    case ZR8BitInstructionSet::MOS6510Base:
        return instruction.documented && instruction.mnemonic().title == nullptr;
    case ZR8BitInstructionSet::MOS6510Documented:
        return instruction.documented;
    default:
        break;
    }
    return true;
}

/// The first byte of the operand is the low one.
int operandOf(const MOS6510::Mode &mode, const NextByte &next)
{
    const int low = mode.length > 1 ? next() : 0;
    return mode.length > 2 ? low | next() << 8 : low;
}

DecodedInstruction decodeMOS6510(ZR8BitInstructionSet set, int address, const NextByte &next)
{
    const MOS6510::Instruction &instruction = MOS6510::instructions[next()];
    if (!isOfSet(instruction, set))
        return {};
    const MOS6510::Mode &mode = instruction.mode();
    const int operand = operandOf(mode, next);

    DecodedInstruction decoded;
    decoded.text = QString::fromLatin1(instruction.mnemonic().name);
    QString form = QString::fromLatin1(mode.operand);
    if (form.isEmpty())
        return decoded;
    const auto digits = static_cast<int>(form.count(QLatin1Char('c')));
    const QString placeOfNumber(digits, QLatin1Char('c'));
    if (form == QLatin1String("rr")) {
        decoded.target = (address + mode.length + static_cast<signed char>(operand)) & AddressMask;
        decoded.jumps = true;
        form = QStringLiteral("%1");
    } else if (mode.inMemory) {
        decoded.target = operand;
        decoded.targetDigits = digits;
        // Access is plain for JMP and JSR alone.
        decoded.jumps = form == placeOfNumber && instruction.mnemonic().access == MOS6510::Plain;
        form.replace(placeOfNumber, QLatin1String("%1"));
    } else if (digits > 0) {
        form.replace(placeOfNumber, QLatin1Char('$') + ZRNumbers::hexDigits(operand, digits));
    }
    decoded.text += QLatin1Char(' ') + form;
    return decoded;
}

} // namespace

struct ZR8BitDisassembler::Private
{
    /// The name of a target, or the number.
    QString textOf(int target, int digits) const
    {
        const QString name = names ? names(static_cast<quint16>(target)) : QString();
        return name.isEmpty() ? QLatin1Char('$') + ZRNumbers::hexDigits(target, digits) : name;
    }

    Instruction at(int address) const
    {
        Instruction result;
        result.address = static_cast<quint16>(address);
        result.longest = longest;
        return result;
    }
    Instruction unknown(int address, char opcode) const
    {
        Instruction result = at(address);
        result.bytes += opcode;
        result.text = data + QLatin1String(" $") + ZRNumbers::hexDigits(static_cast<quint8>(opcode), 2);
        return result;
    }

    InstructionDecoder decode;
    QString data = QStringLiteral(".BYTE"); ///< how the set's assemblers write bytes
    int longest = 3;
    Names names;
};

ZR8BitDisassembler::ZR8BitDisassembler(ZR8BitInstructionSet set)
    : _d(std::make_unique<Private>())
{
    if (set == ZR8BitInstructionSet::Z80) {
        _d->decode = Z80::disassemble;
        _d->data = QStringLiteral("DEFB");
        _d->longest = 4;
        return;
    }
    _d->decode = [set](int address, const NextByte &next) { return decodeMOS6510(set, address, next); };
}

ZR8BitDisassembler::~ZR8BitDisassembler() = default;

void ZR8BitDisassembler::setNames(Names names)
{
    _d->names = std::move(names);
}

ZR8BitDisassembler::Instruction ZR8BitDisassembler::instruction(const QByteArray &bytes, int address) const
{
    const auto start = static_cast<quint16>(address);
    if (bytes.isEmpty())
        return _d->at(address);
    const auto byteAt = [&](quint16 at) {
        return static_cast<quint8>(bytes.size() > quint16(at - start) ? bytes[quint16(at - start)] : '\0');
    };
    const Instruction result = instruction(byteAt, start);
    return result.bytes.size() > bytes.size() ? _d->unknown(start, bytes[0]) : result;
}

ZR8BitDisassembler::Instruction ZR8BitDisassembler::instruction(const Reader &read, int address) const
{
    Instruction result = _d->at(address);
    const NextByte next = [&] {
        const quint8 byte = read(static_cast<quint16>(result.address + result.bytes.size()));
        result.bytes += static_cast<char>(byte);
        return byte;
    };
    const DecodedInstruction decoded = _d->decode(result.address, next);
    if (decoded.text.isEmpty())
        return _d->unknown(result.address, result.bytes[0]);
    result.text = decoded.text;
    result.target = decoded.target;
    result.jumps = decoded.jumps;
    if (decoded.target >= 0)
        result.text = decoded.text.arg(_d->textOf(decoded.target, decoded.targetDigits));
    return result;
}

ZR8BitDisassembler::Instruction ZR8BitDisassembler::instruction(ZR8BitROM &memory, int address) const
{
    const auto byteAt = [&](quint16 at) {
        return static_cast<quint8>(at < memory.size() ? memory.byteValue(at) : '\0');
    };
    return instruction(byteAt, address);
}

QList<ZR8BitDisassembler::Instruction> ZR8BitDisassembler::instructions(const QByteArray &bytes,
                                                                        int address) const
{
    QList<Instruction> result;
    for (qsizetype place = 0; place < bytes.size(); place += result.constLast().bytes.size())
        result += instruction(QByteArray::fromRawData(bytes.constData() + place, bytes.size() - place),
                              static_cast<quint16>(address + place));
    return result;
}

QString ZR8BitDisassembler::listingLine(const Instruction &instruction)
{
    const QString bytes = QString::fromLatin1(instruction.bytes.toHex(' ').toUpper());
    return QStringLiteral("%1  %2  %3")
        .arg(ZRNumbers::hexDigits(instruction.address, 4), bytes.leftJustified(3 * instruction.longest - 1),
             instruction.text);
}

} // namespace ZR
