#pragma once

#include <zr8bitkit/zr8bitmachine.h>

#include <QtCore/QByteArray>

/// A small computer with a 6510, as an example of devices, banked memory and a timer.
///
/// | Address      | What is there                                                                       |
/// |--------------|-------------------------------------------------------------------------------------|
/// | $0000, $0001 | the port: directions and levels. Bit 0 switches the ROM on, bit 1 chooses its bank. |
/// | $A000-$AFFF  | RAM, or one of the two banks of the ROM, below which the RAM can still be written    |
/// | $D000        | prints the byte that is written                                                     |
/// | $D010        | the timer: n written starts it, with an IRQ every 256 * n cycles; 0 stops it.        |
/// |              | Reading takes the interrupt back.                                                   |
/// | $D020        | switches the computer off                                                           |
class SmallMachine
{
public:
    /// rom has the two banks of 4 KiB.
    explicit SmallMachine(const QByteArray &rom);

    /// Runs until the program switches the computer off, or for so many cycles. Returns whether it is off.
    bool run(quint64 cycles);

    /// The machine, to load programs and to look at it.
    ZR::ZR8BitMachine &machine() { return _machine; }

    /// What has been printed.
    const QByteArray &printed() const { return _printed; }

private:
    void _mapDevices();
    void _selectBank();

    ZR::ZR8BitMachine _machine;
    quint8 _direction = 0;
    quint8 _levels = 0;
    QByteArray _printed;
    quint64 _period = 0;   ///< of the timer, 0 when it does not run
    quint64 _nextTick = 0; ///< the cycle of the machine
    bool _isOff = false;
};
