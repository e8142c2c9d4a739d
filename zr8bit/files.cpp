#include "files.h"

#include "console.h"
#include "failure.h"

#include <zr8bitkit/zrnumbers.h>

#include <QtCore/QFile>
#include <QtCore/QStringDecoder>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

constexpr qint64 MiB = 1 << 20;
constexpr qint64 LargestInput = 256 * MiB; // a device may have no end

[[noreturn]] void failToRead(const QString &path, const QFileDevice &file)
{
    throw Failure(QStringLiteral("Couldn't read %1: %2").arg(inputName(path), file.errorString()));
}

} // namespace

QByteArray readInput(const QString &path)
{
    QFile file(path);
    if (isStandardStream(path)) {
        static bool isRead = false;
        if (std::exchange(isRead, true))
            throw Failure(QStringLiteral("Standard input can be read only once!"));
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

bool isStandardStream(const QString &path)
{
    return path == QLatin1String("-");
}

QString inputName(const QString &path)
{
    return isStandardStream(path) ? QStringLiteral("standard input")
                                  : QLatin1Char('\'') + path + QLatin1Char('\'');
}
