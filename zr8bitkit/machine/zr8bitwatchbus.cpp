#include "zr8bitwatchbus_p.h"

#include <zr8bitkit/zr8bitaddressspace.h>

namespace ZR {

void WatchBus::watch(int address, int length, ZR8BitMachine::Access access)
{
    _address = address;
    _length = length;
    _reads = access != ZR8BitMachine::Access::Write;
    _writes = access != ZR8BitMachine::Access::Read;
}

void WatchBus::begin(const ZR8BitChipIface *chip)
{
    _chip = chip;
    _seen.clear();
}

std::optional<ZR8BitMachine::SeenAccess> WatchBus::end(int instructionLength) const
{
    std::optional<ZR8BitMachine::SeenAccess> last; // what reads and writes a byte ends with the write
    for (const ZR8BitMachine::SeenAccess &access : _seen) {
        const int offset = static_cast<quint16>(access.address - access.instruction);
        if (access.isWrite || offset >= instructionLength)
            last = access;
    }
    return last;
}

quint8 WatchBus::read(quint16 address)
{
    const quint8 value = _space.read(address);
    if (_reads)
        _note(address, false, value, value);
    return value;
}

void WatchBus::write(quint16 address, quint8 value)
{
    const int before = _writes ? _space.peekRAM(address) : 0;
    _space.write(address, value);
    if (_writes)
        _note(address, true, before, value);
}

quint8 WatchBus::in(quint16 port)
{
    return _space.in(port);
}

void WatchBus::out(quint16 port, quint8 value)
{
    _space.out(port, value);
}

void WatchBus::_note(int address, bool isWrite, int before, int after)
{
    if (address < _address || address - _address >= _length || !_chip)
        return;
    ZR8BitMachine::SeenAccess access;
    access.address = address;
    access.isWrite = isWrite;
    access.before = static_cast<quint8>(before);
    access.after = static_cast<quint8>(after);
    access.instruction = _chip->programCounter();
    _seen.append(access);
}

} // namespace ZR
