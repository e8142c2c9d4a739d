#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

// Input and output of the sub-commands that convert. "-" means standard input or output.

/// All bytes of the input. Throws Failure when they cannot be read or are more than 256 MiB, and asks for the
/// help text instead of waiting when standard input is a terminal.
QByteArray readInput(const QString &path);

/// The input as a text, without a byte order mark. Throws Failure as readInput(), and for what is not UTF-8.
QString readUtf8(const QString &path);

/// Writes the output: a file whole or not at all. Throws Failure when it cannot be written, with an existing
/// file as it was.
void writeOutput(const QString &path, const QByteArray &data);

/// A file by its name within a folder.
struct NamedData
{
    QString name;
    QByteArray data;
};

/// Writes files into a folder, which is made when it does not exist. Throws Failure when one of them cannot
/// be written, with those that exist as they were. Only should the system refuse to rename a file that is
/// already written, those before it have taken their place.
void writeFolder(const QString &path, const QList<NamedData> &files);

/// A path of readInput() as messages show it.
QString inputName(const QString &path);
