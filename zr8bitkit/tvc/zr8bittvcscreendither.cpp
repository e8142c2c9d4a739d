#include "zr8bittvcclosest_p.h"

#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <algorithm>
#include <array>
#include <new>
#include <vector>

namespace ZR {

namespace {

// Floyd-Steinberg

bool isFlat(const QRgb *first, int count, qsizetype stride)
{
    for (int i = 1; i < count; ++i) {
        if (first[i * stride] != *first)
            return false;
    }
    return std::find(palette.begin(), palette.end(), *first) != palette.end();
}

/// What the margins leave of a picture; empty when it is all margin.
QRect withoutMargins(const QImage &image)
{
    QRect inner = image.rect();
    const qsizetype stride = image.bytesPerLine() / qsizetype(sizeof(QRgb));
    const auto isFlatRow = [&](int y) { return isFlat(constLine(image, y), inner.width(), 1); };
    const auto isFlatColumn = [&](int x) {
        return isFlat(constLine(image, inner.top()) + x, inner.height(), stride);
    };
    while (!inner.isEmpty() && isFlatRow(inner.top()))
        inner.setTop(inner.top() + 1);
    while (!inner.isEmpty() && isFlatRow(inner.bottom()))
        inner.setBottom(inner.bottom() - 1);
    while (!inner.isEmpty() && isFlatColumn(inner.left()))
        inner.setLeft(inner.left() + 1);
    while (!inner.isEmpty() && isFlatColumn(inner.right()))
        inner.setRight(inner.right() - 1);
    return inner;
}

/// Dithers a row forwards (step 1) or backwards (-1). above are the errors of the row above, which went the
/// other way; errors becomes those of this row. Both have an element more at each end, without an error.
/// Nothing is passed on to transparent pixels, nor through them.
template <bool HasTransparent>
void diffuseRow(QRgb *row, int width, int step, Share share, const std::vector<Light> &above,
                std::vector<Light> &errors)
{
    Light light; // after its colour has been taken, its error
    int x = step > 0 ? 0 : width - 1;
    for (int i = 0; i < width; ++i, x += step) {
        if (HasTransparent && qAlpha(row[x]) == 0) {
            light = Light();
            errors[static_cast<size_t>(x) + 1] = light;
            continue;
        }
        // Each pixel passes on 7 sixteenths to the next one and, in the row below, 3 to the one behind, 5 to
        // its own place and 1 to the one ahead. What is ahead in one row is behind in the next. Components
        // are added up one by one, not as Light: GCC would pack some into vectors, which takes twice as long.
        const Light *place = &above[static_cast<size_t>(x) + 1];
        const auto withErrors = [=](int Light::*component, QRgb value) {
            return (16 * lightOf[value & 0xFF] + 3 * place[-step].*component + 5 * place[0].*component +
                    place[step].*component + 7 * light.*component + 8) >>
                   4;
        };
        light = {withErrors(&Light::red, row[x] >> 16), withErrors(&Light::green, row[x] >> 8),
                 withErrors(&Light::blue, row[x])};
        row[x] = palette[takeClosest(light)];
        share.applyTo(light);
        errors[static_cast<size_t>(x) + 1] = light;
    }
}

template <bool HasTransparent>
void diffuse(QImage &image, Share share)
{
    const QRect inner = withoutMargins(image);
    std::vector<Light> above(static_cast<size_t>(inner.width()) + 2);
    std::vector<Light> errors(above.size());
    int step = 1;
    for (int y = inner.top(); y <= inner.bottom(); ++y) {
        diffuseRow<HasTransparent>(line(image, y) + inner.left(), inner.width(), step, share, above, errors);
        above.swap(errors);
        step = -step;
    }
}

// Bayer

constexpr size_t LargestSide = 8;
constexpr size_t LargestSize = LargestSide * LargestSide;

using Ranks = std::array<std::array<uchar, LargestSide>, LargestSide>;

constexpr Ranks makeRanks(size_t side)
{
    Ranks result{};
    for (size_t y = 0; y < LargestSide; ++y) {
        for (size_t x = 0; x < LargestSide; ++x) {
            unsigned rank = 0;
            for (size_t bit = 1; bit < side; bit *= 2)
                rank = 4 * rank + ((x ^ y) & bit ? 2 : 0) + (y & bit ? 1 : 0);
            result[y][x] = static_cast<uchar>(rank);
        }
    }
    return result;
}

/// A square pattern.
struct Pattern
{
    size_t size; ///< places
    /// The ranks of its places, row by row and repeated as often as there is room: of any four neighbours
    /// each has a rank of another quarter, and so on within the quarters.
    Ranks ranks;
};

constexpr Pattern makePattern(size_t side)
{
    return {side * side, makeRanks(side)};
}

constexpr Pattern pattern2 = makePattern(2);
constexpr Pattern pattern4 = makePattern(4);
constexpr Pattern pattern8 = makePattern(8);

/// The numbers of the colours that mix to one, from the darkest to the brightest: as many as a pattern has
/// places.
using Mix = std::array<uchar, LargestSize>;

using Order = std::array<uchar, ColorCount>;

constexpr Order makeOrder()
{
    const auto luminance = [](size_t number) {
        const Light light = lightOfPixel<int>(palette[number]);
        return 2126 * light.red + 7152 * light.green + 722 * light.blue;
    };
    Order numbers{};
    for (size_t number = 0; number < ColorCount; ++number) {
        size_t place = number;
        for (; place > 0 && luminance(numbers[place - 1]) > luminance(number); --place)
            numbers[place] = numbers[place - 1];
        numbers[place] = static_cast<uchar>(number);
    }
    return numbers;
}

/// The numbers of the colours from the darkest to the brightest, as the eye sees them.
constexpr Order darkToBright = makeOrder();

/// Which colours mix to a colour. Components that differ in the lowest two bits only share a level, and the
/// mixes of eight levels of blue are made together, when one of them is first asked for.
class Mixes
{
public:
    /// For a picture of so many pixels, and a pattern of so many places.
    Mixes(size_t pixels, size_t patternSize, Share share)
        : _patternSize(patternSize)
        , _share(share)
        , _indexes(size_t(Levels) * Levels * Levels / GroupSize)
    {
        _groups.reserve(std::min(pixels, _indexes.size()));
    }

    /// The mix of the colour of a pixel.
    const Mix &of(QRgb pixel)
    {
        const unsigned red = levelOf(pixel >> 16);
        const unsigned green = levelOf(pixel >> 8);
        const unsigned blue = levelOf(pixel);
        quint32 &index = _indexes[((red * Levels + green) * Levels + blue) / GroupSize];
        if (index == 0) {
            _groups.push_back(make(red, green, blue / GroupSize * GroupSize));
            index = static_cast<quint32>(_groups.size());
        }
        return _groups[index - 1][blue % GroupSize];
    }

private:
    static constexpr unsigned Levels = 64;
    static constexpr unsigned ValuesOfLevel = 256 / Levels;
    static constexpr unsigned GroupSize = 8;

    using Group = std::array<Mix, GroupSize>;

    static unsigned levelOf(QRgb component) { return (component & 0xFF) / ValuesOfLevel; }

    static int lightOfLevel(unsigned level)
    {
        int sum = 0;
        for (unsigned i = 0; i < ValuesOfLevel; ++i) {
            const int light = lightOf[level * ValuesOfLevel + i];
            if (light == 0 || light == DarkLight || light == BrightLight)
                return light; // a colour of the TVC is no mix
            sum += light;
        }
        return sum / int(ValuesOfLevel);
    }

    /// Picks the closest colour again and again, each time with the error so far, so that the mean of the
    /// picks comes close to the colour. The levels of blue are the lanes of what compilers make vectors of.
    Group make(unsigned red, unsigned green, unsigned firstBlue) const
    {
        const int redLight = lightOfLevel(red);
        const int greenLight = lightOfLevel(green);
        std::array<int, GroupSize> blueLights;
        for (unsigned i = 0; i < GroupSize; ++i)
            blueLights[i] = lightOfLevel(firstBlue + i);

        Components<std::array<int, GroupSize>> errors;
        std::array<std::array<unsigned, ColorCount>, GroupSize> counts{};
        for (size_t pick = 0; pick < _patternSize; ++pick) {
            std::array<unsigned, GroupSize> numbers;
            for (unsigned i = 0; i < GroupSize; ++i) {
                Light light{errors.red[i] + redLight, errors.green[i] + greenLight,
                            errors.blue[i] + blueLights[i]};
                numbers[i] = takeClosest(light);
                _share.applyTo(light);
                errors.red[i] = light.red;
                errors.green[i] = light.green;
                errors.blue[i] = light.blue;
            }
            for (unsigned i = 0; i < GroupSize; ++i)
                ++counts[i][numbers[i]];
        }

        Group group;
        for (unsigned i = 0; i < GroupSize; ++i) {
            auto end = group[i].begin();
            for (const uchar number : darkToBright)
                end = std::fill_n(end, counts[i][number], number);
        }
        return group;
    }

    const size_t _patternSize;
    const Share _share;
    std::vector<quint32> _indexes; ///< into the groups, counted from 1; 0 where there is none yet
    std::vector<Group> _groups;
};

template <bool HasTransparent>
void order(QImage &image, const Pattern &pattern, Share share)
{
    Mixes mixes(static_cast<size_t>(image.width()) * static_cast<size_t>(image.height()), pattern.size,
                share);
    for (int y = 0; y < image.height(); ++y) {
        const auto &rowRanks = pattern.ranks[static_cast<size_t>(y) % LargestSide];
        QRgb *row = line(image, y);
        for (int x = 0; x < image.width(); ++x) {
            if (!HasTransparent || qAlpha(row[x]) != 0)
                row[x] = palette[mixes.of(row[x])[rowRanks[static_cast<size_t>(x) % LargestSide]]];
        }
    }
}

/// Makes the alpha of each pixel 0 or 255, from half of it on; pixels without it become all 0.
void sharpenAlpha(QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        QRgb *row = line(image, y);
        std::transform(row, row + image.width(), row,
                       [](QRgb pixel) { return qAlpha(pixel) < 128 ? 0 : pixel | 0xFF000000; });
    }
}

/// Whether colours are mixed at all.
bool isMix(ZR8BitTVCScreen::Dither dither, Share share)
{
    return dither != ZR8BitTVCScreen::Dither::Nearest && !share.isNothing();
}

/// Mixes the colours of a picture of 32-bit pixels, among which those with an alpha of 0 may be left out.
template <bool HasTransparent>
void mix(QImage &image, ZR8BitTVCScreen::Dither dither, Share share)
{
    using Dither = ZR8BitTVCScreen::Dither;
    if (dither == Dither::FloydSteinberg)
        diffuse<HasTransparent>(image, share);
    else
        order<HasTransparent>(image,
                              dither == Dither::Bayer2   ? pattern2
                              : dither == Dither::Bayer4 ? pattern4
                                                         : pattern8,
                              share);
}

} // namespace

QImage ZR8BitTVCScreen::dither(const QImage &image, Dither dither, int strength)
try {
    const Share share(strength);
    if (!isMix(dither, share))
        return ZR8BitTVCColor16::QImageToTVC16ColoredQImage(image);
    QImage result = toFormat(image, QImage::Format_RGB32);
    result.detach(); // becomes null when there is not enough memory
    if (!result.isNull())
        mix<false>(result, dither, share);
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

QImage ZR8BitTVCScreen::ditherFrame(const QImage &frame, Dither dither, int strength)
try {
    const Share share(strength);
    QImage result = toFormat(frame, QImage::Format_ARGB32);
    result.detach(); // becomes null when there is not enough memory
    if (result.isNull())
        return result;
    sharpenAlpha(result);
    if (isMix(dither, share)) {
        mix<true>(result, dither, share);
        return result;
    }
    QImage nearest = ZR8BitTVCColor16::QImageToTVC16ColoredQImage(result);
    if (nearest.isNull())
        return nearest;
    for (int y = 0; y < result.height(); ++y) {
        QRgb *row = line(result, y);
        std::transform(row, row + result.width(), constLine(nearest, y), row,
                       [](QRgb pixel, QRgb color) { return qAlpha(pixel) == 0 ? pixel : color; });
    }
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

} // namespace ZR
