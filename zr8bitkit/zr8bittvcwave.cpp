#include <zr8bitkit/zr8bittvcwave.h>

#include "zr8bittvcsoundreader_p.h"

#include <QtCore/QIODevice>
#include <QtCore/QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

namespace ZR {

namespace {

constexpr int AmplitudeOfStep = 1024;

constexpr double ConcertPitch = 440;
constexpr int ConcertNote = 57; // semitones from C0 to A4
constexpr int Semitones = 12;
constexpr int Octaves = 14;

/// Makes the samples of a sound, one after the other.
class Player
{
public:
    Player(const TVCSoundReader &reader, const ZR8BitTVCWaveOptions &options)
        : _reader(reader)
        , _options(options)
    {
    }

    /// The next samples, of which there must be that many left.
    void play(qint16 *samples, qint64 count)
    {
        while (count > 0) {
            while (_end == _done)
                _nextRecord();
            const qint64 part = std::min(count, _end - _done);
            for (qint64 i = 0; i < part; ++i)
                samples[i] = _sample();
            samples += part;
            count -= part;
            _done += part;
        }
    }

private:
    /// Half a period; a whole one is 2^64, so that the phase wraps by itself.
    static constexpr quint64 Half = quint64(1) << 63;

    void _nextRecord()
    {
        const TVCSoundRecord record = _reader.record(_next++);
        _time += qint64(record.duration) * _options.tick;
        _end = _reader.samplesUntil(_time);
        _amplitude = record.volume * AmplitudeOfStep;
        _step = 0;
        if (!_reader.isPlayed(record.pitch))
            return;
        // A sample is periods / samples of a period, at most one half.
        const quint64 periods = quint64(DoubledClock) << 32;
        const auto samples = 2 * static_cast<quint64>(Divisors - record.pitch) * quint64(_options.rate);
        _step = (periods / samples << 32) + (periods % samples << 32) / samples;
    }

    /// The mean of the wave from the phase on over a step, which holds one edge at most.
    qint16 _sample()
    {
        if (_step == 0)
            return 0;
        const bool wasHigh = _phase < Half;
        _phase += _step;
        const bool isHigh = _phase < Half;
        const int amplitude = wasHigh ? _amplitude : -_amplitude;
        if (wasHigh == isHigh)
            return static_cast<qint16>(amplitude);
        const auto step = static_cast<qint64>(_step >> 32);
        const auto behindEdge = static_cast<qint64>((isHigh ? _phase : _phase - Half) >> 32);
        const qint64 area = amplitude * (step - 2 * behindEdge);
        return static_cast<qint16>((2 * area + (area < 0 ? -step : step)) / (2 * step)); // rounded
    }

    const TVCSoundReader &_reader;
    const ZR8BitTVCWaveOptions &_options;
    qsizetype _next = 0;
    qint64 _time = 0;
    qint64 _done = 0;
    qint64 _end = 0; ///< of the record
    int _amplitude = 0;
    quint64 _step = 0; ///< how far the phase goes in a sample; 0 for silence
    quint64 _phase = 0;
};

/// Writes all bytes, in as many steps as the device needs.
bool writeAll(QIODevice &output, const char *bytes, qint64 size, QString &error)
{
    while (size > 0) {
        const qint64 written = output.write(bytes, size);
        if (written <= 0) {
            error = QStringLiteral("The sound could not be written: %1.").arg(output.errorString());
            return false;
        }
        bytes += written;
        size -= written;
    }
    return true;
}

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

} // namespace

bool ZR8BitTVCWave::samples(const QByteArray &sound, const Options &options, QList<qint16> &samples,
                            QString &error)
{
    TVCSoundReader reader;
    if (!reader.open(sound, options, error))
        return false;
    reader.warnOfRange();
    try {
        QList<qint16> played(static_cast<qsizetype>(reader.samplesUntil(reader.time())));
        Player(reader, options).play(played.data(), played.size());
        samples = played;
    } catch (const std::bad_alloc &) {
        error = QStringLiteral("There is not enough memory for the samples of the sound.");
        return false;
    }
    return true;
}

bool ZR8BitTVCWave::writeWave(const QByteArray &sound, const Options &options, QIODevice &output,
                              const Progress &progress, QString &error)
{
    TVCSoundReader reader;
    if (!reader.open(sound, options, error))
        return false;
    reader.warnOfRange();
    const qint64 total = reader.samplesUntil(reader.time());
    const QByteArray header = waveHeader(total, options.rate);
    if (!writeAll(output, header.constData(), header.size(), error))
        return false;
    Player player(reader, options);
    std::array<qint16, 0x4000> piece = {};
    for (qint64 done = 0; done < total;) {
        const qint64 count = std::min<qint64>(total - done, piece.size());
        player.play(piece.data(), count);
        qToLittleEndian<qint16>(piece.data(), static_cast<qsizetype>(count), piece.data());
        if (!writeAll(output, reinterpret_cast<const char *>(piece.data()), 2 * count, error))
            return false;
        done += count;
        if (progress && !progress(done, total)) {
            error = QStringLiteral("The writing of the sound was cancelled.");
            return false;
        }
    }
    return true;
}

double ZR8BitTVCWave::pitchFrequency(int pitch)
{
    return pitch > 0 && pitch < Divisors ? DoubledClock / 2.0 / (Divisors - pitch) : 0;
}

int ZR8BitTVCWave::nearestPitch(double frequency)
{
    const double divisor = DoubledClock / 2.0 / frequency;
    if (!(divisor >= 1 && divisor < Divisors - 0.5))
        return 0;
    // By ratio the border between two divisors is their geometric mean.
    const auto below = static_cast<int>(divisor);
    const bool isNearerAbove = divisor * divisor > double(below) * (below + 1);
    return Divisors - std::min(below + int(isNearerAbove), Divisors - 1);
}

double ZR8BitTVCWave::cents(double frequency, double reference)
{
    return 100 * Semitones * std::log2(frequency / reference);
}

double ZR8BitTVCWave::noteFrequency(const QString &note)
{
    constexpr std::array<int, 7> SemitonesOfLetters = {9, 11, 0, 2, 4, 5, 7}; // from A to G
    const QChar letter = note.isEmpty() ? QChar() : note.front().toUpper();
    if (letter < u'A' || letter > u'G')
        return 0;
    int semitone = SemitonesOfLetters.at(static_cast<size_t>(letter.unicode() - u'A'));
    QStringView octave = QStringView(note).sliced(1);
    if (octave.startsWith(u'#') || octave.startsWith(u'b')) {
        semitone += octave.front() == u'#' ? 1 : -1;
        octave = octave.sliced(1);
    }
    bool isNumber = false;
    const int number = octave.toInt(&isNumber);
    if (!isNumber || !octave.front().isDigit() || number >= Octaves)
        return 0;
    return ConcertPitch * std::exp2((number * Semitones + semitone - ConcertNote) / double(Semitones));
}

QString ZR8BitTVCWave::nearestNote(double frequency)
{
    const double semitone = std::round(ConcertNote + Semitones * std::log2(frequency / ConcertPitch));
    if (!(semitone >= 0 && semitone < Octaves * Semitones))
        return {};
    const int place = static_cast<int>(semitone);
    const QString names = QStringLiteral("C C#D D#E F F#G G#A A#B ");
    return names.sliced(qsizetype(place) % Semitones * 2, 2).trimmed() + QString::number(place / Semitones);
}

} // namespace ZR
