// Time a pixel of fitting and dithering, beside a plain search of the closest of 15 colours for each pixel.

#include "pictures.h"

#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <benchmark/benchmark.h>

using namespace ZR;
using Screen = ZR8BitTVCScreen;

namespace {

template <typename Convert>
void convertImage(benchmark::State &state, const QImage &image, Convert convert)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(convert(image));
    const double pixels = double(image.width()) * image.height();
    state.counters["time/pixel"] = benchmark::Counter(pixels, benchmark::Counter::kIsIterationInvariantRate |
                                                                  benchmark::Counter::kInvert);
}

int squared(int value)
{
    return value * value;
}

/// What a user would write: every colour compared with every pixel.
void plainSearch(benchmark::State &state, const QImage &image)
{
    QList<QRgb> colors;
    for (unsigned code = 0; code < 256; ++code) {
        const QColor color = ZR8BitTVCColor16::QColorFromUChar(static_cast<unsigned char>(code));
        if (color.isValid() && !colors.contains(color.rgb()))
            colors += color.rgb();
    }
    convertImage(state, image, [&colors](QImage result) {
        for (int y = 0; y < result.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
            for (int x = 0; x < result.width(); ++x) {
                const auto distance = [pixel = line[x]](QRgb color) {
                    return squared(qRed(pixel) - qRed(color)) + squared(qGreen(pixel) - qGreen(color)) +
                           squared(qBlue(pixel) - qBlue(color));
                };
                line[x] = *std::min_element(colors.cbegin(), colors.cend(), [&](QRgb first, QRgb second) {
                    return distance(first) < distance(second);
                });
            }
        }
        return result;
    });
}

void floydSteinberg(benchmark::State &state, const QImage &image)
{
    convertImage(state, image,
                 [](const QImage &source) { return Screen::dither(source, Screen::Dither::FloydSteinberg); });
}

void bayer(benchmark::State &state, const QImage &image)
{
    convertImage(state, image,
                 [](const QImage &source) { return Screen::dither(source, Screen::Dither::Bayer8); });
}

void fit(benchmark::State &state, const QImage &image, Screen::Fit fit)
{
    convertImage(state, image, [fit](const QImage &source) {
        return Screen::fit(source, QSize(Screen::Width, Screen::Height), fit);
    });
}

/// To be held against fit.
void adjustAndFit(benchmark::State &state, const QImage &image)
{
    convertImage(state, image, [](const QImage &source) {
        const QImage adjusted = Screen::adjust(source, {120, 110, 150});
        return Screen::fit(adjusted, QSize(Screen::Width, Screen::Height));
    });
}

#define MEASURE(function)                                                                                    \
    BENCHMARK_CAPTURE(function, random, randomImage())->Unit(benchmark::kMillisecond);                       \
    BENCHMARK_CAPTURE(function, photo, photoImage())->Unit(benchmark::kMillisecond)

MEASURE(plainSearch);
MEASURE(floydSteinberg);
MEASURE(bayer);
BENCHMARK_CAPTURE(fit, contain, photoImage(), Screen::Fit::Contain)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(adjustAndFit, contain, photoImage())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fit, alpha, photoImage().convertToFormat(QImage::Format_ARGB32), Screen::Fit::Contain)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fit, cover, photoImage(), Screen::Fit::Cover)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fit, other format, photoImage().convertToFormat(QImage::Format_RGB888),
                  Screen::Fit::Stretch)
    ->Unit(benchmark::kMillisecond);

} // namespace
