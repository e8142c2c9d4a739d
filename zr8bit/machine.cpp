#include "machine.h"

#include "console.h"
#include "failure.h"
#include "files.h"
#include "iniconfig.h"
#include "numbers.h"

#include <zr8bitlib/zr8bitprocbase.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>

namespace {

/// The object of the given name, or the only one when the name is empty.
template <typename Object>
Object *chosen(const QMap<QString, Object *> &objects, const QString &name, const QString &kind,
               const QString &option)
{
    if (name.isEmpty() && objects.size() == 1)
        return objects.first();
    if (Object *object = objects.value(name, nullptr))
        return object;
    const QString names = objects.keys().join(QStringLiteral(", "));
    if (name.isEmpty())
        throw Failure(
            QStringLiteral("The machine has more than one %1, choose with %2: %3").arg(kind, option, names));
    throw Failure(QStringLiteral("The machine has no %1 '%2', it has: %3").arg(kind, name, names));
}

} // namespace

ZR::ZR8BitProcBase *processorBase(ZR8BitProcessorIface *processor)
{
    return static_cast<ZR::ZR8BitProcBase *>(processor);
}

Machine::Machine(const QString &settingsPath, const QString &memoryName, const QString &processorName,
                 bool logFailures)
{
    IniConfig config(settingsPath);
    if (logFailures)
        _computer.setLogger(&_logger);
    if (!_computer.readFromConfig(QString(), &config))
        throw Failure(_computer.lastErrorStr());

    _memory = chosen(_computer.rams(), memoryName, QStringLiteral("RAM"), QStringLiteral("--memory"));
    _processor = processorBase(chosen(_computer.processors(), processorName, QStringLiteral("processor"),
                                      QStringLiteral("--processor")));
    if (logFailures) {
        _memory->setLogger(&_logger);
        _processor->setLogger(&_logger);
    }
    _processor->setMainMemory(_memory);
    if (!_processor->init())
        throw Failure(_processor->lastErrorStr());
}

void Machine::loadFile(const QString &filePath, int address)
{
    const QByteArray content = readInput(filePath);
    if (content.size() > _memory->size() - address)
        throw Failure(QStringLiteral("File '%1' of %2 bytes does not fit at %3 into a memory of %4 bytes!")
                          .arg(filePath, QString::number(content.size()), addressText(address),
                               QString::number(_memory->size())));
    if (!content.isEmpty() && !_memory->write(content, address))
        throw Failure(_memory->lastErrorStr());
}

ZR::ZR8BitRegister &Machine::reg(const QString &id)
{
    const QMap<QString, ZR::ZR8BitRegister *> registers = _processor->registers();
    if (ZR::ZR8BitRegister *reg = registers.value(id, nullptr))
        return *reg;
    const QStringList ids = registers.keys();
    throw Failure(QStringLiteral("The processor has no register '%1', it has: %2")
                      .arg(id, ids.join(QStringLiteral(", "))));
}

void Machine::setRegister(const QString &id, int value)
{
    ZR::ZR8BitRegister &target = reg(id);
    const int largest = target.regType() == ZR::ZR8BitRegType16Bit ? 0xFFFF : 0xFF;
    if (value > largest)
        throw Failure(QStringLiteral("Register '%1' holds 0 to %2, not %3!")
                          .arg(id, QString::number(largest), QString::number(value)));
    target.setValue(static_cast<short>(value));
}

bool Machine::Logger::write(const QString &message, QtMsgType type, const QString &file, int line,
                            const QString &function)
{
    Q_UNUSED(type)
    printError(QStringLiteral("%1 [%2:%3, %4]").arg(message, file, QString::number(line), function));
    return true;
}
