#pragma once

// The TVC's colour that is closest to a light, and the error that it makes, for dithering. Private to the
// kit.

#include "zr8bittvcpixels_p.h"

#include <algorithm>

namespace ZR {

// A component that is on, as ZR8BitTVCColor16 has it, without intensity and with it.
constexpr int DarkLevel = 146;
constexpr int BrightLevel = 255;
constexpr int DarkLight = lightOf[DarkLevel];
constexpr int BrightLight = lightOf[BrightLevel];

// The bits of a colour's number. That with intensity alone is black again, and never the closest one.
constexpr int Intensity = 8;
constexpr int Green = 4;
constexpr int Red = 2;
constexpr int Blue = 1;

constexpr size_t ColorCount = 16;

constexpr std::array<QRgb, ColorCount> makePalette()
{
    std::array<QRgb, ColorCount> colors{};
    for (int number = 0; number < int(ColorCount); ++number) {
        const int level = number & Intensity ? BrightLevel : DarkLevel;
        colors[static_cast<size_t>(number)] =
            qRgb(number & Red ? level : 0, number & Green ? level : 0, number & Blue ? level : 0);
    }
    return colors;
}

inline constexpr std::array<QRgb, ColorCount> palette = makePalette();

using Light = Components<int>;

/// The number of the colour that is closest to a light. The light becomes the error, which is what the colour
/// lacks. When each error is added to the next light, both stay between -1 and 2 times FullLight.
///
/// A component that is on at a level makes the square of the distance smaller by level * (2 * light - level)
/// than one that is off. So a component is on where that is above 0, and the colour is a bright one where the
/// three gain more at the bright level. There is no branch, since none could be predicted.
inline unsigned takeClosest(Light &light)
{
    const auto gain = [&light](int level) {
        return level * (std::max(2 * light.red - level, 0) + std::max(2 * light.green - level, 0) +
                        std::max(2 * light.blue - level, 0));
    };
    const auto maskOfNegative = [](int difference) { return difference >> 31; };
    const int brightMask = maskOfNegative(gain(DarkLight) - gain(BrightLight));
    const int level = DarkLight + ((BrightLight - DarkLight) & brightMask);
    const int redMask = maskOfNegative(level - 2 * light.red);
    const int greenMask = maskOfNegative(level - 2 * light.green);
    const int blueMask = maskOfNegative(level - 2 * light.blue);
    light.red -= level & redMask;
    light.green -= level & greenMask;
    light.blue -= level & blueMask;
    return static_cast<unsigned>((brightMask & Intensity) | (greenMask & Green) | (redMask & Red) |
                                 (blueMask & Blue));
}

/// The share of each error that is passed on.
class Share
{
public:
    explicit Share(int percent)
        : _parts((std::clamp(percent, 0, 100) * Whole + 50) / 100)
    {
    }

    bool isNothing() const { return _parts == 0; }

    void applyTo(Light &error) const
    {
        error.red = of(error.red);
        error.green = of(error.green);
        error.blue = of(error.blue);
    }

private:
    static constexpr int Whole = 256;

    int of(int error) const { return error * _parts / Whole; }

    int _parts;
};

} // namespace ZR
