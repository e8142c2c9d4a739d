#ifndef ZROBJECT_H
#define ZROBJECT_H

#include <zrbaselib/zrobjectiface.h>

#include <QtCore/QtLogging>

/// The classes and enums of both libraries, but for the interfaces, which are global.
namespace ZR {

/// The second base of the model classes, behind QObject: name, description, logger and last failure.
///
/// Takes no lock; an object is to be used from one thread at a time unless its class says otherwise.
class ZRBASELIB_EXPORT ZRObject : public ZRObjectIface
{
public:
    /// Without a logger and a description.
    explicit ZRObject(const QString &name);
    ~ZRObject() override;

    void setLogger(ZRLoggerIface *logger) override;
    ZRLoggerIface *logger() override;
    bool isThereError() override;
    const QString &lastErrorStr() override;
    const QString &setName(const QString &name) override;
    const QString &name() override;
    const QString &descHint() override;
    void setDescHint(const QString &hint) override;
    const QString &desc() override;
    void setDesc(const QString &title, const QString &text) override;
    void setDesc(const QString &text) override;

protected:
    /// Forgets the last failure.
    virtual void _resetLastError();

    /// Reports a failure: message becomes the last error, and goes to the logger, when one is set, as
    /// QtCriticalMsg. file, line and function name the place that reports. May run with a lock of the object
    /// held, so it does not call back into the object.
    virtual void _setLastError(const QString &message, const QString &file, int line,
                               const QString &function);

    /// Hands a message to the logger. Returns what the logger returns, false when there is none.
    virtual bool _writeLog(const QString &message, QtMsgType type, const QString &file, int line,
                           const QString &function);

    ZRLoggerIface *_logger = nullptr; ///< not owned
    QString _lastError;               ///< empty when there was no failure

private:
    Q_DISABLE_COPY_MOVE(ZRObject)

    QString _name;
    QString _descHint;
    QString _desc;
};

} // namespace ZR

#endif
