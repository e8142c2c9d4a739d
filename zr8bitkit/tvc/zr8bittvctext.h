#ifndef ZR8BITTVCTEXT_H
#define ZR8BITTVCTEXT_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

namespace ZR {

/// How a text is converted. It may grow at its end.
struct ZR8BitTVCTextOptions
{
    bool lines = false; ///< keep carriage returns and line feeds as they are

    /// Write the usual stand-ins of characters that the TVC does not have: plain quotes, dashes and dots for
    /// typographic ones, ss for ß, letters without the accents that it lacks.
    bool replace = false;
};

/// A character that got lost, and where it stands. It may grow at its end.
struct ZR8BitTVCTextLoss
{
    qsizetype line = 0;     ///< from 1 on
    qsizetype column = 0;   ///< from 1 on, counted in characters
    char32_t character = 0; ///< its code point
};

/// What a conversion lost. It may grow at its end.
struct ZR8BitTVCTextReport
{
    qsizetype characters = 0;       ///< or codes, that were converted
    qsizetype lost = 0;             ///< that became spaces
    QList<ZR8BitTVCTextLoss> first; ///< the first ten of these; for texts only
};

/// Texts to and from the character code of the Videoton TV Computer (TVC), on ZR8BitTVC, which converts
/// character by character and tells no losses. The class keeps no state: any number of threads may call it at
/// once.
class ZR8BITKIT_EXPORT ZR8BitTVCText
{
public:
    /// How a text is converted.
    using Options = ZR8BitTVCTextOptions;

    /// The codes of a text. What has none becomes a space, or two beyond U+FFFF.
    static QByteArray encode(const QString &text, const Options &options = {},
                             ZR8BitTVCTextReport *report = nullptr);

    /// The text of codes. Unused codes become spaces; replace plays no part.
    static QString decode(const QByteArray &codes, const Options &options = {},
                          ZR8BitTVCTextReport *report = nullptr);
};

} // namespace ZR

#endif
