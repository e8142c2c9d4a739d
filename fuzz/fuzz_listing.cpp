// Listings: the reader on any text, the writer on any bytes.

#include "fuzzing.h"

#include <zr8bitlib/zr8bittvc.h>

using ZR::ZR8BitTVC;

namespace {

constexpr char Lead = 'L'; // stands in the output before the reader appends to it

/// What the reader makes of a text, behind the lead.
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

void checkReader(const QString &listing)
{
    bool isGood = false;
    const QByteArray data = read(listing, isGood);
    LAW(data.size() <= listing.size() + 1);

    bool isAlsoGood = false;
    LAW(read(swapCase(listing), isAlsoGood) == data && isAlsoGood == isGood);
    LAW(read(QStringLiteral(" skipped\r") + listing, isAlsoGood) == data && isAlsoGood == isGood);
    const QByteArray longer = read(listing + QStringLiteral("\rDB 7"), isAlsoGood);
    LAW(isAlsoGood == isGood && longer == (isGood ? data + '\7' : data));
}

void checkWriter(const QByteArray &data, bool hex, bool padded, int valuesPerLine)
{
    const QString listing = ZR8BitTVC::BinToDB(data, hex, padded, valuesPerLine);
    LAW(listing.isEmpty() == data.isEmpty());
    const qsizetype perLine = valuesPerLine > 0 ? valuesPerLine : data.size();
    if (!data.isEmpty())
        LAW(listing.count(u'\r') == (data.size() - 1) / perLine);
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
