#include "zr8bittvcpixels_p.h"

#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitkit/zr8bittvcsheet.h>

#include <zr8bitlib/zr8bittvccolor16.h>

#include <QtCore/QRect>

#include <algorithm>
#include <limits>
#include <new>

namespace ZR {

namespace {

const QString &countKey()
{
    static const QString key = QStringLiteral("Frames");
    return key;
}

/// The empty result of an operation that fails.
struct Failed
{
    operator QList<QImage>() const { return {}; }
    operator QImage() const { return {}; }
    operator qsizetype() const { return 0; }
};

Failed fail(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return {};
}

Failed failForMemory(QString *error)
{
    return fail(error, QStringLiteral("There is not enough memory for the pictures of the sprite."));
}

Failed failForFrameSize(QString *error, const QString &size)
{
    return fail(error, QStringLiteral("A frame of %1 pixels is empty; it needs at least 1 x 1.").arg(size));
}

QString sizeText(const QSize &size)
{
    return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

/// Copies a part of an image of 32 bits a pixel into another, as it stands.
void copyPixels(const QImage &from, const QRect &part, QImage &to, const QPoint &place)
{
    for (int y = 0; y < part.height(); ++y) {
        const QRgb *source = constLine(from, part.y() + y) + part.x();
        std::copy_n(source, part.width(), line(to, place.y() + y) + place.x());
    }
}

/// Makes those pixels of a picture transparent that are so in the mask of its frame.
void applyMask(QImage &picture, const QByteArray &frame)
{
    const qint64 plane = frame.size() / 2;
    const qint64 bytesPerRow = ZR8BitTVCScreen::bytesPerRow(picture.width());
    for (int y = 0; y < picture.height(); ++y) {
        QRgb *row = line(picture, y);
        for (int x = 0; x < picture.width(); ++x) {
            const qint64 place = y * bytesPerRow + x / 2;
            const int bits = x % 2 == 0 ? 0xAA : 0x55;
            if (place < plane && (frame.at(plane + place) & bits) == bits)
                row[x] &= 0x00FFFFFF;
        }
    }
}

bool isTransparent(const QImage &frame)
{
    for (int y = 0; y < frame.height(); ++y) {
        const QRgb *row = constLine(frame, y);
        if (std::any_of(row, row + frame.width(), [](QRgb pixel) { return qAlpha(pixel) != 0; }))
            return false;
    }
    return true;
}

/// A colour whose components are a part of 255 of what they were.
QRgb portion(QRgb color, int alpha)
{
    const auto of = [alpha](int component) { return (component * alpha + 127) / 255; };
    return qRgb(of(qRed(color)), of(qGreen(color)), of(qBlue(color)));
}

} // namespace

QList<QImage> ZR8BitTVCSheet::framesOfSprite(const QByteArray &sprite, const QSize &size, QString *error)
try {
    if (size.isEmpty())
        return failForFrameSize(error, sizeText(size));
    const qint64 rowSize = ZR8BitTVCScreen::bytesPerRow(size.width());
    const qint64 frameSize = 2 * rowSize * size.height();
    QList<QImage> frames;
    for (qint64 offset = 0; offset < sprite.size() && sprite.size() - offset != rowSize;
         offset += frameSize) {
        const QByteArray frame = sprite.mid(offset, frameSize);
        QImage picture = ZR8BitTVCColor16::QImageFromTVC16SpriteFrame(frame, size.width());
        if (picture.isNull())
            return failForMemory(error);
        picture.reinterpretAsFormat(QImage::Format_ARGB32);
        applyMask(picture, frame);
        frames.append(picture);
    }
    if (frames.isEmpty())
        return fail(error, QStringLiteral("There is no frame in the sprite."));
    return frames;
} catch (const std::bad_alloc &) {
    return failForMemory(error);
}

QList<QImage> ZR8BitTVCSheet::cut(const QImage &sheet, const QSize &size, QString *error)
try {
    QList<QImage> frames;
    const qsizetype count = frameCount(sheet, size, error);
    for (qsizetype i = 0; i < count; ++i) {
        frames.append(frameAt(sheet, size, i));
        if (frames.back().isNull())
            return failForMemory(error);
    }
    return frames;
} catch (const std::bad_alloc &) {
    return failForMemory(error);
}

qsizetype ZR8BitTVCSheet::frameCount(const QImage &sheet, const QSize &size, QString *error)
{
    if (size.isEmpty())
        return failForFrameSize(error, sizeText(size));
    if (sheet.isNull())
        return fail(error, QStringLiteral("The sheet is empty."));
    if (sheet.width() % size.width() != 0 || sheet.height() % size.height() != 0)
        return fail(error,
                    QStringLiteral("The sheet has %1 pixels, which is no whole number of frames of %2.")
                        .arg(sizeText(sheet.size()), sizeText(size)));
    const qsizetype columns = sheet.width() / size.width();
    const qsizetype cells = columns * (sheet.height() / size.height());
    // Cells that join() filled the last row up with are none. A sheet that has been drawn on since may hold
    // frames there, which are not transparent.
    const qsizetype joined = sheet.text(countKey()).toLongLong(); // 0 when there is none
    if (joined <= cells - columns || joined >= cells)
        return cells;
    for (qsizetype i = joined; i < cells; ++i) {
        if (!isTransparent(frameAt(sheet, size, i)))
            return cells;
    }
    return joined;
}

QImage ZR8BitTVCSheet::frameAt(const QImage &sheet, const QSize &size, qsizetype index)
try {
    const qsizetype columns = sheet.width() / size.width();
    const QPoint corner(static_cast<int>(index % columns) * size.width(),
                        static_cast<int>(index / columns) * size.height());
    const QImage part = toFormat(sheet.copy(QRect(corner, size)), QImage::Format_ARGB32);
    QImage frame(size, QImage::Format_ARGB32);
    if (part.isNull() || frame.isNull())
        return QImage();
    copyPixels(part, part.rect(), frame, QPoint()); // without what else the sheet holds, such as texts
    return frame;
} catch (const std::bad_alloc &) {
    return QImage();
}

QImage ZR8BitTVCSheet::join(const QList<QImage> &frames, int columns, QString *error)
try {
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
    QImage sheet;
    if (across <= Longest / cell.width() && down <= Longest / cell.height())
        sheet = QImage(static_cast<int>(across) * cell.width(), static_cast<int>(down) * cell.height(),
                       QImage::Format_ARGB32);
    if (sheet.isNull())
        return fail(error, QStringLiteral("A sheet of %1 x %2 frames of %3 pixels is too large.")
                               .arg(QString::number(across), QString::number(down), sizeText(cell)));
    sheet.fill(Qt::transparent);
    for (qsizetype i = 0; i < frames.size(); ++i) {
        const QImage frame = toFormat(frames.at(i), QImage::Format_ARGB32);
        if (frame.isNull())
            return failForMemory(error);
        const QPoint place(static_cast<int>(i % across) * cell.width(),
                           static_cast<int>(i / across) * cell.height());
        copyPixels(frame, frame.rect(), sheet, place);
    }
    sheet.setText(countKey(), QString::number(frames.size()));
    return sheet;
} catch (const std::bad_alloc &) {
    return failForMemory(error);
}

QImage ZR8BitTVCSheet::withTransparent(const QImage &image, const QColor &color)
try {
    constexpr QRgb ColorBits = 0x00FFFFFF;
    const QRgb wanted = color.rgb() & ColorBits;
    QImage result = toFormat(image, QImage::Format_ARGB32);
    result.detach(); // becomes null when there is not enough memory
    for (int y = 0; y < result.height(); ++y) {
        QRgb *row = line(result, y);
        std::replace_if(
            row, row + result.width(), [wanted](QRgb pixel) { return (pixel & ColorBits) == wanted; }, 0);
    }
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

QImage ZR8BitTVCSheet::onCheckerboard(const QImage &image, const QSize &square)
try {
    const QSize side = square.isEmpty() ? QSize(2, 2) : square;
    const QImage source = toFormat(image, QImage::Format_ARGB32);
    QImage result(source.size(), QImage::Format_RGB32);
    if (source.isNull() || result.isNull())
        return QImage();
    for (int y = 0; y < result.height(); ++y) {
        const QRgb *from = constLine(source, y);
        QRgb *to = line(result, y);
        for (int x = 0; x < result.width(); ++x) {
            const QRgb ground = (x / side.width() + y / side.height()) % 2 == 0 ? 0xFFD0D0D0 : 0xFFB0B0B0;
            const int alpha = qAlpha(from[x]);
            to[x] = portion(from[x], alpha) + (portion(ground, 255 - alpha) & 0x00FFFFFF);
        }
    }
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

} // namespace ZR
