#ifndef ZRIMAGEEXT_H
#define ZRIMAGEEXT_H

#include <zrbaselib/zrbaselib_export.h>
#include <zrbaselib/zrcolor.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtGui/QImage>

namespace ZR {

/// Operations on colours and images. They keep no state and may run on any number of threads at once.
class ZRBASELIB_EXPORT ZRImageExt
{
public:
    /// Colours that were found earlier, by the red, green and blue (0 to 255) of the colour searched for.
    using ColorCache = QHash<int, QHash<int, QHash<int, ZRColor>>>;

    /// The entry of colors that is nearest to color: the one with the least sum of the squared differences of
    /// red, green and blue, each taken as 0 to 255. Of entries equally near the first wins. Alpha plays no
    /// part, and an invalid colour counts as black. Of an empty list the result is an invalid colour.
    ///
    /// With a cache, which may be null, a colour that is in it is not searched for, and one that was searched
    /// for is added. A cache belongs to one list and is the caller's, who keeps other threads off it.
    static ZRColor closestColor(const ZRColor &color, const QList<ZRColor> &colors, ColorCache *cache);

    /// The image in Format_RGB32 and of the same size, in which each transparent pixel, that is one with an
    /// alpha below 128 of 255, has the given colour. Every other pixel keeps its own colour, not multiplied
    /// by alpha, and becomes opaque. A null image when image is one or there is not enough memory.
    static QImage disableTransparency(const QImage &image, QColor color);
};

} // namespace ZR

#endif
