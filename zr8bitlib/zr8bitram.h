#ifndef ZR8BITRAM_H
#define ZR8BITRAM_H

#include <zr8bitlib/zr8bitrom.h>

namespace ZR {

/// A memory block that the machine can read and write.
///
/// Writes go to the bytes that the read operations of ZR8BitROM give, under the same lock. A write that runs
/// past the end of the block is cut there and counts as a success. A write at a bad position, of a negative
/// length, or of null data with a length above 0 writes nothing, and the last error tells of it.
class ZR8BITLIB_EXPORT ZR8BitRAM : public ZR8BitROM
{
    Q_OBJECT

public:
    /// An empty block.
    explicit ZR8BitRAM(const QString &name = QString(), QObject *parent = nullptr);
    ~ZR8BitRAM() override;

    /// "ZR8BitRAM".
    static const QString className();

    /// As ZR8BitROM::readFromConfig().
    bool readFromConfig(const QString &prefix, ZRConfigIface *config);

    /// Gives the block a size in bytes, 0 or more, and sets all bytes to 0. On failure the block is empty.
    bool setSize(const int &size);

    /// Writes data at pos and returns whether it could.
    bool write(const QByteArray &data, const int &pos);
    /// Writes len bytes of data at pos and returns whether it could.
    bool write(const char *data, const int &len, const int &pos);

    /// Writes data at pos; only the last error tells of a failure.
    void setValue(const QByteArray &data, const int &pos);
    /// Writes len bytes of data at pos; only the last error tells of a failure.
    void setValue(const char *data, const int &len, const int &pos);
    /// Writes one byte at pos; only the last error tells of a failure.
    void setByteValue(const char &value, const int &pos);
    /// Writes one word at pos, low byte first; only the last error tells of a failure.
    void setWordValue(const short &value, const int &pos);

private:
    /// To be called with the lock held, which its callers take: it is not recursive.
    bool _writeData(const int &pos, const char *data, const int &len);
};

} // namespace ZR

#endif
