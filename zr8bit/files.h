#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

// The inputs of the sub-commands. "-" means standard input.

/// Thrown instead of waiting for what a person may type.
struct InputIsTerminal
{
};

/// All bytes of the input. Throws Failure when they cannot be read or are more than 256 MiB, and
/// InputIsTerminal when they would come from a terminal.
QByteArray readInput(const QString &path);

/// The input as a text, without a byte order mark. Throws as readInput(), and Failure for what is not UTF-8.
QString readUtf8(const QString &path);

/// Whether a path stands for standard input or output.
bool isStandardStream(const QString &path);

/// The input as messages name it: the path in quotes, or "standard input".
QString inputName(const QString &path);
