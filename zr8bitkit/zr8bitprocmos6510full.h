#pragma once

#include <zr8bitkit/zr8bitkit_export.h>
#include <zr8bitlib/zr8bitprocmos6510.h>

#include <memory>

namespace ZR {

/// The whole processor MOS 6510, as the NMOS chip runs its programs.
///
/// Not modelled: the port at the addresses 0 and 1, which are plain memory here; the bus accesses within an
/// instruction, such as reads whose byte is not used and the first write of an instruction that modifies
/// memory; and interrupts within an instruction: one that comes up is seen in front of the next one, also
/// behind a branch or in a BRK.
///
///     ZR8BitProcMOS6510Full processor;
///     processor.setMainMemory(&ram); // 64 KiB with the program and its vectors
///     if (processor.init())
///         processor.reset();
///     while (processor.step() > 0) { }
///
/// Registers, failures and the order of use are those of ZR8BitProcMOS6510. Its nine rows stand in the table
/// with their texts, but TAX transfers, ADC obeys the decimal flag, and pointers do not leave their page. The
/// host may change registers, by registers(), and memory between two steps.
///
/// Each row runs through its signal ZR8BitProcCommand::execute(). Who connects to it after init() sees the
/// registers as the instruction leaves them, and PC still on the instruction. A step returns the length of
/// the row also when it jumps; that of BRK is 1, although the return address skips the byte behind it. The
/// status register keeps its bit B as the host sets it, and bit 5 is always set; what the chip pushes has B
/// as the chip sets it.
///
/// A register announces by ZR8BitRegister::onValueChanged() that it changed, once an instruction: behind its
/// effect and before the host sees the row; PC last, with each step. An interrupt and reset() announce too.
///
/// A row that is run from a buffer or by ZR8BitProcCommand::exec() does all but to move PC: a jump goes
/// nowhere, a JSR or BRK pushes the address as if it stood at PC.
///
/// To be used from one thread at a time, setIRQ() and triggerNMI() included.
class ZR8BITKIT_EXPORT ZR8BitProcMOS6510Full : public ZR8BitProcMOS6510
{
    Q_OBJECT

public:
    /// Without registers and instructions until init().
    explicit ZR8BitProcMOS6510Full(const QString &name = QString(), QObject *parent = nullptr);
    ~ZR8BitProcMOS6510Full() override;

    /// "ZR8BitProcMOS6510Full".
    static const QString className();

    /// Whether init() adds the 105 undocumented opcodes to the 151 documented ones; not by default. They have
    /// the effects that are known of the chip; where those are not stable, the text of the row tells the
    /// formula. JAM stops the processor with a hardware issue and leaves PC.
    void setUndocumented(bool undocumented);

    /// As that of the base. A second call sets the registers again, then fails, and the processor goes on
    /// working. cycles() and the interrupts stay.
    bool init() override;

    /// The cycles that the chip would have taken for all instructions and interrupts so far: page crossings,
    /// branches and rows run from a buffer counted, reset() not.
    quint64 cycles() const;

    /// Resets the chip at once: PC is the word at $FFFC, or 0 without a main memory; SP is $FD, I is set, and
    /// the other registers stay. Ends a hardware issue, and forgets an NMI that has not been taken. A pause
    /// stays.
    void reset();

    /// Sets the interrupt line IRQ, a level: while it is active and I is clear, each step begins with an
    /// interrupt. CLI, SEI and PLP take effect on it one instruction later, RTI at once.
    void setIRQ(bool active);

    /// An edge on the line NMI: the next step begins with an interrupt, which goes before an IRQ.
    void triggerNMI();

    using ZR8BitProcMOS6510::execute;

public Q_SLOTS:
    /// Handles the eight encodings of ADC in place of the slot of the base, which refuses any other opcode.
    void mc_ADC(ZR8BitProcCommand *pCommand, const char *params);

protected:
    int execute() override;

private:
    struct Private;

    bool _initRegisters();
    bool _initCommands();
    void _run(ZR8BitProcCommand *pCommand, const char *params);
    void _takeInterrupt();
    void _stop(const QString &message, int line, const char *function);

    std::unique_ptr<Private> _d;
};

} // namespace ZR
