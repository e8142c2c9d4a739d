#ifndef ZR8BITTVCPITCH_H
#define ZR8BITTVCPITCH_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QString>

namespace ZR {

/// The pitches of the Videoton TV Computer (TVC), their frequencies and notes.
///
///     const int pitch = ZR8BitTVCPitch::ofNote(QStringLiteral("A4")); // 3652
///
/// The sound generator plays a pitch as a square wave of 195,312.5 Hz / (4096 - pitch). Notes are those of
/// the equal temperament with A4 at 440 Hz: a letter from A to G, "#" or "b" or neither, and an octave from 0
/// to 13, which begins with C; in any case of letters. Those from G1 to F#13 have a pitch near to them. The
/// class keeps no state: any number of threads may call it at once.
class ZR8BITKIT_EXPORT ZR8BitTVCPitch
{
public:
    static constexpr int Lowest = 1;     ///< 47.69 Hz, between F#1 and G1
    static constexpr int Highest = 4095; ///< 195,312.5 Hz, between F#13 and G13

    /// The frequency of a pitch in Hz; 0 for what is no pitch.
    static double frequency(int pitch);

    /// The pitch that is nearest to a frequency in Hz, by their ratio. 0 for a frequency that is lower than
    /// about 47.69 or higher than 195,312.5, for which there is none.
    static int nearest(double frequency);

    /// How much higher a frequency is than another, both above 0, in cents: 100 are a semitone.
    static double cents(double frequency, double reference);

    /// The frequency of a note in Hz; 0 for what is no note.
    static double noteFrequency(const QString &note);

    /// The note that is nearest to a frequency, such as "C#5"; an empty text below C0 and above B13.
    static QString nearestNote(double frequency);

    /// The pitch that is nearest to a note. 0 with a sentence in error, which names the lowest and the
    /// highest note, for what is no note or one without a pitch near to it.
    static int ofNote(const QString &note, QString *error = nullptr);
};

} // namespace ZR

#endif
