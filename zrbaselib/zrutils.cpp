#include <zrbaselib/zrutils.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <filesystem>
#include <limits>
#include <new>

namespace ZR {

namespace {

constexpr qsizetype ChunkSize = 0x10000;

/// The most bytes that are taken from a file of unknown size, which may have no end.
qsizetype sizeLimit(const QString &path)
{
    constexpr qsizetype LargestOfDevice = 0x100000;
    constexpr qsizetype LargestOfPipe = std::numeric_limits<int>::max(); // no memory block is larger
    std::error_code noStatus;
    const bool isDevice = std::filesystem::is_character_file(QFileInfo(path).filesystemFilePath(), noStatus);
    return isDevice ? LargestOfDevice : LargestOfPipe;
}

/// Appends to data what a file has, up to its end. Returns false when there is more than the limit.
bool readWithin(qsizetype limit, QFile &file, QByteArray &data)
{
    while (data.size() <= limit) {
        const QByteArray chunk = file.read(ChunkSize);
        if (chunk.isEmpty())
            return true;
        data += chunk;
    }
    return false;
}

} // namespace

bool ZRUtils::readFile(const QString &path, QByteArray &data)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    try {
        data.clear();
        if (!file.isSequential())
            data = file.readAll();
        else if (!readWithin(sizeLimit(path), file, data))
            return false;
    } catch (const std::bad_alloc &) {
        return false;
    }
    return file.error() == QFileDevice::NoError;
}

} // namespace ZR
