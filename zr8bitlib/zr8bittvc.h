#ifndef ZR8BITTVC_H
#define ZR8BITTVC_H

#include <zr8bitlib/zr8bitlib_export.h>
#include <zrbaselib/zrobject.h>

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QString>

namespace ZR {

/// The character code of the Videoton TV Computer (TVC), and listings of bytes for assemblers.
///
///     const QByteArray codes = ZR8BitTVC::QStringToTVCStr(word);                 // one byte a UTF-16 unit
///     const QString listing = ZR8BitTVC::BinToDB(codes, true, true, 8);          // "DB $80,$72,..."
///     QByteArray bytes;
///     const bool isGood = ZR8BitTVC::DBToBin(listing, bytes);                    // bytes == codes
///
/// The conversions are static, need no object and keep no state: any number of threads may call them at once,
/// each with an output of its own. The time that they take grows with the length of their input and with
/// nothing else.
///
/// The TVC keeps a text as one byte a character: printable ASCII at its own places, the Hungarian accented
/// letters at 0x80 to 0x88 (capitals) and 0x90 to 0x98 (small letters), and fifteen further codes 0x7F, 0x89
/// to 0x8F and 0x99 to 0x9F. Each of those fifteen stands for one fixed UTF-16 unit among the Hangul
/// syllables, both ways; how the TVC shows them is not modelled. All other codes are unused.
class ZR8BITLIB_EXPORT ZR8BitTVC : public QObject, public ZRObject
{
    Q_OBJECT

public:
    /// An object with a name and nothing else: no conversion needs one.
    explicit ZR8BitTVC(const QString &name = QString(), QObject *parent = nullptr);
    ~ZR8BitTVC() override;

    /// "ZR8BitTVC".
    static const QString className();

    // Text

    /// The TVC codes of a text, one for each UTF-16 unit, with nothing in front and nothing behind. Further
    /// accented vowels become the Hungarian letter nearest to them, as in ā to á. A unit without a code
    /// becomes a space (32): other accented letters, line ends and other control characters, combining marks.
    static QByteArray QStringToTVCStr(const QString &text);

    /// The text of TVC codes, one UTF-16 unit for each byte. An unused code becomes a space.
    static QString TVCStrToQString(const QByteArray &data);

    // Listings

    /// The listing of bytes: lines of "DB " and values with commas between, separated by a carriage return.
    /// Values are decimal or, with hex, "$" and capital hexadecimal digits; padded gives them all the same
    /// width by zeros in front. valuesPerLine of 0 or less means a single line. No bytes, no text.
    static QString BinToDB(const QByteArray &data, const bool &hex, const bool &padded,
                           const int &valuesPerLine);

    /// Appends the bytes of a listing to data, which is not cleared. Returns false at the first item that is
    /// no number; what stands before it has then been appended.
    ///
    /// The keyword counts in any case of letters and wherever it stands, in a word or a comment too, but for
    /// one place: directly behind "$" it is the value 0xDB. Text before the first keyword is skipped. Items
    /// are what QString::toInt() reads, in base 16 behind "$", with white space around; of a number the low
    /// 8 bits count. A comment begins with ";" behind the last comma of its section, the text up to the next
    /// keyword.
    static bool DBToBin(const QString &text, QByteArray &data);
};

} // namespace ZR

#endif
