#ifndef ZRMAPCONFIG_H
#define ZRMAPCONFIG_H

#include <zr8bitkit/zr8bitkit_export.h>
#include <zrbaselib/zrconfigiface.h>

#include <initializer_list>
#include <memory>
#include <utility>

namespace ZR {

/// The settings of a machine as texts in a list of pairs.
///
///     ZR::ZRMapConfig config{{u"Computer.RAMs"_s, u"MAIN"_s}, {u"RAM_MAIN.Size"_s, u"0x10000"_s},
///                            {u"Computer.Processors"_s, u"CPU"_s}, {u"PROC_CPU.Type"_s, u"MOS6510"_s}};
///     computer.readFromConfig(QString(), &config);
///
/// The items of a list are separated by commas, and blanks around them do not count; an empty text is an
/// empty list. Whole numbers are written as 512, 0x200 or $200; what is no number counts as absent, and
/// badNumberText() tells of it. Keys are case-sensitive. What is not told here is as in ZRConfigIface. To be
/// used from one thread at a time.
class ZR8BITKIT_EXPORT ZRMapConfig : public ZRConfigIface
{
public:
    /// Of two settings with the same key the later one counts.
    ZRMapConfig(std::initializer_list<std::pair<QString, QString>> settings = {});
    ~ZRMapConfig() override;

    /// Adds or replaces a setting.
    void setValue(const QString &key, const QString &value);
    /// Removes a setting; one that is not there is no failure.
    void remove(const QString &key);

    QString stringValue(const QString &key, const QString &defaultValue) override;
    QStringList stringListValue(const QString &key, const QStringList &defaultValue) override;
    int intValue(const QString &key, int defaultValue) override;
    qint64 longValue(const QString &key, qint64 defaultValue) override;

    /// The keys of the settings that nobody has asked for yet, in alphabetical order. After a load they are
    /// mistyped, or for a part that the settings do not list.
    QStringList unreadKeys() const;

    /// A sentence on a setting that was asked for as a whole number and is none, or is too large for it:
    /// "RAM_MAIN.Size ('machine.ini', line 9) is '64K', but numbers are written as ...". Empty when there was
    /// none; of several it tells the first one by the alphabet.
    QString badNumberText() const;

    /// A setting as messages name it: its key, and its file and line if it comes from one, as in
    /// "RAM_MAIN.Size ('machine.ini', line 9)".
    QString nameOf(const QString &key) const;

protected:
    /// Adds or replaces a setting that comes from a place, as in "'machine.ini', line 9".
    void _setValue(const QString &key, const QString &value, const QString &place);
    /// Removes all settings.
    void _clear();

private:
    struct Private;

    std::unique_ptr<Private> _d;
};

} // namespace ZR

#endif
