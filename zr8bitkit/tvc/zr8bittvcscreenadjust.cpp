#include "zr8bittvcpixels_p.h"

#include <zr8bitkit/zr8bittvcscreen.h>

#include <algorithm>
#include <array>
#include <new>

namespace ZR {

namespace {

/// Parts of a level of 255: what components are kept in between the adjustments. Products stay within an int.
constexpr int PartBits = 6;
constexpr int Parts = 1 << PartBits;
constexpr int FullLevel = 255 * Parts;

double inRange(double level)
{
    return std::clamp<double>(level, 0, FullLevel);
}

double share(int percent)
{
    return std::clamp(percent, 0, ZR8BitTVCScreen::LargestAdjustment) / 100.0;
}

/// Brightness and contrast, which look at each component alone: its level in parts.
int toned(int value, const ZR8BitTVCScreen::Adjustments &adjustments)
{
    constexpr double Middle = FullLevel / 2.0;
    const double bright = inRange(value * Parts * share(adjustments.brightness));
    return qRound(inRange((bright - Middle) * share(adjustments.contrast) + Middle));
}

/// All adjustments of a pixel. Saturation moves its toned components away from their grey or closer to it:
/// each becomes (1 - saturation) x grey + saturation x level. What depends on one component alone is made
/// once for each of its values.
class Adjuster
{
public:
    explicit Adjuster(const ZR8BitTVCScreen::Adjustments &adjustments)
        : _greyFactor(Whole - qRound(share(adjustments.saturation) * Whole))
    {
        for (size_t value = 0; value < _saturated.size(); ++value) {
            const int level = toned(static_cast<int>(value), adjustments);
            _saturated[value] = level * (Whole - _greyFactor);
            _redOfGrey[value] = level * RedWeight;
            _greenOfGrey[value] = level * GreenWeight;
            _blueOfGrey[value] = level * BlueWeight;
        }
    }

    QRgb operator()(QRgb pixel) const
    {
        const size_t red = pixel >> 16 & 0xFF;
        const size_t green = pixel >> 8 & 0xFF;
        const size_t blue = pixel & 0xFF;
        const int grey = (_redOfGrey[red] + _greenOfGrey[green] + _blueOfGrey[blue]) >> WeightBits;
        const int rest = grey * _greyFactor + Whole * Parts / 2; // to round by
        const auto value = [this, rest](size_t component) {
            const int sum = (_saturated[component] + rest) >> (WholeBits + PartBits);
            return static_cast<QRgb>(std::min(std::max(sum, 0), 255));
        };
        return (pixel & 0xFF000000) | value(red) << 16 | value(green) << 8 | value(blue);
    }

private:
    // 0.213, 0.715 and 0.072, by which the matrix of saturate() takes the components.
    static constexpr int WeightBits = 16;
    static constexpr int RedWeight = 13959;
    static constexpr int BlueWeight = 4719;
    static constexpr int GreenWeight = (1 << WeightBits) - RedWeight - BlueWeight;

    static constexpr int WholeBits = 12;
    static constexpr int Whole = 1 << WholeBits;

    using Table = std::array<int, 256>;

    int _greyFactor;
    Table _saturated{};
    Table _redOfGrey{};
    Table _greenOfGrey{};
    Table _blueOfGrey{};
};

} // namespace

QImage ZR8BitTVCScreen::adjust(QImage image, const Adjustments &adjustments)
try {
    QImage result = toPixels(image);
    image = QImage(); // the pixels of an image that nobody else has are changed in place
    result.detach();  // becomes null when there is not enough memory
    const Adjuster adjuster(adjustments);
    for (int y = 0; y < result.height(); ++y) {
        QRgb *row = line(result, y);
        std::transform(row, row + result.width(), row, [&adjuster](QRgb pixel) { return adjuster(pixel); });
    }
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

} // namespace ZR
