#pragma once

// Numbers in texts, without the cost of a string a number.

#include <QtCore/QStringView>

namespace ZR {

/// The number that QString::toInt() reads from the text, accepted and refused just as there.
inline int toInt(QStringView text, int base, bool &isNumber)
{
    // Up to seven digits and nothing else, which cannot overflow, are worth a short way.
    if (text.isEmpty() || text.size() > 7)
        return text.toInt(&isNumber, base);
    int number = 0;
    for (const QChar character : text) {
        int digit = character.unicode() - u'0';
        if (digit < 0 || digit > 9) {
            const int letter = (character.unicode() | 0x20) - u'a'; // capitals become small letters
            digit = letter >= 0 ? letter + 10 : base;
        }
        if (digit >= base)
            return text.toInt(&isNumber, base);
        number = number * base + digit;
    }
    isNumber = true;
    return number;
}

/// Writes the digits of a number, capitals, with zeros in front up to the given count. Returns the place
/// behind them.
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
