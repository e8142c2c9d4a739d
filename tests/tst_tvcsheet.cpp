// Sprites as pictures with transparency, and sheets of frames.

#include <zr8bitkit/zr8bittvcsheet.h>
#include <zr8bitlib/zr8bittvccolor16.h>

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
        QList<QImage> frames;
        QString error;
        QVERIFY(Sheet::framesOfSprite(sprite + sprite.first(2), QSize(3, 2), frames, error));
        QCOMPARE(frames.size(), 7);
        for (const int columns : {1, 3, 7, 100}) {
            QImage sheet;
            QVERIFY(Sheet::join(frames, columns, sheet, error));
            QCOMPARE(sheet.width(), 3 * std::min(columns, 7));
            QByteArray png;
            QBuffer buffer(&png);
            QVERIFY(sheet.save(&buffer, "png"));
            QVERIFY(Sheet::cut(QImage::fromData(png), QSize(3, 2), frames, error));
            QCOMPARE(ZR::ZR8BitTVCColor16::QImagesToTVC16Sprite(frames, Qt::magenta), sprite);
            sheet.setPixel(sheet.width() - 1, sheet.height() - 1, 0xFF0000FF); // in a cell that is left over
            QVERIFY(Sheet::cut(sheet, QSize(3, 2), frames, error));
            QCOMPARE(frames.size(), columns == 3 ? 9 : 7);
            frames.resize(7);
            frames[6].fill(Qt::transparent);
        }
        const QImage ground = Sheet::onCheckerboard(frames[0], QSize(1, 2));
        QCOMPARE(ground.pixel(0, 0), 0xFFFF0000U);
        QVERIFY(ground.pixel(1, 0) == ground.pixel(1, 1) && ground.pixel(1, 1) != ground.pixel(0, 1));
    }

    void refused()
    {
        const QImage sheet(4, 6, QImage::Format_Mono);
        QList<QImage> frames;
        QImage joined;
        QString error;
        QVERIFY(!Sheet::cut(sheet, QSize(2, 4), frames, error));
        QVERIFY2(error.contains("4 x 6 pixels, which is no whole number of frames of 2 x 4"_L1),
                 qPrintable(error));
        QVERIFY(!Sheet::cut(sheet, QSize(-1, 1), frames, error) && error.contains("-1 x 1"_L1));
        QVERIFY(!Sheet::cut(QImage(), QSize(1, 1), frames, error));
        QVERIFY(!Sheet::framesOfSprite("ab", QSize(3, 2), frames, error) && frames.isEmpty());
        QVERIFY(!Sheet::join({sheet, QImage()}, 1, joined, error) && !Sheet::join({}, 1, joined, error));
        QVERIFY(!Sheet::join({sheet}, 0, joined, error) && joined.isNull());
    }
};

QTEST_GUILESS_MAIN(tst_TVCSheet)
#include "tst_tvcsheet.moc"
