#pragma once

#include <zrbaselib/zrconfigiface.h>

#include <QtCore/QMap>

/// Settings in a map, made from lines of "key=value"; lists are separated by commas.
class TestConfig : public ZRConfigIface
{
public:
    explicit TestConfig(const QString &lines)
    {
        for (const QString &line : lines.split(u'\n'))
            values[line.section(u'=', 0, 0)] = line.section(u'=', 1);
    }

    QString stringValue(const QString &key, const QString &defaultValue) override
    {
        return values.value(key, defaultValue);
    }

    QStringList stringListValue(const QString &key, const QStringList &defaultValue) override
    {
        return values.contains(key) ? values.value(key).split(u',') : defaultValue;
    }

    int intValue(const QString &key, int defaultValue) override
    {
        return values.contains(key) ? values.value(key).toInt() : defaultValue;
    }

    QMap<QString, QString> values;
};
