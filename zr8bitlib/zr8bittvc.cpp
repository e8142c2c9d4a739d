#include <zr8bitlib/zr8bittvc.h>

#include "zr8bitnumbers_p.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace ZR {

namespace {

/// A code beyond printable ASCII and the units that encode to it, the one that it decodes to first.
struct CodeUnits
{
    uchar code;
    const char16_t *units;
};

constexpr CodeUnits codeUnits[] = {
    {0x7F, u"\uC484"}, {0x80, u"ÁÀÂÃÄÅĀĂĄ"}, {0x81, u"ÉÈÊËĒĔĖĘĚ"}, {0x82, u"ÍÌÎÏĨĪĬĮİ"}, {0x83, u"ÓÒ"},
    {0x84, u"Ö"},      {0x85, u"ŐÔÕŌŎ"},     {0x86, u"ÚÙ"},        {0x87, u"Ü"},         {0x88, u"ŰÛŨŪŬŮ"},
    {0x89, u"\uCB98"}, {0x8A, u"\uC581"},    {0x8B, u"\uC2A4"},    {0x8C, u"\uC4BD"},    {0x8D, u"\uC59A"},
    {0x8E, u"\uC2A7"}, {0x8F, u"\uC2A8"},    {0x90, u"áàâãäåāăą"}, {0x91, u"éèêëēĕėęě"}, {0x92, u"íìîïĩīĭįı"},
    {0x93, u"óò"},     {0x94, u"ö"},         {0x95, u"őðôõōŏ"},    {0x96, u"úù"},        {0x97, u"ü"},
    {0x98, u"űûũūŭů"}, {0x99, u"\uC5A0"},    {0x9A, u"\uC59E"},    {0x9B, u"\uC5A4"},    {0x9C, u"\uC5B9"},
    {0x9D, u"\uC5BD"}, {0x9E, u"\uC5BB"},    {0x9F, u"\uC2B0"},
};

constexpr uchar FirstAscii = 0x20; // the space
constexpr uchar LastAscii = 0x7E;
constexpr size_t AsciiCount = LastAscii - FirstAscii + 1;

constexpr size_t countUnits()
{
    size_t count = AsciiCount;
    for (const CodeUnits &row : codeUnits)
        count += std::u16string_view(row.units).size();
    return count;
}

template <typename Key, typename Value>
struct MapRow
{
    Key key;
    Value value;
};

using CodeMap = std::array<MapRow<uchar, char16_t>, AsciiCount + std::size(codeUnits)>;
using UnitMap = std::array<MapRow<char16_t, uchar>, countUnits()>;

constexpr CodeMap makeTVCToUnicodeMap()
{
    CodeMap map{};
    size_t count = 0;
    for (uchar code = FirstAscii; code <= LastAscii; ++code)
        map[count++] = {code, code};
    for (const CodeUnits &row : codeUnits)
        map[count++] = {row.code, row.units[0]};
    return map;
}

constexpr UnitMap makeUnicodeToTVCMap()
{
    UnitMap map{};
    size_t count = 0;
    const auto insert = [&map, &count](char16_t unit, uchar code) {
        size_t place = count++;
        for (; place > 0 && map[place - 1].key > unit; --place)
            map[place] = map[place - 1];
        map[place] = {unit, code};
    };
    for (uchar code = FirstAscii; code <= LastAscii; ++code)
        insert(code, code);
    for (const CodeUnits &row : codeUnits) {
        for (const char16_t unit : std::u16string_view(row.units))
            insert(unit, row.code);
    }
    return map;
}

/// Whether each key stands behind a smaller one, so that none stands there twice.
template <typename Map>
constexpr bool isOrdered(const Map &map)
{
    for (size_t i = 1; i < map.size(); ++i) {
        if (map[i - 1].key >= map[i].key)
            return false;
    }
    return true;
}

// All tables are made by the compiler, so that also the global objects of a program may convert.

constexpr CodeMap TVCToUnicodeMap = makeTVCToUnicodeMap();
constexpr UnitMap UnicodeToTVCMap = makeUnicodeToTVCMap();
static_assert(TVCToUnicodeMap.size() == 128 && isOrdered(TVCToUnicodeMap));
static_assert(UnicodeToTVCMap.size() == 199 && isOrdered(UnicodeToTVCMap));

/// A map over all keys, with a value for those that have no row: a look-up without a search.
template <typename Value, size_t Size, typename Map>
constexpr std::array<Value, Size> flatTable(const Map &map, Value missing)
{
    std::array<Value, Size> table{};
    for (Value &value : table)
        value = missing;
    for (const auto &row : map)
        table[row.key] = row.value;
    return table;
}

constexpr auto unitOfCode = flatTable<char16_t, 0x100>(TVCToUnicodeMap, u' ');
constexpr auto codeOfUnit = flatTable<uchar, 0x10000>(UnicodeToTVCMap, uchar(' '));

constexpr qsizetype KeywordSize = 2;

/// The place of the next "DB" in any case of letters; the end of the text when there is none. "$DB" is a
/// value. No other characters than these fold to the letters d and b.
qsizetype findKeyword(QStringView text, qsizetype from)
{
    for (qsizetype i = from; i + 1 < text.size(); ++i) {
        if ((text[i].unicode() | 0x20) == u'd' && (text[i + 1].unicode() | 0x20) == u'b' &&
            (i == 0 || text[i - 1] != u'$'))
            return i;
    }
    return text.size();
}

/// Appends the values behind one keyword. Returns false at the first item that is no number.
bool appendSection(QStringView section, QByteArray &data)
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
                return true;
            end = section.size();
        }
        const QStringView item = section.first(end).trimmed();
        const bool isHex = item.startsWith(u'$');
        bool isNumber = false;
        const int number = toInt(isHex ? item.sliced(1) : item, isHex ? 16 : 10, isNumber);
        if (!isNumber)
            return false;
        data.append(static_cast<char>(number));
        section = section.sliced(qMin(end + 1, section.size()));
    }
}

} // namespace

ZR8BitTVC::ZR8BitTVC(const QString &name, QObject *parent)
    : QObject(parent)
    , ZRObject(name)
{
}

ZR8BitTVC::~ZR8BitTVC() = default;

const QString ZR8BitTVC::className()
{
    return QStringLiteral("ZR8BitTVC");
}

QByteArray ZR8BitTVC::QStringToTVCStr(const QString &text)
{
    QByteArray data(text.size(), Qt::Uninitialized);
    std::transform(text.begin(), text.end(), data.begin(),
                   [](QChar unit) { return static_cast<char>(codeOfUnit[unit.unicode()]); });
    return data;
}

QString ZR8BitTVC::TVCStrToQString(const QByteArray &data)
{
    QString text(data.size(), Qt::Uninitialized);
    std::transform(data.begin(), data.end(), text.begin(),
                   [](char code) { return QChar(unitOfCode[static_cast<uchar>(code)]); });
    return text;
}

QString ZR8BitTVC::BinToDB(const QByteArray &data, const bool &hex, const bool &padded,
                           const int &valuesPerLine)
{
    const qsizetype all = qMax<qsizetype>(data.size(), 1);
    const qsizetype perLine = valuesPerLine > 0 ? qMin<qsizetype>(valuesPerLine, all) : all;
    const qsizetype lineCount = (data.size() + perLine - 1) / perLine;
    // The lead of a line takes four characters, a value with its comma four at most.
    QString listing(4 * (lineCount + data.size()), Qt::Uninitialized);
    QChar *place = listing.data();
    constexpr QStringView lead = u"\rDB "; // at the first line without the separator
    for (qsizetype i = 0; i < data.size(); ++i) {
        if (i % perLine == 0)
            place = std::copy(lead.begin() + (i == 0 ? 1 : 0), lead.end(), place);
        else
            *place++ = u',';
        if (hex)
            *place++ = u'$';
        const auto value = static_cast<uchar>(data[i]);
        place = hex ? writeDigits<16>(place, value, padded ? 2 : 1)
                    : writeDigits<10>(place, value, padded ? 3 : 1);
    }
    listing.truncate(place - listing.constData());
    return listing;
}

bool ZR8BitTVC::DBToBin(const QString &text, QByteArray &data)
{
    const QStringView listing(text);
    qsizetype keyword = findKeyword(listing, 0);
    while (keyword < listing.size()) {
        const qsizetype start = keyword + KeywordSize;
        keyword = findKeyword(listing, start);
        if (!appendSection(listing.sliced(start, keyword - start), data))
            return false;
    }
    return true;
}

} // namespace ZR
