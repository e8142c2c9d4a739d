// Pictures and sprites: the byte streams, what reader and writer promise each other, cut streams, formats.

#include <zr8bitlib/zr8bittvccolor16.h>
#include <zrbaselib/zrimageext.h>

#include <QtTest/QtTest>

#include <thread>
#include <vector>

using namespace ZR;
using TVC = ZR8BitTVCColor16;

namespace {

const QRgb Key = 0xFFFF00FF;
const int LargestInt = std::numeric_limits<int>::max();

/// An image of random opaque colours, of which some are the key.
QImage randomImage(QRandomGenerator &random, int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, random.bounded(3) == 0 ? Key : 0xFF000000 | random.generate());
    }
    return image;
}

/// The rows of an image, as in "ff0000 000092|000000 000000".
QString pixels(const QImage &image)
{
    QStringList rows;
    for (int y = 0; y < image.height(); ++y) {
        QStringList row;
        for (int x = 0; x < image.width(); ++x)
            row += image.pixelColor(x, y).name().mid(1);
        rows += row.join(u' ');
    }
    return rows.join(u'|');
}

} // namespace

class tst_TVCImage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readPicture_data();
    void readPicture();
    void pictureLaws();
    void formats();
    void foreignBuffer();
    void spriteFrame_data();
    void spriteFrame();
    void cutFrames_data();
    void cutFrames();
    void spriteLaws();
    void badArguments();
    void threads();
};

void tst_TVCImage::readPicture_data()
{
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *hex, int width, const char *expected) {
        QTest::newRow(name) << QByteArray::fromHex(hex) << width << QString::fromLatin1(expected);
    };
    row("two pixels", "89", 2, "ff0000 000092");
    row("one column", "89aa", 1, "ff0000|ffffff");
    row("odd width", "89550222", 3, "ff0000 000092 000000|000092 000000 009292");
    row("three rows", "00aa55ff80c0", 4,
        "000000 000000 ffffff 000000|000000 ffffff ffffff ffffff|000000 000000 000000 000000");
    row("cut row", "ffffff", 4, "ffffff ffffff ffffff ffffff|ffffff ffffff 000000 000000");
    row("hardly begun", "ff", 7, "ffffff ffffff 000000 000000 000000 000000 000000");
    row("empty", "", 4, "");
}

void tst_TVCImage::readPicture()
{
    QFETCH(QByteArray, stream);
    QFETCH(int, width);
    QFETCH(QString, expected);
    const QImage image = TVC::QImageFromTVC16Bin(stream, width);
    QCOMPARE(pixels(image), expected);
    QCOMPARE(image.format(), expected.isEmpty() ? QImage::Format_Invalid : QImage::Format_RGB32);
}

void tst_TVCImage::pictureLaws()
{
    QRandomGenerator random(1);
    for (int width = 1; width <= 9; ++width) {
        const QImage image = randomImage(random, width, 5);
        const QByteArray stream = TVC::QImageToTVC16Bin(image);
        const QImage preview = TVC::QImageToTVC16ColoredQImage(image);
        QCOMPARE(stream.size(), (width + 1) / 2 * 5);
        QCOMPARE(TVC::QImageFromTVC16Bin(stream, width), preview);
        QCOMPARE(TVC::QImageToTVC16Bin(preview), stream);
        QCOMPARE(TVC::QImageToTVC16ColoredQImage(preview), preview);
        if (width % 2 == 1)
            QCOMPARE(stream.back() & 0x55, 0);
    }
    QByteArray bytes;
    QByteArray written;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
        // Black loses its intensity.
        written += static_cast<char>(byte & ((byte & 0x2A) ? 0xFF : 0x7F) & ((byte & 0x15) ? 0xFF : 0xBF));
    }
    QCOMPARE(TVC::QImageToTVC16Bin(TVC::QImageFromTVC16Bin(bytes, 32)), written);
}

void tst_TVCImage::formats()
{
    QRandomGenerator random(2);
    const QImage image = randomImage(random, 7, 4);
    for (int i = QImage::Format_Mono; i < QImage::NImageFormats; ++i) {
        const QImage converted = image.convertToFormat(static_cast<QImage::Format>(i));
        const QByteArray stream = TVC::QImageToTVC16Bin(converted);
        QCOMPARE(TVC::QImageFromTVC16Bin(stream, 7), TVC::QImageToTVC16ColoredQImage(converted));
    }

    // Alpha plays no part, wherever a format keeps the colour of a pixel that is all transparent.
    QImage clear(1, 1, QImage::Format_ARGB32);
    clear.fill(0x00FF0000);
    QImage indexed(1, 1, QImage::Format_Indexed8);
    indexed.setColorTable({0x00FF0000});
    indexed.fill(0);
    const float clearRed[] = {1, 0, 0, 0};
    const QImage floats(reinterpret_cast<const uchar *>(clearRed), 1, 1, QImage::Format_RGBA32FPx4);
    for (const QImage &image : {clear, clear.convertToFormat(QImage::Format_RGBA8888),
                                clear.convertToFormat(QImage::Format_RGBA64), indexed, floats})
        QCOMPARE(TVC::QImageToTVC16Bin(image).toHex(), QByteArray("88"));
    QImage premultiplied(1, 1, QImage::Format_ARGB32_Premultiplied);
    premultiplied.fill(0x80800000); // red by half
    QCOMPARE(TVC::QImageToTVC16Bin(premultiplied), QByteArray("\x08"));
    QCOMPARE(pixels(TVC::QImageToTVC16ColoredQImage(premultiplied)), QStringLiteral("ff0000"));
}

// A part of a larger picture, as hosts cut it out without copying: nothing beside it is read or written.
void tst_TVCImage::foreignBuffer()
{
    QRandomGenerator random(3);
    const QImage whole = randomImage(random, 16, 8);
    for (const QImage::Format format : {QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_RGB888}) {
        QImage buffer = whole.convertToFormat(format);
        const QImage before = buffer.copy();
        uchar *start = buffer.scanLine(2) + 3 * buffer.depth() / 8;
        const QImage part(start, 5, 4, buffer.bytesPerLine(), format);
        const QImage copy = whole.copy(3, 2, 5, 4);
        QCOMPARE(TVC::QImageToTVC16Bin(part), TVC::QImageToTVC16Bin(copy));
        QCOMPARE(TVC::QImageToTVC16ColoredQImage(part), TVC::QImageToTVC16ColoredQImage(copy));
        QCOMPARE(TVC::QImageToTVC16SpriteFrame(part, QColor(Key)),
                 TVC::QImageToTVC16SpriteFrame(copy, QColor(Key)));
        QCOMPARE(buffer, before);
    }
}

void tst_TVCImage::spriteFrame_data()
{
    QTest::addColumn<QList<QRgb>>("image"); // in two rows, or one of up to two pixels
    QTest::addColumn<QColor>("transparent");
    QTest::addColumn<QByteArray>("frame");
    const auto row = [](const char *name, const QList<QRgb> &image, const QColor &transparent,
                        const char *frame) {
        QTest::newRow(name) << image << transparent << QByteArray::fromHex(frame);
    };
    const QRgb white = 0xFFFFFFFF;
    const QRgb black = 0xFF000000;
    row("worked example", {0xFFFF0000, Key, white, Key, Key, 0xFF000092}, QColor(Key), "88aa0002 5555ff55");
    row("all transparent", {Key, Key}, QColor(Key), "00ff");
    row("one pixel", {white}, QColor(Key), "aa55");
    row("key without alpha", {Key, white}, QColor(255, 0, 255, 0), "55aa");
    row("a step away", {0xFFFE00FF, Key}, QColor(Key), "8a55");
    row("transparent and opaque black", {black, 0xFF000001}, QColor(Qt::black), "00aa");
    row("alpha", {0x7F00FF00, 0x8000FF00}, QColor(Key), "50aa");
    row("no colour is the key", {0, Key}, QColor(Key).toHsv(), "cf00");
    row("invalid key", {black, 0xFF000092}, QColor(), "0100");
}

void tst_TVCImage::spriteFrame()
{
    QFETCH(QList<QRgb>, image);
    QFETCH(QColor, transparent);
    QFETCH(QByteArray, frame);
    const int height = image.size() > 2 ? 2 : 1;
    const int width = static_cast<int>(image.size()) / height;
    const QImage source(reinterpret_cast<const uchar *>(image.constData()), width, height, width * 4,
                        QImage::Format_ARGB32);
    QCOMPARE(TVC::QImageToTVC16SpriteFrame(source, transparent).toHex(), frame.toHex());
}

void tst_TVCImage::cutFrames_data()
{
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const char *hex, int width, int height,
                        const QStringList &expected) {
        QTest::newRow(name) << QByteArray::fromHex(hex) << width << height << expected;
    };
    const QString white = QStringLiteral("ffffff ffffff ffffff ffffff");
    const QString half = QStringLiteral("ffffff ffffff 000000 000000");
    const QString black = QStringLiteral("000000 000000 000000 000000");
    row("worked example", "88aa0002 5555ff55", 3, 2,
        {QStringLiteral("ff0000 ffffff ffffff|ffffff ffffff 000092")});
    row("one row left", "ffffffff00000000 ffff0000", 4, 2, {white + u'|' + white, white});
    row("one row and a half", "ff00ff 00ff00", 4, 2, {white});
    row("half a row", "ff00", 8, 1 << 30, {half + u' ' + black});
    row("a row of one plane", "ffff", 4, 2, {QString()});
    row("half a row and a byte", "ff00ff", 4, 2, {half});
    row("a byte", "ff", 4, 2, {black});
    row("a byte of one column", "ff", 1, 1, {QString()});
    row("empty", "", 4, 2, {});
    row("no width", "ff", 0, 2, {});
    row("no height", "ff", 2, -1, {});
}

void tst_TVCImage::cutFrames()
{
    QFETCH(QByteArray, stream);
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(QStringList, expected);
    QStringList found;
    for (const QImage &image : TVC::QImagesFromTVC16Sprite(stream, width, height))
        found += pixels(image);
    QCOMPARE(found, expected);
}

void tst_TVCImage::spriteLaws()
{
    QRandomGenerator random(4);
    for (int width = 1; width <= 9; ++width) {
        QList<QImage> images;
        QList<QImage> expected; // opaque pixels in TVC colours, transparent ones white
        for (int i = 0; i < 3; ++i) {
            images += randomImage(random, width, 5);
            QImage frame = TVC::QImageToTVC16ColoredQImage(images.last());
            for (int pixel = 0; pixel < width * 5; ++pixel) {
                if (images.last().pixel(pixel % width, pixel / width) == Key)
                    frame.setPixel(pixel % width, pixel / width, 0xFFFFFFFF);
            }
            expected += frame;
        }
        const QByteArray sprite = TVC::QImagesToTVC16Sprite(images, QColor(Key));
        QCOMPARE(TVC::QImagesFromTVC16Sprite(sprite, width, 5), expected);
        // White as the transparent colour yields the old mask and every white pixel.
        const QByteArray again = TVC::QImagesToTVC16Sprite(expected, QColor(Qt::white));
        QCOMPARE(TVC::QImagesFromTVC16Sprite(again, width, 5), expected);

        const QByteArray opaque = TVC::QImageToTVC16SpriteFrame(images.first(), QColor(1, 2, 3));
        QCOMPARE(opaque.first(opaque.size() / 2), TVC::QImageToTVC16Bin(images.first()));
        QCOMPARE(opaque.last(opaque.size() / 2).count('\0'),
                 width % 2 ? opaque.size() / 2 - 5 : opaque.size() / 2);
    }
}

void tst_TVCImage::badArguments()
{
    const QByteArray bytes(10, 'x');
    for (const int width : {0, -1, std::numeric_limits<int>::min(), LargestInt, LargestInt - 1}) {
        QVERIFY(TVC::QImageFromTVC16Bin(bytes, width).isNull());
        QVERIFY(TVC::QImageFromTVC16SpriteFrame(bytes, width).isNull());
    }
    QVERIFY(TVC::QImagesFromTVC16Sprite(bytes, LargestInt, LargestInt).first().isNull());
    const QImage none;
    QVERIFY(TVC::QImageToTVC16Bin(none).isEmpty());
    QVERIFY(TVC::QImageToTVC16ColoredQImage(none).isNull());
    QVERIFY(TVC::QImagesToTVC16Sprite({none, none}, QColor()).isEmpty());
    QVERIFY(ZRImageExt::disableTransparency(none, QColor()).isNull());
    QVERIFY(TVC::QImageFromTVC16SpriteFrame(QByteArray(), 2).isNull());
}

void tst_TVCImage::threads()
{
    QRandomGenerator random(5);
    const QImage image = randomImage(random, 33, 40).convertToFormat(QImage::Format_ARGB32);
    const auto convert = [&image] {
        return TVC::QImageToTVC16Bin(image) + TVC::QImageToTVC16SpriteFrame(image, QColor(Key)) +
               TVC::QImageToTVC16Bin(TVC::QImageToTVC16ColoredQImage(image)) +
               static_cast<char>(TVC::QColorToTVC16Color(image.pixelColor(0, 0)));
    };
    const QByteArray expected = convert();
    std::vector<QByteArray> results(4);
    std::vector<std::thread> threads;
    for (QByteArray &result : results)
        threads.emplace_back([&convert, &result] { result = convert(); });
    for (std::thread &thread : threads)
        thread.join();
    for (const QByteArray &result : results)
        QCOMPARE(result, expected);
}

QTEST_GUILESS_MAIN(tst_TVCImage)
#include "tst_tvcimage.moc"
