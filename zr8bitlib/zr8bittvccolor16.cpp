#include "../zrbaselib/zrimageformat_p.h"
#include "../zrbaselib/zrimagesearch_p.h"
#include "zr8bittvccolor16_p.h"

#include <zr8bitlib/zr8bittvccolor16.h>
#include <zrbaselib/zrimageext.h>

#include <algorithm>
#include <array>
#include <limits>

namespace ZR {

namespace {

// The bits of a colour code, which are those of the first pixel of a two-pixel byte.
constexpr unsigned char Intensity = 0x80;
constexpr unsigned char Green = 0x20;
constexpr unsigned char Red = 0x08;
constexpr unsigned char Blue = 0x02;

constexpr unsigned char FirstPixel = Intensity | Green | Red | Blue;
constexpr unsigned char SecondPixel = FirstPixel >> 1;

/// A pixel that an image does not have: those that it has are opaque. It looks black.
constexpr QRgb NoPixel = 0;

using ByteColors = std::array<QRgb, 256>;

constexpr ByteColors makeFirstPixelColors()
{
    ByteColors colors{};
    for (unsigned byte = 0; byte < colors.size(); ++byte) {
        const int level = byte & Intensity ? TVC16BrightLevel : TVC16DarkLevel;
        colors[byte] = qRgb(byte & Red ? level : 0, byte & Green ? level : 0, byte & Blue ? level : 0);
    }
    return colors;
}

/// The colour of the first pixel of each two-pixel byte.
constexpr ByteColors FirstPixelColors = makeFirstPixelColors();

QRgb firstPixelColor(unsigned char byte)
{
    return FirstPixelColors[byte];
}

QRgb secondPixelColor(unsigned char byte)
{
    return FirstPixelColors[static_cast<unsigned char>(byte << 1)];
}

unsigned char pack(unsigned char code1, unsigned char code2)
{
    return static_cast<unsigned char>(code1 | (code2 >> 1));
}

// The closest colour of a pixel, by integers. Red, green and blue are on or off on their own, so the best
// dark colour is found by looking at each alone, and the best bright colour likewise; these two are left to
// compare. Each choice is kept as its squared error times 256 plus the code bit that it sets: the sum over
// the components then is the colour's squared distance times 256 plus its code. The lesser of the two sums is
// the closer colour and, at the same distance, the dark one, as its code is the lesser. That is also what the
// order of TVC16ColorList says: dark before bright, and off (which wins a tie of one component) before on.
// Bright black never wins, being as far as black.

struct Choice
{
    quint32 dark;
    quint32 bright;
};

using Choices = std::array<Choice, 256>;

constexpr quint32 makeChoice(int value, int level, unsigned char bit)
{
    const int errorOff = value * value;
    const int errorOn = (value - level) * (value - level);
    return errorOn < errorOff ? static_cast<quint32>(errorOn) << 8 | bit
                              : static_cast<quint32>(errorOff) << 8;
}

constexpr Choices makeChoices(unsigned char bit)
{
    Choices choices{};
    for (int value = 0; value < 256; ++value)
        choices[static_cast<size_t>(value)] = {makeChoice(value, TVC16DarkLevel, bit),
                                               makeChoice(value, TVC16BrightLevel, bit)};
    return choices;
}

constexpr Choices RedChoices = makeChoices(Red);
constexpr Choices GreenChoices = makeChoices(Green);
constexpr Choices BlueChoices = makeChoices(Blue);

/// The code of closestColor() of a pixel, whose alpha plays no part.
unsigned char closestCode(QRgb pixel)
{
    const Choice &red = RedChoices[pixel >> 16 & 0xFF];
    const Choice &green = GreenChoices[pixel >> 8 & 0xFF];
    const Choice &blue = BlueChoices[pixel & 0xFF];
    const quint32 dark = red.dark + green.dark + blue.dark;
    const quint32 bright = red.bright + green.bright + blue.bright + Intensity;
    return static_cast<unsigned char>(std::min(dark, bright));
}

/// Calls write(first, second) for each pair of columns of an image of 32 bits, from the top left. Beyond an
/// odd width the second is NoPixel.
template <typename WritePair>
void forEachPair(const QImage &image, WritePair write)
{
    const int width = image.width();
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        int x = 0;
        for (; x + 1 < width; x += 2)
            write(line[x], line[x + 1]);
        if (x < width)
            write(line[x], NoPixel);
    }
}

qsizetype planeSize(const QImage &image)
{
    return qsizetype(TVC16BytesPerRow(image.width())) * image.height();
}

/// A picture of a given height, of which the stream may lack bytes.
QImage readPicture(QByteArray stream, int width, qsizetype height)
{
    if (height > std::numeric_limits<int>::max())
        return QImage();
    QImage image(width, static_cast<int>(height), QImage::Format_RGB32);
    if (image.isNull())
        return image;
    const qsizetype size = planeSize(image);
    if (stream.size() < size)
        stream.resize(size, '\0');

    const auto *byte = reinterpret_cast<const unsigned char *>(stream.constData());
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        int x = 0;
        for (; x + 1 < width; x += 2, ++byte) {
            line[x] = firstPixelColor(*byte);
            line[x + 1] = secondPixelColor(*byte);
        }
        if (x < width)
            line[x] = firstPixelColor(*byte++);
    }
    return image;
}

QImage toRGB32(const QImage &image)
{
    return toFormat(image, QImage::Format_RGB32, Qt::ThresholdDither);
}

/// An image whose pixels are 32-bit words of red, green and blue. Their top eight bits do not count.
QImage toPixelWords(const QImage &image)
{
    switch (image.format()) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        return image;
    default:
        return toRGB32(image);
    }
}

} // namespace

QColor ZR8BitTVCColor16::TVC16ColorToQColor(const ZRTVC16Colors &color)
{
    return color & SecondPixel ? QColor() : QColor(firstPixelColor(color));
}

QColor ZR8BitTVCColor16::TVC16PaletteToQColor(const ZRTVC16Palette &color)
{
    return color & FirstPixel ? QColor() : QColor(secondPixelColor(color));
}

ZRTVC16Colors ZR8BitTVCColor16::QColorToTVC16Color(const QColor &color)
{
    constexpr ZRTVC16Colors DistinctColors[] = {
        ZRTVC16ColorBlack,     ZRTVC16ColorDarkBlue, ZRTVC16ColorDarkRed,    ZRTVC16ColorDarkMagenta,
        ZRTVC16ColorDarkGreen, ZRTVC16ColorDarkCyan, ZRTVC16ColorDarkYellow, ZRTVC16ColorGray,
        ZRTVC16ColorBlue,      ZRTVC16ColorRed,      ZRTVC16ColorMagenta,    ZRTVC16ColorGreen,
        ZRTVC16ColorCyan,      ZRTVC16ColorYellow,   ZRTVC16ColorWhite};
    const QColor closest = closestColor(color);
    for (const ZRTVC16Colors code : DistinctColors) {
        if (TVC16ColorToQColor(code) == closest)
            return code;
    }
    return ZRTVC16ColorBrightBlack;
}

ZRTVC16Palette ZR8BitTVCColor16::QColorToTVC16Palette(const QColor &color)
{
    return static_cast<ZRTVC16Palette>(QColorToTVC16Color(color) >> 1);
}

ZRTVC16Colors ZR8BitTVCColor16::TVC16ColorFromUChar(const unsigned char &color)
{
    return static_cast<ZRTVC16Colors>(color);
}

unsigned char ZR8BitTVCColor16::TVC16ColorToUChar(const ZRTVC16Colors &color)
{
    return color;
}

QColor ZR8BitTVCColor16::QColorFromUChar(const unsigned char &color)
{
    return TVC16ColorToQColor(TVC16ColorFromUChar(color));
}

unsigned char ZR8BitTVCColor16::QColorToUChar(const QColor &color)
{
    return TVC16ColorToUChar(QColorToTVC16Color(color));
}

QString ZR8BitTVCColor16::TVC16ColorToRGBString(const ZRTVC16Colors &color)
{
    return TVC16ColorToQColor(color).name(QColor::HexRgb);
}

QColor ZR8BitTVCColor16::closestColor(const QColor &color)
{
    // Equal colours are the same three bytes, opaque and in no other colour model.
    const QColor opaque(color.rgb());
    if (opaque == color && std::count(TVC16ColorList.begin(), TVC16ColorList.end(), opaque.rgb()) > 0)
        return opaque;
    return QColor(*closestOf(opaque.rgb(), TVC16ColorList.begin(), TVC16ColorList.end(),
                             [](QRgb candidate) { return candidate; }));
}

ZRTVC16Pixel ZR8BitTVCColor16::TVC16PixelFromTVC16Colors(const ZRTVC16Colors &color1,
                                                         const ZRTVC16Colors &color2)
{
    return pack(color1, color2);
}

ZRTVC16Pixel ZR8BitTVCColor16::TVC16PixelFromQColors(const QColor &color1, const QColor &color2)
{
    return TVC16PixelFromTVC16Colors(QColorToTVC16Color(color1), QColorToTVC16Color(color2));
}

void ZR8BitTVCColor16::TVC16PixelToQColors(const ZRTVC16Pixel &pixel, QColor &color1, QColor &color2)
{
    color1 = QColor(firstPixelColor(pixel));
    color2 = QColor(secondPixelColor(pixel));
}

QImage ZR8BitTVCColor16::QImageFromTVC16Bin(const QByteArray &stream, const int &width)
{
    if (width < 1)
        return QImage();
    const qsizetype rowSize = TVC16BytesPerRow(width);
    return readPicture(stream, width, stream.size() / rowSize + (stream.size() % rowSize != 0));
}

QByteArray ZR8BitTVCColor16::QImageToTVC16Bin(const QImage &image)
{
    const QImage source = toPixelWords(image);
    QByteArray stream(planeSize(source), Qt::Uninitialized);
    char *byte = stream.data();
    forEachPair(source, [&byte](QRgb first, QRgb second) {
        *byte++ = static_cast<char>(pack(closestCode(first), closestCode(second)));
    });
    return stream;
}

QImage ZR8BitTVCColor16::QImageToTVC16ColoredQImage(const QImage &image)
{
    QImage result = toRGB32(image);
    result.detach(); // becomes null when there is not enough memory
    for (int y = 0; y < result.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x)
            line[x] = firstPixelColor(closestCode(line[x]));
    }
    return result;
}

QByteArray ZR8BitTVCColor16::QImageToTVC16SpriteFrame(QImage image, QColor transparent)
{
    transparent.setAlpha(255);
    image = ZRImageExt::disableTransparency(image, transparent);
    const QRgb key = QColor(transparent.rgb()) == transparent ? transparent.rgb() : NoPixel;
    const auto isTransparent = [key](QRgb pixel) { return pixel == key || pixel == NoPixel; };

    const qsizetype size = planeSize(image);
    QByteArray frame(2 * size, Qt::Uninitialized);
    char *byte = frame.data();
    forEachPair(image, [&](QRgb first, QRgb second) {
        const int mask = (isTransparent(first) ? FirstPixel : 0) | (isTransparent(second) ? SecondPixel : 0);
        byte[0] = static_cast<char>(pack(closestCode(first), closestCode(second)) & ~mask);
        byte[size] = static_cast<char>(mask);
        ++byte;
    });
    return frame;
}

QImage ZR8BitTVCColor16::QImageFromTVC16SpriteFrame(const QByteArray &frame, const int &width)
{
    if (width < 1)
        return QImage();
    const qsizetype rowSize = TVC16BytesPerRow(width);
    const qsizetype size = frame.size() / 2;
    QByteArray picture = frame.first(size);
    std::transform(picture.cbegin(), picture.cend(), frame.cbegin() + size, picture.begin(),
                   [](char colors, char mask) { return static_cast<char>(colors | mask); });
    return readPicture(picture, width, size / rowSize + (frame.size() % rowSize != 0));
}

QByteArray ZR8BitTVCColor16::QImagesToTVC16Sprite(const QList<QImage> &images, const QColor &transparent)
{
    QByteArray stream;
    for (const QImage &image : images)
        stream += QImageToTVC16SpriteFrame(image, transparent);
    return stream;
}

QList<QImage> ZR8BitTVCColor16::QImagesFromTVC16Sprite(const QByteArray &stream, const int &width,
                                                       const int &height)
{
    QList<QImage> images;
    if (width < 1 || height < 1)
        return images;
    // Two int factors fit into 64 bits.
    const qint64 frameSize = std::min<qint64>(2 * qint64(TVC16BytesPerRow(width)) * height, stream.size());
    for (qint64 offset = 0; offset < stream.size(); offset += frameSize)
        images += QImageFromTVC16SpriteFrame(
            stream.mid(static_cast<qsizetype>(offset), static_cast<qsizetype>(frameSize)), width);
    return images;
}

} // namespace ZR
