#ifndef ZR8BITTRACE_H
#define ZR8BITTRACE_H

#include <zr8bitkit/zr8bitmachine.h>

namespace ZR {

class ZR8BitLabels;

/// What a machine does, in words and columns for a person.
///
///     ZR::ZR8BitTrace trace(machine);
///     const ZR::ZR8BitMachine::RunEnd end = machine.run();
///     puts(qPrintable(trace.endText(end) + '\n' + trace.stateText()));
///
/// To be used from the machine's thread.
class ZR8BITKIT_EXPORT ZR8BitTrace
{
public:
    /// For a machine that is loaded. It is borrowed, and a new trace is needed after its next load.
    explicit ZR8BitTrace(const ZR8BitMachine &machine);
    ~ZR8BitTrace();

    /// Sets the labels that name addresses. They are borrowed. Null, as at first, is none.
    void setLabels(const ZR8BitLabels *labels);

    /// What stands over lines of instructions.
    QString heading() const;

    /// An instruction that has just run, with what the registers hold now and its cycles. A name of its
    /// address, and an interrupt before it, are lines of their own.
    QString line(const ZR8BitMachine::RunInstruction &instruction) const;

    /// The same of an instruction that ran earlier, without the registers.
    QString historyLine(const ZR8BitMachine::RunInstruction &instruction) const;

    /// The address of the next instruction, what the registers hold and the cycles, below a heading.
    QString stateText() const;

    /// Why a run has ended, where and after how many instructions, to stand after "The run".
    QString endText(ZR8BitMachine::RunEnd end) const;

    /// An address: $0229, or with its name, as in "done ($0229)".
    QString addressText(int address) const;

    /// Bytes with their addresses and as text, 16 a line, with the names of their addresses.
    QString dump(const QByteArray &bytes, int address) const;

private:
    struct Private;

    std::unique_ptr<Private> _d;
};

} // namespace ZR

#endif
