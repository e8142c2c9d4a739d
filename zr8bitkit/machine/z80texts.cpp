#include "z80texts_p.h"

#include "z80decoder_p.h"

#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bitregister.h>

namespace ZR::Z80 {

namespace {

constexpr const char *registerNames[] = {"B", "C", "D", "E", "H", "L", "?", "A"};
constexpr const char *pairNames[] = {"BC", "DE", "HL", "SP"};
constexpr const char *conditionNames[] = {"NZ", "Z", "NC", "C", "PO", "PE", "P", "M"};

/// What a register is for.
struct RegisterText
{
    Q_DECLARE_TR_FUNCTIONS(ZR::ZR8BitProcZ80)

public:
    const char *id;
    const char *title;
    const char *text;

    static const RegisterText all[];
};

const RegisterText RegisterText::all[] = {
    {"A", QT_TR_NOOP("Accumulator"), QT_TR_NOOP("One operand of sums and of logic, and the result.")},
    {"F", QT_TR_NOOP("Flags"),
     QT_TR_NOOP("From bit 7 on: sign, zero, copy of bit 5, half carry, copy of bit 3, parity or overflow, "
                "subtraction, carry.")},
    {"B", QT_TR_NOOP("High byte of BC"), QT_TR_NOOP("What DJNZ counts.")},
    {"C", QT_TR_NOOP("Low byte of BC"), QT_TR_NOOP("The low byte of the port of IN r,(C) and OUT (C),r.")},
    {"D", QT_TR_NOOP("High byte of DE"), QT_TR_NOOP("A register for data.")},
    {"E", QT_TR_NOOP("Low byte of DE"), QT_TR_NOOP("A register for data.")},
    {"H", QT_TR_NOOP("High byte of HL"), QT_TR_NOOP("The high byte of the address of (HL).")},
    {"L", QT_TR_NOOP("Low byte of HL"), QT_TR_NOOP("The low byte of the address of (HL).")},
    {"IXH", QT_TR_NOOP("High byte of IX"), QT_TR_NOOP("A register for data, by undocumented instructions.")},
    {"IXL", QT_TR_NOOP("Low byte of IX"), QT_TR_NOOP("A register for data, by undocumented instructions.")},
    {"IYH", QT_TR_NOOP("High byte of IY"), QT_TR_NOOP("A register for data, by undocumented instructions.")},
    {"IYL", QT_TR_NOOP("Low byte of IY"), QT_TR_NOOP("A register for data, by undocumented instructions.")},
    {"I", QT_TR_NOOP("Interrupt vector"),
     QT_TR_NOOP("The high byte of the address of a vector in interrupt mode 2.")},
    {"R", QT_TR_NOOP("Memory refresh"), QT_TR_NOOP("Counts opcodes and prefixes in its lower 7 bits.")},
    {"IFF1", QT_TR_NOOP("Interrupts enabled"),
     QT_TR_NOOP("1 while interrupts are taken that can be masked.")},
    {"IFF2", QT_TR_NOOP("Interrupts enabled after an NMI"), QT_TR_NOOP("What RETN makes of IFF1.")},
    {"IM", QT_TR_NOOP("Interrupt mode"), QT_TR_NOOP("0, 1 or 2.")},
    {"Q", QT_TR_NOOP("Flags of the last instruction"),
     QT_TR_NOOP("F where that instruction set the flags, else 0; SCF and CCF see it. Not for programs.")},
    {"AF", QT_TR_NOOP("Accumulator and flags"), QT_TR_NOOP("As they are pushed.")},
    {"BC", QT_TR_NOOP("Pair of B and C"),
     QT_TR_NOOP("What block instructions count, and the port of those that read and write ports.")},
    {"DE", QT_TR_NOOP("Pair of D and E"), QT_TR_NOOP("Where block instructions copy to.")},
    {"HL", QT_TR_NOOP("Pair of H and L"),
     QT_TR_NOOP("Where block instructions read, the address of (HL), and the sum of 16 bits.")},
    {"IX", QT_TR_NOOP("Index register X"), QT_TR_NOOP("An address, to which instructions add -128 to 127.")},
    {"IY", QT_TR_NOOP("Index register Y"), QT_TR_NOOP("An address, to which instructions add -128 to 127.")},
    {"SP", QT_TR_NOOP("Stack pointer"),
     QT_TR_NOOP("The address of the byte that was pushed last; the stack grows down.")},
    {"WZ", QT_TR_NOOP("Internal address"),
     QT_TR_NOOP(
         "What the chip keeps of addresses; BIT n,(HL) shows its high byte in the flags. Not for programs.")},
    {"PC", QT_TR_NOOP("Program counter"), QT_TR_NOOP("The address of the next instruction.")},
    {"AF'", QT_TR_NOOP("Second AF"), QT_TR_NOOP("Exchanged with AF by EX AF,AF'.")},
    {"BC'", QT_TR_NOOP("Second BC"), QT_TR_NOOP("Exchanged with BC by EXX.")},
    {"DE'", QT_TR_NOOP("Second DE"), QT_TR_NOOP("Exchanged with DE by EXX.")},
    {"HL'", QT_TR_NOOP("Second HL"), QT_TR_NOOP("Exchanged with HL by EXX.")},
};

/// The texts of what follows an opcode.
struct Operands
{
    QString byte = QStringLiteral("n");
    QString word = QStringLiteral("nn");
    QString distance = QStringLiteral("e");
    QString offset = QStringLiteral("+d"); ///< to an index register
};

/// Of texts with strokes in between the one that the opcode chooses.
QString choice(const QString &texts, int opcode)
{
    const QStringList all = texts.split(QLatin1Char('/'));
    return all.at(yOf(opcode) % all.size());
}

QString numberText(int value, int digits)
{
    return QLatin1Char('$') + ZRNumbers::hexDigits(value, digits);
}

/// "HL" or the index register of a page.
QString indexName(Page page)
{
    if (page < DD)
        return QStringLiteral("HL");
    return page == DD || page == DDCB ? QStringLiteral("IX") : QStringLiteral("IY");
}

/// A register by its number in an opcode, of which the halves of HL may be those of an index register.
QString registerName(int number, Page page)
{
    const QString name = QString::fromLatin1(registerNames[number]);
    return page >= DD && number >> 1 == 2 ? indexName(page) + name : name;
}

QString pairName(int number, Page page, bool pushed)
{
    if (number == 2)
        return indexName(page);
    return number == 3 && pushed ? QStringLiteral("AF") : QString::fromLatin1(pairNames[number]);
}

/// What a letter of a form stands for.
QString textOfLetter(QChar letter, Page page, int opcode, const Operands &operands)
{
    // clang-format off
    switch (letter.unicode()) {
    case 'y': return registerName(yOf(opcode), page);
    case 'z': return registerName(zOf(opcode), page);
    case 'r': return registerName(yOf(opcode), Main);
    case 's': return registerName(zOf(opcode), Main);
    case 'p': return pairName(pOf(opcode), page, false);
    case 'q': return pairName(pOf(opcode), page, true);
    case 'c': return QString::fromLatin1(conditionNames[yOf(opcode)]);
    case 'j': return QString::fromLatin1(conditionNames[yOf(opcode) - 4]);
    case 'b': return QString::number(yOf(opcode));
    case 'x': return indexName(page);
    case 'm': return QStringLiteral("(%1%2)").arg(indexName(page), page < DD ? QString() : operands.offset);
    case 'n': return operands.byte;
    case 'w': return operands.word;
    case 'e': return operands.distance;
    case 't': return numberText(yOf(opcode) * 8, 2);
    default: return letter;
    }
    // clang-format on
}

QString formOf(const Instruction &instruction, Page page, int opcode, const Operands &operands)
{
    QString form = nameOf(instruction, opcode);
    const QString letters = choice(QString::fromLatin1(instruction.line->operands), opcode);
    if (!letters.isEmpty())
        form += QLatin1Char(' ');
    for (const QChar letter : letters)
        form += textOfLetter(letter, page, opcode, operands);
    return form;
}

/// The bytes of an instruction as data.
QString dataText(const Decoded &decoded)
{
    QStringList bytes;
    for (std::size_t i = 0; i < decoded.instruction->length; ++i)
        bytes += numberText(decoded.bytes[i], 2);
    return QStringLiteral("DEFB ") + bytes.join(QLatin1Char(','));
}

} // namespace

void describeRegisters(const QMap<QString, ZR8BitRegister *> &registers)
{
    for (const RegisterText &text : RegisterText::all) {
        const QString id = QString::fromLatin1(text.id);
        if (ZR8BitRegister *reg = registers.value(id))
            reg->setDesc(id + QStringLiteral(" - ") + RegisterText::tr(text.title),
                         RegisterText::tr(text.text));
    }
}

QString nameOf(const Instruction &instruction, int opcode)
{
    return choice(QString::fromLatin1(instruction.line->name), opcode);
}

QString titleOf(const Instruction &instruction, int opcode)
{
    return choice(Lines<HL>::tr(instruction.line->title), opcode);
}

QString textOf(const Instruction &instruction, Page page, int opcode)
{
    QStringList lines;
    if (instruction.kind == Undocumented)
        lines += Lines<HL>::tr("Undocumented.");
    if (instruction.kind == Copy)
        lines += Lines<HL>::tr("A copy of another encoding.");
    if (instruction.more > 0 && (page != ED || (opcode & 0x10)))
        lines += Lines<HL>::tr("%1 T states more when it jumps, calls, returns or repeats itself.")
                     .arg(instruction.more);
    lines += formOf(instruction, page, opcode, Operands());
    return lines.join(QLatin1String("<br>"));
}

DecodedInstruction disassemble(int address, const NextByte &next)
{
    const Decoded decoded = decode(next);
    const Instruction &instruction = *decoded.instruction;
    if (instruction.isPrefix)
        return {};

    const Line &line = *instruction.line;
    const quint8 *operand = decoded.operand();
    DecodedInstruction result;
    Operands operands;
    if (decoded.page >= DD && has(line, 'm')) {
        const int byte = *operand++;
        const int offset = byte < 0x80 ? byte : byte - 0x100;
        operands.offset = QLatin1Char(offset < 0 ? '-' : '+') + numberText(qAbs(offset), 2);
    }
    operands.byte = numberText(operand[0], 2);
    operands.word = operands.distance = QStringLiteral("%1");
    if (has(line, 'w'))
        result.target = operand[0] | operand[1] << 8;
    if (has(line, 'e'))
        result.target = (address + instruction.length + static_cast<signed char>(operand[0])) & AddressMask;
    // Of the names with a word only JP and CALL begin so.
    result.jumps = has(line, 'e') || (has(line, 'w') && (line.name[0] == 'J' || line.name[0] == 'C'));
    result.text = formOf(instruction, decoded.page, decoded.opcode, operands);
    if (instruction.kind != Documented)
        result.text = dataText(decoded) + QStringLiteral(" ; ") + result.text;
    return result;
}

} // namespace ZR::Z80
