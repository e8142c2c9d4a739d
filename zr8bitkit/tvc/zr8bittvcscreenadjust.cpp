#include "zr8bittvcpixels_p.h"

#include <zr8bitkit/zr8bittvcscreen.h>

#include <algorithm>
#include <array>
#include <new>

namespace ZR {

namespace {

/// Parts of a level of 255: what components are kept in between the adjustments. Products stay within an int.
constexpr int Parts = 64;
constexpr int FullLevel = 255 * Parts;

double inRange(double level)
{
    return std::clamp<double>(level, 0, FullLevel);
}

double share(int percent)
{
    return std::clamp(percent, 0, ZR8BitTVCScreen::LargestAdjustment) / 100.0;
}

/// Brightness and contrast, which look at each component alone: its level in parts by its value.
using Tones = std::array<int, 256>;

Tones makeTones(const ZR8BitTVCScreen::Adjustments &adjustments)
{
    constexpr double Middle = FullLevel / 2.0;
    Tones tones{};
    for (size_t value = 0; value < tones.size(); ++value) {
        const double bright = inRange(static_cast<double>(value) * Parts * share(adjustments.brightness));
        tones[value] = qRound(inRange((bright - Middle) * share(adjustments.contrast) + Middle));
    }
    return tones;
}

/// Saturation, which moves the components away from their grey or closer to it.
class Saturation
{
public:
    explicit Saturation(int percent)
        : _factor(qRound(share(percent) * (1 << WholeBits)))
    {
    }

    /// Each component is a level in parts; alpha stays where it stands.
    QRgb pixel(int red, int green, int blue, QRgb alpha) const
    {
        const int grey = (RedWeight * red + GreenWeight * green + BlueWeight * blue) >> WeightBits;
        const auto value = [this, grey](int level) {
            const int saturated = grey + ((level - grey) * _factor >> WholeBits);
            return static_cast<unsigned>(std::min(std::max(saturated, 0), FullLevel) + Parts / 2) / Parts;
        };
        return value(red) << 16 | value(green) << 8 | value(blue) | alpha;
    }

private:
    // 0.213, 0.715 and 0.072, by which the matrix of saturate() takes the components.
    static constexpr int WeightBits = 16;
    static constexpr int RedWeight = 13959;
    static constexpr int BlueWeight = 4719;
    static constexpr int GreenWeight = (1 << WeightBits) - RedWeight - BlueWeight;

    static constexpr int WholeBits = 12;

    int _factor;
};

} // namespace

QImage ZR8BitTVCScreen::adjust(QImage image, const Adjustments &adjustments)
try {
    QImage result = toPixels(image);
    image = QImage(); // the pixels of an image that nobody else has are changed in place
    result.detach();  // becomes null when there is not enough memory
    const Tones tones = makeTones(adjustments);
    const Saturation saturation(adjustments.saturation);
    for (int y = 0; y < result.height(); ++y) {
        QRgb *row = line(result, y);
        for (int x = 0; x < result.width(); ++x) {
            const auto tone = [&tones](QRgb value) { return tones[value & 0xFF]; };
            row[x] =
                saturation.pixel(tone(row[x] >> 16), tone(row[x] >> 8), tone(row[x]), row[x] & 0xFF000000);
        }
    }
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

} // namespace ZR
