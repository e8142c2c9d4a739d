#include "zr8bittvcsoundreader_p.h"

#include "zr8bittvctoneplayer_p.h"
#include "zrfailure_p.h"

#include <QtCore/QDebug>

#include <limits>

namespace ZR {

namespace {

constexpr char EndByte = '\xF0';

// What a RIFF file's size, a number of 32 bits, leaves for samples of two bytes after the header.
constexpr qint64 MostSamples = (std::numeric_limits<quint32>::max() - 36LL) / 2;

} // namespace

bool checkRange(const QString &name, int value, int smallest, int largest, QString *error)
{
    return (value >= smallest && value <= largest) ||
           fail(error,
                QStringLiteral("%1 is out of range: %2 is not from %3 to %4.")
                    .arg(name, QString::number(value), QString::number(smallest), QString::number(largest)));
}

bool checkRate(int rate, QString *error)
{
    return checkRange(QStringLiteral("The sample rate in Hz"), rate, ZR8BitTVCWave::LowestRate,
                      ZR8BitTVCWave::HighestRate, error);
}

bool checkTick(int tick, QString *error)
{
    return checkRange(QStringLiteral("The tick in milliseconds"), tick, ZR8BitTVCWave::ShortestTick,
                      ZR8BitTVCWave::LongestTick, error);
}

bool checkLength(qint64 time, qint64 rate, QString *error)
{
    // The first condition keeps the second from an overflow.
    return (time / ZR8BitTVCTone::TStates <= MostSamples / rate && samplesUntil(time, rate) <= MostSamples) ||
           fail(error, QStringLiteral("The sound is too long: at %1 samples a second it is more than the %2 "
                                      "seconds that a RIFF file of 4 GiB holds.")
                           .arg(rate)
                           .arg(MostSamples / rate));
}

qsizetype recordCount(const QByteArray &sound, const QString &format, QString *error)
{
    const qsizetype recordSize = format.size() + format.count(u'p', Qt::CaseInsensitive);
    qsizetype size = sound.size(); // without the end byte
    if (size > 0 && sound.back() == EndByte) {
        // The low byte of a pitch is the only one that begins no field.
        qsizetype place = 0;
        for (qsizetype i = 0; place < (size - 1) % recordSize; ++i)
            place += format[i].toLower() == u'p' ? 2 : 1;
        if (place == (size - 1) % recordSize)
            --size;
    }
    if (size % recordSize == 0)
        return size / recordSize;
    fail(error, QStringLiteral("The sound ends inside record %1: a record of the format '%2' has %3 bytes.")
                    .arg(QString::number(size / recordSize + 1), format, QString::number(recordSize)));
    return -1;
}

bool TVCSoundReader::open(const QByteArray &sound, const ZR8BitTVCWaveOptions &options, QString *error)
{
    if (!checkRate(options.rate, error) || !checkTick(options.tick, error) ||
        !readFormat(options.format, error))
        return false;
    _bytes = sound;
    _ticks = options.tick * ZR8BitTVCTone::TStates / 1000;
    _count = recordCount(sound, options.format, error);
    return _count >= 0 && _measure(options.rate, error);
}

bool TVCSoundReader::readFormat(const QString &format, QString *error)
{
    const auto refuse = [&format, error](const QString &reason) {
        return fail(error, QStringLiteral("The format '%1' cannot be played: %2.").arg(format, reason));
    };
    for (const QChar letter : format) {
        const QChar small = letter.toLower();
        TVCSoundField *field = small == u'v'   ? &_volume
                               : small == u'p' ? &_pitch
                               : small == u'd' ? &_duration
                                               : nullptr;
        if (!field)
            return refuse(QStringLiteral("its letters can be v, p and d"));
        if (field->offset >= 0)
            return refuse(QStringLiteral("it holds the letter %1 more than once").arg(small));
        field->offset = _recordSize;
        _recordSize += field->bytes;
    }
    return _pitch.offset >= 0 || refuse(QStringLiteral("it lacks the letter p, the pitch"));
}

bool TVCSoundReader::_measure(int rate, QString *error)
{
    for (qsizetype i = 0; i < _count; ++i) {
        _time += length(record(i));
        if (!checkLength(_time, rate, error))
            return false;
    }
    return true;
}

TVCSoundRecord TVCSoundReader::record(qsizetype index) const
{
    return {_value(index, _volume), _value(index, _pitch), _value(index, _duration)};
}

int TVCSoundReader::_stored(qsizetype index, const TVCSoundField &field) const
{
    const char *data = _bytes.constData() + index * _recordSize + field.offset;
    const int first = static_cast<uchar>(data[0]);
    return field.bytes == 1 ? first : first << 8 | static_cast<uchar>(data[1]);
}

int TVCSoundReader::_value(qsizetype index, const TVCSoundField &field) const
{
    if (field.offset < 0)
        return field.missing;
    const int value = _stored(index, field);
    return value >= field.smallest && value <= field.largest ? value : field.largest;
}

void TVCSoundReader::warnOfRange() const
{
    qsizetype found = 0;
    qsizetype first = 0;
    for (qsizetype i = 0; i < _count; ++i) {
        for (const TVCSoundField *field : {&_volume, &_pitch, &_duration}) {
            if (field->offset >= 0 && _stored(i, *field) != _value(i, *field) && found++ == 0)
                first = i;
        }
    }
    if (found > 0)
        QMessageLogger(nullptr, 0, nullptr).warning().noquote() // the place in the code is of no use here
            << QStringLiteral(
                   "Values of the sound out of range, which play as the largest one: %1, the first in "
                   "record %2")
                   .arg(found)
                   .arg(first + 1);
}

} // namespace ZR
