// Pictures and sprites of any bytes, width and height.

#include "fuzzing.h"

#include <zr8bitlib/zr8bittvccolor16.h>

using TVC = ZR::ZR8BitTVCColor16;

namespace {

qsizetype bytesPerRow(int width)
{
    return (width + 1) / 2;
}

/// What each two-pixel byte becomes when it is read and written again.
std::vector<unsigned char> rewrittenBytes()
{
    std::vector<unsigned char> bytes;
    for (unsigned byte = 0; byte < 0x100; ++byte) {
        QColor first;
        QColor second;
        TVC::TVC16PixelToQColors(static_cast<unsigned char>(byte), first, second);
        bytes.push_back(TVC::TVC16PixelFromQColors(first, second));
    }
    return bytes;
}

void checkPicture(const QByteArray &stream, int width)
{
    const QImage picture = TVC::QImageFromTVC16Bin(stream, width);
    if (width < 1 || stream.isEmpty()) {
        LAW(picture.isNull());
        return;
    }
    const qsizetype rowSize = bytesPerRow(width);
    LAW(picture.width() == width && picture.height() == (stream.size() + rowSize - 1) / rowSize);
    LAW(picture.format() == QImage::Format_RGB32);

    static const std::vector<unsigned char> rewritten = rewrittenBytes();
    const QByteArray back = TVC::QImageToTVC16Bin(picture);
    LAW(back.size() == rowSize * picture.height());
    for (qsizetype i = 0; i < back.size(); ++i) {
        const bool isCut = width % 2 != 0 && i % rowSize == rowSize - 1;
        const auto byte = static_cast<unsigned char>(i < stream.size() ? stream[i] : '\0');
        LAW(static_cast<unsigned char>(back[i]) == (rewritten[byte] & (isCut ? 0xAA : 0xFF)));
    }
    LAW(TVC::QImageFromTVC16Bin(back, width) == picture);
    LAW(TVC::QImageToTVC16ColoredQImage(picture) == picture);
}

/// The colours of a frame with all bits of transparent pixels set.
QByteArray mergedPlanes(const QByteArray &frame)
{
    QByteArray merged = frame.first(frame.size() / 2);
    for (qsizetype i = 0; i < merged.size(); ++i)
        merged[i] = static_cast<char>(merged[i] | frame[merged.size() + i]);
    return merged;
}

void checkSprite(const QByteArray &stream, int width, int height)
{
    const QList<QImage> frames = TVC::QImagesFromTVC16Sprite(stream, width, height);
    if (width < 1 || height < 1 || stream.isEmpty()) {
        LAW(frames.isEmpty());
        return;
    }
    const qint64 frameSize = 2 * bytesPerRow(width) * qint64(height);
    LAW(frames.size() == (stream.size() + frameSize - 1) / frameSize);
    for (qsizetype i = 0; i < frames.size(); ++i) {
        const QByteArray frame = stream.mid(i * frameSize, frameSize);
        LAW(frames[i] == TVC::QImageFromTVC16SpriteFrame(frame, width));
        const qsizetype rowSize = bytesPerRow(width);
        LAW(frames[i].height() == frame.size() / 2 / rowSize + (frame.size() % rowSize != 0));
        if (frame.size() == frameSize)
            LAW(frames[i] == TVC::QImageFromTVC16Bin(mergedPlanes(frame), width));
    }
    if (stream.size() % frameSize != 0)
        return;
    // Transparent pixels are read as white, and white can be made transparent again.
    const QByteArray back = TVC::QImagesToTVC16Sprite(frames, QColor(Qt::white));
    LAW(back.size() == stream.size());
    LAW(TVC::QImagesFromTVC16Sprite(back, width, height) == frames);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    constexpr int LargestWidth = 100; // a picture has at least one row, which takes time
    FuzzedDataProvider input(bytes, size);
    const bool isSprite = input.ConsumeBool();
    const int width = input.ConsumeIntegralInRange(-1, LargestWidth);
    const int height =
        input.ConsumeBool() ? input.ConsumeIntegralInRange(-1, 20) : input.ConsumeIntegral<int>();
    const ExactBytes stream = remainingBytes(input);
    if (isSprite)
        checkSprite(stream.bytes(), width, height);
    else
        checkPicture(stream.bytes(), width);
    return 0;
}
