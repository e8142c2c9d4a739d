#pragma once

// What every complete processor has, whatever its instructions are: registers, the way to the memory, lines,
// the clock and the state of all that. Private to the kit.

#include <zr8bitkit/zr8bitbus.h>
#include <zr8bitkit/zr8bitchipiface.h>
#include <zr8bitlib/zr8bitram.h>

#include <QtCore/QMap>
#include <QtCore/QScopedValueRollback>
#include <QtCore/QStringList>

#include <array>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace ZR {

class ZR8BitRegister;

struct ZR8BitChipCore
{
    /// A register: a view of one or two bytes of the block, the low one first. Views may overlap.
    struct View
    {
        const char *id;
        int position;
        int bytes;
    };

    static constexpr int Nowhere = -1; ///< in place of an address
    static constexpr std::size_t BlockSize =
        40; ///< bytes of registers, some of which a chip may leave unused
    using Snapshot = std::array<quint8, BlockSize>;

    /// The views, at most 64, are in the order of registerIds(), also that of their announcements; the
    /// program counter is the last one. mainMemory is that of the processor, used while there is no bus.
    ZR8BitChipCore(ZR8BitRAM *const &mainMemory, std::vector<View> views);
    virtual ~ZR8BitChipCore();

    // Outside. Bus and block are looked up for each access, since whoever is called by an access, or told of
    // anything, may exchange them. Without either, reads give 0 and writes go nowhere.

    bool hasMemory() const { return bus || mainMemory; }
    int read(int at) const
    {
        if (bus)
            return bus->read(static_cast<quint16>(at));
        return mainMemory ? static_cast<quint8>(mainMemory->byteValue(at)) : 0;
    }
    void write(int at, int value) const
    {
        if (bus)
            bus->write(static_cast<quint16>(at), static_cast<quint8>(value));
        else if (mainMemory)
            mainMemory->setByteValue(static_cast<char>(value), at);
    }
    /// The word at an address below the last one. A block gives it by one access, and a short one reads 0
    /// beyond its end.
    int word(int at) const
    {
        if (!bus && mainMemory)
            return static_cast<quint16>(mainMemory->wordValue(at));
        const int low = read(at);
        return low | read(at + 1) << 8;
    }
    int in(int port) const { return bus ? bus->in(static_cast<quint16>(port)) : 0xFF; }
    void out(int port, int value) const
    {
        if (bus)
            bus->out(static_cast<quint16>(port), static_cast<quint8>(value));
    }

    // Registers

    /// Makes the processor's registers the views, of those that it has by their ids, and adds the others.
    /// Sets all bytes to 0. Returns false when a register could not be made.
    bool bindRegisters(QMap<QString, ZR8BitRegister *> &registers);
    const View *view(const QString &id) const;
    int value(const View &view) const;
    void setValue(const View &view, int value) const;
    int programCounter() const { return value(views.back()); }
    /// Sets the program counter, and announces it.
    void movePC(int address) const;

    /// What the registers hold.
    Snapshot snapshot() const;
    /// Lets the registers announce that they have changed since a snapshot, when somebody may hear it.
    void announceSince(const Snapshot &before) const;

    // Steps and interrupts

    /// Runs what works on the chip, so that whoever is called by an access to the bus runs no instruction.
    template <typename Work>
    auto alone(Work work)
    {
        const QScopedValueRollback rollback(busy, true);
        return work();
    }
    /// Tells the observer that an interrupt has been taken.
    void tellInterrupt(ZR8BitChipIface::Interrupt interrupt) const;

    // State

    /// Makes a number a part of the state. It must live as long as the core.
    template <typename Number>
    void addPart(const char *name, Number &number, quint64 largest = (std::numeric_limits<Number>::max)())
    {
        parts.push_back({name, int(sizeof(Number)), largest, [&number] { return quint64(number); },
                         [&number](quint64 value) { number = static_cast<Number>(value); }});
    }
    QList<ZR8BitChipIface::Field> stateFields() const;
    QByteArray saveState() const;
    /// Returns false, and changes nothing, when it is no state of this chip. Announces nothing.
    bool restoreState(const QByteArray &state);

    /// A number of the state that is no register.
    struct Part
    {
        const char *name;
        int bytes;
        quint64 largest;
        std::function<quint64()> get;
        std::function<void(quint64)> set;
    };

    ZR8BitRAM *const &mainMemory; ///< borrowed, as is the bus
    ZR8BitBus *bus = nullptr;
    const std::vector<View> views;
    quint8 *registers = nullptr; ///< the bytes of the block
    bool watched = false;        ///< whether somebody may be connected to registers or rows
    quint64 cycles = 0;          ///< since the chip was made
    bool irq = false;
    bool nmi = false;
    ZR8BitChipIface::InterruptObserver observer;
    bool busy = false;        ///< whether an instruction or an interrupt is at work on the chip
    bool stepping = false;    ///< whether a step runs
    bool isStepsRow = false;  ///< whether the instruction that runs next is that of the step
    bool fetched = false;     ///< whether the instruction that runs is that of the step
    int stepsEnd = 0;         ///< where the program counter goes when the step ends
    int waitsAt = Nowhere;    ///< the program counter, where the last step was an endless jump to itself
    quint64 cyclesOfWait = 1; ///< those that the jump takes
    std::vector<Part> parts;

private:
    class Block;
    class Additional;

    void _announce(std::size_t view) const;
    int _usedBytes() const;

    std::unique_ptr<Block> _block;
    std::array<quint64, BlockSize> _viewsOf = {}; ///< the views of each byte, a bit for each
    quint64 _heard = 0;                           ///< the views to which somebody may be connected
    std::vector<ZR8BitRegister *> _registers;     ///< by view, empty before bindRegisters()
    std::vector<std::unique_ptr<ZR8BitRegister>> _additional; ///< those that the processor did not have
};

} // namespace ZR
