#ifndef ZRINICONFIG_H
#define ZRINICONFIG_H

#include <zr8bitkit/zrmapconfig.h>
#include <zrbaselib/zrobject.h>

namespace ZR {

/// The settings of a machine in a file of INI form: "RAM_MAIN.Size" is the entry Size of the section
/// [RAM_MAIN].
///
///     ZR::ZRIniConfig config;
///     if (!config.load(u"machine.ini"_s))
///         qWarning("%s", qPrintable(config.lastErrorStr()));
///
/// A line is a section, [NAME]; a setting, KEY = VALUE; blank; or a comment, from a semicolon on. A # at its
/// beginning makes it a comment, too. A comment may also follow on the same line. Blanks around names, keys
/// and values do not count. In a value what stands between double quotes is taken as it is, blanks and
/// semicolons as well; two double quotes there mean one. A backslash means itself. %25 in the name of a
/// section means %. The file is UTF-8.
///
/// Lists and numbers are those of ZRMapConfig. A FilePath is relative to the folder of the settings file.
class ZR8BITKIT_EXPORT ZRIniConfig : public ZRMapConfig, public ZRObject
{
public:
    /// Without settings.
    explicit ZRIniConfig(const QString &name = QString());
    ~ZRIniConfig() override;

    /// Replaces the settings by those of a file, as it is now. Returns false, with a last error and no
    /// settings, when the file cannot be read, is a device or a pipe, is larger than 1 MiB, has a setting
    /// twice, or a line that is none of the above; the error tells the line.
    bool load(const QString &filePath);
};

} // namespace ZR

#endif
