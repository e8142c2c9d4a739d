#include "outputs.h"

#include "console.h"
#include "failure.h"
#include "files.h"
#include "interrupts.h"
#include "progress.h"

#include <zr8bitkit/zrdevice.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLockFile>
#include <QtCore/QSaveFile>
#include <QtCore/QScopeGuard>
#include <QtCore/QTemporaryDir>

#include <csignal>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

namespace {

[[noreturn]] void failToWrite(const QString &path, const QString &reason)
{
    throw Failure(QStringLiteral("Couldn't write '%1': %2").arg(path, reason));
}

/// Whether path is standard output, a device or a pipe, which is written to and must not be replaced by a
/// file.
bool isStream(const QString &path)
{
    const QFileInfo target(path);
    return isStandardStream(path) || (target.exists() && !target.isFile() && !target.isDir());
}

// Files without a buffer say why a write failed: flushing one forgets it when the disk takes a part.
constexpr QIODevice::OpenMode WriteMode = QIODevice::WriteOnly | QIODevice::Unbuffered;

/// Opens a file for writing and writes it.
void writeFile(QFileDevice &file, const QString &path, const Writer &write)
{
    if (!file.open(WriteMode))
        failToWrite(path, file.errorString());
    try {
        write(file);
    } catch (const Failure &) {
        if (file.error() != QFileDevice::NoError)
            failToWrite(path, file.errorString());
        throw;
    }
}

/// What writes all of data for the output path.
Writer writerOf(const QString &path, const QByteArray &data)
{
    return [path, data](QIODevice &file) {
        if (!ZR::ZRDevice::writeAll(file, data))
            failToWrite(path, file.errorString());
    };
}

/// Standard output as a device, which keeps what it threw.
class StandardOutput : public QIODevice
{
public:
    StandardOutput() { open(WriteMode); }
    bool isSequential() const override { return true; }

    void rethrow() const
    {
        if (_thrown)
            std::rethrow_exception(_thrown);
    }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override
    {
        try {
            printBytes(QByteArray::fromRawData(data, static_cast<qsizetype>(size)));
        } catch (...) { // must not go through Qt
            _thrown = std::current_exception();
            return -1;
        }
        return size;
    }

private:
    std::exception_ptr _thrown;
};

void writeStandardOutput(const Writer &write)
{
    StandardOutput output;
    try {
        write(output);
        flushOutput();
    } catch (const Failure &) {
        output.rethrow(); // what came first
        throw;
    }
}

/// Writes to a device or a pipe. As at standard output, a reader that is gone ends the program, unless files
/// wait for their names.
void writeDevice(const QString &path, const Writer &write, bool doFilesWait)
{
#ifdef SIGPIPE
    const auto restore = qScopeGuard(
        [handler = std::signal(SIGPIPE, doFilesWait ? SIG_IGN : SIG_DFL)] { std::signal(SIGPIPE, handler); });
#endif
    QFile device(path);
    writeFile(device, path, write);
}

/// An output under other names. Its end removes what has not been committed.
class Staged
{
public:
    Staged() = default;
    virtual ~Staged() = default;
    Staged(const Staged &) = delete;
    Staged &operator=(const Staged &) = delete;

    /// Gives it its name. Throws Failure when it cannot.
    virtual void commit() = 0;
};

class StagedFile : public Staged
{
public:
    StagedFile(const QString &path, const Writer &write)
        : _path(path)
        , _file(path)
    {
        writeFile(_file, path, write);
    }

    void commit() override
    {
        if (!_file.commit())
            failToWrite(_path, _file.errorString());
    }

private:
    const QString _path;
    QSaveFile _file;
};

class StagedFolder : public Staged
{
public:
    StagedFolder(const QString &path, const QList<NamedData> &files)
        : _folder(made(path))
        , _files(files)
        , _staging(_folder.filePath(QStringLiteral(".zr8bit-XXXXXX")))
    {
        if (!_staging.isValid())
            failToWrite(path, _staging.errorString());
        Progress progress;
        qint64 done = 0;
        for (const NamedData &file : files) {
            const QString target = _folder.filePath(file.name);
            if (QFileInfo(target).isDir())
                failToWrite(target, QStringLiteral("It is a folder"));
            QFile staged(_staging.filePath(file.name)); // need not reach the disk before it is renamed
            writeFile(staged, target, writerOf(target, file.data));
            progress.show(QStringLiteral("files"), ++done, files.size());
            if (InterruptDelay::isInterrupted())
                return;
        }
    }

    void commit() override
    {
        QLockFile lock(_folder.filePath(QStringLiteral(".zr8bit.lock"))); // or two commands mix their files
        if (!lock.lock())
            failToWrite(_folder.path(), QStringLiteral("The folder cannot be locked"));
        for (const NamedData &file : _files) {
            const QFileInfo target(_folder.filePath(file.name));
            std::error_code error;
            std::filesystem::rename(QFileInfo(_staging.filePath(file.name)).filesystemFilePath(),
                                    target.filesystemFilePath(), error);
            if (error)
                failToWrite(target.filePath(), QString::fromLocal8Bit(error.message()));
        }
    }

private:
    static QDir made(const QString &path)
    {
        if (path.isEmpty())
            failToWrite(path, QStringLiteral("A folder needs a name"));
        if (!QDir(path).mkpath(QStringLiteral(".")))
            failToWrite(path, QStringLiteral("The folder cannot be made"));
        return QDir(path);
    }

    const QDir _folder;
    const QList<NamedData> _files;
    const QTemporaryDir _staging;
};

/// Where an output goes in the end, as far as it exists, so that two names of one file become the same.
std::filesystem::path targetOf(const QString &output)
{
    constexpr int MostLinks = 40;
    QFileInfo file(output);
#ifndef Q_OS_WIN
    if (isStandardStream(output))
        file.setFile(QStringLiteral("/dev/stdout"));
#endif
    // What a link leads to may not be there yet.
    for (int i = 0; i < MostLinks && file.isSymLink() && !file.exists(); ++i)
        file.setFile(file.symLinkTarget());
    const std::filesystem::path path = file.filesystemAbsoluteFilePath();
    std::error_code error;
    const std::filesystem::path target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target; // a pipe has no name
}

} // namespace

QString repeatedOutput(const QStringList &paths)
{
    std::vector<std::filesystem::path> targets;
    for (const QString &path : paths) {
        const std::filesystem::path target = targetOf(path);
        for (const std::filesystem::path &other : targets) {
            std::error_code ignored; // of files that do not exist
            if (target == other || std::filesystem::equivalent(target, other, ignored))
                return path;
        }
        targets.push_back(target);
    }
    return {};
}

void Outputs::add(const QString &path, const Writer &write)
{
    _outputs.append({path, write, {}});
}

void Outputs::add(const QString &path, const QByteArray &data)
{
    add(path, writerOf(path, data));
}

void Outputs::addFolder(const QString &path, const QList<NamedData> &files)
{
    _outputs.append({path, {}, files});
}

void Outputs::write()
{
    _refuseRepeated();
    std::optional<InterruptDelay> delay; // what only streams ends at once
    std::vector<std::unique_ptr<Staged>> staged;
    for (const Output &output : _outputs) {
        if (output.write && isStream(output.path))
            continue;
        if (!delay)
            delay.emplace();
        if (output.write)
            staged.push_back(std::make_unique<StagedFile>(output.path, output.write));
        else
            staged.push_back(std::make_unique<StagedFolder>(output.path, output.files));
        if (InterruptDelay::isInterrupted())
            return; // the temporary files go, and then the program
    }
    for (const Output &output : _outputs) {
        if (isStandardStream(output.path) && output.write)
            writeStandardOutput(output.write);
        else if (output.write && isStream(output.path))
            writeDevice(output.path, output.write, !staged.empty());
    }
    if (InterruptDelay::isInterrupted())
        return;
    for (const std::unique_ptr<Staged> &output : staged)
        output->commit();
}

void Outputs::_refuseRepeated() const
{
    const auto refuse = [](const QStringList &paths) {
        const QString repeated = repeatedOutput(paths);
        if (!repeated.isEmpty())
            failToWrite(repeated, QStringLiteral("Another output is the same file"));
    };
    QStringList paths;
    for (const Output &output : _outputs) {
        if (output.write)
            paths += output.path;
    }
    refuse(paths);
    if (paths.isEmpty())
        return;
    for (const Output &output : _outputs) {
        for (const NamedData &file : output.files)
            refuse(paths + QStringList(QDir(output.path).filePath(file.name)));
    }
}

void writeOutput(const QString &path, const QByteArray &data)
{
    Outputs outputs;
    outputs.add(path, data);
    outputs.write();
}

void writeOutput(const QString &path, const Writer &write)
{
    Outputs outputs;
    outputs.add(path, write);
    outputs.write();
}
