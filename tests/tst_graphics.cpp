// The sub-commands `image` and `sprite` of the command line host, as processes.

#include "host.h"

#include <zr8bitlib/zr8bittvccolor16.h>

#include <QtGui/QColorSpace>
#include <QtGui/QImage>

using namespace Qt::StringLiterals;
using TVC = ZR::ZR8BitTVCColor16;

namespace {

/// The begin of a PNG that claims 60,000 x 60,000 pixels.
QByteArray hugePng()
{
    return QByteArray::fromHex("89504e470d0a1a0a0000000d494844520000ea600000ea6008020000000fb0e215"
                               "0000000049444154");
}

} // namespace

class tst_Graphics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Each conversion by name and through the standard streams.
    void image()
    {
        const QString picture = path("odd.png");
        const QImage source = QImage(examplePath("sunset.png")).copy(90, 90, 33, 20);
        QImage tagged = source;
        tagged.setColorSpace(QColorSpace::AdobeRgb); // which does not count
        QVERIFY(tagged.save(picture));
        const QImage preview = TVC::QImageToTVC16ColoredQImage(source);
        const QByteArray stream = TVC::QImageToTVC16Bin(source);

        QCOMPARE(run("image encode %1/odd.png -o %1/out", _dir.path()).exitCode, 0);
        QCOMPARE(readFile(path("out")), stream);
        QCOMPARE(run("image encode", {}, readFile(picture)).output, stream);
        QCOMPARE(QImage::fromData(run("image decode - --width 33", {}, stream).output, "png"), preview);
        const HostResult result = run("image preview %1 --scale 3", picture);
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(run("image preview - --scale $3", {}, readFile(picture)).output, result.output);
        const QImage large = QImage::fromData(result.output, "png");
        QVERIFY(!large.colorSpace().isValid());
        QCOMPARE(large.convertToFormat(preview.format()), preview.scaled(preview.size() * 3));
    }

    void sprite()
    {
        QList<QImage> images;
        for (const char *name : {"coin-0.png", "coin-1.png"})
            images += QImage(examplePath(name));
        const QByteArray sprite = TVC::QImagesToTVC16Sprite(images, QColor(255, 0, 255));
        QCOMPARE(run("sprite encode %1coin-0.png %1coin-1.png", examplePath("")).output, sprite);

        // The frames come back with their transparent pixels, so that they make the same sprite again.
        HostResult result = run("sprite decode --width 16 --height 0x10 -o %1", path("coin"), sprite);
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(QDir(path("coin")).entryList(QDir::Files | QDir::Hidden).size(), 2);
        const QImage frame(path("coin/frame-000.png"));
        QCOMPARE(frame.pixel(0, 0), 0x00FFFFFFU);
        result = run("sprite encode --transparent #010203 - %1/frame-001.png", path("coin"),
                     readFile(path("coin/frame-000.png")));
        QCOMPARE(result.output, sprite);

        result = run("sprite preview --width 16 --height 16", {}, sprite);
        const QImage sheet = QImage::fromData(result.output, "png");
        QCOMPARE(sheet.size(), QSize(32, 16));
        QCOMPARE(sheet.pixel(16, 0), sheet.pixel(0, 0));
        QVERIFY(sheet.pixel(2, 0) != sheet.pixel(0, 0));
    }

    void partialMask()
    {
        // Only all four bits of a pixel make it transparent.
        QCOMPARE(run("sprite decode --width 2 --height 1 -o %1", path("bits"), "\x02\xD4").exitCode, 0);
        const QImage frame(path("bits/frame-000.png"));
        QVERIFY(qAlpha(frame.pixel(0, 0)) == 255 && qAlpha(frame.pixel(1, 0)) == 255);
    }

    void cutStreams()
    {
        // One frame of 3 x 2 pixels and one row of a second; then one and a row of one plane, which is none.
        const QByteArray cut = QByteArray::fromHex("88aa00025555ff55ffff0000");
        HostResult result = run("sprite decode --width 3 --height 2 -o %1", path("cut"), cut);
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.errors,
                 QByteArray("zr8bit: warning: standard input has 12 bytes, 16 bytes would be whole "
                            "frames of 8 bytes each\n"));
        QCOMPARE(QImage(path("cut/frame-001.png")).size(), QSize(3, 1));
        result = run("sprite preview --width 3 --height 2", {}, cut.first(10));
        QCOMPARE(QImage::fromData(result.output).size(), QSize(3, 2));

        writeFile(path("%2abc"), "abc"); // looks like a placeholder
        result = run("image decode --width 3 %1", path("%2abc"));
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.errors.endsWith("%2abc' has 3 bytes, 4 bytes would be whole rows of 2 bytes each\n"));
        result = run("sprite encode %1coin-0.png %1sunset.png", examplePath(""));
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.errors.endsWith("sunset.png' has 128 x 240 pixels, the first frame 16 x 16\n"));
    }

    void failures()
    {
        const struct
        {
            const char *line;
            QByteArray input;
            int exitCode;
            const char *text;
        } rows[] = {
            {"image encode", hugePng(), 1, "60000 x 60000 pixels, which is too large!"},
            {"image decode --width 1", QByteArray(1100000, 'x'), 1,
             "Couldn't make a PNG of 1 x 1100000 pixels"},
            {"image decode --width 65536", "x", 2, "'65536' is not a number from 1 to 65535"},
            {"sprite encode", "", 2, "INPUT is required"},
            {"sprite encode - --transparent pinkish", "", 2, "'pinkish' is not a colour"},
            {"sprite preview --width 1 --height 1", "x", 1, "There is no frame in standard input!"},
        };
        for (const auto &row : rows) {
            const HostResult result = run(row.line, {}, row.input);
            QVERIFY2(result.exitCode == row.exitCode && result.errors.contains(row.text), row.line);
            QCOMPARE(result.output, QByteArray());
        }
    }

    void outputIsWholeOrNotAtAll()
    {
        // A folder where the second frame should go.
        QVERIFY(QDir(_dir.path()).mkpath(u"taken/frame-001.png"_s));
        writeFile(path("taken/frame-000.png"), "old");
        const HostResult result = run("sprite decode --width 1 --height 1 -o %1", path("taken"), "abcd");
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.errors.contains("frame-001.png': It is a folder"), result.errors);
        QCOMPARE(readFile(path("taken/frame-000.png")), QByteArray("old"));
    }

private:
    QString path(const char *name) { return _dir.filePath(QString::fromLatin1(name)); }
    QTemporaryDir _dir;
};

QTEST_GUILESS_MAIN(tst_Graphics)
#include "tst_graphics.moc"
