#include <zr8bitlib/zr8bitregister.h>

#include "zr8bitfailure_p.h"

#include <zr8bitlib/zr8bitram.h>

#include <new>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitlib/zr8bitregister";

bool isBitNumber(char bit)
{
    return static_cast<unsigned char>(bit) <= 7;
}

} // namespace

ZR8BitRegister::ZR8BitRegister(const QString &name, QObject *parent)
    : QObject(parent)
    , ZRObject(name)
{
}

ZR8BitRegister::~ZR8BitRegister()
{
    _reset();
}

const QString ZR8BitRegister::className()
{
    return QStringLiteral("ZR8BitRegister");
}

bool ZR8BitRegister::init(const QString &id, const ZR8BitRegTypes &type, const int &address,
                          ZR8BitRAM *memory)
{
    _reset();
    _id = id;
    _regType = type;
    _address = memory ? address : 0;
    _setFeatures();
    if (memory) {
        _memory = memory;
        return true;
    }

    _memory = new (std::nothrow) ZR8BitRAM(_id + QStringLiteral("RegisterMemory"), this);
    if (!_memory) {
        ZR_SET_LAST_ERROR(QStringLiteral("Couldn't allocate %1 register own memory instance!").arg(id));
        return false;
    }
    if (!_memory->setSize(_byteSize)) {
        ZR_SET_LAST_ERROR(QStringLiteral("Couldn't set %1 register size!").arg(id));
        delete _memory;
        _memory = nullptr;
        return false;
    }
    _ownMemory = true;
    return true;
}

QString ZR8BitRegister::id()
{
    return _id;
}

ZR8BitRegTypes ZR8BitRegister::regType()
{
    return _regType;
}

short ZR8BitRegister::value()
{
    if (!_memory)
        return 0;
    if (_regType == ZR8BitRegType8Bit)
        return static_cast<signed char>(_memory->byteValue(_address));
    return _memory->wordValue(_address);
}

void ZR8BitRegister::setValue(const short &value)
{
    if (!_memory)
        return;
    if (_regType == ZR8BitRegType8Bit)
        _memory->setByteValue(static_cast<char>(value), _address);
    else
        _memory->setWordValue(value, _address);
    Q_EMIT onValueChanged();
}

char ZR8BitRegister::hi()
{
    return _memory ? _memory->byteValue(_hiAddress) : '\0';
}

char ZR8BitRegister::lo()
{
    return _memory ? _memory->byteValue(_loAddress) : '\0';
}

void ZR8BitRegister::setHi(const char &value)
{
    _setByte(_hiAddress, value);
}

void ZR8BitRegister::setLo(const char &value)
{
    _setByte(_loAddress, value);
}

char ZR8BitRegister::hiBit(const char &bit)
{
    return _bit(_hiAddress, bit);
}

char ZR8BitRegister::loBit(const char &bit)
{
    return _bit(_loAddress, bit);
}

void ZR8BitRegister::setHiBit(const char &bit, const char &value)
{
    _setBit(_hiAddress, bit, value);
}

void ZR8BitRegister::setLoBit(const char &bit, const char &value)
{
    _setBit(_loAddress, bit, value);
}

void ZR8BitRegister::setLogger(ZRLoggerIface *logger)
{
    _logger = logger;
    if (_memory)
        _memory->setLogger(logger);
}

void ZR8BitRegister::_reset()
{
    _id.clear();
    _regType = ZR8BitRegType8Bit;
    _address = 0;
    _loAddress = 0;
    _hiAddress = 0;
    if (_ownMemory) {
        delete _memory;
        _memory = nullptr;
    }
    _ownMemory = false;
}

void ZR8BitRegister::_setFeatures()
{
    switch (_regType) {
    case ZR8BitRegType8Bit:
        _byteSize = 1;
        _loAddress = _address;
        _hiAddress = _address;
        break;
    case ZR8BitRegType16Bit:
        _byteSize = 2;
        _loAddress = _address;
        _hiAddress = static_cast<int>(static_cast<unsigned>(_address) + 1); // may wrap, and is refused then
        break;
    default:
        _byteSize = 0;
        _loAddress = 0;
        _hiAddress = 0;
        break;
    }
}

char ZR8BitRegister::_bit(int address, char bit)
{
    if (!_memory || !isBitNumber(bit))
        return 0;
    return static_cast<char>(_memory->byteValue(address) & (1 << bit));
}

void ZR8BitRegister::_setByte(int address, char value)
{
    if (!_memory)
        return;
    _memory->setByteValue(value, address);
    Q_EMIT onValueChanged();
}

void ZR8BitRegister::_setBit(int address, char bit, char value)
{
    if (!_memory || !isBitNumber(bit))
        return;
    const unsigned mask = 1U << bit;
    const unsigned byte = static_cast<unsigned char>(_memory->byteValue(address));
    _memory->setByteValue(static_cast<char>((byte & ~mask) | (value ? mask : 0U)), address);
}

} // namespace ZR
