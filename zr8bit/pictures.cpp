#include "pictures.h"

#include "console.h"
#include "failure.h"
#include "files.h"
#include "options.h"

#include <QtCore/QBuffer>
#include <QtGui/QColorSpace>
#include <QtGui/QImageReader>
#include <QtGui/QImageWriter>

#include <algorithm>
#include <limits>

void failTooLarge()
{
    throw Failure(QStringLiteral("The picture becomes too large!"));
}

QImage readPicture(const QString &path)
{
    QByteArray data = readInput(path);
    QBuffer buffer(&data);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    // Qt tells of its own limit in the message log only. It counts four bytes a pixel, and 0 is none.
    const QSize size = reader.size();
    const qint64 limit = qint64(QImageReader::allocationLimit()) << 20;
    if (limit > 0 && 4 * qint64(size.width()) * size.height() > limit)
        throw Failure(
            QStringLiteral("The picture in %1 has %2 x %3 pixels, which is too large!")
                .arg(inputName(path), QString::number(size.width()), QString::number(size.height())));
    QImage picture = reader.read();
    if (picture.isNull())
        throw Failure(
            QStringLiteral("Couldn't read a picture from %1: %2").arg(inputName(path), reader.errorString()));
    // Pixels count as they stand, and a preview with a profile would not show the colours of the TVC.
    picture.setColorSpace(QColorSpace());
    return picture;
}

QByteArray toPng(const QImage &picture)
{
    if (picture.isNull())
        failTooLarge();
    QByteArray png;
    QBuffer buffer(&png);
    QImageWriter writer(&buffer, "png");
    if (!writer.write(picture))
        throw Failure(QStringLiteral("Couldn't make a PNG of %1 x %2 pixels: %3")
                          .arg(picture.width())
                          .arg(picture.height())
                          .arg(writer.errorString()));
    return png;
}

QImage enlarge(const QImage &picture, int scale)
{
    if (std::max(picture.width(), picture.height()) > std::numeric_limits<int>::max() / scale)
        failTooLarge();
    return picture.scaled(picture.size() * scale);
}

void addColorOption(CLI::App &command, const std::string &name, QColor &target,
                    const std::string &description)
{
    const auto store = [name, &target](const QString &value) {
        const QColor color = QColor::fromString(value);
        if (!color.isValid())
            failOption(name, value, QStringLiteral("a colour, written as #ff00ff or magenta"));
        target = QColor(color.rgb()); // pixels are compared with colours of 8 bits
    };
    command.add_option_function<QString>(name, store, description)->type_name("COLOR");
}

void addScaleOption(CLI::App &command, std::optional<int> &target)
{
    constexpr int LargestScale = 64;
    addNumberOption(command, "--scale", "N", {1, LargestScale}, target,
                    "Repeat each pixel N times across and down; 1 by default");
}

qint64 bytesPerRow(int width)
{
    return (qint64(width) + 1) / 2;
}

QByteArray readStream(const QString &path, qint64 unitSize, const QString &units)
{
    QByteArray stream = readInput(path);
    if (stream.isEmpty())
        throw Failure(QStringLiteral("There are no bytes in %1!").arg(inputName(path)));
    if (stream.size() % unitSize != 0)
        printWarning(QStringLiteral("%1 has %2 bytes, %3 bytes would be whole %4 of %5 bytes each")
                         .arg(inputName(path), QString::number(stream.size()),
                              QString::number((stream.size() / unitSize + 1) * unitSize), units,
                              QString::number(unitSize)));
    return stream;
}
