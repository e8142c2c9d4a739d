#include <zrbaselib/zrimageext.h>

#include <limits>

namespace ZR {

namespace {

/// The least alpha of a pixel that counts as opaque.
constexpr int OpaqueAlpha = 128;

int squaredDistance(QRgb a, QRgb b)
{
    const int red = qRed(a) - qRed(b);
    const int green = qGreen(a) - qGreen(b);
    const int blue = qBlue(a) - qBlue(b);
    return red * red + green * green + blue * blue;
}

ZRColor search(QRgb rgb, const QList<ZRColor> &colors)
{
    const ZRColor *closest = nullptr;
    int leastDistance = std::numeric_limits<int>::max();
    for (const ZRColor &candidate : colors) {
        const int distance = squaredDistance(rgb, candidate.color().rgb());
        if (distance < leastDistance) {
            leastDistance = distance;
            closest = &candidate;
        }
    }
    return closest ? *closest : ZRColor();
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
    QImage result = image.convertToFormat(QImage::Format_ARGB32);
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
