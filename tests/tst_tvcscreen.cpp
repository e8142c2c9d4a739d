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
                                          Screen::Fit::Contain, QColor(10, 20, 140, 0));
        QCOMPARE(fitted.copy(place), Screen::fit(picture, place.size(), Screen::Fit::Stretch));
        for (QImage image : {fitted, Screen::dither(fitted, Screen::Dither::FloydSteinberg)}) {
            QPainter(&image).fillRect(place, QColor(0, 0, 146));
            QCOMPARE(image, image.copy(place.x(), place.y(), 1, 1).scaled(screen));
        }
        QCOMPARE(Screen::fit(picture, screen, Screen::Fit::Cover).size(), screen);
    }

    void means()
    {
        const QImage picture = randomPicture(40, 30);
        const auto stretch = [](const QImage &image, const QSize &size) {
            return Screen::fit(image, size, Screen::Fit::Stretch);
        };
        QCOMPARE(stretch(picture, {40, 30}), picture);
        QCOMPARE(stretch(picture, {120, 60}), picture.scaled(120, 60));
        // 40 x 20 and 20 x 30 on the screen
        QCOMPARE(Screen::fit(picture, {8, 10}, Screen::Fit::Cover),
                 stretch(picture.copy(0, 5, 40, 20), {8, 10}));
        QCOMPARE(Screen::fit(picture, {4, 15}, Screen::Fit::Cover),
                 stretch(picture.copy(10, 0, 20, 30), {4, 15}));

        const QList<QRgb> pixels = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFF0000, 0xFFFFFFFF, 0xFFFFFFFF};
        const QImage small(reinterpret_cast<const uchar *>(pixels.constData()), 3, 2, QImage::Format_RGB32);
        QCOMPARE(stretch(small, {2, 2}).pixelColor(0, 0).name(), u"#d59c00"_s); // two thirds and one of light
        QCOMPARE(stretch(small, {1, 2}).pixelColor(0, 0).name(), u"#9c9c9c"_s);
        QCOMPARE(stretch(small, {3, 1}).pixelColor(2, 0).name(), u"#bcbcff"_s);
        QVERIFY(stretch(small, {1, 0}).isNull() && stretch(small, {65536, 1}).isNull());
        QVERIFY(Screen::screenView(Screen::dither(stretch({}, {1, 1}), Screen::Dither::Bayer8)).isNull());
        QCOMPARE(Screen::screenView(small), small.scaled(15, 4));
    }

    // By the definitions of the filters in CSS, with numbers of 0 to 1.
    void adjust()
    {
        const QImage picture = randomPicture(61, 40).convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(Screen::adjust(picture, {}), picture);
        const auto inRange = [](double number) { return std::clamp(number, 0.0, 1.0); };
        for (const Screen::Adjustments &by :
             {Screen::Adjustments{80, 130, 100}, {160, 70, 250}, {100, 100, 0}}) {
            const QImage adjusted = Screen::adjust(picture, by);
            for (int i = 0; i < 61 * 40; ++i) {
                const QColor from = picture.pixelColor(i % 61, i / 61);
                const QColor to = adjusted.pixelColor(i % 61, i / 61);
                Light tones = {from.redF(), from.greenF(), from.blueF()};
                for (double &tone : tones)
                    tone = inRange((inRange(tone * by.brightness / 100) - 0.5) * by.contrast / 100 + 0.5);
                const double grey = 0.213 * tones[0] + 0.715 * tones[1] + 0.072 * tones[2];
                const Light found = {to.redF(), to.greenF(), to.blueF()};
                for (size_t part = 0; part < 3; ++part) {
                    const double wanted = inRange(grey + (tones[part] - grey) * by.saturation / 100);
                    QVERIFY2(std::abs(wanted - found[part]) < 0.6 / 255, qPrintable(from.name() + to.name()));
                }
            }
        }
        QImage clear = picture;
        clear.fill(0x40FF0000);
        QCOMPARE(Screen::adjust(clear, {50, 100, 100}).pixel(0, 0), 0x40800000U);
    }

    // Half of white is half of the light. A frame's pixel is opaque from half of its area on.
    void transparency()
    {
        QImage picture(4, 4, QImage::Format_ARGB32);
        picture.fill(0x80FFFFFF);
        QCOMPARE(Screen::onBackground(picture).pixel(0, 0), 0xFFBCBCBCU);
        QCOMPARE(Screen::onBackground(picture, QColor(10, 0, 240)).pixel(0, 0), 0xFFBCBCFFU);
        QCOMPARE(Screen::fit(picture, {4, 4}, Screen::Fit::Stretch), Screen::onBackground(picture));

        picture.fill(Qt::transparent);
        picture.setPixel(0, 0, 0xFF00C020);
        picture.setPixel(1, 0, 0xFF00C020);
        picture.setPixel(2, 0, 0xFF00C020);
        const QImage frame = Screen::fitFrame(picture, {2, 2}, Screen::Fit::Stretch);
        QVERIFY(frame.pixel(0, 0) == 0xFF00C020 && frame.pixel(1, 0) == 0 && frame.pixel(0, 1) == 0);
        // Nothing reaches a pixel past a transparent one: alone it becomes the closest light.
        QImage row(5, 1, QImage::Format_ARGB32);
        row.fill(0xFFC8C8C8);
        row.setPixel(3, 0, 0x7F000000);
        for (const auto dither :
             {Screen::Dither::FloydSteinberg, Screen::Dither::Bayer4, Screen::Dither::Nearest}) {
            const QImage mixed = Screen::ditherFrame(row, dither);
            QVERIFY(mixed.pixel(3, 0) == 0 && mixed.pixel(4, 0) == 0xFF929292);
        }
        QCOMPARE(Screen::ditherFrame(row, Screen::Dither::FloydSteinberg).pixel(1, 0), 0xFFFFFFFF);
    }

    // The weaker a mix is, the more stays flat; a smaller pattern repeats earlier.
    void strengths()
    {
        QImage flat(16, 16, QImage::Format_RGB32);
        flat.fill(QColor(120, 150, 140)); // near grey
        const QImage nearest = Screen::dither(flat, Screen::Dither::Nearest);
        for (const auto dither :
             {Screen::Dither::FloydSteinberg, Screen::Dither::Bayer2, Screen::Dither::Bayer8}) {
            QVERIFY(Screen::dither(flat, dither) != nearest);
            QCOMPARE(Screen::dither(flat, dither, 30), nearest);
            const QImage colors = randomPicture(30, 20);
            QCOMPARE(Screen::dither(colors, dither, 0), Screen::dither(colors, Screen::Dither::Nearest));
            QCOMPARE(Screen::dither(colors, dither, 200), Screen::dither(colors, dither));
        }
        const QImage pattern = Screen::dither(flat, Screen::Dither::Bayer4);
        QCOMPARE(pattern.copy(4, 8, 8, 8), pattern.copy(0, 0, 8, 8));
        QVERIFY(pattern.copy(2, 0, 8, 8) != pattern.copy(0, 0, 8, 8));
    }

    // Seen from afar a dithered colour is the colour, and those of the TVC stay as they are.
    void mixes()
    {
        const QImage colors = randomPicture(61, 40);
        const QImage palette = Screen::dither(colors, Screen::Dither::Nearest);
        QCOMPARE(palette, ZR8BitTVCColor16::QImageToTVC16ColoredQImage(colors));
        QCOMPARE(Screen::dither(palette, Screen::Dither::FloydSteinberg), palette);
        QCOMPARE(Screen::dither(palette, Screen::Dither::Bayer8), palette);
        for (const QRect &part : {QRect(0, 0, 61, 40), QRect(3, 0, 1, 40), QRect(0, 3, 61, 1)})
            QCOMPARE(Screen::dither(colors.copy(part), Screen::Dither::FloydSteinberg),
                     diffused(colors.copy(part)));
        for (int x = 0; x < colors.width(); ++x) {
            const QImage mix = Screen::dither(colors.copy(x, 0, 1, 1).scaled(8, 8), Screen::Dither::Bayer8);
            Light sum{};
            for (int i = 0; i < 64; ++i)
                add(sum, lightOf(mix.pixel(i % 8, i / 8)), 1.0 / 64);
            QVERIFY(add(sum, lightOf(colors.pixel(x, 0)), -1) < 500 * 500);
        }
    }

    // One colour in each pattern, whose places have an order, and whose colours go from dark to bright.
    void patterns()
    {
        using Dither = Screen::Dither;
        QImage color(8, 8, QImage::Format_RGB32);
        color.fill(QColor(100, 180, 60));
        const auto drawn = [&color](Dither dither, int rows, int strength = 100) {
            const QImage picture = color.copy(0, 0, 8, rows);
            return ZR8BitTVCColor16::QImageToTVC16Bin(Screen::dither(picture, dither, strength)).toHex();
        };
        QCOMPARE(drawn(Dither::Bayer2, 2), "35353535b4b4b4b4"_ba);
        QCOMPARE(drawn(Dither::Bayer4, 4), "34353435b0b4b0b435353535b4b4b4b4"_ba);
        QCOMPARE(drawn(Dither::Bayer8, 8),
                 "34353435b0b4b1b435343534b4b4b4b434353435b4b4b1b435353534b4b4b4b4"_ba);
        QCOMPARE(drawn(Dither::Bayer8, 2, 50), "3434343438383838"_ba);
        QCOMPARE(drawn(Dither::Bayer8, 2, 0), drawn(Dither::Nearest, 2));
    }

    // What is transparent, by half of alpha and half of the area, has no bits and takes no part in colours.
    void frames()
    {
        QImage frame(4, 2, QImage::Format_ARGB32);
        frame.fill(0xFFFF0000);
        frame.setPixel(0, 0, 0x7F00FF00);
        frame.setPixel(1, 0, 0x8000FF00);
        frame.setPixel(2, 0, 0x00123456);
        QImage sharp = frame.copy();
        sharp.setPixel(0, 0, 0);
        sharp.setPixel(1, 0, 0xFF00FF00);
        sharp.setPixel(2, 0, 0);
        for (const auto dither :
             {Screen::Dither::Nearest, Screen::Dither::FloydSteinberg, Screen::Dither::Bayer4})
            QCOMPARE(Screen::ditherFrame(frame, dither), sharp);
        QCOMPARE(Screen::fitFrame(sharp, {4, 2}, Screen::Fit::Stretch), sharp);
        const QImage small = Screen::fitFrame(sharp, {2, 1}, Screen::Fit::Stretch);
        QCOMPARE(small.pixelColor(0, 0).name(), u"#d59c00"_s); // two thirds of red light and one of green
        QCOMPARE(small.pixel(1, 0), 0xFFFF0000);
        QCOMPARE(Screen::fitFrame(sharp.copy(0, 0, 3, 1), {1, 1}, Screen::Fit::Stretch).pixel(0, 0), 0U);
        QImage soft(2, 1, QImage::Format_ARGB32); // half of it, to the digit
        soft.setPixel(0, 0, 0xBFC8C8C8);
        soft.setPixel(1, 0, 0x40C8C8C8);
        QCOMPARE(Screen::fitFrame(soft, {1, 1}, Screen::Fit::Stretch).pixel(0, 0), 0xFFC8C8C8);
        frame.fill(0x80FF0000);
        QCOMPARE(Screen::onBackground(frame, Qt::blue).pixelColor(3, 1).name(), u"#bc00bb"_s);
    }
};

QTEST_GUILESS_MAIN(tst_TVCScreen)
#include "tst_tvcscreen.moc"
