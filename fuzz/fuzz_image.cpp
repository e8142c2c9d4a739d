// The writers of pictures and sprites on images of every format, with odd sizes and padded lines.

#include "fuzzing.h"

#include <zr8bitlib/zr8bittvccolor16.h>

#include <algorithm>

using TVC = ZR::ZR8BitTVCColor16;

namespace {

constexpr int LargestSide = 40;

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
void checkPixels(const QImage &image, QRgb key, const QImage &preview, const QByteArray &stream,
                 const QByteArray &frame)
{
    const int rowSize = (image.width() + 1) / 2;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < 2 * rowSize; ++x) {
            const qsizetype place = y * rowSize + x / 2;
            const int bits = x % 2 == 0 ? 0xAA : 0x55;
            const bool isBeyond = x == image.width();
            const bool isClear =
                image.format() == QImage::Format_ARGB32 && !isBeyond && qAlpha(line[x]) < 128;
            const bool isTransparent = isBeyond || isClear || (line[x] & RGB_MASK) == (key & RGB_MASK);
            LAW((frame[stream.size() + place] & bits) == (isTransparent ? bits : 0));
            LAW((frame[place] & bits) == (isTransparent ? 0 : stream[place] & bits));
            LAW(isBeyond || preview.pixelColor(x, y) == TVC::closestColor(QColor(line[x])));
        }
    }
}

void check(const QImage &image, QRgb key)
{
    const QByteArray stream = TVC::QImageToTVC16Bin(image);
    const QImage preview = TVC::QImageToTVC16ColoredQImage(image);
    const QByteArray frame = TVC::QImageToTVC16SpriteFrame(image, QColor(key));
    const qsizetype plane = (image.width() + 1) / 2 * image.height();
    LAW(stream.size() == plane && frame.size() == 2 * plane);
    LAW(preview.size() == image.size() && preview.isNull() == image.isNull());
    checkMask(frame);
    if (image.isNull())
        return;
    LAW(preview.format() == QImage::Format_RGB32 && TVC::QImageToTVC16ColoredQImage(preview) == preview);
    // Of premultiplied pixels the writer takes the words as they stand, the preview the colours.
    if (image.format() != QImage::Format_ARGB32_Premultiplied)
        LAW(TVC::QImageFromTVC16Bin(stream, image.width()) == preview);
    if (image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32)
        checkPixels(image, key, preview, stream, frame);
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
    const ExactBytes pixels = remainingBytes(input);

    PaddedImage padded(format, QSize(width, height), 0, pixels.bytes(), '\0');
    PaddedImage wider(format, QSize(width, height), padding, pixels.bytes(), '\xFF');
    setColors(padded.image, colors);
    setColors(wider.image, colors);
    const std::vector<char> before = padded.memory;
    const QRgb key = isKeyPixel && !padded.image.isNull() ? padded.image.pixel(0, 0) : otherKey;
    check(padded.image, key);
    LAW(padded.memory == before);
    // What stands between the lines does not matter.
    LAW(TVC::QImageToTVC16Bin(padded.image) == TVC::QImageToTVC16Bin(wider.image));
    LAW(TVC::QImageToTVC16SpriteFrame(padded.image, QColor(key)) ==
        TVC::QImageToTVC16SpriteFrame(wider.image, QColor(key)));
    LAW(TVC::QImageToTVC16ColoredQImage(padded.image) == TVC::QImageToTVC16ColoredQImage(wider.image));
    return 0;
}
