#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>

class QIODevice;

// Input and output of the sub-commands that convert. "-" means standard input or output.

/// Thrown instead of waiting for what a person may type.
struct InputIsTerminal
{
};

/// All bytes of the input. Throws Failure when they cannot be read or are more than 256 MiB, and
/// InputIsTerminal when they would come from a terminal.
QByteArray readInput(const QString &path);

/// The input as a text, without a byte order mark. Throws as readInput(), and Failure for what is not UTF-8.
QString readUtf8(const QString &path);

/// Writes the output. A file is written whole or not at all: when it cannot be written, throws Failure and
/// leaves an existing file as it was.
void writeOutput(const QString &path, const QByteArray &data);

/// Writes an output piece by piece to the device that it is given. Throws Failure when it cannot.
using Writer = std::function<void(QIODevice &)>;

/// Writes the output in the same way, without keeping all of it in memory.
void writeOutput(const QString &path, const Writer &write);

/// A file by its name within a folder.
struct NamedData
{
    QString name;
    QByteArray data;
};

/// Writes files into a folder, which is made when it does not exist. When one of them cannot be written,
/// throws Failure and leaves the files of the folder as they were. The files are written under other names
/// and renamed at the end: if the system refuses to rename one, those before it have been replaced.
void writeFolder(const QString &path, const QList<NamedData> &files);

/// The input as messages name it: the path in quotes, or "standard input".
QString inputName(const QString &path);
