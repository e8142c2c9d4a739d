#pragma once

// The members of the machine. Private to the kit.

#include "zr8bitplainchip_p.h"
#include "zr8bitwatchbus_p.h"

#include <zr8bitkit/zr8bitaddressspace.h>
#include <zr8bitkit/zr8bitmachine.h>
#include <zr8bitlib/zr8bitcomputer.h>
#include <zr8bitlib/zr8bitprocbase.h>
#include <zr8bitlib/zr8bitram.h>

#include <array>

namespace ZR {

/// A complete processor, by both of its interfaces.
struct CompleteProcessor
{
    std::unique_ptr<ZR8BitProcBase> processor;
    ZR8BitChipIface *chip = nullptr; ///< of processor
};

constexpr int LongestInstruction = 4; // bytes

/// The last instructions that have run, in a ring.
class InstructionRing
{
public:
    struct Entry
    {
        quint16 address = 0;
        std::array<char, LongestInstruction> bytes = {};
        int length = 0;
        quint64 cycles = 0;
        std::optional<ZR8BitChipIface::Interrupt> interrupt;
    };

    /// The entry of the instruction that runs; next() makes room for the one after it.
    Entry &present() { return _entries[_count % Size]; }
    void next() { ++_count; }
    QList<ZR8BitMachine::RunInstruction> instructions() const;

private:
    static constexpr size_t Size = 257; ///< one of them is that which runs

    std::array<Entry, Size> _entries;
    size_t _count = 0;
};

/// What a state of a machine consists of.
struct MachineState
{
    QString processor; ///< its kind
    QByteArray chip;
    QMap<QString, QByteArray> blocks; ///< of RAM, by name
};

struct ZR8BitMachine::Private
{
    /// Where a run is to end besides its limits. Is asked after each instruction, which had this length.
    using Goal = std::function<bool(int length)>;

    bool isBusy() const { return running || (chip && chip->isBusy()); }
    std::optional<RunEnd> run(const RunLimits &limits, const Goal &goal, bool leavesAddress);
    std::optional<RunEnd> endBefore(const RunLimits &limits, qint64 rest, quint64 lastCycle,
                                    bool waits) const;
    bool canLeaveWaiting(const RunLimits &limits) const;
    int step();
    void note(quint16 address);
    void observeInterrupts();
    quint8 peek(quint16 address) const;
    MachineState state();
    QString readState(const QByteArray &bytes, MachineState &read);

    // In the order in which they need each other: a processor goes before what it works on.
    ZR8BitComputer computer;
    ZR8BitAddressSpace space;
    WatchBus watch{space};
    CompleteProcessor complete;           ///< empty while the computer's own runs
    std::unique_ptr<PlainChip> plainChip; ///< what makes the computer's own a chip
    ZR8BitRAM *memory = nullptr;
    ZR8BitProcBase *processor = nullptr;
    ZR8BitChipIface *chip = nullptr; ///< there is one as soon as there is a processor

    QStringList warnings;
    ZR8BitChipIface::InterruptObserver observer;
    QList<LoadedPart> loaded;
    std::unique_ptr<InstructionRing> history; ///< while it is kept
    std::optional<SeenAccess> seen;           ///< in the present or last run
    qint64 instructionCount = 0;
    bool running = false;
    bool stopRequested = false;
};

} // namespace ZR
