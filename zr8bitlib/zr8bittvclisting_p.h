#pragma once

// The reader of "DB" listings, which says where a listing is wrong.

#include "zr8bitnumbers_p.h"

#include <QtCore/QByteArray>
#include <QtCore/QStringView>

#include <optional>

namespace ZR {

constexpr qsizetype ListingKeywordSize = 2;

/// The place of the next "DB" in any case of letters; the end of the text when there is none. "$DB" is a
/// value. No other characters than these fold to the letters d and b.
inline qsizetype findListingKeyword(QStringView text, qsizetype from)
{
    for (qsizetype i = from; i + 1 < text.size(); ++i) {
        if ((text[i].unicode() | 0x20) == u'd' && (text[i + 1].unicode() | 0x20) == u'b' &&
            (i == 0 || text[i - 1] != u'$'))
            return i;
    }
    return text.size();
}

/// Appends the values behind one keyword, up to the first item that is no number, which is returned.
inline std::optional<QStringView> appendListingSection(QStringView section, QByteArray &data)
{
    while (true) {
        section = section.trimmed();
        qsizetype end = section.indexOf(u',');
        if (end < 0) {
            // Only now can a semicolon begin a comment: one in front of a comma is a part of an item.
            const qsizetype comment = section.indexOf(u';');
            if (comment >= 0)
                section = section.first(comment);
            if (section.isEmpty())
                return std::nullopt;
            end = section.size();
        }
        const QStringView item = section.first(end).trimmed();
        const bool isHex = item.startsWith(u'$');
        bool isNumber = false;
        const int number = toInt(isHex ? item.sliced(1) : item, isHex ? 16 : 10, isNumber);
        if (!isNumber)
            return item;
        data.append(static_cast<char>(number));
        section = section.sliced(qMin(end + 1, section.size()));
    }
}

/// Appends the values of a listing, up to the first item that is no number. Returns that item as a view into
/// the text, trimmed and perhaps empty; nothing when all are numbers.
inline std::optional<QStringView> appendListing(QStringView text, QByteArray &data)
{
    qsizetype keyword = findListingKeyword(text, 0);
    while (keyword < text.size()) {
        const qsizetype start = keyword + ListingKeywordSize;
        keyword = findListingKeyword(text, start);
        if (const auto bad = appendListingSection(text.sliced(start, keyword - start), data))
            return bad;
    }
    return std::nullopt;
}

} // namespace ZR
