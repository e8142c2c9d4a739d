#pragma once

#include <zrbaselib/zrconfigiface.h>

#include <QtCore/QMap>

/// Settings in a map; lists are separated by commas.
class TestConfig : public ZRConfigIface
{
public:
    TestConfig(std::initializer_list<std::pair<QString, QString>> settings)
        : _settings(settings)
    {
    }

    QString &operator[](const QString &key) { return _settings[key]; }
    void remove(const QString &key) { _settings.remove(key); }

    QString stringValue(const QString &key, const QString &defaultValue) override
    {
        return _settings.value(key, defaultValue);
    }

    QStringList stringListValue(const QString &key, const QStringList &defaultValue) override
    {
        return _settings.contains(key) ? _settings.value(key).split(u',') : defaultValue;
    }

    int intValue(const QString &key, int defaultValue) override
    {
        return _settings.contains(key) ? _settings.value(key).toInt() : defaultValue;
    }

private:
    QMap<QString, QString> _settings;
};
