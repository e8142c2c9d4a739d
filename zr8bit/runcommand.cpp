#include "commands.h"
#include "console.h"
#include "failure.h"
#include "machine.h"
#include "numbers.h"
#include "options.h"

#include <zr8bitlib/zr8bitprocbase.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>

#include <memory>
#include <optional>

namespace {

constexpr int LastAddress = 0xFFFF;

/// A text and a number behind a separator, as in FILE@ADDRESS.
struct NumberedText
{
    QString text;
    int number = 0;
};

struct Options
{
    QString settings;
    QString memory;
    QString processor;
    QList<NumberedText> loads;
    QList<NumberedText> registers;
    std::optional<int> start;
    std::optional<int> until;
    std::optional<int> steps;
    bool trace = false;
    bool log = false;
};

/// Runs the main memory's program instruction by instruction, with a line for each when a trace is wanted.
class Run
{
public:
    Run(Machine &machine, bool trace)
        : _memory(machine.memory())
        , _processor(machine.processor())
        , _commands(_processor.commandList())
        , _registers(_processor.registers())
        , _pc(machine.reg(QStringLiteral("PC")))
        , _trace(trace)
    {
    }

    /// Runs to the end that the options ask for, or to the first hardware issue, and returns why it ended.
    QString toEnd(const Options &options);

    QString stateText();

    static QString stateHeader() { return QStringLiteral("AC XR YR SP  NV-BDIZC"); }

private:
    int _address() { return static_cast<unsigned short>(_pc.value()); }
    int _byteAt(int address);
    QString _instructionText(ZR::ZR8BitProcCommand &command);
    void _step();

    ZR::ZR8BitRAM &_memory;
    ZR::ZR8BitProcBase &_processor;
    const QHash<unsigned char, ZR::ZR8BitProcCommand *> _commands;
    const QMap<QString, ZR::ZR8BitRegister *> _registers;
    ZR::ZR8BitRegister &_pc;
    const bool _trace;
};

QString Run::toEnd(const Options &options)
{
    if (_trace)
        print(QStringLiteral("PC    BYTES     INST  %1  CYCLES\n").arg(stateHeader()));
    for (qint64 count = 0;; ++count) {
        if (options.until == _address())
            return QStringLiteral("reached %1 after %2 instructions")
                .arg(addressText(_address()), QString::number(count));
        if (options.steps == count)
            return QStringLiteral("ran %1 instructions").arg(count);
        _step();
        if (_processor.hardwareIssue())
            return QStringLiteral("met a hardware issue at %1 after %2 instructions")
                .arg(addressText(_address()), QString::number(count));
    }
}

void Run::_step()
{
    if (!_trace) {
        _processor.step();
        return;
    }
    ZR::ZR8BitProcCommand *command =
        _commands.value(static_cast<unsigned char>(_byteAt(_address())), nullptr);
    const QString instruction = command ? _instructionText(*command) : QString();
    _processor.step();
    if (command)
        print(QStringLiteral("%1  %2  %3\n")
                  .arg(instruction, stateText(), QString::number(command->cycleCnt()).rightJustified(6)));
}

QString Run::stateText()
{
    QStringList values;
    for (const char *id : {"AC", "XR", "YR", "SP"})
        values += hexDigits(static_cast<unsigned char>(_registers.value(QString::fromLatin1(id))->lo()), 2);
    // A flag that is set shows its letter.
    QString flags = QStringLiteral("NV-BDIZC");
    const int status = _registers.value(QStringLiteral("PS"))->lo();
    for (int i = 0; i < 8; ++i) {
        if (flags.at(i) != QLatin1Char('-') && !(status & (0x80 >> i)))
            flags[i] = QLatin1Char('.');
    }
    return values.join(QLatin1Char(' ')) + QStringLiteral("  ") + flags;
}

int Run::_byteAt(int address)
{
    // The processor reads 0 beyond the end of a short memory, and the memory reports it: once is enough.
    return address < _memory.size() ? static_cast<unsigned char>(_memory.byteValue(address)) : 0;
}

QString Run::_instructionText(ZR::ZR8BitProcCommand &command)
{
    QStringList bytes;
    for (int i = 0; i < command.length(); ++i)
        bytes += hexDigits(_byteAt((_address() + i) & LastAddress), 2);
    return QStringLiteral("%1  %2  %3")
        .arg(hexDigits(_address(), 4), bytes.join(QLatin1Char(' ')).leftJustified(8),
             command.assembly().leftJustified(4));
}

void run(const Options &options)
{
    Machine machine(options.settings, options.memory, options.processor, options.log);
    for (const NumberedText &load : options.loads)
        machine.loadFile(load.text, load.number);
    for (const NumberedText &setting : options.registers)
        machine.setRegister(setting.text, setting.number);
    if (options.start)
        machine.setRegister(QStringLiteral("PC"), *options.start);

    print(QStringLiteral("Machine: %1\n").arg(machine.computer().computerName()));
    Run run(machine, options.trace);
    const QString end = run.toEnd(options);
    print(QStringLiteral("The run %1.\n%2\n%3\n").arg(end, Run::stateHeader(), run.stateText()));
    if (machine.processor().hardwareIssue())
        throw Failure(machine.processor().hardwareIssueMsg());
}

/// Adds an option that may be given several times and takes a text and a number behind a separator.
void addNumberedTextOption(CLI::App &command, const std::string &name, const std::string &form,
                           char separator, QList<NumberedText> &target, const std::string &description)
{
    const auto store = [name, form, separator, &target](const QStringList &values) {
        for (const QString &text : values) {
            const qsizetype place = text.lastIndexOf(QLatin1Char(separator));
            const std::optional<int> number = parseNumber(text.mid(place + 1));
            if (place < 1 || !number)
                failOption(name, text,
                           QStringLiteral("of the form %1, with a number written as 512, 0x200 or $200")
                               .arg(QString::fromStdString(form)));
            target.append({text.left(place), *number});
        }
    };
    command.add_option_function<QStringList>(name, store, description)
        ->type_name(form)
        ->allow_extra_args(false);
}

} // namespace

void addRunCommand(CLI::App &app)
{
    CLI::App *command =
        addCommand(app, "run", "Run a program on a machine of a settings file.",
                   {"zr8bit run examples/example.ini --set XR=2 --set YR=3 --start 0x200 --until 0x216",
                    "zr8bit run examples/example.ini --load examples/all-modes.bin@0 --start 0x200 "
                    "--steps 3 --trace"});
    auto options = std::make_shared<Options>();
    command->add_option("MACHINE.ini", options->settings, "Settings file of the machine")
        ->type_name("FILE")
        ->required();
    command->add_option("--processor", options->processor, "Processor to run; the only one by default")
        ->type_name("NAME");
    command->add_option("--memory", options->memory, "RAM to run in; the only one by default")
        ->type_name("NAME");
    addNumberedTextOption(*command, "--load", "FILE@ADDRESS", '@', options->loads,
                          "Copy a file into the memory; may be repeated");
    addNumberedTextOption(*command, "--set", "REGISTER=VALUE", '=', options->registers,
                          "Set a register, as in XR=2; may be repeated");
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
        "first hardware issue, such as an unknown opcode, which is a failure.");
    command->callback([options] { run(*options); });
}
