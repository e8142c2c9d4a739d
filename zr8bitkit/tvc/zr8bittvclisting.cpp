#include <zr8bitkit/zr8bittvclisting.h>

#include "zrfailure_p.h"

#include <zr8bitlib/zr8bittvc.h>

#include <algorithm>

namespace ZR {

namespace {

const QLatin1String keyword("DB");

/// Where the last keyword of a text stands; -1 when there is none. Directly after "$" it is a value.
qsizetype lastKeyword(const QString &text)
{
    qsizetype place = text.lastIndexOf(keyword, -1, Qt::CaseInsensitive);
    while (place > 0 && text[place - 1] == u'$')
        place = text.lastIndexOf(keyword, place - 1, Qt::CaseInsensitive);
    return place;
}

/// Whether a listing stays good with its next line. What the lines before it leave open stands in the text
/// open, empty at first: it is the shortest listing with the same effect on the rest. A "$" at the end of a
/// line counts as bad, though the next line may complete it.
bool takesLine(QStringView line, QString &open)
{
    QString listing = open;
    listing += line;
    QByteArray ignored;
    if (!ZR8BitTVC::DBToBin(listing, ignored))
        return false;
    const qsizetype place = lastKeyword(listing);
    if (place < 0)
        return true;
    const qsizetype lastItem = std::max(place + keyword.size(), listing.lastIndexOf(u',') + 1);
    const QStringView item = QStringView(listing).sliced(lastItem).trimmed();
    if (item.contains(u';'))
        open = QStringLiteral("DB ;\n");
    else
        open = item.isEmpty() ? QStringLiteral("DB ") : QStringLiteral("DB 0\n");
    return true;
}

/// What is wrong with a listing that is refused.
QString badLineText(const QString &listing)
{
    constexpr qsizetype LongestShown = 40;
    QString open;
    QStringView line;
    qsizetype number = 0;
    for (const QStringView next : QStringView(listing).tokenize(u'\n')) {
        line = next;
        ++number;
        if (!takesLine(line, open))
            break;
    }
    line = line.trimmed();
    QString shown = line.left(LongestShown).toString();
    if (line.size() > LongestShown)
        shown += QStringLiteral("...");
    return QStringLiteral("Line %1: not a number in '%2'. Values are written as 10 or $A.")
        .arg(QString::number(number), shown);
}

} // namespace

QString ZR8BitTVCListing::fromBytes(const QByteArray &bytes, const Options &options)
{
    QString listing = ZR8BitTVC::BinToDB(bytes, options.hex, options.padded, options.perLine);
    if (!options.label.isEmpty()) {
        const QString head = QStringLiteral("%1_SIZE EQU %2\r%1:").arg(options.label).arg(bytes.size());
        listing = bytes.isEmpty() ? head : head + u'\r' + listing;
    }
    // The library only separates lines; other programs want every line to have its end.
    if (options.lineEnd != QLatin1String("\r") && !listing.isEmpty()) {
        listing += u'\r';
        listing.replace(QLatin1String("\r"), options.lineEnd);
    }
    return listing;
}

bool ZR8BitTVCListing::toBytes(const QString &listing, QByteArray &bytes, QString *error)
{
    QString lines = listing;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
    QByteArray data;
    if (!ZR8BitTVC::DBToBin(lines, data))
        return fail(error, badLineText(lines));
    if (lastKeyword(lines) < 0 && !lines.trimmed().isEmpty())
        return fail(error, QStringLiteral("There is no DB in the listing."));
    bytes = data;
    return true;
}

bool ZR8BitTVCListing::isLabel(const QString &label, QString *error)
{
    const auto isPart = [](QChar character) {
        return character == u'_' || (character.unicode() < 0x80 && character.isLetterOrNumber());
    };
    if (label.isEmpty() || label.front().isDigit() || !std::all_of(label.begin(), label.end(), isPart))
        return fail(error,
                    QStringLiteral("The label '%1' is not an identifier: it can have letters from A to Z, "
                                   "digits and _, and no digit in front.")
                        .arg(label));
    if (label.contains(keyword, Qt::CaseInsensitive))
        return fail(error,
                    QStringLiteral("The label '%1' holds \"db\", which would count as the directive when "
                                   "the listing is read.")
                        .arg(label));
    return true;
}

} // namespace ZR
