// Colour codes, the two-pixel byte, the closest colour, pictures and sprites.

#include "testrows.h"

#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitlib/zr8bittvccolor16.h>
#include <zrbaselib/zrimageext.h>

using namespace Qt::StringLiterals;
using namespace ZR;
using TVC = ZR8BitTVCColor16;

static_assert(ZRTVC16Pixel() == 0 && ZRTVC16Pixel(0x89) == 0x89);

namespace {

/// All codes. Bright black, which is black again, stands last, after the distinct colours.
const unsigned char codes[] = {0x00, 0x02, 0x08, 0x0A, 0x20, 0x22, 0x28, 0x2A,
                               0x82, 0x88, 0x8A, 0xA0, 0xA2, 0xA8, 0xAA, 0x80};
const int distinctCount = 15;

const QStringList names = u"#000000 #000092 #920000 #920092 #009200 #009292 #929200 #929292 "
                          "#0000ff #ff0000 #ff00ff #00ff00 #00ffff #ffff00 #ffffff #000000"_s.split(u' ');

/// The colour of an index; an invalid one beyond the last.
QColor named(qsizetype index)
{
    return QColor(names.value(index));
}

/// The size and the bytes of images: "2x1 8a".
QString text(const QList<QImage> &images)
{
    QStringList words;
    for (const QImage &image : images)
        words += u"%1x%2 "_s.arg(image.width()).arg(image.height()) +
                 QLatin1String(TVC::QImageToTVC16Bin(image).toHex());
    return words.join(u' ');
}

} // namespace

class tst_TVCImage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytes()
    {
        for (int i = 0; i < 256; ++i) {
            const auto byte = static_cast<unsigned char>(i);
            const auto place = std::find(std::begin(codes), std::end(codes), byte) - std::begin(codes);
            QCOMPARE(TVC::QColorFromUChar(byte), named(place));
            QCOMPARE(TVC::TVC16ColorToRGBString(ZRTVC16Colors(byte)), names.value(place, names.first()));
            // A palette code is the colour code shifted, and has no bit of the first pixel.
            const QColor entry =
                i & 0xAA ? QColor() : TVC::QColorFromUChar(static_cast<unsigned char>(2 * i));
            QCOMPARE(TVC::TVC16PaletteToQColor(static_cast<ZRTVC16Palette>(byte)), entry);

            const ZRTVC16Pixel pixel =
                TVC::TVC16PixelFromTVC16Colors(ZRTVC16Colors(codes[i / 16]), ZRTVC16Colors(codes[i % 16]));
            QCOMPARE(int(pixel), codes[i / 16] | codes[i % 16] >> 1);
            QColor color1;
            QColor color2(Qt::red);
            TVC::TVC16PixelToQColors(pixel, color1, color2);
            QVERIFY(color1 == named(i / 16) && color2 == named(i % 16));
            QCOMPARE(int(pixel), pixel.intensity1 << 7 | pixel.intensity2 << 6 | pixel.green1 << 5 |
                                     pixel.green2 << 4 | pixel.red1 << 3 | pixel.red2 << 2 |
                                     pixel.blue1 << 1 | pixel.blue2);
        }
        const auto notMasked = TVC::TVC16ColorFromUChar(0xFF);
        QCOMPARE(int(TVC::TVC16PixelFromTVC16Colors(ZRTVC16ColorBlack, notMasked)), 0x7F);
        QCOMPARE(int(TVC::TVC16PixelFromQColors(QColor(250, 10, 10), QColor(0, 0, 140))), 0x89);
    }

    // The picture operations search in a way of their own, which has to find what closestColor() finds, and
    // what a plain search finds. The step is odd, so that every value of each component comes up.
    void closestColor()
    {
        QList<ZRColor> list;
        for (int i = 0; i < distinctCount; ++i)
            list += named(i);
        QImage image(1 << 18, 1, QImage::Format_RGB32);
        auto *pixels = reinterpret_cast<QRgb *>(image.bits());
        for (int i = 0; i < image.width(); ++i)
            pixels[i] = 0xFF000000 | (i < distinctCount ? named(i).rgb() : static_cast<QRgb>(i) * 61);
        const QByteArray stream = TVC::QImageToTVC16Bin(image);
        const QImage preview = TVC::QImageToTVC16ColoredQImage(image);
        for (int i = 0; i < image.width(); ++i) {
            const QColor color(pixels[i]);
            const QColor closest = ZRImageExt::closestColor(color, list, nullptr).color();
            const auto code = static_cast<unsigned char>(stream.at(i / 2) * (i % 2 + 1) & 0xAA);
            if (TVC::closestColor(color) != closest || preview.pixelColor(i, 0) != closest ||
                TVC::QColorFromUChar(code) != closest || TVC::QColorToUChar(color) != code)
                QFAIL(qPrintable(color.name()));
        }
        QCOMPARE(TVC::closestColor(QColor(146, 0, 0, 254)), QColor(146, 0, 0));
        QCOMPARE(TVC::closestColor(QColor()), QColor(0, 0, 0));
        QCOMPARE(TVC::closestColor(QColor::fromHsv(120, 255, 255)), QColor(0, 255, 0));
        QCOMPARE(TVC::QColorToTVC16Palette(QColor(255, 0, 0)), ZRTVC16PaletteRed);
    }

    void search()
    {
        const QList<ZRColor> list{QColor(10, 0, 0), ZRColor(QColor(12, 0, 0), {7}), QColor(20, 0, 0)};
        ZRImageExt::ColorCache cache;
        QCOMPARE(ZRImageExt::closestColor(QColor(11, 0, 0, 5), list, nullptr).color(), QColor(10, 0, 0));
        QCOMPARE(ZRImageExt::closestColor(QColor(13, 2, 1), list, &cache).values(), QList<quint32>{7});
        QVERIFY(ZRImageExt::closestColor(QColor(13, 2, 1), {}, &cache).color().isValid()); // remembered
    }

    // Stream, width, height of a sprite's frame or 0 for a picture, and what is read.
    void readers_data()
    {
        addRows(R"(
odd width | 89550222 | 3 | 0 | 3x2 89000222
largest width | ff | 2147483647 | 0 | 0x0
sprite | 88aa00025555ff55 | 3 | 2 | 3x2 ddaaff02
row of a plane cut | ff00 | 6 | 1 | 6x1 ff0000
largest frame | ff | 2147483647 | 2147483647 | 0x0
no width | ff | 0 | 2 | )");
    }

    void readers()
    {
        QFETCH(QStringList, fields);
        const QByteArray stream = bytesOf(fields[0]);
        const int width = fields[1].toInt();
        const int height = fields[2].toInt();
        const QList<QImage> images = height == 0 ? QList<QImage>{TVC::QImageFromTVC16Bin(stream, width)}
                                                 : TVC::QImagesFromTVC16Sprite(stream, width, height);
        QCOMPARE(text(images).trimmed(), fields[3]);
    }

    // The pixels of one row, the transparent colour, and the frame.
    void spriteFrame_data()
    {
        addRows(R"(
odd width | ffff0000 ffff00ff ffffffff | #00ff00ff | 88aa5555
half clear | 7f00ff00 8000ff00 80ff00ff | #00ff00ff | 5000aaff
near the key | fffe00ff ffff00ff | #00ff00ff | 8a55
no key | ff000000 00000000 |  | 0000
)");
    }

    void spriteFrame()
    {
        QFETCH(QStringList, fields);
        QList<QRgb> pixels;
        for (const QString &pixel : fields[0].split(u' '))
            pixels += pixel.toUInt(nullptr, 16);
        const QImage source(reinterpret_cast<const uchar *>(pixels.constData()), int(pixels.size()), 1,
                            QImage::Format_ARGB32);
        const QByteArray frame = TVC::QImageToTVC16SpriteFrame(source, QColor(fields[1]));
        QCOMPARE(QLatin1String(frame.toHex()), fields[2]);
    }

    // Converting row by row gives what Qt gives for a whole picture, whatever the format.
    void rows()
    {
        QImage picture(19, 7, QImage::Format_ARGB32);
        QRandomGenerator random(1);
        for (int i = 0; i < 19 * 7; ++i)
            picture.setPixel(i % 19, i / 19, random.generate());
        picture.setText(u"Frames"_s, u"2"_s);
        picture.setDevicePixelRatio(2);
        for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format) {
            const auto wanted = static_cast<QImage::Format>(format);
            const bool isOpaque = !QImage(1, 1, wanted).hasAlphaChannel(); // Qt leaves alpha in some of these
            const QImage image =
                (isOpaque ? picture.convertToFormat(QImage::Format_RGB32) : picture).convertToFormat(wanted);
            const QImage whole = image.convertToFormat(QImage::Format_RGB32, Qt::ThresholdDither);
            const QImage colored = TVC::QImageToTVC16ColoredQImage(image);
            QCOMPARE(colored, TVC::QImageToTVC16ColoredQImage(whole));
            QCOMPARE(colored.text(u"Frames"_s), u"2"_s);
            QCOMPARE(colored.devicePixelRatio(), 2.0);
            const QImage alpha = image.convertToFormat(QImage::Format_ARGB32);
            QCOMPARE(ZRImageExt::disableTransparency(image, Qt::red),
                     ZRImageExt::disableTransparency(alpha, Qt::red));
            QCOMPARE(ZR8BitTVCScreen::toPixels(image), image.hasAlphaChannel() ? alpha : whole);
        }
    }

    void formats()
    {
        // Alpha plays no part, wherever a format keeps the colour of a pixel that is all transparent.
        QImage image(1, 1, QImage::Format_ARGB32);
        image.fill(0x00FF0000);
        QCOMPARE(text({image, image.convertToFormat(QImage::Format_RGBA64)}), u"1x1 88 1x1 88"_s);
        image.fill(0xFFFF0000);
        QCOMPARE(TVC::QImageToTVC16SpriteFrame(image, QColor(Qt::red).toHsv()),
                 "\x88\x55"_ba); // another model
        image.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
        image.fill(0x80800000); // red by half
        QCOMPARE(text({image, ZRImageExt::disableTransparency(image, QColor())}), u"1x1 08 1x1 88"_s);
    }
};

QTEST_GUILESS_MAIN(tst_TVCImage)
#include "tst_tvcimage.moc"
