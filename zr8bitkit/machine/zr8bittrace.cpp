#include <zr8bitkit/zr8bittrace.h>

#include <zr8bitkit/zr8bitlabels.h>
#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bitprocbase.h>

namespace ZR {

namespace {

constexpr qsizetype CyclesWidth = 6;
constexpr int AddressCount = 0x10000;
constexpr qsizetype AddressWidth = 5; ///< of "$0229"

QString cyclesText(quint64 cycles)
{
    return QString::number(cycles).rightJustified(CyclesWidth);
}

QString byteText(quint8 value)
{
    return ZRNumbers::hexDigits(value, 2);
}

} // namespace

struct ZR8BitTrace::Private
{
    explicit Private(const ZR8BitMachine &theMachine)
        : machine(theMachine)
        , disassembler(theMachine.instructionSet())
        , instructionWidth(theMachine.instructionSet() == ZR8BitInstructionSet::Z80
                               ? QStringLiteral("0000  DD CB 05 C0  SET 0,(IX+$05),B").size()
                               : QStringLiteral("0000  7D 08 03  ADC $0308,X").size())
    {
    }

    QString name(int address) const
    {
        return labels ? labels->nameOf(static_cast<quint16>(address)) : QString();
    }
    qsizetype longestName() const;
    QString instructionText(const ZR8BitMachine::RunInstruction &instruction) const;
    QString accessText(const ZR8BitTrace &owner) const;

    const ZR8BitMachine &machine;
    ZR8BitDisassembler disassembler;
    const qsizetype instructionWidth; ///< of the longest one without names
    qsizetype nameWidth = 0;          ///< what the longest name has more than an address
    const ZR8BitLabels *labels = nullptr;
};

ZR8BitTrace::ZR8BitTrace(const ZR8BitMachine &machine)
    : _d(std::make_unique<Private>(machine))
{
}

ZR8BitTrace::~ZR8BitTrace() = default;

void ZR8BitTrace::setLabels(const ZR8BitLabels *labels)
{
    _d->labels = labels;
    _d->disassembler.setNames([this](quint16 address) { return _d->name(address); });
    _d->nameWidth = _d->longestName() - AddressWidth;
}

QString ZR8BitTrace::heading() const
{
    const ZR8BitDisassembler::Instruction shortest = _d->disassembler.instruction(QByteArray(1, '\0'), 0);
    const QString bytes = QStringLiteral("BYTES").leftJustified(3 * shortest.longest - 1);
    return QStringLiteral("%1  %2  CYCLES\n")
        .arg(QStringLiteral("PC    %1  INSTRUCTION")
                 .arg(bytes)
                 .leftJustified(_d->instructionWidth + _d->nameWidth),
             _d->machine.stateHeading());
}

QString ZR8BitTrace::line(const ZR8BitMachine::RunInstruction &instruction) const
{
    return QStringLiteral("%1  %2  %3\n")
        .arg(_d->instructionText(instruction), _d->machine.stateText(), cyclesText(instruction.cycles));
}

QString ZR8BitTrace::historyLine(const ZR8BitMachine::RunInstruction &instruction) const
{
    return QStringLiteral("%1  %2\n").arg(_d->instructionText(instruction), cyclesText(instruction.cycles));
}

QString ZR8BitTrace::stateText() const
{
    const QString cycles = cyclesText(_d->machine.cycles());
    return QStringLiteral("PC    %1  %2\n%3  %4  %5\n")
        .arg(_d->machine.stateHeading(), QStringLiteral("CYCLES").rightJustified(cycles.size()),
             ZRNumbers::hexDigits(_d->machine.programCounter(), 4), _d->machine.stateText(), cycles);
}

QString ZR8BitTrace::endText(ZR8BitMachine::RunEnd end) const
{
    const QString address = addressText(_d->machine.programCounter());
    const QString count = QString::number(_d->machine.instructionCount());
    switch (end) {
    case ZR8BitMachine::RunEnd::Address:
        return QStringLiteral("reached %1 after %2 instructions").arg(address, count);
    case ZR8BitMachine::RunEnd::Count:
        return QStringLiteral("ran %1 instructions").arg(count);
    case ZR8BitMachine::RunEnd::Cycles:
        return QStringLiteral("took its cycles up to %1 after %2 instructions").arg(address, count);
    case ZR8BitMachine::RunEnd::Watch:
        return QStringLiteral("%1 after %2 instructions").arg(_d->accessText(*this), count);
    case ZR8BitMachine::RunEnd::Requested:
        return QStringLiteral("was ended at %1 after %2 instructions").arg(address, count);
    case ZR8BitMachine::RunEnd::EndlessLoop:
        return QStringLiteral("reached an endless loop at %1 after %2 instructions").arg(address, count);
    case ZR8BitMachine::RunEnd::Jam:
        return QStringLiteral("jammed at %1 after %2 instructions").arg(address, count);
    case ZR8BitMachine::RunEnd::Stopped:
        break;
    }
    const bool hasIssue = _d->machine.processor() && _d->machine.processor()->hardwareIssue();
    return QStringLiteral("%1 at %2 after %3 instructions")
        .arg(hasIssue ? QStringLiteral("met a hardware issue") : QStringLiteral("could not go on"), address,
             count);
}

QString ZR8BitTrace::addressText(int address) const
{
    return _d->labels ? _d->labels->textOf(static_cast<quint16>(address)) : ZRNumbers::addressText(address);
}

QString ZR8BitTrace::dump(const QByteArray &bytes, int address) const
{
    constexpr qsizetype BytesPerLine = 16;
    QString dump;
    for (qsizetype place = 0; place < bytes.size(); place += BytesPerLine) {
        const QByteArray line = bytes.mid(place, BytesPerLine);
        const int lineAddress = address + static_cast<int>(place);
        QString text;
        QString names;
        for (qsizetype i = 0; i < line.size(); ++i) {
            text += line[i] >= ' ' && line[i] <= '~' ? QLatin1Char(line[i]) : QLatin1Char('.');
            if (!_d->name(lineAddress + static_cast<int>(i)).isEmpty())
                names += QStringLiteral("  ") + addressText(lineAddress + static_cast<int>(i));
        }
        dump += QStringLiteral("%1  %2  |%3|%4\n")
                    .arg(ZRNumbers::hexDigits(lineAddress, 4),
                         QString::fromLatin1(line.toHex(' ').toUpper()).leftJustified(3 * BytesPerLine - 1),
                         text, names);
    }
    return dump;
}

/// The size of the longest name, or of an address.
qsizetype ZR8BitTrace::Private::longestName() const
{
    qsizetype longest = AddressWidth;
    for (int address = 0; labels && address < AddressCount; ++address)
        longest = qMax(longest, name(address).size());
    return longest;
}

QString ZR8BitTrace::Private::instructionText(const ZR8BitMachine::RunInstruction &instruction) const
{
    QString text;
    if (instruction.interrupt)
        text += QStringLiteral("%1:\n").arg(instruction.interrupt == ZR8BitChipIface::Interrupt::NMI
                                                ? QStringLiteral("NMI")
                                                : QStringLiteral("IRQ"));
    const QString label = name(instruction.address);
    if (!label.isEmpty())
        text += label + QStringLiteral(":\n");
    auto listed = disassembler.instruction(instruction.bytes, instruction.address);
    // Of bytes as data with their instruction as a comment, which are for assemblers, the instruction counts.
    listed.text = listed.text.section(QStringLiteral(" ; "), -1);
    return text + ZR8BitDisassembler::listingLine(listed).leftJustified(instructionWidth + nameWidth);
}

QString ZR8BitTrace::Private::accessText(const ZR8BitTrace &owner) const
{
    const ZR8BitMachine::SeenAccess access = machine.lastAccess();
    const QString place = owner.addressText(access.address);
    const QString instruction = owner.addressText(access.instruction);
    if (access.isWrite)
        return QStringLiteral("wrote %1 to %2, which held %3, by the instruction at %4")
            .arg(byteText(access.after), place, byteText(access.before), instruction);
    return QStringLiteral("read %1 from %2 by the instruction at %3")
        .arg(byteText(access.after), place, instruction);
}

} // namespace ZR
