#include <zrbaselib/zrloggeriface.h>

ZRLoggerIface::~ZRLoggerIface() = default;

bool ZRLoggerIface::write(const QString &message, QtMsgType type, const QString &file, int line,
                          const QString &function)
{
    Q_UNUSED(message)
    Q_UNUSED(type)
    Q_UNUSED(file)
    Q_UNUSED(line)
    Q_UNUSED(function)
    return false;
}
