#ifndef ZR8BITTVCMIDI_H
#define ZR8BITTVCMIDI_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace ZR {

/// What is taken of a MIDI file. It may grow at its end.
struct ZR8BitTVCMidiOptions
{
    int track = 0;   ///< from 1 on; 0 takes all
    int channel = 0; ///< 1 to 16; 0 takes all but 10, which has the drums
    int tick = 20;   ///< milliseconds that a duration of 1 lasts, 1 to 250
};

/// What became of the notes of a MIDI file. It may grow at its end.
struct ZR8BitTVCMidiReport
{
    qsizetype notes = 0;      ///< on the tracks and channels that are taken
    qsizetype hidden = 0;     ///< of these: never heard, since higher ones sound or a tick is too long
    qsizetype outOfRange = 0; ///< of these: below the lowest pitch
    qsizetype drums = 0;      ///< beside these: on channel 10, which is not taken
};

/// Tunes of standard MIDI files for the Videoton TV Computer (TVC), which has one voice.
///
///     QByteArray sound;
///     QString error;
///     if (!ZR8BitTVCMidi::toSound(file.readAll(), sound, {}, nullptr, &error))
///         qWarning().noquote() << error;
///
/// The highest note that sounds is played, with its velocity as volume: 127 is 15, and none is below 1. A
/// note ends where the file says, whatever pedals and instruments do, or else with the last track.
/// All tempo changes count, of whatever track. A change comes at the tick of the sound that is nearest to its
/// time, so that rounding never adds up. A note of more than 255 ticks takes several records.
///
/// Formats 0 and 1 are read, and of format 2 a single track that is chosen; a time division by notes or by
/// frames of film; chunks that are neither a header nor a track are skipped. The class keeps no state: any
/// number of threads may call it at once, each with an output of its own.
class ZR8BITKIT_EXPORT ZR8BitTVCMidi
{
public:
    /// What is taken of a file.
    using Options = ZR8BitTVCMidiOptions;

    static constexpr int LongestHours = 24; ///< of a tune

    /// Replaces sound by the tune of a file, in the format "vpd". Leaves it as it was and returns false with
    /// a sentence in error when the file is not a MIDI file or is cut, when the options are out of range,
    /// when the tune is longer than 24 hours, and when no note is left. Fills in report, where it is given,
    /// either way.
    static bool toSound(const QByteArray &file, QByteArray &sound, const Options &options = {},
                        ZR8BitTVCMidiReport *report = nullptr, QString *error = nullptr);
};

} // namespace ZR

#endif
