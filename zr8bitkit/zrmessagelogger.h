#ifndef ZRMESSAGELOGGER_H
#define ZRMESSAGELOGGER_H

#include <zr8bitkit/zr8bitkit_export.h>
#include <zrbaselib/zrloggeriface.h>

namespace ZR {

/// A logger that hands every message to Qt's message log, with its source file, line and function.
///
/// Set one on the objects whose failures are to be seen; it must outlive its use there. Keeps no state: one
/// logger may serve any number of objects and threads.
class ZR8BITKIT_EXPORT ZRMessageLogger : public ZRLoggerIface
{
public:
    /// Logs the message by its severity; a fatal one as critical, since a logger does not end the program.
    /// Always returns true.
    bool write(const QString &message, QtMsgType type, const QString &file, int line,
               const QString &function) override;
};

} // namespace ZR

#endif
