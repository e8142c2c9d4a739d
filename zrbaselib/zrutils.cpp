#include <zrbaselib/zrutils.h>

#include <QtCore/QFile>

namespace ZR {

bool ZRUtils::readFile(const QString &path, QByteArray &data)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    data = file.readAll();
    return file.error() == QFileDevice::NoError;
}

} // namespace ZR
