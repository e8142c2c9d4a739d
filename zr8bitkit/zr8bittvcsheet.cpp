#include <zr8bitkit/zr8bittvcsheet.h>

#include <zr8bitlib/zr8bittvccolor16.h>

#include <QtCore/QRect>
#include <QtGui/QPainter>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace ZR {

namespace {

const QString &countKey()
{
    static const QString key = QStringLiteral("Frames");
    return key;
}

bool fail(QString &error, const QString &text)
{
    error = text;
    return false;
}

bool failForMemory(QString &error)
{
    return fail(error, QStringLiteral("There is not enough memory for the pictures of the sprite."));
}

QString sizeText(const QSize &size)
{
    return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

bool checkFrameSize(const QSize &size, QString &error)
{
    return !size.isEmpty() ||
           fail(
               error,
               QStringLiteral("A frame of %1 pixels is empty; it needs at least 1 x 1.").arg(sizeText(size)));
}

/// Copies a part of an image of 32 bits a pixel into another, as it stands.
void copyPixels(const QImage &from, const QRect &part, QImage &to, const QPoint &place)
{
    for (int y = 0; y < part.height(); ++y) {
        const auto *source = reinterpret_cast<const QRgb *>(from.constScanLine(part.y() + y)) + part.x();
        auto *target = reinterpret_cast<QRgb *>(to.scanLine(place.y() + y)) + place.x();
        std::memcpy(target, source, static_cast<size_t>(part.width()) * sizeof(QRgb));
    }
}

/// Makes those pixels of a picture transparent that are so in the mask of its frame.
void applyMask(QImage &picture, const QByteArray &frame)
{
    const qint64 plane = frame.size() / 2;
    const qint64 bytesPerRow = (qint64(picture.width()) + 1) / 2;
    for (int y = 0; y < picture.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            const qint64 place = y * bytesPerRow + x / 2;
            const int bits = x % 2 == 0 ? 0xAA : 0x55;
            if (place < plane && (frame.at(plane + place) & bits) == bits)
                line[x] &= 0x00FFFFFF;
        }
    }
}

bool isTransparent(const QImage &frame)
{
    for (int y = 0; y < frame.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(frame.constScanLine(y));
        if (std::any_of(line, line + frame.width(), [](QRgb pixel) { return qAlpha(pixel) != 0; }))
            return false;
    }
    return true;
}

/// Drops the cells that join() filled the last row up with. A sheet that has been drawn on since may hold
/// frames there, which are not transparent.
void dropFilling(const QString &count, int columns, QList<QImage> &frames)
{
    const qsizetype joined = count.toLongLong(); // 0 when there is none
    if (joined <= frames.size() - columns || joined >= frames.size() ||
        !std::all_of(frames.begin() + joined, frames.end(), isTransparent))
        return;
    frames.resize(joined);
}

} // namespace

bool ZR8BitTVCSheet::framesOfSprite(const QByteArray &sprite, const QSize &size, QList<QImage> &frames,
                                    QString &error)
try {
    if (!checkFrameSize(size, error))
        return false;
    const qint64 rowSize = (qint64(size.width()) + 1) / 2;
    const qint64 frameSize = 2 * rowSize * size.height();
    QList<QImage> found;
    for (qint64 offset = 0; offset < sprite.size() && sprite.size() - offset != rowSize;
         offset += frameSize) {
        const QByteArray frame = sprite.mid(offset, frameSize);
        QImage picture = ZR8BitTVCColor16::QImageFromTVC16SpriteFrame(frame, size.width());
        picture.convertTo(QImage::Format_ARGB32);
        if (picture.isNull())
            return failForMemory(error);
        applyMask(picture, frame);
        found.append(picture);
    }
    if (found.isEmpty())
        return fail(error, QStringLiteral("There is no frame in the sprite."));
    frames = found;
    return true;
} catch (const std::bad_alloc &) {
    return failForMemory(error);
}

bool ZR8BitTVCSheet::cut(const QImage &sheet, const QSize &size, QList<QImage> &frames, QString &error)
{
    if (!checkFrameSize(size, error))
        return false;
    if (sheet.isNull())
        return fail(error, QStringLiteral("The sheet is empty."));
    if (sheet.width() % size.width() != 0 || sheet.height() % size.height() != 0)
        return fail(error,
                    QStringLiteral("The sheet has %1 pixels, which is no whole number of frames of %2.")
                        .arg(sizeText(sheet.size()), sizeText(size)));
    const QImage source = sheet.convertToFormat(QImage::Format_ARGB32);
    QList<QImage> found;
    for (int y = 0; y < source.height(); y += size.height()) {
        for (int x = 0; x < source.width(); x += size.width()) {
            QImage frame(size, QImage::Format_ARGB32);
            if (frame.isNull())
                return failForMemory(error);
            copyPixels(source, QRect(QPoint(x, y), size), frame, QPoint());
            found.append(frame);
        }
    }
    if (found.isEmpty()) // the sheet could not be converted
        return failForMemory(error);
    dropFilling(sheet.text(countKey()), sheet.width() / size.width(), found);
    frames = found;
    return true;
}

bool ZR8BitTVCSheet::join(const QList<QImage> &frames, int columns, QImage &sheet, QString &error)
{
    if (frames.isEmpty() ||
        std::any_of(frames.begin(), frames.end(), [](const QImage &frame) { return frame.isNull(); }))
        return fail(error, QStringLiteral("A sheet needs at least one frame, and none that is empty."));
    if (columns < 1)
        return fail(error,
                    QStringLiteral("A sheet of %1 columns is empty; it needs at least 1.").arg(columns));
    QSize cell;
    for (const QImage &frame : frames)
        cell = cell.expandedTo(frame.size());
    const qint64 across = std::min<qint64>(columns, frames.size());
    const qint64 down = (frames.size() + across - 1) / across;
    constexpr int Longest = std::numeric_limits<int>::max();
    QImage result;
    if (across <= Longest / cell.width() && down <= Longest / cell.height())
        result = QImage(static_cast<int>(across) * cell.width(), static_cast<int>(down) * cell.height(),
                        QImage::Format_ARGB32);
    if (result.isNull())
        return fail(error, QStringLiteral("A sheet of %1 x %2 frames of %3 pixels is too large.")
                               .arg(QString::number(across), QString::number(down), sizeText(cell)));
    result.fill(Qt::transparent);
    for (qsizetype i = 0; i < frames.size(); ++i) {
        const QImage frame = frames.at(i).convertToFormat(QImage::Format_ARGB32);
        if (frame.isNull())
            return failForMemory(error);
        const QPoint place(static_cast<int>(i % across) * cell.width(),
                           static_cast<int>(i / across) * cell.height());
        copyPixels(frame, frame.rect(), result, place);
    }
    result.setText(countKey(), QString::number(frames.size()));
    sheet = result;
    return true;
}

QImage ZR8BitTVCSheet::onCheckerboard(const QImage &image, const QSize &square)
{
    const QSize side = square.isEmpty() ? QSize(2, 2) : square;
    QImage result(image.size(), QImage::Format_RGB32);
    for (int y = 0; y < result.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x)
            line[x] = (x / side.width() + y / side.height()) % 2 == 0 ? 0xFFD0D0D0 : 0xFFB0B0B0;
    }
    if (!result.isNull())
        QPainter(&result).drawImage(0, 0, image);
    return result;
}

} // namespace ZR
