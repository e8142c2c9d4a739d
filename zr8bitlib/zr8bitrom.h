#ifndef ZR8BITROM_H
#define ZR8BITROM_H

#include <zr8bitlib/zr8bitlib_export.h>
#include <zrbaselib/zrobject.h>

#include <QtCore/QByteArray>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QString>

class ZRConfigIface;

namespace ZR {

/// A memory block that the machine can only read: bytes addressed from 0.
///
/// Positions are offsets into the block. Words are 16 bits, low byte first. A block has any size from 0 to
/// the range of int and knows nothing of a machine's address space.
///
/// A read at a bad position gives 0, or an empty array, and the last error tells of it. Every operation that
/// touches the content takes the block's lock for its own length, so that a block may be shared by threads;
/// size() and the failure texts take none. readFromConfig() locks step by step.
class ZR8BITLIB_EXPORT ZR8BitROM : public QObject, public ZRObject
{
    Q_OBJECT

public:
    /// An empty block.
    explicit ZR8BitROM(const QString &name = QString(), QObject *parent = nullptr);
    /// A block of the given bytes.
    ZR8BitROM(const QByteArray &content, const QString &name, QObject *parent);
    /// A block of a file's bytes, as long as the file. When the file cannot be read, isThereError() is true
    /// and the block is empty. A file that does not tell its length, such as a pipe, a device or one of
    /// /proc, counts as one of no bytes: the block then is empty, with an error if the file has any.
    ZR8BitROM(const QString &filePath, const QString &name, QObject *parent);
    ~ZR8BitROM() override;

    /// "ZR8BitROM".
    static const QString className();

    /// Replaces the bytes and the size: read-only means for the machine, not for the host. Returns false,
    /// with no message, when the content is longer than the range of int.
    bool setContent(const QByteArray &content);

    /// Replaces the bytes by those of a file that must be exactly as long as the block. On failure the
    /// content stays as it was.
    bool readContentFromFile(const QString &filePath);

    /// Sizes, clears and fills the block by the settings "PREFIX.Size", in bytes, and "PREFIX.FilePath", the
    /// file with the content; without a path the block stays all zero. The file must be exactly as long as
    /// the block; its path is taken as it stands. On failure the block is left as the failing step found it.
    /// config is borrowed for the call; null is a failure.
    bool readFromConfig(const QString &prefix, ZRConfigIface *config);

    /// The declared size in bytes. Takes no lock.
    int size();

    /// The byte at pos.
    char byteValue(const int &pos);

    /// The word at pos, low byte first. At the last byte of the block the high byte is 0.
    short wordValue(const int &pos);

    /// Up to len bytes from pos on; a range that runs past the end is cut there. A negative len is a failure.
    QByteArray value(const int &pos, const int &len);

protected:
    /// Gives the block a size in bytes and clears it. On failure the block is empty.
    bool _setSize(const int &size);

    /// Reports an access at a bad position, with the place that found it. To be called with the lock held.
    Q_DECL_COLD_FUNCTION void _reportInvalidAddress(int pos, const char *file, int line,
                                                    const char *function);

    int _size = 0;       ///< declared size in bytes
    QMutex _mutex;       ///< guards _content; not recursive
    QByteArray _content; ///< the bytes that reads give
};

} // namespace ZR

#endif
