#pragma once

#include <zr8bitkit/zr8bitkit_export.h>
#include <zrbaselib/zrconfigiface.h>

#include <QtCore/QMap>

#include <initializer_list>
#include <utility>

namespace ZR {

/// The settings of a machine as texts in a list of pairs.
///
///     ZR::ZRMapConfig config{{u"Computer.RAMs"_s, u"MAIN"_s}, {u"RAM_MAIN.Size"_s, u"0x10000"_s},
///                            {u"Computer.Processors"_s, u"CPU"_s}, {u"PROC_CPU.Type"_s, u"MOS6510"_s}};
///     computer.readFromConfig(QString(), &config);
///
/// The items of a list are separated by commas, and blanks around them do not count; an empty text is an
/// empty list. Whole numbers are written as 512, 0x200 or $200; what is no number counts as absent. Keys are
/// case-sensitive. What is not told here is as in ZRConfigIface. To be used from one thread at a time.
class ZR8BITKIT_EXPORT ZRMapConfig : public ZRConfigIface
{
public:
    /// Of two settings with the same key the latter counts.
    ZRMapConfig(std::initializer_list<std::pair<QString, QString>> settings = {});
    ~ZRMapConfig() override;

    /// Adds or replaces a setting.
    void setValue(const QString &key, const QString &value);
    /// Removes a setting; one that is not there is no failure.
    void remove(const QString &key);

    QString stringValue(const QString &key, const QString &defaultValue) override;
    QStringList stringListValue(const QString &key, const QStringList &defaultValue) override;
    int intValue(const QString &key, int defaultValue) override;

protected:
    /// Removes all settings.
    void _clear();

private:
    QMap<QString, QString> _settings;
};

} // namespace ZR
