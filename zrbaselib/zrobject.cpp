#include <zrbaselib/zrobject.h>

#include <zrbaselib/zrloggeriface.h>

namespace ZR {

ZRObject::ZRObject(const QString &name)
    : _name(name)
{
}

ZRObject::~ZRObject() = default;

void ZRObject::setLogger(ZRLoggerIface *logger)
{
    _logger = logger;
}

ZRLoggerIface *ZRObject::logger()
{
    return _logger;
}

bool ZRObject::isThereError()
{
    return !_lastError.isEmpty();
}

const QString &ZRObject::lastErrorStr()
{
    return _lastError;
}

const QString &ZRObject::setName(const QString &name)
{
    _name = name;
    return _name;
}

const QString &ZRObject::name()
{
    return _name;
}

const QString &ZRObject::descHint()
{
    return _descHint;
}

void ZRObject::setDescHint(const QString &hint)
{
    _descHint = hint;
}

const QString &ZRObject::desc()
{
    return _desc;
}

void ZRObject::setDesc(const QString &title, const QString &text)
{
    _descHint = title;
    _desc = text;
}

void ZRObject::setDesc(const QString &text)
{
    _desc = text;
}

void ZRObject::_resetLastError()
{
    _lastError.clear();
}

void ZRObject::_setLastError(const QString &message, const QString &file, int line, const QString &function)
{
    _lastError = message;
    _writeLog(message, QtCriticalMsg, file, line, function);
}

bool ZRObject::_writeLog(const QString &message, QtMsgType type, const QString &file, int line,
                         const QString &function)
{
    return _logger && _logger->write(message, type, file, line, function);
}

} // namespace ZR
