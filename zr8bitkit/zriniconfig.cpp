#include <zr8bitkit/zriniconfig.h>

#include "zrfailure_p.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSettings>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitkit/zriniconfig";

/// Why QSettings must not get a file; empty when it may. QSettings takes a file that it cannot read, or not
/// twice, for an empty one, and ends the program where a huge file is more than the memory holds.
QString objection(const QString &filePath)
{
    constexpr qint64 LargestSize = 1 << 20;
    QFile file(filePath);
    qint64 size = -1;
    if (file.open(QIODevice::ReadOnly) && !file.isSequential())
        size = file.read(LargestSize + 1).size();
    if (file.error() != QFileDevice::NoError)
        return QStringLiteral("Couldn't read settings file '%1': %2").arg(filePath, file.errorString());
    if (size < 0)
        return QStringLiteral("Settings file '%1' is a device or a pipe, not a file!").arg(filePath);
    if (size > LargestSize)
        return QStringLiteral("Settings file '%1' is larger than 1 MiB!").arg(filePath);
    return QString();
}

/// The key of a setting that QSettings has under this name. A section's name may hold a slash, a field's does
/// not.
QString keyOf(const QString &entryName)
{
    QString key = entryName;
    const qsizetype slash = key.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? key : key.replace(slash, 1, QLatin1Char('.'));
}

} // namespace

ZRIniConfig::ZRIniConfig(const QString &name)
    : ZRObject(name)
{
}

ZRIniConfig::~ZRIniConfig() = default;

bool ZRIniConfig::load(const QString &filePath)
{
    _clear();
    const QString text = objection(filePath);
    if (!text.isEmpty())
        return ZR_FAIL(text);
    const QSettings settings(filePath, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError)
        return ZR_FAIL(QStringLiteral("Settings file '%1' is not of INI form!").arg(filePath));

    const QDir folder = QFileInfo(filePath).absoluteDir();
    const QStringList names = settings.allKeys();
    for (const QString &name : names) {
        const QString key = keyOf(name);
        // QSettings has already split a text with a comma that is not quoted.
        QString value = settings.value(name).toStringList().join(QStringLiteral(", "));
        if (!value.isEmpty() && key.endsWith(QLatin1String(".FilePath")))
            value = folder.absoluteFilePath(value);
        setValue(key, value);
    }
    return true;
}

} // namespace ZR
