#include "files.h"

#include "console.h"
#include "failure.h"

#include <CLI/CLI.hpp>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#include <cstdio>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

bool isStandardStream(const QString &path)
{
    return path.isEmpty() || path == QLatin1String("-");
}

/// Makes a standard stream carry bytes as they are, and returns whether it is a terminal.
bool prepareStream(FILE *stream)
{
#ifdef Q_OS_WIN
    _setmode(_fileno(stream), _O_BINARY);
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

[[noreturn]] void failToRead(const QString &path, const QFileDevice &file)
{
    throw Failure(QStringLiteral("Couldn't read '%1': %2").arg(path, file.errorString()));
}

[[noreturn]] void failToWrite(const QString &path, const QFileDevice &file)
{
    throw Failure(QStringLiteral("Couldn't write '%1': %2").arg(path, file.errorString()));
}

/// Whether path is a device or a pipe, which is written to and must not be replaced by a file.
bool isDevice(const QString &path)
{
    const QFileInfo target(path);
    return target.exists() && !target.isFile() && !target.isDir();
}

/// Opens a file for writing and writes all of data to it.
void writeFile(QFileDevice &file, const QString &path, const QByteArray &data)
{
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.flush())
        failToWrite(path, file);
}

} // namespace

QByteArray readInput(const QString &path)
{
    QFile file(path);
    if (isStandardStream(path)) {
        if (prepareStream(stdin))
            throw CLI::CallForHelp();
        if (!file.open(stdin, QIODevice::ReadOnly))
            failToRead(QStringLiteral("-"), file);
    } else if (!file.open(QIODevice::ReadOnly)) {
        failToRead(path, file);
    }
    QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError)
        failToRead(path, file);
    return data;
}

void writeOutput(const QString &path, const QByteArray &data)
{
    if (isStandardStream(path)) {
        prepareStream(stdout);
        printBytes(data);
        return;
    }
    if (isDevice(path)) {
        QFile device(path);
        writeFile(device, path, data);
        return;
    }
    QSaveFile file(path);
    writeFile(file, path, data);
    if (!file.commit())
        failToWrite(path, file);
}
