#include "files.h"

#include "console.h"
#include "failure.h"

#include <CLI/CLI.hpp>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtCore/QStringDecoder>

#include <algorithm>
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
    throw Failure(QStringLiteral("Couldn't read %1: %2").arg(shownPath(path), file.errorString()));
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

void addFileOptions(CLI::App &command, FileOptions &files)
{
    command.add_option("INPUT", files.input, "File to read; \"-\", the default, is standard input");
    command
        .add_option("-o,--output", files.output,
                    "File to write, whole or not at all; \"-\", the default, is standard output")
        ->type_name("OUTPUT");
}

QString shownPath(const QString &path)
{
    return isStandardStream(path) ? QStringLiteral("standard input") : QStringLiteral("'%1'").arg(path);
}

QByteArray readInput(const QString &path)
{
    QFile file(path);
    if (isStandardStream(path)) {
        if (prepareStream(stdin))
            throw CLI::CallForHelp();
        if (!file.open(stdin, QIODevice::ReadOnly))
            failToRead(path, file);
    } else if (!file.open(QIODevice::ReadOnly)) {
        failToRead(path, file);
    }
    QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError)
        failToRead(path, file);
    return data;
}

QString readUtf8(const QString &path)
{
    const QByteArray bytes = readInput(path);
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    const QByteArray back = text.toUtf8();
    if (back != bytes) {
        const auto good = std::mismatch(bytes.begin(), bytes.end(), back.begin(), back.end()).first;
        throw Failure(QStringLiteral("%1 is not UTF-8 text from the byte at offset %2 on!")
                          .arg(shownPath(path), QString::number(good - bytes.begin())));
    }
    if (text.startsWith(QChar::ByteOrderMark))
        text.remove(0, 1);
    return text;
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
