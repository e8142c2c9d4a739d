#include "options.h"

#include <zr8bitkit/zrnumbers.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <algorithm>
#include <memory>

namespace {

/// Writes the help text after a text of examples.
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

/// What a message adds on how a value is written: nothing when it is written that way, and only out of range.
QString spelling(const QString &value, const QString &example)
{
    static const QRegularExpression digits(QStringLiteral("\\$[0-9a-f]+|0x[0-9a-f]+|[0-9]+"),
                                           QRegularExpression::CaseInsensitiveOption);
    const auto form = [](QString text) { return text.remove(u'-').replace(digits, QStringLiteral("N")); };
    return form(value) == form(example.section(u',', 0, 0)) ? QString()
                                                            : QStringLiteral(", written as ") + example;
}

} // namespace

bool lexical_cast(const std::string &value, QString &target)
{
    target = QString::fromStdString(value);
    return true;
}

int parseNumber(const std::string &name, const QString &value, const QString &what, NumberRange range)
{
    const std::optional<int> number = ZR::ZRNumbers::parse(value);
    if (number && *number >= range.smallest && *number <= range.largest)
        return *number;
    failOption(name, value,
               QStringLiteral("%1 from %2 to %3").arg(what).arg(range.smallest).arg(range.largest) +
                   spelling(value, QStringLiteral("512, 0x200 or $200")));
}

CLI::Option *addNumberOption(CLI::App &command, const std::string &name, const std::string &valueName,
                             NumberRange range, std::optional<int> &target, const std::string &description)
{
    const auto store = [name, range, &target](const QString &value) {
        target = parseNumber(name, value, QStringLiteral("a number"), range);
    };
    return command.add_option_function<QString>(name, store, description)->type_name(valueName);
}

CLI::Option *addSizeOption(CLI::App &command, const std::string &name, int longestSide,
                           std::optional<QSize> &target, const std::string &description)
{
    const auto store = [name, longestSide, &target](const QString &value) {
        const QStringList sides = value.split(u'x');
        const QSize size(ZR::ZRNumbers::parse(sides.front()).value_or(0),
                         ZR::ZRNumbers::parse(sides.back()).value_or(0));
        if (sides.size() != 2 || size.isEmpty() || std::max(size.width(), size.height()) > longestSide)
            failOption(name, value,
                       QStringLiteral("a width and a height from 1 to %1").arg(longestSide) +
                           spelling(value, QStringLiteral("128x240")));
        target = size;
    };
    return command.add_option_function<QString>(name, store, description)->type_name("WxH");
}

void addWordOption(CLI::App &command, const std::string &name, const QStringList &words,
                   const std::function<void(size_t)> &choose, const std::string &description)
{
    const auto store = [name, words, choose](const QString &value) {
        const qsizetype index = words.indexOf(value);
        if (index < 0)
            failOption(name, value,
                       words.first(words.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" or ") +
                           words.last());
        choose(static_cast<size_t>(index));
    };
    command.add_option_function<QString>(name, store, description)->type_name(words.join(u'|').toStdString());
}

void addInstructionsOption(CLI::App &command, ZR::ZR8BitMachine::Instructions &target,
                           const std::string &defaultText)
{
    using Instructions = ZR::ZR8BitMachine::Instructions;
    addWordOption(
        command, "--instructions", {QStringLiteral("documented"), QStringLiteral("all")},
        [&target](size_t index) { target = index == 0 ? Instructions::Documented : Instructions::All; },
        "Instructions of the complete processor; " + defaultText);
}

void addInputArgument(CLI::App &command, QString &target, const std::string &description)
{
    command.add_option("INPUT", target, description + "; standard input by default and for -")
        ->type_name("FILE");
}

void addOutputOption(CLI::App &command, QString &target, const std::string &description)
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
    throw CLI::ValidationError(name, QStringLiteral("'%1' is not %2").arg(value, expected).toStdString());
}
