// Pictures and sprites on images of every format, with odd sizes and padded lines: the writers, the screen
// and sheets.

#include "fuzzing.h"

#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitkit/zr8bittvcsheet.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <algorithm>
#include <limits>

using TVC = ZR::ZR8BitTVCColor16;
using Screen = ZR::ZR8BitTVCScreen;
using Sheet = ZR::ZR8BitTVCSheet;

namespace {

constexpr int LargestSide = 17;

/// An image in memory of its own whose lines are padded.
class PaddedImage
{
public:
    PaddedImage(QImage::Format format, QSize size, qsizetype padding, const QByteArray &pixels, char filler)
    {
        const qsizetype depth = QImage(1, 1, format).depth();
        const qsizetype used = (size.width() * depth + 7) / 8;
        // QImage wants lines to begin at a multiple of four bytes, some formats at one of their pixels.
        const qsizetype perLine = (used + 15) / 16 * 16 + 16 * padding;
        memory.assign(static_cast<size_t>(perLine * size.height()), filler);
        for (qsizetype y = 0; y < size.height(); ++y) {
            const QByteArray line = pixels.mid(y * used, used).leftJustified(used, '\0');
            std::copy(line.begin(), line.end(), memory.begin() + y * perLine);
        }
        image =
            QImage(reinterpret_cast<uchar *>(memory.data()), size.width(), size.height(), perLine, format);
    }

    QImage image;
    std::vector<char> memory;
};

void setColors(QImage &image, const std::vector<QRgb> &colors)
{
    if (image.colorCount() > 0 || image.format() == QImage::Format_Indexed8)
        image.setColorTable(QList<QRgb>(colors.begin(), colors.end()));
}

/// The closest of the colours; at the same distance the dark one, and the one with a component off.
QRgb closest(QRgb pixel)
{
    QRgb color = 0;
    int shortest = std::numeric_limits<int>::max();
    for (int code = 0; code < 16; ++code) { // components are off before they are on
        const int level = code < 8 ? 146 : 255;
        const QRgb candidate = qRgb(code & 2 ? level : 0, code & 4 ? level : 0, code & 1 ? level : 0);
        const int red = qRed(pixel) - qRed(candidate);
        const int green = qGreen(pixel) - qGreen(candidate);
        const int blue = qBlue(pixel) - qBlue(candidate);
        const int distance = red * red + green * green + blue * blue;
        if (distance < shortest) {
            shortest = distance;
            color = candidate;
        }
    }
    return color;
}

/// What the writers make of an image.
struct Written
{
    QByteArray stream;
    QByteArray frame;
    QImage preview;
};

Written write(const QImage &image, QRgb key)
{
    return {TVC::QImageToTVC16Bin(image), TVC::QImageToTVC16SpriteFrame(image, QColor(key)),
            TVC::QImageToTVC16ColoredQImage(image)};
}

/// A mask has all bits of a pixel or none, and transparent pixels are black.
void checkMask(const QByteArray &frame)
{
    const qsizetype plane = frame.size() / 2;
    for (qsizetype i = 0; i < plane; ++i) {
        const int mask = frame[plane + i] & 0xFF;
        LAW(mask == 0 || mask == 0x55 || mask == 0xAA || mask == 0xFF);
        LAW((frame[i] & mask) == 0);
    }
}

/// The pixels of 32 bits, one by one.
void checkPixels(const QImage &image, QRgb key, const Written &written)
{
    const int rowSize = (image.width() + 1) / 2;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        const auto *seen = reinterpret_cast<const QRgb *>(written.preview.constScanLine(y));
        for (int x = 0; x < 2 * rowSize; ++x) {
            const qsizetype place = y * rowSize + x / 2;
            const int bits = x % 2 == 0 ? 0xAA : 0x55;
            const bool isBeyond = x == image.width();
            const bool isClear =
                image.format() == QImage::Format_ARGB32 && !isBeyond && qAlpha(line[x]) < 128;
            const bool isTransparent = isBeyond || isClear || (line[x] & RGB_MASK) == (key & RGB_MASK);
            LAW((written.frame[written.stream.size() + place] & bits) == (isTransparent ? bits : 0));
            LAW((written.frame[place] & bits) == (isTransparent ? 0 : written.stream[place] & bits));
            LAW(isBeyond || seen[x] == closest(line[x]));
        }
    }
}

void check(const QImage &image, QRgb key, const Written &written)
{
    const qsizetype plane = (image.width() + 1) / 2 * image.height();
    LAW(written.stream.size() == plane && written.frame.size() == 2 * plane);
    LAW(written.preview.size() == image.size() && written.preview.isNull() == image.isNull());
    LAW(TVC::closestColor(QColor(key)) == QColor(closest(key)));
    checkMask(written.frame);
    if (image.isNull())
        return;
    LAW(written.preview.format() == QImage::Format_RGB32);
    LAW(TVC::QImageToTVC16ColoredQImage(written.preview) == written.preview);
    // Of premultiplied pixels the writer takes the words as they stand, the preview the colours.
    if (image.format() != QImage::Format_ARGB32_Premultiplied)
        LAW(TVC::QImageFromTVC16Bin(written.stream, image.width()) == written.preview);
    if (image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32)
        checkPixels(image, key, written);
}

/// What the screen and sheets are asked for.
struct Wishes
{
    explicit Wishes(FuzzedDataProvider &input)
        : size(input.ConsumeIntegralInRange(-1, 2 * LargestSide),
               input.ConsumeIntegralInRange(-1, 2 * LargestSide))
        , fit(static_cast<Screen::Fit>(input.ConsumeIntegralInRange(0, 2)))
        , dither(static_cast<Screen::Dither>(input.ConsumeIntegralInRange(0, 4)))
        , strength(input.ConsumeIntegralInRange(-1, 101))
        , columns(input.ConsumeIntegralInRange(0, 5))
        , background(QColor::fromRgba(input.ConsumeIntegral<QRgb>()))
    {
    }

    QSize size;
    Screen::Fit fit;
    Screen::Dither dither;
    int strength;
    int columns;
    QColor background;
};

/// The alpha of a frame's pixels is 0, with no bit set, or 255.
bool isFrame(const QImage &frame)
{
    const QRgb *const pixels = reinterpret_cast<const QRgb *>(frame.constBits());
    return frame.isNull() || (frame.format() == QImage::Format_ARGB32 &&
                              std::all_of(pixels, pixels + qsizetype(frame.width()) * frame.height(),
                                          [](QRgb pixel) { return pixel == 0 || qAlpha(pixel) == 255; }));
}

void checkScreen(const QImage &image, const Wishes &wishes)
{
    const bool hasSize = !image.isNull() && !wishes.size.isEmpty();
    const QImage fitted = Screen::fit(image, wishes.size, wishes.fit, wishes.background);
    const QImage frame = Screen::fitFrame(image, wishes.size, wishes.fit);
    LAW(fitted.size() == (hasSize ? wishes.size : QSize(0, 0)) && frame.size() == fitted.size() &&
        isFrame(frame));
    for (const QImage &picture : {image, fitted}) {
        const QImage mixed = Screen::dither(picture, wishes.dither, wishes.strength);
        LAW(mixed.size() == picture.size() && TVC::QImageToTVC16ColoredQImage(mixed) == mixed);
        LAW(Screen::dither(mixed, wishes.dither, wishes.strength) == mixed);
        LAW(wishes.strength > 0 || mixed == Screen::dither(picture, Screen::Dither::Nearest));
        const QImage mixedFrame = Screen::ditherFrame(picture, wishes.dither, wishes.strength);
        LAW(mixedFrame.size() == picture.size() && isFrame(mixedFrame));
        const QImage view = Screen::screenView(mixed);
        LAW(mixed.isNull() ||
            view == mixed.scaled(mixed.width() * Screen::PixelWidth, mixed.height() * Screen::PixelHeight));
    }
    // Transparent pixels alone show the background.
    const QImage ground = Screen::onBackground(image, wishes.background);
    LAW(ground.size() == image.size() &&
        (image.format() != QImage::Format_RGB32 || ground == Screen::toPixels(image)));
}

void checkSheet(const QImage &image, const Wishes &wishes)
{
    QString error;
    const QList<QImage> frames = Sheet::cut(image, wishes.size, &error);
    LAW(frames.isEmpty() != error.isEmpty() && frames.size() == Sheet::frameCount(image, wishes.size));
    for (qsizetype i = 0; i < frames.size(); ++i) {
        LAW(frames[i].size() == wishes.size && frames[i].format() == QImage::Format_ARGB32);
        LAW(frames[i] == Sheet::frameAt(image, wishes.size, i));
    }
    const QImage sheet = Sheet::join(frames, wishes.columns);
    LAW(sheet.isNull() == (frames.isEmpty() || wishes.columns < 1));
    LAW(sheet.isNull() || Sheet::cut(sheet, wishes.size) == frames);
    const QByteArray sprite = TVC::QImagesToTVC16Sprite(frames, wishes.background);
    LAW(Sheet::framesOfSprite(sprite, wishes.size).size() == frames.size());
    const QImage board = Sheet::onCheckerboard(image, wishes.size);
    LAW(board.size() == image.size() &&
        (image.format() != QImage::Format_RGB32 || board == Screen::toPixels(image)));
}

/// What the screen and sheets make of an image, for comparing.
QList<QImage> shown(const QImage &image, const Wishes &wishes)
{
    return {Screen::fit(image, wishes.size, wishes.fit, wishes.background),
            Screen::fitFrame(image, wishes.size, wishes.fit),
            Screen::dither(image, wishes.dither, wishes.strength),
            Screen::ditherFrame(image, wishes.dither, wishes.strength),
            Sheet::onCheckerboard(image, wishes.size)};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    const auto format = static_cast<QImage::Format>(
        input.ConsumeIntegralInRange<int>(QImage::Format_Mono, QImage::NImageFormats - 1));
    const int width = input.ConsumeIntegralInRange(0, LargestSide);
    const int height = input.ConsumeIntegralInRange(0, LargestSide);
    const bool isKeyPixel = input.ConsumeBool();
    const auto otherKey = input.ConsumeIntegral<QRgb>();
    const auto padding = input.ConsumeIntegralInRange<qsizetype>(1, 3);
    std::vector<QRgb> colors(input.ConsumeIntegralInRange<size_t>(0, 256));
    for (QRgb &color : colors)
        color = input.ConsumeIntegral<QRgb>();
    const Wishes wishes(input);
    const ExactBytes pixels = remainingBytes(input);

    PaddedImage padded(format, QSize(width, height), 0, pixels.bytes(), '\0');
    PaddedImage wider(format, QSize(width, height), padding, pixels.bytes(), '\xFF');
    setColors(padded.image, colors);
    setColors(wider.image, colors);
    const std::vector<char> before = padded.memory;
    const QRgb key = isKeyPixel && !padded.image.isNull() ? padded.image.pixel(0, 0) : otherKey;
    const Written written = write(padded.image, key);
    check(padded.image, key, written);
    checkScreen(padded.image, wishes);
    checkSheet(padded.image, wishes);
    LAW(padded.memory == before);
    // What stands between the lines does not matter.
    const Written same = write(wider.image, key);
    LAW(written.stream == same.stream && written.frame == same.frame && written.preview == same.preview);
    LAW(shown(padded.image, wishes) == shown(wider.image, wishes));
    return 0;
}
