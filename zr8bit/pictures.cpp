#include "pictures.h"

#include "console.h"
#include "failure.h"
#include "files.h"
#include "options.h"

#include <zr8bitkit/zr8bittvcscreen.h>

#include <QtCore/QBuffer>
#include <QtCore/QFileInfo>
#include <QtGui/QColorSpace>
#include <QtGui/QImageReader>
#include <QtGui/QImageWriter>

#include <algorithm>

using Screen = ZR::ZR8BitTVCScreen;

namespace {

constexpr qint64 LargestPixels = 0x4000000;

QString sizeText(const QSize &size)
{
    return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

/// Names of formats as a text: "BMP, GIF and PNG".
QString namesOf(const QByteArrayList &formats, const QString &lastLink)
{
    QStringList names;
    for (const QByteArray &format : formats)
        names += QString::fromLatin1(format);
    return names.first(names.size() - 1).join(QStringLiteral(", ")) + lastLink + names.last();
}

/// Whether a GIF has all its blocks, to the one that ends it. Qt gives what there is of a frame that is cut.
bool isWholeGif(const QByteArray &data)
{
    constexpr char Extension = 0x21;
    constexpr char Frame = 0x2C;
    constexpr char End = 0x3B;
    const auto byteAt = [&data](qsizetype place) {
        return place < data.size() ? static_cast<uchar>(data.at(place)) : 0;
    };
    const auto colorTableSize = [](int flags) { return flags & 0x80 ? 3 << ((flags & 7) + 1) : 0; };
    qsizetype place = 13 + colorTableSize(byteAt(10));
    while (place < data.size() && data.at(place) != End) {
        if (data.at(place) == Extension)
            place += 2;
        else if (data.at(place) == Frame)
            place += 11 + colorTableSize(byteAt(place + 9));
        else
            return false;
        while (byteAt(place) != 0) // blocks of bytes, each after its length; one of none is the last
            place += 1 + byteAt(place);
        ++place;
    }
    return place < data.size();
}

[[noreturn]] void failToRead(const QString &path, const QString &reason)
{
    throw Failure(QStringLiteral("Couldn't read a picture from %1: %2").arg(inputName(path), reason));
}

/// The reason why a reader gives no picture.
QString reasonOf(const QImageReader &reader)
{
    if (reader.error() == QImageReader::UnsupportedFormatError)
        return QStringLiteral("It is none of %1")
            .arg(namesOf(QImageReader::supportedImageFormats(), QStringLiteral(" and ")));
    return reader.errorString();
}

/// The reader's next picture, the right way up. left are the pixels that it may have yet.
QImage nextPicture(QImageReader &reader, const QString &path, qint64 &left)
{
    const QSize size = reader.size();
    left -= qint64(size.width()) * size.height();
    if (left < 0)
        throw Failure(QStringLiteral("The picture in %1 has %2 pixels, which is too large!")
                          .arg(inputName(path), sizeText(size)));
    QImage picture;
    {
        const ForeignMessages messages;
        picture = reader.read();
    }
    if (picture.isNull())
        failToRead(path, reasonOf(reader));
    picture = Screen::toPixels(picture);
    if (picture.isNull())
        failTooLarge();
    // Pixels count as they stand, and a preview with a profile would not show the colours of the TVC.
    picture.setColorSpace(QColorSpace());
    return picture;
}

/// The pictures of an input, up to a number of them.
QList<QImage> readPictures(const QString &path, qsizetype most)
{
    constexpr int Megabytes = (8 * LargestPixels) >> 20; // eight bytes a pixel are the most that formats have
    QByteArray data = readInput(path);
    QBuffer buffer(&data);
    QImageReader reader(&buffer);
    QImageReader::setAllocationLimit(Megabytes);
    reader.setAutoTransform(true);
    if (reader.format() == "gif" && !isWholeGif(data))
        failToRead(path, QStringLiteral("The GIF is cut or damaged"));
    qint64 left = LargestPixels;
    QList<QImage> pictures{nextPicture(reader, path, left)};
    while (pictures.size() < most && reader.supportsAnimation() && reader.canRead())
        pictures.append(nextPicture(reader, path, left));
    if (pictures.size() == most && reader.supportsAnimation() && reader.canRead())
        printWarning(QStringLiteral("%1 has %2 frames, of which the first is taken")
                         .arg(inputName(path))
                         .arg(reader.imageCount()));
    return pictures;
}

/// The formats that pictures are written in. Those of icons are none: they hold small pictures only.
QByteArrayList writtenFormats()
{
    QByteArrayList formats = QImageWriter::supportedImageFormats();
    formats.removeAll("ico");
    formats.removeAll("cur");
    return formats;
}

/// The format that the name of a file asks for: PNG when it asks for none.
QByteArray formatOf(const QString &path)
{
    const QByteArray suffix = QFileInfo(path).suffix().toLatin1().toLower();
    return suffix.isEmpty() ? QByteArrayLiteral("png") : suffix;
}

/// The picture as a file of a format.
QByteArray encode(const QImage &picture, const QByteArray &format)
{
    constexpr int LongestSideOfPng = 1000000;
    if (format == "png" && std::max(picture.width(), picture.height()) > LongestSideOfPng)
        throw Failure(QStringLiteral("A PNG has at most %1 pixels a side, the picture has %2!")
                          .arg(QString::number(LongestSideOfPng), sizeText(picture.size())));
    QByteArray data;
    QBuffer buffer(&data);
    QImageWriter writer(&buffer, format);
    if (!writer.write(picture))
        throw Failure(
            QStringLiteral("Couldn't make a %1 of %2 pixels: %3")
                .arg(QString::fromLatin1(format.toUpper()), sizeText(picture.size()), writer.errorString()));
    return data;
}

/// Throws Failure for a picture in place of bytes. Formats that a few bytes are known by do not count.
void failIfPicture(QByteArray data, const QString &path)
{
    const ForeignMessages messages;
    QBuffer buffer(&data);
    QImageReader reader(&buffer);
    const QByteArray format = reader.format();
    const QByteArrayList formats = {"png", "gif", "jpeg", "bmp", "ppm"};
    if (formats.contains(format) && !reader.read().isNull())
        throw Failure(QStringLiteral("%1 is a picture (%2), not the bytes of one; encode makes these")
                          .arg(inputName(path), QString::fromLatin1(format.toUpper())));
}

/// Whether two pictures of toPixels() have the same pixels.
bool isSame(const QImage &first, const QImage &second)
{
    if (first.size() != second.size())
        return false;
    for (int y = 0; y < first.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(first.constScanLine(y));
        if (!std::equal(row, row + first.width(), reinterpret_cast<const QRgb *>(second.constScanLine(y))))
            return false;
    }
    return true;
}

} // namespace

void failTooLarge()
{
    throw Failure(QStringLiteral("The picture becomes too large!"));
}

QImage readPicture(const QString &path)
{
    return readPictures(path, 1).constFirst();
}

QList<QImage> readFrames(const QString &path)
{
    return readPictures(path, LargestPixels);
}

CLI::Option *addPictureFileOption(CLI::App &command, const std::string &option, QString &target,
                                  const std::string &description)
{
    const std::string name = option.substr(option.find("--"));
    const auto store = [name, &target](const QString &path) {
        const QByteArrayList formats = writtenFormats();
        if (!formats.contains(formatOf(path)))
            failOption(name, path,
                       QStringLiteral("the name of a picture that can be written, which ends in %1")
                           .arg(namesOf(formats, QStringLiteral(" or "))));
        target = path;
    };
    return command.add_option_function<QString>(option, store, description)->type_name("PICTURE");
}

void addPictureOutputOption(CLI::App &command, QString &target)
{
    addPictureFileOption(command, "-o,--output", target,
                         "File for the picture, in the format that its name ends in; standard output by "
                         "default and for -");
}

QByteArray encodePicture(const QImage &picture, const QString &path)
{
    if (picture.isNull())
        failTooLarge();
    const QByteArray format = formatOf(path);
    QByteArray data = encode(picture, format);
    if (format != "png" && !isSame(Screen::toPixels(QImage::fromData(data)), Screen::toPixels(picture)))
        printWarning(QStringLiteral("'%1' has lost colours or transparency, which a PNG keeps").arg(path));
    return data;
}

QImage enlarge(const QImage &picture, int scale)
{
    return Screen::repeatPixels(picture, scale, scale);
}

void addColorOption(CLI::App &command, const std::string &name, QColor &target,
                    const std::string &description)
{
    const auto store = [name, &target](const QString &value) {
        const QColor color = QColor::fromString(value);
        if (!color.isValid() || color.alpha() != 255)
            failOption(name, value, QStringLiteral("an opaque colour, written as #ff00ff or magenta"));
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

QByteArray readStream(const QString &path, qint64 unitSize, const QString &units)
{
    QByteArray stream = readInput(path);
    if (stream.isEmpty())
        throw Failure(QStringLiteral("There are no bytes in %1!").arg(inputName(path)));
    failIfPicture(stream, path);
    if (stream.size() % unitSize != 0)
        printWarning(QStringLiteral("%1 has %2 bytes, %3 bytes would be whole %4 of %5 bytes each")
                         .arg(inputName(path), QString::number(stream.size()),
                              QString::number((stream.size() / unitSize + 1) * unitSize), units,
                              QString::number(unitSize)));
    return stream;
}
