// Pictures and sprites: the byte streams, cut ones too, formats, and parts of a larger picture.

#include <zr8bitlib/zr8bittvccolor16.h>
#include <zrbaselib/zrimageext.h>

#include <QtTest/QtTest>

#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace ZR;
using TVC = ZR8BitTVCColor16;

namespace {

const QRgb Black = 0xFF000000;
const QRgb White = 0xFFFFFFFF;
const QRgb Key = 0xFFFF00FF;

/// The size and the pixels of images, with the first digit of each component: "2x1 f00 009".
QString text(const QList<QImage> &images)
{
    QStringList words;
    for (const QImage &image : images) {
        words += u"%1x%2"_s.arg(image.width()).arg(image.height());
        for (int i = 0; i < image.width() * image.height(); ++i) {
            const QString name = image.pixelColor(i % image.width(), i / image.width()).name();
            words += QString(name.at(1)) + name.at(3) + name.at(5);
        }
    }
    return words.join(u' ');
}

} // namespace

class tst_TVCImage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readers()
    {
        const int largest = std::numeric_limits<int>::max();
        const struct
        {
            const char *stream;
            int width;
            int height; // of a sprite's frame; 0 for a picture
            const char *expected;
        } rows[] = {
            {"89aa", 1, 0, "1x2 f00 fff"},
            {"89550222", 3, 0, "3x2 f00 009 000 009 000 099"}, // 009: the level 0x92
            {"ffffff", 4, 0, "4x2 fff fff fff fff fff fff 000 000"},
            {"ff", 5, 0, "5x1 fff fff 000 000 000"},
            {"", 4, 0, "0x0"},
            {"ff", 0, 0, "0x0"},
            {"ff", largest, 0, "0x0"},
            {"88aa00025555ff55", 3, 2, "3x2 f00 fff fff fff fff 009"},
            {"ff0000aaff00", 2, 2, "2x2 fff fff fff 000 2x1 fff fff"},
            {"ff00ff00ff00", 4, 2, "4x1 fff fff fff fff"}, // a plane of a row and a half
            {"ff00", 6, 1 << 30, "6x1 fff fff 000 000 000 000"},
            {"ff", 4, 2, "4x1 000 000 000 000"},
            {"ff", largest, largest, "0x0"},
            {"ff", 0, 2, ""},
            {"", 4, 2, ""},
        };
        for (const auto &row : rows) {
            const QByteArray stream = QByteArray::fromHex(row.stream);
            const QList<QImage> images = row.height == 0
                                             ? QList<QImage>{TVC::QImageFromTVC16Bin(stream, row.width)}
                                             : TVC::QImagesFromTVC16Sprite(stream, row.width, row.height);
            QCOMPARE(text(images), QString::fromLatin1(row.expected));
        }
    }

    void spriteFrame()
    {
        const struct
        {
            QList<QRgb> pixels;
            QColor transparent;
            const char *frame;
        } rows[] = {
            {{0xFFFF0000, Key, White, Key, Key, 0xFF000092}, QColor(Key), "88aa00025555ff55"},
            {{White, Key}, QColor(255, 0, 255, 0), "aa55"},
            {{0x80FF00FF}, QColor(Key), "00ff"}, // opaque enough to be the transparent colour
            {{0xFFFE00FF, Key}, QColor(Key), "8a55"},
            {{Black, 0xFF000001}, QColor(Qt::black), "00aa"},
            {{0x7F00FF00, 0x8000FF00}, QColor(Key), "50aa"},
            {{0, Key}, QColor(Key).toHsv(), "cf00"}, // no pixel equals a colour of another model,
            {{Black, 0}, QColor(), "0000"},          // or an invalid one
        };
        for (const auto &row : rows) {
            const int height = row.pixels.size() > 2 ? 2 : 1;
            const QImage source(reinterpret_cast<const uchar *>(row.pixels.constData()),
                                static_cast<int>(row.pixels.size()) / height, height, QImage::Format_ARGB32);
            QCOMPARE(TVC::QImageToTVC16SpriteFrame(source, row.transparent).toHex(), QByteArray(row.frame));
        }
    }

    void formats()
    {
        // Alpha plays no part, wherever a format keeps the colour of a pixel that is all transparent.
        QImage clear(1, 1, QImage::Format_ARGB32);
        clear.fill(0x00FF0000);
        QImage indexed(1, 1, QImage::Format_Indexed8);
        indexed.setColorTable({0x00FF0000});
        indexed.fill(0);
        for (const QImage &red : {clear, clear.convertToFormat(QImage::Format_RGBA64), indexed})
            QCOMPARE(TVC::QImageToTVC16Bin(red), QByteArray("\x88"));
        QImage premultiplied(1, 1, QImage::Format_ARGB32_Premultiplied);
        premultiplied.fill(0x80800000); // red by half
        QCOMPARE(TVC::QImageToTVC16Bin(premultiplied), QByteArray("\x08"));
        QCOMPARE(text({ZRImageExt::disableTransparency(premultiplied, QColor())}), u"1x1 f00"_s);
    }

    // A part of a larger picture, as hosts cut it out without copying, from several threads at once.
    void sharedBuffer()
    {
        QRandomGenerator random(3);
        QImage whole(16, 8, QImage::Format_RGB32);
        random.fillRange(reinterpret_cast<quint32 *>(whole.bits()), 16 * 8);
        const QImage part(whole.constScanLine(2) + 12, 5, 4, whole.bytesPerLine(), QImage::Format_RGB32);
        const auto convert = [](const QImage &image) {
            return TVC::QImageToTVC16Bin(image) + TVC::QImageToTVC16SpriteFrame(image, QColor(Key)) +
                   TVC::QImageToTVC16Bin(TVC::QImageToTVC16ColoredQImage(image));
        };
        const QByteArray expected = convert(whole.copy(3, 2, 5, 4));
        std::vector<QByteArray> results(4);
        std::vector<std::thread> threads;
        for (QByteArray &result : results)
            threads.emplace_back([&convert, &part, &result] { result = convert(part); });
        for (std::thread &thread : threads)
            thread.join();
        for (const QByteArray &result : results)
            QCOMPARE(result, expected);
    }
};

QTEST_GUILESS_MAIN(tst_TVCImage)
#include "tst_tvcimage.moc"
