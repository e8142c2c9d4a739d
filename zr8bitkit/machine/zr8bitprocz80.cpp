#include <zr8bitkit/zr8bitprocz80.h>

#include "z80decoder_p.h"
#include "z80run_p.h"
#include "z80texts_p.h"
#include "zrfailure_p.h"

#include <zr8bitkit/zr8bitdisassembler.h>
#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bitregister.h>

#include <utility>

namespace ZR {

using namespace Z80;

namespace {

constexpr char sourceFile[] = "zr8bitkit/zr8bitprocz80";

constexpr int WordOfReset = 0xFFFF; ///< in AF and SP

} // namespace

struct ZR8BitProcZ80::Private
{
    Private(ZR8BitProcZ80 &processor, Chip &chip)
        : processor(processor)
        , chip(chip)
    {
    }

    ZR8BitProcCommands &table(Page page) { return page == Main ? processor._commands : tables[page - 1]; }
    ZR8BitProcCommand *&row(Page page, int opcode) { return rows[page][static_cast<std::size_t>(opcode)]; }
    void watch();
    void addRows();
    void addRow(Page page, int opcode);
    Decoded decodeNext();
    void run(const Instruction &instruction, int opcode, const quint8 *operand);
    void runDecoded(const Decoded &decoded);
    void rest(quint64 count);
    quint64 cyclesOfRest() const { return chip.isHalted() ? CyclesOfHalt : chip.cyclesOfWait; }

    ZR8BitProcZ80 &processor;
    Chip &chip;
    std::array<ZR8BitProcCommands, PageCount - 1> tables;                  ///< of the pages after prefixes
    std::array<std::array<ZR8BitProcCommand *, 256>, PageCount> rows = {}; ///< null until somebody watches
    int fetchesOfWait = 0;                                                 ///< those that R counts of it
};

void ZR8BitProcZ80::Private::watch()
{
    if (!std::exchange(chip.watched, true) && !processor._registers.isEmpty())
        addRows();
}

void ZR8BitProcZ80::Private::addRows()
{
    for (const Page page : {Main, CB, ED, DD, FD, DDCB, FDCB}) {
        for (int opcode = 0; opcode < 256; ++opcode)
            addRow(page, opcode);
    }
}

void ZR8BitProcZ80::Private::addRow(Page page, int opcode)
{
    const Instruction &instruction = pages[page][static_cast<std::size_t>(opcode)];
    if (page != Main && instruction.isPrefix)
        return;
    row(page, opcode) = table(page).addCommand(
        static_cast<unsigned char>(opcode), instruction.length, instruction.cycles,
        nameOf(instruction, opcode), titleOf(instruction, opcode), textOf(instruction, page, opcode));
    connect(
        row(page, opcode), &ZR8BitProcCommand::execute, &processor,
        [this, &instruction](ZR8BitProcCommand *command, const char *params) {
            run(instruction, command->code(), reinterpret_cast<const quint8 *>(params));
        },
        Qt::DirectConnection);
}

/// Reads the instruction at PC.
Decoded ZR8BitProcZ80::Private::decodeNext()
{
    int address = chip.get(PC);
    return chip.alone([&] { return decode([&] { return static_cast<quint8>(chip.read(address++)); }); });
}

/// Runs an instruction by its row, if somebody may be connected to it.
void ZR8BitProcZ80::Private::runDecoded(const Decoded &decoded)
{
    if (!chip.watched)
        return run(*decoded.instruction, decoded.opcode, decoded.operand());
    const auto *operand = reinterpret_cast<const char *>(decoded.operand());
    row(decoded.page, decoded.opcode)->exec(operand, decoded.instruction->length);
}

void ZR8BitProcZ80::Private::run(const Instruction &instruction, int opcode, const quint8 *operand)
{
    if (chip.busy)
        return;
    chip.fetched = std::exchange(chip.isStepsRow, false);
    const bool announces = chip.watched;
    const Chip::Snapshot before = announces ? chip.snapshot() : Chip::Snapshot();
    chip.pc = chip.get(PC);
    chip.target = (chip.pc + instruction.length) & AddressMask;
    chip.alone([&] { perform(chip, instruction, opcode, operand); });
    if (chip.fetched)
        chip.stepsEnd = chip.target;
    if (announces)
        chip.announceSince(before);
}

/// Lets a processor that waits do so a number of times.
void ZR8BitProcZ80::Private::rest(quint64 count)
{
    const Chip::Snapshot before = chip.snapshot();
    chip.set(Q, 0);
    chip.last = Other;
    chip.cycles += count * cyclesOfRest();
    chip.countR(static_cast<int>(count & 0x7F) * (chip.isHalted() ? 1 : fetchesOfWait));
    chip.announceSince(before);
    chip.movePC(chip.programCounter());
}

ZR8BitProcZ80::ZR8BitProcZ80(const QString &name, QObject *parent)
    : ZR8BitProcBase(name, parent)
    , ZR8BitChip(std::make_unique<Chip>(_mainMemory))
    , _d(new Private(*this, static_cast<Chip &>(*_core)))
{
    setDesc(tr("Z80 Microprocessor"),
            tr("Zilog's processor of 8 bits as an NMOS chip: two sets of registers, two index registers, "
               "ports of their own, three interrupt modes and instructions for whole blocks."));
}

ZR8BitProcZ80::~ZR8BitProcZ80() = default;

const QString ZR8BitProcZ80::className()
{
    return QStringLiteral("ZR8BitProcZ80");
}

bool ZR8BitProcZ80::init()
{
    const bool isFirst = _registers.isEmpty();
    if (!ZR8BitProcBase::init() || !_core->bindRegisters(_registers))
        return false;
    if (isFirst)
        describeRegisters(_registers);
    if (isFirst && _core->watched)
        _d->addRows();
    return true;
}

QMap<QString, ZR8BitRegister *> ZR8BitProcZ80::registers()
{
    _d->watch();
    return ZR8BitProcBase::registers();
}

QHash<unsigned char, ZR8BitProcCommand *> ZR8BitProcZ80::commandList()
{
    _d->watch();
    return ZR8BitProcBase::commandList();
}

QHash<unsigned char, ZR8BitProcCommand *> ZR8BitProcZ80::commandPage(int prefix) const
{
    _d->watch();
    const Page page = pageAfter(prefix);
    return page == Main ? QHash<unsigned char, ZR8BitProcCommand *>() : _d->table(page).commandList();
}

void ZR8BitProcZ80::reset()
{
    resetHardwareIssue();
    Chip &chip = _d->chip;
    const Chip::Snapshot before = chip.snapshot();
    chip.nmi = false;
    chip.haltedAt = Chip::Nowhere;
    chip.last = Other;
    for (const Register reg : {I, R, IFF1, IFF2, IM, Q})
        chip.set(reg, 0);
    for (const Pair pair : {AF, SP})
        chip.set(pair, WordOfReset);
    _core->waitsAt = Chip::Nowhere;
    _core->stepsEnd = 0;
    chip.announceSince(before);
    chip.movePC(0);
}

void ZR8BitProcZ80::setIRQ(bool active)
{
    setIRQ(active, 0xFF);
}

void ZR8BitProcZ80::setIRQ(bool active, quint8 data)
{
    ZR8BitChip::setIRQ(active);
    _d->chip.irqData = data;
}

bool ZR8BitProcZ80::acceptsIRQ() const
{
    const Chip &chip = _d->chip;
    return chip.get(IFF1) != 0 && chip.last != EnabledInterrupts && chip.last != WasPrefix;
}

bool ZR8BitProcZ80::isHalted() const
{
    return _d->chip.isHalted();
}

bool ZR8BitProcZ80::isWaiting() const
{
    return (isHalted() || _core->waitsAt == _d->chip.programCounter()) && !_core->nmi;
}

bool ZR8BitProcZ80::isJammed() const
{
    return false;
}

quint64 ZR8BitProcZ80::wait(quint64 cycles)
{
    if (!isWaiting() || _hardwareIssue || _paused || _isInterruptDue())
        return 0;
    const quint64 each = _d->cyclesOfRest();
    const quint64 count = cycles / each + (cycles % each != 0 ? 1 : 0);
    _d->rest(count);
    return count;
}

void ZR8BitProcZ80::setProgramCounter(quint16 address)
{
    _d->chip.haltedAt = Chip::Nowhere;
    ZR8BitChip::setProgramCounter(address);
}

quint16 ZR8BitProcZ80::stepAddress() const
{
    return static_cast<quint16>(programCounter() - (isHalted() ? 1 : 0));
}

quint16 ZR8BitProcZ80::stackPointer() const
{
    return static_cast<quint16>(_d->chip.get(SP));
}

void ZR8BitProcZ80::call(quint16 address)
{
    const Chip::Snapshot before = _d->chip.snapshot();
    _d->chip.push(_d->chip.get(PC));
    _d->chip.announceSince(before);
    setProgramCounter(address);
}

bool ZR8BitProcZ80::isCallNext()
{
    const Decoded decoded = _d->decodeNext();
    return !isHalted() && (isCall(*decoded.instruction) || repeats(decoded));
}

bool ZR8BitProcZ80::restoreState(const QByteArray &state)
{
    const Chip::Snapshot before = _core->snapshot();
    if (!_core->restoreState(state))
        return ZR_FAIL(QStringLiteral("These %1 bytes are no state of this processor!").arg(state.size()));
    resetHardwareIssue();
    _core->waitsAt = Chip::Nowhere;
    _core->announceSince(before);
    return true;
}

ZR8BitInstructionSet ZR8BitProcZ80::instructionSet() const
{
    return ZR8BitInstructionSet::Z80;
}

QString ZR8BitProcZ80::stateHeading() const
{
    return QStringLiteral("A  BC   DE   HL   IX   IY   SP    SZYHXPNC");
}

QString ZR8BitProcZ80::stateText() const
{
    const Chip &chip = _d->chip;
    QString text = ZRNumbers::hexDigits(chip.get(A), 2) + QLatin1Char(' ');
    for (const Pair pair : {BC, DE, HL, IX, IY, SP})
        text += ZRNumbers::hexDigits(chip.get(pair), 4) + QLatin1Char(' ');
    QString flags = QStringLiteral("SZYHXPNC"); // a flag that is set shows its letter
    for (int i = 0; i < flags.size(); ++i) {
        if (!(chip.get(F) & (FlagS >> i)))
            flags[i] = QLatin1Char('.');
    }
    return text + QLatin1Char(' ') + flags;
}

int ZR8BitProcZ80::execute(const char *data, const int &size)
{
    if (_paused || _hardwareIssue || _core->busy)
        return 0;
    if (!data || size < 1 || _registers.isEmpty())
        return ZR8BitProcBase::execute(size < 1 ? nullptr : data, size); // reports what is missing
    int count = 0;
    const Decoded decoded =
        decode([&] { return static_cast<quint8>(count++ < size ? data[count - 1] : '\0'); });
    const int length = decoded.instruction->length;
    if (length > size) {
        _stop(tr("The instruction has %1 bytes, of which only %2 are there!").arg(length).arg(size), __LINE__,
              Q_FUNC_INFO);
        return -1;
    }
    _d->runDecoded(decoded);
    return length;
}

int ZR8BitProcZ80::execute()
{
    if (_paused || _hardwareIssue || _core->stepping || _core->busy)
        return 0;
    const QScopedValueRollback stepping(_core->stepping, true);
    return _step();
}

int ZR8BitProcZ80::_step()
{
    Chip &chip = _d->chip;
    if (chip.hasMemory() && _isInterruptDue())
        _takeInterrupt();
    if (!chip.hasMemory()) {
        _stop(_noMemoryText(), __LINE__, Q_FUNC_INFO);
        return -1;
    }
    if (chip.isHalted()) {
        _d->rest(1);
        return 1;
    }
    chip.haltedAt = Chip::Nowhere;

    const int pc = chip.get(PC);
    const quint64 cycles = chip.cycles;
    const Decoded decoded = _d->decodeNext();
    const Instruction &instruction = *decoded.instruction;
    _core->isStepsRow = true;
    _d->runDecoded(decoded);
    _core->isStepsRow = false;
    _core->waitsAt = Chip::Nowhere;
    if (_core->stepsEnd == pc && isEndless(instruction)) {
        _core->waitsAt = pc;
        _core->cyclesOfWait = qMax<quint64>(1, chip.cycles - cycles); // a handler may have restored a state
        _d->fetchesOfWait = instruction.fetches;
    }
    chip.movePC(_core->stepsEnd);
    return instruction.length;
}

bool ZR8BitProcZ80::_isInterruptDue() const
{
    const bool isNMIDue = _core->nmi && _d->chip.last != WasPrefix;
    return isNMIDue || (_core->irq && acceptsIRQ());
}

void ZR8BitProcZ80::_takeInterrupt()
{
    Chip &chip = _d->chip;
    const bool isNMI = std::exchange(chip.nmi, false);
    const Chip::Snapshot before = chip.snapshot();
    chip.alone([&] { takeInterrupt(chip, isNMI); });
    chip.announceSince(before);
    chip.movePC(chip.target);
    chip.tellInterrupt(isNMI ? Interrupt::NMI : Interrupt::IRQ);
}

void ZR8BitProcZ80::_stop(const QString &message, int line, const char *function)
{
    _setLastError(message, QString::fromLatin1(sourceFile), line, QString::fromLocal8Bit(function));
    _setHardwareIssue(message);
}

} // namespace ZR
