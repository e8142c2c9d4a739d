#include "commands.h"
#include "console.h"
#include "failure.h"
#include "files.h"
#include "interrupts.h"
#include "options.h"
#include "progress.h"

#include <zr8bitkit/zr8bitdisassembler.h>
#include <zr8bitkit/zr8bitmachine.h>
#include <zr8bitkit/zr8bitprocmos6510full.h>
#include <zr8bitkit/zrmessagelogger.h>
#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>

#include <limits>
#include <memory>
#include <optional>

using ZR::ZR8BitMachine;
using ZR::ZRNumbers;

namespace {

constexpr int LastAddress = 0xFFFF;

/// A text and a number behind a separator, as in FILE@ADDRESS.
struct NumberedText
{
    QString text;
    int number = 0;
};

/// A part of the memory, as in ADDRESS:LENGTH, and the file that it is for, if any.
struct MemoryPart
{
    QString file;
    int address = 0;
    int length = 0;
};

struct Options
{
    QString settings;
    ZR8BitMachine::Choice choice;
    QList<NumberedText> loads;
    QList<NumberedText> registers;
    QList<MemoryPart> dumps;
    QList<MemoryPart> saves;
    std::optional<int> start;
    std::optional<int> until;
    std::optional<int> steps;
    bool trace = false;
    bool log = false;
};

/// Runs the program of a machine, with a line for each instruction when a trace is wanted.
class Run
{
public:
    Run(ZR8BitMachine &machine, bool trace)
        : _machine(machine)
        , _rows(machine.processor()->commandList())
        , _disassembler(_rows)
        , _registers(machine.processor()->registers())
        , _trace(trace)
    {
    }

    /// Runs to the end that the options ask for, or that the program or a person makes, and returns why it
    /// ended.
    QString toEnd(const Options &options, const InterruptDelay &interrupts);

    /// What the registers hold, and the cycles of a complete processor, below a header.
    QString stateText();

private:
    ZR8BitMachine::RunEnd _run(qint64 count, int until);
    QString _endText(ZR8BitMachine::RunEnd end);
    int _address() { return static_cast<unsigned short>(_registers.value(QStringLiteral("PC"))->value()); }
    QString _registersText();
    static QString _registersHeader() { return QStringLiteral("AC XR YR SP  NV-BDIZC"); }

    ZR8BitMachine &_machine;
    const QHash<unsigned char, ZR::ZR8BitProcCommand *> _rows;
    const ZR::ZR8BitDisassembler _disassembler;
    const QMap<QString, ZR::ZR8BitRegister *> _registers;
    const bool _trace;
};

QString Run::toEnd(const Options &options, const InterruptDelay &interrupts)
{
    constexpr qint64 InstructionsAtOnce = 100'000; // some milliseconds
    if (_trace)
        print(QStringLiteral("PC    BYTES     INSTRUCTION  %1  CYCLES\n").arg(_registersHeader()));
    Progress progress;
    qint64 rest = options.steps ? *options.steps : std::numeric_limits<qint64>::max();
    for (;;) {
        const qint64 count = qMin(rest, _trace ? 1 : InstructionsAtOnce);
        const ZR8BitMachine::RunEnd end = _run(count, options.until.value_or(-1));
        rest -= count;
        if (end != ZR8BitMachine::RunEnd::Count || rest == 0)
            return _endText(end);
        if (interrupts.isInterrupted())
            return QStringLiteral("was interrupted at %1 after %2 instructions")
                .arg(ZRNumbers::addressText(_address()), QString::number(_machine.instructionCount()));
        if (!_trace)
            progress.show(_machine.instructionCount());
    }
}

/// Runs some instructions, or one that is traced.
ZR8BitMachine::RunEnd Run::_run(qint64 count, int until)
{
    if (!_trace)
        return _machine.run(count, until);
    ZR::ZR8BitProcMOS6510Full *complete = _machine.completeProcessor();
    const qint64 countBefore = _machine.instructionCount();
    const quint64 cyclesBefore = complete ? complete->cycles() : 0;
    const auto instruction = _disassembler.instruction(*_machine.memory(), _address());
    const ZR8BitMachine::RunEnd end = _machine.run(count, until);
    if (_machine.instructionCount() == countBefore)
        return end;
    const quint64 cycles = complete
                               ? complete->cycles() - cyclesBefore
                               : _rows.value(static_cast<unsigned char>(instruction.bytes[0]))->cycleCnt();
    print(QStringLiteral("%1  %2  %3\n")
              .arg(ZR::ZR8BitDisassembler::listingLine(instruction).leftJustified(27), _registersText(),
                   QString::number(cycles).rightJustified(6)));
    return end;
}

QString Run::_endText(ZR8BitMachine::RunEnd end)
{
    const QString count = QString::number(_machine.instructionCount());
    const QString address = ZRNumbers::addressText(_address());
    switch (end) {
    case ZR8BitMachine::RunEnd::Address:
        return QStringLiteral("reached %1 after %2 instructions").arg(address, count);
    case ZR8BitMachine::RunEnd::Count:
        return QStringLiteral("ran %1 instructions").arg(count);
    case ZR8BitMachine::RunEnd::EndlessLoop:
        return QStringLiteral("reached an endless loop at %1 after %2 instructions").arg(address, count);
    case ZR8BitMachine::RunEnd::Stopped:
        break;
    }
    return QStringLiteral("met a hardware issue at %1 after %2 instructions").arg(address, count);
}

QString Run::stateText()
{
    QString header = QStringLiteral("PC    ") + _registersHeader();
    QString values = ZRNumbers::hexDigits(_address(), 4) + QStringLiteral("  ") + _registersText();
    if (ZR::ZR8BitProcMOS6510Full *complete = _machine.completeProcessor()) {
        const QString cycles = QString::number(complete->cycles());
        const qsizetype width = qMax<qsizetype>(cycles.size(), 6);
        header += QStringLiteral("  ") + QStringLiteral("CYCLES").rightJustified(width);
        values += QStringLiteral("  ") + cycles.rightJustified(width);
    }
    return header + QLatin1Char('\n') + values + QLatin1Char('\n');
}

QString Run::_registersText()
{
    QStringList values;
    for (const char *id : {"AC", "XR", "YR", "SP"})
        values += ZRNumbers::hexDigits(
            static_cast<unsigned char>(_registers.value(QString::fromLatin1(id))->lo()), 2);
    // A flag that is set shows its letter.
    QString flags = QStringLiteral("NV-BDIZC");
    const int status = _registers.value(QStringLiteral("PS"))->lo();
    for (int i = 0; i < 8; ++i) {
        if (flags.at(i) != QLatin1Char('-') && !(status & (0x80 >> i)))
            flags[i] = QLatin1Char('.');
    }
    return values.join(QLatin1Char(' ')) + QStringLiteral("  ") + flags;
}

/// Loads the machine as the options want it. Throws Failure.
void load(ZR8BitMachine &machine, const Options &options)
{
    if (!machine.loadSettings(options.settings, options.choice)) {
        QString hint;
        if (options.choice.memory.isEmpty() && machine.computer().rams().size() > 1)
            hint = QStringLiteral(" (--memory NAME)");
        else if (options.choice.processor.isEmpty() && machine.computer().processors().size() > 1)
            hint = QStringLiteral(" (--processor NAME)");
        throw Failure(machine.lastErrorStr() + hint);
    }
    for (const NumberedText &load : options.loads) {
        if (!machine.loadBytes(readInput(load.text), load.number))
            throw Failure(
                QStringLiteral("Couldn't load %1! %2").arg(inputName(load.text), machine.lastErrorStr()));
    }
    for (const NumberedText &setting : options.registers) {
        if (!machine.setRegister(setting.text, setting.number))
            throw Failure(machine.lastErrorStr());
    }
    if (options.start)
        machine.setRegister(QStringLiteral("PC"), *options.start);
    for (const MemoryPart &part : options.dumps + options.saves) {
        if (part.length > machine.memory()->size() - part.address)
            throw Failure(QStringLiteral("%1: %2:%3 goes beyond a memory of %4 bytes!")
                              .arg(part.file.isEmpty() ? QStringLiteral("--dump") : QStringLiteral("--save"),
                                   ZRNumbers::addressText(part.address), QString::number(part.length),
                                   QString::number(machine.memory()->size())));
    }
}

QByteArray bytesOf(const MemoryPart &part, ZR8BitMachine &machine)
{
    return machine.memory()->value(part.address, part.length);
}

/// Prints bytes with their address and as text, 16 a line.
void printDump(const QByteArray &bytes, int address)
{
    constexpr qsizetype BytesPerLine = 16;
    for (qsizetype place = 0; place < bytes.size(); place += BytesPerLine) {
        const QByteArray line = bytes.mid(place, BytesPerLine);
        QString text;
        for (const char byte : line)
            text += byte >= ' ' && byte <= '~' ? QLatin1Char(byte) : QLatin1Char('.');
        print(QStringLiteral("%1  %2  |%3|\n")
                  .arg(ZRNumbers::hexDigits(address + static_cast<int>(place), 4),
                       QString::fromLatin1(line.toHex(' ').toUpper()).leftJustified(3 * BytesPerLine - 1),
                       text));
    }
}

void run(const Options &options)
{
    ZR::ZRMessageLogger logger;
    ZR8BitMachine machine;
    if (options.log)
        machine.setLogger(&logger);
    load(machine, options);

    const InterruptDelay interrupts; // not before, when an input may be waited for
    print(QStringLiteral("Machine: %1\n").arg(machine.computer().computerName()));
    Run run(machine, options.trace);
    const QString end = run.toEnd(options, interrupts);
    print(QStringLiteral("The run %1.\n%2").arg(end, run.stateText()));
    for (const MemoryPart &part : options.dumps)
        printDump(bytesOf(part, machine), part.address);
    flushOutput(); // an interrupt would lose it
    if (interrupts.isInterrupted())
        return;
    for (const MemoryPart &part : options.saves)
        writeOutput(part.file, bytesOf(part, machine));
    if (machine.processor()->hardwareIssue())
        throw Failure(machine.processor()->hardwareIssueMsg());
}

/// A number of an option, of 0 or more; nothing for any other text.
std::optional<int> parseSize(const QString &text)
{
    const std::optional<int> number = ZRNumbers::parse(text);
    return number && *number >= 0 ? number : std::nullopt;
}

std::optional<NumberedText> parseNumberedText(const QString &text, QChar separator)
{
    const qsizetype place = text.lastIndexOf(separator);
    const std::optional<int> number = parseSize(text.mid(place + 1));
    if (place < 1 || !number)
        return std::nullopt;
    return NumberedText{text.left(place), *number};
}

std::optional<MemoryPart> parsePart(const QString &text)
{
    const std::optional<int> address = parseSize(text.section(u':', 0, 0));
    const std::optional<int> length = parseSize(text.section(u':', 1));
    if (!address || !length)
        return std::nullopt;
    return MemoryPart{QString(), *address, *length};
}

std::optional<MemoryPart> parseFilePart(const QString &text)
{
    const qsizetype place = text.lastIndexOf(u'@');
    std::optional<MemoryPart> part = parsePart(text.mid(place + 1));
    if (place < 1 || !part)
        return std::nullopt;
    part->file = text.left(place);
    return part;
}

/// Adds an option that may be given several times. parse gives nothing for a value that is not of the form.
template <typename Value, typename Parse>
void addListOption(CLI::App &command, const std::string &name, const std::string &form, QList<Value> &target,
                   Parse parse, const std::string &description)
{
    const auto store = [name, form, parse, &target](const QStringList &texts) {
        for (const QString &text : texts) {
            const std::optional<Value> value = parse(text);
            if (!value)
                failOption(name, text,
                           QStringLiteral("of the form %1, with numbers written as 512, 0x200 or $200")
                               .arg(QString::fromStdString(form)));
            target.append(*value);
        }
    };
    command.add_option_function<QStringList>(name, store, description + "; may be repeated")
        ->type_name(form)
        ->allow_extra_args(false);
}

void addListOptions(CLI::App &command, Options &options)
{
    const auto numberBehind = [](QChar separator) {
        return [separator](const QString &text) { return parseNumberedText(text, separator); };
    };
    addListOption(command, "--load", "FILE@ADDRESS", options.loads, numberBehind(u'@'),
                  "Copy a file into the memory");
    addListOption(command, "--set", "REGISTER=VALUE", options.registers, numberBehind(u'='),
                  "Set a register, as in XR=2");
    addListOption(command, "--dump", "ADDRESS:LENGTH", options.dumps, parsePart,
                  "Print a part of the memory after the run");
    addListOption(command, "--save", "FILE@ADDRESS:LENGTH", options.saves, parseFilePart,
                  "Write a part of the memory to a file after the run, whole or not at all");
}

} // namespace

void addRunCommand(CLI::App &app)
{
    CLI::App *command = addCommand(
        app, "run", "Run a program on a machine of a settings file.",
        {"zr8bit run examples/sieve.ini --load examples/sieve.bin@0x200 --start 0x200 --dump 0x400:216",
         "zr8bit run examples/example.ini --set XR=2 --set YR=3 --start 0x200 --until 0x216 --trace"});
    auto options = std::make_shared<Options>();
    command->add_option("MACHINE.ini", options->settings, "Settings file of the machine")
        ->type_name("FILE")
        ->required();
    command->add_option("--processor", options->choice.processor, "Processor to run; the only one by default")
        ->type_name("NAME");
    command->add_option("--memory", options->choice.memory, "RAM to run in; the only one by default")
        ->type_name("NAME");
    addInstructionsOption(*command, options->choice.instructions, "as the settings say by default");
    addListOptions(*command, *options);
    addNumberOption(*command, "--start", "ADDRESS", {0, LastAddress}, options->start,
                    "Where to start; 0 by default");
    addNumberOption(*command, "--until", "ADDRESS", {0, LastAddress}, options->until,
                    "End before the instruction at this address");
    addNumberOption(*command, "--steps", "N", {}, options->steps, "End after this many instructions");
    command->add_flag("--trace", options->trace, "Print a line for each instruction");
    command->add_flag("--log", options->log,
                      "Print every failure with its source file, line and function as it happens");
    command->footer(
        "Numbers are written as 512, 0x200 or $200. Without --until and --steps the run goes on to the\n"
        "first instruction that jumps to itself, or to the first hardware issue, such as an unknown opcode,\n"
        "which is a failure. Ctrl-C ends it too; nothing is saved then.");
    command->callback([options] { run(*options); });
}
