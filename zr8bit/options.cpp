#include "options.h"

#include "console.h"
#include "numbers.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace {

/// Writes the help text behind a text of examples.
class ExamplesFormatter : public CLI::Formatter
{
public:
    explicit ExamplesFormatter(const std::string &examples)
        : _examples(examples)
    {
    }

    std::string make_help(const CLI::App *app, std::string name, CLI::AppFormatMode mode) const override
    {
        return _examples + CLI::Formatter::make_help(app, name, mode);
    }

private:
    std::string _examples;
};

} // namespace

CLI::Option *addNumberOption(CLI::App &command, const std::string &name, const std::string &valueName,
                             NumberRange range, std::optional<int> &target, const std::string &description)
{
    const auto store = [name, range, &target](const std::string &value) {
        target = parseNumber(fromArgument(value));
        if (!target || *target < range.smallest || *target > range.largest)
            failOption(name, fromArgument(value),
                       QStringLiteral("a number from %1 to %2, written as 512, 0x200 or $200")
                           .arg(range.smallest)
                           .arg(range.largest));
    };
    return command.add_option_function<std::string>(name, store, description)->type_name(valueName);
}

void addInputArgument(CLI::App &command, std::string &target, const std::string &description)
{
    command.add_option("INPUT", target, description + "; standard input by default and for -");
}

void addOutputOption(CLI::App &command, std::string &target, const std::string &description)
{
    command.add_option("-o,--output", target, description + "; standard output by default and for -")
        ->type_name("OUTPUT");
}

void addFiles(CLI::App &command, Files &files)
{
    addInputArgument(command, files.input, "File to read");
    addOutputOption(command, files.output, "File to write, whole or not at all");
}

CLI::App *addCommand(CLI::App &parent, const std::string &name, const std::string &description,
                     const std::vector<std::string> &examples)
{
    std::string text = "Examples:\n";
    for (const std::string &example : examples)
        text += "  " + example + '\n';
    CLI::App *command = parent.add_subcommand(name, description);
    command->formatter(std::make_shared<ExamplesFormatter>(text + '\n'));
    return command;
}

void failOption(const std::string &name, const QString &value, const QString &expected)
{
    throw CLI::ValidationError(
        name, QStringLiteral("'%1' is not %2").arg(value, expected).toLocal8Bit().toStdString());
}
