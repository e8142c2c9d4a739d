#include <zr8bitkit/zr8bitmachine.h>

#include "zrfailure_p.h"

#include <zr8bitkit/zr8bitprocmos6510full.h>
#include <zr8bitkit/zriniconfig.h>
#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>
#include <zrbaselib/zrutils.h>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitkit/zr8bitmachine";

/// Whether an instruction that has left PC as it was, and has not failed, will do so for ever.
bool isEndless(int opcode, int pc)
{
    switch (opcode) {
    case 0x4C: // JMP
    case 0x6C:
        return true;
    case 0x00:                                 // BRK
    case 0x20:                                 // JSR
        return pc + 2 < 0x0100 || pc > 0x01FF; // else it may overwrite itself on the stack
    default:
        return (opcode & 0x1F) == 0x10; // a branch; a return goes elsewhere next time
    }
}

} // namespace

ZR8BitMachine::ZR8BitMachine(const QString &name)
    : ZRObject(name)
{
}

ZR8BitMachine::~ZR8BitMachine() = default;

void ZR8BitMachine::setLogger(ZRLoggerIface *logger)
{
    _logger = logger;
    _computer.setLogger(logger);
    if (_processor) {
        _memory->setLogger(logger);
        _processor->setLogger(logger);
    }
}

bool ZR8BitMachine::load(ZRConfigIface *config, const Choice &choice)
{
    _unwire();
    if (!_computer.readFromConfig(QString(), config))
        return _fail(_computer);
    if (_choose(config, choice))
        return true;
    _unwire();
    return false;
}

bool ZR8BitMachine::loadSettings(const QString &filePath, const Choice &choice)
{
    ZRIniConfig config;
    config.setLogger(_logger);
    return config.load(filePath) ? load(&config, choice) : _fail(config);
}

bool ZR8BitMachine::loadFile(const QString &filePath, int address)
{
    QByteArray bytes;
    if (!ZRUtils::readFile(filePath, bytes))
        return ZR_FAIL(QStringLiteral("Couldn't read file '%1'!").arg(filePath));
    if (!loadBytes(bytes, address))
        return ZR_FAIL(QStringLiteral("Couldn't load file '%1'! %2").arg(filePath, _lastError));
    return true;
}

bool ZR8BitMachine::loadBytes(const QByteArray &bytes, int address)
{
    if (!_isLoaded())
        return false;
    const int size = _memory->size();
    if (address < 0 || bytes.size() > size - address)
        return ZR_FAIL(
            QStringLiteral("%1 bytes do not fit at %2 into a memory of %3 bytes!")
                .arg(QString::number(bytes.size()), ZRNumbers::addressText(address), QString::number(size)));
    return bytes.isEmpty() || _memory->write(bytes, address) || _fail(*_memory);
}

ZR8BitRegister *ZR8BitMachine::findRegister(const QString &id)
{
    if (!_isLoaded())
        return nullptr;
    const auto registers = _processor->registers();
    ZR8BitRegister *reg = registers.value(id, nullptr);
    if (!reg) {
        const QStringList ids = registers.keys();
        static_cast<void>(ZR_FAIL(QStringLiteral("The processor has no register '%1', it has: %2")
                                      .arg(id, ids.join(QStringLiteral(", ")))));
    }
    return reg;
}

bool ZR8BitMachine::setRegister(const QString &id, int value)
{
    ZR8BitRegister *reg = findRegister(id);
    if (!reg)
        return false;
    const int largest = reg->regType() == ZR8BitRegType16Bit ? 0xFFFF : 0xFF;
    if (value < 0 || value > largest)
        return ZR_FAIL(QStringLiteral("Register '%1' holds 0 to %2, not %3!")
                           .arg(id, QString::number(largest), QString::number(value)));
    reg->setValue(static_cast<short>(value));
    return true;
}

ZR8BitMachine::RunEnd ZR8BitMachine::run(qint64 limit, int until)
{
    if (!_isLoaded())
        return RunEnd::Stopped;
    const auto address = [this] { return static_cast<unsigned short>(_pc->value()); };
    int pc = address();
    for (qint64 rest = limit; rest > 0; --rest) {
        if (pc == until)
            return RunEnd::Address;
        if (_processor->step() <= 0)
            return RunEnd::Stopped;
        const int next = address();
        if (next == pc && _processor->hardwareIssue()) // the instruction has refused to run
            return RunEnd::Stopped;
        ++_instructionCount;
        if (next == pc && isEndless(static_cast<unsigned char>(_memory->byteValue(pc)), pc))
            return RunEnd::EndlessLoop;
        pc = next;
    }
    return pc == until ? RunEnd::Address : RunEnd::Count;
}

qint64 ZR8BitMachine::instructionCount()
{
    return _instructionCount;
}

ZR8BitComputer &ZR8BitMachine::computer()
{
    return _computer;
}

ZR8BitRAM *ZR8BitMachine::memory()
{
    return _memory;
}

ZR8BitProcBase *ZR8BitMachine::processor()
{
    return _processor;
}

ZR8BitProcMOS6510Full *ZR8BitMachine::completeProcessor()
{
    return _complete.get();
}

bool ZR8BitMachine::_isLoaded()
{
    return _processor || ZR_FAIL(QStringLiteral("No machine is loaded!"));
}

/// Takes over the failure of a part, which has told the logger of it.
bool ZR8BitMachine::_fail(ZRObject &part)
{
    _lastError = part.lastErrorStr();
    return false;
}

bool ZR8BitMachine::_choose(ZRConfigIface *config, const Choice &choice)
{
    const auto memories = _computer.rams();
    const auto processors = _computer.processors();
    QString memory = choice.memory;
    QString processor = choice.processor;
    if (!_findName(memory, memories.keys(), QStringLiteral("RAM")) ||
        !_findName(processor, processors.keys(), QStringLiteral("processor")))
        return false;

    _memory = memories.value(memory);
    // The type of every processor of a computer derives from this class.
    _processor = static_cast<ZR8BitProcBase *>(processors.value(processor));
    const QString prefix = QStringLiteral("PROC_") + processor;
    const QString instructions = config->stringValue(prefix + QStringLiteral(".Instructions"), QString());
    return _makeProcessor(choice.instructions.isEmpty() ? instructions : choice.instructions) &&
           _wire(config, prefix);
}

/// Makes an empty name that of the only part, and returns whether there is a part of the name.
bool ZR8BitMachine::_findName(QString &name, const QStringList &names, const QString &kind)
{
    if (names.contains(name))
        return true;
    const QString allNames = names.join(QStringLiteral(", "));
    if (!name.isEmpty())
        return ZR_FAIL(QStringLiteral("The machine has no %1 '%2', it has: %3").arg(kind, name, allNames));
    if (names.size() > 1)
        return ZR_FAIL(QStringLiteral("The machine has more than one %1, choose one by its name: %2")
                           .arg(kind, allNames));
    name = names.first();
    return true;
}

/// Makes the complete processor the one to run, when there are words for its instructions.
bool ZR8BitMachine::_makeProcessor(const QString &instructions)
{
    if (instructions.isEmpty())
        return true;
    const bool isAll = instructions.compare(QLatin1String("all"), Qt::CaseInsensitive) == 0;
    if (!isAll && instructions.compare(QLatin1String("documented"), Qt::CaseInsensitive) != 0)
        return ZR_FAIL(QStringLiteral("Instructions are 'documented' or 'all', not '%1'!").arg(instructions));
    _complete = std::make_unique<ZR8BitProcMOS6510Full>();
    _complete->setUndocumented(isAll);
    _processor = _complete.get();
    return true;
}

bool ZR8BitMachine::_wire(ZRConfigIface *config, const QString &prefix)
{
    if (_logger)
        setLogger(_logger);
    _processor->setMainMemory(_memory);
    if (!_processor->readFromConfig(prefix, config) || !_processor->init())
        return _fail(*_processor);
    _pc = findRegister(QStringLiteral("PC"));
    return _pc != nullptr;
}

void ZR8BitMachine::_unwire()
{
    _pc = nullptr;
    _processor = nullptr;
    _memory = nullptr;
    _complete.reset();
    _instructionCount = 0;
}

} // namespace ZR
