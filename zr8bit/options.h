#pragma once

#include <QtCore/QString>

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

/// The numbers that an option takes.
struct NumberRange
{
    int smallest = 0;
    int largest = std::numeric_limits<int>::max();
};

/// Adds an option that takes a number, written as 512, 0x200 or $200. Any other value is a wrong command
/// line. target must live until the command line has been parsed.
CLI::Option *addNumberOption(CLI::App &command, const std::string &name, const std::string &valueName,
                             NumberRange range, std::optional<int> &target, const std::string &description);

/// Adds the argument INPUT, a file to read or "-" for standard input, which it is by default.
void addInputArgument(CLI::App &command, std::string &target, const std::string &description);

/// Adds the option -o, a file to write or "-" for standard output, which it is by default.
void addOutputOption(CLI::App &command, std::string &target, const std::string &description);

/// The input and the output of a conversion.
struct Files
{
    std::string input = "-";
    std::string output = "-";
};

/// Adds both for a conversion that takes any file.
void addFiles(CLI::App &command, Files &files);

/// Adds a command whose help text begins with examples. They work where the examples folder is, by themselves
/// and without a warning.
CLI::App *addCommand(CLI::App &parent, const std::string &name, const std::string &description,
                     const std::vector<std::string> &examples);

/// Ends parsing: the value of an option is not what it takes.
[[noreturn]] void failOption(const std::string &name, const QString &value, const QString &expected);
