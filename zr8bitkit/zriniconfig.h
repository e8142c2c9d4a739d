#pragma once

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
/// Lists and numbers are those of ZRMapConfig. A FilePath is relative to the folder of the settings file and
/// has slashes, since a backslash begins an escape. A text with a comma or a semicolon is to be put in double
/// quotes; a % in the name of a section is written as %25.
class ZR8BITKIT_EXPORT ZRIniConfig : public ZRMapConfig, public ZRObject
{
public:
    /// Without settings.
    explicit ZRIniConfig(const QString &name = QString());
    ~ZRIniConfig() override;

    /// Replaces the settings by those of a file. Returns false, with a last error and no settings, when the
    /// file cannot be read, is a device or a pipe, is larger than 1 MiB or is not of INI form.
    bool load(const QString &filePath);
};

} // namespace ZR
