// Programs on the bench of the TVC: what they show, what is heard of them, and the frame interrupt.

#include <zr8bitkit/zr8bittvcbench.h>
#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitlib/zr8bittvccolor16.h>
#include <zr8bitlib/zr8bittvcsound.h>

#include <QtTest/QtTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using Bench = ZR::ZR8BitTVCBench;
using RunEnd = ZR::ZR8BitMachine::RunEnd;

namespace {

constexpr int Rate = 44100;
constexpr int SamplesPerFrame = Rate / 50;

const QDir examples(QStringLiteral(ZR_SOURCE "/examples"));

/// Puts a program, as hexadecimal digits, to an address and starts it there.
void start(Bench &bench, const QByteArray &program, int address = 0x100)
{
    QVERIFY(bench.machine().loadBytes(QByteArray::fromHex(program), address));
    QVERIFY(bench.machine().setRegister(u"PC"_s, address));
}

/// The samples of all that was to be heard.
QList<qint16> samplesOf(Bench &bench)
{
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    if (!bench.writeSound(file, Rate))
        return {};
    QList<qint16> samples((file.size() - 44) / 2);
    qFromLittleEndian<qint16>(file.data().constData() + 44, samples.size(), samples.data());
    return samples;
}

/// How often the wave crosses zero.
int edges(const QList<qint16> &samples)
{
    int count = 0;
    for (qsizetype i = 1; i < samples.size(); ++i)
        count += (samples[i] < 0) != (samples[i - 1] < 0);
    return count;
}

} // namespace

class tst_TVCBench : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void example()
    {
        Bench bench;
        QVERIFY(bench.machine().loadFile(examples.filePath(u"tvc-program/program.bin"_s), 0x2000));
        QVERIFY(bench.machine().setRegister(u"PC"_s, 0x2000));
        QCOMPARE(bench.frames(1000), RunEnd::EndlessLoop);

        const QRect coin(12, 20, 16, 40);
        const QImage picture =
            ZR::ZR8BitTVCColor16::QImageToTVC16ColoredQImage(QImage(examples.filePath(u"sunset.png"_s)));
        const QImage screen = bench.screen();
        QCOMPARE(screen.size(), picture.size());
        int coinPixels = 0;
        for (int y = 0; y < screen.height(); ++y) {
            for (int x = 0; x < screen.width(); ++x) {
                const bool isSame = screen.pixel(x, y) == picture.pixel(x, y);
                coinPixels += !isSame;
                QVERIFY2(isSame || coin.contains(x, y), qPrintable(u"%1, %2"_s.arg(x).arg(y)));
            }
        }
        QVERIFY(coinPixels > 200);
        QCOMPARE(bench.screen(Bench::Shape::Screen).size(), QSize(640, 480));

        // Volume, pitch and duration of each note, and the end.
        QFile tune(examples.filePath(u"tune.txt"_s));
        QVERIFY(tune.open(QIODevice::ReadOnly));
        QStringList numbers = QString::fromLatin1(tune.readAll().replace('\n', "")).split(u',');
        const QList<qint16> samples = samplesOf(bench);
        qsizetype place = 6 * SamplesPerFrame; // the picture is shown until the 6th frame
        QCOMPARE(std::count(samples.begin(), samples.begin() + place, 0), place);
        for (; numbers.size() >= 3; numbers.remove(0, 3)) {
            const qsizetype length = numbers[2].toInt() * SamplesPerFrame;
            const auto note = samples.sliced(place + 10, length - 20);
            const double frequency = 195312.5 / (4096 - numbers[1].toInt());
            const int volume = numbers[0].toInt();
            QVERIFY(std::abs(edges(note) - (volume > 0) * 2 * frequency * double(note.size()) / Rate) < 2);
            QCOMPARE(*std::max_element(note.begin(), note.end()), volume * 1024);
            place += length;
        }
        QVERIFY(std::abs(samples.size() - place) < 10); // it ends with the tune
    }

    /// A row is a program at $0100, in interrupt mode 1 with a handler at $0038 that counts in H.
    void frames_data()
    {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QByteArray>("handler");
        QTest::addColumn<RunEnd>("end");
        QTest::addColumn<int>("interrupts"); // of ten frames
        QTest::newRow("halt") << "ed56 fb 76 18fd"_ba
                              << "24 d307 fb c9"_ba << RunEnd::Cycles << 9;
        QTest::newRow("jump to itself") << "ed56 fb 18fe"_ba
                                        << "24 d307 fb c9"_ba << RunEnd::Cycles << 9;
        QTest::newRow("not taken back") << "ed56 fb 76 18fe"_ba
                                        << "24 fb c9"_ba << RunEnd::Cycles << -1;
        QTest::newRow("off again") << "ed56 fb 76 18fe"_ba
                                   << "24 d307 c9"_ba << RunEnd::EndlessLoop << 1;
        QTest::newRow("never on") << "76"_ba
                                  << "00"_ba << RunEnd::EndlessLoop << 0;
    }

    void frames()
    {
        QFETCH(QByteArray, program);
        QFETCH(QByteArray, handler);
        QFETCH(RunEnd, end);
        QFETCH(int, interrupts);
        Bench bench;
        start(bench, handler, 0x38);
        start(bench, program);
        QCOMPARE(bench.frames(0), RunEnd::Cycles);
        QCOMPARE(bench.frames(10), end);
        if (interrupts >= 0)
            QCOMPARE(bench.machine().registerValue(u"H"_s), interrupts);
        else
            QVERIFY(bench.machine().registerValue(u"H"_s) != 9);
        QCOMPARE(bench.frameCount(), end == RunEnd::Cycles ? 10 : interrupts);
    }

    void limits()
    {
        Bench bench;
        start(bench, "d307 fb c9"_ba, 0x38);
        start(bench, "ed56 fb 18fe"_ba);
        ZR::ZR8BitMachine::RunLimits limits;
        limits.cycles = Bench::FrameLength * 3 / 2;
        QCOMPARE(bench.frames(10, limits), RunEnd::Cycles);
        QCOMPARE(bench.frameCount(), 1);
        limits = {};
        limits.instructions = 8000; // of 5,200 a frame
        const qint64 before = bench.machine().instructionCount();
        QCOMPARE(bench.frames(10, limits), RunEnd::Count);
        QCOMPARE(bench.machine().instructionCount() - before, limits.instructions);

        // More than RIFF can say.
        bench.frames(560'000);
        QBuffer file;
        file.open(QIODevice::WriteOnly);
        QString error;
        QVERIFY(!bench.writeSound(file, 192000, {}, &error) && file.data().isEmpty());
        QVERIFY2(error.contains(u"11184 seconds"), qPrintable(error));
    }

    /// A program that goes on after $FFFF, jumps into the screen, and there overwrites itself by what a port
    /// gives that nobody answers.
    void odd()
    {
        Bench bench;
        QVERIFY(!bench.machine().loadBytes("ab"_ba, 0xFFFF));
        start(bench, "320480 0600 76"_ba, 0x8000); // LD ($8004),A : LD B,0 : HALT
        start(bench, "d3ff c30080"_ba, 0);         // OUT ($FF),A : JP $8000
        start(bench, "db00"_ba, 0xFFFE);           // IN A,(0)
        QCOMPARE(bench.frames(10), RunEnd::EndlessLoop);
        QCOMPARE(bench.machine().registerValue(u"PC"_s), 0x8006);
        QCOMPARE(bench.machine().registerValue(u"B"_s), 0xFF);
    }

    void restoredState()
    {
        Bench bench;
        start(bench, "d307 fb c9"_ba, 0x38);
        start(bench, "ed56 fb 3e3c d306 3e1f d305 3e80 d304 18fe"_ba); // volume 15, 1526 Hz
        const QByteArray state = bench.machine().saveState();
        bench.frames(2);
        QCOMPARE(samplesOf(bench).size(), 2 * SamplesPerFrame);
        QVERIFY(bench.machine().restoreState(state));
        bench.frames(1);
        const QList<qint16> samples = samplesOf(bench);
        QVERIFY(std::abs(samples.size() - SamplesPerFrame) < 2 && edges(samples) > 50);
        start(bench, "3e0f d305 18fe"_ba, 0x200); // off
        bench.frames(1);
        QCOMPARE(samplesOf(bench).constLast(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_TVCBench)
#include "tst_tvcbench.moc"
