#include "numbers.h"

std::optional<int> parseNumber(const QString &text)
{
    QStringView digits(text);
    int base = 10;
    if (digits.startsWith(u'$')) {
        digits = digits.mid(1);
        base = 16;
    } else if (digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        digits = digits.mid(2);
        base = 16;
    }
    // Digits and nothing else: toInt() would take blanks, a sign and a prefix of its own.
    if (digits.isEmpty() || !digits.front().isLetterOrNumber() || !digits.back().isLetterOrNumber() ||
        digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        return std::nullopt;
    bool isNumber = false;
    const int number = digits.toInt(&isNumber, base);
    return isNumber ? std::optional<int>(number) : std::nullopt;
}

QString hexDigits(int number, int digits)
{
    return QStringLiteral("%1").arg(number, digits, 16, QLatin1Char('0')).toUpper();
}

QString addressText(int address)
{
    return QLatin1Char('$') + hexDigits(address, 4);
}
