#include <zr8bitkit/zrdevice.h>

#include <QtCore/QIODevice>

namespace ZR {

bool ZRDevice::writeAll(QIODevice &device, const QByteArray &bytes)
{
    for (qint64 done = 0; done < bytes.size();) {
        const qint64 count = device.write(bytes.constData() + done, bytes.size() - done);
        if (count <= 0)
            return false;
        done += count;
    }
    return true;
}

} // namespace ZR
