#ifndef ZR8BITCOMPUTER_H
#define ZR8BITCOMPUTER_H

#include <zr8bitlib/zr8bitlib_export.h>
#include <zr8bitlib/zr8bitprocessoriface.h>
#include <zrbaselib/zrobject.h>

#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>

namespace ZR {

class ZR8BitRAM;
class ZR8BitROM;

/// A machine: ROM blocks, RAM blocks and processors, created by name from one configuration.
///
/// The settings, names being case-sensitive and trimmed:
///
/// | Key                   | Value                                            | Default       |
/// |-----------------------|--------------------------------------------------|---------------|
/// | "Computer.Name"       | display name                                     | "Not defined" |
/// | "Computer.ROMs"       | list of names                                    | none          |
/// | "Computer.RAMs"       | list of names, at least one                      | required      |
/// | "Computer.Processors" | list of names, at least one                      | required      |
/// | "ROM_NAME.Size"       | bytes; the same for "RAM_NAME.Size"              | required      |
/// | "ROM_NAME.FilePath"   | file of exactly that size; the same for RAM      | all zero      |
/// | "PROC_NAME.Type"      | "MOS6510", in any case of letters                | required      |
///
/// The computer connects nothing: after a load the host gives a block of rams() to a processor's
/// setMainMemory() and calls its init(). A ROM is reachable through roms() alone. A logger set on the
/// computer stays with it.
///
/// The computer owns what it creates until the next readFromConfig() or its end; pointers from the accessors
/// are valid as long, and a host must not delete them. Takes no lock: to be used from one thread at a time.
class ZR8BITLIB_EXPORT ZR8BitComputer : public QObject, public ZRObject
{
    Q_OBJECT

public:
    /// An empty machine.
    explicit ZR8BitComputer(const QString &name = QString(), QObject *parent = nullptr);
    /// Releases processors first, since they may hold a RAM, then RAM blocks, then ROM blocks.
    ~ZR8BitComputer() override;

    /// "ZR8BitComputer".
    static const QString className();

    /// Releases the machine and loads the one that config describes. On failure the computer is empty and the
    /// last error holds the whole cause. The prefix is ignored. config is borrowed for the call; null is a
    /// failure.
    bool readFromConfig(const QString &prefix, ZRConfigIface *config);

    /// The display name that was read last, "Not defined" at first; not the object's name().
    QString computerName();

    /// The ROM blocks by name.
    QMap<QString, ZR8BitROM *> roms();
    /// The RAM blocks by name.
    QMap<QString, ZR8BitRAM *> rams();
    /// The processors by name.
    QMap<QString, ZR8BitProcessorIface *> processors();

private:
    // Steps of readFromConfig(). They report in the name of the operation whose signature they are given.
    template <typename Block>
    bool _loadBlocks(const QString &kind, const QStringList &names, QMap<QString, Block *> &blocks,
                     ZRConfigIface *config, const char *operation);
    bool _loadProcessor(const QString &name, ZRConfigIface *config, const char *operation);

    ZR8BitProcessorIface *_createProcessor(const QString &type);
    void _releaseResources();

    QString _computerName;
    QMap<QString, ZR8BitProcessorIface *> _processors;
    QMap<QString, ZR8BitRAM *> _rams;
    QMap<QString, ZR8BitROM *> _roms;
};

} // namespace ZR

#endif
