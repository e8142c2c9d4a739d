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

void check(const QImage &image, QColor transparent)
{
    const QByteArray stream = TVC::QImageToTVC16Bin(image);
    const QImage preview = TVC::QImageToTVC16ColoredQImage(image);
    const QByteArray frame = TVC::QImageToTVC16SpriteFrame(image, transparent);
    const qsizetype plane = (image.width() + 1) / 2 * image.height();
    LAW(stream.size() == plane && frame.size() == 2 * plane);
    LAW(preview.size() == image.size() && preview.isNull() == image.isNull());
    checkMask(frame);
    if (image.isNull())
        return;
    LAW(preview.format() == QImage::Format_RGB32 && TVC::QImageToTVC16ColoredQImage(preview) == preview);
    LAW(TVC::QImageFromTVC16SpriteFrame(frame, image.width()).size() == image.size());
    // Of premultiplied pixels the writer takes the words as they stand, the preview the colours.
    if (image.format() != QImage::Format_ARGB32_Premultiplied)
        LAW(TVC::QImageFromTVC16Bin(stream, image.width()) == preview);
    if (image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(0));
        for (int x = 0; x < image.width(); ++x)
            LAW(preview.pixelColor(x, 0) == TVC::closestColor(QColor(line[x])));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    const auto format = static_cast<QImage::Format>(
        input.ConsumeIntegralInRange<int>(QImage::Format_Mono, QImage::NImageFormats - 1));
    const int width = input.ConsumeIntegralInRange(0, LargestSide);
    const int height = input.ConsumeIntegralInRange(0, LargestSide);
    const QColor transparent(input.ConsumeIntegral<QRgb>());
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
    check(padded.image, transparent);
    LAW(padded.memory == before);
    // What stands between the lines does not matter.
    LAW(TVC::QImageToTVC16Bin(padded.image) == TVC::QImageToTVC16Bin(wider.image));
    LAW(TVC::QImageToTVC16SpriteFrame(padded.image, transparent) ==
        TVC::QImageToTVC16SpriteFrame(wider.image, transparent));
    LAW(TVC::QImageToTVC16ColoredQImage(padded.image) == TVC::QImageToTVC16ColoredQImage(wider.image));
    return 0;
}
