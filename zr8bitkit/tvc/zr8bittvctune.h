#ifndef ZR8BITTVCTUNE_H
#define ZR8BITTVCTUNE_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace ZR {

/// How the text of a sound is written. It may grow at its end.
struct ZR8BitTVCTuneOptions
{
    QString format = QStringLiteral("vpd");  ///< the fields of a record, as ZR8BitTVCSound has them
    QString separator = QStringLiteral(","); ///< between numbers; see isGood()

    bool notes = false; ///< write pitches as notes, where a note has exactly that pitch
    bool rests = false; ///< a note "-" is silence
};

/// Sounds of the Videoton TV Computer (TVC) as texts for people, on ZR8BitTVCSound, which knows numbers only:
///
///     # volume, note, ticks
///     15,A4,25
///     15,c#5,25   # louder than the next one
///     8,3652,25
///
/// In place of a pitch a note may stand, as ZR8BitTVCPitch has it. Ends of lines separate numbers too, and a
/// record may go over several of them. A comment begins with "#" at the beginning of a line or after white
/// space, unless the separator holds one, and goes on to the end of the line. All else is as
/// ZR8BitTVCSound::soundToBin() has it: the end mark 240, and a value out of range, which becomes the largest
/// one with a warning in Qt's message log.
///
/// With rests, the pitch of a record may be "-": its volume is 0 then, whatever it says, and its pitch 1.
///
/// The class keeps no state: any number of threads may call it at once, each with an output of its own.
class ZR8BITKIT_EXPORT ZR8BitTVCTune
{
public:
    /// How a text is written.
    using Options = ZR8BitTVCTuneOptions;

    /// Whether options can be used: the format is one or more of the letters v, p and d; the separator is not
    /// empty and holds no digit, nor, with notes, a letter from A to G, "#" or "-"; and with rests there is a
    /// volume. A sentence in error says what is wrong.
    static bool isGood(const Options &options, QString *error = nullptr);

    /// Replaces bytes by the stream of a text; of the options notes plays no part. Leaves them as they were
    /// and returns false with a sentence in error, which names the line and the record, when something is no
    /// number and no note, when the last record is not whole, or when the options are bad.
    static bool toBytes(const QString &text, QByteArray &bytes, const Options &options = {},
                        QString *error = nullptr);

    /// Replaces text by that of a stream: numbers as ZR8BitTVCSound::binToSound() writes them or, with notes
    /// or rests, a record a line, which toBytes() reads back as the same bytes. Leaves it as it was and
    /// returns false in the same way when the stream ends inside a record.
    static bool fromBytes(const QByteArray &bytes, QString &text, const Options &options = {},
                          QString *error = nullptr);
};

} // namespace ZR

#endif
