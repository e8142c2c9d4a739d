#ifndef ZR8BITTVCLISTING_H
#define ZR8BITTVCLISTING_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace ZR {

/// How a listing is written. It may grow at its end.
struct ZR8BitTVCListingOptions
{
    bool hex = false;    ///< $A instead of 10
    bool padded = false; ///< with zeros in front, as 010 or $0A
    int perLine = 16;    ///< values on a line; 0 or less puts all on a single one

    /// Stands after each line; a carriage return only between lines, as ZR8BitTVC::BinToDB() has it.
    QString lineEnd = QStringLiteral("\n");

    /// Where it is not empty, the listing begins with a line of LABEL_SIZE EQU and the number of bytes, and a
    /// line of LABEL and a colon.
    QString label;
};

/// Whole listings of bytes for assemblers, on ZR8BitTVC::BinToDB() and DBToBin(), which read and write single
/// values. The class keeps no state: any number of threads may call it at once.
class ZR8BITKIT_EXPORT ZR8BitTVCListing
{
public:
    /// How a listing is written.
    using Options = ZR8BitTVCListingOptions;

    /// The listing of bytes. The label has to be one of isLabel().
    static QString fromBytes(const QByteArray &bytes, const Options &options = {});

    /// Replaces bytes by those of a listing, whose lines end with a line feed, a carriage return or both.
    /// When a value is no number, or there is text but no DB, leaves them as they were and returns false,
    /// with a sentence in error, which names the line.
    static bool toBytes(const QString &listing, QByteArray &bytes, QString *error = nullptr);

    /// Whether a label can stand in front of a listing that reads back: letters from A to Z in either case,
    /// digits and "_", no digit in front, and no "db". A sentence in error says what is wrong.
    static bool isLabel(const QString &label, QString *error = nullptr);
};

} // namespace ZR

#endif
