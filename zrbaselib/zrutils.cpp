#include <zrbaselib/zrutils.h>

#include <QtCore/QFile>

#include <new>

namespace ZR {

bool ZRUtils::readFile(const QString &path, QByteArray &data)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    try {
        data = file.readAll();
    } catch (const std::bad_alloc &) {
        return false;
    }
    return file.error() == QFileDevice::NoError;
}

} // namespace ZR
