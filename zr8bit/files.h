#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

// Input and output of the sub-commands that convert. An empty path and "-" mean standard input or output.

/// All bytes of the input. Throws Failure when they cannot be read, and asks for the help text instead of
/// waiting when standard input is a terminal.
QByteArray readInput(const QString &path);

/// Writes the output: a file whole or not at all. Throws Failure when it cannot be written, with an existing
/// file as it was.
void writeOutput(const QString &path, const QByteArray &data);
