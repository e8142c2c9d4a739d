#pragma once

#include <QtCore/QString>

#include <cstdio>

// Standard output and standard error, which get UTF-8.
//
// When nobody reads standard output any more, as in "zr8bit describe | head -1", the program ends at once and
// without a message, by the signal that says so; where there is no such signal, it is a failure.

/// Whether a standard stream is a terminal.
bool isTerminal(std::FILE *stream);

/// Writes text to standard output, as it stands. Throws Failure when it cannot be written.
void print(const QString &text);

/// Writes bytes to standard output, as they stand. Throws Failure when they cannot be written.
void printBytes(const QByteArray &bytes);

/// Makes sure that all that was printed has arrived. Throws Failure when it has not.
void flushOutput();

/// Writes a line to standard error, with control characters shown as in \x0A.
void printError(const QString &line);

/// Writes a line to standard error about something that does not stop the command.
void printWarning(const QString &text);

/// From now on each message of Qt's message log is a line on standard error, with its place when it has one.
/// Of the warnings only the first 20 are shown.
void showMessageLog();

/// Prints how many warnings of the message log were not shown.
void finishMessageLog();
