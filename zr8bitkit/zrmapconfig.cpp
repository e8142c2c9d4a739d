#include <zr8bitkit/zrmapconfig.h>

#include <zr8bitkit/zrnumbers.h>

namespace ZR {

ZRMapConfig::ZRMapConfig(std::initializer_list<std::pair<QString, QString>> settings)
{
    for (const auto &[key, value] : settings)
        setValue(key, value);
}

ZRMapConfig::~ZRMapConfig() = default;

void ZRMapConfig::setValue(const QString &key, const QString &value)
{
    _settings.insert(key, value);
}

void ZRMapConfig::remove(const QString &key)
{
    _settings.remove(key);
}

QString ZRMapConfig::stringValue(const QString &key, const QString &defaultValue)
{
    return _settings.value(key, defaultValue);
}

QStringList ZRMapConfig::stringListValue(const QString &key, const QStringList &defaultValue)
{
    if (!_settings.contains(key))
        return defaultValue;
    QStringList items;
    const QString text = _settings.value(key);
    if (!text.isEmpty())
        items = text.split(QLatin1Char(','));
    for (QString &item : items)
        item = item.trimmed();
    return items;
}

int ZRMapConfig::intValue(const QString &key, int defaultValue)
{
    return ZRNumbers::parse(_settings.value(key).trimmed()).value_or(defaultValue);
}

void ZRMapConfig::_clear()
{
    _settings.clear();
}

} // namespace ZR
