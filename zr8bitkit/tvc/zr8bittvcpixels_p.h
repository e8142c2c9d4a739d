#pragma once

// What pictures and sprites share: rows of 32-bit pixels, their light, and the TVC's colours. Private to the
// kit.

#include <QtGui/QColorSpace>
#include <QtGui/QImage>

#include <array>
#include <cstring>

namespace ZR {

inline const QRgb *constLine(const QImage &image, int y)
{
    return reinterpret_cast<const QRgb *>(image.constScanLine(y));
}

inline QRgb *line(QImage &image, int y)
{
    return reinterpret_cast<QRgb *>(image.scanLine(y));
}

/// The image as QImage::convertToFormat() gives it, in a format of 32 bits, but made row by row: for a larger
/// part Qt waits for threads of its pool, and waits for ever where the system starts none. A null image when
/// image is one or there is not enough memory.
inline QImage toFormat(const QImage &image, QImage::Format format)
{
    if (image.isNull() || image.format() == format)
        return image;
    QImage result(image.size(), format);
    result.setColorSpace(image.colorSpace());
    result.setDevicePixelRatio(image.devicePixelRatio());
    result.setDotsPerMeterX(image.dotsPerMeterX());
    result.setDotsPerMeterY(image.dotsPerMeterY());
    for (const QString &key : image.textKeys())
        result.setText(key, image.text(key));
    for (int y = 0; y < result.height(); ++y) {
        const QImage row = image.copy(0, y, image.width(), 1).convertToFormat(format);
        if (row.isNull())
            return row;
        std::memcpy(result.scanLine(y), row.constScanLine(0), static_cast<size_t>(row.bytesPerLine()));
    }
    return result;
}

// Light

/// The light of 255. It is so small that what takeClosest() multiplies fits into an int.
constexpr int FullLight = 1 << 14;

/// The positive fifth root, by Newton's method.
constexpr double fifthRoot(double number)
{
    double root = 1;
    for (int i = 0; i < 50; ++i)
        root += (number / (root * root * root * root) - root) / 5;
    return root;
}

using Lights = std::array<quint16, 256>;

constexpr Lights makeLights()
{
    Lights lights{};
    for (size_t value = 0; value < lights.size(); ++value) {
        const double part = static_cast<double>(value) / 255;
        const double base = (part + 0.055) / 1.055; // its power of 2.4 is the light
        const double light = part <= 0.04045 ? part / 12.92 : base * base * fifthRoot(base * base);
        lights[value] = static_cast<quint16>(qRound(light * FullLight));
    }
    return lights;
}

/// The light of each component value, by the curve of sRGB.
inline constexpr Lights lightOf = makeLights();

using Values = std::array<uchar, FullLight + 1>;

constexpr Values makeValues()
{
    Values values{};
    size_t value = 0;
    for (size_t light = 0; light < values.size(); ++light) {
        if (value < 255 && 2 * light > size_t(lightOf[value]) + lightOf[value + 1])
            ++value;
        values[light] = static_cast<uchar>(value);
    }
    return values;
}

/// The component value whose light is closest to each light.
inline constexpr Values valueOf = makeValues();

/// Red, green and blue.
template <typename Number>
struct Components
{
    Number red{};
    Number green{};
    Number blue{};

    Components &add(const Components &other, Number factor)
    {
        red += other.red * factor;
        green += other.green * factor;
        blue += other.blue * factor;
        return *this;
    }
};

template <typename Number>
constexpr Components<Number> lightOfPixel(QRgb pixel)
{
    return {lightOf[pixel >> 16 & 0xFF], lightOf[pixel >> 8 & 0xFF], lightOf[pixel & 0xFF]};
}

template <typename Number>
QRgb pixelOfLight(const Components<Number> &light)
{
    return qRgb(valueOf[static_cast<size_t>(light.red)], valueOf[static_cast<size_t>(light.green)],
                valueOf[static_cast<size_t>(light.blue)]);
}

} // namespace ZR
