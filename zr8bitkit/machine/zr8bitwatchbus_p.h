#pragma once

// The bus of a machine that watches accesses. Private to the kit.

#include <zr8bitkit/zr8bitbus.h>
#include <zr8bitkit/zr8bitmachine.h>

#include <QtCore/QVarLengthArray>

namespace ZR {

class ZR8BitAddressSpace;

/// Hands each access on to an address space, and notes those that are watched.
class WatchBus : public ZR8BitBus
{
public:
    explicit WatchBus(ZR8BitAddressSpace &space)
        : _space(space)
    {
    }

    /// Watches a part of the addresses. A length of 0 is nothing.
    void watch(int address, int length, ZR8BitMachine::Access access);
    bool isOn() const { return _length > 0; }

    /// Begins an instruction of a chip, whose program counter stays on it until it has ended.
    void begin(const ZR8BitChipIface *chip);
    /// Ends it. Returns its last access that is watched, the bytes that it consists of apart.
    std::optional<ZR8BitMachine::SeenAccess> end(int instructionLength) const;

    quint8 read(quint16 address) override;
    void write(quint16 address, quint8 value) override;
    quint8 in(quint16 port) override;
    void out(quint16 port, quint8 value) override;

private:
    void _note(int address, bool isWrite, int before, int after);

    ZR8BitAddressSpace &_space;
    int _address = 0;
    int _length = 0;
    bool _reads = false;
    bool _writes = false;
    const ZR8BitChipIface *_chip = nullptr;
    QVarLengthArray<ZR8BitMachine::SeenAccess, 8> _seen; ///< by the instruction that runs
};

} // namespace ZR
