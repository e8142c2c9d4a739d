#include "smallmachine.h"

#include <zr8bitkit/zr8bitaddressspace.h>
#include <zr8bitkit/zrmapconfig.h>
#include <zr8bitlib/zr8bitram.h>

#include <QtCore/QtLogging>

#include <algorithm>
#include <limits>

using ZR::ZR8BitMachine;

namespace {

constexpr int BankAddress = 0xA000;
constexpr int BankSize = 0x1000;

} // namespace

SmallMachine::SmallMachine(const QByteArray &rom)
{
    ZR::ZRMapConfig settings{
        {QStringLiteral("Computer.Processors"), QStringLiteral("CPU")},
        {QStringLiteral("PROC_CPU.Type"), QStringLiteral("MOS6510")},
        {QStringLiteral("PROC_CPU.Instructions"), QStringLiteral("documented")},
        {QStringLiteral("Computer.RAMs"), QStringLiteral("MAIN")},
        {QStringLiteral("RAM_MAIN.Size"), QStringLiteral("0x10000")},
        {QStringLiteral("Computer.ROMs"), QStringLiteral("BANKS")},
        {QStringLiteral("ROM_BANKS.Size"), QString::number(2 * BankSize)},
    };
    if (rom.size() != 2 * BankSize || !_machine.load(&settings))
        qFatal("The machine could not be made: %s", qPrintable(_machine.lastErrorStr()));
    _machine.computer().roms().value(QStringLiteral("BANKS"))->setContent(rom);
    _mapDevices();
}

bool SmallMachine::run(quint64 cycles)
{
    const quint64 end = _machine.cycles() + cycles;
    while (!_isOff && _machine.cycles() < end) {
        ZR8BitMachine::RunLimits limits;
        limits.irqComes = _period > 0;
        limits.cycles = std::min(end, _period > 0 ? _nextTick : end) - _machine.cycles();
        const auto reason = _machine.run(limits);
        if (reason != ZR8BitMachine::RunEnd::Cycles && reason != ZR8BitMachine::RunEnd::Requested)
            break; // a loop without end, or an instruction that is none
        if (_period > 0 && _machine.cycles() >= _nextTick) {
            _machine.chip()->setIRQ(true);
            _nextTick += _period;
        }
    }
    return _isOff;
}

void SmallMachine::_mapDevices()
{
    ZR::ZR8BitAddressSpace &space = _machine.addressSpace();
    space.mapDevice(
        0, 2, [this](quint16 address) { return address == 0 ? _direction : _levels; },
        [this](quint16 address, quint8 value) {
            (address == 0 ? _direction : _levels) = value;
            _selectBank();
        });
    space.mapDevice(0xD000, 1, nullptr,
                    [this](quint16, quint8 value) { _printed += static_cast<char>(value); });
    space.mapDevice(
        0xD010, 1,
        [this](quint16) {
            _machine.chip()->setIRQ(false);
            return quint8(0);
        },
        [this](quint16, quint8 value) {
            _period = 256 * quint64(value);
            _nextTick = _machine.cycles() + _period;
            _machine.stop(); // run() has to know of the tick
        });
    space.mapDevice(0xD020, 1, nullptr, [this](quint16, quint8) {
        _isOff = true;
        _machine.stop();
    });
}

/// Only pins whose direction is out drive a line; the others read 1 from outside.
void SmallMachine::_selectBank()
{
    const int lines = (_levels | ~_direction) & 3;
    ZR::ZR8BitROM *rom = _machine.computer().roms().value(QStringLiteral("BANKS"));
    if (lines & 1)
        _machine.addressSpace().mapMemory(BankAddress, rom, lines & 2 ? BankSize : 0, BankSize);
    else
        _machine.addressSpace().mapMemory(BankAddress, _machine.memory(), BankAddress, BankSize);
}
