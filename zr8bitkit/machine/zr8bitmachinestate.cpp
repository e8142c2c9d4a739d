// The states of a machine.

#include "zr8bitmachine_p.h"

#include "zrfailure_p.h"

#include <zr8bitkit/zrnumbers.h>

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QScopedValueRollback>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitkit/zr8bitmachinestate";

constexpr quint32 Magic = 0x5A523853; // "ZR8S"
constexpr quint16 Version = 1;
constexpr QDataStream::Version Encoding = QDataStream::Qt_6_0;

/// Returns what is wrong, nothing when the state could be read.
QString unpack(const QByteArray &bytes, MachineState &state)
{
    QDataStream stream(bytes);
    stream.setVersion(Encoding);
    quint32 magic = 0;
    quint16 version = 0;
    stream >> magic >> version;
    if (stream.status() != QDataStream::Ok || magic != Magic)
        return QStringLiteral("This is no state of a machine!");
    if (version != Version)
        return QStringLiteral("The state is of version %1, only version %2 can be read!")
            .arg(QString::number(version), QString::number(Version));
    stream >> state.processor >> state.chip >> state.blocks;
    if (stream.status() != QDataStream::Ok || !stream.atEnd())
        return QStringLiteral("The state is cut or damaged!");
    return QString();
}

/// Collects where two states differ.
class Difference
{
public:
    void add(const QString &place, const QString &now, const QString &before)
    {
        if (++_count <= LargestCount)
            _places += QStringLiteral("%1 %2, was %3").arg(place, now, before);
    }

    QString text() const
    {
        const QString text = _places.join(QStringLiteral("; "));
        return _count <= LargestCount
                   ? text
                   : QStringLiteral("%1; and %2 more").arg(text, QString::number(_count - LargestCount));
    }

private:
    static constexpr qsizetype LargestCount = 16;

    QStringList _places;
    qsizetype _count = 0;
};

/// A number of a processor's state as a text: hexadecimal as registers are, a count in decimal.
QString fieldText(const QByteArray &bytes)
{
    quint64 value = 0;
    for (qsizetype i = bytes.size(); i-- > 0;)
        value = value << 8 | static_cast<quint8>(bytes[i]);
    return bytes.size() > 2
               ? QString::number(value)
               : ZRNumbers::hexDigits(static_cast<int>(value), 2 * static_cast<int>(bytes.size()));
}

QString byteText(char byte)
{
    return ZRNumbers::hexDigits(static_cast<quint8>(byte), 2);
}

} // namespace

QByteArray ZR8BitMachine::saveState()
{
    QByteArray bytes;
    if (!_isReady(QStringLiteral("save its state")))
        return bytes;
    const MachineState state = _d->state();
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(Encoding);
    stream << Magic << Version << state.processor << state.chip << state.blocks;
    return bytes;
}

bool ZR8BitMachine::restoreState(const QByteArray &bytes)
{
    if (!_isReady(QStringLiteral("take over a state")))
        return false;
    MachineState state;
    const QString objection = _d->readState(bytes, state);
    if (!objection.isEmpty())
        return ZR_FAIL(objection);
    const auto setBlocks = [this](const MachineState &from) {
        for (const auto &[name, content] : from.blocks.asKeyValueRange()) {
            if (!content.isEmpty()) // an empty block has no address to write to, nor to read from
                _d->computer.rams().value(name)->setValue(content, 0);
        }
    };
    const MachineState before = _d->state();
    // Who hears of a register sees the memory that goes with it, and must not load.
    const QScopedValueRollback running(_d->running, true);
    setBlocks(state);
    if (!_d->chip->restoreState(state.chip)) {
        setBlocks(before);
        return ZR_FAIL(QStringLiteral("The state of the processor is damaged!"));
    }
    if (!_d->chip->isJammed())
        _d->processor->resetHardwareIssue();
    return true;
}

QString ZR8BitMachine::stateDifference(const QByteArray &state, const QByteArray &before) const
{
    if (!_d->processor)
        return QStringLiteral("No machine is loaded!");
    MachineState states[2];
    const QString objection = _d->readState(state, states[0]);
    QString objectionBefore = objection.isEmpty() ? _d->readState(before, states[1]) : objection;
    if (!objectionBefore.isEmpty())
        return objectionBefore;

    Difference difference;
    qsizetype place = 0;
    const auto fields = _d->chip->stateFields();
    for (const ZR8BitChipIface::Field &field : fields) {
        const QString texts[] = {fieldText(states[0].chip.mid(place, field.bytes)),
                                 fieldText(states[1].chip.mid(place, field.bytes))};
        if (texts[0] != texts[1])
            difference.add(field.name, texts[0], texts[1]);
        place += field.bytes;
    }
    for (const auto &[name, content] : states[0].blocks.asKeyValueRange()) {
        const bool isMain = _d->computer.rams().value(name) == _d->memory;
        const QByteArray contentBefore = states[1].blocks.value(name);
        for (qsizetype i = 0; i < content.size(); ++i) {
            if (content[i] == contentBefore[i])
                continue;
            const QString address = ZRNumbers::addressText(static_cast<int>(i)) + u':';
            difference.add(isMain ? address : name + u' ' + address, byteText(content[i]),
                           byteText(contentBefore[i]));
        }
    }
    return difference.text();
}

MachineState ZR8BitMachine::Private::state()
{
    const auto kind = QStringLiteral("%1 %2").arg(QLatin1String(processor->metaObject()->className()),
                                                  QString::number(static_cast<int>(chip->instructionSet())));
    MachineState state = {kind, chip->saveState(), {}};
    const auto blocks = computer.rams();
    for (const auto &[name, block] : blocks.asKeyValueRange())
        state.blocks.insert(name, block->size() > 0 ? block->value(0, block->size()) : QByteArray());
    return state;
}

/// Reads a state of this machine. Returns what is wrong with it, nothing when it is one.
QString ZR8BitMachine::Private::readState(const QByteArray &bytes, MachineState &read)
{
    QString objection = unpack(bytes, read);
    if (!objection.isEmpty())
        return objection;
    const MachineState present = state();
    if (read.processor != present.processor || read.chip.size() != present.chip.size())
        return QStringLiteral("The state is of a machine with another processor!");
    bool fits = read.blocks.size() == present.blocks.size();
    for (const auto &[name, content] : present.blocks.asKeyValueRange())
        fits = fits && read.blocks.contains(name) && read.blocks.value(name).size() == content.size();
    return fits ? QString() : QStringLiteral("The state is of a machine with other RAM blocks!");
}

} // namespace ZR
