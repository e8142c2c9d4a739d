#include "zr8bittvcpixels_p.h"

#include <zr8bitkit/zr8bittvcscreen.h>

#include <algorithm>
#include <limits>
#include <new>

namespace ZR {

int ZR8BitTVCScreen::bytesPerRow(int width)
{
    return width > 0 ? width / 2 + width % 2 : 0;
}

QImage ZR8BitTVCScreen::toPixels(const QImage &image)
try {
    return toFormat(image, image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
} catch (const std::bad_alloc &) {
    return QImage();
}

QImage ZR8BitTVCScreen::repeatPixels(const QImage &image, int across, int down)
try {
    constexpr int Largest = (std::numeric_limits<int>::max)();
    if (image.isNull() || across < 1 || down < 1 || image.width() > Largest / across ||
        image.height() > Largest / down)
        return QImage();
    const QImage source = toPixels(image);
    QImage result(source.width() * across, source.height() * down, source.format());
    if (source.isNull() || result.isNull())
        return QImage();
    for (int y = 0; y < source.height(); ++y) {
        const QRgb *from = constLine(source, y);
        QRgb *first = line(result, y * down);
        for (int x = 0; x < source.width(); ++x)
            std::fill_n(first + qsizetype(x) * across, across, from[x]);
        for (int copy = 1; copy < down; ++copy)
            std::copy_n(first, result.width(), line(result, y * down + copy));
    }
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

QImage ZR8BitTVCScreen::screenView(const QImage &image)
{
    return repeatPixels(image, PixelWidth, PixelHeight);
}

} // namespace ZR
