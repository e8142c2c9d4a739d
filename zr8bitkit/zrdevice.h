#ifndef ZRDEVICE_H
#define ZRDEVICE_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>

class QIODevice;

namespace ZR {

/// Help with the devices that outputs go to. Keeps no state; a device is used on the caller's thread.
class ZR8BITKIT_EXPORT ZRDevice
{
public:
    /// Writes all bytes to a device that is open for writing, in as many steps as it needs: a full disk takes
    /// a part without an error, and only the next write names the cause. Returns false when the device fails,
    /// with the cause as its errorString().
    static bool writeAll(QIODevice &device, const QByteArray &bytes);
};

} // namespace ZR

#endif
