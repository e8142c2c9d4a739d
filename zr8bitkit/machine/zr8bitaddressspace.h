#ifndef ZR8BITADDRESSSPACE_H
#define ZR8BITADDRESSSPACE_H

#include <zr8bitkit/zr8bitbus.h>
#include <zrbaselib/zrobject.h>

#include <functional>
#include <memory>

namespace ZR {

class ZR8BitROM;

/// A bus of memory blocks, devices and ports.
///
///     ZR::ZR8BitAddressSpace space;
///     space.mapMemory(0x0000, &ram);                     // 64 KiB
///     space.mapMemory(0xE000, &rom);                     // covers the RAM, which still takes the writes
///     space.mapDevice(0xD020, 1, nullptr, [&](quint16, quint8 colour) { border = colour; });
///     processor.setBus(&space);
///
/// What is mapped later lies on top. A write to a ROM, and an access for which a device has no handler, go to
/// what lies below. Where nothing is mapped, reads give 0xFF and writes go nowhere, at ports too.
///
/// Blocks are borrowed and must outlive their use here. Their own lock is held for each access, and none
/// while a handler runs. A block that has become too short reads 0, with the failure on the block.
///
/// A handler may map and clear: the access that it serves ends as it began, and the next one sees the change.
/// That is how memory is banked. What is covered completely is forgotten, so that it takes no memory.
///
/// Bad arguments give false, with a sentence in lastErrorStr(), and change nothing. To be used from one
/// thread at a time, the processor's.
class ZR8BITKIT_EXPORT ZR8BitAddressSpace : public ZR8BitBus, public ZRObject
{
public:
    /// Gives the byte at an address of the device, or at a port.
    using ReadHandler = std::function<quint8(quint16 address)>;
    /// Takes a byte that is written to an address of the device, or to a port.
    using WriteHandler = std::function<void(quint16 address, quint8 value)>;

    /// Nothing is mapped.
    explicit ZR8BitAddressSpace(const QString &name = QString());
    ~ZR8BitAddressSpace() override;

    /// Maps length bytes of a block, from offset on, to the addresses from address on. -1 is the length to
    /// the end of the block. A ZR8BitRAM can be written, any other block is a ROM.
    bool mapMemory(int address, ZR8BitROM *block, int offset = 0, int length = -1);

    /// Lets handlers answer at length addresses, which they are given as the processor has them. A handler
    /// may be empty.
    bool mapDevice(int address, int length, ReadHandler read, WriteHandler write);

    /// Lets handlers answer at all ports of which the bits of the mask are those of port. They are given the
    /// whole port; a handler may be empty. Port and mask are 0 to 0xFFFF.
    bool mapPort(int port, int mask, ReadHandler in, WriteHandler out);

    /// Makes it empty again, ports included.
    void clear();

    quint8 read(quint16 address) override;
    void write(quint16 address, quint8 value) override;
    quint8 in(quint16 port) override;
    void out(quint16 port, quint8 value) override;

    /// What read() would give, without a handler: 0xFF for a device.
    quint8 peek(quint16 address) const;
    /// The byte that a write would replace, also below a ROM: 0xFF for a device.
    quint8 peekRAM(quint16 address) const;
    /// Whether a write goes to a block.
    bool isRAM(quint16 address) const;

private:
    struct Area;
    struct Private;

    bool _map(int address, int length, Area area, bool reads, bool writes);

    const std::unique_ptr<Private> _d;
};

} // namespace ZR

#endif
