#include "machinerun.h"

#include "console.h"
#include "failure.h"
#include "files.h"
#include "interrupts.h"
#include "labels.h"
#include "outputs.h"
#include "progress.h"

#include <zr8bitkit/zr8bitaddressspace.h>
#include <zr8bitkit/zr8bitprogramfile.h>
#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bitprocbase.h>

#include <QtCore/QFile>

using ZR::ZR8BitMachine;
using ZR::ZRNumbers;
using RunEnd = ZR8BitMachine::RunEnd;

namespace {

constexpr quint64 CyclesAtOnce = 1'000'000; // some milliseconds
constexpr quint64 Endless = std::numeric_limits<quint64>::max();
constexpr int LowByte = 0xFF;
constexpr char InstructionsHint[] = " (--instructions documented or all)";

/// Where the library's own processor runs, no option may ask for what it has not.
void refuseOptionsOfChips(const ZR8BitMachine &machine, const RunOptions &options)
{
    const std::pair<const char *, bool> given[] = {
        {"--reset", options.reset},
        {"--watch", options.watch.has_value()},
        {"--irq-every", options.irqEvery.has_value()},
        {"--output", options.output.has_value()},
        {"--exit", options.exit.has_value()},
    };
    for (const auto &[option, isGiven] : given) {
        if (isGiven && !machine.chip())
            throw Failure(QStringLiteral("%1 needs a complete processor%2!")
                              .arg(QLatin1String(option), QLatin1String(InstructionsHint)));
    }
}

} // namespace

MachineRun::MachineRun(ZR8BitMachine &machine, const RunOptions &options)
    : _machine(machine)
    , _options(options)
    , _trace(machine)
{
    refuseOptionsOfChips(machine, options);
    for (const QString &path : options.labels)
        readLabels(_labels, path);
    if (!options.labels.isEmpty())
        _trace.setLabels(&_labels);
    if (!options.loadState.isEmpty() && !machine.restoreState(readInput(options.loadState)))
        throw Failure(QStringLiteral("%1: %2").arg(inputName(options.loadState), machine.lastErrorStr()));
    for (const QString &load : options.loads)
        _load(load);
    if (options.reset)
        machine.chip()->reset();
    _setRegisters();
    for (const MemoryPart &part : options.dumps)
        _checkPart("--dump", part);
    for (const MemoryPart &part : options.saves) {
        refuseStandardOutput("--save", part.file);
        _checkPart("--save", part);
    }
    refuseStandardOutput("--save-state", options.saveState);
    if (options.watch)
        _checkPart("--watch", *options.watch);
    if (!machine.setHistory(options.trace || options.history))
        _failMachine();
    _mapOutputs();
    _prepareLimits();
}

void MachineRun::_load(const QString &load)
{
    const qsizetype at = load.lastIndexOf(u'@');
    const QString place = load.mid(at + 1);
    // Another @ belongs to the name, unless there is a file of what stands before it alone.
    const bool isAddress = ZRNumbers::parse(place) || _labels.addressOf(place) >= 0 ||
                           (!QFile::exists(load) && QFile::exists(load.left(at)));
    const bool hasAddress = at > 0 && isAddress;
    const QString file = hasAddress ? load.left(at) : load;
    const QByteArray content = readInput(file);
    if (!(hasAddress ? _machine.loadBytes(content, addressOf("--load", place, _labels))
                     : _machine.loadProgram(content, file)))
        throw Failure(QStringLiteral("Couldn't load %1: %2").arg(inputName(file), _machine.lastErrorStr()));
    if (!hasAddress)
        _places += QStringLiteral("Loaded: %1, %2\n").arg(inputName(file), _loadedText());
}

/// Where the program has gone that was loaded last.
QString MachineRun::_loadedText() const
{
    int count = 0;
    int first = _machine.size();
    int last = 0;
    const auto parts = _machine.loadedParts();
    for (const auto &[address, length] : parts) {
        count += length;
        first = qMin(first, address);
        last = qMax(last, address + length - 1);
    }
    const QString bytes = QStringLiteral("%1 bytes").arg(count);
    return count == 0 ? bytes
                      : QStringLiteral("%1 from %2 to %3")
                            .arg(bytes, _trace.addressText(first), _trace.addressText(last));
}

void MachineRun::_setRegisters()
{
    for (const RegisterOption &setting : _options.registers) {
        if (!_machine.setRegister(setting.id, setting.value))
            _failMachine();
    }
    if (_options.start)
        _machine.setRegister(QStringLiteral("PC"), addressOf("--start", *_options.start, _labels));
}

void MachineRun::_checkPart(const std::string &option, const MemoryPart &part) const
{
    if (_bytes(option, part).size() < part.length)
        throw Failure(QStringLiteral("%1: %2:%3 goes beyond the memory, which ends with %4!")
                          .arg(QString::fromStdString(option), part.address, QString::number(part.length),
                               ZRNumbers::addressText(_machine.size() - 1)));
}

/// Listens to what the program writes for the outside.
void MachineRun::_mapOutputs()
{
    if (_options.output)
        _map("--output", *_options.output, [this](quint8 value) { _print(value); });
    if (_options.exit) {
        _map("--exit", *_options.exit, [this](quint8 value) {
            _exitCode = value;
            _machine.stop();
        });
    }
}

void MachineRun::_map(const std::string &option, const OutputPlace &place,
                      const std::function<void(quint8 value)> &take)
{
    const auto write = [take](quint16, quint8 value) { take(value); };
    const int address = addressOf(option, place.address, _labels);
    if (place.isPort && address > LowByte)
        failOption(option, place.address, QStringLiteral("a port from 0 to 255"));
    ZR::ZR8BitAddressSpace &space = _machine.addressSpace();
    if (!(place.isPort ? space.mapPort(address, LowByte, nullptr, write)
                       : space.mapDevice(address, 1, nullptr, write)))
        throw Failure(space.lastErrorStr());
}

void MachineRun::_prepareLimits()
{
    for (const QString &place : _options.until)
        _limits.addresses.append(static_cast<quint16>(addressOf("--until", place, _labels)));
    if (_options.steps)
        _limits.instructions = *_options.steps;
    if (_options.watch &&
        !_machine.setWatch(addressOf("--watch", _options.watch->address, _labels), _options.watch->length))
        _failMachine();
    _lastCycle = _options.cycles ? _machine.cycles() + static_cast<quint64>(*_options.cycles) : Endless;
    _limits.irqComes = _options.irqEvery.has_value();
    _nextIRQ = _options.irqEvery ? _machine.cycles() + static_cast<quint64>(*_options.irqEvery) : Endless;
    if (!_options.irqEvery)
        return;
    ZR::ZR8BitChipIface *chip = _machine.chip();
    _machine.setInterruptObserver([chip](ZR::ZR8BitChipIface::Interrupt interrupt, quint16) {
        if (interrupt == ZR::ZR8BitChipIface::Interrupt::IRQ)
            chip->setIRQ(false);
    });
}

QByteArray MachineRun::_bytes(const std::string &option, const MemoryPart &part) const
{
    return _machine.bytes(addressOf(option, part.address, _labels), part.length);
}

void MachineRun::_failMachine() const
{
    throw Failure(_machine.lastErrorStr());
}

void MachineRun::run()
{
    const InterruptDelay interrupts;
    print(_places);
    if (_options.trace)
        print(_trace.heading());
    const auto end = _toEnd(interrupts);
    if (_printFailure)
        std::rethrow_exception(_printFailure);
    const QString endText = end ? _trace.endText(*end)
                                : QStringLiteral("was interrupted at %1 after %2 instructions")
                                      .arg(_trace.addressText(_machine.programCounter()),
                                           QString::number(_machine.instructionCount()));
    const QString failure = end ? _failure(*end, endText) : QString();
    _report(endText, !failure.isEmpty());
    flushOutput(); // an interrupt would lose it
    if (interrupts.isInterrupted())
        return;
    _save();
    if (!failure.isEmpty())
        throw Failure(failure);
    if (_exitCode)
        throw ExitStatus{*_exitCode};
}

/// Runs to the end that the options ask for, or that the program makes. Nothing when a person ended it.
std::optional<RunEnd> MachineRun::_toEnd(const InterruptDelay &interrupts)
{
    Progress progress;
    for (;;) {
        const RunEnd end = _runSome();
        const bool isPart = end == RunEnd::Cycles || (end == RunEnd::Count && _limits.instructions > 0);
        if (!isPart)
            return end;
        if (_machine.cycles() >= _lastCycle)
            return RunEnd::Cycles;
        if (interrupts.isInterrupted())
            return std::nullopt;
        if (!_options.trace)
            progress.show(_machine.instructionCount());
    }
}

/// Runs to the next time at which something is to be done: to a line of the trace, to an interrupt, or for a
/// while.
RunEnd MachineRun::_runSome()
{
    const quint64 cycles = _machine.cycles();
    if (cycles >= _nextIRQ) {
        _machine.chip()->setIRQ(true);
        const auto period = static_cast<quint64>(*_options.irqEvery);
        _nextIRQ = cycles + period - (cycles - _nextIRQ) % period; // of short periods some have gone by
    }
    ZR8BitMachine::RunLimits limits = _limits;
    limits.cycles = qMin(CyclesAtOnce, qMin(_nextIRQ, qMax(_lastCycle, cycles)) - cycles);
    if (_options.trace)
        limits.instructions = qMin<qint64>(1, limits.instructions);
    const qint64 count = _machine.instructionCount();
    const RunEnd end = runPart(limits);
    if (_options.steps)
        _limits.instructions -= _machine.instructionCount() - count;
    if (_options.trace && _machine.instructionCount() > count)
        print(_trace.line(_machine.history().constLast()));
    return end;
}

/// Prints a byte for the program. Nothing must be thrown through the processor.
void MachineRun::_print(quint8 value)
{
    try {
        printBytes(QByteArray(1, static_cast<char>(value)));
        _isLineOpen = value != '\n';
    } catch (...) {
        _printFailure = std::current_exception();
        _machine.stop();
    }
}

/// Why a run is a failure; empty when it is none.
QString MachineRun::_failure(RunEnd end, const QString &endText) const
{
    QStringList sentences;
    if (_options.exit && !_exitCode) {
        sentences += QStringLiteral("The program has given no exit code: the run %1!").arg(endText);
    } else if (!_options.until.isEmpty() && !_exitCode && end != RunEnd::Address) {
        QStringList places;
        for (const quint16 address : _limits.addresses)
            places += _trace.addressText(address);
        sentences += QStringLiteral("The run has not reached %1: it %2!")
                         .arg(places.join(QStringLiteral(" or ")), endText);
    }
    ZR::ZR8BitProcBase &processor = *_machine.processor();
    if (processor.hardwareIssue())
        sentences +=
            processor.hardwareIssueMsg() + (_machine.chip() ? QString() : QLatin1String(InstructionsHint));
    return sentences.join(u' ');
}

void MachineRun::_report(const QString &endText, bool isFailure)
{
    if (_isLineOpen)
        print(QStringLiteral("\n"));
    if (isFailure && _options.history) {
        const auto history = _machine.history();
        for (const auto &instruction : history.last(qMin<qsizetype>(*_options.history, history.size())))
            print(_trace.historyLine(instruction));
    }
    print(QStringLiteral("The run %1.\n%2").arg(endText, _trace.stateText()));
    for (const MemoryPart &part : _options.dumps)
        print(_trace.dump(_bytes("--dump", part), addressOf("--dump", part.address, _labels)));
}

RunEnd MachineRun::runPart(const ZR8BitMachine::RunLimits &limits)
{
    return _machine.run(limits);
}

void MachineRun::addOutputs(Outputs &) {}

void MachineRun::endAtCycle(quint64 cycle)
{
    _lastCycle = qMin(_lastCycle, cycle);
}

void MachineRun::_save()
{
    Outputs outputs;
    for (const MemoryPart &part : _options.saves)
        outputs.add(part.file, _bytes("--save", part));
    if (!_options.saveState.isEmpty())
        outputs.add(_options.saveState, _machine.saveState());
    addOutputs(outputs);
    outputs.write();
}
