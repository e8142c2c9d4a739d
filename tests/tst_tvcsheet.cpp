// Sprites as pictures with transparency, and sheets of frames.

#include <zr8bitkit/zr8bittvcsheet.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <QtGui/QPainter>
#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using Sheet = ZR::ZR8BitTVCSheet;

class tst_TVCSheet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A sheet of frames that the last row has no place for, or too much, comes back to the same bytes as PNG.
    void sheets()
    {
        const QByteArray sprite = QByteArray::fromHex("88aa00025555ff55").repeated(6) +
                                  QByteArray::fromHex("00000000ffffffff"); // all is transparent
        QList<QImage> frames = Sheet::framesOfSprite(sprite + sprite.first(2), QSize(3, 2));
        QCOMPARE(frames.size(), 7);
        for (const int columns : {1, 3, 7, 100}) {
            QImage sheet = Sheet::join(frames, columns);
            QCOMPARE(sheet.width(), 3 * std::min(columns, 7));
            QByteArray png;
            QBuffer buffer(&png);
            QVERIFY(sheet.save(&buffer, "png"));
            frames = Sheet::cut(QImage::fromData(png), QSize(3, 2));
            QCOMPARE(ZR::ZR8BitTVCColor16::QImagesToTVC16Sprite(frames, Qt::magenta), sprite);
            sheet.setPixel(sheet.width() - 1, sheet.height() - 1, 0xFF0000FF); // in a cell that is left over
            QCOMPARE(Sheet::cut(sheet, QSize(3, 2)).size(), columns == 3 ? 9 : 7);
        }
    }

    void ground()
    {
        QImage picture(2, 300, QImage::Format_ARGB32);
        for (int y = 0; y < picture.height(); ++y) {
            picture.setPixel(0, y, qRgba(y % 256, 255 - y % 256, 40, y % 256));
            picture.setPixel(1, y, 0);
        }
        QImage ground = Sheet::onCheckerboard(picture, QSize(1, 150));
        QVERIFY(ground.pixel(1, 0) == ground.pixel(1, 149) && ground.pixel(1, 149) != ground.pixel(1, 150));
        QImage painted =
            Sheet::onCheckerboard(QImage(picture).copy(1, 0, 1, 300).scaled(2, 300), QSize(1, 150));
        QPainter(&painted).drawImage(0, 0, picture);
        for (int y = 0; y < picture.height(); ++y) {
            const QColor found = ground.pixelColor(0, y);
            const QColor wanted = painted.pixelColor(0, y);
            QVERIFY(std::abs(found.red() - wanted.red()) <= 1 && std::abs(found.blue() - wanted.blue()) <= 1);
        }
        picture.setDevicePixelRatio(2);
        QCOMPARE(Sheet::onCheckerboard(picture, QSize(1, 150)), ground);
        QCOMPARE(Sheet::withTransparent(picture, QColor(7, 248, 40)).pixel(0, 7), 0U);
        QCOMPARE(Sheet::withTransparent(picture, QColor(7, 248, 40)).pixel(0, 8), picture.pixel(0, 8));
    }

    void refused()
    {
        const QImage sheet(4, 6, QImage::Format_Mono);
        QString error;
        QVERIFY(Sheet::cut(sheet, QSize(2, 4), &error).isEmpty());
        QVERIFY2(error.contains("4 x 6 pixels, which is no whole number of frames of 2 x 4"_L1),
                 qPrintable(error));
        QVERIFY(Sheet::cut(sheet, QSize(-1, 1), &error).isEmpty() && error.contains("-1 x 1"_L1));
        QVERIFY(Sheet::cut(QImage(), QSize(1, 1)).isEmpty());
        QVERIFY(Sheet::framesOfSprite("ab", QSize(3, 2)).isEmpty());
        QVERIFY(Sheet::join({sheet, QImage()}, 1).isNull() && Sheet::join({}, 1).isNull());
        QVERIFY(Sheet::join({sheet}, 0).isNull());
    }
};

QTEST_GUILESS_MAIN(tst_TVCSheet)
#include "tst_tvcsheet.moc"
