#ifndef ZRCONFIGIFACE_H
#define ZRCONFIGIFACE_H

#include <zrbaselib/zrbaselib_export.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

/// Reads named settings for the objects that are built from a configuration.
///
/// A host implements stringValue(), stringListValue() and intValue(); the other operations have defaults that
/// call stringValue(). A key is a section and a field with a point between, as in "Computer.Name". An object
/// that is given a reader uses it only during that call, on the thread of the caller.
class ZRBASELIB_EXPORT ZRConfigIface
{
public:
    virtual ~ZRConfigIface();

    /// Whether the setting is there. By default: whether stringValue() gives the same text for two different
    /// default values.
    virtual bool contains(const QString &key);

    /// The setting as true or false. By default "true", "yes", "on" and "1" are true, and "false", "no",
    /// "off" and "0" are false, in upper or lower case. Anything else gives defaultValue.
    virtual bool boolValue(const QString &key, bool defaultValue);

    /// The setting, or defaultValue when it is absent.
    virtual QString stringValue(const QString &key, const QString &defaultValue) = 0;

    /// The setting as a list of strings, or defaultValue when it is absent.
    virtual QStringList stringListValue(const QString &key, const QStringList &defaultValue) = 0;

    /// The setting as a 64-bit whole number. By default a decimal number; anything else gives defaultValue.
    virtual qint64 longValue(const QString &key, qint64 defaultValue);

    /// The setting as a floating-point number. By default it has a decimal point and no thousands separators;
    /// anything else gives defaultValue.
    virtual double doubleValue(const QString &key, double defaultValue);

    /// The setting as a whole number, or defaultValue when it is absent or no number.
    virtual int intValue(const QString &key, int defaultValue) = 0;
};

#endif
