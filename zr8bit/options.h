#pragma once

#include <zr8bitkit/zr8bitmachine.h>

#include <QtCore/QSize>
#include <QtCore/QString>

#include <CLI/CLI.hpp>

#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

// What the sub-commands share of their command lines, and what lets the parser store options in a QString.

/// Reads the value of an option, which is UTF-8. The parser finds it by the type of the target.
bool lexical_cast(const std::string &value, QString &target);

// The parser takes each type with a value_type for a wrapper of one value, here of a QChar.
template <>
struct CLI::detail::is_wrapper<QString> : std::false_type
{
};

/// The numbers that an option takes.
struct NumberRange
{
    int smallest = 0;
    int largest = std::numeric_limits<int>::max();
};

/// The number that is the value of an option. Ends parsing when it is none or out of the range, with a
/// message in which what names it, as in "a pitch".
int parseNumber(const std::string &name, const QString &value, const QString &what, NumberRange range);

/// Adds an option that takes a number, written as 512, 0x200 or $200. Any other value is a wrong command
/// line. target must live until the command line has been parsed.
CLI::Option *addNumberOption(CLI::App &command, const std::string &name, const std::string &valueName,
                             NumberRange range, std::optional<int> &target, const std::string &description);

/// Adds an option that takes a size in pixels, written as 128x240, with sides from 1 to a longest one. Any
/// other value is a wrong command line.
CLI::Option *addSizeOption(CLI::App &command, const std::string &name, int longestSide,
                           std::optional<QSize> &target, const std::string &description);

/// Adds an option that takes one of two or more words, and calls choose with its index. Any other value is a
/// wrong command line.
void addWordOption(CLI::App &command, const std::string &name, const QStringList &words,
                   const std::function<void(size_t)> &choose, const std::string &description);

/// Adds the option --instructions, which takes the words documented and all.
void addInstructionsOption(CLI::App &command, ZR::ZR8BitMachine::Instructions &target,
                           const std::string &defaultText);

/// Adds the argument INPUT, a file to read or "-" for standard input, which it is by default.
void addInputArgument(CLI::App &command, QString &target, const std::string &description);

/// Adds the option -o, a file to write or "-" for standard output, which it is by default.
void addOutputOption(CLI::App &command, QString &target, const std::string &description);

/// The input and the output of a conversion.
struct Files
{
    QString input = QStringLiteral("-");
    QString output = QStringLiteral("-");
};

/// Adds both for a conversion that takes any file.
void addFiles(CLI::App &command, Files &files);

/// Adds a command whose help text begins with examples. Each works by itself and without a warning, from the
/// folder that holds the folder examples.
CLI::App *addCommand(CLI::App &parent, const std::string &name, const std::string &description,
                     const std::vector<std::string> &examples);

/// Ends parsing: the value of an option is not what it takes.
[[noreturn]] void failOption(const std::string &name, const QString &value, const QString &expected);
