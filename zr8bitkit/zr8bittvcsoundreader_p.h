#pragma once

#include <zr8bitkit/zr8bittvcwave.h>

namespace ZR {

// The generator divides its clock of 195,312.5 Hz by 4096 less the pitch.
constexpr qint64 DoubledClock = 390625;
constexpr int Divisors = 4096;

/// A field of a sound's record that is read as a number: where it stands and what it may be.
struct TVCSoundField
{
    int offset; ///< within the record; below 0 when the record lacks the field
    int bytes;
    int smallest;
    int largest; ///< what a value out of range counts as
    int missing; ///< the value where the record lacks the field
};

struct TVCSoundRecord
{
    int volume;
    int pitch;
    int duration; ///< in ticks
};

/// The records of a sound. Private to the kit.
class TVCSoundReader
{
public:
    /// Takes a sound and checks it and the options. Returns false with the reason, a sentence.
    bool open(const QByteArray &sound, const ZR8BitTVCWaveOptions &options, QString &error);

    qsizetype count() const { return _count; }
    TVCSoundRecord record(qsizetype index) const;

    /// The time from the begin of the sound to its end in milliseconds.
    qint64 time() const { return _time; }

    /// How many samples there are until a time in milliseconds.
    qint64 samplesUntil(qint64 time) const { return (2 * time * _rate + 1000) / 2000; }

    /// Whether the frequency of a pitch is at most half the sample rate; above it the pitch is silent.
    bool isPlayed(int pitch) const { return DoubledClock <= (Divisors - pitch) * _rate; }

    /// Reports values that are out of range to Qt's message log.
    void warnOfRange() const;

private:
    bool _readFormat(const QString &format, QString &error);
    bool _measure(int tick, QString &error);
    int _value(qsizetype index, const TVCSoundField &field) const;
    int _stored(qsizetype index, const TVCSoundField &field) const;

    QByteArray _bytes;
    TVCSoundField _volume = {-1, 1, 0, 15, 15};
    TVCSoundField _pitch = {-1, 2, 1, 4095, 0};
    TVCSoundField _duration = {-1, 1, 0, 255, 1};
    int _recordSize = 0;
    qsizetype _count = 0;
    qint64 _rate = 0;
    qint64 _time = 0;
};

} // namespace ZR
