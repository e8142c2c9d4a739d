#include <zr8bitlib/zr8bitrom.h>

#include "zr8bitfailure_p.h"

#include <zrbaselib/zrconfigiface.h>
#include <zrbaselib/zrutils.h>

#include <QtCore/QFileInfo>
#include <QtCore/QMutexLocker>
#include <QtCore/QtEndian>

#include <cerrno>
#include <cstring>
#include <new>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitlib/zr8bitrom";

/// Bytes of undefined content; none when the size is negative or memory runs out.
QByteArray allocate(int size)
{
    try {
        return QByteArray(size, Qt::Uninitialized);
    } catch (const std::bad_alloc &) {
        return QByteArray();
    }
}

/// Copies count bytes to a destination of room bytes. Returns 0, or ERANGE with nothing copied when they do
/// not fit.
int copyBounded(char *destination, qsizetype room, const char *source, qsizetype count)
{
    if (count < 0 || count > room)
        return ERANGE;
    std::memcpy(destination, source, static_cast<size_t>(count));
    return 0;
}

QString copyErrorText(int error)
{
    return QStringLiteral("Couldn't copy memory contain! Err: %1").arg(error);
}

} // namespace

ZR8BitROM::ZR8BitROM(const QString &name, QObject *parent)
    : QObject(parent)
    , ZRObject(name)
{
}

ZR8BitROM::ZR8BitROM(const QByteArray &content, const QString &name, QObject *parent)
    : ZR8BitROM(name, parent)
{
    setContent(content);
}

ZR8BitROM::ZR8BitROM(const QString &filePath, const QString &name, QObject *parent)
    : ZR8BitROM(name, parent)
{
    _size = static_cast<int>(QFileInfo(filePath).size());
    if (!readContentFromFile(filePath))
        _size = 0;
}

ZR8BitROM::~ZR8BitROM() = default;

const QString ZR8BitROM::className()
{
    return QStringLiteral("ZR8BitROM");
}

bool ZR8BitROM::setContent(const QByteArray &content)
{
    const QMutexLocker locker(&_mutex);
    _content = content;
    _size = static_cast<int>(_content.size());
    return _size == content.size();
}

bool ZR8BitROM::readContentFromFile(const QString &filePath)
{
    const QMutexLocker locker(&_mutex);
    QByteArray content;
    if (!ZRUtils::readFile(filePath, content)) {
        ZR_SET_LAST_ERROR(QStringLiteral("Couldn't read content from file: '%1'!").arg(filePath));
        return false;
    }
    if (content.size() != _size) {
        ZR_SET_LAST_ERROR(QStringLiteral("ROM file: '%1' size: %2 bytes is not equal the ROM size: %3 bytes!")
                              .arg(filePath, QString::number(content.size()), QString::number(_size)));
        return false;
    }
    _content = content;
    return true;
}

bool ZR8BitROM::readFromConfig(const QString &prefix, ZRConfigIface *config)
{
    if (!config) {
        ZR_SET_LAST_ERROR(noConfigText());
        return false;
    }
    _size = config->intValue(QStringLiteral("%1.Size").arg(prefix), -1);
    if (_size < 0) {
        ZR_SET_LAST_ERROR(QStringLiteral("%1.Size field does not defined!").arg(prefix));
        return false;
    }
    if (!_setSize(_size))
        return false;
    const QString filePath = config->stringValue(QStringLiteral("%1.FilePath").arg(prefix), QString());
    return filePath.isEmpty() || readContentFromFile(filePath);
}

int ZR8BitROM::size()
{
    return _size;
}

char ZR8BitROM::byteValue(const int &pos)
{
    const QMutexLocker locker(&_mutex);
    if (pos < 0 || pos >= _content.size()) {
        _reportInvalidAddress(pos, sourceFile, __LINE__, Q_FUNC_INFO);
        return 0;
    }
    return _content.at(pos);
}

short ZR8BitROM::wordValue(const int &pos)
{
    const QMutexLocker locker(&_mutex);
    const int contentSize = static_cast<int>(_content.size());
    if (pos < 0 || pos >= contentSize) {
        _reportInvalidAddress(pos, sourceFile, __LINE__, Q_FUNC_INFO);
        return 0;
    }
    const char *source = _content.constData() + pos;
    char bytes[2] = {0, 0};
    // Two calls, since the compiler turns each of a constant length into plain loads.
    const int error = pos == contentSize - 1 ? copyBounded(bytes, sizeof bytes, source, 1)
                                             : copyBounded(bytes, sizeof bytes, source, 2);
    if (error)
        ZR_SET_LAST_ERROR(copyErrorText(error));
    return qFromLittleEndian<qint16>(bytes);
}

QByteArray ZR8BitROM::value(const int &pos, const int &len)
{
    const QMutexLocker locker(&_mutex);
    const int contentSize = static_cast<int>(_content.size());
    if (pos < 0 || pos >= contentSize) {
        _reportInvalidAddress(pos, sourceFile, __LINE__, Q_FUNC_INFO);
        return QByteArray();
    }
    const int count = qMin(len, contentSize - pos);
    QByteArray result = allocate(count);
    if (result.size() != count) {
        ZR_SET_LAST_ERROR(QStringLiteral("Couldn't resize memory contain variable to: %1").arg(count));
        return QByteArray();
    }
    if (const int error = copyBounded(result.data(), result.size(), _content.constData() + pos, count))
        ZR_SET_LAST_ERROR(copyErrorText(error));
    return result;
}

bool ZR8BitROM::_setSize(const int &size)
{
    const QMutexLocker locker(&_mutex);
    _content = allocate(size);
    if (_content.size() != size) {
        ZR_SET_LAST_ERROR(QStringLiteral("Couldn't set mermory size to: %1!").arg(size));
        _size = 0;
        return false;
    }
    _size = size;
    _content.fill(0);
    return true;
}

void ZR8BitROM::_reportInvalidAddress(int pos, const char *file, int line, const char *function)
{
    const int lastPos = static_cast<int>(_content.size()) - 1;
    _setLastError(QStringLiteral("Invalid memory address: 0x%1! Availabel: 0x00000000 - 0x%2")
                      .arg(hexText(pos, AddressDigits), hexText(lastPos, AddressDigits)),
                  QString::fromLatin1(file), line, QString::fromLocal8Bit(function));
}

} // namespace ZR
