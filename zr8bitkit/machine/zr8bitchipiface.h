#ifndef ZR8BITCHIPIFACE_H
#define ZR8BITCHIPIFACE_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>

namespace ZR {

class ZR8BitBus;
enum class ZR8BitInstructionSet;

/// What the complete processors share beyond ZR8BitProcessorIface, and all that ZR8BitMachine knows of them.
///
/// A processor that nobody watches is fast. As long as nobody has asked it for registers() or commandList(),
/// nobody can be connected to a register or a row: it then runs its handlers directly and announces nothing.
/// The first such question connects them for good. States, cycles and results are the same either way, so ask
/// late, and use the operations here where they do: none of them is such a question.
///
/// To be used from one thread at a time, the interrupt lines included.
class ZR8BITKIT_EXPORT ZR8BitChipIface
{
public:
    /// The kinds of interrupts.
    enum class Interrupt
    {
        IRQ,
        NMI
    };

    /// Is told which interrupt was taken, and the address of its handler. PC stands there already.
    using InterruptObserver = std::function<void(Interrupt interrupt, quint16 handler)>;

    /// A part of the state, as in "AC", of one or more bytes, the low one first.
    struct Field
    {
        QString name;  ///< such as "AC"
        int bytes = 1; ///< its size
    };

    virtual ~ZR8BitChipIface();

    // The bus

    /// Sets what the processor reads and writes. It is borrowed and must outlive its use here. Null, as at
    /// first, is the main memory of ZR8BitProcessorIface::setMainMemory(), with ports that read 0xFF.
    virtual void setBus(ZR8BitBus *bus) = 0;
    /// The bus that was set.
    virtual ZR8BitBus *bus() const = 0;

    // Time, reset and interrupts

    /// The cycles of the clock for all instructions and interrupts so far.
    virtual quint64 cycles() const = 0;
    /// Resets the chip at once; the class of the chip says to what.
    virtual void reset() = 0;
    /// Sets the line of the maskable interrupt, a level.
    virtual void setIRQ(bool active) = 0;
    /// Whether the line is active.
    virtual bool irq() const = 0;
    /// An edge on the line of the interrupt that cannot be masked: the next step takes it.
    virtual void triggerNMI() = 0;
    /// Sets who is told of each interrupt that is taken, before its handler's first instruction runs.
    virtual void setInterruptObserver(InterruptObserver observer) = 0;

    // Where the program stands

    /// The address of the next instruction.
    virtual quint16 programCounter() const = 0;
    /// Sets it.
    virtual void setProgramCounter(quint16 address) = 0;
    /// The address of what the next step runs if no interrupt comes: programCounter(), or the address of the
    /// instruction that halts the chip, as long as it does.
    virtual quint16 stepAddress() const;
    /// The address in the stack pointer: of the next byte to be pushed, or of the last one that was, as the
    /// chip has it. It falls with each push.
    virtual quint16 stackPointer() const = 0;
    /// Goes on at an address as a call of a subroutine does that returns to the present programCounter().
    /// Takes no cycles.
    virtual void call(quint16 address) = 0;
    /// Whether the next instruction calls a subroutine, or is one that repeats itself: stepping over it runs
    /// to what follows it.
    virtual bool isCallNext() = 0;

    /// Whether a step or an instruction is at work, and has called who asks.
    virtual bool isBusy() const = 0;

    // Waiting

    /// Whether the instruction that ran last has left the processor where it was and will do so again until
    /// an interrupt comes: a jump to itself, a halt. No loop is known any more after a reset, or once a
    /// register has been set here; what a host changes in the memory or by register objects shows after the
    /// next step.
    virtual bool isWaiting() const = 0;
    /// Whether the processor would take an IRQ now, if the line were active.
    virtual bool acceptsIRQ() const = 0;
    /// Whether an instruction has stopped the processor until a reset.
    virtual bool isJammed() const = 0;
    /// While the processor is waiting: does what it would do until at least so many cycles have gone by, at
    /// once, and announces it once at most. Returns the count of instructions, 0 where each of them is to be
    /// stepped: a call of itself writes to the stack.
    virtual quint64 wait(quint64 cycles) = 0;

    // Registers, without being watched

    /// The ids of all registers, in the order in which a person reads them.
    virtual QStringList registerIds() const = 0;
    /// The bytes of a register, 1 or 2; 0 when there is none of this id.
    virtual int registerSize(const QString &id) const = 0;
    /// The value of a register; -1 when there is none of this id.
    virtual int registerValue(const QString &id) const = 0;
    /// Sets a register, and announces that where registers are watched. Returns false when there is none of
    /// this id or it cannot hold the value.
    virtual bool setRegisterValue(const QString &id, int value) = 0;

    // States

    /// All of the state: registers, lines, interrupts that are pending, cycles. Two states are equal bytes
    /// exactly when nothing differs.
    virtual QByteArray saveState() const = 0;
    /// Takes over a state that saveState() of the same kind of chip gave. Returns false, and changes nothing,
    /// when it is none.
    virtual bool restoreState(const QByteArray &state) = 0;
    /// What the bytes of a state mean, in order.
    virtual QList<Field> stateFields() const = 0;

    // Texts

    /// The instructions that it runs, for a ZR8BitDisassembler.
    virtual ZR8BitInstructionSet instructionSet() const = 0;
    /// The instruction at an address as assemblers write it, its bytes read as the processor reads them.
    virtual QString instructionText(quint16 address) = 0;
    /// The line of a trace that stands over texts of stateText().
    virtual QString stateHeading() const = 0;
    /// Registers and flags on one line, as in "01 02 03 FF  N.-...ZC".
    virtual QString stateText() const = 0;
};

} // namespace ZR

#endif
