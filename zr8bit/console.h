#pragma once

#include <QtCore/QString>

#include <string>

/// Writes text to standard output, as it stands. Throws Failure when it cannot be written.
void print(const QString &text);

/// Writes bytes to standard output, as they stand. Throws Failure when they cannot be written.
void printBytes(const QByteArray &bytes);

/// Makes sure that all that was printed has arrived. Throws Failure when it has not.
void flushOutput();

/// Writes a line to standard error, with control characters shown as in \x0A.
void printError(const QString &line);

/// Sends what goes to Qt's message log to standard error, a line for each message, but only the first 20 of
/// the warnings.
void showMessageLog();

/// Prints how many warnings of the message log were not shown.
void finishMessageLog();

/// Writes a line to standard error that a person should know of, where the command goes on.
void printWarning(const QString &text);

/// A command line argument as text.
QString fromArgument(const std::string &argument);
