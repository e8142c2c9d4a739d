#include "zr8bittvcmidireader_p.h"

#include "zrfailure_p.h"

#include <QtCore/QtEndian>

#include <algorithm>

namespace ZR {

namespace {

constexpr qsizetype ChunkHead = 8; // a name of four letters and a length

// What _byte() and _number() give where the track has ended too early or a number is too long.
constexpr int Bad = -1;

} // namespace

bool TVCMidiReader::read(const QByteArray &file, QString *error)
{
    if (!file.startsWith("MThd"))
        return fail(error, QStringLiteral("It is not a MIDI file, which begins with the letters MThd."));
    int expected = 0;
    for (qsizetype place = 0; place < file.size();) {
        if (_tracks > 0 && _tracks == expected && file.size() - place < ChunkHead)
            break; // bytes after the last track are of no use
        const QByteArray head = file.sliced(place).first(std::min(ChunkHead, file.size() - place));
        if (head.size() < ChunkHead)
            return fail(error,
                        QStringLiteral("The MIDI file is cut in the head of a chunk at byte %1.").arg(place));
        const qint64 size = qFromBigEndian<quint32>(head.constData() + 4);
        const qsizetype left = file.size() - place - ChunkHead;
        if (size > left)
            return fail(
                error,
                QStringLiteral("The MIDI file is cut: a chunk at byte %1 has %2 bytes, and %3 are there.")
                    .arg(QString::number(place), QString::number(size), QString::number(left)));
        const QByteArray chunk = file.sliced(place + ChunkHead, static_cast<qsizetype>(size));
        if (place == 0) {
            if (!_readHeader(chunk, error))
                return false;
            expected = qFromBigEndian<quint16>(chunk.constData() + 2);
        } else if (head.startsWith("MTrk") && !_readTrack(chunk, error)) {
            return false;
        }
        place += ChunkHead + static_cast<qsizetype>(size);
    }
    return _tracks >= expected ||
           fail(error,
                QStringLiteral("The MIDI file is cut: it has %1 of %2 tracks.").arg(_tracks).arg(expected));
}

bool TVCMidiReader::_readHeader(const QByteArray &chunk, QString *error)
{
    constexpr qsizetype LeastSize = 6;
    if (chunk.size() < LeastSize)
        return fail(
            error, QStringLiteral("The header of the MIDI file has %1 bytes and needs 6.").arg(chunk.size()));
    _format = qFromBigEndian<quint16>(chunk.constData());
    if (_format > 2)
        return fail(error,
                    QStringLiteral("The MIDI file has the format %1; known are 0, 1 and 2.").arg(_format));
    const int division = qFromBigEndian<qint16>(chunk.constData() + 4);
    _hasTempo = division >= 0;
    if (_hasTempo) {
        _divisions = division; // of a quarter note, which lasts half a second at first
        _length = 500'000;
    } else {
        const int frames = -(division >> 8);
        _divisions = (frames == 29 ? 30 : frames) * (division & 0xFF);
        _length = frames == 29 ? 1'001'000 : 1'000'000; // 29 stands for 29.97
    }
    return _divisions > 0 ||
           fail(error, QStringLiteral("The header of the MIDI file has a time division of 0."));
}

bool TVCMidiReader::_readTrack(const QByteArray &chunk, QString *error)
{
    ++_tracks;
    _track = chunk;
    _place = 0;
    _time = 0;
    _status = 0;
    _hasEnded = false;
    while (!_hasEnded && _place < _track.size()) {
        const qsizetype place = _place;
        if (!_readEvent())
            return fail(error, QStringLiteral("Track %1 of the MIDI file has a bad event at its byte %2.")
                                   .arg(QString::number(_tracks), QString::number(place)));
    }
    return _hasEnded || fail(error, QStringLiteral("Track %1 of the MIDI file has no end.").arg(_tracks));
}

bool TVCMidiReader::_readEvent()
{
    const int delta = _number();
    if (delta == Bad)
        return false;
    _time += delta;
    int first = _byte();
    if (first == 0xFF)
        return _readMeta();
    if (first == 0xF0 || first == 0xF7)
        return _readSystem();
    if (first >= 0x80) {
        _status = first;
        first = _byte();
    }
    const int kind = _status >> 4;
    if (_status == 0 || kind == 0xF || first == Bad || first >= 0x80)
        return false;
    const bool hasOneByte = kind == 0xC || kind == 0xD; // program, pressure
    const int second = hasOneByte ? 0 : _byte();
    if (second == Bad || second >= 0x80)
        return false;
    if (kind == 0x8 || kind == 0x9) {
        const bool isOn = kind == 0x9 && second > 0;
        _events.append({_time, isOn ? TVCMidiEvent::Type::NoteOn : TVCMidiEvent::Type::NoteOff, _tracks,
                        (_status & 0x0F) + 1, first, second});
    }
    return true;
}

bool TVCMidiReader::_readMeta()
{
    constexpr int EndOfTrack = 0x2F;
    constexpr int Tempo = 0x51;
    _status = 0;
    const int type = _byte();
    const int size = _number();
    if (type == Bad || size == Bad || size > _track.size() - _place)
        return false;
    if (type == Tempo && size == 3 && _hasTempo) {
        int tempo = 0;
        for (int i = 0; i < size; ++i)
            tempo = tempo << 8 | static_cast<uchar>(_track[_place + i]);
        _events.append({_time, TVCMidiEvent::Type::Tempo, _tracks, 0, 0, tempo});
    }
    _place += size;
    _hasEnded = type == EndOfTrack;
    if (_hasEnded)
        _events.append({_time, TVCMidiEvent::Type::TrackEnd, _tracks, 0, 0, 0});
    return true;
}

bool TVCMidiReader::_readSystem()
{
    _status = 0;
    const int size = _number();
    if (size == Bad || size > _track.size() - _place)
        return false;
    _place += size;
    return true;
}

int TVCMidiReader::_byte()
{
    return _place < _track.size() ? static_cast<uchar>(_track[_place++]) : Bad;
}

/// A number of seven bits a byte, in up to four of them.
int TVCMidiReader::_number()
{
    constexpr int MostBytes = 4;
    int number = 0;
    for (int i = 0; i < MostBytes; ++i) {
        const int byte = _byte();
        if (byte == Bad)
            return Bad;
        number = number << 7 | (byte & 0x7F);
        if (byte < 0x80)
            return number;
    }
    return Bad;
}

} // namespace ZR
