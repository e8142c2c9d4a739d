#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

namespace ZR {

/// What happens in a MIDI file.
struct TVCMidiEvent
{
    enum class Type
    {
        NoteOff,
        NoteOn,
        Tempo,
        TrackEnd
    };

    qint64 time; ///< in the divisions of the file, from the beginning
    Type type;
    int track;   ///< from 1 on
    int channel; ///< from 1 on
    int note;    ///< 0 to 127; 69 is A4
    int value;   ///< the velocity, or the microseconds of a quarter note
};

/// Reads the events of standard MIDI files. Private to the kit.
class TVCMidiReader
{
public:
    /// Reads a file. Returns false with a sentence in error.
    bool read(const QByteArray &file, QString *error);

    int format() const { return _format; }
    int tracks() const { return _tracks; }

    /// How many divisions last length() microseconds, until a tempo says another length.
    int divisions() const { return _divisions; }
    int length() const { return _length; }

    /// The events, track by track. A time by frames of film has no tempo.
    const QList<TVCMidiEvent> &events() const { return _events; }

private:
    bool _readHeader(const QByteArray &chunk, QString *error);
    bool _readTrack(const QByteArray &chunk, QString *error);
    bool _readEvent();
    bool _readMeta();
    bool _readSystem();
    int _byte();
    int _number();

    int _format = 0;
    int _tracks = 0;
    int _divisions = 0;
    int _length = 0;
    bool _hasTempo = false;
    QList<TVCMidiEvent> _events;

    // Of the track that is read
    QByteArray _track;
    qsizetype _place = 0;
    qint64 _time = 0;
    int _status = 0; ///< that runs on; 0 when there is none
    bool _hasEnded = false;
};

} // namespace ZR
