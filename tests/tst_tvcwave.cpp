// Sounds as samples, WAVE files and plots, and the pitches of notes.

#include <zr8bitkit/zr8bittvcpitch.h>
#include <zr8bitkit/zr8bittvcsoundplot.h>
#include <zr8bitkit/zr8bittvcwave.h>

#include <QtTest/QtTest>

#include <cmath>

using namespace Qt::StringLiterals;
using Pitch = ZR::ZR8BitTVCPitch;
using Wave = ZR::ZR8BitTVCWave;
using Options = Wave::Options;
using Records = QList<std::array<int, 3>>; // volume, pitch, duration

namespace {

/// Samples as exact means of the wave: its integral goes up and down like a triangle.
QList<double> model(const Records &records, const Options &options)
{
    const auto integral = [](double phase) {
        const double part = phase - std::floor(phase);
        return std::min(part, 1 - part);
    };
    QList<double> samples;
    double time = 0;
    double phase = 0;
    for (const auto &[volume, pitch, duration] : records) {
        const double frequency = 195312.5 / (4096 - pitch);
        const double step = frequency * 2 <= options.rate ? frequency / options.rate : 0;
        time += duration * options.tick / 1000.0;
        while (double(samples.size()) < std::floor(time * options.rate + 0.5)) {
            const double mean = step == 0 ? 0 : (integral(phase + step) - integral(phase)) / step;
            samples.append(mean * volume * 1024);
            phase += step;
        }
    }
    return samples;
}

} // namespace

class tst_TVCWave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void samples_data()
    {
        QTest::addColumn<QByteArray>("hex");
        QTest::addColumn<Options>("options");
        QTest::addColumn<Records>("played");
        QTest::newRow("A4") << "0f 0e44 f0"_ba << Options{u"vp"_s, 250, 44100} << Records{{15, 3652, 1}};
        QTest::newRow("in phase") << "05070bb8 01000900 0c070ffe"_ba << Options{u"DVP"_s, 7, 22050}
                                  << Records{{7, 3000, 5}, {0, 2304, 1}, {7, 4094, 12}};
        QTest::newRow("high") << "0ff020 0fed20 0ffd02 0ff320 f0"_ba << Options{u"pd"_s, 1, 48000}
                              << Records{{15, 4080, 32}, {15, 4077, 32}, {15, 4093, 2}, {15, 4083, 32}};
        QTest::newRow("half the rate") << "0fe7"_ba << Options{u"p"_s, 5, 15625} << Records{{15, 4071, 1}};
        QTest::newRow("low byte F0") << "00f0"_ba << Options{u"p"_s, 100, 192000} << Records{{15, 240, 1}};
        QTest::newRow("2 s") << "0e4401"_ba.repeated(2000) << Options{u"pd"_s, 1, 8001}
                             << Records(2000, {15, 3652, 1});
    }

    void samples()
    {
        QFETCH(QByteArray, hex);
        QFETCH(Options, options);
        QFETCH(Records, played);
        QList<qint16> found;
        QString error;
        QVERIFY2(Wave::samples(QByteArray::fromHex(hex), options, found, &error), qPrintable(error));
        const QList<double> expected = model(played, options);
        QCOMPARE(found.size(), expected.size());
        for (qsizetype i = 0; i < found.size(); ++i)
            QVERIFY2(std::abs(found[i] - expected[i]) < 0.501, qPrintable(QString::number(i)));
        QCOMPARE(*std::max_element(found.begin(), found.end()), played.first()[0] * 1024);
    }

    void waveFile()
    {
        const Options options{u"vpd"_s, 20, 11025};
        const QByteArray sound = QByteArray::fromHex("140e44c8 0f0000c8"); // two values are out of range
        QList<qint16> samples;
        QString error;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"largest one: 2, the first in record 1$"_s));
        QVERIFY(Wave::samples(sound, options, samples, &error));
        QCOMPARE(samples.first(), 15 * 1024);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"out of range"_s));
        QBuffer file;
        file.open(QIODevice::WriteOnly);
        const auto cancelAtEnd = [](qint64 done, qint64 total) { return done < total; };
        QVERIFY(!Wave::writeWave(sound, options, file, cancelAtEnd, &error) &&
                error.contains("cancelled"_L1));
        QCOMPARE(file.data().first(44).toHex(), "5249464634b1020057415645666d7420100000000100"_ba
                                                "0100112b000022560000020010006461746110b10200");
        QCOMPARE(file.size(), 44 + 2 * samples.size());
        for (qsizetype i = 0; i < samples.size(); ++i)
            QCOMPARE(qFromLittleEndian<qint16>(file.data().constData() + 44 + 2 * i), samples[i]);
    }

    void tones()
    {
        const QByteArray sound = QByteArray::fromHex("0f0e4403 000e4401 08050002");
        QBuffer expected;
        expected.open(QIODevice::WriteOnly);
        QVERIFY(Wave::writeWave(sound, Options(), expected));
        constexpr qint64 Tick = ZR::ZR8BitTVCTone::TStates / 50;
        QList<ZR::ZR8BitTVCTone> tones = {{3 * Tick, 3652, 15}, {4 * Tick, 3652, 0}, {6 * Tick, 1280, 8}};
        QBuffer file;
        file.open(QIODevice::WriteOnly);
        QVERIFY(Wave::writeWave(tones, 44100, file));
        QCOMPARE(file.data(), expected.data());
        tones[2].end = std::numeric_limits<qint64>::max(); // nothing overflows
        QString error;
        QVERIFY(!Wave::writeWave(tones, 44100, file, {}, &error) && error.contains("too long"_L1));
        tones[2].end = 4 * Tick - 1;
        QVERIFY(!Wave::writeWave(tones, 44100, file, {}, &error) && error.contains("Tone 3"_L1));
        QCOMPARE(file.data(), expected.data());
    }

    void refused_data()
    {
        QTest::addColumn<QByteArray>("sound");
        QTest::addColumn<Options>("options");
        QTest::addColumn<QString>("reason");
        const QByteArray sound("\x0f\x0e\x44\xf0");
        QTest::newRow("letter") << sound << Options{u"vpx"_s} << u"v, p and d"_s;
        QTest::newRow("no pitch") << sound << Options{u"vd"_s} << u"lacks the letter p"_s;
        QTest::newRow("twice") << sound << Options{u"vpP"_s} << u"letter p more than once"_s;
        QTest::newRow("240 is the end") << sound.repeated(3) << Options() << u"inside record 3"_s;
        QTest::newRow("tick") << sound << Options{u"vp"_s, 251} << u"251 is not from 1 to 250"_s;
        QTest::newRow("4 GiB") << sound.repeated(2796204).chopped(1) + "~" << Options{u"vpd"_s, 250, 192000}
                               << u"more than the 11184 seconds"_s;
    }

    void refused()
    {
        QFETCH(QByteArray, sound);
        QFETCH(Options, options);
        QFETCH(QString, reason);
        QBuffer file;
        file.open(QIODevice::WriteOnly);
        QString error;
        QVERIFY(!Wave::writeWave(sound, options, file, {}, &error));
        QVERIFY2(error.contains(reason) && file.data().isEmpty(), qPrintable(error));
    }

    void pitches()
    {
        for (int pitch = 1; pitch < 4095; ++pitch) {
            const double frequency = Pitch::frequency(pitch);
            QCOMPARE(frequency, 195312.5 / (4096 - pitch));
            QCOMPARE(Pitch::nearest(frequency), pitch);
            const double middle = std::sqrt(frequency * Pitch::frequency(pitch + 1)); // by cents, not Hz
            QCOMPARE(Pitch::nearest(middle * 0.999999), pitch);
            QCOMPARE(Pitch::nearest(middle * 1.000001), pitch + 1);
        }
        for (const double frequency : {0.0, -440.0, 47.68, 195313.0, qQNaN()})
            QCOMPARE(Pitch::nearest(frequency), 0);
        QString names;
        for (const char *note : {"A4", "c4", "Db5", "g#0", "cb1", "B13"})
            names += Pitch::nearestNote(Pitch::noteFrequency(QLatin1String(note))) + u' ';
        QCOMPARE(names, u"A4 C4 C#5 G#0 B0 B13 "_s);
        QVERIFY(std::abs(Pitch::cents(261.6256, Pitch::noteFrequency(u"C4"_s))) < 0.001);
        for (const auto &note : {u""_s, u"A"_s, u"H4"_s, u"A14"_s, u"A-1"_s, u"A##4"_s})
            QCOMPARE(Pitch::noteFrequency(note), 0.0);
        QCOMPARE(Pitch::ofNote(u"g1"_s), 110);
        QCOMPARE(Pitch::ofNote(u"GB13"_s), Pitch::Highest);
        for (const auto &note : {u"Gb1"_s, u"G13"_s, u"440"_s})
            QCOMPARE(Pitch::ofNote(note), 0);
    }

    void plot()
    {
        // A4 in two records of one bar, silence, the octave above at a third of the volume, and a pitch above
        // half the rate.
        const QByteArray sound = QByteArray::fromHex("0f0e4405 0f0e4405 000e440a 050f220a 0f0ff00a");
        QBuffer file;
        file.open(QIODevice::ReadWrite);
        QVERIFY(ZR::ZR8BitTVCSoundPlot::write(sound, {u"vpd"_s, 20, 8000}, file));
        QStringList shown;
        for (QXmlStreamReader svg(file.data()); !svg.atEnd(); svg.readNext()) {
            const QXmlStreamAttributes values = svg.attributes();
            if (values.hasAttribute("fill-opacity"_L1))
                shown += u"%1+%2,%3+%4 at %5"_s.arg(values.value("x"_L1), values.value("width"_L1),
                                                    values.value("y"_L1), values.value("height"_L1),
                                                    values.value("fill-opacity"_L1));
            if (svg.isCharacters() && !svg.isWhitespace())
                shown += svg.text().toString();
        }
        QCOMPARE(shown.join(u' '),
                 u"A4 B4 C5 D5 E5 F5 G5 A5 note 0 0.1 0.2 0.3 0.4 0.5 0.6 0.7 0.8 "
                 "seconds 60.00+230.00,395.13+30.00 at 1.00 520.00+230.00,35.13+30.00 at 0.33"_s);
    }
};

QTEST_GUILESS_MAIN(tst_TVCWave)
#include "tst_tvcwave.moc"
