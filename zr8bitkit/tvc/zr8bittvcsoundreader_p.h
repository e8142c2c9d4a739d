#pragma once

#include <zr8bitkit/zr8bittvcwave.h>

namespace ZR {

constexpr int LoudestVolume = 15;

// What options and lengths may be. Each returns false with a sentence in error.

bool checkRange(const QString &name, int value, int smallest, int largest, QString *error);
bool checkRate(int rate, QString *error);
bool checkTick(int tick, QString *error);

/// Checks that the samples until a time in T states are no more than a RIFF file holds.
bool checkLength(qint64 time, qint64 rate, QString *error);

/// How many records a sound has in a format of the letters v, p and d; -1 with a sentence in error when it
/// ends inside one.
qsizetype recordCount(const QByteArray &sound, const QString &format, QString *error);

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
    bool open(const QByteArray &sound, const ZR8BitTVCWaveOptions &options, QString *error);

    /// Takes a format alone, in the same way.
    bool readFormat(const QString &format, QString *error);

    qsizetype count() const { return _count; }
    TVCSoundRecord record(qsizetype index) const;

    /// How long a record plays, in T states.
    qint64 length(const TVCSoundRecord &record) const { return record.duration * _ticks; }

    /// How long all records play, in T states.
    qint64 time() const { return _time; }

    /// Reports values that are out of range to Qt's message log.
    void warnOfRange() const;

private:
    bool _measure(int rate, QString *error);
    int _value(qsizetype index, const TVCSoundField &field) const;
    int _stored(qsizetype index, const TVCSoundField &field) const;

    QByteArray _bytes;
    TVCSoundField _volume = {-1, 1, 0, LoudestVolume, LoudestVolume};
    TVCSoundField _pitch = {-1, 2, 1, 4095, 0};
    TVCSoundField _duration = {-1, 1, 0, 255, 1};
    int _recordSize = 0;
    qsizetype _count = 0;
    qint64 _ticks = 0; ///< T states in a tick
    qint64 _time = 0;
};

} // namespace ZR
