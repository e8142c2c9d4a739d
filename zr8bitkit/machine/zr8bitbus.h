#ifndef ZR8BITBUS_H
#define ZR8BITBUS_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QtGlobal>

namespace ZR {

/// What a processor sees: 64 KiB of addresses, and ports where it has instructions for them.
///
///     class Machine : public ZR::ZR8BitBus
///     {
///     public:
///         quint8 read(quint16 address) override { return _bytes[address]; }
///         void write(quint16 address, quint8 value) override { _bytes[address] = value; }
///         ...
///     };
///
/// Called by the processor's thread only. ZR8BitAddressSpace is the ready-made one.
class ZR8BITKIT_EXPORT ZR8BitBus
{
public:
    virtual ~ZR8BitBus();

    /// The byte at an address.
    virtual quint8 read(quint16 address) = 0;
    /// Writes a byte to an address.
    virtual void write(quint16 address, quint8 value) = 0;

    /// The byte that a port gives: 0xFF, where nothing answers.
    virtual quint8 in(quint16 port);
    /// Writes a byte to a port: by default nobody listens.
    virtual void out(quint16 port, quint8 value);
};

} // namespace ZR

#endif
