// The colour codes, the two-pixel byte, the colour lists and the closest colour.

#include <zr8bitlib/zr8bittvccolor16.h>
#include <zr8bitlib/zr8bittvccolor16_p.h>
#include <zrbaselib/zrimageext.h>

#include <QtTest/QtTest>

#include <limits>

using namespace ZR;
using TVC = ZR8BitTVCColor16;

namespace {

// Bright black, which is black again, stands last, behind the distinct colours.
const ZRTVC16Colors colors[] = {
    ZRTVC16ColorBlack,     ZRTVC16ColorDarkBlue, ZRTVC16ColorDarkRed,    ZRTVC16ColorDarkMagenta,
    ZRTVC16ColorDarkGreen, ZRTVC16ColorDarkCyan, ZRTVC16ColorDarkYellow, ZRTVC16ColorGray,
    ZRTVC16ColorBlue,      ZRTVC16ColorRed,      ZRTVC16ColorMagenta,    ZRTVC16ColorGreen,
    ZRTVC16ColorCyan,      ZRTVC16ColorYellow,   ZRTVC16ColorWhite,      ZRTVC16ColorBrightBlack};
const int distinctCount = 15;

const QStringList names =
    QStringLiteral("#000000 #000092 #920000 #920092 #009200 #009292 #929200 #929292 #0000ff #ff0000 "
                   "#ff00ff #00ff00 #00ffff #ffff00 #ffffff #000000")
        .split(u' ');

/// The colour of an index; an invalid one beyond the last.
QColor named(qsizetype index)
{
    return QColor(names.value(index));
}

/// The index of the distinct colour that is closest to a pixel, by looking at each.
int search(QRgb pixel)
{
    int closest = 0;
    int least = std::numeric_limits<int>::max();
    for (int i = 0; i < distinctCount; ++i) {
        const QRgb rgb = TVC16ColorList[static_cast<size_t>(i)];
        const int red = qRed(pixel) - qRed(rgb);
        const int green = qGreen(pixel) - qGreen(rgb);
        const int blue = qBlue(pixel) - qBlue(rgb);
        const int distance = red * red + green * green + blue * blue;
        if (distance < least) {
            least = distance;
            closest = i;
        }
    }
    return closest;
}

} // namespace

class tst_TVCColor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allCodes()
    {
        for (int i = 0; i < 256; ++i) {
            const auto byte = static_cast<unsigned char>(i);
            const auto color = std::find(std::begin(colors), std::end(colors), byte) - std::begin(colors);
            QCOMPARE(TVC::QColorFromUChar(byte), named(color));
            QCOMPARE(TVC::TVC16ColorToRGBString(TVC::TVC16ColorFromUChar(byte)),
                     names.value(color, names.first()));
            // A palette code is the colour code shifted, and has no bit of the first pixel.
            const QColor entry =
                i & 0xAA ? QColor() : TVC::QColorFromUChar(static_cast<unsigned char>(i << 1));
            QCOMPARE(TVC::TVC16PaletteToQColor(static_cast<ZRTVC16Palette>(byte)), entry);
        }
        for (int i = 0; i < distinctCount; ++i) {
            QCOMPARE(TVC::QColorToUChar(named(i)), TVC::TVC16ColorToUChar(colors[i]));
            QCOMPARE(int(TVC::QColorToTVC16Palette(named(i))), colors[i] >> 1);
        }
    }

    void allPixelBytes()
    {
        for (int i = 0; i < 256; ++i) {
            const int first = i / 16;
            const int second = i % 16;
            const ZRTVC16Pixel pixel = TVC::TVC16PixelFromTVC16Colors(colors[first], colors[second]);
            QCOMPARE(int(pixel), colors[first] | colors[second] >> 1);
            QColor color1;
            QColor color2(Qt::red);
            TVC::TVC16PixelToQColors(pixel, color1, color2);
            QCOMPARE(color1, named(first));
            QCOMPARE(color2, named(second));
            QCOMPARE(int(pixel), pixel.intensity1 << 7 | pixel.intensity2 << 6 | pixel.green1 << 5 |
                                     pixel.green2 << 4 | pixel.red1 << 3 | pixel.red2 << 2 |
                                     pixel.blue1 << 1 | pixel.blue2);
        }
        const auto notMasked = TVC::TVC16ColorFromUChar(0xFF);
        QCOMPARE(int(TVC::TVC16PixelFromTVC16Colors(ZRTVC16ColorBlack, notMasked)), 0x7F);
        QCOMPARE(int(TVC::TVC16PixelFromQColors(QColor(250, 10, 10), QColor(0, 0, 140))), 0x89);
    }

    void lists()
    {
        const auto namesOf = [](const auto &list) {
            QStringList found;
            for (const QRgb color : list)
                found += QColor(color).name();
            return found;
        };
        QCOMPARE(namesOf(TVC16ColorList), names.first(distinctCount));
        QCOMPARE(namesOf(TVC16DarkColorList), names.first(8));
        QCOMPARE(namesOf(TVC16BrightColorList), names.first(1) + names.sliced(8, 7));
        // The chart as a whole, by the MD5 of its 99 times red, green and blue.
        const QByteArray chart = QByteArray::fromHex(namesOf(TVC99ColorList).join(QString()).toLatin1());
        QCOMPARE(chart.size(), 99 * 3);
        QCOMPARE(QCryptographicHash::hash(chart, QCryptographicHash::Md5).toHex(),
                 QByteArray("6d51e5ade6bc1c5d600992505bd7b086"));
    }

    void closestColor()
    {
        QCOMPARE(TVC::closestColor(QColor(146, 0, 0, 254)), QColor(146, 0, 0));
        QCOMPARE(TVC::closestColor(QColor()), QColor(0, 0, 0));
        QCOMPARE(TVC::closestColor(QColor::fromHsv(120, 255, 255)), QColor(0, 255, 0));

        const QList<ZRColor> list{QColor(10, 0, 0), ZRColor(QColor(12, 0, 0), {7}), QColor(20, 0, 0)};
        ZRImageExt::ColorCache cache;
        QCOMPARE(ZRImageExt::closestColor(QColor(11, 0, 0, 5), list, nullptr).color(), QColor(10, 0, 0));
        QCOMPARE(ZRImageExt::closestColor(QColor(13, 2, 1), list, &cache).values(), QList<quint32>{7});
        QCOMPARE(ZRImageExt::closestColor(QColor(13, 2, 1), {}, &cache).color(),
                 QColor(12, 0, 0)); // remembered
        QVERIFY(!ZRImageExt::closestColor(QColor(13, 2, 2), {}, &cache).color().isValid());
    }

    // The picture operations search in a way of their own, which has to find what a plain search finds, and
    // closestColor(). That one takes some 200 ns a colour, so only every fifth is asked for. Builds without
    // optimisation look at a part of all colours, as the whole would take minutes. The steps are odd, so that
    // every value of each component comes up.
    void allColors()
    {
#ifdef NDEBUG
        const int step = 1;
#else
        const int step = 61;
#endif
        const int rowLength = 4096;
        QImage image(rowLength, 1, QImage::Format_RGB32);
        auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(0));
        for (int begin = 0; begin < 1 << 24; begin += rowLength * step) {
            for (int i = 0; i < rowLength; ++i)
                pixels[i] = 0xFF000000 | static_cast<QRgb>(begin + i * step);
            const QByteArray stream = TVC::QImageToTVC16Bin(image);
            const QImage preview = TVC::QImageToTVC16ColoredQImage(image);
            for (int i = 0; i < rowLength; ++i) {
                const int closest = search(pixels[i]);
                const int code = stream.at(i / 2) * (i % 2 + 1) & 0xAA;
                if (code != colors[closest] ||
                    preview.pixel(i, 0) != TVC16ColorList[static_cast<size_t>(closest)] ||
                    (i % 5 == 0 && TVC::QColorToTVC16Color(QColor(pixels[i])) != colors[closest]))
                    QFAIL(qPrintable(QColor(pixels[i]).name()));
            }
        }
    }
};

QTEST_GUILESS_MAIN(tst_TVCColor)
#include "tst_tvccolor.moc"
