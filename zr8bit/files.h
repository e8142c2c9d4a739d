#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <string>

namespace CLI {
class App;
}

// Input and output of the sub-commands that convert. An empty path and "-" mean standard input or output.

struct FileOptions
{
    std::string input;
    std::string output;
};

/// Adds the argument INPUT and the option -o. files must live until the command line has been parsed.
void addFileOptions(CLI::App &command, FileOptions &files);

/// A path as messages show it.
QString shownPath(const QString &path);

/// All bytes of the input. Throws Failure when they cannot be read, and asks for the help text instead of
/// waiting when standard input is a terminal.
QByteArray readInput(const QString &path);

/// The input as a text, without a byte order mark. Throws Failure as readInput(), and for what is not UTF-8.
QString readUtf8(const QString &path);

/// Writes the output: a file whole or not at all. Throws Failure when it cannot be written, with an existing
/// file as it was.
void writeOutput(const QString &path, const QByteArray &data);
