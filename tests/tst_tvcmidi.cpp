// Tunes from MIDI files, and texts of sounds with notes.

#include <zr8bitkit/zr8bittvcmidi.h>
#include <zr8bitkit/zr8bittvcpitch.h>
#include <zr8bitkit/zr8bittvctune.h>
#include <zr8bitkit/zr8bittvcwave.h>

#include <QtTest/QtTest>

#include <cmath>

using namespace Qt::StringLiterals;
using Midi = ZR::ZR8BitTVCMidi;
using Tune = ZR::ZR8BitTVCTune;

namespace {

/// A file of tracks of hexadecimal digits, without their ends.
QByteArray fileOf(const QByteArrayList &tracks, const QByteArray &format = "0001",
                  const QByteArray &division = "0060")
{
    const auto chunk = [](const QByteArray &name, const QByteArray &bytes) {
        return name + QByteArray::fromHex(QByteArray::number(bytes.size(), 16).rightJustified(8, '0')) +
               bytes;
    };
    const QByteArray count = QByteArray::number(tracks.size(), 16).rightJustified(4, '0');
    QByteArray file = chunk("MThd", QByteArray::fromHex(format + count + division)) + chunk("XFIH", "?");
    for (const QByteArray &track : tracks)
        file += chunk("MTrk", QByteArray::fromHex(track + "00ff2f00"));
    return file;
}

QString textOf(const QByteArray &sound)
{
    QString text;
    Tune::Options options;
    options.notes = options.rests = true;
    Tune::fromBytes(sound, text, options);
    return text.replace(u'\n', u' ').remove(u" 240"_s);
}

} // namespace

class tst_TVCMidi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tunes_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<Midi::Options>("options");
        QTest::addColumn<QString>("tune");
        QTest::addColumn<QList<qsizetype>>("counts"); // notes, hidden, out of range, drums
        const Midi::Options all;
        const auto row = [](const char *name, const QByteArray &file, const Midi::Options &options,
                            const QString &tune, const QList<qsizetype> &counts) {
            QTest::newRow(name) << file << options << tune << counts;
        };
        // A quarter note has $60 divisions and lasts 25 ticks at first.
        row("running status", fileOf({"60 90457f 60 4500 00 4540 60 4500"}), all,
            u"00,-,025 15,A4,025 08,A4,025"_s, {2, 0, 0, 0});
        row("highest", fileOf({"00 90457f 30 914c7f 30 814c00 30 804500"}), all,
            u"15,A4,013 15,E5,012 15,A4,013"_s, {2, 0, 0, 0});
        row("hidden", fileOf({"00 904c7f 10 457f 10 4500 40 4c00"}), all, u"15,E5,025"_s, {2, 1, 0, 0});
        row("channel", fileOf({"00 904c7f 00 91457f 60 4500 00 804c00"}), {0, 2}, u"15,A4,025"_s,
            {1, 0, 0, 0});
        row("track", fileOf({"00 904c7f 60 4c00", "00 904501 60 4500"}), {2}, u"01,A4,025"_s, {1, 0, 0, 0});
        row("tempo of another track", fileOf({"60 ff5103 0f4240", "00 90457f 8140 4500"}), all,
            u"15,A4,075"_s, {1, 0, 0, 0});
        row("long", fileOf({"00 90457f 8f00 4500"}), all, u"15,A4,255 15,A4,245"_s, {1, 0, 0, 0});
        row("drift",
            fileOf({"00 90457f 01 4500 00 467f 01 4600 00 457f 01 4500 00 467f 01 4600"}, "0001", "000f"),
            all, u"15,A4,002 15,A#4,001 15,A4,002 15,A#4,002"_s, {4, 0, 0, 0});
        row("film", fileOf({"00 90457f 64 4500"}, "0000", "e728"), all, u"15,A4,005"_s, {1, 0, 0, 0});
        row("29.97", fileOf({"00 90457f 8750 4500"}, "0000", "e364"), {0, 0, 1}, u"15,A4,255 15,A4,071"_s,
            {1, 0, 0, 0});
        row("twice at once", fileOf({"00 804500 00 90457f 00 91457f 30 814500 30 804500"}), all,
            u"15,A4,025"_s, {2, 0, 0, 0});
        row("bytes after it", fileOf({"00 90457f 60 4500"}) + "MTrk", all, u"15,A4,025"_s, {1, 0, 0, 0});
        row("system",
            fileOf(
                {"00 f003 0102f7 00 c001 00 ff0103616263 00 ff510101 00 90457f 60 457f 60 e00040 00 804500"}),
            all, u"15,A4,025 15,A4,025"_s, {2, 0, 0, 0});
        row("low, drums", fileOf({"00 90 1e7f 00 1f7f 00 99 2a7f 60 2a00 00 90 1f00 00 1e00"}), all,
            u"15,G1,025"_s, {2, 0, 1, 1});
        row("no end", fileOf({"00 90457f 60 4c7f 00 4c00", "40 b00000 8100 b00000"}), all, u"15,A4,050"_s,
            {2, 1, 0, 0});
        row("format 2", fileOf({"00 904c7f 60 4c00", "00 90457f 60 4500"}, "0002"), {2}, u"15,A4,025"_s,
            {1, 0, 0, 0});
    }

    void tunes()
    {
        QFETCH(QByteArray, file);
        QFETCH(Midi::Options, options);
        QByteArray sound;
        QString error;
        ZR::ZR8BitTVCMidiReport report;
        QVERIFY2(Midi::toSound(file, sound, options, &report, &error), qPrintable(error));
        QTEST(textOf(sound), "tune");
        const QList<qsizetype> found = {report.notes, report.hidden, report.outOfRange, report.drums};
        QTEST(found, "counts");
    }

    void refused_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<Midi::Options>("options");
        QTest::addColumn<QString>("reason");
        const Midi::Options all;
        const QByteArray good = fileOf({"00 90457f 60 4500"});
        QTest::newRow("other") << "RIFF"_ba << all << u"not a MIDI file"_s;
        QTest::newRow("header") << "MThd\0\0\0\4\0\1\0\1"_ba << all << u"has 4 bytes and needs 6"_s;
        QTest::newRow("no time") << fileOf({}, "0001", "0000") << all << u"a time division of 0"_s;
        QTest::newRow("format") << fileOf({}, "0003") << all << u"format 3"_s;
        QTest::newRow("cut") << good.chopped(1) << all << u"chunk at byte 23 has 11 bytes, and 10"_s;
        QTest::newRow("cut head") << good.first(27) << all << u"head of a chunk at byte 23"_s;
        QTest::newRow("a track too few") << good.first(23) << all << u"it has 0 of 1 tracks"_s;
        QTest::newRow("no end")
            << fileOf({"00 90457f"}).replace(QByteArray::fromHex("ff2f00"), QByteArray::fromHex("904000"))
            << all << u"Track 1 of the MIDI file has no end"_s;
        QTest::newRow("no status") << fileOf({"00 ff0100 00 457f"}) << all << u"bad event at its byte 4"_s;
        QTest::newRow("no status left")
            << fileOf({"00 90457f 00 f00101 00 457f"}) << all << u"bad event at its byte 8"_s;
        QTest::newRow("long number") << fileOf({"80808080 00"}) << all << u"bad event at its byte 0"_s;
        QTest::newRow("long text") << fileOf({"00 ff017f"}) << all << u"bad event at its byte 0"_s;
        QTest::newRow("drums") << fileOf({"00 99457f 60 4500"}) << all
                               << u"left: 1 of drums, on channel 10."_s;
        QTest::newRow("low, short") << fileOf({"00 901e7f 60 1e00 00 457f 01 4500"}) << all
                                    << u"left: 1 below G1, the lowest, 1 too short"_s;
        QTest::newRow("track") << good << Midi::Options{2} << u"has 1 tracks, and no track 2"_s;
        QTest::newRow("tick") << good << Midi::Options{0, 0, 251} << u"251 is not from 1 to 250"_s;
        QTest::newRow("tunes") << fileOf({"", ""}, "0002") << all << u"holds 2 tunes"_s;
        QTest::newRow("a day") << fileOf({"ffffff7f 90457f"}) << all << u"longer than 24 hours"_s;
    }

    void refused()
    {
        QFETCH(QByteArray, file);
        QFETCH(Midi::Options, options);
        QFETCH(QString, reason);
        QByteArray sound("old");
        QString error;
        QVERIFY(!Midi::toSound(file, sound, options, nullptr, &error));
        QVERIFY2(error.contains(reason) && sound == "old", qPrintable(error));
    }

    // A scale from a file, whose pitches are measured in the samples.
    void heard()
    {
        const QList<int> notes = {31, 45, 57, 60, 64, 69, 72, 84, 96, 108};
        QByteArray track;
        for (const int note : notes) {
            const QByteArray digits = QByteArray::number(note, 16);
            track += "0090" + digits + "7f8140" + digits + "00"; // 1 s
        }
        QByteArray sound;
        QVERIFY(Midi::toSound(fileOf({track}), sound));
        QList<qint16> samples;
        const ZR::ZR8BitTVCWaveOptions options;
        QVERIFY(ZR::ZR8BitTVCWave::samples(sound, options, samples));
        QCOMPARE(samples.size(), notes.size() * options.rate);
        for (qsizetype i = 0; i < notes.size(); ++i) {
            qsizetype first = 0; // upward edges
            qsizetype last = 0;
            int periods = -1;
            for (qsizetype place = i * options.rate + 1; place < (i + 1) * options.rate; ++place) {
                if (samples[place - 1] >= 0 || samples[place] < 0)
                    continue;
                first = first == 0 ? place : first;
                last = place;
                ++periods;
            }
            const double frequency = periods * double(options.rate) / double(last - first);
            const double cents =
                ZR::ZR8BitTVCPitch::cents(frequency, 440 * std::exp2((notes[i] - 69) / 12.0));
            QVERIFY2(std::abs(cents) < (notes[i] > 96 ? 20 : 7),
                     qPrintable(u"%1: %2"_s.arg(notes[i]).arg(cents)));
        }
    }
};

QTEST_GUILESS_MAIN(tst_TVCMidi)
#include "tst_tvcmidi.moc"
