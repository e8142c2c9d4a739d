#ifndef ZRLOGGERIFACE_H
#define ZRLOGGERIFACE_H

#include <zrbaselib/zrbaselib_export.h>

#include <QtCore/QString>
#include <QtCore/QtLogging>

/// Receives the failure reports of the objects that it is set on.
///
/// A host overrides write() and sets the logger with ZR::ZRObject::setLogger(). The objects borrow it: it
/// must live for as long as it is set. It may be called with a lock of the reporting object held, on whatever
/// thread that object is used from, so an implementation must not call back into the object.
class ZRBASELIB_EXPORT ZRLoggerIface
{
public:
    virtual ~ZRLoggerIface();

    /// Takes one message with its severity and the place that it comes from: the source file without ending,
    /// the line in it and the full signature of the function. Returns whether the message was taken; by
    /// default it never is.
    virtual bool write(const QString &message, QtMsgType type, const QString &file, int line,
                       const QString &function);
};

#endif
