#include "zr8bittvcpixels_p.h"

#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <algorithm>
#include <new>
#include <vector>

namespace ZR {

namespace {

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

using Sum = Components<quint64>;

/// The rows of a picture as opaque 32-bit pixels, one at a time.
class Rows
{
public:
    Rows(const QImage &image, QRgb background)
        : _image(image)
        , _format(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32)
        , _background(lightOfPixel<int>(background))
    {
    }

    static Sum lightOf(QRgb pixel) { return lightOfPixel<quint64>(pixel); }

    /// The row remains until the next one is asked for.
    const QRgb *at(int y)
    {
        const bool isDirect = _image.format() == _format;
        if (isDirect && (_format == QImage::Format_RGB32 || isOpaque(constLine(_image, y))))
            return constLine(_image, y);
        _row = _image.copy(0, y, _image.width(), 1).convertToFormat(_format);
        if (_row.isNull())
            throw std::bad_alloc();
        QRgb *row = line(_row, 0);
        if (_format == QImage::Format_ARGB32)
            std::transform(row, row + _row.width(), row, [this](QRgb pixel) { return laidDown(pixel); });
        return row;
    }

private:
    bool isOpaque(const QRgb *row) const
    {
        return std::all_of(row, row + _image.width(), [](QRgb pixel) { return qAlpha(pixel) == 255; });
    }

    /// The pixel on the background: its own light as far as it is opaque, and the rest of the background's.
    QRgb laidDown(QRgb pixel) const
    {
        const int alpha = qAlpha(pixel);
        if (alpha == 255)
            return pixel;
        Components<int> light;
        light.add(lightOfPixel<int>(pixel), alpha).add(_background, 255 - alpha);
        const auto rounded = [](int sum) { return (sum + 127) / 255; };
        return pixelOfLight<int>({rounded(light.red), rounded(light.green), rounded(light.blue)});
    }

    const QImage &_image;
    const QImage::Format _format;
    const Components<int> _background;
    QImage _row;
};

/// The rows of a frame with alpha: the light of its pixels as far as they are opaque, in parts of 255.
class FrameLights
{
public:
    explicit FrameLights(const QImage &frame)
        : _frame(frame)
    {
    }

    static Sum lightOf(QRgb pixel) { return Sum().add(lightOfPixel<quint64>(pixel), quint64(qAlpha(pixel))); }

    const QRgb *at(int y) const { return constLine(_frame, y); }

private:
    const QImage &_frame; // in Format_ARGB32
};

/// The same of a frame whose colours are all white: in each component, how far pixels are opaque.
class FrameCovers : public FrameLights
{
public:
    using FrameLights::FrameLights;

    static Sum lightOf(QRgb pixel) { return FrameLights::lightOf(pixel | 0x00FFFFFF); }
};

Sum mean(const Sum &sum, qint64 size)
{
    const auto divisor = static_cast<quint64>(size);
    const auto divide = [divisor](quint64 component) { return (component + divisor / 2) / divisor; };
    return {divide(sum.red), divide(sum.green), divide(sum.blue)};
}

/// The mean light of each pixel of the result along one row of the picture.
template <typename Source>
void scaleRow(const QRgb *row, const std::vector<Span> &spans, const Axis &columns, std::vector<Sum> &lights)
{
    for (size_t x = 0; x < spans.size(); ++x) {
        const Span &span = spans[x];
        Sum whole;
        for (int i = span.first + 1; i < span.last; ++i)
            whole.add(Source::lightOf(row[i]), 1);
        Sum sum;
        sum.add(Source::lightOf(row[span.first]), span.firstPart)
            .add(whole, static_cast<quint64>(columns.pixelSize))
            .add(Source::lightOf(row[span.last]), span.lastPart);
        lights[x] = mean(sum, columns.step);
    }
}

/// Where a picture stands in a result.
struct Placement
{
    Placement(const QSize &picture, const QSize &result, ZR8BitTVCScreen::Fit fit)
    {
        using Fit = ZR8BitTVCScreen::Fit;
        const Side width{picture.width(), result.width(), ZR8BitTVCScreen::PixelWidth};
        const Side height{picture.height(), result.height(), ZR8BitTVCScreen::PixelHeight};
        const bool isWide = width.length() * height.picture < height.length() * width.picture;
        columns = wholeSide(width);
        rows = wholeSide(height);
        if (fit == Fit::Contain)
            (isWide ? rows : columns) = isWide ? containedSide(height, width) : containedSide(width, height);
        else if (fit == Fit::Cover)
            (isWide ? columns : rows) = isWide ? coveringSide(width, height) : coveringSide(height, width);
        corner = QPoint((result.width() - columns.count) / 2, (result.height() - rows.count) / 2);
    }

    Axis columns;
    Axis rows;
    QPoint corner;
};

/// Scales a picture, row by row.
template <typename Source>
class Scaler
{
public:
    Scaler(const Source &source, const Placement &placement)
        : _source(source)
        , _columns(placement.columns)
        , _rows(placement.rows)
        , _spans(static_cast<size_t>(_columns.count))
        , _sums(_spans.size())
        , _lights(_spans.size())
    {
        for (size_t x = 0; x < _spans.size(); ++x)
            _spans[x] = spanAt(_columns, static_cast<qint64>(x));
    }

    /// The light of a row of the result, up to the next call.
    const std::vector<Sum> &row(int y)
    {
        std::fill(_sums.begin(), _sums.end(), Sum());
        const Span span = spanAt(_rows, y);
        _add(span.first, span.firstPart);
        for (int i = span.first + 1; i < span.last; ++i)
            _add(i, static_cast<quint64>(_rows.pixelSize));
        if (span.last > span.first)
            _add(span.last, span.lastPart);
        for (Sum &sum : _sums)
            sum = mean(sum, _rows.step);
        return _sums;
    }

private:
    void _add(int y, quint64 part)
    {
        if (y != _lightsY)
            scaleRow<Source>(_source.at(y), _spans, _columns, _lights);
        _lightsY = y;
        for (size_t x = 0; x < _sums.size(); ++x)
            _sums[x].add(_lights[x], part);
    }

    Source _source;
    const Axis _columns;
    const Axis _rows;
    std::vector<Span> _spans;
    std::vector<Sum> _sums;
    // The row of the picture that was scaled last: the next row of the result may begin with it.
    std::vector<Sum> _lights;
    int _lightsY = -1;
};

/// The colour of what is opaque, from half of the area on; transparent below.
QRgb opaquePart(const Sum &light, const Sum &cover)
{
    const quint64 area = cover.red;
    if (2 * area < quint64(255) * FullLight)
        return 0;
    const auto alone = [area](quint64 component) { return (component * FullLight + area / 2) / area; };
    return pixelOfLight<quint64>({alone(light.red), alone(light.green), alone(light.blue)});
}

bool canFit(const QImage &image, const QSize &size)
{
    return !image.isNull() && !size.isEmpty() && std::max(size.width(), size.height()) <= LongestSide;
}

} // namespace

QImage ZR8BitTVCScreen::fit(const QImage &image, const QSize &size, Fit fit, const QColor &background)
try {
    if (!canFit(image, size))
        return QImage();
    QImage result(size, QImage::Format_RGB32);
    if (result.isNull())
        return result;
    const QColor ground = ZR8BitTVCColor16::closestColor(background);
    result.fill(ground);
    const Placement place(image.size(), size, fit);
    Scaler scaler(Rows(image, ground.rgb()), place);
    for (int y = 0; y < place.rows.count; ++y) {
        const std::vector<Sum> &lights = scaler.row(y);
        std::transform(lights.begin(), lights.end(), line(result, place.corner.y() + y) + place.corner.x(),
                       pixelOfLight<quint64>);
    }
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

QImage ZR8BitTVCScreen::onBackground(const QImage &image, const QColor &background)
try {
    QImage result(image.size(), QImage::Format_RGB32);
    if (image.isNull() || result.isNull())
        return QImage();
    Rows source(image, ZR8BitTVCColor16::closestColor(background).rgb());
    for (int y = 0; y < result.height(); ++y)
        std::copy_n(source.at(y), result.width(), line(result, y));
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

QImage ZR8BitTVCScreen::fitFrame(const QImage &frame, const QSize &size, Fit fit)
try {
    if (!canFit(frame, size))
        return QImage();
    QImage result(size, QImage::Format_ARGB32);
    const QImage pixels = toFormat(frame, QImage::Format_ARGB32);
    if (result.isNull() || pixels.isNull())
        return QImage();
    result.fill(Qt::transparent);
    const Placement place(frame.size(), size, fit);
    Scaler scaler(FrameLights(pixels), place);
    Scaler coverScaler(FrameCovers(pixels), place);
    for (int y = 0; y < place.rows.count; ++y) {
        const std::vector<Sum> &lights = scaler.row(y);
        const std::vector<Sum> &covers = coverScaler.row(y);
        std::transform(lights.begin(), lights.end(), covers.begin(),
                       line(result, place.corner.y() + y) + place.corner.x(), opaquePart);
    }
    return result;
} catch (const std::bad_alloc &) {
    return QImage();
}

} // namespace ZR
