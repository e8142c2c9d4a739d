#pragma once

// How the classes of the kit read whole files. Private to the kit.

#include <zrbaselib/zrutils.h>

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QString>

namespace ZR {

/// Reads a file. On failure error says why.
inline bool readFile(const QString &filePath, QByteArray &bytes, QString &error)
{
    if (ZRUtils::readFile(filePath, bytes))
        return true;
    QFile file(filePath); // to ask what the other one does not tell
    const QString reason =
        file.open(QIODevice::ReadOnly) ? QStringLiteral("it is too large or damaged!") : file.errorString();
    error = QStringLiteral("Couldn't read file '%1': %2").arg(filePath, reason);
    return false;
}

} // namespace ZR
