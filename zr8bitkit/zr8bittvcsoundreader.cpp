#include "zr8bittvcsoundreader_p.h"

#include <QtCore/QDebug>

#include <limits>

namespace ZR {

namespace {

constexpr char EndByte = '\xF0';

// What a RIFF file's size, a number of 32 bits, leaves for samples of two bytes behind the header.
constexpr qint64 MostSamples = (std::numeric_limits<quint32>::max() - 36LL) / 2;

bool checkRange(const QString &name, int value, int smallest, int largest, QString &error)
{
    if (value >= smallest && value <= largest)
        return true;
    error = QStringLiteral("%1 is out of range: %2 is not from %3 to %4.")
                .arg(name, QString::number(value), QString::number(smallest), QString::number(largest));
    return false;
}

} // namespace

bool TVCSoundReader::open(const QByteArray &sound, const ZR8BitTVCWaveOptions &options, QString &error)
{
    if (!checkRange(QStringLiteral("The sample rate in Hz"), options.rate, 8000, 192000, error) ||
        !checkRange(QStringLiteral("The tick in milliseconds"), options.tick, 1, 250, error) ||
        !_readFormat(options.format, error))
        return false;
    _bytes = sound;
    _rate = options.rate;
    qsizetype size = _bytes.size(); // without the end byte
    if (size > 0 && _bytes.back() == EndByte) {
        // The low byte of a pitch is the only one that is no field's first.
        const auto place = static_cast<int>((size - 1) % _recordSize);
        if (place != _pitch.offset + 1)
            --size;
    }
    _count = size / _recordSize;
    if (size % _recordSize != 0) {
        error = QStringLiteral("The sound ends inside record %1: a record of the format '%2' has %3 bytes.")
                    .arg(QString::number(_count + 1), options.format, QString::number(_recordSize));
        return false;
    }
    return _measure(options.tick, error);
}

bool TVCSoundReader::_readFormat(const QString &format, QString &error)
{
    for (const QChar letter : format) {
        const QChar small = letter.toLower();
        TVCSoundField *field = small == u'v'   ? &_volume
                               : small == u'p' ? &_pitch
                               : small == u'd' ? &_duration
                                               : nullptr;
        if (!field || field->offset >= 0) {
            error =
                QStringLiteral("The format '%1' cannot be played: %2.")
                    .arg(format, field ? QStringLiteral("it holds the letter %1 more than once").arg(small)
                                       : QStringLiteral("its letters can be v, p and d"));
            return false;
        }
        field->offset = _recordSize;
        _recordSize += field->bytes;
    }
    if (_pitch.offset >= 0)
        return true;
    error = QStringLiteral("The format '%1' cannot be played: it lacks the letter p, the pitch.").arg(format);
    return false;
}

bool TVCSoundReader::_measure(int tick, QString &error)
{
    for (qsizetype i = 0; i < _count; ++i) {
        _time += qint64(_value(i, _duration)) * tick;
        if (samplesUntil(_time) > MostSamples) {
            error = QStringLiteral("The sound is too long: at %1 samples a second it is more than the %2 "
                                   "seconds that a RIFF file of 4 GiB holds.")
                        .arg(_rate)
                        .arg(MostSamples / _rate);
            return false;
        }
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
