#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <vector>

namespace ZR {

namespace {

using TVC = ZR8BitTVCColor16;

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
constexpr Lights lightOf = makeLights();

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
constexpr Values valueOf = makeValues();

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

const QRgb *constLine(const QImage &image, int y)
{
    return reinterpret_cast<const QRgb *>(image.constScanLine(y));
}

QRgb *line(QImage &image, int y)
{
    return reinterpret_cast<QRgb *>(image.scanLine(y));
}

// Fitting

constexpr int LongestSide = 0xFFFF;

/// The place of the pixels of a result along one side of a picture: number i covers what lies between
/// start + i * step and start + (i + 1) * step, where a pixel of the picture is pixelSize long.
struct Axis
{
    int count;
    qint64 start;
    qint64 step;
    qint64 pixelSize;
};

/// A side of the picture and that of the result, in pixels, and how long a pixel is on the screen.
struct Side
{
    int picture;
    int result;
    int pixelLength;

    qint64 length() const { return qint64(result) * pixelLength; }
};

/// The whole side, drawn on all of the result.
Axis wholeSide(const Side &side)
{
    return {side.result, 0, side.picture, side.result};
}

/// The whole side, drawn at the scale at which the other one fills the result.
Axis containedSide(const Side &side, const Side &other)
{
    const qint64 divisor = qint64(other.picture) * side.pixelLength;
    const qint64 count = (other.length() * side.picture + divisor / 2) / divisor;
    return wholeSide({side.picture, static_cast<int>(std::max<qint64>(count, 1)), side.pixelLength});
}

/// The middle of the side, as much as fills the result at the scale of the other one.
Axis coveringSide(const Side &side, const Side &other)
{
    return {side.result, other.length() * side.picture - side.length() * other.picture,
            2 * qint64(side.pixelLength) * other.picture, 2 * other.length()};
}

/// The pixels of a picture that one of the result covers, and how much of the first and the last.
struct Span
{
    int first;
    int last;
    quint64 firstPart;
    quint64 lastPart; ///< 0 when there is only one pixel
};

Span spanAt(const Axis &axis, qint64 index)
{
    const qint64 from = axis.start + index * axis.step;
    const qint64 to = from + axis.step;
    const qint64 first = from / axis.pixelSize;
    const qint64 last = (to - 1) / axis.pixelSize;
    const qint64 firstPart = std::min(to, (first + 1) * axis.pixelSize) - from;
    const qint64 lastPart = last > first ? to - last * axis.pixelSize : 0;
    return {static_cast<int>(first), static_cast<int>(last), static_cast<quint64>(firstPart),
            static_cast<quint64>(lastPart)};
}

/// The rows of a picture as 32-bit pixels, one at a time.
class Rows
{
public:
    explicit Rows(const QImage &image)
        : _image(image)
        , _isDirect(image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32)
    {
    }

    const QRgb *at(int y)
    {
        if (_isDirect)
            return constLine(_image, y);
        _row = _image.copy(0, y, _image.width(), 1).convertToFormat(QImage::Format_RGB32);
        if (_row.isNull())
            throw std::bad_alloc();
        return constLine(_row, 0);
    }

private:
    const QImage &_image;
    const bool _isDirect;
    QImage _row;
};

using Sum = Components<quint64>;

Sum mean(const Sum &sum, qint64 size)
{
    const auto divisor = static_cast<quint64>(size);
    const auto divide = [divisor](quint64 component) { return (component + divisor / 2) / divisor; };
    return {divide(sum.red), divide(sum.green), divide(sum.blue)};
}

QRgb pixelOfLight(const Sum &light)
{
    return qRgb(valueOf[light.red], valueOf[light.green], valueOf[light.blue]);
}

/// The mean light of each pixel of the result along one row of the picture.
void scaleRow(const QRgb *row, const std::vector<Span> &spans, const Axis &columns, std::vector<Sum> &lights)
{
    for (size_t x = 0; x < spans.size(); ++x) {
        const Span &span = spans[x];
        Sum whole;
        for (int i = span.first + 1; i < span.last; ++i)
            whole.add(lightOfPixel<quint64>(row[i]), 1);
        Sum sum;
        sum.add(lightOfPixel<quint64>(row[span.first]), span.firstPart)
            .add(whole, static_cast<quint64>(columns.pixelSize))
            .add(lightOfPixel<quint64>(row[span.last]), span.lastPart);
        lights[x] = mean(sum, columns.step);
    }
}

/// Draws the picture on a part of the result that begins at a corner.
void scale(const QImage &image, const Axis &columns, const Axis &rows, QImage &result, const QPoint &corner)
{
    std::vector<Span> spans(static_cast<size_t>(columns.count));
    for (size_t x = 0; x < spans.size(); ++x)
        spans[x] = spanAt(columns, static_cast<qint64>(x));
    Rows source(image);
    std::vector<Sum> sums(spans.size());
    // The row of the picture that was scaled last: the next row of the result may begin with it.
    std::vector<Sum> lights(spans.size());
    int lightsY = -1;
    const auto addRow = [&](int y, quint64 part) {
        if (y != lightsY)
            scaleRow(source.at(y), spans, columns, lights);
        lightsY = y;
        for (size_t x = 0; x < sums.size(); ++x)
            sums[x].add(lights[x], part);
    };

    for (int y = 0; y < rows.count; ++y) {
        std::fill(sums.begin(), sums.end(), Sum());
        const Span span = spanAt(rows, y);
        addRow(span.first, span.firstPart);
        for (int i = span.first + 1; i < span.last; ++i)
            addRow(i, static_cast<quint64>(rows.pixelSize));
        if (span.last > span.first)
            addRow(span.last, span.lastPart);
        std::transform(sums.begin(), sums.end(), line(result, corner.y() + y) + corner.x(),
                       [&rows](const Sum &sum) { return pixelOfLight(mean(sum, rows.step)); });
    }
}

// The closest colour of a light

// A component that is on, without intensity and with it.
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

constexpr std::array<QRgb, ColorCount> palette = makePalette();

using Light = Components<int>;

/// The number of the colour that is closest to a light. Subtracts that colour, so that its error remains,
/// which the next light is increased by: both errors and lights are between -1 and 2 times FullLight then.
///
/// A component that is on at a level makes the square of the distance smaller by level * (2 * light - level)
/// than one that is off. So a component is on where that is above 0, and the colour is a bright one where the
/// three gain more at the bright level. There is no branch, since none could be predicted.
unsigned takeClosest(Light &light)
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
void diffuseRow(QRgb *row, int width, int step, const std::vector<Light> &above, std::vector<Light> &errors)
{
    Light light; // after its colour has been taken, its error
    int x = step > 0 ? 0 : width - 1;
    for (int i = 0; i < width; ++i, x += step) {
        // Each pixel hands on 7 sixteenths to the next one and, in the row below, 3 to the one behind, 5 to
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
        errors[static_cast<size_t>(x) + 1] = light;
    }
}

void diffuse(QImage &image)
{
    const QRect inner = withoutMargins(image);
    std::vector<Light> above(static_cast<size_t>(inner.width()) + 2);
    std::vector<Light> errors(above.size());
    int step = 1;
    for (int y = inner.top(); y <= inner.bottom(); ++y) {
        diffuseRow(line(image, y) + inner.left(), inner.width(), step, above, errors);
        above.swap(errors);
        step = -step;
    }
}

// Bayer

constexpr size_t PatternSide = 8;
constexpr size_t PatternSize = PatternSide * PatternSide;

using Ranks = std::array<std::array<uchar, PatternSide>, PatternSide>;

constexpr Ranks makeRanks()
{
    Ranks result{};
    for (size_t y = 0; y < PatternSide; ++y) {
        for (size_t x = 0; x < PatternSide; ++x) {
            unsigned rank = 0;
            for (size_t bit = 1; bit < PatternSide; bit *= 2)
                rank = 4 * rank + ((x ^ y) & bit ? 2 : 0) + (y & bit ? 1 : 0);
            result[y][x] = static_cast<uchar>(rank);
        }
    }
    return result;
}

/// The ranks of the places of the pattern, row by row: of any four neighbours each has a rank of another
/// quarter, and so on within the quarters.
constexpr Ranks ranks = makeRanks();

/// The numbers of the colours that mix to one, from the darkest to the brightest.
using Mix = std::array<uchar, PatternSize>;

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
    /// For a picture of so many pixels.
    explicit Mixes(size_t pixels)
        : _indexes(size_t(Levels) * Levels * Levels / GroupSize)
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
    static Group make(unsigned red, unsigned green, unsigned firstBlue)
    {
        const int redLight = lightOfLevel(red);
        const int greenLight = lightOfLevel(green);
        std::array<int, GroupSize> blueLights;
        for (unsigned i = 0; i < GroupSize; ++i)
            blueLights[i] = lightOfLevel(firstBlue + i);

        Components<std::array<int, GroupSize>> errors;
        std::array<std::array<unsigned, ColorCount>, GroupSize> counts{};
        for (size_t pick = 0; pick < PatternSize; ++pick) {
            std::array<unsigned, GroupSize> numbers;
            for (unsigned i = 0; i < GroupSize; ++i) {
                Light light{errors.red[i] + redLight, errors.green[i] + greenLight,
                            errors.blue[i] + blueLights[i]};
                numbers[i] = takeClosest(light);
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

    std::vector<quint32> _indexes; ///< into the groups, counted from 1; 0 where there is none yet
    std::vector<Group> _groups;
};

void order(QImage &image)
{
    Mixes mixes(static_cast<size_t>(image.width()) * static_cast<size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y) {
        const auto &rowRanks = ranks[static_cast<size_t>(y) % PatternSide];
        QRgb *row = line(image, y);
        for (int x = 0; x < image.width(); ++x)
            row[x] = palette[mixes.of(row[x])[rowRanks[static_cast<size_t>(x) % PatternSide]]];
    }
}

} // namespace

QImage ZR8BitTVCScreen::fit(const QImage &image, const QSize &size, Fit fit, const QColor &background)
try {
    if (image.isNull() || size.isEmpty() || std::max(size.width(), size.height()) > LongestSide)
        return QImage();
    QImage result(size, QImage::Format_RGB32);
    if (result.isNull())
        return result;

    const Side width{image.width(), size.width(), PixelWidth};
    const Side height{image.height(), size.height(), PixelHeight};
    const bool isWide = width.length() * height.picture < height.length() * width.picture;
    Axis columns = wholeSide(width);
    Axis rows = wholeSide(height);
    if (fit == Contain)
        (isWide ? rows : columns) = isWide ? containedSide(height, width) : containedSide(width, height);
    else if (fit == Cover)
        (isWide ? columns : rows) = isWide ? coveringSide(width, height) : coveringSide(height, width);

    result.fill(TVC::closestColor(background));
    scale(image, columns, rows, result,
          QPoint((size.width() - columns.count) / 2, (size.height() - rows.count) / 2));
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

QImage ZR8BitTVCScreen::dither(const QImage &image, Dither dither)
try {
    if (dither != FloydSteinberg && dither != Bayer)
        return TVC::QImageToTVC16ColoredQImage(image);
    QImage result = image.convertToFormat(QImage::Format_RGB32);
    result.detach(); // becomes null when there is not enough memory
    if (result.isNull())
        return result;
    dither == FloydSteinberg ? diffuse(result) : order(result);
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

QImage ZR8BitTVCScreen::screenView(const QImage &image)
{
    constexpr int Largest = std::numeric_limits<int>::max() / PixelWidth;
    if (image.isNull() || std::max(image.width(), image.height()) > Largest)
        return QImage();
    return image.convertToFormat(QImage::Format_RGB32)
        .scaled(image.width() * PixelWidth, image.height() * PixelHeight);
}

} // namespace ZR
