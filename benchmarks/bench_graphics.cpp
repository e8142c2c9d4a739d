// Time a pixel of the picture and sprite conversions, beside what Qt offers for the same: an indexed image of
// the 16 colours, each pixel at its nearest, without dithering.

#include "pictures.h"

#include <zr8bitlib/zr8bittvccolor16.h>

#include <benchmark/benchmark.h>

using namespace ZR;
using TVC = ZR8BitTVCColor16;

namespace {

/// The photograph in TVC colours.
QImage tvcImage()
{
    return TVC::QImageToTVC16ColoredQImage(photoImage());
}

QList<QRgb> colorTable()
{
    QList<QRgb> colors;
    for (unsigned code = 0; code < 256; ++code) {
        const QColor color = TVC::QColorFromUChar(static_cast<unsigned char>(code));
        if (color.isValid())
            colors += color.rgb();
    }
    return colors;
}

void setPixelTime(benchmark::State &state, const QImage &image)
{
    const double pixels = double(image.width()) * image.height();
    state.counters["time/pixel"] = benchmark::Counter(pixels, benchmark::Counter::kIsIterationInvariantRate |
                                                                  benchmark::Counter::kInvert);
}

template <typename Convert>
void convertImage(benchmark::State &state, const QImage &image, Convert convert)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(convert(image));
    setPixelTime(state, image);
}

void qtIndexed(benchmark::State &state, const QImage &image)
{
    const QList<QRgb> colors = colorTable();
    convertImage(state, image, [&colors](const QImage &source) {
        return source.convertToFormat(QImage::Format_Indexed8, colors, Qt::AvoidDither);
    });
}

void writePicture(benchmark::State &state, const QImage &image)
{
    convertImage(state, image, TVC::QImageToTVC16Bin);
}

void preview(benchmark::State &state, const QImage &image)
{
    convertImage(state, image, TVC::QImageToTVC16ColoredQImage);
}

void writeSprite(benchmark::State &state, const QImage &image)
{
    convertImage(state, image, [](const QImage &source) {
        return TVC::QImageToTVC16SpriteFrame(source, QColor(255, 0, 255));
    });
}

#define MEASURE(function)                                                                                    \
    BENCHMARK_CAPTURE(function, random, randomImage())->Unit(benchmark::kMillisecond);                       \
    BENCHMARK_CAPTURE(function, photo, photoImage())->Unit(benchmark::kMillisecond);                         \
    BENCHMARK_CAPTURE(function, tvcColors, tvcImage())->Unit(benchmark::kMillisecond)

MEASURE(qtIndexed);
MEASURE(writePicture);
MEASURE(preview);
MEASURE(writeSprite);

void readPicture(benchmark::State &state)
{
    const QImage image = randomImage();
    const QByteArray stream = TVC::QImageToTVC16Bin(image);
    for (auto _ : state)
        benchmark::DoNotOptimize(TVC::QImageFromTVC16Bin(stream, Width));
    setPixelTime(state, image);
}
BENCHMARK(readPicture)->Unit(benchmark::kMillisecond);

void readSprite(benchmark::State &state)
{
    const QImage image = randomImage();
    const QByteArray frame = TVC::QImageToTVC16SpriteFrame(image, QColor(255, 0, 255));
    for (auto _ : state)
        benchmark::DoNotOptimize(TVC::QImageFromTVC16SpriteFrame(frame, Width));
    setPixelTime(state, image);
}
BENCHMARK(readSprite)->Unit(benchmark::kMillisecond);

/// The time of a pixel must not depend on how many there are.
void writeRows(benchmark::State &state)
{
    convertImage(state, randomImage(static_cast<int>(state.range(0))), TVC::QImageToTVC16Bin);
}
BENCHMARK(writeRows)->ArgName("rows")->RangeMultiplier(10)->Range(10, 10000);

/// One colour the general way, through QColor.
void closestColor(benchmark::State &state)
{
    QRandomGenerator random(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(TVC::QColorToTVC16Color(QColor(random.generate())));
}
BENCHMARK(closestColor);

} // namespace
