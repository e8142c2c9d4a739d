#pragma once

// Pictures of the size of a screen for the benchmarks.

#include <QtCore/QRandomGenerator>
#include <QtGui/QImage>

#include <cmath>

inline constexpr int Width = 1920;
inline constexpr int Height = 1080;

template <typename PixelAt>
QImage makeImage(int height, PixelAt pixelAt)
{
    QImage image(Width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < Width; ++x)
            line[x] = pixelAt(x, y);
    }
    return image;
}

inline QImage randomImage(int height = Height)
{
    QRandomGenerator random(1);
    return makeImage(height, [&random](int, int) { return 0xFF000000 | random.generate(); });
}

/// Soft gradients with the noise of a camera.
inline QImage photoImage()
{
    QRandomGenerator random(2);
    return makeImage(Height, [&random](int x, int y) {
        const auto component = [&random, x, y](double frequency) {
            const double wave = std::sin(x * frequency) + std::cos(y * frequency * 1.7);
            return static_cast<int>(128 + 56 * wave) + static_cast<int>(random.bounded(12));
        };
        return qRgb(component(0.003), component(0.005), component(0.007));
    });
}
