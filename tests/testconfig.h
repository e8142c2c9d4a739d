#pragma once

#include <zr8bitkit/zrmapconfig.h>

/// Settings made from lines of "key=value". The items of a list keep their blanks, for the reader to trim.
class TestConfig : public ZR::ZRMapConfig
{
public:
    explicit TestConfig(const QString &lines)
    {
        for (const QString &line : lines.split(u'\n'))
            setValue(line.section(u'=', 0, 0), line.section(u'=', 1));
    }

    QStringList stringListValue(const QString &key, const QStringList &defaultValue) override
    {
        return contains(key) ? stringValue(key, QString()).split(u',') : defaultValue;
    }
};
