#ifndef ZR8BITPROCMOS6510FULL_H
#define ZR8BITPROCMOS6510FULL_H

#include <zr8bitkit/zr8bitchip.h>
#include <zr8bitlib/zr8bitprocmos6510.h>

namespace ZR {

/// The whole processor MOS 6510, as the NMOS chip runs its programs.
///
/// Not modelled: the port at the addresses 0 and 1, which a device of a ZR8BitAddressSpace can be; the bus
/// accesses within an instruction, such as reads whose byte is not used and the first write of an instruction
/// that modifies memory; and interrupts within an instruction: one that comes up is seen before the next one,
/// also after a branch or in a BRK.
///
///     ZR8BitProcMOS6510Full processor;
///     processor.setMainMemory(&ram); // 64 KiB with the program and its vectors; or setBus()
///     if (processor.init())
///         processor.reset();
///     while (processor.step() > 0) { }
///
/// Registers, failures and the order of use are those of ZR8BitProcMOS6510. Its nine rows stand in the table
/// with their texts, but TAX transfers, ADC obeys the decimal flag, and pointers do not leave their page. The
/// host may change registers and memory between two steps.
///
/// Each row runs through its signal ZR8BitProcCommand::execute(). Who connects to it after init() sees the
/// registers as the instruction leaves them, and PC still on the instruction. A step returns the length of
/// the row also when it jumps; that of BRK is 1, although the return address skips the byte after it. The
/// status register keeps its bit B as the host sets it, and bit 5 is always set; what the chip pushes has B
/// as the chip sets it.
///
/// A register announces by ZR8BitRegister::onValueChanged() that it changed, once an instruction: after its
/// effect and before the host sees the row; PC last, with each step. An interrupt and reset() announce too.
///
/// All that only for who asks: until the first registers() or commandList() the processor runs its handlers
/// directly, without a signal, which is several times as fast. It changes nothing else. So ask late, and use
/// ZR8BitChipIface where it will do. A derived class that connects to rows and registers by _commands and
/// _registers, or handles a row of this class by itself, calls commandList() once at the end of its init();
/// rows that it adds run through their signals at any time.
///
/// A row that is run from a buffer or by ZR8BitProcCommand::exec() does all but to move PC: a jump goes
/// nowhere, a JSR or BRK pushes the address as if it stood at PC.
///
/// The bus, and whoever is told of a register, a row or an interrupt, may set another bus or main memory and
/// delete the old one. What follows uses the new one. An instruction that finds none reads 0 and writes
/// nowhere; the next one is the failure that the base has for it. A step within a step runs nothing and
/// returns 0. In the middle of an instruction the bus can run nothing either: an instruction from a buffer
/// returns 0, and a row has no effect.
///
/// To be used from one thread at a time, setIRQ() and triggerNMI() included.
class ZR8BITKIT_EXPORT ZR8BitProcMOS6510Full : public ZR8BitProcMOS6510, public ZR8BitChip
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
    /// formula. JAM stops the processor with a hardware issue and leaves PC. After init() it is a failure.
    bool setUndocumented(bool undocumented);

    /// As that of the base. A second call sets the registers again, then fails, and the processor goes on
    /// working. cycles() and the interrupts stay.
    bool init() override;

    /// The base's, and from then on the registers announce.
    QMap<QString, ZR8BitRegister *> registers() override;
    /// The base's, and from then on rows run through their signals.
    QHash<unsigned char, ZR8BitProcCommand *> commandList() override;

    /// Resets the chip at once: PC is the word at $FFFC, or 0 without a bus and main memory; SP is $FD, I is
    /// set, and the other registers stay. Ends a hardware issue, and forgets an NMI that has not been taken.
    /// A pause stays. cycles() does not count it.
    void reset() override;

    /// While IRQ is active and I is clear, each step begins with an interrupt. CLI, SEI and PLP take effect
    /// on it one instruction later, RTI at once. An NMI goes before an IRQ.
    bool acceptsIRQ() const override;

    /// The address on the stack page of the next byte to be pushed.
    quint16 stackPointer() const override;
    void call(quint16 address) override;
    bool isCallNext() override;
    /// A JMP or branch to itself, or a JSR or BRK that does not run in the stack.
    bool isWaiting() const override;
    bool isJammed() const override;
    quint64 wait(quint64 cycles) override;
    bool restoreState(const QByteArray &state) override;
    ZR8BitInstructionSet instructionSet() const override;
    QString stateHeading() const override;
    QString stateText() const override;

    void resetHardwareIssue() override;
    int execute(const char *data, const int &size) override;
    using ZR8BitProcMOS6510::execute;

public Q_SLOTS:
    /// Handles the eight encodings of ADC in place of the slot of the base, which refuses any other opcode.
    void mc_ADC(ZR8BitProcCommand *pCommand, const char *params);

protected:
    int execute() override;

private:
    struct Private;

    bool _initCommands();
    void _watch();
    void _connectRows();
    int _step();
    int _stepRow(int opcode);
    void _runRow(ZR8BitProcCommand *command, const char *params);
    void _run(int opcode, int operand);
    bool _isInterruptDue() const;
    void _takeInterrupt();
    void _stop(const QString &message, int line, const char *function);

    const std::unique_ptr<Private> _d;
};

} // namespace ZR

#endif
