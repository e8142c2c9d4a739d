#pragma once

#include "runoptions.h"

#include <zr8bitkit/zr8bitlabels.h>
#include <zr8bitkit/zr8bitmachine.h>
#include <zr8bitkit/zr8bittrace.h>

#include <exception>
#include <functional>

class InterruptDelay;
class Outputs;

/// Runs the program of a machine as the options of a command want it.
class MachineRun
{
public:
    /// For a machine that is loaded. Reads states, labels and files into it, sets registers, and looks at all
    /// that can be wrong with the options. machine and options are borrowed. Throws Failure.
    MachineRun(ZR::ZR8BitMachine &machine, const RunOptions &options);
    virtual ~MachineRun() = default;

    /// Runs it, prints how that ended and the dumps, and writes files. A person can interrupt it: nothing is
    /// written then. Throws Failure when it did not end as it should, and ExitStatus when the program gave an
    /// exit code.
    void run();

protected:
    /// Runs up to some limits, or less where something is to be done in between.
    virtual ZR::ZR8BitMachine::RunEnd runPart(const ZR::ZR8BitMachine::RunLimits &limits);
    /// Adds what is to be written after the run.
    virtual void addOutputs(Outputs &outputs);
    /// Ends the run at a cycle of the machine, unless it ends before.
    void endAtCycle(quint64 cycle);

private:
    // Before the run
    void _load(const QString &load);
    QString _loadedText() const;
    void _setRegisters();
    void _checkPart(const std::string &option, const MemoryPart &part) const;
    void _mapOutputs();
    void _map(const std::string &option, const OutputPlace &place,
              const std::function<void(quint8 value)> &take);
    void _prepareLimits();
    QByteArray _bytes(const std::string &option, const MemoryPart &part) const;
    [[noreturn]] void _failMachine() const;

    // The run
    std::optional<ZR::ZR8BitMachine::RunEnd> _toEnd(const InterruptDelay &interrupts);
    ZR::ZR8BitMachine::RunEnd _runSome();
    void _print(quint8 value);

    // After the run
    QString _failure(ZR::ZR8BitMachine::RunEnd end, const QString &endText) const;
    void _report(const QString &endText, bool isFailure);
    void _save();

    ZR::ZR8BitMachine &_machine;
    const RunOptions &_options;
    ZR::ZR8BitLabels _labels;
    ZR::ZR8BitTrace _trace;
    ZR::ZR8BitMachine::RunLimits _limits; ///< what is left of them
    QString _places;                      ///< where files went that say so themselves, a line each
    quint64 _lastCycle = 0;               ///< of the machine
    quint64 _nextIRQ = 0;                 ///< the cycle of the machine
    std::optional<quint8> _exitCode;      ///< that the program has given
    std::exception_ptr _printFailure;     ///< of a byte that the program has printed
    bool _isLineOpen = false;             ///< whether the program has printed the beginning of a line
};
