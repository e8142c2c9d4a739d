#include "zr8bitmachine_p.h"

#include "zrfailure_p.h"
#include "zrreadfile_p.h"

#include <zr8bitkit/zr8bitprogramfile.h>
#include <zr8bitkit/zrnumbers.h>

#include <QtCore/QScopedValueRollback>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitkit/zr8bitmachine";

constexpr int AddressCount = 0x10000;

QString loadFailure(const QString &filePath, const QString &reason)
{
    return QStringLiteral("Couldn't load file '%1': %2").arg(filePath, reason);
}

} // namespace

ZR8BitMachine::ZR8BitMachine(const QString &name)
    : ZRObject(name)
    , _d(std::make_unique<Private>())
{
}

ZR8BitMachine::~ZR8BitMachine() = default;

void ZR8BitMachine::setLogger(ZRLoggerIface *logger)
{
    _logger = logger;
    _d->computer.setLogger(logger);
    _d->space.setLogger(logger);
    if (_d->processor) {
        _d->memory->setLogger(logger);
        _d->processor->setLogger(logger);
    }
}

bool ZR8BitMachine::loadBytes(const QByteArray &bytes, int address)
{
    _d->loaded.clear();
    return _fits(bytes, address) && _copy(bytes, address);
}

bool ZR8BitMachine::loadFile(const QString &filePath, int address)
{
    QByteArray bytes;
    QString error;
    if (!readFile(filePath, bytes, error))
        return ZR_FAIL(error);
    return loadBytes(bytes, address) || ZR_FAIL(loadFailure(filePath, _lastError));
}

bool ZR8BitMachine::loadFile(const QString &filePath)
{
    QByteArray content;
    QString error;
    if (!readFile(filePath, content, error))
        return ZR_FAIL(error);
    return loadProgram(content, filePath) || ZR_FAIL(loadFailure(filePath, _lastError));
}

bool ZR8BitMachine::loadProgram(const QByteArray &content, const QString &fileName)
{
    _d->loaded.clear();
    QString error;
    const auto program = ZR8BitProgramFile::read(content, fileName, &error);
    if (!program)
        return ZR_FAIL(error);
    if (program->format == ZR8BitProgramFile::Format::Raw)
        return ZR_FAIL(QStringLiteral("It is no .prg and no Intel HEX file, so it needs an address!"));
    for (const ZR8BitProgramFile::Segment &segment : program->segments) {
        if (!_fits(segment.bytes, segment.address))
            return false;
    }
    for (const ZR8BitProgramFile::Segment &segment : program->segments) {
        if (!_copy(segment.bytes, segment.address))
            return false;
    }
    return true;
}

QList<ZR8BitMachine::LoadedPart> ZR8BitMachine::loadedParts() const
{
    return _d->loaded;
}

QStringList ZR8BitMachine::warnings() const
{
    return _d->warnings;
}

int ZR8BitMachine::size() const
{
    if (chip())
        return AddressCount;
    return _d->memory ? _d->memory->size() : 0;
}

QByteArray ZR8BitMachine::bytes(int address, int length) const
{
    QByteArray found;
    if (address < 0)
        return found;
    if (_d->processor && !chip())
        return _d->memory->value(address, length);
    for (int i = 0; i < qMin(length, size() - address); ++i)
        found += static_cast<char>(_d->space.peek(static_cast<quint16>(address + i)));
    return found;
}

int ZR8BitMachine::programCounter() const
{
    return _d->chip ? _d->chip->programCounter() : 0;
}

int ZR8BitMachine::registerValue(const QString &id)
{
    if (!_isLoaded())
        return -1;
    const int value = _d->chip->registerValue(id);
    if (value < 0)
        static_cast<void>(ZR_FAIL(QStringLiteral("The processor has no register '%1', it has: %2")
                                      .arg(id, _d->chip->registerIds().join(QStringLiteral(", ")))));
    return value;
}

bool ZR8BitMachine::setRegister(const QString &id, int value)
{
    if (registerValue(id) < 0)
        return false;
    const QScopedValueRollback running(_d->running, true); // who hears of it must not load
    if (_d->chip->setRegisterValue(id, value))
        return true;
    const int largest = (1 << 8 * _d->chip->registerSize(id)) - 1;
    return ZR_FAIL(QStringLiteral("Register '%1' holds 0 to %2, not %3!")
                       .arg(id, QString::number(largest), QString::number(value)));
}

ZR8BitRegister *ZR8BitMachine::findRegister(const QString &id)
{
    return registerValue(id) < 0 ? nullptr : _d->processor->registers().value(id, nullptr);
}

qint64 ZR8BitMachine::instructionCount() const
{
    return _d->instructionCount;
}

ZR8BitComputer &ZR8BitMachine::computer()
{
    return _d->computer;
}

ZR8BitAddressSpace &ZR8BitMachine::addressSpace()
{
    return _d->space;
}

ZR8BitRAM *ZR8BitMachine::memory() const
{
    return _d->memory;
}

ZR8BitProcBase *ZR8BitMachine::processor() const
{
    return _d->processor;
}

ZR8BitChipIface *ZR8BitMachine::chip() const
{
    return _d->complete.chip;
}

ZR8BitInstructionSet ZR8BitMachine::instructionSet() const
{
    return _d->chip ? _d->chip->instructionSet() : ZR8BitInstructionSet::MOS6510Base;
}

quint64 ZR8BitMachine::cycles() const
{
    return _d->chip ? _d->chip->cycles() : 0;
}

QString ZR8BitMachine::stateHeading() const
{
    return _d->chip ? _d->chip->stateHeading() : QString();
}

QString ZR8BitMachine::stateText() const
{
    return _d->chip ? _d->chip->stateText() : QString();
}

bool ZR8BitMachine::_isLoaded()
{
    return _d->processor || ZR_FAIL(QStringLiteral("No machine is loaded!"));
}

/// Whether an operation may change the machine now.
bool ZR8BitMachine::_isReady(const QString &operation)
{
    if (_d->isBusy())
        return ZR_FAIL(QStringLiteral("The machine is running: it cannot %1 now!").arg(operation));
    return _isLoaded();
}

/// Whether bytes can be loaded.
bool ZR8BitMachine::_fits(const QByteArray &bytes, int address)
{
    if (!_isLoaded())
        return false;
    const QString text = QStringLiteral("%1 bytes do not fit at %2")
                             .arg(QString::number(bytes.size()), ZRNumbers::addressText(address));
    if (address < 0 || bytes.size() > size() - address)
        return ZR_FAIL(QStringLiteral("%1 into a memory of %2 bytes!").arg(text, QString::number(size())));
    for (qsizetype i = 0; chip() && i < bytes.size(); ++i) {
        const auto place = static_cast<quint16>(address + i);
        if (!_d->space.isRAM(place))
            return ZR_FAIL(
                QStringLiteral("%1: there is no RAM at %2!").arg(text, ZRNumbers::addressText(place)));
    }
    return true;
}

/// Copies bytes that fit.
bool ZR8BitMachine::_copy(const QByteArray &bytes, int address)
{
    if (!chip() && !bytes.isEmpty() && !_d->memory->write(bytes, address))
        return _fail(*_d->memory);
    for (qsizetype i = 0; chip() && i < bytes.size(); ++i)
        _d->space.write(static_cast<quint16>(address + i), static_cast<quint8>(bytes[i]));
    _d->loaded.append({address, static_cast<int>(bytes.size())});
    return true;
}

/// Takes over the failure of a part, which has told the logger of it.
bool ZR8BitMachine::_fail(ZRObject &part)
{
    _lastError = part.lastErrorStr();
    return false;
}

} // namespace ZR
