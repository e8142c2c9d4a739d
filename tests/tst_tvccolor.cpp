// The colour codes, the two-pixel byte, the colour lists and the closest colour.

#include <zr8bitlib/zr8bittvccolor16.h>
#include <zr8bitlib/zr8bittvccolor16_p.h>
#include <zrbaselib/zrimageext.h>

#include <QtTest/QtTest>

using namespace ZR;
using TVC = ZR8BitTVCColor16;

namespace {

struct Code
{
    ZRTVC16Colors color;
    ZRTVC16Palette palette;
    const char *rgb;
};

const Code codes[] = {{ZRTVC16ColorBlack, ZRTVC16PaletteBlack, "#000000"},
                      {ZRTVC16ColorDarkBlue, ZRTVC16PaletteDarkBlue, "#000092"},
                      {ZRTVC16ColorDarkRed, ZRTVC16PaletteDarkRed, "#920000"},
                      {ZRTVC16ColorDarkMagenta, ZRTVC16PaletteDarkMagenta, "#920092"},
                      {ZRTVC16ColorDarkGreen, ZRTVC16PaletteDarkGreen, "#009200"},
                      {ZRTVC16ColorDarkCyan, ZRTVC16PaletteDarkCyan, "#009292"},
                      {ZRTVC16ColorDarkYellow, ZRTVC16PaletteDarkYellow, "#929200"},
                      {ZRTVC16ColorGray, ZRTVC16PaletteGray, "#929292"},
                      {ZRTVC16ColorBlue, ZRTVC16PaletteBlue, "#0000ff"},
                      {ZRTVC16ColorRed, ZRTVC16PaletteRed, "#ff0000"},
                      {ZRTVC16ColorMagenta, ZRTVC16PaletteMagenta, "#ff00ff"},
                      {ZRTVC16ColorGreen, ZRTVC16PaletteGreen, "#00ff00"},
                      {ZRTVC16ColorCyan, ZRTVC16PaletteCyan, "#00ffff"},
                      {ZRTVC16ColorYellow, ZRTVC16PaletteYellow, "#ffff00"},
                      {ZRTVC16ColorWhite, ZRTVC16PaletteWhite, "#ffffff"},
                      {ZRTVC16ColorBrightBlack, ZRTVC16PaletteBrightBlack, "#000000"}};

const int distinctCount = 15; // bright black, the last above, is black again

QColor named(const char *rgb)
{
    return QColor(QString::fromLatin1(rgb));
}

} // namespace

class tst_TVCColor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allCodes();
    void allPixelBytes();
    void lists();
    void closest_data();
    void closest();
    void allColors();
    void cache();
};

void tst_TVCColor::allCodes()
{
    for (int byte = 0; byte < 256; ++byte) {
        const auto uchar = static_cast<unsigned char>(byte);
        const ZRTVC16Colors color = TVC::TVC16ColorFromUChar(uchar);
        QCOMPARE(TVC::TVC16ColorToUChar(color), uchar);
        const auto isColor = [byte](const Code &code) { return code.color == byte; };
        const auto isPalette = [byte](const Code &code) { return code.palette == byte; };
        const auto *found = std::find_if(std::begin(codes), std::end(codes), isColor);
        const char *rgb = found == std::end(codes) ? nullptr : found->rgb;
        QCOMPARE(TVC::TVC16ColorToQColor(color), rgb ? named(rgb) : QColor());
        QCOMPARE(TVC::QColorFromUChar(uchar), rgb ? named(rgb) : QColor());
        QCOMPARE(TVC::TVC16ColorToRGBString(color), QString::fromLatin1(rgb ? rgb : "#000000"));
        found = std::find_if(std::begin(codes), std::end(codes), isPalette);
        QCOMPARE(TVC::TVC16PaletteToQColor(static_cast<ZRTVC16Palette>(byte)),
                 found == std::end(codes) ? QColor() : named(found->rgb));
    }
    for (int i = 0; i < distinctCount; ++i) {
        QCOMPARE(TVC::QColorToTVC16Color(named(codes[i].rgb)), codes[i].color);
        QCOMPARE(TVC::QColorToTVC16Palette(named(codes[i].rgb)), codes[i].palette);
        QCOMPARE(TVC::QColorToUChar(named(codes[i].rgb)), static_cast<unsigned char>(codes[i].color));
    }
}

void tst_TVCColor::allPixelBytes()
{
    for (const Code &first : codes) {
        for (const Code &second : codes) {
            const ZRTVC16Pixel pixel = TVC::TVC16PixelFromTVC16Colors(first.color, second.color);
            QCOMPARE(int(pixel.value), first.color | second.palette);
            QColor color1;
            QColor color2(Qt::red);
            TVC::TVC16PixelToQColors(pixel, color1, color2);
            QCOMPARE(color1, named(first.rgb));
            QCOMPARE(color2, named(second.rgb));
            // The fields, from bit 7 down.
            QCOMPARE(pixel.intensity1 << 7 | pixel.intensity2 << 6 | pixel.green1 << 5 | pixel.green2 << 4 |
                         pixel.red1 << 3 | pixel.red2 << 2 | pixel.blue1 << 1 | pixel.blue2,
                     int(static_cast<unsigned char>(pixel)));
        }
    }
    QCOMPARE(
        int(TVC::TVC16PixelFromTVC16Colors(TVC::TVC16ColorFromUChar(0x01), TVC::TVC16ColorFromUChar(0xFF))
                .value),
        0x7F);
    QCOMPARE(int(TVC::TVC16PixelFromQColors(QColor(250, 10, 10), QColor(0, 0, 140)).value), 0x89);
}

void tst_TVCColor::lists()
{
    const auto rgbBytes = [](const QList<ZRColor> &colors) {
        QByteArray bytes;
        for (const ZRColor &color : colors) {
            if (color.color().alpha() != 255 || !color.values().isEmpty())
                qFatal("more than an opaque colour");
            bytes += QByteArray::fromHex(color.color().name().mid(1).toLatin1());
        }
        return bytes;
    };
    QByteArray distinct;
    for (int i = 0; i < distinctCount; ++i)
        distinct += QByteArray::fromHex(codes[i].rgb);
    QCOMPARE(rgbBytes(TVC16ColorList), distinct);
    QCOMPARE(rgbBytes(TVC16DarkColorList), distinct.first(8 * 3));
    QCOMPARE(rgbBytes(TVC16BrightColorList), QByteArray(3, '\0') + distinct.sliced(8 * 3));
    QCOMPARE(TVC99ColorList.size(), 99);
    QCOMPARE(QCryptographicHash::hash(rgbBytes(TVC99ColorList), QCryptographicHash::Md5).toHex(),
             QByteArray("6d51e5ade6bc1c5d600992505bd7b086"));
}

void tst_TVCColor::closest_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("translucent entry") << QColor(146, 0, 0, 254) << QColor(146, 0, 0);
    QTest::newRow("grey") << QColor(128, 128, 128) << QColor(146, 146, 146);
    QTest::newRow("on or off") << QColor(73, 73, 73, 0) << QColor(0, 0, 0);
    QTest::newRow("dark or bright") << QColor(0, 0, 201) << QColor(0, 0, 255);
    QTest::newRow("invalid") << QColor() << QColor(0, 0, 0);
    QTest::newRow("of another model") << QColor::fromHsv(120, 255, 255) << QColor(0, 255, 0);
    QTest::newRow("beyond 8 bits") << QColor(qRgba64(0x92FF, 0, 0, 0xFFFF)) << QColor(146, 0, 0);
}

void tst_TVCColor::closest()
{
    QFETCH(QColor, color);
    QFETCH(QColor, expected);
    QCOMPARE(TVC::closestColor(color), expected);
    QCOMPARE(TVC::closestColor(expected), expected);
    QCOMPARE(TVC::QColorToTVC16Color(color), TVC::QColorToTVC16Color(expected));
}

// The picture operations search in a way of their own, which has to find what closestColor() finds. Builds
// without optimisation take a part of the colours, as all of them would take a minute; the steps have no
// common factor with 256, so that every value of each component comes up.
void tst_TVCColor::allColors()
{
#ifdef NDEBUG
    const int step = 1;
    const int classStep = 5; // closestColor() itself
#else
    const int step = 61;
    const int classStep = 61 * 5;
#endif
    const int rowLength = 4096;
    for (int begin = 0; begin < 1 << 24; begin += rowLength * step) {
        QImage image(rowLength, 1, QImage::Format_RGB32);
        auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(0));
        for (int i = 0; i < rowLength; ++i)
            pixels[i] = 0xFF000000 | static_cast<QRgb>(begin + i * step);
        const QByteArray stream = TVC::QImageToTVC16Bin(image);
        const QImage preview = TVC::QImageToTVC16ColoredQImage(image);
        for (int i = 0; i < rowLength; ++i) {
            const int red = qRed(pixels[i]);
            const int green = qGreen(pixels[i]);
            const int blue = qBlue(pixels[i]);
            int best = 0;
            int bestDistance = INT_MAX;
            for (int c = 0; c < distinctCount; ++c) {
                const int level = c < 8 ? 146 : 255;
                const int dr = red - (codes[c].color & 0x08 ? level : 0);
                const int dg = green - (codes[c].color & 0x20 ? level : 0);
                const int db = blue - (codes[c].color & 0x02 ? level : 0);
                const int distance = dr * dr + dg * dg + db * db;
                if (distance < bestDistance) {
                    bestDistance = distance;
                    best = c;
                }
            }
            const int byte = static_cast<unsigned char>(stream.at(i / 2));
            const int code = i % 2 ? byte << 1 & 0xAA : byte & 0xAA;
            const bool classAgrees = (begin + i * step) % classStep != 0 ||
                                     TVC::QColorToTVC16Color(QColor(pixels[i])) == codes[best].color;
            if (code != codes[best].color || !classAgrees ||
                preview.pixel(i, 0) != TVC16ColorList.at(best).color().rgb())
                QFAIL(qPrintable(QColor(pixels[i]).name()));
        }
    }
}

void tst_TVCColor::cache()
{
    const QList<ZRColor> colors{QColor(10, 0, 0), ZRColor(QColor(12, 0, 0), {7}), QColor(20, 0, 0)};
    ZRImageExt::ColorCache cache;
    QCOMPARE(ZRImageExt::closestColor(QColor(11, 0, 0, 5), colors, nullptr).color(), QColor(10, 0, 0));
    QCOMPARE(ZRImageExt::closestColor(QColor(13, 2, 1), colors, &cache).values(), QList<quint32>{7});
    QCOMPARE(cache.value(13).value(2).value(1).color(), QColor(12, 0, 0));
    // What the cache holds is not searched for again.
    QCOMPARE(ZRImageExt::closestColor(QColor(13, 2, 1), {}, &cache).color(), QColor(12, 0, 0));
    QVERIFY(!ZRImageExt::closestColor(QColor(1, 2, 1), {}, nullptr).color().isValid());
}

QTEST_GUILESS_MAIN(tst_TVCColor)
#include "tst_tvccolor.moc"
