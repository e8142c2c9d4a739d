#include "iniconfig.h"

#include "failure.h"
#include "numbers.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace {

/// The name of a setting as QSettings has it. A block's name may hold a point, a field's does not.
QString entryName(const QString &key)
{
    const qsizetype point = key.lastIndexOf(QLatin1Char('.'));
    return key.left(point) + QLatin1Char('/') + key.mid(point + 1);
}

/// The path of a file that QSettings can take. It would take what cannot be read, or not twice, for an empty
/// file, and crash where a huge one is more than the memory holds.
QString checkedPath(const QString &path)
{
    constexpr qint64 LargestSize = 1 << 20;
    QFile file(path);
    qint64 size = -1;
    if (file.open(QIODevice::ReadOnly) && !file.isSequential())
        size = file.read(LargestSize + 1).size();
    if (file.error() != QFileDevice::NoError)
        throw Failure(QStringLiteral("Couldn't read settings file '%1': %2").arg(path, file.errorString()));
    if (size < 0)
        throw Failure(QStringLiteral("Settings file '%1' is a device or a pipe, not a file!").arg(path));
    if (size > LargestSize)
        throw Failure(QStringLiteral("Settings file '%1' is larger than 1 MiB!").arg(path));
    return path;
}

} // namespace

IniConfig::IniConfig(const QString &filePath)
    : _settings(checkedPath(filePath), QSettings::IniFormat)
    , _folder(QFileInfo(filePath).absoluteDir())
{
    if (_settings.status() != QSettings::NoError)
        throw Failure(QStringLiteral("Settings file '%1' is not of INI form!").arg(filePath));
}

QString IniConfig::stringValue(const QString &key, const QString &defaultValue)
{
    const QVariant value = _settings.value(entryName(key));
    if (!value.isValid())
        return defaultValue;
    // QSettings has already split a text with a comma that is not quoted.
    QString text = value.toStringList().join(QStringLiteral(", "));
    if (text.isEmpty() || !key.endsWith(QLatin1String(".FilePath")))
        return text;
    return _folder.absoluteFilePath(text);
}

QStringList IniConfig::stringListValue(const QString &key, const QStringList &defaultValue)
{
    const QVariant value = _settings.value(entryName(key));
    if (!value.isValid())
        return defaultValue;
    const QStringList items = value.toStringList();
    return items == QStringList{QString()} ? QStringList() : items;
}

int IniConfig::intValue(const QString &key, int defaultValue)
{
    return parseNumber(stringValue(key, QString()).trimmed()).value_or(defaultValue);
}
