#ifndef ZR8BITREGISTER_H
#define ZR8BITREGISTER_H

#include <zr8bitlib/zr8bitlib_export.h>
#include <zrbaselib/zrobject.h>

#include <QtCore/QObject>
#include <QtCore/QString>

namespace ZR {

class ZR8BitRAM;

/// The kinds of registers.
enum ZR8BitRegTypes : int
{
    ZR8BitRegType8Bit = 0,
    ZR8BitRegType16Bit = 1,
};

/// A processor register of 8 or 16 bits: a view on one or two bytes of a memory block, low byte first.
///
/// A register is of no use before init(): until then, and after an init() that failed, reads give 0 and
/// writes are ignored. The high and the low byte of an 8-bit register are the same byte.
///
/// A position that the block refuses is reported by the block, on the block. Each access takes the block's
/// lock for itself; setHiBit() and setLoBit() are a read and a write under no common lock. To be used from
/// one thread at a time.
class ZR8BITLIB_EXPORT ZR8BitRegister : public QObject, public ZRObject
{
    Q_OBJECT

public:
    /// A register without storage.
    explicit ZR8BitRegister(const QString &name = QString(), QObject *parent = nullptr);
    ~ZR8BitRegister() override;

    /// "ZR8BitRegister".
    static const QString className();

    /// Gives the register its id, kind and storage, and may be called again.
    ///
    /// With a block, the register is a view on it at the position address, which is not tested; the block
    /// stays its owner's and must outlive the register's use of it. With null, the register makes a block of
    /// its own that reads 0, and address does not count. Returns false with a last error when it could not
    /// make one.
    virtual bool init(const QString &id, const ZR8BitRegTypes &type, const int &address, ZR8BitRAM *memory);

    /// The identifier that init() was given; not the object's name().
    QString id();
    /// The kind that init() was given, 8 bits at first.
    ZR8BitRegTypes regType();

    /// The value; that of an 8-bit register is widened with its sign.
    short value();
    /// Sets the value, of which an 8-bit register takes the low byte. Emits onValueChanged().
    void setValue(const short &value);

    /// The high byte.
    char hi();
    /// The low byte.
    char lo();
    /// Sets the high byte. Emits onValueChanged().
    void setHi(const char &value);
    /// Sets the low byte. Emits onValueChanged().
    void setLo(const char &value);

    /// A bit of the high byte, 0 to 7 from the least significant one: 0 when it is clear, otherwise its mask,
    /// so that bit 7 gives a negative char where char is signed. Any other bit number gives 0.
    char hiBit(const char &bit);
    /// The same of the low byte.
    char loBit(const char &bit);
    /// Sets a bit of the high byte, 0 to 7, when value is not 0, and clears it when it is. Any other bit
    /// number changes nothing. Emits nothing.
    void setHiBit(const char &bit, const char &value);
    /// The same of the low byte.
    void setLoBit(const char &bit, const char &value);

    /// Sets the logger of the register and of the block that it uses at this moment.
    void setLogger(ZRLoggerIface *logger) override;

Q_SIGNALS:
    /// The register has been written by setValue(), setHi() or setLo(), with a new value or the same one.
    void onValueChanged();

private:
    void _reset();
    void _setFeatures();
    char _bit(int address, char bit);
    void _setByte(int address, char value);
    void _setBit(int address, char bit, char value);

    QString _id;
    ZR8BitRegTypes _regType = ZR8BitRegType8Bit;
    bool _ownMemory = false;
    int _address = 0;
    int _loAddress = 0;
    int _hiAddress = 0;
    ZR8BitRAM *_memory = nullptr;
    int _byteSize = 0;
};

} // namespace ZR

#endif
