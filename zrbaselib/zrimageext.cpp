#include "zrimageformat_p.h"
#include "zrimagesearch_p.h"

#include <zrbaselib/zrimageext.h>

namespace ZR {

namespace {

/// The least alpha of a pixel that counts as opaque.
constexpr int OpaqueAlpha = 128;

ZRColor search(QRgb rgb, const QList<ZRColor> &colors)
{
    const auto closest = closestOf(rgb, colors.cbegin(), colors.cend(),
                                   [](const ZRColor &color) { return color.color().rgb(); });
    return closest != colors.cend() ? *closest : ZRColor();
}

} // namespace

ZRColor ZRImageExt::closestColor(const ZRColor &color, const QList<ZRColor> &colors, ColorCache *cache)
{
    const QRgb rgb = color.color().rgb();
    if (!cache)
        return search(rgb, colors);

    QHash<int, ZRColor> &found = (*cache)[qRed(rgb)][qGreen(rgb)];
    if (const auto place = found.constFind(qBlue(rgb)); place != found.constEnd())
        return *place;
    return *found.insert(qBlue(rgb), search(rgb, colors));
}

QImage ZRImageExt::disableTransparency(const QImage &image, QColor color)
{
    QImage result = toFormat(image, QImage::Format_ARGB32);
    result.detach(); // becomes null when there is not enough memory
    const QRgb replacement = color.rgb();
    for (int y = 0; y < result.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x)
            line[x] = qAlpha(line[x]) < OpaqueAlpha ? replacement : line[x] | 0xFF000000;
    }
    result.reinterpretAsFormat(QImage::Format_RGB32);
    return result;
}

} // namespace ZR
