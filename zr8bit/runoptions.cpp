#include "runoptions.h"

#include "files.h"
#include "labels.h"

#include <zr8bitkit/zrnumbers.h>

using ZR::ZRNumbers;

namespace {

/// A number of an option, of 0 or more; nothing for any other text.
std::optional<int> parseSize(const QString &text)
{
    const std::optional<int> number = ZRNumbers::parse(text);
    return number && *number >= 0 ? number : std::nullopt;
}

/// A number, or what may be a label. Which of them are addresses is known when the labels have been read.
std::optional<QString> parseAddress(const QString &text)
{
    const bool mayBeLabel =
        !text.isEmpty() && (text[0].isLetter() || QStringLiteral("_.@?!").contains(text[0]));
    return mayBeLabel || ZRNumbers::parse(text) ? std::optional(text) : std::nullopt;
}

std::optional<RegisterOption> parseRegister(const QString &text)
{
    const qsizetype sign = text.lastIndexOf(u'=');
    const std::optional<int> number = ZRNumbers::parse(text.mid(sign + 1));
    if (sign < 1 || !number)
        return std::nullopt;
    return RegisterOption{text.left(sign), *number};
}

std::optional<MemoryPart> parsePart(const QString &text)
{
    const std::optional<QString> address = parseAddress(text.section(u':', 0, -2)); // a label may have colons
    const std::optional<int> length = parseSize(text.section(u':', -1));
    if (!address || !length)
        return std::nullopt;
    return MemoryPart{QString(), *address, *length};
}

std::optional<MemoryPart> parseFilePart(const QString &text)
{
    const qsizetype at = text.lastIndexOf(u'@');
    std::optional<MemoryPart> part = parsePart(text.mid(at + 1));
    if (at < 1 || !part)
        return std::nullopt;
    part->file = text.left(at);
    return part;
}

/// A part of one byte needs no length; one of none cannot be touched.
std::optional<MemoryPart> parseWatch(const QString &text)
{
    std::optional<MemoryPart> part = parsePart(text);
    if (!part)
        part = parsePart(text + QStringLiteral(":1"));
    return part && part->length > 0 ? part : std::nullopt;
}

std::optional<OutputPlace> parseOutput(const QString &text)
{
    const QString port = QStringLiteral("port:");
    const bool isPort = text.startsWith(port);
    const std::optional<QString> address = parseAddress(isPort ? text.mid(port.size()) : text);
    if (!address)
        return std::nullopt;
    return OutputPlace{*address, isPort};
}

std::optional<QString> parseText(const QString &text)
{
    return text;
}

/// Reads the value of an option by parse, which gives nothing for one that is not of the form.
template <typename Parse>
auto parsed(const std::string &name, const std::string &form, const QString &text, Parse parse)
{
    const auto value = parse(text);
    if (!value)
        failOption(name, text,
                   QStringLiteral("of the form %1, with numbers written as 512, 0x200 or $200")
                       .arg(QString::fromStdString(form)));
    return *value;
}

/// Adds an option that may be given several times.
template <typename Value, typename Parse>
void addListOption(CLI::App &command, const std::string &name, const std::string &form, QList<Value> &target,
                   Parse parse, const std::string &description)
{
    const auto store = [name, form, parse, &target](const QStringList &texts) {
        for (const QString &text : texts)
            target.append(parsed(name, form, text, parse));
    };
    command.add_option_function<QStringList>(name, store, description + "; may be repeated")
        ->type_name(form)
        ->allow_extra_args(false);
}

/// Adds an option with a value of a form.
template <typename Value, typename Parse>
void addFormOption(CLI::App &command, const std::string &name, const std::string &form,
                   std::optional<Value> &target, Parse parse, const std::string &description)
{
    const auto store = [name, form, parse, &target](const QString &text) {
        target = parsed(name, form, text, parse);
    };
    command.add_option_function<QString>(name, store, description)->type_name(form);
}

void addFileOption(CLI::App &command, const std::string &name, QString &target,
                   const std::string &description)
{
    command.add_option(name, target, description)->type_name("FILE");
}

/// What is there before the run.
void addStartOptions(CLI::App &command, RunOptions &options)
{
    addListOption(command, "--load", "FILE@ADDRESS", options.loads, parseText,
                  "Copy a file into the memory; without @ADDRESS a .prg or Intel HEX file says where to");
    addListOption(command, "--set", "REGISTER=VALUE", options.registers, parseRegister,
                  "Set a register, as in XR=2");
    command.add_flag("--reset", options.reset, "Reset the processor, which starts at its reset vector then");
    addFormOption(command, "--start", "ADDRESS", options.start, parseAddress, "Where to start");
    addLabelsOption(command, options.labels,
                    "Read labels that an assembler wrote, to be shown, and to be given as addresses");
    addFileOption(command, "--load-state", options.loadState, "Begin with the state of this file");
}

/// What ends the run.
void addEndOptions(CLI::App &command, RunOptions &options)
{
    addListOption(command, "--until", "ADDRESS", options.until, parseAddress,
                  "End before the instruction at this address; a run that ends elsewhere is a failure");
    addNumberOption(command, "--steps", "N", {}, options.steps, "End after this many instructions");
    addNumberOption(command, "--cycles", "N", {}, options.cycles, "End after this many cycles");
    addFormOption(command, "--watch", "ADDRESS[:LENGTH]", options.watch, parseWatch,
                  "End after an instruction that reads or writes there");
    addFormOption(command, "--exit", "ADDRESS|port:N", options.exit, parseOutput,
                  "End when a byte is written there, with it as exit code");
}

/// What is seen of the run.
void addOutputOptions(CLI::App &command, RunOptions &options)
{
    addFormOption(command, "--output", "ADDRESS|port:N", options.output, parseOutput,
                  "Print each byte that is written there");
    command.add_flag("--trace", options.trace, "Print a line for each instruction");
    addNumberOption(command, "--history", "N", {0, 256}, options.history,
                    "Print the last N instructions of a run that fails, 256 at most");
    addListOption(command, "--dump", "ADDRESS:LENGTH", options.dumps, parsePart,
                  "Print a part of the memory after the run");
    addListOption(command, "--save", "FILE@ADDRESS:LENGTH", options.saves, parseFilePart,
                  "Write a part of the memory to a file after the run");
    addFileOption(command, "--save-state", options.saveState, "Write the state to a file after the run");
    command.add_flag("--log", options.log,
                     "Print every failure with its source file, line and function as it happens");
}

} // namespace

void addRunOptions(CLI::App &command, RunOptions &options)
{
    addStartOptions(command, options);
    addEndOptions(command, options);
    addOutputOptions(command, options);
}

void refuseStandardOutput(const std::string &option, const QString &path)
{
    if (isStandardStream(path))
        failOption(option, path, QStringLiteral("a file: standard output has the report of the run"));
}
