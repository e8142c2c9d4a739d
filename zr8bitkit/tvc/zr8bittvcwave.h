#ifndef ZR8BITTVCWAVE_H
#define ZR8BITTVCWAVE_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>

class QIODevice;

namespace ZR {

/// What a sound's bytes do not say. It may grow at its end.
struct ZR8BitTVCWaveOptions
{
    QString format = QStringLiteral("vpd"); ///< the fields of a record, as ZR8BitTVCSound has them
    int tick = 20;                          ///< milliseconds that a duration of 1 lasts, 1 to 250
    int rate = 44100;                       ///< samples a second, 8,000 to 192,000
};

/// What the sound generator plays until a time. It may grow at its end.
struct ZR8BitTVCTone
{
    static constexpr qint64 TStates = 3'125'000; ///< a second

    qint64 end = 0; ///< T states from the beginning of all tones
    int pitch = 0;  ///< 0 to 4095
    int volume = 0; ///< 0, which is silence, to 15
};

/// Sounds of the Videoton TV Computer (TVC) to hear, as samples and as WAVE files.
///
///     QSaveFile file(path);
///     QString error;
///     const bool isWritten = file.open(QIODevice::WriteOnly) &&
///         ZR8BitTVCWave::writeWave(sound, ZR8BitTVCWaveOptions(), file, {}, &error) && file.commit();
///
/// The sound generator gives a square wave of 195,312.5 Hz / (4096 - pitch). A record of a sound plays it for
/// duration x tick, with an amplitude of 1,024 of 32,767 for each step of the volume: 15 is 15,360, 0 is
/// silence. A record without volume plays at 15, one without duration lasts one tick. Samples are centred on
/// zero and not faded, and the wave goes on in phase from record to record. Each sample is the mean of the
/// wave over its length, so that high pitches do not come back as low ones. Above half the sample rate a
/// record is silent, and the phase waits. A record ends at the sample nearest to the sum of all times up to
/// its end, so that rounding never adds up. All samples come from whole numbers: they are the same
/// everywhere. The filters, the loudspeaker and the exact levels of a real machine are not modelled.
///
/// The bytes are read as ZR8BitTVCSound::binToSound() reads them: a last byte of 0xF0 where a field would
/// start is the end byte, which may be missing, and a value out of range counts as the largest one. What
/// makes samples reports all such values by one warning to Qt's message log.
///
/// All that takes options fails when isFormat() refuses the format; when the sound ends inside a record; when
/// tick or rate is out of range; and when the samples are more than the 4 GiB of a RIFF file. It then returns
/// false with a sentence in error. The class keeps no state: any number of threads may call it at once, each
/// with outputs of its own.
class ZR8BITKIT_EXPORT ZR8BitTVCWave
{
public:
    /// What an operation is to know of a sound beside its bytes.
    using Options = ZR8BitTVCWaveOptions;

    static constexpr int ShortestTick = 1;     ///< milliseconds
    static constexpr int LongestTick = 250;    ///< milliseconds
    static constexpr int LowestRate = 8000;    ///< samples a second
    static constexpr int HighestRate = 192000; ///< samples a second

    /// Whether records of a format can be played: it is a run of the letters v, p and d in any case, with p
    /// among them and none twice. A sentence in error says what is wrong.
    static bool isFormat(const QString &format, QString *error = nullptr);

    /// Is told how many samples are done, of how many; false ends the writing.
    using Progress = std::function<bool(qint64 done, qint64 total)>;

    /// Replaces samples by those of a sound: one channel of 16 bits. Leaves them as they were where it fails,
    /// which it also does when there is not enough memory.
    static bool samples(const QByteArray &sound, const Options &options, QList<qint16> &samples,
                        QString *error = nullptr);

    /// Writes a sound as a RIFF/WAVE file of one channel of 16 bits to a device that is open for writing,
    /// which need not be able to seek. Goes piece by piece, with the same memory for any length. Nothing has
    /// been written when the sound or the options are bad; a part has when the device fails or progress ends
    /// it, and then the device is the caller's to clean up.
    static bool writeWave(const QByteArray &sound, const Options &options, QIODevice &output,
                          const Progress &progress = {}, QString *error = nullptr);

    /// Writes tones as a WAVE file in the same way. Fails also when a tone is out of range or ends before
    /// the previous one does.
    static bool writeWave(const QList<ZR8BitTVCTone> &tones, int rate, QIODevice &output,
                          const Progress &progress = {}, QString *error = nullptr);
};

} // namespace ZR

#endif
