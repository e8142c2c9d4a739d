// How a machine runs.

#include "zr8bitmachine_p.h"

#include "zrfailure_p.h"

#include <zr8bitkit/zr8bittrace.h>
#include <zr8bitkit/zrnumbers.h>

#include <QtCore/QScopeGuard>

#include <limits>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitkit/zr8bitmachinerun";

constexpr int AddressCount = 0x10000;

// What RunLimits have by default.
constexpr qint64 UnlimitedInstructions = (std::numeric_limits<qint64>::max)();
constexpr quint64 UnlimitedCycles = (std::numeric_limits<quint64>::max)();

} // namespace

QList<ZR8BitMachine::RunInstruction> InstructionRing::instructions() const
{
    QList<ZR8BitMachine::RunInstruction> list;
    for (size_t i = _count < Size ? 0 : _count - Size + 1; i < _count; ++i) {
        const Entry &entry = _entries[i % Size];
        list.append(
            {entry.address, QByteArray(entry.bytes.data(), entry.length), entry.cycles, entry.interrupt});
    }
    return list;
}

ZR8BitMachine::RunEnd ZR8BitMachine::run(const RunLimits &limits)
{
    return _isReady(QStringLiteral("run")) ? *_d->run(limits, Private::Goal(), false) : RunEnd::Stopped;
}

ZR8BitMachine::RunEnd ZR8BitMachine::run()
{
    return run(RunLimits());
}

void ZR8BitMachine::stop()
{
    _d->stopRequested = true;
}

bool ZR8BitMachine::call(int address, const RunLimits &limits)
{
    if (!_isComplete(QStringLiteral("call a subroutine")))
        return false;
    if (address < 0 || address >= AddressCount)
        return ZR_FAIL(QStringLiteral("A subroutine has an address from $0000 to $FFFF, not %1!")
                           .arg(ZRNumbers::addressText(address)));
    if (_d->processor->hardwareIssue())
        return ZR_FAIL(_d->processor->hardwareIssueMsg());
    const ZR8BitChipIface &chip = *_d->chip;
    const quint16 caller = chip.programCounter();
    const quint16 stack = chip.stackPointer();
    _d->chip->call(static_cast<quint16>(address));
    const auto hasReturned = [&chip, caller, stack](int) {
        return chip.programCounter() == caller && chip.stackPointer() == stack;
    };
    return _reach(QStringLiteral("The subroutine did not return"), limits, hasReturned, false);
}

bool ZR8BitMachine::call(int address)
{
    return call(address, RunLimits());
}

bool ZR8BitMachine::stepOver(const RunLimits &limits)
{
    if (!_isReady(QStringLiteral("step")))
        return false;
    const ZR8BitChipIface &chip = *_d->chip;
    const quint16 start = chip.programCounter();
    const quint16 stack = chip.stackPointer();
    const bool isCall = _d->chip->isCallNext();
    const auto isOver = [&chip, start, stack, isCall](int) {
        const quint16 distance = static_cast<quint16>(chip.programCounter() - start);
        return !isCall || (distance > 0 && distance <= LongestInstruction && chip.stackPointer() == stack);
    };
    return _reach(QStringLiteral("The step did not end"), limits, isOver, true);
}

bool ZR8BitMachine::stepOver()
{
    return stepOver(RunLimits());
}

bool ZR8BitMachine::stepOut(const RunLimits &limits)
{
    if (!_isComplete(QStringLiteral("step out of a subroutine")))
        return false;
    const ZR8BitChipIface &chip = *_d->chip;
    quint16 address = chip.programCounter();
    quint16 stack = chip.stackPointer();
    int level = 0; // bytes that the stack has lost since the start
    const auto hasReturned = [&](int length) {
        // A return is what takes an address from the stack and goes elsewhere. Where the stack is a page, it
        // may go round.
        const auto taken = static_cast<qint8>(chip.stackPointer() - stack);
        const bool jumps = chip.programCounter() != static_cast<quint16>(address + length);
        level += taken;
        address = chip.programCounter();
        stack = chip.stackPointer();
        return jumps && taken >= 2 && level > 0;
    };
    return _reach(QStringLiteral("The subroutine did not return"), limits, hasReturned, true);
}

bool ZR8BitMachine::stepOut()
{
    return stepOut(RunLimits());
}

bool ZR8BitMachine::setWatch(int address, int length, Access access)
{
    if (!_isComplete(QStringLiteral("be watched")))
        return false;
    if (address < 0 || length < 0 || address > AddressCount || length > AddressCount - address)
        return ZR_FAIL(QStringLiteral("%1:%2 is not within $0000 to $FFFF!")
                           .arg(ZRNumbers::addressText(address), QString::number(length)));
    _d->watch.watch(address, length, access);
    if (length > 0)
        _d->chip->setBus(&_d->watch);
    else
        _d->chip->setBus(&_d->space);
    return true;
}

ZR8BitMachine::SeenAccess ZR8BitMachine::lastAccess() const
{
    return _d->seen.value_or(SeenAccess());
}

void ZR8BitMachine::setInterruptObserver(ZR8BitChipIface::InterruptObserver observer)
{
    _d->observer = std::move(observer);
}

bool ZR8BitMachine::setHistory(bool kept)
{
    if (!_isReady(QStringLiteral("keep another history")))
        return false;
    _d->history = kept ? std::make_unique<InstructionRing>() : nullptr;
    return true;
}

QList<ZR8BitMachine::RunInstruction> ZR8BitMachine::history() const
{
    return _d->history ? _d->history->instructions() : QList<RunInstruction>();
}

/// Runs to a goal, and leaves the present address first, if wanted. Fails where the run ends before.
bool ZR8BitMachine::_reach(const QString &failure, const RunLimits &limits,
                           const std::function<bool(int length)> &goal, bool leavesAddress)
{
    const std::optional<RunEnd> end = _d->run(limits, goal, leavesAddress);
    return !end || ZR_FAIL(QStringLiteral("%1: the run %2!").arg(failure, ZR8BitTrace(*this).endText(*end)));
}

/// Whether an operation for which there must be a complete processor may be done now.
bool ZR8BitMachine::_isComplete(const QString &operation)
{
    if (!_isReady(operation))
        return false;
    return chip() ||
           ZR_FAIL(QStringLiteral("Only a machine with a complete processor can %1!").arg(operation));
}

/// Runs to the end that the limits ask for, or that the program makes; nothing when it has reached the goal.
/// What leaves the present address does not end there.
std::optional<ZR8BitMachine::RunEnd> ZR8BitMachine::Private::run(const RunLimits &limits, const Goal &goal,
                                                                 bool leavesAddress)
{
    running = true;
    const auto leave = qScopeGuard([this] { running = false; });
    stopRequested = false;
    seen.reset();
    const quint64 start = chip->cycles();
    const quint64 lastCycle = start + qMin(limits.cycles, UnlimitedCycles - start);
    qint64 rest = limits.instructions;
    for (bool waits = false, leaves = leavesAddress;; leaves = false) {
        if (!leaves && !limits.addresses.isEmpty() && limits.addresses.contains(chip->programCounter()))
            return RunEnd::Address;
        if (const auto end = endBefore(limits, rest, lastCycle, waits))
            return end;
        if (waits && limits.instructions == UnlimitedInstructions && !limits.predicate) {
            const quint64 count = chip->wait(lastCycle - chip->cycles());
            instructionCount = static_cast<qint64>(static_cast<quint64>(instructionCount) + count);
            if (count > 0)
                continue;
        }
        const int length = step();
        if (length <= 0)
            return chip->isJammed() ? RunEnd::Jam : RunEnd::Stopped;
        ++instructionCount;
        --rest;
        if (goal && goal(length))
            return std::nullopt;
        if (seen)
            return RunEnd::Watch;
        if ((limits.predicate && limits.predicate()) || stopRequested)
            return RunEnd::Requested;
        waits = chip->isWaiting();
    }
}

/// Why no further instruction runs, addresses apart. waits tells of the one before in the same run.
std::optional<ZR8BitMachine::RunEnd> ZR8BitMachine::Private::endBefore(const RunLimits &limits, qint64 rest,
                                                                       quint64 lastCycle, bool waits) const
{
    if (waits && !canLeaveWaiting(limits))
        return RunEnd::EndlessLoop;
    if (rest <= 0)
        return RunEnd::Count;
    if (limits.cycles != UnlimitedCycles && chip->cycles() >= lastCycle)
        return RunEnd::Cycles;
    return std::nullopt;
}

/// Whether an interrupt is there, or may come before the run ends.
bool ZR8BitMachine::Private::canLeaveWaiting(const RunLimits &limits) const
{
    if (chip->irq() && chip->acceptsIRQ())
        return true;
    const bool ends =
        limits.instructions != UnlimitedInstructions || limits.cycles != UnlimitedCycles || limits.predicate;
    return ends && (limits.nmiComes || (limits.irqComes && chip->acceptsIRQ()));
}

/// Runs an instruction, and returns its length as the processor does.
int ZR8BitMachine::Private::step()
{
    const quint64 before = history ? chip->cycles() : 0;
    if (history)
        note(chip->stepAddress());
    if (watch.isOn())
        watch.begin(chip);
    const int length = processor->step();
    if (watch.isOn() && length > 0)
        seen = watch.end(length);
    if (history && length > 0) {
        InstructionRing::Entry &entry = history->present();
        entry.length = qMin(length, LongestInstruction);
        entry.cycles = chip->cycles() - before;
        history->next();
    }
    return length;
}

/// Keeps an instruction that is going to run, since it may overwrite itself.
void ZR8BitMachine::Private::note(quint16 address)
{
    InstructionRing::Entry &entry = history->present();
    entry = InstructionRing::Entry();
    entry.address = address;
    for (char &byte : entry.bytes)
        byte = static_cast<char>(peek(address++));
}

void ZR8BitMachine::Private::observeInterrupts()
{
    chip->setInterruptObserver([this](ZR8BitChipIface::Interrupt interrupt, quint16 handler) {
        if (history) {
            note(handler); // the instruction that runs is not the one that would have been next
            history->present().interrupt = interrupt;
        }
        if (const auto told = observer) // a copy, since it may set another one
            told(interrupt, handler);
    });
}

/// What the processor sees, without a handler of a device.
quint8 ZR8BitMachine::Private::peek(quint16 address) const
{
    if (complete.chip)
        return space.peek(address);
    return address < memory->size() ? static_cast<quint8>(memory->byteValue(address)) : 0;
}

} // namespace ZR
