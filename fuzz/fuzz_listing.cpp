// Listings: the reader on any text, the writer on any bytes.

#include "fuzzing.h"

#include <zr8bitlib/zr8bittvc.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

using ZR::ZR8BitTVC;

namespace {

constexpr char Lead = 'L'; // stands in the output before the reader appends to it

/// What the reader makes of a text, after the lead.
QByteArray read(const QString &listing, bool &isGood)
{
    QByteArray data(1, Lead);
    isGood = ZR8BitTVC::DBToBin(listing, data);
    LAW(data.startsWith(Lead));
    return data;
}

QString swapCase(QString text)
{
    for (QChar &character : text) {
        if (character.unicode() < 0x80 && character.isLetter())
            character = QChar(character.unicode() ^ 0x20);
    }
    return text;
}

/// The reader once more, by splitting. Expressions do not take units that are no characters.
bool readBySplitting(const QString &listing, QByteArray &data)
{
    static const QRegularExpression keyword(QStringLiteral("(?<!\\$)[dD][bB]"));
    const QStringList sections = listing.split(keyword).sliced(1);
    for (const QString &section : sections) {
        QStringList items = section.split(u',');
        items.last() = items.last().section(u';', 0, 0); // a comment
        if (items.last().trimmed().isEmpty())
            items.removeLast();
        for (const QString &item : std::as_const(items)) {
            const QString text = item.trimmed();
            bool isNumber = false;
            const int number =
                text.startsWith(u'$') ? text.mid(1).toInt(&isNumber, 16) : text.toInt(&isNumber, 10);
            if (!isNumber)
                return false;
            data += static_cast<char>(number);
        }
    }
    return true;
}

void checkReader(const QString &listing)
{
    bool isGood = false;
    const QByteArray data = read(listing, isGood);
    bool isAlsoGood = false;
    if (listing.isValidUtf16()) {
        QByteArray expected(1, Lead);
        isAlsoGood = readBySplitting(listing, expected);
        LAW(data == expected && isGood == isAlsoGood);
    }
    LAW(read(swapCase(listing), isAlsoGood) == data && isAlsoGood == isGood);
    LAW(read(QStringLiteral(" skipped\r") + listing, isAlsoGood) == data && isAlsoGood == isGood);
    const QByteArray longer = read(listing + QStringLiteral("\rDB 7"), isAlsoGood);
    LAW(isAlsoGood == isGood && longer == (isGood ? data + '\7' : data));
}

void checkWriter(const QByteArray &data, bool hex, bool padded, int valuesPerLine)
{
    const QString listing = ZR8BitTVC::BinToDB(data, hex, padded, valuesPerLine);
    LAW(listing.isEmpty() == data.isEmpty());
    LAW(listing.count(u'$') == (hex ? data.size() : 0));
    const qsizetype perLine = valuesPerLine > 0 ? valuesPerLine : data.size();
    if (!data.isEmpty())
        LAW(listing.count(u'\r') == (data.size() - 1) / perLine);
    const qsizetype lineCount = listing.count(u'\r') + 1;
    if (padded && !data.isEmpty()) // "DB " and three characters a value, with one between
        LAW(listing.size() == 4 * data.size() + 3 * lineCount - 1);
    bool isGood = false;
    LAW(read(listing, isGood) == Lead + data && isGood);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    const bool hex = input.ConsumeBool();
    const bool padded = input.ConsumeBool();
    const int valuesPerLine =
        input.ConsumeBool() ? input.ConsumeIntegralInRange(-1, 20) : input.ConsumeIntegral<int>();
    if (input.ConsumeBool())
        checkReader(remainingText(input).text());
    else
        checkWriter(remainingBytes(input).bytes(), hex, padded, valuesPerLine);
    return 0;
}
