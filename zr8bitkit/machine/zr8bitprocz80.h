#ifndef ZR8BITPROCZ80_H
#define ZR8BITPROCZ80_H

#include <zr8bitkit/zr8bitchip.h>
#include <zr8bitlib/zr8bitprocbase.h>

namespace ZR {

/// The whole processor Z80, as Zilog's NMOS chip runs its programs, with its undocumented instructions and
/// flags.
///
/// Not modelled: the bus accesses within an instruction beyond reads and writes of bytes, wait states, and
/// interrupts within an instruction: one that comes up is seen before the next one.
///
///     ZR8BitProcZ80 processor;
///     processor.setBus(&space); // or setMainMemory(), where ports read 0xFF
///     if (processor.init())
///         processor.reset();
///     while (!processor.isHalted() && processor.step() > 0) { }
///
/// A step is one instruction with its prefixes, and returns its 1 to 4 bytes. A prefix DD or FD that another
/// prefix makes void is a step of its own; the byte after it, by which that is known, is read twice. A block
/// instruction is a step each time that it repeats itself. While the processor halts, PC stands after the
/// HALT, and a step returns 1. An interrupt shares its step with the first instruction of its handler.
///
/// Registers by id, of 8 bits: A, F, B, C, D, E, H, L, IXH, IXL, IYH, IYL, I, R, IFF1, IFF2, IM and Q, which
/// holds F when the instruction that ran last has set flags, otherwise 0; of 16 bits: AF, BC, DE, HL, IX, IY,
/// SP, PC, WZ, which is the chip's own, and AF', BC', DE', HL'. A pair and its halves are the same bytes. All
/// read 0 after init(). The host may change registers and memory between two steps.
///
/// Each row runs through its signal ZR8BitProcCommand::execute(). Who connects to it after init() sees the
/// registers as the instruction leaves them, and PC still on the instruction. A prefixed instruction runs the
/// row of its page alone, with the bytes of its operand; after DD CB and FD CB that is the distance.
///
/// A register announces by ZR8BitRegister::onValueChanged() that it changed, once an instruction: after its
/// effect and before the host sees the row; PC last, with each step. An interrupt and reset() announce too.
/// All that only for who asks by registers(), commandList() or commandPage(): see ZR8BitChipIface.
///
/// A row that is run from a buffer or by ZR8BitProcCommand::exec() does all but to move PC: a jump goes
/// nowhere, a CALL pushes the address as if it stood at PC, and a block instruction runs once.
///
/// The bus, and whoever is told of a register, a row or an interrupt, may set another bus or main memory and
/// delete the old one. A step within a step runs nothing and returns 0. So does an instruction from a buffer,
/// or a row, that the bus asks for in the middle of another one.
///
/// To be used from one thread at a time, setIRQ() and triggerNMI() included.
class ZR8BITKIT_EXPORT ZR8BitProcZ80 : public ZR8BitProcBase, public ZR8BitChip
{
    Q_OBJECT

public:
    /// Without registers and instructions until init().
    explicit ZR8BitProcZ80(const QString &name = QString(), QObject *parent = nullptr);
    ~ZR8BitProcZ80() override;

    /// "ZR8BitProcZ80".
    static const QString className();

    bool init() override;
    /// The base's, and from then on the registers announce.
    QMap<QString, ZR8BitRegister *> registers() override;
    /// The main page: a row for each opcode, with the prefixes among them. From then on rows run through
    /// their signals.
    QHash<unsigned char, ZR8BitProcCommand *> commandList() override;
    /// The rows after a prefix, 0xCB, 0xED, 0xDD, 0xFD, 0xDDCB or 0xFDCB; none for any other. A row's length
    /// counts its prefixes, its cycles are the least that it takes. DD and FD have no rows of prefixes. As
    /// commandList(), lets rows run through their signals.
    QHash<unsigned char, ZR8BitProcCommand *> commandPage(int prefix) const;

    /// Resets the chip at once: PC, I, R, Q, IM and both IFF are 0, AF and SP 0xFFFF, and the other registers
    /// stay. Ends a halt and a hardware issue, and forgets an NMI that has not been taken. A pause stays.
    /// cycles() does not count it.
    void reset() override;
    /// While the line is active and IFF1 is not 0, each step begins with an interrupt, but after EI and after
    /// a prefix. As on the chip, P is 0 where that is right after LD A,I or LD A,R.
    void setIRQ(bool active) override;
    /// The same, with what the device puts on the bus: in mode 2 the low byte of the address that is looked
    /// up, in mode 0 an instruction, as in 0xC7 to 0xFF for RST. A longer one finds the byte again as its
    /// operand, and a prefix does nothing. It is 0xFF by default.
    void setIRQ(bool active, quint8 data);
    bool acceptsIRQ() const override;

    /// Whether a HALT waits for an interrupt. Who moves PC, by whatever way, ends that too.
    bool isHalted() const;
    /// A HALT, or a JP or JR to itself.
    bool isWaiting() const override;
    /// Never: no instruction stops a Z80 for good.
    bool isJammed() const override;
    quint64 wait(quint64 cycles) override;

    void setProgramCounter(quint16 address) override;
    quint16 stepAddress() const override;
    /// SP: the address of the last byte that was pushed.
    quint16 stackPointer() const override;
    void call(quint16 address) override;
    bool isCallNext() override;
    bool restoreState(const QByteArray &state) override;
    ZR8BitInstructionSet instructionSet() const override;
    QString stateHeading() const override;
    QString stateText() const override;

    /// Runs the instruction at data with its prefixes and returns the bytes that it took. It is a failure
    /// when size is less than that.
    int execute(const char *data, const int &size) override;
    using ZR8BitProcBase::execute;

protected:
    int execute() override;

private:
    struct Private;

    int _step();
    bool _isInterruptDue() const;
    void _takeInterrupt();
    void _stop(const QString &message, int line, const char *function);

    const std::unique_ptr<Private> _d;
};

} // namespace ZR

#endif
