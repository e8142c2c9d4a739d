#include <zrbaselib/zrconfigiface.h>

ZRConfigIface::~ZRConfigIface() = default;

bool ZRConfigIface::contains(const QString &key)
{
    // Only an absent setting follows the default value.
    return stringValue(key, QStringLiteral("0")) == stringValue(key, QStringLiteral("1"));
}

bool ZRConfigIface::boolValue(const QString &key, bool defaultValue)
{
    static const QStringList trueWords{QStringLiteral("true"), QStringLiteral("yes"), QStringLiteral("on"),
                                       QStringLiteral("1")};
    static const QStringList falseWords{QStringLiteral("false"), QStringLiteral("no"), QStringLiteral("off"),
                                        QStringLiteral("0")};
    const QString word = stringValue(key, QString()).trimmed().toLower();
    if (trueWords.contains(word))
        return true;
    return falseWords.contains(word) ? false : defaultValue;
}

qint64 ZRConfigIface::longValue(const QString &key, qint64 defaultValue)
{
    bool isNumber = false;
    const qint64 number = stringValue(key, QString()).toLongLong(&isNumber);
    return isNumber ? number : defaultValue;
}

double ZRConfigIface::doubleValue(const QString &key, double defaultValue)
{
    bool isNumber = false;
    const double number = stringValue(key, QString()).toDouble(&isNumber);
    return isNumber ? number : defaultValue;
}
