#include <zr8bitkit/zr8bittvcmidi.h>
#include <zr8bitkit/zr8bittvcpitch.h>

#include "zr8bittvcmidireader_p.h"
#include "zr8bittvcsoundreader_p.h"
#include "zrfailure_p.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ZR {

namespace {

constexpr int DrumChannel = 10;
constexpr int NoteCount = 128;
constexpr qint64 LongestDuration = 255; // ticks
constexpr char EndByte = '\xF0';

using Event = TVCMidiEvent;

/// The pitch that is nearest to a note of MIDI; 0 for one that is too low.
int pitchOf(int note)
{
    constexpr int ConcertNote = 69;
    return ZR8BitTVCPitch::nearest(440 * std::exp2((note - ConcertNote) / 12.0));
}

/// Turns the time of a file into ticks of a sound, going on from event to event.
class Clock
{
public:
    Clock(const TVCMidiReader &reader, int tick)
        : _length(reader.length())
        , _unitsPerTick(qint64(tick) * 1000 * reader.divisions())
        , _limit(ZR8BitTVCMidi::LongestHours * 3600LL * 1'000'000 * reader.divisions())
    {
    }

    /// Goes on to a time of the file. Returns false when it is beyond the longest tune.
    bool goTo(qint64 time)
    {
        constexpr qint64 LongestStep = 1LL << 36; // so that nothing overflows
        const qint64 step = time - _time;
        _time = time;
        if (step > LongestStep)
            return false;
        _units += step * _length;
        return _units <= _limit;
    }

    /// Says how many microseconds the divisions last from now on.
    void setLength(int length) { _length = length; }

    /// The nearest tick.
    qint64 tick() const { return (_units + _unitsPerTick / 2) / _unitsPerTick; }

private:
    qint64 _length;
    const qint64 _unitsPerTick; ///< a unit is a microsecond by the divisions
    const qint64 _limit;
    qint64 _time = 0;
    qint64 _units = 0;
};

/// Makes records of the notes that sound.
class Voice
{
public:
    explicit Voice(ZR8BitTVCMidiReport &report)
        : _report(report)
    {
    }

    void turnOn(const Event &event)
    {
        const auto note = static_cast<size_t>(event.note);
        if (event.note == _note)
            _writeRun(); // it begins again
        ++_report.notes;
        ++_unheard[note];
        ++_sounding[note];
        _velocities[note] = event.value;
    }

    void turnOff(const Event &event)
    {
        const auto note = static_cast<size_t>(event.note);
        _sounding[note] = std::max(_sounding[note] - 1, 0);
        if (_sounding[note] == 0)
            _countUnheard(note);
    }

    /// Plays what sounds, up to a tick.
    void playUntil(qint64 tick)
    {
        if (tick == _tick)
            return;
        int note = NoteCount - 1;
        while (note >= 0 && (_sounding[static_cast<size_t>(note)] == 0 || pitchOfNote(note) == 0))
            --note;
        if (note != _note)
            _writeRun();
        _note = note;
        _run += tick - _tick;
        _tick = tick;
        if (note < 0)
            return;
        _unheard[static_cast<size_t>(note)] = 0;
        _volume = volumeOf(_velocities[static_cast<size_t>(note)]);
    }

    /// The bytes of the sound, without silence at its end. Nothing can be played after it.
    QByteArray sound()
    {
        _writeRun();
        for (size_t note = 0; note < NoteCount; ++note)
            _countUnheard(note);
        return _sound.first(_end) + EndByte;
    }

private:
    static int pitchOfNote(int note)
    {
        static const auto pitches = [] {
            std::array<int, NoteCount> table = {};
            for (int i = 0; i < NoteCount; ++i)
                table[static_cast<size_t>(i)] = pitchOf(i);
            return table;
        }();
        return pitches[static_cast<size_t>(note)];
    }

    /// Writes the note that has been heard, or the silence.
    void _writeRun()
    {
        const bool isSilent = _note < 0;
        const int pitch = isSilent ? ZR8BitTVCPitch::Lowest : pitchOfNote(_note);
        for (; _run > 0; _run -= std::min(_run, LongestDuration)) {
            for (const qint64 byte : {qint64(isSilent ? 0 : _volume), qint64(pitch >> 8),
                                      qint64(pitch & 0xFF), std::min(_run, LongestDuration)})
                _sound += static_cast<char>(byte);
        }
        if (!isSilent)
            _end = _sound.size();
    }

    void _countUnheard(size_t note)
    {
        (pitchOfNote(static_cast<int>(note)) == 0 ? _report.outOfRange : _report.hidden) += _unheard[note];
        _unheard[note] = 0;
    }

    static int volumeOf(int velocity)
    {
        constexpr int Fastest = 127;
        return std::max((2 * velocity * LoudestVolume + Fastest) / (2 * Fastest), 1);
    }

    ZR8BitTVCMidiReport &_report;
    std::array<int, NoteCount> _sounding = {}; ///< how many times
    std::array<int, NoteCount> _velocities = {};
    std::array<qsizetype, NoteCount> _unheard = {}; ///< notes so far
    qint64 _tick = 0;
    int _note = -1;  ///< that is heard; below 0 in silence
    qint64 _run = 0; ///< for how many ticks, as far as they are not written
    int _volume = 0;
    QByteArray _sound;
    qsizetype _end = 0; ///< of the last note
};

bool checkOptions(const TVCMidiReader &reader, const ZR8BitTVCMidiOptions &options, QString *error)
{
    if (!checkTick(options.tick, error) ||
        !checkRange(QStringLiteral("The MIDI channel"), options.channel, 0, 16, error))
        return false;
    if (options.track < 0 || options.track > reader.tracks())
        return fail(error, QStringLiteral("The MIDI file has %1 tracks, and no track %2.")
                               .arg(reader.tracks())
                               .arg(options.track));
    return reader.format() != 2 || reader.tracks() <= 1 || options.track > 0 ||
           fail(error, QStringLiteral("The MIDI file holds %1 tunes, a track each: choose one.")
                           .arg(reader.tracks()));
}

/// The events in the order of their times.
QList<Event> sorted(const TVCMidiReader &reader, const ZR8BitTVCMidiOptions &options)
{
    QList<Event> events = reader.events();
    if (reader.format() == 2) // each track has a time of its own
        events.removeIf([&options](const Event &event) { return event.track != std::max(options.track, 1); });
    std::stable_sort(events.begin(), events.end(),
                     [](const Event &event, const Event &other) { return event.time < other.time; });
    return events;
}

bool isNote(const Event &event)
{
    return event.type == Event::Type::NoteOn || event.type == Event::Type::NoteOff;
}

/// Whether a note is one that is asked for.
bool isTaken(const Event &event, const ZR8BitTVCMidiOptions &options)
{
    return (options.track == 0 || event.track == options.track) &&
           (options.channel == 0 ? event.channel != DrumChannel : event.channel == options.channel);
}

/// Why there is no note to play.
QString silenceText(const ZR8BitTVCMidiReport &report)
{
    QStringList reasons;
    const auto add = [&reasons](qsizetype count, const QString &reason) {
        if (count > 0)
            reasons += QString::number(count) + u' ' + reason;
    };
    add(report.drums, QStringLiteral("of drums, on channel 10"));
    add(report.outOfRange, QStringLiteral("below G1, the lowest"));
    add(report.hidden, QStringLiteral("too short for a tick"));
    return QStringLiteral("No note of the MIDI file is left") +
           (reasons.isEmpty() ? QString() : QStringLiteral(": ") + reasons.join(QStringLiteral(", "))) + u'.';
}

} // namespace

bool ZR8BitTVCMidi::toSound(const QByteArray &file, QByteArray &sound, const Options &options,
                            ZR8BitTVCMidiReport *report, QString *error)
{
    ZR8BitTVCMidiReport own;
    ZR8BitTVCMidiReport &found = report ? *report : own;
    found = {};
    TVCMidiReader reader;
    if (!reader.read(file, error) || !checkOptions(reader, options, error))
        return false;
    Clock clock(reader, options.tick);
    Voice voice(found);
    for (const Event &event : sorted(reader, options)) {
        if (!clock.goTo(event.time))
            return fail(error, QStringLiteral("The tune is longer than %1 hours.").arg(LongestHours));
        const bool isOn = event.type == Event::Type::NoteOn;
        if (event.type == Event::Type::Tempo) {
            clock.setLength(event.value);
        } else if (isNote(event) && isTaken(event, options)) {
            voice.playUntil(clock.tick());
            isOn ? voice.turnOn(event) : voice.turnOff(event);
        } else if (isOn && options.channel == 0 && event.channel == DrumChannel) {
            ++found.drums;
        }
    }
    voice.playUntil(clock.tick());
    const QByteArray played = voice.sound();
    if (played.size() == 1)
        return fail(error, silenceText(found));
    sound = played;
    return true;
}

} // namespace ZR
