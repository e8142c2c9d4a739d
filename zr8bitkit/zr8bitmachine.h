#pragma once

#include <zr8bitkit/zr8bitkit_export.h>
#include <zr8bitlib/zr8bitcomputer.h>
#include <zrbaselib/zrobject.h>

#include <limits>
#include <memory>

namespace ZR {

class ZR8BitProcBase;
class ZR8BitProcMOS6510Full;
class ZR8BitRAM;
class ZR8BitRegister;

/// A computer that is wired and ready to run: one of its RAM blocks is the main memory of one of its
/// processors.
///
///     ZR::ZR8BitMachine machine;
///     if (!machine.loadSettings(u"machine.ini"_s) || !machine.loadFile(u"program.bin"_s, 0x200) ||
///         !machine.setRegister(u"PC"_s, 0x200))
///         qFatal("%s", qPrintable(machine.lastErrorStr()));
///     machine.run();
///
/// The settings are those of ZR8BitComputer, and one more:
///
/// | Key                      | Value                                                                     |
/// |--------------------------|---------------------------------------------------------------------------|
/// | "PROC_NAME.Instructions" | "documented" or "all", in any case of letters: the complete processor, with |
/// |                          | the instructions of the data sheet or with every opcode. Without the key    |
/// |                          | it is the computer's own, ZR8BitProcMOS6510, which knows ADC and TAX.       |
///
/// Other RAM blocks, ROM blocks and other processors of the computer are loaded, but nothing connects them.
///
/// Every failure gives false, or null, and a sentence in lastErrorStr(). The machine owns all that it gives
/// out, until the next load or its end. A computer keeps its own processor also where the complete one runs.
/// To be used from one thread at a time.
class ZR8BITKIT_EXPORT ZR8BitMachine : public ZRObject
{
public:
    /// What the caller wants of a computer. An empty text leaves it to the settings: the only RAM and
    /// processor, and the processor's key "Instructions".
    struct Choice
    {
        QString memory;       ///< name of the RAM block to run in
        QString processor;    ///< name of the processor
        QString instructions; ///< "documented" or "all", whatever the settings say
    };

    /// Why a run has ended.
    enum class RunEnd
    {
        Address,     ///< the address was reached
        Count,       ///< the count of instructions has run
        EndlessLoop, ///< an instruction jumps to itself; it has run once
        Stopped      ///< the processor ran nothing: a hardware issue, a pause, or no machine
    };

    /// An empty machine.
    explicit ZR8BitMachine(const QString &name = QString());
    ~ZR8BitMachine() override;

    /// Sets the logger of the machine, its computer and the memory and processor that are wired, also of
    /// those to come.
    void setLogger(ZRLoggerIface *logger) override;

    /// Loads and wires the computer that config describes, in place of the present one. config is borrowed
    /// for the call; null is a failure. On failure there is no memory() and no processor(). The computer is
    /// empty then too, unless it is the choice that did not fit it.
    bool load(ZRConfigIface *config, const Choice &choice = Choice());

    /// The same from a file for ZRIniConfig.
    bool loadSettings(const QString &filePath, const Choice &choice = Choice());

    /// Copies a whole file into the main memory, where it must fit.
    bool loadFile(const QString &filePath, int address);

    /// Copies bytes into the main memory, where they must fit.
    bool loadBytes(const QByteArray &bytes, int address);

    /// A register of the processor. Null, with a last error, when it has none of this id.
    ZR8BitRegister *findRegister(const QString &id);

    /// Sets a register to a value of 0 or more that it can hold.
    bool setRegister(const QString &id, int value);

    /// Runs instructions until the next one is at the address until, limit of them have run, one jumps to
    /// itself, or the processor stops. -1 is an address that is never reached. A program that waits for an
    /// interrupt in a jump to itself is to be run by the processor's step().
    RunEnd run(qint64 limit = std::numeric_limits<qint64>::max(), int until = -1);

    /// How many instructions run() has run since the load.
    qint64 instructionCount();

    /// The parts of the machine. To be loaded by the operations above only.
    ZR8BitComputer &computer();
    /// The main memory, null before a load.
    ZR8BitRAM *memory();
    /// The processor that runs, null before a load.
    ZR8BitProcBase *processor();
    /// The same if it is the complete one, else null.
    ZR8BitProcMOS6510Full *completeProcessor();

private:
    bool _isLoaded();
    bool _fail(ZRObject &part);
    bool _choose(ZRConfigIface *config, const Choice &choice);
    bool _findName(QString &name, const QStringList &names, const QString &kind);
    bool _makeProcessor(const QString &instructions);
    bool _wire(ZRConfigIface *config, const QString &prefix);
    void _unwire();

    ZR8BitComputer _computer;
    std::unique_ptr<ZR8BitProcMOS6510Full> _complete; ///< runs in place of the computer's own
    ZR8BitRAM *_memory = nullptr;
    ZR8BitProcBase *_processor = nullptr;
    ZR8BitRegister *_pc = nullptr;
    qint64 _instructionCount = 0;
};

} // namespace ZR
