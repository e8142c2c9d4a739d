#ifndef ZR8BITPROCMOS6510_H
#define ZR8BITPROCMOS6510_H

#include <zr8bitlib/zr8bitprocbase.h>
#include <zr8bitlib/zr8bitregister.h>
#include <zr8bitlib/zrmos6510psregister.h>

namespace ZR {

/// The processor MOS 6510: six registers, and the instructions ADC in eight addressing modes and TAX.
///
/// Registers by id: AC, SP, XR and YR of 8 bits, PC of 16, PS with the flags. All read 0 after init() but PS,
/// which reads 0x20. The offsets of the main memory are the addresses; there are no banks and no port.
///
/// ADC adds in binary, whatever the decimal flag holds. TAX stands in the table but does nothing. One step is
/// one whole instruction: cycles are not counted, and there are no interrupts, no reset and no stack.
///
/// Data read beyond the end of a short main memory is 0, with the failure on the memory block. Operand bytes
/// of an instruction that runs past the end are read at the address cut to 16 bits: from address 0 on in a
/// memory of 64 KiB, as on the chip.
class ZR8BITLIB_EXPORT ZR8BitProcMOS6510 : public ZR8BitProcBase
{
    Q_OBJECT

public:
    /// Without registers and instructions until init().
    explicit ZR8BitProcMOS6510(const QString &name = QString(), QObject *parent = nullptr);
    ~ZR8BitProcMOS6510() override;

    /// "ZR8BitProcMOS6510".
    static const QString className();

    /// Sets the registers to their start values and fills the table. A second call sets the registers again,
    /// then fails, since the table is full; the processor goes on working.
    bool init() override;
    bool readFromConfig(const QString &prefix, ZRConfigIface *config) override;
    /// Sets the logger of the processor, its registers and its table.
    void setLogger(ZRLoggerIface *logger) override;

    using ZR8BitProcBase::execute;

public Q_SLOTS:
    /// Handles the eight encodings of ADC, which pCommand tells apart. A row of any other opcode, or a mode
    /// that reads memory when there is none, sets a hardware issue and changes no register.
    void mc_ADC(ZR8BitProcCommand *pCommand, const char *params);

protected:
    int execute() override;

private:
    /// Gives an operand byte; params points at the operand bytes of the instruction.
    using AddressMode = char (ZR8BitProcMOS6510::*)(const char *params);

    void _setDescriptions();
    bool _initRegisters();
    bool _initCommands();
    QByteArray _instructionAt(int pc, unsigned char opcode, int length);
    static QString _noMainMemoryText();
    static AddressMode _addressModeOfADC(unsigned char opcode);

    char addressModeImmediate(const char *params);
    char addressModeZeropage(const char *params);
    char addressModeZeropageX(const char *params);
    char addressModeAbsolute(const char *params);
    char addressModeAbsoluteX(const char *params);
    char addressModeAbsoluteY(const char *params);
    char addressModeIndexedIndirect(const char *params);
    char addressModeIndirectIndexed(const char *params);

    void setStatusN(const unsigned char &value);
    void setStatusV(const short &value);
    void setStatusZ(const unsigned char &value);
    void setStatusC(const short &value);

    ZR8BitRegister _regAC;
    ZR8BitRegister _regPC;
    ZRMOS6510PSRegister _regPS;
    ZR8BitRegister _regSP;
    ZR8BitRegister _regXR;
    ZR8BitRegister _regYR;
};

} // namespace ZR

#endif
