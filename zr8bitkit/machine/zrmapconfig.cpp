#include <zr8bitkit/zrmapconfig.h>

#include <zr8bitkit/zrnumbers.h>

#include <QtCore/QMap>

namespace ZR {

struct ZRMapConfig::Private
{
    struct Setting
    {
        QString value;
        QString place; ///< where it comes from, for messages
        bool isRead = false;
        bool isBadNumber = false;
    };

    /// A setting that is asked for, or null.
    Setting *read(const QString &key)
    {
        const auto place = settings.find(key);
        if (place == settings.end())
            return nullptr;
        place->isRead = true;
        return &*place;
    }

    /// The setting as a number, from what reads one; nothing when there is none.
    template <typename Parse>
    auto number(const QString &key, Parse parse) -> decltype(parse(key))
    {
        Setting *const setting = read(key);
        if (!setting)
            return std::nullopt;
        const auto number = parse(setting->value.trimmed());
        setting->isBadNumber = !number;
        return number;
    }

    QMap<QString, Setting> settings;
};

ZRMapConfig::ZRMapConfig(std::initializer_list<std::pair<QString, QString>> settings)
    : _d(std::make_unique<Private>())
{
    for (const auto &[key, value] : settings)
        setValue(key, value);
}

ZRMapConfig::~ZRMapConfig() = default;

void ZRMapConfig::setValue(const QString &key, const QString &value)
{
    _setValue(key, value, QString());
}

void ZRMapConfig::remove(const QString &key)
{
    _d->settings.remove(key);
}

QString ZRMapConfig::stringValue(const QString &key, const QString &defaultValue)
{
    const Private::Setting *const setting = _d->read(key);
    return setting ? setting->value : defaultValue;
}

QStringList ZRMapConfig::stringListValue(const QString &key, const QStringList &defaultValue)
{
    const Private::Setting *const setting = _d->read(key);
    if (!setting)
        return defaultValue;
    QStringList items;
    if (!setting->value.isEmpty())
        items = setting->value.split(QLatin1Char(','));
    for (QString &item : items)
        item = item.trimmed();
    return items;
}

int ZRMapConfig::intValue(const QString &key, int defaultValue)
{
    return _d->number(key, ZRNumbers::parse).value_or(defaultValue);
}

qint64 ZRMapConfig::longValue(const QString &key, qint64 defaultValue)
{
    return _d->number(key, ZRNumbers::parseLong).value_or(defaultValue);
}

QStringList ZRMapConfig::unreadKeys() const
{
    QStringList keys;
    for (const auto &[key, setting] : std::as_const(_d->settings).asKeyValueRange()) {
        if (!setting.isRead)
            keys += key;
    }
    return keys;
}

QString ZRMapConfig::badNumberText() const
{
    for (const auto &[key, setting] : std::as_const(_d->settings).asKeyValueRange()) {
        if (!setting.isBadNumber)
            continue;
        const bool isTooLarge = ZRNumbers::parseLong(setting.value.trimmed()).has_value();
        return QStringLiteral("%1 is '%2', but %3!")
            .arg(nameOf(key), setting.value,
                 isTooLarge ? QStringLiteral("numbers reach from -$80000000 to $7FFFFFFF")
                            : QStringLiteral("numbers are written as 512, 0x200 or $200"));
    }
    return QString();
}

QString ZRMapConfig::nameOf(const QString &key) const
{
    const QString place = _d->settings.value(key).place;
    return place.isEmpty() ? key : QStringLiteral("%1 (%2)").arg(key, place);
}

void ZRMapConfig::_setValue(const QString &key, const QString &value, const QString &place)
{
    Private::Setting setting;
    setting.value = value;
    setting.place = place;
    _d->settings.insert(key, setting);
}

void ZRMapConfig::_clear()
{
    _d->settings.clear();
}

} // namespace ZR
