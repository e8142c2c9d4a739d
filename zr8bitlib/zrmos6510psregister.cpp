#include <zr8bitlib/zrmos6510psregister.h>

namespace ZR {

namespace {

/// Bit numbers in the register. Without an underlying type: Qt's lupdate would lose the class that the texts
/// below belong to.
enum Bit
{
    BitC,
    BitZ,
    BitI,
    BitD,
    BitB,
    BitUnused,
    BitV,
    BitN
};

} // namespace

ZRMOS6510PSRegister::ZRMOS6510PSRegister(const QString &name, QObject *parent)
    : ZR8BitRegister(name, parent)
{
    setDesc(tr("PS - Processor status"),
            tr("This 8-bit register stores the state of the processor. The\tbits in this register are "
               "called flags. Most of the flags have something to do with arithmetic operations.<br><br>"
               "The PS register can be read by pushing it on the stack (with PHP or by causing an "
               "interrupt). If you only need to read one flag, you can use the branch instructions. "
               "Setting the flags is possible by pulling the P register from stack or by using the flag "
               "set or clear instructions.<br><br>Following is a list of the flags, starting from the 8th "
               "bit of the PS register (bit 7, value $80):<br><br>N - Negative flag:<br>This flag will be "
               "set after any arithmetic operations (when any of the registers A, X or Y is being loaded\t"
               "with a value). Generally, the N flag will be copied from the topmost bit of the register "
               "being loaded.<br><br>Note that TXS(Transfer X to S) is not an arithmetic operation. Also "
               "note that the BIT instruction affects the Negative flag just like arithmetic operations. "
               "Finally, the Negative flag behaves differently in Decimal operations(see description "
               "below).<br><br>V - Overflow flag:<br>Like the Negative flag, this flag is intended to be "
               "used with 8 - bit signed integer numbers.The flag will\tbe affected by addition and "
               "subtraction, the instructions PLP, CLV and BIT, and the hardware signal- SO.Note that "
               "there is no SEV instruction, even though the MOS engineers loved to use East European "
               "abbreviations, like DDR(Deutsche Demokratische Republik vs Data Direction Register). (The "
               "Russian abbreviation for their former trade association COMECON is SEV.) The - SO\t(Set "
               "Overflow) signal is available on some processors, at least the 6502, to set the V "
               "flag.This enables response to an I / O activity in equal or less than three clock cycles "
               "when using a BVC instruction branching to itself($50 $FE).<br><br>The CLV instruction "
               "clears the V flag, and the PLP and BIT instructions copy the flag value from the bit 6 of "
               "the topmost stack entry or from memory.<br><br>After a binary addition or subtraction, the "
               "V flag\twill be set on a sign overflow, cleared otherwise. What is a sign overflow ? For "
               "instance, if you are trying to add 123 and 45 together, the result(168) does not fit in a "
               "8 - bit signed integer(upper limit 127 and lower limit - 128).Similarly, adding - 123 to - "
               "45 causes the overflow, just like subtracting - 45 from 123 or 123 from - 45 would do.<br>"
               "<br>Like the N flag, the V flag will not be set as expected in the Decimal mode.Later in "
               "this document\tis a precise operation description. <br><br>A common misbelief is that the "
               "V flag could only be set by arithmetic operations, not cleared.\t1 unused flag to the "
               "current knowledge, this flag is always 1.<br><br>B - Break flag:<br>This flag is used to "
               "distinguish software(BRK) interrupts from hardware interrupts(IRQ or NMI). The B flag is "
               "always set except when the P register is being pushed on stack when jumping to an "
               "interrupt routine to process only a hardware interrupt.<br><br>The official NMOS 65xx "
               "documentation claims that the BRK instruction could only cause a jump to the IRQ "
               "vector($FFFE). However, if an NMI interrupt occurs while executing a BRK instruction, the "
               "processor will jump to the NMI vector($FFFA), and the P register will be pushed on the "
               "stack with the B flag set.<br><br>D - Decimal mode flag:<br>This flag is used to select "
               "the(Binary Coded) Decimal mode for addition and subtraction. In most applications, the "
               "flag is zero. The Decimal mode has many oddities, and it operates differently on CMOS "
               "processors. See the description\tof the ADC, SBC and ARR instructions below.<br><br>I - "
               "Interrupt disable flag:<br>This flag can be used to prevent the processor from jumping to "
               "the IRQ handler vector($FFFE) whenever the hardware line - IRQ is active. The flag will be "
               "automatically set after taking an interrupt, so that the processor would not keep jumping "
               "to the interrupt routine if the - IRQ signal remains low for several clock cycles.<br><br>"
               "Z - Zero flag:<br>The Zero flag will be affected in the same cases than the Negative "
               "flag.Generally, it will be set if an arithmetic register is being loaded with the value "
               "zero, and cleared otherwise.The flag will behave differently in Decimal operations.<br><br>"
               "C - Carry flag:<br>This flag is used in additions, subtractions, comparisons and bit "
               "rotations. In additions and subtractions, it acts as a 9th bit and lets you to chain "
               "operations to calculate with bigger than 8 - bit numbers. When subtracting, the Carry flag "
               "is the negative of Borrow: if an overflow occurs, the flag will be clear, otherwise "
               "set.Comparisons are a special case of subtraction: they assume Carry flag\tset and Decimal "
               "flag clear, and do not store the result of the subtraction anywhere.<br><br>There are four "
               "kinds of bit rotations. All of them\tstore the bit that is being rotated off to the Carry "
               "flag. The left shifting instructions are ROL and ASL. ROL copies the initial Carry flag to "
               "the lowmost bit\tof the byte; ASL always clears it.Similarly, the ROR and LSR instructions "
               "shift to the right."));
}

ZRMOS6510PSRegister::~ZRMOS6510PSRegister() = default;

const QString ZRMOS6510PSRegister::className()
{
    return QStringLiteral("ZRMOS6510PSRegister");
}

bool ZRMOS6510PSRegister::init(const QString &id, const ZR8BitRegTypes &type, const int &address,
                               ZR8BitRAM *memory)
{
    if (!ZR8BitRegister::init(id, type, address, memory))
        return false;
    setLoBit(BitUnused, 1);
    return true;
}

char ZRMOS6510PSRegister::N()
{
    return loBit(BitN);
}

char ZRMOS6510PSRegister::V()
{
    return loBit(BitV);
}

char ZRMOS6510PSRegister::B()
{
    return loBit(BitB);
}

char ZRMOS6510PSRegister::D()
{
    return loBit(BitD);
}

char ZRMOS6510PSRegister::I()
{
    return loBit(BitI);
}

char ZRMOS6510PSRegister::Z()
{
    return loBit(BitZ);
}

char ZRMOS6510PSRegister::C()
{
    return loBit(BitC);
}

void ZRMOS6510PSRegister::setN(const char &value)
{
    setLoBit(BitN, value);
}

void ZRMOS6510PSRegister::setV(const char &value)
{
    setLoBit(BitV, value);
}

void ZRMOS6510PSRegister::setB(const char &value)
{
    setLoBit(BitB, value);
}

void ZRMOS6510PSRegister::setD(const char &value)
{
    setLoBit(BitD, value);
}

void ZRMOS6510PSRegister::setI(const char &value)
{
    setLoBit(BitI, value);
}

void ZRMOS6510PSRegister::setZ(const char &value)
{
    setLoBit(BitZ, value);
}

void ZRMOS6510PSRegister::setC(const char &value)
{
    setLoBit(BitC, value);
}

} // namespace ZR
