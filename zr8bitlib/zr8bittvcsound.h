#ifndef ZR8BITTVCSOUND_H
#define ZR8BITTVCSOUND_H

#include <zr8bitlib/zr8bitlib_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace ZR {

/// Sound data of the Videoton TV Computer (TVC): a byte stream, and a text of decimal numbers.
///
///     QByteArray bin;                                                     // 0F 03 E8 14 F0
///     ZR8BitTVCSound::soundToBin(QStringLiteral("15,1000,20,240"), bin, QStringLiteral("vpd"),
///                                QStringLiteral(","));
///
/// A sound is a run of records. The format says by a letter for each field what a record holds and in which
/// order; capitals count as small letters, and a letter may stand more than once:
///
/// | Letter | Field    | Values    | Bytes                | Digits that binToSound() writes |
/// |--------|----------|-----------|----------------------|---------------------------------|
/// | v      | volume   | 0 to 15   | 1                    | 2                               |
/// | p      | pitch    | 1 to 4095 | 2, the high one first| 4                               |
/// | d      | duration | 0 to 255  | 1                    | 3                               |
///
/// The stream is the records back to back and the end byte 0xF0. The text is one number for each field with
/// the separator between, and the end mark 240. Both conversions supply an end that is missing. With a
/// separator that is not empty and holds no digit they are inverses for a sound in range.
///
/// They report through Qt's message log: critical for what ends a call with false, a warning for a value out
/// of range, which becomes the largest one (a pitch of 0 too) while the call goes on. An empty format is
/// refused, with an empty output, as soon as there is a field to convert. The index in a message counts from
/// 0: numbers in soundToBin(), bytes in binToSound().
///
/// The class keeps no state: any number of threads may convert at once, each into an output of its own.
class ZR8BITLIB_EXPORT ZR8BitTVCSound
{
public:
    /// Replaces bin by the stream of a text. The separator is a plain text; separators in front, behind or
    /// doubled do not matter, nor does white space around numbers. Of a number the low 16 bits count. A last
    /// number of 240 is the end mark, whatever field it would be.
    ///
    /// Fails with bin empty when the format holds another letter, or when the numbers do not fill records;
    /// at what is no number with bin holding what stands before it.
    static bool soundToBin(const QString &sound, QByteArray &bin, QString format, const QString &separator);

    /// Replaces sound by the text of a stream. A last byte of 0xF0 where a field would start is the end byte;
    /// elsewhere it is a byte like any other.
    ///
    /// Fails with sound empty when the format holds another letter; when the stream ends inside a record,
    /// with sound holding the numbers before the end, each with a separator behind it.
    static bool binToSound(const QByteArray &bin, QString &sound, QString format, const QString &separator);
};

} // namespace ZR

#endif
