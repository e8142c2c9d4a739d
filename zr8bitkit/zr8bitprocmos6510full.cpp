#include <zr8bitkit/zr8bitprocmos6510full.h>

#include "zr8bitprocmos6510full_p.h"

#include <cstring>
#include <utility>

namespace ZR {

using namespace MOS6510;

namespace {

constexpr char sourceFile[] = "zr8bitkit/zr8bitprocmos6510full";

constexpr int AddressSpace = 0x10000;
constexpr int StackPointerOfReset = 0xFD;
constexpr int CyclesOfInterrupt = 7;

constexpr const char *registerIds[] = {"AC", "XR", "YR", "SP", "PS", "PC"}; // by Register

/// The block that the registers are views on. The processor reaches its bytes without the lock: registers are
/// for one thread.
class RegisterBlock : public ZR8BitRAM
{
public:
    RegisterBlock() { setContent(QByteArray(RegisterBytes, '\0')); }

    quint8 *bytes() { return reinterpret_cast<quint8 *>(_content.data()); }
};

/// The bytes of the instruction at PC, those behind its end being undefined. Opcode and first operand byte
/// come by one access to the memory, where it has both.
std::array<char, 3> fetch(const Chip &chip)
{
    const int pc = chip.programCounter();
    const bool hasBoth = pc + 1 < qMin(chip.memory->size(), AddressSpace);
    const int word = hasBoth ? chip.memory->wordValue(pc) : chip.memory->byteValue(pc);
    std::array<char, 3> bytes = {static_cast<char>(word), static_cast<char>(word >> 8)};
    const int length = instructions[word & ByteMask].mode().length;
    for (int i = hasBoth ? 2 : 1; i < length; ++i)
        bytes[static_cast<std::size_t>(i)] = chip.memory->byteValue((pc + i) & AddressMask);
    return bytes;
}

/// Runs the instruction at PC, but leaves PC to the caller.
void perform(Chip &chip, const Instruction &instruction, const char *params)
{
    const Mnemonic &mnemonic = instruction.mnemonic();
    const Mode &mode = instruction.mode();
    const int low = mode.length > 1 ? static_cast<quint8>(params[0]) : 0;
    const int high = mode.length > 2 ? static_cast<quint8>(params[1]) : 0;
    chip.setFlag(FlagUnused, true);
    chip.pc = chip.programCounter();
    chip.target = (chip.pc + mode.length) & AddressMask;
    chip.base = InChip;
    chip.address = mode.locate(chip, low | high << 8);
    chip.cycles += static_cast<quint64>(instruction.cycles());
    if (mnemonic.access == Read && chip.crosses())
        ++chip.cycles;

    const bool reads = mnemonic.access == Read || mnemonic.access == Modify;
    const int result = mnemonic.effect(chip, reads ? chip.operand() : 0);
    if (mnemonic.access == Write || mnemonic.access == Modify)
        chip.putBack(result);
}

/// What a host reads behind the title of a row: the mode, what is special, and the assembler's form.
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

} // namespace

struct ZR8BitProcMOS6510Full::Private
{
    using Snapshot = std::array<quint8, RegisterBytes>;

    Snapshot snapshot() const
    {
        Snapshot bytes;
        std::memcpy(bytes.data(), chip.registers, bytes.size());
        return bytes;
    }
    /// Lets the registers announce that they changed; PC is left to the caller.
    void announceSince(const Snapshot &before)
    {
        const Snapshot now = snapshot();
        for (std::size_t reg = AC; reg < PC; ++reg) {
            if (now[reg] != before[reg])
                Q_EMIT registers[reg]->onValueChanged();
        }
    }
    void movePC(int target)
    {
        chip.set(PC, target);
        chip.set(PCHigh, target >> 8);
        Q_EMIT registers[PC]->onValueChanged();
    }

    RegisterBlock block;
    Chip chip = {block.bytes()};
    std::array<ZR8BitRegister *, PC + 1> registers = {};        ///< the base's, by Register
    std::array<ZR8BitProcCommand *, OpcodeCount> commands = {}; ///< rows of instructions, by opcode
    bool undocumented = false;
    bool irq = false;
    bool nmi = false;
    bool stepping = false; ///< whether the handler that runs next is that of a step
    int target = 0;        ///< where PC goes when the step ends
};

ZR8BitProcMOS6510Full::ZR8BitProcMOS6510Full(const QString &name, QObject *parent)
    : ZR8BitProcMOS6510(name, parent)
    , _d(std::make_unique<Private>())
{
}

ZR8BitProcMOS6510Full::~ZR8BitProcMOS6510Full() = default;

const QString ZR8BitProcMOS6510Full::className()
{
    return QStringLiteral("ZR8BitProcMOS6510Full");
}

void ZR8BitProcMOS6510Full::setUndocumented(bool undocumented)
{
    _d->undocumented = undocumented;
}

bool ZR8BitProcMOS6510Full::init()
{
    const bool initialised = ZR8BitProcMOS6510::init();
    return _initRegisters() && initialised && _initCommands();
}

quint64 ZR8BitProcMOS6510Full::cycles() const
{
    return _d->chip.cycles;
}

void ZR8BitProcMOS6510Full::reset()
{
    resetHardwareIssue();
    _d->nmi = false;
    if (!_d->registers[PC])
        return;

    Chip &chip = _d->chip;
    const Private::Snapshot before = _d->snapshot();
    chip.memory = _mainMemory;
    chip.set(SP, StackPointerOfReset);
    chip.setFlags(FlagI | FlagUnused, FlagI | FlagUnused);
    chip.delayedI.reset();
    _d->target = _mainMemory ? chip.word(VectorReset) : 0;
    _d->announceSince(before);
    _d->movePC(_d->target);
}

void ZR8BitProcMOS6510Full::setIRQ(bool active)
{
    _d->irq = active;
}

void ZR8BitProcMOS6510Full::triggerNMI()
{
    _d->nmi = true;
}

int ZR8BitProcMOS6510Full::execute()
{
    if (_paused || _hardwareIssue)
        return 0;
    if (!_mainMemory || !_d->registers[PC])
        return ZR8BitProcMOS6510::execute(); // reports what is missing

    _d->chip.memory = _mainMemory;
    _takeInterrupt();
    const auto bytes = fetch(_d->chip);
    const auto opcode = static_cast<quint8>(bytes[0]);
    ZR8BitProcCommand *command = _d->commands[opcode];
    if (!command)
        return ZR8BitProcMOS6510::execute(); // reports the opcode, or runs a row that a derived class added

    _d->target = _d->chip.programCounter() + instructions[opcode].mode().length;
    _d->stepping = true;
    const int length = command->exec(&bytes[1], sizeof bytes - 1);
    _d->stepping = false;
    _d->movePC(_d->target);
    return length;
}

void ZR8BitProcMOS6510Full::mc_ADC(ZR8BitProcCommand *pCommand, const char *params)
{
    if (instructions[pCommand->code()].mnemonic().effect == Effects::adc)
        _run(pCommand, params);
    else
        ZR8BitProcMOS6510::mc_ADC(pCommand, params); // reports that it is no ADC
}

bool ZR8BitProcMOS6510Full::_initRegisters()
{
    _d->block.setValue(QByteArray(RegisterBytes, '\0'), 0);
    for (int position = AC; position <= PC; ++position) {
        const QString id = QString::fromLatin1(registerIds[position]);
        ZR8BitRegister *reg = _registers.value(id);
        if (!reg || !reg->init(id, reg->regType(), position, &_d->block))
            return false;
        _d->registers[static_cast<std::size_t>(position)] = reg;
    }
    return true;
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
        if (!command) {
            _setLastError(_commands.lastErrorStr(), QString::fromLatin1(sourceFile), __LINE__,
                          QString::fromLocal8Bit(Q_FUNC_INFO));
            return false;
        }
        // The base has connected its rows of ADC, to the slot mc_ADC of this class.
        if (instruction.mnemonic().effect != Effects::adc)
            connect(command, &ZR8BitProcCommand::execute, this, &ZR8BitProcMOS6510Full::_run,
                    Qt::DirectConnection);
        _d->commands[code] = command;
    }
    return true;
}

void ZR8BitProcMOS6510Full::_run(ZR8BitProcCommand *pCommand, const char *params)
{
    const Instruction &instruction = instructions[pCommand->code()];
    Chip &chip = _d->chip;
    chip.fetched = std::exchange(_d->stepping, false);
    chip.memory = _mainMemory;
    if (!_mainMemory && instruction.needsMemory()) {
        _stop(ZR8BitProcMOS6510::tr("Main memory must be defined!"), __LINE__, Q_FUNC_INFO);
        return;
    }

    const Private::Snapshot before = _d->snapshot();
    perform(chip, instruction, params);
    if (chip.fetched)
        _d->target = chip.target;
    if (instruction.mnemonic().effect == Effects::jam)
        _stop(tr("The opcode: 0x%1 has stopped the processor until a reset!")
                  .arg(pCommand->code(), 2, 16, QLatin1Char('0')),
              __LINE__, Q_FUNC_INFO);
    _d->announceSince(before);
}

void ZR8BitProcMOS6510Full::_takeInterrupt()
{
    Chip &chip = _d->chip;
    const bool refused = chip.delayedI.value_or(chip.flag(FlagI));
    chip.delayedI.reset();
    if (!_d->nmi && (!_d->irq || refused))
        return;

    const Vector vector = std::exchange(_d->nmi, false) ? VectorNMI : VectorIRQ;
    const Private::Snapshot before = _d->snapshot();
    const int handler = chip.interrupt(chip.programCounter(), 0, vector);
    chip.cycles += CyclesOfInterrupt;
    _d->announceSince(before);
    _d->movePC(handler);
}

void ZR8BitProcMOS6510Full::_stop(const QString &message, int line, const char *function)
{
    _setLastError(message, QString::fromLatin1(sourceFile), line, QString::fromLocal8Bit(function));
    _setHardwareIssue(message);
}

} // namespace ZR
