#pragma once

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>

class QIODevice;

namespace ZR {

/// What a sound's bytes do not say.
struct ZR8BitTVCWaveOptions
{
    QString format = QStringLiteral("vpd"); ///< the fields of a record, as ZR8BitTVCSound has them
    int tick = 20;                          ///< milliseconds that a duration of 1 lasts, 1 to 250
    int rate = 44100;                       ///< samples a second, 8,000 to 192,000
};

/// Sounds of the Videoton TV Computer (TVC) to hear and to look at, and the pitches of notes.
///
///     QSaveFile file(path);
///     QString error;
///     const bool isWritten = file.open(QIODevice::WriteOnly) &&
///         ZR8BitTVCWave::writeWave(sound, ZR8BitTVCWaveOptions(), file, {}, error) && file.commit();
///
/// The sound generator gives a square wave of 195,312.5 Hz / (4096 - pitch). A record of a sound plays it for
/// duration x tick, with an amplitude of 1,024 of 32,767 for each step of the volume: 15 is 15,360, 0 is
/// silence. A record without volume plays at 15, one without duration lasts one tick. Samples are centred on
/// zero and not faded, and the wave goes on in phase from record to record. Each sample is the mean of the
/// wave over its length, so that high pitches do not come back as low ones; above half the sample rate a
/// record is silent, and the phase waits. A record ends at the sample nearest to the sum of all times up to
/// its end, so that rounding never adds up. All samples come from whole numbers: they are the same
/// everywhere. The filters, the loudspeaker and the exact levels of a real machine are not modelled.
///
/// The bytes are read as ZR8BitTVCSound::binToSound() reads them: a last byte of 0xF0 where a field would
/// start is the end byte, which may be missing, and a value out of range counts as the largest one. What
/// makes samples reports such values by a warning to Qt's message log, one for all.
///
/// All that takes options fails when the format is no run of the letters v, p and d in any case with p among
/// them and none twice; when the sound ends inside a record; when tick or rate is out of range; and when the
/// samples are more than the 4 GiB of a RIFF file. It then returns false with a sentence in error. The class
/// keeps no state: any number of threads may call it at once, each with outputs of its own.
class ZR8BITKIT_EXPORT ZR8BitTVCWave
{
public:
    /// What an operation is to know of a sound beside its bytes.
    using Options = ZR8BitTVCWaveOptions;

    // Sounds

    /// Is told how many samples are done, of how many; false ends the writing. May be empty.
    using Progress = std::function<bool(qint64 done, qint64 total)>;

    /// Replaces samples by those of a sound: one channel of 16 bits. Leaves them as they were where it fails,
    /// which it also does when there is not enough memory.
    static bool samples(const QByteArray &sound, const Options &options, QList<qint16> &samples,
                        QString &error);

    /// Writes a sound as a RIFF/WAVE file of one channel of 16 bits to a device that is open for writing,
    /// which need not be able to seek. Goes piece by piece, with the same memory for any length. Nothing has
    /// been written when the sound or the options are bad; a part has when the device fails or progress ends
    /// it, and then the device is the caller's to clean up.
    static bool writeWave(const QByteArray &sound, const Options &options, QIODevice &output,
                          const Progress &progress, QString &error);

    /// Writes a plot of a sound as SVG, in the same way: a bar for each run of equal records, at its place in
    /// seconds and notes, with the volume as its opacity. Silent records leave a gap; the rate plays no part.
    static bool writePlot(const QByteArray &sound, const Options &options, QIODevice &output, QString &error);

    // Pitches

    /// The frequency of a pitch in Hz; 0 for what is no pitch from 1 to 4095.
    static double pitchFrequency(int pitch);

    /// The pitch that is nearest to a frequency in Hz, by its ratio; 0 when the frequency is none that a
    /// pitch is near to, which takes about 47.69 to 195,312.5.
    static int nearestPitch(double frequency);

    /// How much higher a frequency is than another, both above 0, in cents: 100 are a semitone.
    static double cents(double frequency, double reference);

    /// The frequency in Hz of a note by equal temperament, A4 being 440; 0 for what is no note. A note is a
    /// letter from A to G in either case, "#" or "b" or neither, and an octave from 0 to 13.
    static double noteFrequency(const QString &note);

    /// The note that is nearest to a frequency, such as "C#5"; an empty text below C0 and above B13.
    static QString nearestNote(double frequency);
};

} // namespace ZR
