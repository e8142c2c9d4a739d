#ifndef ZR8BITMACHINE_H
#define ZR8BITMACHINE_H

#include <zr8bitkit/zr8bitchipiface.h>
#include <zr8bitkit/zr8bitdisassembler.h>
#include <zr8bitkit/zr8bitkit_export.h>
#include <zr8bitlib/zr8bitcomputer.h>
#include <zrbaselib/zrobject.h>

#include <functional>
#include <limits>
#include <memory>
#include <optional>

class ZRConfigIface;

namespace ZR {

class ZR8BitAddressSpace;
class ZR8BitProcBase;
class ZR8BitRAM;
class ZR8BitRegister;

/// A computer that is wired and ready to run: one of its processors, with the memory that it sees.
///
///     ZR::ZR8BitMachine machine;
///     if (!machine.loadSettings(u"machine.ini"_s) || !machine.loadFile(u"program.bin"_s, 0x200) ||
///         !machine.setRegister(u"PC"_s, 0x200))
///         qFatal("%s", qPrintable(machine.lastErrorStr()));
///     machine.run();
///
/// The settings are those of ZR8BitComputer, with one more type of processors and two more keys:
///
/// | Key                      | Value                                                                   |
/// |--------------------------|-------------------------------------------------------------------------|
/// | "PROC_NAME.Type"         | also "Z80", which is always complete, with all instructions             |
/// | "PROC_NAME.Instructions" | "documented" or "all", in any case of letters: the complete 6510        |
/// |                          | with the instructions of the data sheet or with every opcode. Without   |
/// |                          | the key it is the computer's own, which knows ADC and TAX. A Z80 takes  |
/// |                          | "all" only.                                                             |
/// | "PROC_NAME.Map"          | what a complete processor sees: "RAM:MAIN@0, ROM:KERNAL@0xE000" has     |
/// |                          | kind, name and address, then +OFFSET in the block and :LENGTH, if       |
/// |                          | wanted. Later ones lie on top. Without the key the main memory at 0.    |
///
/// A complete processor works on addressSpace(), the computer's own one on the main memory alone. Nothing
/// connects the other processors of the computer.
///
/// Every failure gives false, or null, and a sentence in lastErrorStr(). The machine owns all that it gives
/// out, until the next load or its end. To be used from one thread at a time. Handlers that run within a
/// step, such as those of devices, may ask it, load bytes and call stop(); what loads or runs the machine is
/// refused then with a sentence. So it is for who hears of a register from setRegister() or restoreState().
class ZR8BITKIT_EXPORT ZR8BitMachine : public ZRObject
{
public:
    /// Which instructions a processor has.
    enum class Instructions
    {
        AsSettings, ///< what the key "Instructions" says
        Documented, ///< those of the data sheet
        All         ///< every opcode
    };

    /// What the caller wants of a computer. May grow at its end. An empty name is that of the only block or
    /// processor; for the memory it is that of the first RAM of the key "Map", where there is one.
    struct Choice
    {
        QString memory;                                       ///< name of the main memory
        QString processor;                                    ///< name of the processor
        Instructions instructions = Instructions::AsSettings; ///< outweighs the settings
    };

    /// Why a run has ended.
    enum class RunEnd
    {
        Address,     ///< one of the addresses was reached
        Count,       ///< the count of instructions has run
        Cycles,      ///< the cycles have gone by
        Watch,       ///< an instruction has touched what setWatch() watches; it has run
        Requested,   ///< stop() or the predicate has ended it
        EndlessLoop, ///< the processor waits for what will not come; the instruction has run once
        Jam,         ///< an instruction has stopped the processor until a reset
        Stopped      ///< the processor ran nothing: a hardware issue, a pause, or the machine refuses to run
    };

    /// What ends a run besides endless loops and failures. May grow at its end.
    struct RunLimits
    {
        /// Ends when so many instructions have run.
        qint64 instructions = (std::numeric_limits<qint64>::max)();
        /// Ends with the first instruction that brings the run to so many cycles.
        quint64 cycles = (std::numeric_limits<quint64>::max)();
        /// Ends before the instruction at one of them, also before the first one.
        QList<quint16> addresses = {};
        /// Is asked after each instruction, and ends the run by true. May set interrupt lines.
        std::function<bool()> predicate = {};
        /// Whether an IRQ is going to come: set by the predicate, or by the caller when the run has ended.
        /// Then waiting for it is no endless loop, if a limit or the predicate can end the waiting. Up to a
        /// limit of cycles alone, it takes no time.
        bool irqComes = false;
        bool nmiComes = false; ///< the same for an NMI
    };

    /// The accesses that are watched.
    enum class Access
    {
        Read,
        Write,
        Any
    };

    /// An access that has ended a run. May grow at its end.
    struct SeenAccess
    {
        int address = -1;     ///< -1: there was none
        bool isWrite = false; ///< else it was a read
        quint8 before = 0;    ///< what a read gave, or the memory held before the write: $FF for a device
        quint8 after = 0;     ///< what was written; for a read the same as before
        int instruction = 0;  ///< the address of the instruction
    };

    /// A part of the memory that has been loaded. May grow at its end.
    struct LoadedPart
    {
        int address = 0; ///< of its first byte
        int length = 0;  ///< in bytes
    };

    /// An instruction that has run. May grow at its end.
    struct RunInstruction
    {
        int address = 0;                                     ///< of its first byte
        QByteArray bytes;                                    ///< as they were when it ran
        quint64 cycles = 0;                                  ///< with those of the interrupt
        std::optional<ZR8BitChipIface::Interrupt> interrupt; ///< taken before it, to its address
    };

    /// An empty machine.
    explicit ZR8BitMachine(const QString &name = QString());
    ~ZR8BitMachine() override;

    // Loading

    /// Sets the logger of the machine, its computer and the memory and processor that are wired, also of
    /// those to come.
    void setLogger(ZRLoggerIface *logger) override;

    /// Loads and wires the computer that config describes, in place of the present one. config is borrowed
    /// for the call; null is a failure. On failure there is no machine: memory() and processor() are null. A
    /// computer that does not fit the choice stays in computer(), to tell what can be chosen; else it is
    /// empty.
    bool load(ZRConfigIface *config, const Choice &choice);
    /// The same as the settings say.
    bool load(ZRConfigIface *config);

    /// The same from a file for ZRIniConfig. The failure names the file.
    bool loadSettings(const QString &filePath, const Choice &choice);
    /// The same as the settings say.
    bool loadSettings(const QString &filePath);

    /// What the last loadSettings() found odd and went on with, such as keys that nobody reads: a sentence
    /// each.
    QStringList warnings() const;

    /// Copies bytes into the RAM that the processor writes to, also below a ROM, where they must fit.
    bool loadBytes(const QByteArray &bytes, int address);

    /// The same with a whole file, as it stands.
    bool loadFile(const QString &filePath, int address);

    /// Copies a program to where its file says, of which ZR8BitProgramFile tells the formats. On failure
    /// nothing has been copied.
    bool loadFile(const QString &filePath);
    /// The same with the content of the file.
    bool loadProgram(const QByteArray &content, const QString &fileName);

    /// What the last one of these has copied, in the order of the file; nothing when it failed.
    QList<LoadedPart> loadedParts() const;

    // Looking at it. Nothing here runs a handler of a device or makes a processor slower, but findRegister().

    /// How many addresses there are: 64 KiB, or the main memory's where the computer's own processor runs.
    int size() const;

    /// The bytes that the processor would read from an address on; a device and what is not there give $FF.
    /// What goes beyond size() is cut off, and a machine that is not loaded gives none.
    QByteArray bytes(int address, int length) const;

    /// The address of the next instruction; 0 when no machine is loaded.
    int programCounter() const;

    /// The value of a register of the processor, -1 with a last error when it has none of this id.
    int registerValue(const QString &id);

    /// Sets a register to a value of 0 or more that it can hold.
    bool setRegister(const QString &id, int value);

    /// A register itself, for its signal. Null, with a last error, when there is none of this id. From now on
    /// the processor announces its registers, which makes it slower.
    ZR8BitRegister *findRegister(const QString &id);

    // Running

    /// Runs instructions up to a limit, an endless loop or a failure.
    RunEnd run(const RunLimits &limits);
    /// Runs up to an endless loop or a failure.
    RunEnd run();

    /// Ends the present run with the present instruction. To be called by handlers.
    void stop();

    /// Runs a subroutine as if the instruction before PC had called it. True when it returned, with stack and
    /// PC as before; else the last error says how the run ended. A processor that has stopped calls nothing.
    bool call(int address, const RunLimits &limits);
    /// The same without limits.
    bool call(int address);

    /// Runs one instruction, and of a call or one that repeats itself all until what follows it. Leaves an
    /// address of the limits where PC stands. Returns as call() does.
    bool stepOver(const RunLimits &limits);
    /// The same without limits.
    bool stepOver();

    /// Runs until the present subroutine or interrupt handler has returned. Leaves an address and returns as
    /// stepOver() does.
    bool stepOut(const RunLimits &limits);
    /// The same without limits.
    bool stepOut();

    /// How many instructions have run since the load.
    qint64 instructionCount() const;

    /// Watches a part of the address space in place of the one before; a length of 0 watches nothing. A run
    /// ends after an instruction that accessed it, the bytes of the instruction itself apart. Watching takes
    /// time; it needs a complete processor.
    bool setWatch(int address, int length, Access access = Access::Any);

    /// The last access of the instruction that has ended the last run, of those that are watched.
    SeenAccess lastAccess() const;

    /// Sets who is told of each interrupt that is taken, until the next load. To be used in place of the
    /// chip's own operation, which the machine needs for itself.
    void setInterruptObserver(ZR8BitChipIface::InterruptObserver observer);

    // What has run

    /// Keeps the last 256 instructions from now on, which takes time, or forgets them. Not by default. One
    /// that waits without taking time is kept once.
    bool setHistory(bool kept);

    /// The instructions that are kept, the last one at the end.
    QList<RunInstruction> history() const;

    // States

    /// All that the machine remembers: the processor with its lines and cycles, and all RAM blocks. Two
    /// states of a machine are equal bytes exactly when nothing differs. Not included are ROM blocks, devices
    /// and the address space, so a host saves the choice of a bank itself. Empty, with a last error, when
    /// there is no machine or it runs.
    QByteArray saveState();

    /// Takes a state over that saveState() of a machine with the same processor and RAM blocks gave. On
    /// failure nothing has changed.
    bool restoreState(const QByteArray &state);

    /// Where two states of this machine differ, the first 16 places, as in "AC 10, was 0F; $0400: 20, was 00"
    /// of what state has and before had. Empty when they are equal; a sentence when one is not of this
    /// machine.
    QString stateDifference(const QByteArray &state, const QByteArray &before) const;

    // Parts. To be loaded and wired by the operations above only; all but the computer are null before a
    // load.

    /// All blocks and processors.
    ZR8BitComputer &computer();
    /// What a complete processor sees, to map devices into and to switch banks. The next load clears it.
    ZR8BitAddressSpace &addressSpace();
    /// The main memory.
    ZR8BitRAM *memory() const;
    /// The processor that runs.
    ZR8BitProcBase *processor() const;
    /// The same if it is a complete one, else null.
    ZR8BitChipIface *chip() const;
    /// The instructions that it has.
    ZR8BitInstructionSet instructionSet() const;
    /// The texts of its state, as ZR8BitChipIface gives them, also for the computer's own processor.
    QString stateHeading() const;
    /// The line below that heading.
    QString stateText() const;
    /// The cycles so far; those of the computer's own processor are counted as its table says.
    quint64 cycles() const;

private:
    struct Private;

    bool _fail(ZRObject &part);
    bool _isReady(const QString &operation);
    bool _isLoaded();
    bool _fits(const QByteArray &bytes, int address);
    bool _copy(const QByteArray &bytes, int address);
    bool _isComplete(const QString &operation);
    bool _reach(const QString &failure, const RunLimits &limits, const std::function<bool(int length)> &goal,
                bool leavesAddress);

    bool _checkTypes(ZRConfigIface *config);
    bool _choose(ZRConfigIface *config, const Choice &choice);
    bool _findName(QString &name, const QStringList &names, const QString &kind);
    bool _makeProcessor(ZRConfigIface *config, const QString &prefix, Instructions instructions);
    bool _wire(ZRConfigIface *config, const QString &prefix);
    bool _map(const QString &key, const QStringList &items);
    void _unwire();
    void _unload();

    std::unique_ptr<Private> _d;
};

} // namespace ZR

#endif
