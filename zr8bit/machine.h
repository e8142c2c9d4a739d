#pragma once

#include <zr8bitlib/zr8bitcomputer.h>
#include <zrbaselib/zrloggeriface.h>

#include <QtCore/QString>

namespace ZR {
class ZR8BitProcBase;
class ZR8BitRegister;
} // namespace ZR

/// A processor as the class that every processor of a computer derives from.
ZR::ZR8BitProcBase *processorBase(ZR8BitProcessorIface *processor);

/// A machine of a settings file, with one of its RAM blocks as the main memory of one of its processors.
/// Every operation that can fail throws Failure.
class Machine
{
public:
    /// Loads and wires the machine. A name may be empty when the machine has just one RAM block or processor.
    /// With logFailures each failure of an object goes to standard error as it happens.
    Machine(const QString &settingsPath, const QString &memoryName, const QString &processorName,
            bool logFailures);

    ZR::ZR8BitComputer &computer() { return _computer; }
    ZR::ZR8BitRAM &memory() { return *_memory; }
    ZR::ZR8BitProcBase &processor() { return *_processor; }

    /// A register of the processor.
    ZR::ZR8BitRegister &reg(const QString &id);

    /// Copies a file into the main memory, where it must fit.
    void loadFile(const QString &filePath, int address);

    /// Sets a register to a value of 0 or more that it can hold.
    void setRegister(const QString &id, int value);

private:
    /// Writes every failure report to standard error.
    class Logger : public ZRLoggerIface
    {
    public:
        bool write(const QString &message, QtMsgType type, const QString &file, int line,
                   const QString &function) override;
    };

    Logger _logger;
    ZR::ZR8BitComputer _computer;
    ZR::ZR8BitRAM *_memory = nullptr;
    ZR::ZR8BitProcBase *_processor = nullptr;
};
