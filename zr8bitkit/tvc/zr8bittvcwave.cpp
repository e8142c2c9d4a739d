#include <zr8bitkit/zr8bittvcwave.h>
#include <zr8bitkit/zrdevice.h>

#include "zr8bittvcsoundreader_p.h"
#include "zr8bittvctoneplayer_p.h"
#include "zrfailure_p.h"

#include <QtCore/QIODevice>
#include <QtCore/QtEndian>

#include <algorithm>
#include <array>
#include <new>

namespace ZR {

namespace {

QByteArray waveHeader(qint64 samples, int rate)
{
    const auto dataSize = static_cast<quint32>(2 * samples);
    QByteArray header;
    const auto add = [&header](auto number) {
        number = qToLittleEndian(number);
        header.append(reinterpret_cast<const char *>(&number), sizeof number);
    };
    header += "RIFF";
    add(36 + dataSize); // all that follows
    header += "WAVEfmt ";
    add(quint32(16)); // the size of the format, which is:
    add(quint16(1));  // plain samples
    add(quint16(1));  // in one channel
    add(quint32(rate));
    add(quint32(2 * rate)); // bytes a second
    add(quint16(2));        // bytes
    add(quint16(16));       // and bits a sample
    header += "data";
    add(dataSize);
    return header;
}

/// The tones of a sound's records.
TVCTonePlayer::Next tonesOf(const TVCSoundReader &reader)
{
    return [&reader, index = qsizetype(0), end = qint64(0)]() mutable {
        const TVCSoundRecord record = reader.record(index++);
        end += reader.length(record);
        return ZR8BitTVCTone{end, record.pitch, record.volume};
    };
}

/// Writes as many samples as there are until an end in T states.
bool writeSamples(const TVCTonePlayer::Next &next, qint64 end, int rate, QIODevice &output,
                  const ZR8BitTVCWave::Progress &progress, QString *error)
{
    const qint64 total = samplesUntil(end, rate);
    QByteArray piece = waveHeader(total, rate);
    TVCTonePlayer player(next, rate);
    std::array<qint16, 0x4000> samples = {};
    for (qint64 done = 0;;) {
        if (!ZRDevice::writeAll(output, piece))
            return fail(error,
                        QStringLiteral("The WAVE could not be written: %1.").arg(output.errorString()));
        if (done > 0 && progress && !progress(done, total))
            return fail(error, QStringLiteral("The writing of the WAVE was cancelled."));
        if (done == total)
            return true;
        const qint64 count = std::min<qint64>(total - done, samples.size());
        player.play(samples.data(), count);
        qToLittleEndian<qint16>(samples.data(), static_cast<qsizetype>(count), samples.data());
        piece = QByteArray::fromRawData(reinterpret_cast<const char *>(samples.data()),
                                        static_cast<qsizetype>(2 * count));
        done += count;
    }
}

bool checkTones(const QList<ZR8BitTVCTone> &tones, int rate, QString *error)
{
    if (!checkRate(rate, error))
        return false;
    qint64 time = 0;
    for (qsizetype i = 0; i < tones.size(); ++i) {
        const ZR8BitTVCTone &tone = tones[i];
        if (tone.end < time || tone.pitch < 0 || tone.pitch >= Divisors || tone.volume < 0 ||
            tone.volume > LoudestVolume)
            return fail(
                error, QStringLiteral("Tone %1 is out of range or ends before the previous one.").arg(i + 1));
        time = tone.end;
    }
    return checkLength(time, rate, error);
}

} // namespace

bool ZR8BitTVCWave::isFormat(const QString &format, QString *error)
{
    return TVCSoundReader().readFormat(format, error);
}

bool ZR8BitTVCWave::samples(const QByteArray &sound, const Options &options, QList<qint16> &samples,
                            QString *error)
{
    TVCSoundReader reader;
    if (!reader.open(sound, options, error))
        return false;
    reader.warnOfRange();
    try {
        QList<qint16> played;
        played.resize(static_cast<qsizetype>(samplesUntil(reader.time(), options.rate))); // or it throws
        TVCTonePlayer(tonesOf(reader), options.rate).play(played.data(), played.size());
        samples = played;
    } catch (const std::bad_alloc &) {
        return fail(error, QStringLiteral("There is not enough memory for the samples of the sound."));
    }
    return true;
}

bool ZR8BitTVCWave::writeWave(const QByteArray &sound, const Options &options, QIODevice &output,
                              const Progress &progress, QString *error)
{
    TVCSoundReader reader;
    if (!reader.open(sound, options, error))
        return false;
    reader.warnOfRange();
    return writeSamples(tonesOf(reader), reader.time(), options.rate, output, progress, error);
}

bool ZR8BitTVCWave::writeWave(const QList<ZR8BitTVCTone> &tones, int rate, QIODevice &output,
                              const Progress &progress, QString *error)
{
    if (!checkTones(tones, rate, error))
        return false;
    const auto next = [&tones, index = qsizetype(0)]() mutable { return tones[index++]; };
    return writeSamples(next, tones.isEmpty() ? 0 : tones.last().end, rate, output, progress, error);
}

} // namespace ZR
