#include <zr8bitlib/zr8bitprocmos6510.h>

#include "zr8bitfailure_p.h"

#include <zr8bitlib/zr8bitram.h>

#include <utility>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitlib/zr8bitprocmos6510";

constexpr int AddressMask = 0xFFFF;
constexpr int ZeropageMask = 0xFF;

// Without an underlying type: Qt's lupdate would lose the class that the texts below belong to.
enum Opcode
{
    AdcImmediate = 0x69,
    AdcZeropage = 0x65,
    AdcZeropageX = 0x75,
    AdcAbsolute = 0x6D,
    AdcAbsoluteX = 0x7D,
    AdcAbsoluteY = 0x79,
    AdcIndexedIndirect = 0x61,
    AdcIndirectIndexed = 0x71,
    Tax = 0xAA,
};

/// A row of the instruction table, with the slot that handles it, if any.
struct Instruction
{
    unsigned char code;
    unsigned char length;
    unsigned char cycleCnt;
    const char *assembly;
    const char *title;
    const char *text;
    const char *slot;
};

int byteOf(char value)
{
    return static_cast<unsigned char>(value);
}

int wordOf(const char *bytes)
{
    return byteOf(bytes[0]) | byteOf(bytes[1]) << 8;
}

int wordOf(short value)
{
    return static_cast<unsigned short>(value);
}

} // namespace

ZR8BitProcMOS6510::ZR8BitProcMOS6510(const QString &name, QObject *parent)
    : ZR8BitProcBase(name, parent)
{
    _setDescriptions();
}

ZR8BitProcMOS6510::~ZR8BitProcMOS6510() = default;

const QString ZR8BitProcMOS6510::className()
{
    return QStringLiteral("ZR8BitProcMOS6510");
}

bool ZR8BitProcMOS6510::init()
{
    if (!ZR8BitProcBase::init() || !_initRegisters())
        return false;
    if (!_initCommands()) {
        ZR_SET_LAST_ERROR(_commands.lastErrorStr());
        return false;
    }
    return true;
}

bool ZR8BitProcMOS6510::readFromConfig(const QString &prefix, ZRConfigIface *config)
{
    return ZR8BitProcBase::readFromConfig(prefix, config);
}

void ZR8BitProcMOS6510::setLogger(ZRLoggerIface *logger)
{
    _logger = logger;
    _regAC.setLogger(logger);
    _regPC.setLogger(logger);
    _regPS.setLogger(logger);
    _regSP.setLogger(logger);
    _regXR.setLogger(logger);
    _regYR.setLogger(logger);
    _commands.setLogger(logger);
}

int ZR8BitProcMOS6510::execute()
{
    if (_paused || _hardwareIssue)
        return 0;
    if (!_mainMemory) {
        ZR_SET_HARDWARE_ISSUE(_noMainMemoryText());
        return -1;
    }

    const int pc = wordOf(_regPC.value());
    const auto opcode = static_cast<unsigned char>(_mainMemory->byteValue(pc));
    ZR8BitProcCommand *command = _commands.command(opcode);
    if (!command) {
        ZR_SET_HARDWARE_ISSUE(tr("The opcode: 0x%1 is not in the processor supported command list!")
                                  .arg(hexText(opcode, OpcodeDigits)));
        return -1;
    }
    const int consumed = ZR8BitProcBase::execute(_instructionAt(pc, opcode, command->length()));
    if (consumed > 0)
        _regPC.setValue(static_cast<short>(pc + consumed));
    return consumed;
}

void ZR8BitProcMOS6510::mc_ADC(ZR8BitProcCommand *pCommand, const char *params)
{
    const AddressMode operand = _addressModeOfADC(pCommand->code());
    if (!operand) {
        ZR_SET_HARDWARE_ISSUE(
            tr("Opcode: 0x%1 is unknow for ADC command!").arg(hexText(pCommand->code(), OpcodeDigits)));
        return;
    }
    if (!_mainMemory && operand != &ZR8BitProcMOS6510::addressModeImmediate) {
        ZR_SET_HARDWARE_ISSUE(_noMainMemoryText());
        return;
    }

    const char m = (this->*operand)(params);
    const char a = _regAC.lo();
    const char c = _regPS.C();
    const int unsignedSum = byteOf(a) + byteOf(m) + c;
    const int signedSum = static_cast<signed char>(a) + static_cast<signed char>(m) + c;
    const auto result = static_cast<unsigned char>(unsignedSum);
    setStatusN(result);
    setStatusV(static_cast<short>(signedSum));
    setStatusZ(result);
    setStatusC(static_cast<short>(unsignedSum));
    _regAC.setLo(static_cast<char>(result));
}

void ZR8BitProcMOS6510::_setDescriptions()
{
    setDesc(tr("MOS 6510 Microprocessor with I/O"),
            tr("The 6510 is a low-cost m icroprocessor capable of solving a broad range of small-systems "
               "and peripheral-control problems at minimum cost to the user.<br>An 8 - bit Bi - "
               "Directional I / O Port is located on - chip with the Output Register at Address 0001 and "
               "the Data - Direction Register at Address 0000. The I / O Port is bit - by - bit "
               "programmable.<br>TheThree - State sixteen - bit Address Bus allows Direct Memory "
               "Accessing(DMA) and multi - processor systems sharing a common memory.<br>The internal "
               "processor architecture is identical to the Com m odore Sem iconductor Group 6502 to "
               "provide software compatibility."));
    _regAC.setDesc(tr("AC - Accumulator"),
                   tr("The accumulator is the main register for arithmetic and logic operations.Unlike the "
                      "index registers X and Y, it has a direct connection to the Arithmetic and Logic "
                      "Unit (ALU).This is why many operations are only available for the accumulator, not "
                      "the index registers."));
    _regPC.setDesc(
        tr("PC - Program Counter"),
        tr("This register points the address from which the next instruction byte(opcode or "
           "parameter) will be fetched. Unlike other registers, this one is 16 bits in "
           "length.The low and high 8 - bit halves of the register are called PCL and PCH, "
           "respectively.<br>The Program Counter may be read by pushing its value on the "
           "stack.This can be done either by jumping to a subroutine or by causing an interrupt."));
    _regSP.setDesc(tr("SP - Stack pointer"),
                   tr("The NMOS 65xx processors have 256 bytes of stack memory, ranging from $0100 to "
                      "$01FF.The S register is a 8 - bit offset to the stack page. In other words, "
                      "whenever anything is being pushed on the stack, it will be stored to the address "
                      "$0100 + S.<br>The Stack pointer can be read and written by transfering its value to "
                      "or from the index register X(see below) with the TSX and TXS instructions."));
    _regXR.setDesc(tr("X - Index register X"),
                   tr("This is the main register for addressing data with indices.It has a special "
                      "addressing mode, indexed indirect, which lets you to have a vector table on the\t"
                      "zero page."));
    _regYR.setDesc(tr("Y - Index register Y"),
                   tr("The Y register has the least operations available. On the other hand, only it has "
                      "the indirect indexed addressing mode that enables access to any memory place "
                      "without having to use self - modifying code."));
}

bool ZR8BitProcMOS6510::_initRegisters()
{
    const std::pair<QString, ZR8BitRegister *> registers[] = {
        {QStringLiteral("AC"), &_regAC}, {QStringLiteral("PC"), &_regPC}, {QStringLiteral("PS"), &_regPS},
        {QStringLiteral("SP"), &_regSP}, {QStringLiteral("XR"), &_regXR}, {QStringLiteral("YR"), &_regYR},
    };
    for (const auto &[id, reg] : registers) {
        const ZR8BitRegTypes type = reg == &_regPC ? ZR8BitRegType16Bit : ZR8BitRegType8Bit;
        if (!reg->init(id, type, 0, nullptr))
            return false;
    }
    _registers.clear();
    for (const auto &[id, reg] : registers)
        _registers.insert(id, reg);
    return true;
}

bool ZR8BitProcMOS6510::_initCommands()
{
    const char *const adcSlot = SLOT(mc_ADC(ZR8BitProcCommand *, const char *));
    const char *const adcTitle = QT_TR_NOOP("Add Memory to Accumulator with Carry");
    const Instruction instructions[] = {
        {AdcImmediate, 2, 2, "ADC", adcTitle, QT_TR_NOOP("Address mode: Directly<br>ADC #cc"), adcSlot},
        {AdcZeropage, 2, 3, "ADC", adcTitle, QT_TR_NOOP("Address mode: Zeropage<br>ADC cc"), adcSlot},
        {AdcZeropageX, 2, 4, "ADC", adcTitle, QT_TR_NOOP("Address mode: Zeropage, X<br>ADC cc,X"), adcSlot},
        {AdcAbsolute, 3, 4, "ADC", adcTitle, QT_TR_NOOP("Address mode: Absolute<br>ADC cccc"), adcSlot},
        {AdcAbsoluteX, 3, 5, "ADC", adcTitle, QT_TR_NOOP("Address mode: Absolute X<br>ADC cccc,X"), adcSlot},
        {AdcAbsoluteY, 3, 5, "ADC", adcTitle, QT_TR_NOOP("Address mode: Absolute Y<br>ADC cccc,Y"), adcSlot},
        {AdcIndexedIndirect, 2, 6, "ADC", adcTitle,
         QT_TR_NOOP("Address mode: Indexed-Indirect<br>ADC (cc,X)"), adcSlot},
        {AdcIndirectIndexed, 2, 6, "ADC", adcTitle,
         QT_TR_NOOP("Address mode: Indirect-Indexed<br>ADC (cc),Y"), adcSlot},
        {Tax, 1, 2, "TAX", QT_TR_NOOP("Transfer Accumulator to X"),
         QT_TR_NOOP("TAX affects 2 of the CPU's status flags:<br>The negative status flag is set if the byte "
                    "transferred is negative, i.e.has it's most significant bit set.<br>The zero flag is set "
                    "if the byte transferred is zero, or cleared if it is non - zero."),
         nullptr},
    };
    for (const Instruction &row : instructions) {
        ZR8BitProcCommand *command =
            _commands.addCommand(row.code, row.length, row.cycleCnt, QString::fromLatin1(row.assembly),
                                 tr(row.title), tr(row.text));
        if (!command)
            return false;
        if (row.slot) {
            const QMetaObject::Connection connection =
                connect(command, SIGNAL(execute(ZR8BitProcCommand *, const char *)), this, row.slot,
                        Qt::DirectConnection);
            Q_ASSERT(connection);
        }
    }
    return true;
}

QByteArray ZR8BitProcMOS6510::_instructionAt(int pc, unsigned char opcode, int length)
{
    const int size = qMax(1, length); // a row of length 0 fails by its opcode
    QByteArray instruction = _mainMemory->value(pc, size);
    for (int i = static_cast<int>(instruction.size()); i < size; ++i)
        instruction.append(_mainMemory->byteValue((pc + i) & AddressMask));
    // Another thread may have written to the memory since the opcode was read, and length is that of the
    // opcode.
    instruction[0] = static_cast<char>(opcode);
    return instruction;
}

QString ZR8BitProcMOS6510::_noMainMemoryText()
{
    return tr("Main memory must be defined!");
}

ZR8BitProcMOS6510::AddressMode ZR8BitProcMOS6510::_addressModeOfADC(unsigned char opcode)
{
    switch (opcode) {
    case AdcImmediate:
        return &ZR8BitProcMOS6510::addressModeImmediate;
    case AdcZeropage:
        return &ZR8BitProcMOS6510::addressModeZeropage;
    case AdcZeropageX:
        return &ZR8BitProcMOS6510::addressModeZeropageX;
    case AdcAbsolute:
        return &ZR8BitProcMOS6510::addressModeAbsolute;
    case AdcAbsoluteX:
        return &ZR8BitProcMOS6510::addressModeAbsoluteX;
    case AdcAbsoluteY:
        return &ZR8BitProcMOS6510::addressModeAbsoluteY;
    case AdcIndexedIndirect:
        return &ZR8BitProcMOS6510::addressModeIndexedIndirect;
    case AdcIndirectIndexed:
        return &ZR8BitProcMOS6510::addressModeIndirectIndexed;
    default:
        return nullptr;
    }
}

char ZR8BitProcMOS6510::addressModeImmediate(const char *params)
{
    return params[0];
}

char ZR8BitProcMOS6510::addressModeZeropage(const char *params)
{
    return _mainMemory->byteValue(byteOf(params[0]));
}

char ZR8BitProcMOS6510::addressModeZeropageX(const char *params)
{
    return _mainMemory->byteValue((byteOf(params[0]) + byteOf(_regXR.lo())) & ZeropageMask);
}

char ZR8BitProcMOS6510::addressModeAbsolute(const char *params)
{
    return _mainMemory->byteValue(wordOf(params));
}

char ZR8BitProcMOS6510::addressModeAbsoluteX(const char *params)
{
    return _mainMemory->byteValue((wordOf(params) + byteOf(_regXR.lo())) & AddressMask);
}

char ZR8BitProcMOS6510::addressModeAbsoluteY(const char *params)
{
    return _mainMemory->byteValue((wordOf(params) + byteOf(_regYR.lo())) & AddressMask);
}

// The two indirect modes wrap the address of the pointer, not that of its second byte: a pointer at 0xFF
// takes its high byte from 0x0100.

char ZR8BitProcMOS6510::addressModeIndexedIndirect(const char *params)
{
    const int pointerAddress = (byteOf(params[0]) + byteOf(_regXR.lo())) & ZeropageMask;
    return _mainMemory->byteValue(wordOf(_mainMemory->wordValue(pointerAddress)));
}

char ZR8BitProcMOS6510::addressModeIndirectIndexed(const char *params)
{
    const int pointer = wordOf(_mainMemory->wordValue(byteOf(params[0])));
    return _mainMemory->byteValue((pointer + byteOf(_regYR.lo())) & AddressMask);
}

void ZR8BitProcMOS6510::setStatusN(const unsigned char &value)
{
    _regPS.setN((value & 0x80) ? 1 : 0);
}

void ZR8BitProcMOS6510::setStatusV(const short &value)
{
    _regPS.setV(value > 127 || value < -128 ? 1 : 0);
}

void ZR8BitProcMOS6510::setStatusZ(const unsigned char &value)
{
    _regPS.setZ(value == 0 ? 1 : 0);
}

void ZR8BitProcMOS6510::setStatusC(const short &value)
{
    _regPS.setC(value > 255 ? 1 : 0);
}

} // namespace ZR
