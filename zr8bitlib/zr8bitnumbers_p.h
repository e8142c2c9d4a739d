#pragma once

// Numbers in texts, read and written without a temporary string for each.

#include <QtCore/QStringView>

namespace ZR {

/// The same as QString::toInt(), but with a fast path.
inline int toInt(QStringView text, int base, bool &isNumber)
{
    // The fast path takes up to seven digits and nothing else: they cannot overflow.
    if (text.isEmpty() || text.size() > 7)
        return text.toInt(&isNumber, base);
    int number = 0;
    for (const QChar character : text) {
        int digit = character.unicode() - u'0';
        if (digit < 0 || digit > 9) {
            const int letter = (character.unicode() | 0x20) - u'a'; // in lower case
            digit = letter >= 0 ? letter + 10 : base;
        }
        if (digit >= base)
            return text.toInt(&isNumber, base);
        number = number * base + digit;
    }
    isNumber = true;
    return number;
}

/// Writes a number in upper-case digits, padded with zeros to at least count digits. Returns the position
/// behind the last one.
template <unsigned Base>
QChar *writeDigits(QChar *place, unsigned number, int count)
{
    int length = 1;
    for (unsigned rest = number; rest >= Base; rest /= Base)
        ++length;
    length = qMax(length, count);
    for (int i = length; i-- > 0; number /= Base)
        place[i] = QLatin1Char("0123456789ABCDEF"[number % Base]);
    return place + length;
}

} // namespace ZR
