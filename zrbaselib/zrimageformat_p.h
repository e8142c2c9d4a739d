#pragma once

// Private to the two libraries, and not installed.

#include <QtGui/QColorSpace>
#include <QtGui/QImage>

#include <cstring>

namespace ZR {

/// The image as QImage::convertToFormat() gives it, but made row by row: for a larger part Qt waits for
/// threads of its pool, and waits for ever where the system starts none. Formats are of whole bytes a pixel.
/// A null image when image is one or there is not enough memory.
inline QImage toFormat(const QImage &image, QImage::Format format,
                       Qt::ImageConversionFlags flags = Qt::AutoColor)
{
    if (image.isNull() || image.format() == format)
        return image;
    QImage result(image.size(), format);
    if (result.isNull())
        return result;
    for (int y = 0; y < image.height(); ++y) {
        QImage row = image.copy(0, y, image.width(), 1).convertToFormat(format, flags);
        if (row.isNull())
            return row;
        const int rowSize = image.width() * row.depth() / 8;
        std::memcpy(result.scanLine(y), row.constScanLine(0), static_cast<size_t>(rowSize));
        if (y == 0)
            result.setColorSpace(row.colorSpace());
    }
    result.setDevicePixelRatio(image.devicePixelRatio());
    result.setDotsPerMeterX(image.dotsPerMeterX());
    result.setDotsPerMeterY(image.dotsPerMeterY());
    result.setOffset(image.offset());
    for (const QString &key : image.textKeys())
        result.setText(key, image.text(key));
    return result;
}

} // namespace ZR
