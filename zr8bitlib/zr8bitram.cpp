#include <zr8bitlib/zr8bitram.h>

#include "zr8bitfailure_p.h"

#include <QtCore/QMutexLocker>
#include <QtCore/QtEndian>

#include <algorithm>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitlib/zr8bitram";

} // namespace

ZR8BitRAM::ZR8BitRAM(const QString &name, QObject *parent)
    : ZR8BitROM(name, parent)
{
}

ZR8BitRAM::~ZR8BitRAM() = default;

const QString ZR8BitRAM::className()
{
    return QStringLiteral("ZR8BitRAM");
}

bool ZR8BitRAM::readFromConfig(const QString &prefix, ZRConfigIface *config)
{
    return ZR8BitROM::readFromConfig(prefix, config);
}

bool ZR8BitRAM::setSize(const int &size)
{
    return _setSize(size);
}

bool ZR8BitRAM::write(const QByteArray &data, const int &pos)
{
    return write(data.constData(), static_cast<int>(data.size()), pos);
}

bool ZR8BitRAM::write(const char *data, const int &len, const int &pos)
{
    const QMutexLocker locker(&_mutex); // over both reports: the second one quotes the first
    if (!_writeData(pos, data, len)) {
        ZR_SET_LAST_ERROR(QStringLiteral("Couldn't load data! %1").arg(_lastError));
        return false;
    }
    return true;
}

void ZR8BitRAM::setValue(const QByteArray &data, const int &pos)
{
    setValue(data.constData(), static_cast<int>(data.size()), pos);
}

void ZR8BitRAM::setValue(const char *data, const int &len, const int &pos)
{
    const QMutexLocker locker(&_mutex);
    _writeData(pos, data, len);
}

void ZR8BitRAM::setByteValue(const char &value, const int &pos)
{
    const QMutexLocker locker(&_mutex);
    _writeData(pos, &value, 1);
}

void ZR8BitRAM::setWordValue(const short &value, const int &pos)
{
    char bytes[2];
    qToLittleEndian<qint16>(value, bytes);
    const QMutexLocker locker(&_mutex);
    _writeData(pos, bytes, 2);
}

bool ZR8BitRAM::_writeData(const int &pos, const char *data, const int &len)
{
    const int contentSize = static_cast<int>(_content.size());
    if (pos < 0 || pos >= contentSize) {
        _reportInvalidAddress(pos, sourceFile, __LINE__, Q_FUNC_INFO);
        return false;
    }
    if (len < 0 || (!data && len > 0)) {
        ZR_SET_LAST_ERROR(QStringLiteral("Invalid data to write! Length: %1").arg(len));
        return false;
    }
    // Two calls, since the compiler turns the one with the whole length into a plain store for bytes and
    // words.
    char *target = _content.data() + pos;
    if (len <= contentSize - pos)
        std::copy_n(data, len, target);
    else
        std::copy_n(data, contentSize - pos, target);
    return true;
}

} // namespace ZR
