// Pictures for the screen: where they stand, mean colours, and dithering beside a plain one of the test's
// own.

#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <QtGui/QPainter>
#include <QtTest/QtTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace ZR;
using Screen = ZR8BitTVCScreen;
using Light = std::array<double, 3>;

namespace {

QImage randomPicture(int width, int height)
{
    QImage picture(width, height, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int i = 0; i < width * height; ++i)
        picture.setPixel(i % width, i / width, 0xFF000000 | random.generate());
    return picture;
}

/// Whole numbers, 16,384 for 255.
Light lightOf(QRgb pixel)
{
    const auto light = [](int value) {
        return std::round(16384 * (value < 11 ? value / 3294.6 : std::pow((value + 14.025) / 269.025, 2.4)));
    };
    return {light(qRed(pixel)), light(qGreen(pixel)), light(qBlue(pixel))};
}

/// Adds a share of a light to another, and gives the square of what that is.
double add(Light &light, const Light &other, double share)
{
    for (size_t i = 0; i < light.size(); ++i)
        light[i] += share * other[i];
    return light[0] * light[0] + light[1] * light[1] + light[2] * light[2];
}

/// Floyd-Steinberg as books tell it: every colour is compared, and each pixel gives its error away.
QImage diffused(QImage picture)
{
    std::map<std::pair<int, int>, Light> errors; // in sixteenths
    for (int y = 0; y < picture.height(); ++y) {
        const int step = y % 2 == 0 ? 1 : -1;
        for (int x = step > 0 ? 0 : picture.width() - 1; x >= 0 && x < picture.width(); x += step) {
            Light light = lightOf(picture.pixel(x, y));
            for (size_t i = 0; i < light.size(); ++i)
                light[i] += std::floor((errors[{x, y}][i] + 8) / 16);
            std::map<double, QRgb> colors; // by distance; of equal ones the first remains
            for (int i = 0; i < 16; ++i) {
                const int level = i < 8 ? 146 : 255;
                const QRgb color = qRgb(i & 2 ? level : 0, i & 4 ? level : 0, i & 1 ? level : 0);
                Light error = light;
                colors.try_emplace(add(error, lightOf(color), -1), color);
            }
            picture.setPixel(x, y, colors.begin()->second);
            add(light, lightOf(colors.begin()->second), -1);
            add(errors[{x + step, y}], light, 7);
            add(errors[{x - step, y + 1}], light, 3);
            add(errors[{x, y + 1}], light, 5);
            add(errors[{x + step, y + 1}], light, 1);
        }
    }
    return picture;
}

} // namespace

class tst_TVCScreen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bars_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QRect>("place");
        QTest::newRow("square") << QSize(100, 100) << QRect(16, 0, 96, 240);
        QTest::newRow("wide") << QSize(192, 108) << QRect(0, 30, 128, 180);
        QTest::newRow("line") << QSize(10000, 1) << QRect(0, 119, 128, 1);
        QTest::newRow("column") << QSize(1, 10000) << QRect(63, 0, 1, 240);
    }

    // The whole picture, of any format, and around it bars that dithering leaves flat.
    void bars()
    {
        QFETCH(const QSize, size);
        QFETCH(const QRect, place);
        const QSize screen(Screen::Width, Screen::Height);
        const QImage picture = randomPicture(size.width(), size.height());
        const QImage fitted = Screen::fit(picture.convertToFormat(QImage::Format_RGB888), screen,
                                          Screen::Contain, QColor(10, 20, 140, 0));
        QCOMPARE(fitted.copy(place), Screen::fit(picture, place.size(), Screen::Stretch));
        for (QImage image : {fitted, Screen::dither(fitted, Screen::FloydSteinberg)}) {
            QPainter(&image).fillRect(place, QColor(0, 0, 146));
            QCOMPARE(image, image.copy(place.x(), place.y(), 1, 1).scaled(screen));
        }
        QCOMPARE(Screen::fit(picture, screen, Screen::Cover).size(), screen);
    }

    void means()
    {
        const QImage picture = randomPicture(40, 30);
        const auto stretch = [](const QImage &image, const QSize &size) {
            return Screen::fit(image, size, Screen::Stretch);
        };
        QCOMPARE(stretch(picture, {40, 30}), picture);
        QCOMPARE(stretch(picture, {120, 60}), picture.scaled(120, 60));
        // 40 x 20 and 20 x 30 on the screen
        QCOMPARE(Screen::fit(picture, {8, 10}, Screen::Cover), stretch(picture.copy(0, 5, 40, 20), {8, 10}));
        QCOMPARE(Screen::fit(picture, {4, 15}, Screen::Cover), stretch(picture.copy(10, 0, 20, 30), {4, 15}));

        const QList<QRgb> pixels = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFF0000, 0xFFFFFFFF, 0xFFFFFFFF};
        const QImage small(reinterpret_cast<const uchar *>(pixels.constData()), 3, 2, QImage::Format_RGB32);
        QCOMPARE(stretch(small, {2, 2}).pixelColor(0, 0).name(), u"#d59c00"_s); // two thirds and one of light
        QCOMPARE(stretch(small, {1, 2}).pixelColor(0, 0).name(), u"#9c9c9c"_s);
        QCOMPARE(stretch(small, {3, 1}).pixelColor(2, 0).name(), u"#bcbcff"_s);
        QVERIFY(stretch(small, {1, 0}).isNull() && stretch(small, {65536, 1}).isNull());
        QVERIFY(Screen::screenView(Screen::dither(stretch({}, {1, 1}), Screen::Bayer)).isNull());
        QCOMPARE(Screen::screenView(small), small.scaled(15, 4));
    }

    // Seen from afar a dithered colour is the colour, and those of the TVC stay as they are.
    void mixes()
    {
        const QImage colors = randomPicture(61, 40);
        const QImage palette = Screen::dither(colors, Screen::None);
        QCOMPARE(palette, ZR8BitTVCColor16::QImageToTVC16ColoredQImage(colors));
        QCOMPARE(Screen::dither(palette, Screen::FloydSteinberg), palette);
        QCOMPARE(Screen::dither(palette, Screen::Bayer), palette);
        for (const QRect &part : {QRect(0, 0, 61, 40), QRect(3, 0, 1, 40), QRect(0, 3, 61, 1)})
            QCOMPARE(Screen::dither(colors.copy(part), Screen::FloydSteinberg), diffused(colors.copy(part)));
        for (int x = 0; x < colors.width(); ++x) {
            const QImage mix = Screen::dither(colors.copy(x, 0, 1, 1).scaled(8, 8), Screen::Bayer);
            Light sum{};
            for (int i = 0; i < 64; ++i)
                add(sum, lightOf(mix.pixel(i % 8, i / 8)), 1.0 / 64);
            QVERIFY(add(sum, lightOf(colors.pixel(x, 0)), -1) < 500 * 500);
        }
    }
};

QTEST_GUILESS_MAIN(tst_TVCScreen)
#include "tst_tvcscreen.moc"
