#include <zr8bitkit/zr8bitdisassembler.h>

#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bitproccommand.h>
#include <zr8bitlib/zr8bitrom.h>

namespace ZR {

namespace {

constexpr int AddressMask = 0xFFFF;

int byteOf(char value)
{
    return static_cast<unsigned char>(value);
}

/// The form of the instruction as the last line of the row's description shows it, or its mnemonic.
QString patternOf(ZR8BitProcCommand &row)
{
    const QString line = row.desc().section(QLatin1String("<br>"), -1).trimmed();
    return line.startsWith(row.assembly() + QLatin1Char(' ')) ? line : row.assembly();
}

/// Puts the operand into the form of its instruction. Mnemonics are in capitals and keep their letters.
QString filled(QString pattern, const QByteArray &bytes, int address)
{
    if (bytes.size() == 2) {
        const int target = address + 2 + static_cast<signed char>(bytes[1]);
        pattern.replace(QLatin1String("rr"), ZRNumbers::addressText(target & AddressMask));
        pattern.replace(QLatin1String("cc"), QLatin1Char('$') + ZRNumbers::hexDigits(byteOf(bytes[1]), 2));
    } else if (bytes.size() == 3) {
        const int word = byteOf(bytes[1]) | byteOf(bytes[2]) << 8;
        pattern.replace(QLatin1String("cccc"), ZRNumbers::addressText(word));
    }
    return pattern;
}

} // namespace

ZR8BitDisassembler::ZR8BitDisassembler(const QHash<unsigned char, ZR8BitProcCommand *> &rows)
{
    for (const auto &[opcode, row] : rows.asKeyValueRange())
        _patterns[opcode] = {row->length(), patternOf(*row)};
}

ZR8BitDisassembler::~ZR8BitDisassembler() = default;

ZR8BitDisassembler::Instruction ZR8BitDisassembler::instruction(const QByteArray &bytes, int address) const
{
    address &= AddressMask;
    if (bytes.isEmpty())
        return {address, QByteArray(), QString()};
    const int opcode = byteOf(bytes[0]);
    const Pattern &pattern = _patterns[static_cast<size_t>(opcode)];
    if (pattern.length == 0 || pattern.length > bytes.size())
        return {address, bytes.first(1), QStringLiteral(".BYTE $") + ZRNumbers::hexDigits(opcode, 2)};
    const QByteArray own = bytes.first(pattern.length);
    return {address, own, filled(pattern.text, own, address)};
}

ZR8BitDisassembler::Instruction ZR8BitDisassembler::instruction(ZR8BitROM &memory, int address) const
{
    QByteArray bytes;
    int length = 1;
    for (int i = 0; i < length; ++i) {
        const int place = (address + i) & AddressMask;
        bytes += place < memory.size() ? memory.byteValue(place) : '\0';
        length = qMax(length, _patterns[static_cast<unsigned char>(bytes[0])].length);
    }
    return instruction(bytes, address);
}

QString ZR8BitDisassembler::listingLine(const Instruction &instruction)
{
    constexpr int BytesWidth = 8; // of three bytes
    const QString bytes = QString::fromLatin1(instruction.bytes.toHex(' ').toUpper());
    return QStringLiteral("%1  %2  %3")
        .arg(ZRNumbers::hexDigits(instruction.address, 4), bytes.leftJustified(BytesWidth), instruction.text);
}

} // namespace ZR
