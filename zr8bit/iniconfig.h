#pragma once

#include <zrbaselib/zrconfigiface.h>

#include <QtCore/QDir>
#include <QtCore/QSettings>

/// The settings of a machine in a file of INI form: "RAM_MAIN.Size" is the entry Size of the section
/// [RAM_MAIN].
///
/// Lists are separated by commas; an empty entry is an empty list. A text with a comma is to be quoted.
/// Numbers are written as 512, 0x200 or $200. A FilePath is relative to the folder of the settings file.
class IniConfig : public ZRConfigIface
{
public:
    /// Throws Failure when the file cannot be read, is not of INI form or is larger than 1 MiB.
    explicit IniConfig(const QString &filePath);

    QString stringValue(const QString &key, const QString &defaultValue) override;
    QStringList stringListValue(const QString &key, const QStringList &defaultValue) override;
    int intValue(const QString &key, int defaultValue) override;

private:
    QSettings _settings;
    QDir _folder;
};
