#include <zr8bitkit/zr8bitprocmos6510full.h>

#include "mos6510run_p.h"
#include "mos6510text_p.h"
#include "zrfailure_p.h"

#include <zr8bitkit/zr8bitdisassembler.h>
#include <zr8bitlib/zr8bitregister.h>

#include <utility>

namespace ZR {

using namespace MOS6510;

namespace {

constexpr char sourceFile[] = "zr8bitkit/zr8bitprocmos6510full";

constexpr int StackPointerOfReset = 0xFD;
constexpr int CyclesOfInterrupt = 7;

/// What a host reads below the title of a row: the mode, what is special, and the assembler's form.
QString textOf(const Instruction &instruction)
{
    const QString name = QString::fromLatin1(instruction.mnemonic().name);
    const QString operand = QString::fromLatin1(instruction.mode().operand);
    QStringList lines = {Tables::tr("Address mode: %1").arg(Tables::tr(instruction.mode().name))};
    if (!instruction.documented)
        lines += Tables::tr("Undocumented.");
    if (instruction.mnemonic().note)
        lines += Tables::tr(instruction.mnemonic().note);
    lines += operand.isEmpty() ? name : name + QLatin1Char(' ') + operand;
    return lines.join(QLatin1String("<br>"));
}

/// The hardware issue of JAM.
QString jamText(int opcode)
{
    return ZR8BitProcMOS6510Full::tr("The opcode: 0x%1 has stopped the processor until a reset!")
        .arg(opcode, 2, 16, QLatin1Char('0'));
}

} // namespace

struct ZR8BitProcMOS6510Full::Private
{
    Chip &chip;
    std::array<ZR8BitProcCommand *, OpcodeCount> commands = {}; ///< rows of instructions, by opcode
    bool undocumented = false;
    bool pushesInWait = false; ///< whether the jump changes the stack
};

ZR8BitProcMOS6510Full::ZR8BitProcMOS6510Full(const QString &name, QObject *parent)
    : ZR8BitProcMOS6510(name, parent)
    , ZR8BitChip(std::make_unique<Chip>(_mainMemory))
    , _d(new Private{static_cast<Chip &>(*_core)})
{
}

ZR8BitProcMOS6510Full::~ZR8BitProcMOS6510Full() = default;

const QString ZR8BitProcMOS6510Full::className()
{
    return QStringLiteral("ZR8BitProcMOS6510Full");
}

bool ZR8BitProcMOS6510Full::setUndocumented(bool undocumented)
{
    if (!_registers.isEmpty())
        return ZR_FAIL(QStringLiteral("Undocumented instructions are to be chosen before init()!"));
    _d->undocumented = undocumented;
    return true;
}

bool ZR8BitProcMOS6510Full::init()
{
    const bool initialised = ZR8BitProcMOS6510::init();
    return _core->bindRegisters(_registers) && initialised && _initCommands();
}

QMap<QString, ZR8BitRegister *> ZR8BitProcMOS6510Full::registers()
{
    _watch();
    return ZR8BitProcMOS6510::registers();
}

QHash<unsigned char, ZR8BitProcCommand *> ZR8BitProcMOS6510Full::commandList()
{
    _watch();
    return ZR8BitProcMOS6510::commandList();
}

void ZR8BitProcMOS6510Full::reset()
{
    resetHardwareIssue();
    Chip &chip = _d->chip;
    chip.nmi = false;
    _core->waitsAt = Chip::Nowhere;
    if (_registers.isEmpty())
        return;

    const Chip::Snapshot before = chip.snapshot();
    chip.set(SP, StackPointerOfReset);
    chip.setFlags(FlagI | FlagUnused, FlagI | FlagUnused);
    chip.delayedI = Chip::AsStatus;
    chip.target = chip.hasMemory() ? chip.word(VectorReset) : 0;
    _core->stepsEnd = chip.target;
    chip.announceSince(before);
    chip.movePC(_core->stepsEnd);
}

bool ZR8BitProcMOS6510Full::acceptsIRQ() const
{
    return !_d->chip.refusesIRQ();
}

quint16 ZR8BitProcMOS6510Full::stackPointer() const
{
    return static_cast<quint16>(StackPage | _d->chip.get(SP));
}

void ZR8BitProcMOS6510Full::call(quint16 address)
{
    const Chip::Snapshot before = _d->chip.snapshot();
    _d->chip.pushWord(_d->chip.programCounter() - 1);
    _d->chip.announceSince(before);
    _d->chip.movePC(address);
}

bool ZR8BitProcMOS6510Full::isCallNext()
{
    const int opcode = _d->chip.read(_d->chip.programCounter());
    return instructions[static_cast<std::size_t>(opcode)].mnemonic().effect == Effects::jsr;
}

bool ZR8BitProcMOS6510Full::isWaiting() const
{
    return _core->waitsAt == _d->chip.programCounter() && !_core->nmi;
}

bool ZR8BitProcMOS6510Full::isJammed() const
{
    return _d->chip.jam != 0;
}

quint64 ZR8BitProcMOS6510Full::wait(quint64 cycles)
{
    if (!isWaiting() || _d->pushesInWait || _hardwareIssue || _paused || _isInterruptDue())
        return 0;
    const quint64 count = cycles / _core->cyclesOfWait + (cycles % _core->cyclesOfWait != 0);
    _core->cycles += count * _core->cyclesOfWait;
    return count;
}

bool ZR8BitProcMOS6510Full::restoreState(const QByteArray &state)
{
    const Chip::Snapshot before = _core->snapshot();
    if (!_core->restoreState(state))
        return ZR_FAIL(QStringLiteral("These %1 bytes are no state of this processor!").arg(state.size()));
    ZR8BitProcMOS6510::resetHardwareIssue();
    if (isJammed())
        _setHardwareIssue(jamText(_d->chip.jam));
    _core->waitsAt = Chip::Nowhere;
    _core->announceSince(before);
    return true;
}

ZR8BitInstructionSet ZR8BitProcMOS6510Full::instructionSet() const
{
    return _d->undocumented ? ZR8BitInstructionSet::MOS6510All : ZR8BitInstructionSet::MOS6510Documented;
}

QString ZR8BitProcMOS6510Full::stateHeading() const
{
    return MOS6510::stateHeading();
}

QString ZR8BitProcMOS6510Full::stateText() const
{
    const Chip &chip = _d->chip;
    return MOS6510::stateText({chip.get(AC), chip.get(XR), chip.get(YR), chip.get(SP)}, chip.get(PS));
}

void ZR8BitProcMOS6510Full::resetHardwareIssue()
{
    _d->chip.jam = 0;
    ZR8BitProcMOS6510::resetHardwareIssue();
}

int ZR8BitProcMOS6510Full::execute(const char *data, const int &size)
{
    if (_core->busy)
        return 0;
    const ZR8BitProcCommand *const row = data ? _d->commands[static_cast<quint8>(data[0])] : nullptr;
    if (!row || _core->watched)
        return ZR8BitProcMOS6510::execute(data, size);
    if (_paused || _hardwareIssue)
        return 0;
    const auto opcode = static_cast<quint8>(data[0]);
    _run(opcode, operandOf(instructions[opcode], data + 1));
    return instructions[opcode].mode().length;
}

int ZR8BitProcMOS6510Full::execute()
{
    if (_paused || _hardwareIssue || _core->stepping || _core->busy)
        return 0;
    const QScopedValueRollback stepping(_core->stepping, true);
    return _step();
}

void ZR8BitProcMOS6510Full::mc_ADC(ZR8BitProcCommand *pCommand, const char *params)
{
    if (instructions[pCommand->code()].mnemonic().effect == Effects::adc)
        _runRow(pCommand, params);
    else
        ZR8BitProcMOS6510::mc_ADC(pCommand, params); // reports that it is no ADC
}

bool ZR8BitProcMOS6510Full::_initCommands()
{
    for (std::size_t code = 0; code < OpcodeCount; ++code) {
        const Instruction &instruction = instructions[code];
        if (!instruction.documented && !_d->undocumented)
            continue;
        ZR8BitProcCommand *command = _commands.command(static_cast<unsigned char>(code));
        if (!command) {
            command = _commands.addCommand(static_cast<unsigned char>(code),
                                           static_cast<unsigned char>(instruction.mode().length),
                                           static_cast<unsigned char>(instruction.cycles()),
                                           QString::fromLatin1(instruction.mnemonic().name),
                                           tr(instruction.mnemonic().title), textOf(instruction));
        }
        if (!command)
            return ZR_FAIL(_commands.lastErrorStr());
        _d->commands[code] = command;
    }
    if (_core->watched)
        _connectRows();
    return true;
}

void ZR8BitProcMOS6510Full::_watch()
{
    if (!std::exchange(_core->watched, true))
        _connectRows();
}

/// Connects the rows of this class but those of ADC, which the base has connected to the slot mc_ADC.
void ZR8BitProcMOS6510Full::_connectRows()
{
    for (ZR8BitProcCommand *command : _d->commands) {
        if (command && instructions[command->code()].mnemonic().effect != Effects::adc)
            connect(command, &ZR8BitProcCommand::execute, this, &ZR8BitProcMOS6510Full::_runRow,
                    Qt::DirectConnection);
    }
}

int ZR8BitProcMOS6510Full::_step()
{
    Chip &chip = _d->chip;
    if (chip.hasMemory() && _isInterruptDue())
        _takeInterrupt();
    if (!chip.hasMemory()) {
        _stop(_noMemoryText(), __LINE__, Q_FUNC_INFO);
        return -1;
    }
    chip.delayedI = Chip::AsStatus;
    const int pc = chip.programCounter();
    const int bytes = chip.alone([&chip] { return fetch(chip); });
    const auto opcode = static_cast<quint8>(bytes);
    ZR8BitProcCommand *command = _d->commands[opcode];
    if (!command)
        return _stepRow(opcode);

    const Instruction &instruction = instructions[opcode];
    const quint64 cycles = chip.cycles;
    _core->stepsEnd = pc + instruction.mode().length;
    _core->isStepsRow = true;
    if (chip.watched) {
        const char params[] = {static_cast<char>(bytes >> 8), static_cast<char>(bytes >> 16)};
        command->exec(params, sizeof params);
    } else {
        _run(opcode, bytes >> 8);
    }
    _core->isStepsRow = false;
    _core->waitsAt = Chip::Nowhere;
    if ((_core->stepsEnd & AddressMask) == pc && isEndless(instruction, pc)) {
        _core->waitsAt = pc;
        _core->cyclesOfWait = qMax<quint64>(1, chip.cycles - cycles); // a handler may have restored a state
        _d->pushesInWait = instruction.mnemonic().stackCycles > 0;
    }
    chip.movePC(_core->stepsEnd);
    return instruction.mode().length;
}

/// Steps over a row that a derived class added, or reports the opcode.
int ZR8BitProcMOS6510Full::_stepRow(int opcode)
{
    const int pc = _d->chip.programCounter();
    ZR8BitProcCommand *command = _commands.command(static_cast<unsigned char>(opcode));
    QByteArray bytes(1, static_cast<char>(opcode));
    for (int i = 1; command && i < command->length(); ++i)
        bytes += static_cast<char>(_d->chip.read((pc + i) & AddressMask));
    const int length = ZR8BitProcMOS6510::execute(bytes);
    if (length > 0)
        _d->chip.movePC(pc + length);
    return length;
}

void ZR8BitProcMOS6510Full::_runRow(ZR8BitProcCommand *command, const char *params)
{
    _run(command->code(), operandOf(instructions[command->code()], params));
}

void ZR8BitProcMOS6510Full::_run(int opcode, int operand)
{
    Chip &chip = _d->chip;
    const Instruction &instruction = instructions[static_cast<std::size_t>(opcode)];
    if (_core->busy)
        return;
    chip.fetched = std::exchange(_core->isStepsRow, false);
    if (instruction.needsMemory() && !chip.hasMemory()) {
        _stop(_noMemoryText(), __LINE__, Q_FUNC_INFO);
        return;
    }

    const bool announces = chip.watched;
    const Chip::Snapshot before = announces ? chip.snapshot() : Chip::Snapshot();
    chip.alone([&] { perform(chip, instruction, operand); });
    if (chip.fetched)
        _core->stepsEnd = chip.target;
    if (instruction.mnemonic().effect == Effects::jam) {
        chip.jam = static_cast<quint8>(opcode);
        _stop(jamText(opcode), __LINE__, Q_FUNC_INFO);
    }
    if (announces)
        chip.announceSince(before);
}

bool ZR8BitProcMOS6510Full::_isInterruptDue() const
{
    return _core->nmi || (_core->irq && acceptsIRQ());
}

void ZR8BitProcMOS6510Full::_takeInterrupt()
{
    Chip &chip = _d->chip;
    const bool isNMI = std::exchange(chip.nmi, false);
    const Chip::Snapshot before = chip.snapshot();
    chip.alone(
        [&] { _core->stepsEnd = chip.interrupt(chip.programCounter(), 0, isNMI ? VectorNMI : VectorIRQ); });
    chip.cycles += CyclesOfInterrupt;
    chip.announceSince(before);
    chip.movePC(_core->stepsEnd);
    chip.tellInterrupt(isNMI ? Interrupt::NMI : Interrupt::IRQ);
}

void ZR8BitProcMOS6510Full::_stop(const QString &message, int line, const char *function)
{
    _setLastError(message, QString::fromLatin1(sourceFile), line, QString::fromLocal8Bit(function));
    _setHardwareIssue(message);
}

} // namespace ZR
