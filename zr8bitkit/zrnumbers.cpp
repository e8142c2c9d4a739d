#include <zr8bitkit/zrnumbers.h>

#include <limits>

namespace ZR {

std::optional<int> ZRNumbers::parse(const QString &text)
{
    using Limits = std::numeric_limits<int>;
    const std::optional<qint64> number = parseLong(text);
    if (!number || *number < Limits::min() || *number > Limits::max())
        return std::nullopt;
    return static_cast<int>(*number);
}

std::optional<qint64> ZRNumbers::parseLong(const QString &text)
{
    QStringView digits(text);
    const bool isNegative = digits.startsWith(u'-');
    if (isNegative)
        digits = digits.mid(1);
    int base = 10;
    if (digits.startsWith(u'$')) {
        digits = digits.mid(1);
        base = 16;
    } else if (digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        digits = digits.mid(2);
        base = 16;
    }
    // Digits and nothing else: toLongLong() would take blanks, a sign and a prefix of its own.
    if (digits.isEmpty() || !digits.front().isLetterOrNumber() || !digits.back().isLetterOrNumber() ||
        digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        return std::nullopt;
    bool isNumber = false;
    const qint64 size = digits.toLongLong(&isNumber, base);
    if (!isNumber)
        return std::nullopt;
    return isNegative ? -size : size;
}

QString ZRNumbers::hexDigits(int number, int digits)
{
    return QStringLiteral("%1").arg(static_cast<unsigned>(number), digits, 16, QLatin1Char('0')).toUpper();
}

QString ZRNumbers::addressText(int address)
{
    return QLatin1Char('$') + hexDigits(address, 4);
}

} // namespace ZR
