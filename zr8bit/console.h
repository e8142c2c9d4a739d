#pragma once

#include <QtCore/QString>

#include <cstdio>

// Standard output and standard error, which get UTF-8.
//
// When nobody reads standard output any more, as in "zr8bit describe | head -1", the program ends without a
// message, by the signal that says so; where there is no such signal, it is a failure.

/// Thrown when nobody reads standard output any more.
struct ReaderIsGone
{
};

/// Whether a standard stream is a terminal.
bool isTerminal(std::FILE *stream);

/// Writes text to standard output, as it stands. Throws Failure when it cannot be written, or ReaderIsGone.
void print(const QString &text);

/// Writes bytes to standard output in the same way.
void printBytes(const QByteArray &bytes);

/// Makes sure that all that was printed has arrived. Throws as print() when it has not.
void flushOutput();

/// Ends the program by the signal of ReaderIsGone.
[[noreturn]] void endWithoutReader();

/// A text with its control characters shown as in \x0A, so that it does nothing to a terminal.
QString printable(const QString &text);

/// Writes a line to standard error, printable.
void printError(const QString &line);

/// Writes a line to standard error about something that does not stop the command.
void printWarning(const QString &text);

/// While it lives, what other libraries write to standard error by themselves, such as "libpng error: ...",
/// is kept. Its end prints each line as a warning.
class ForeignMessages
{
public:
    ForeignMessages();
    ~ForeignMessages();
    ForeignMessages(const ForeignMessages &) = delete;
    ForeignMessages &operator=(const ForeignMessages &) = delete;

private:
    std::FILE *_kept = nullptr;
    int _standardError = -1;
};

/// From now on each message of Qt's message log is a line on standard error, with its place when it has one.
/// Of the warnings only the first 20 are shown.
void showMessageLog();

/// Prints how many warnings of the message log were not shown.
void finishMessageLog();
