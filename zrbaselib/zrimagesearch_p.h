#pragma once

// Private to the two libraries, and not installed.

#include <QtGui/QRgb>

#include <limits>

namespace ZR {

inline int squaredDistance(QRgb a, QRgb b)
{
    const int red = qRed(a) - qRed(b);
    const int green = qGreen(a) - qGreen(b);
    const int blue = qBlue(a) - qBlue(b);
    return red * red + green * green + blue * blue;
}

/// The search of ZRImageExt::closestColor(), among entries whose colours rgbOf gives: the first of those that
/// are nearest to a colour, last when there are none. Allocates nothing, so that it serves the global objects
/// of a program too.
template <typename Iterator, typename RgbOf>
Iterator closestOf(QRgb rgb, Iterator first, Iterator last, RgbOf rgbOf)
{
    Iterator closest = last;
    int leastDistance = (std::numeric_limits<int>::max)();
    for (; first != last; ++first) {
        const int distance = squaredDistance(rgb, rgbOf(*first));
        if (distance < leastDistance) {
            leastDistance = distance;
            closest = first;
        }
    }
    return closest;
}

} // namespace ZR
