#include "files.h"

#include "console.h"
#include "failure.h"
#include "interrupts.h"
#include "progress.h"

#include <zr8bitkit/zrnumbers.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtCore/QScopeGuard>
#include <QtCore/QStringDecoder>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace {

constexpr qint64 MiB = 1 << 20;
constexpr qint64 LargestInput = 256 * MiB; // a device may have no end

bool isStandardStream(const QString &path)
{
    return path == QLatin1String("-");
}

[[noreturn]] void failToRead(const QString &path, const QFileDevice &file)
{
    throw Failure(QStringLiteral("Couldn't read %1: %2").arg(inputName(path), file.errorString()));
}

[[noreturn]] void failToWrite(const QString &path, const QString &reason)
{
    throw Failure(QStringLiteral("Couldn't write '%1': %2").arg(path, reason));
}

/// Whether path is a device or a pipe, which is written to and must not be replaced by a file.
bool isDevice(const QString &path)
{
    const QFileInfo target(path);
    return target.exists() && !target.isFile() && !target.isDir();
}

/// Returns whether all of data could be written. A full disk cuts a write short without an error: only the
/// next write names the cause.
bool writeAll(QIODevice &file, const QByteArray &data)
{
    for (qint64 done = 0; done < data.size();) {
        const qint64 count = file.write(data.constData() + done, data.size() - done);
        if (count <= 0)
            return false;
        done += count;
    }
    return true;
}

/// Opens a file for writing and writes it.
void writeFile(QFileDevice &file, const QString &path, const Writer &write)
{
    if (!file.open(QIODevice::WriteOnly))
        failToWrite(path, file.errorString());
    write(file);
    if (!file.flush())
        failToWrite(path, file.errorString());
}

/// Writes to a device or a pipe. As at standard output, a reader that is gone ends the program.
void writeDevice(const QString &path, const Writer &write)
{
#ifdef SIGPIPE
    const auto restore =
        qScopeGuard([handler = std::signal(SIGPIPE, SIG_DFL)] { std::signal(SIGPIPE, handler); });
#endif
    QFile device(path);
    writeFile(device, path, write);
}

/// What writes all of data, which has to live as long, for the output path.
Writer writerOf(const QString &path, const QByteArray &data)
{
    return [path, &data](QIODevice &file) {
        if (!writeAll(file, data))
            failToWrite(path, file.errorString());
    };
}

/// Standard output as a device.
class StandardOutput : public QIODevice
{
public:
    StandardOutput() { open(QIODevice::WriteOnly); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override
    {
        try {
            printBytes(QByteArray::fromRawData(data, static_cast<qsizetype>(size)));
        } catch (const Failure &failure) {
            setErrorString(failure.text());
            return -1;
        }
        return size;
    }
};

} // namespace

QByteArray readInput(const QString &path)
{
    QFile file(path);
    if (isStandardStream(path)) {
        if (isTerminal(stdin))
            throw InputIsTerminal();
        if (!file.open(stdin, QIODevice::ReadOnly))
            failToRead(path, file);
    } else if (!file.open(QIODevice::ReadOnly)) {
        failToRead(path, file);
    }
    QByteArray data;
    for (QByteArray piece = file.read(MiB); !piece.isEmpty(); piece = file.read(MiB)) {
        data += piece;
        if (data.size() > LargestInput)
            throw Failure(QStringLiteral("%1 is larger than %2 MiB!")
                              .arg(inputName(path), QString::number(LargestInput / MiB)));
    }
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
    if (!bytes.isValidUtf8()) {
        const QByteArray back = text.toUtf8();
        qsizetype valid =
            std::mismatch(bytes.begin(), bytes.end(), back.begin(), back.end()).first - bytes.begin();
        // What stands for a bad sequence may begin with the same bytes.
        while (!bytes.first(valid).isValidUtf8())
            --valid;
        throw Failure(QStringLiteral("%1, line %2: not UTF-8 text, the byte at offset %3 is $%4!")
                          .arg(inputName(path), QString::number(bytes.first(valid).count('\n') + 1),
                               QString::number(valid),
                               ZR::ZRNumbers::hexDigits(static_cast<uchar>(bytes[valid]), 2)));
    }
    if (text.startsWith(QChar::ByteOrderMark))
        text.remove(0, 1);
    return text;
}

void writeOutput(const QString &path, const QByteArray &data)
{
    if (isStandardStream(path)) {
        printBytes(data);
        return;
    }
    writeOutput(path, writerOf(path, data));
}

void writeOutput(const QString &path, const Writer &write)
{
    if (isStandardStream(path)) {
        StandardOutput output;
        write(output);
        return;
    }
    if (isDevice(path)) {
        writeDevice(path, write);
        return;
    }
    const InterruptDelay delay;
    QSaveFile file(path);
    writeFile(file, path, write);
    if (delay.isInterrupted())
        return; // the temporary file goes, and then the program
    if (!file.commit())
        failToWrite(path, file.errorString());
}

void writeFolder(const QString &path, const QList<NamedData> &files)
{
    if (path.isEmpty())
        failToWrite(path, QStringLiteral("A folder needs a name"));
    const QDir folder(path);
    for (const NamedData &file : files) {
        if (QFileInfo(folder.filePath(file.name)).isDir())
            failToWrite(folder.filePath(file.name), QStringLiteral("It is a folder"));
    }
    // All are written to a temporary folder first: what cannot be written stops the command before anything
    // has been replaced.
    if (!folder.mkpath(QStringLiteral(".")))
        failToWrite(path, QStringLiteral("The folder cannot be made"));
    const InterruptDelay delay;
    const QTemporaryDir staging(folder.filePath(QStringLiteral(".zr8bit-XXXXXX")));
    if (!staging.isValid())
        failToWrite(path, staging.errorString());
    Progress progress;
    qint64 done = 0;
    for (const NamedData &file : files) {
        QFile staged(staging.filePath(file.name)); // need not reach the disk before it is renamed
        writeFile(staged, staged.fileName(), writerOf(staged.fileName(), file.data));
        progress.show(QStringLiteral("files"), ++done, files.size());
        if (delay.isInterrupted())
            return;
    }
    for (const NamedData &file : files) {
        std::error_code error;
        std::filesystem::rename(QFileInfo(staging.filePath(file.name)).filesystemFilePath(),
                                QFileInfo(folder.filePath(file.name)).filesystemFilePath(), error);
        if (error)
            failToWrite(folder.filePath(file.name), QString::fromLocal8Bit(error.message()));
    }
}

QString inputName(const QString &path)
{
    return isStandardStream(path) ? QStringLiteral("standard input")
                                  : QLatin1Char('\'') + path + QLatin1Char('\'');
}
