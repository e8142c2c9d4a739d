#ifndef ZROBJECTIFACE_H
#define ZROBJECTIFACE_H

#include <zrbaselib/zrbaselib_export.h>

#include <QtCore/QString>

class ZRLoggerIface;

/// What an object tells of itself: name, description, logger and last failure. See ZR::ZRObject.
class ZRBASELIB_EXPORT ZRObjectIface
{
public:
    virtual ~ZRObjectIface();

    /// Sets the receiver of the object's failure reports, which stays the caller's; null for none.
    virtual void setLogger(ZRLoggerIface *logger) = 0;
    /// The receiver that was set, null at first.
    virtual ZRLoggerIface *logger() = 0;

    /// Whether any operation of the object has ever failed. A later success does not take it back, so it is
    /// the result of an operation that tells whether that operation failed.
    virtual bool isThereError() = 0;
    /// The text of the most recent failure, empty when there was none.
    virtual const QString &lastErrorStr() = 0;

    /// Names the object and gives the name back.
    virtual const QString &setName(const QString &name) = 0;
    /// The name of this object, not of its class; may be empty.
    virtual const QString &name() = 0;

    /// The short title of the object. May hold rich text.
    virtual const QString &descHint() = 0;
    /// Sets the short title alone.
    virtual void setDescHint(const QString &hint) = 0;
    /// The long text that explains the object. May hold rich text.
    virtual const QString &desc() = 0;
    /// Sets the short title and the long text.
    virtual void setDesc(const QString &title, const QString &text) = 0;
    /// Sets the long text alone.
    virtual void setDesc(const QString &text) = 0;
};

#endif
