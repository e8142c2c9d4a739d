#pragma once

// What the instructions of the MOS 6510 are: a line for each mnemonic and each addressing mode, the matrix of
// opcodes, and the effects that the mnemonics name. Private to the kit.

#include <zr8bitlib/zr8bitram.h>

#include <QtCore/QCoreApplication>

#include <array>
#include <iterator>
#include <optional>

namespace ZR::MOS6510 {

// clang-format off
/// Positions of the registers in their block.
enum Register { AC, XR, YR, SP, PS, PC, PCHigh, RegisterBytes };
enum Flag { FlagC = 0x01, FlagZ = 0x02, FlagI = 0x04, FlagD = 0x08,
            FlagB = 0x10, FlagUnused = 0x20, FlagV = 0x40, FlagN = 0x80 };
enum Vector { VectorNMI = 0xFFFA, VectorReset = 0xFFFC, VectorIRQ = 0xFFFE };
// clang-format on

constexpr int AddressMask = 0xFFFF;
constexpr int PageMask = 0xFF00;
constexpr int ByteMask = 0x00FF;
constexpr int StackPage = 0x0100;
constexpr int UnstableBits = 0xEE; ///< what ANE and LXA find in the accumulator besides its own
constexpr int InChip = -1;         ///< in place of an address: the operand is no byte of the memory

/// Registers, memory and the instruction that runs, as the effects see them. What sets something returns it,
/// or 0 where nobody asks.
struct Chip
{
    int get(Register reg) const { return registers[reg]; }
    int set(Register reg, int value) { return registers[reg] = static_cast<quint8>(value); }
    int programCounter() const { return get(PC) | get(PCHigh) << 8; }

    bool flag(Flag flag) const { return (get(PS) & flag) != 0; }
    int carry() const { return flag(FlagC) ? 1 : 0; }
    /// Copies the flags of the mask from bits.
    int setFlags(int mask, int bits) { return set(PS, (get(PS) & ~mask) | (bits & mask)); }
    int setFlag(Flag flag, bool on) { return setFlags(flag, on ? flag : 0); }
    /// Sets N and Z by the low byte of a value, and returns that byte.
    int setNZ(int value)
    {
        const int byte = value & ByteMask;
        setFlags(FlagN | FlagZ, (byte & FlagN) | (byte == 0 ? FlagZ : 0));
        return byte;
    }
    /// Lets interrupts see the flag I as it is now for one more instruction.
    void delayI() { delayedI = flag(FlagI); }

    int read(int at) const { return static_cast<quint8>(memory->byteValue(at)); }
    void write(int at, int value) const { memory->setByteValue(static_cast<char>(value), at); }
    /// The word at an address. Its high byte comes from the same page, as the chip takes it.
    int word(int at) const
    {
        if ((at & ByteMask) == ByteMask)
            return read(at) | read(at & PageMask) << 8;
        return static_cast<quint16>(memory->wordValue(at));
    }

    /// Takes an operand that has no address.
    int hold(int operand)
    {
        held = operand;
        return InChip;
    }
    int offset(int from, int distance)
    {
        base = from;
        return (from + distance) & AddressMask;
    }
    /// Whether offset() left the page.
    bool crosses() const { return base != InChip && ((base ^ address) & PageMask) != 0; }
    int operand() const { return address == InChip ? held : read(address); }
    /// Writes to where the operand is.
    void putBack(int value)
    {
        if (address == InChip)
            set(AC, value);
        else
            write(address, value);
    }

    int push(int value)
    {
        write(StackPage | get(SP), value);
        return set(SP, get(SP) - 1);
    }
    int pull() { return read(StackPage | set(SP, get(SP) + 1)); }
    int pushWord(int value)
    {
        push(value >> 8);
        return push(value);
    }
    int pullWord()
    {
        const int low = pull();
        return low | pull() << 8;
    }
    int pushStatus(int b) { return push((get(PS) & ~FlagB) | FlagUnused | b); }
    int pullStatus() { return setFlags(~(FlagB | FlagUnused), pull()); }
    /// Returns the address that the vector holds.
    int interrupt(int returnAddress, int b, Vector vector)
    {
        pushWord(returnAddress);
        pushStatus(b);
        setFlag(FlagI, true);
        return word(vector);
    }

    quint8 *registers;                 ///< RegisterBytes of them
    ZR8BitRAM *memory = nullptr;       ///< the main memory, borrowed
    quint64 cycles = 0;                ///< since the chip was made
    int pc = 0;                        ///< where the instruction is
    int target = 0;                    ///< where the next one is
    int base = InChip;                 ///< the address without the offset; InChip for none
    int address = InChip;              ///< the operand's address
    int held = 0;                      ///< the operand when it has no address
    bool fetched = false;              ///< whether the instruction came from memory at pc, by a step
    std::optional<bool> delayedI = {}; ///< the flag I as interrupts see it, while it is not that of PS
};

/// Gives the operand's address, from the operand bytes as a number.
using Locate = int (*)(Chip &c, int bytes);

// clang-format off
struct Locations
{
    static int implied(Chip &c, int bytes) { return c.hold(bytes); }
    static int accumulator(Chip &c, int) { return c.hold(c.get(AC)); }
    static int direct(Chip &, int bytes) { return bytes; }
    static int indirect(Chip &c, int bytes) { return c.word(bytes); }
    static int relative(Chip &c, int bytes) { return c.offset(c.target, static_cast<signed char>(bytes)); }
    template <Register X> static int zeropage(Chip &c, int bytes) { return (bytes + c.get(X)) & ByteMask; }
    template <Register X> static int absolute(Chip &c, int bytes) { return c.offset(bytes, c.get(X)); }
    static int indexedIndirect(Chip &c, int bytes) { return c.word(zeropage<XR>(c, bytes)); }
    static int indirectIndexed(Chip &c, int bytes) { return absolute<YR>(c, c.word(bytes)); }
};
// clang-format on

/// What a mnemonic does. m is the operand, where the mnemonic reads one; the result is what it writes.
using Effect = int (*)(Chip &c, int m);

struct Effects
{
    /// Two effects, the second one with the result of the first.
    template <Effect First, Effect Second>
    static int both(Chip &c, int m)
    {
        const int result = First(c, m);
        Second(c, result);
        return result;
    }

    /// Gives the flags and the result of a shift, from the bit that it shifts out.
    static int shifted(Chip &c, int result, int out)
    {
        c.setFlag(FlagC, out != 0);
        return c.setNZ(result);
    }

    /// Gives the flags of a comparison, and the difference.
    static int difference(Chip &c, int value, int m)
    {
        c.setFlag(FlagC, value >= m);
        return c.setNZ(value - m);
    }

    // clang-format off
    static int nothing(Chip &, int) { return 0; }
    template <Register R> static int load(Chip &c, int m) { return c.set(R, c.setNZ(m)); }
    template <Register R> static int store(Chip &c, int) { return c.get(R); }
    template <Register R, Register To> static int transfer(Chip &c, int) { return load<To>(c, c.get(R)); }
    static int txs(Chip &c, int) { return c.set(SP, c.get(XR)); }
    template <int Step> static int count(Chip &c, int m) { return c.setNZ(m + Step); }
    template <Register R, int Step> static int count(Chip &c, int) { return load<R>(c, c.get(R) + Step); }
    template <Register R> static int compare(Chip &c, int m) { return difference(c, c.get(R), m); }
    template <Flag F, bool On> static int put(Chip &c, int) { return c.setFlag(F, On); }
    template <bool On> static int putI(Chip &c, int) { c.delayI(); return c.setFlag(FlagI, On); }

    static int andAC(Chip &c, int m) { return load<AC>(c, c.get(AC) & m); }
    static int eor(Chip &c, int m) { return load<AC>(c, c.get(AC) ^ m); }
    static int ora(Chip &c, int m) { return load<AC>(c, c.get(AC) | m); }
    static int asl(Chip &c, int m) { return shifted(c, m << 1, m & 0x80); }
    static int lsr(Chip &c, int m) { return shifted(c, m >> 1, m & 0x01); }
    static int rol(Chip &c, int m) { return shifted(c, m << 1 | c.carry(), m & 0x80); }
    static int ror(Chip &c, int m) { return shifted(c, m >> 1 | c.carry() << 7, m & 0x01); }

    static int pha(Chip &c, int) { return c.push(c.get(AC)); }
    static int php(Chip &c, int) { return c.pushStatus(FlagB); }
    static int pla(Chip &c, int) { return load<AC>(c, c.pull()); }
    static int plp(Chip &c, int) { c.delayI(); return c.pullStatus(); }
    static int jmp(Chip &c, int) { return c.target = c.address; }
    static int rts(Chip &c, int) { return c.target = c.pullWord() + 1; }
    static int rti(Chip &c, int) { c.pullStatus(); return c.target = c.pullWord(); }
    /// The return address skips a byte.
    static int brk(Chip &c, int) { return c.target = c.interrupt(c.pc + 2, FlagB, VectorIRQ); }
    /// Leaves PC where it is. That the processor stops is up to its handler.
    static int jam(Chip &c, int) { return c.target = c.pc; }

    static int sax(Chip &c, int) { return c.get(AC) & c.get(XR); }
    static int anc(Chip &c, int m) { return c.setFlag(FlagC, (andAC(c, m) & FlagN) != 0); }
    static int alr(Chip &c, int m) { return c.set(AC, lsr(c, c.get(AC) & m)); }
    static int sbx(Chip &c, int m) { return c.set(XR, difference(c, sax(c, m), m)); }
    static int lax(Chip &c, int m) { return c.set(XR, load<AC>(c, m)); }
    static int las(Chip &c, int m) { return c.set(SP, lax(c, c.get(SP) & m)); }
    static int ane(Chip &c, int m) { return load<AC>(c, (c.get(AC) | UnstableBits) & c.get(XR) & m); }
    static int lxa(Chip &c, int m) { return lax(c, (c.get(AC) | UnstableBits) & m); }
    // clang-format on

    static int bit(Chip &c, int m)
    {
        return c.setFlags(FlagN | FlagV | FlagZ, (m & (FlagN | FlagV)) | ((c.get(AC) & m) == 0 ? FlagZ : 0));
    }

    /// In decimal mode Z is that of the binary sum, and N and V are those before the high digit is corrected.
    static int adc(Chip &c, int m)
    {
        const int a = c.get(AC);
        const int carry = c.carry();
        const bool decimal = c.flag(FlagD);
        int sum = a + m + carry;
        c.setNZ(sum);
        if (decimal) {
            int low = (a & 0x0F) + (m & 0x0F) + carry;
            if (low > 0x09)
                low = ((low + 0x06) & 0x0F) + 0x10;
            sum = (a & 0xF0) + (m & 0xF0) + low;
            c.setFlags(FlagN, sum);
        }
        c.setFlag(FlagV, (~(a ^ m) & (a ^ sum) & 0x80) != 0);
        if (decimal && sum > 0x9F)
            sum += 0x60;
        c.setFlag(FlagC, sum > ByteMask);
        return c.set(AC, sum);
    }

    /// In decimal mode all flags are those of the binary difference.
    static int sbc(Chip &c, int m)
    {
        const int a = c.get(AC);
        const int borrow = 1 - c.carry();
        int result = a - m - borrow;
        c.setNZ(result);
        c.setFlag(FlagV, ((a ^ m) & (a ^ result) & 0x80) != 0);
        c.setFlag(FlagC, result >= 0);
        if (c.flag(FlagD)) {
            int low = (a & 0x0F) - (m & 0x0F) - borrow;
            if (low < 0)
                low = ((low - 0x06) & 0x0F) - 0x10;
            result = (a & 0xF0) - (m & 0xF0) + low;
            if (result < 0)
                result -= 0x60;
        }
        return c.set(AC, result);
    }

    template <Flag F, bool On>
    static int branch(Chip &c, int)
    {
        if (c.flag(F) != On)
            return 0;
        c.cycles += c.crosses() ? 2 : 1;
        return jmp(c, 0);
    }

    /// The chip pushes before it fetches the high byte of the address, which the push may have changed.
    static int jsr(Chip &c, int)
    {
        const int last = (c.pc + 2) & AddressMask;
        c.pushWord(last);
        return c.target = c.fetched ? (c.address & ByteMask) | c.read(last) << 8 : c.address;
    }

    /// V and C tell what the correction of decimal digits looks at.
    static int arr(Chip &c, int m)
    {
        const int masked = c.get(AC) & m;
        int result = c.setNZ(masked >> 1 | c.carry() << 7);
        c.setFlag(FlagV, ((masked ^ result) & 0x40) != 0);
        c.setFlag(FlagC, (masked & 0x80) != 0);
        if (c.flag(FlagD)) {
            c.setFlag(FlagC, (masked & 0xF0) + (masked & 0x10) > 0x50);
            if ((masked & 0x0F) + (masked & 0x01) > 0x05)
                result = (result & 0xF0) | ((result + 0x06) & 0x0F);
            if (c.flag(FlagC))
                result += 0x60;
        }
        return c.set(AC, result);
    }

    /// Where the index leaves the page, what is written becomes the high byte of the address, too.
    template <Effect Value>
    static int storeAndHigh(Chip &c, int)
    {
        const int value = Value(c, 0) & ((c.base >> 8) + 1);
        if (c.crosses())
            c.address = (c.address & ByteMask) | value << 8;
        return value;
    }

    static int tas(Chip &c, int m)
    {
        c.set(SP, sax(c, m));
        return storeAndHigh<sax>(c, m);
    }
};

/// What a mnemonic does with its operand: nothing but to use its address, if it has one; read it; write it;
/// read it and write it back.
// clang-format off
enum Access { Plain, Read, Write, Modify };
// clang-format on

struct Mnemonic
{
    char name[4];
    Access access;
    int stackCycles;   ///< what it takes more than its mode, for its way to the stack
    const char *title; ///< null where the base has the rows
    Effect effect;
    const char *note = nullptr; ///< what is to be known beyond the title
};

struct Mode
{
    char id[3];          ///< as the matrix writes it
    bool inMemory;       ///< whether it gives an address to read or write
    int length;          ///< bytes of the instruction
    const char *operand; ///< as assemblers write it
    const char *name;    ///< as the base writes it
    int cycles[4];       ///< by Access, the least; 0 where the mode does not go with it
    Locate locate;
};

struct Tables : Locations, Effects
{
    Q_DECLARE_TR_FUNCTIONS(ZR::ZR8BitProcMOS6510Full)

public:
    // clang-format off
    static constexpr Mode modes[] = {
        {"--", false, 1, "",        QT_TR_NOOP("Implied"), {2, 2, 0, 0}, implied},
        {"ac", false, 1, "A",       QT_TR_NOOP("Accumulator"), {0, 0, 0, 2}, accumulator},
        {"im", false, 2, "#cc",     QT_TR_NOOP("Directly"), {0, 2, 0, 0}, implied},
        {"re", false, 2, "rr",      QT_TR_NOOP("Relative"), {2, 0, 0, 0}, relative},
        {"zp", true,  2, "cc",      QT_TR_NOOP("Zeropage"), {0, 3, 3, 5}, direct},
        {"zx", true,  2, "cc,X",    QT_TR_NOOP("Zeropage, X"), {0, 4, 4, 6}, zeropage<XR>},
        {"zy", true,  2, "cc,Y",    QT_TR_NOOP("Zeropage, Y"), {0, 4, 4, 0}, zeropage<YR>},
        {"ab", true,  3, "cccc",    QT_TR_NOOP("Absolute"), {3, 4, 4, 6}, direct},
        {"ax", true,  3, "cccc,X",  QT_TR_NOOP("Absolute X"), {0, 4, 5, 7}, absolute<XR>},
        {"ay", true,  3, "cccc,Y",  QT_TR_NOOP("Absolute Y"), {0, 4, 5, 7}, absolute<YR>},
        {"in", true,  3, "(cccc)",  QT_TR_NOOP("Indirect"), {5, 0, 0, 0}, indirect},
        {"ix", true,  2, "(cc,X)",  QT_TR_NOOP("Indexed-Indirect"), {0, 6, 6, 8}, indexedIndirect},
        {"iy", true,  2, "(cc),Y",  QT_TR_NOOP("Indirect-Indexed"), {0, 5, 6, 8}, indirectIndexed},
    };

    static constexpr char arrNote[] = QT_TR_NOOP("V and C tell what a decimal correction looks at.");
    static constexpr char aneNote[] = QT_TR_NOOP("Unstable. Here: (Accumulator OR $EE) AND X AND Memory.");
    static constexpr char lxaNote[] = QT_TR_NOOP("Unstable. Here: (Accumulator OR $EE) AND Memory.");
    static constexpr char highNote[] = QT_TR_NOOP(
        "Unstable. HIGH is the high byte of the address without the index, plus one. When the index leaves "
        "the page, what is stored is also the high byte of the address.");

    static constexpr Mnemonic mnemonics[] = {
        {"ADC", Read,   0, nullptr, adc},
        {"AND", Read,   0, QT_TR_NOOP("AND Memory with Accumulator"), andAC},
        {"ASL", Modify, 0, QT_TR_NOOP("Shift Left by one Bit, Bit 7 into Carry"), asl},
        {"BCC", Plain,  0, QT_TR_NOOP("Branch if Carry is clear"), branch<FlagC, false>},
        {"BCS", Plain,  0, QT_TR_NOOP("Branch if Carry is set"), branch<FlagC, true>},
        {"BEQ", Plain,  0, QT_TR_NOOP("Branch if Zero is set, that is if equal"), branch<FlagZ, true>},
        {"BIT", Read,   0, QT_TR_NOOP("Test Memory with Accumulator, Bits 7 and 6 into N and V"), bit},
        {"BMI", Plain,  0, QT_TR_NOOP("Branch if Negative is set"), branch<FlagN, true>},
        {"BNE", Plain,  0, QT_TR_NOOP("Branch if Zero is clear, that is if not equal"), branch<FlagZ, false>},
        {"BPL", Plain,  0, QT_TR_NOOP("Branch if Negative is clear"), branch<FlagN, false>},
        {"BRK", Plain,  5, QT_TR_NOOP("Interrupt by Program, which skips the Byte behind it"), brk},
        {"BVC", Plain,  0, QT_TR_NOOP("Branch if Overflow is clear"), branch<FlagV, false>},
        {"BVS", Plain,  0, QT_TR_NOOP("Branch if Overflow is set"), branch<FlagV, true>},
        {"CLC", Plain,  0, QT_TR_NOOP("Clear Carry"), put<FlagC, false>},
        {"CLD", Plain,  0, QT_TR_NOOP("Clear Decimal Mode"), put<FlagD, false>},
        {"CLI", Plain,  0, QT_TR_NOOP("Allow Interrupts, behind the next Instruction"), putI<false>},
        {"CLV", Plain,  0, QT_TR_NOOP("Clear Overflow"), put<FlagV, false>},
        {"CMP", Read,   0, QT_TR_NOOP("Compare Accumulator with Memory"), compare<AC>},
        {"CPX", Read,   0, QT_TR_NOOP("Compare X with Memory"), compare<XR>},
        {"CPY", Read,   0, QT_TR_NOOP("Compare Y with Memory"), compare<YR>},
        {"DEC", Modify, 0, QT_TR_NOOP("Subtract 1 from Memory"), count<-1>},
        {"DEX", Plain,  0, QT_TR_NOOP("Subtract 1 from X"), count<XR, -1>},
        {"DEY", Plain,  0, QT_TR_NOOP("Subtract 1 from Y"), count<YR, -1>},
        {"EOR", Read,   0, QT_TR_NOOP("Exclusive-OR Memory with Accumulator"), eor},
        {"INC", Modify, 0, QT_TR_NOOP("Add 1 to Memory"), count<1>},
        {"INX", Plain,  0, QT_TR_NOOP("Add 1 to X"), count<XR, 1>},
        {"INY", Plain,  0, QT_TR_NOOP("Add 1 to Y"), count<YR, 1>},
        {"JMP", Plain,  0, QT_TR_NOOP("Jump"), jmp},
        {"JSR", Plain,  3, QT_TR_NOOP("Jump to Subroutine, with the Address of its last Byte pushed"), jsr},
        {"LDA", Read,   0, QT_TR_NOOP("Load Accumulator from Memory"), load<AC>},
        {"LDX", Read,   0, QT_TR_NOOP("Load X from Memory"), load<XR>},
        {"LDY", Read,   0, QT_TR_NOOP("Load Y from Memory"), load<YR>},
        {"LSR", Modify, 0, QT_TR_NOOP("Shift Right by one Bit, Bit 0 into Carry"), lsr},
        {"NOP", Read,   0, QT_TR_NOOP("Do nothing"), nothing},
        {"ORA", Read,   0, QT_TR_NOOP("OR Memory with Accumulator"), ora},
        {"PHA", Plain,  1, QT_TR_NOOP("Push Accumulator onto the Stack"), pha},
        {"PHP", Plain,  1, QT_TR_NOOP("Push Processor Status onto the Stack, with Break set"), php},
        {"PLA", Plain,  2, QT_TR_NOOP("Pull Accumulator from the Stack"), pla},
        {"PLP", Plain,  2, QT_TR_NOOP("Pull Processor Status from the Stack"), plp},
        {"ROL", Modify, 0, QT_TR_NOOP("Rotate Left by one Bit through Carry"), rol},
        {"ROR", Modify, 0, QT_TR_NOOP("Rotate Right by one Bit through Carry"), ror},
        {"RTI", Plain,  4, QT_TR_NOOP("Return from Interrupt"), rti},
        {"RTS", Plain,  4, QT_TR_NOOP("Return from Subroutine"), rts},
        {"SBC", Read,   0, QT_TR_NOOP("Subtract Memory from Accumulator with Borrow"), sbc},
        {"SEC", Plain,  0, QT_TR_NOOP("Set Carry"), put<FlagC, true>},
        {"SED", Plain,  0, QT_TR_NOOP("Set Decimal Mode"), put<FlagD, true>},
        {"SEI", Plain,  0, QT_TR_NOOP("Refuse Interrupts, behind the next Instruction"), putI<true>},
        {"STA", Write,  0, QT_TR_NOOP("Store Accumulator in Memory"), store<AC>},
        {"STX", Write,  0, QT_TR_NOOP("Store X in Memory"), store<XR>},
        {"STY", Write,  0, QT_TR_NOOP("Store Y in Memory"), store<YR>},
        {"TAX", Plain,  0, nullptr, transfer<AC, XR>},
        {"TAY", Plain,  0, QT_TR_NOOP("Transfer Accumulator to Y"), transfer<AC, YR>},
        {"TSX", Plain,  0, QT_TR_NOOP("Transfer Stack Pointer to X"), transfer<SP, XR>},
        {"TXA", Plain,  0, QT_TR_NOOP("Transfer X to Accumulator"), transfer<XR, AC>},
        {"TXS", Plain,  0, QT_TR_NOOP("Transfer X to Stack Pointer, leaving the Flags"), txs},
        {"TYA", Plain,  0, QT_TR_NOOP("Transfer Y to Accumulator"), transfer<YR, AC>},

        {"ALR", Read,   0, QT_TR_NOOP("AND, then LSR A"), alr},
        {"ANC", Read,   0, QT_TR_NOOP("AND, with Negative also into Carry"), anc},
        {"ANE", Read,   0, QT_TR_NOOP("AND Memory with X and Accumulator"), ane, aneNote},
        {"ARR", Read,   0, QT_TR_NOOP("AND, then ROR A with flags of its own"), arr, arrNote},
        {"DCP", Modify, 0, QT_TR_NOOP("DEC, then CMP"), both<count<-1>, compare<AC>>},
        {"ISC", Modify, 0, QT_TR_NOOP("INC, then SBC"), both<count<1>, sbc>},
        {"JAM", Plain,  0, QT_TR_NOOP("Stop until a Reset"), jam},
        {"LAS", Read,   0, QT_TR_NOOP("AND Memory with Stack Pointer, into it, Accumulator and X"), las},
        {"LAX", Read,   0, QT_TR_NOOP("Load Accumulator and X from Memory"), lax},
        {"LXA", Read,   0, QT_TR_NOOP("AND Memory with Accumulator, into it and X"), lxa, lxaNote},
        {"RLA", Modify, 0, QT_TR_NOOP("ROL, then AND"), both<rol, andAC>},
        {"RRA", Modify, 0, QT_TR_NOOP("ROR, then ADC"), both<ror, adc>},
        {"SAX", Write,  0, QT_TR_NOOP("Store Accumulator AND X in Memory"), sax},
        {"SBX", Read,   0, QT_TR_NOOP("Accumulator AND X less Memory into X, with the flags of CMP"), sbx},
        {"SHA", Write,  0, QT_TR_NOOP("Store Accumulator AND X AND HIGH"), storeAndHigh<sax>, highNote},
        {"SHX", Write,  0, QT_TR_NOOP("Store X AND HIGH"), storeAndHigh<store<XR>>, highNote},
        {"SHY", Write,  0, QT_TR_NOOP("Store Y AND HIGH"), storeAndHigh<store<YR>>, highNote},
        {"SLO", Modify, 0, QT_TR_NOOP("ASL, then ORA"), both<asl, ora>},
        {"SRE", Modify, 0, QT_TR_NOOP("LSR, then EOR"), both<lsr, eor>},
        {"TAS", Write,  0, QT_TR_NOOP("Accumulator AND X into Stack Pointer, store AND HIGH"), tas, highNote},
    };

    /// The opcodes, a line for each high digit: mnemonic and mode, a star in front of the undocumented ones.
    static constexpr char opcodes[] =
        " BRK-- ORAix*JAM--*SLOix*NOPzp ORAzp ASLzp*SLOzp PHP-- ORAim ASLac*ANCim*NOPab ORAab ASLab*SLOab"
        " BPLre ORAiy*JAM--*SLOiy*NOPzx ORAzx ASLzx*SLOzx CLC-- ORAay*NOP--*SLOay*NOPax ORAax ASLax*SLOax"
        " JSRab ANDix*JAM--*RLAix BITzp ANDzp ROLzp*RLAzp PLP-- ANDim ROLac*ANCim BITab ANDab ROLab*RLAab"
        " BMIre ANDiy*JAM--*RLAiy*NOPzx ANDzx ROLzx*RLAzx SEC-- ANDay*NOP--*RLAay*NOPax ANDax ROLax*RLAax"
        " RTI-- EORix*JAM--*SREix*NOPzp EORzp LSRzp*SREzp PHA-- EORim LSRac*ALRim JMPab EORab LSRab*SREab"
        " BVCre EORiy*JAM--*SREiy*NOPzx EORzx LSRzx*SREzx CLI-- EORay*NOP--*SREay*NOPax EORax LSRax*SREax"
        " RTS-- ADCix*JAM--*RRAix*NOPzp ADCzp RORzp*RRAzp PLA-- ADCim RORac*ARRim JMPin ADCab RORab*RRAab"
        " BVSre ADCiy*JAM--*RRAiy*NOPzx ADCzx RORzx*RRAzx SEI-- ADCay*NOP--*RRAay*NOPax ADCax RORax*RRAax"
        "*NOPim STAix*NOPim*SAXix STYzp STAzp STXzp*SAXzp DEY--*NOPim TXA--*ANEim STYab STAab STXab*SAXab"
        " BCCre STAiy*JAM--*SHAiy STYzx STAzx STXzy*SAXzy TYA-- STAay TXS--*TASay*SHYax STAax*SHXay*SHAay"
        " LDYim LDAix LDXim*LAXix LDYzp LDAzp LDXzp*LAXzp TAY-- LDAim TAX--*LXAim LDYab LDAab LDXab*LAXab"
        " BCSre LDAiy*JAM--*LAXiy LDYzx LDAzx LDXzy*LAXzy CLV-- LDAay TSX--*LASay LDYax LDAax LDXay*LAXay"
        " CPYim CMPix*NOPim*DCPix CPYzp CMPzp DECzp*DCPzp INY-- CMPim DEX--*SBXim CPYab CMPab DECab*DCPab"
        " BNEre CMPiy*JAM--*DCPiy*NOPzx CMPzx DECzx*DCPzx CLD-- CMPay*NOP--*DCPay*NOPax CMPax DECax*DCPax"
        " CPXim SBCix*NOPim*ISCix CPXzp SBCzp INCzp*ISCzp INX-- SBCim NOP--*SBCim CPXab SBCab INCab*ISCab"
        " BEQre SBCiy*JAM--*ISCiy*NOPzx SBCzx INCzx*ISCzx SED-- SBCay*NOP--*ISCay*NOPax SBCax INCax*ISCax";
    // clang-format on
};

/// What an opcode stands for.
struct Instruction
{
    std::size_t mnemonicAt = std::size(Tables::mnemonics); ///< where its line is
    std::size_t modeAt = std::size(Tables::modes);         ///< where its line is
    bool documented = false;

    constexpr const Mnemonic &mnemonic() const { return Tables::mnemonics[mnemonicAt]; }
    constexpr const Mode &mode() const { return Tables::modes[modeAt]; }
    constexpr int modeCycles() const { return mode().cycles[mnemonic().access]; }
    constexpr int cycles() const { return modeCycles() + mnemonic().stackCycles; }
    constexpr bool needsMemory() const { return mode().inMemory || mnemonic().stackCycles > 0; }
};

constexpr std::size_t OpcodeCount = 256;
using Instructions = std::array<Instruction, OpcodeCount>;

constexpr Instructions readOpcodes()
{
    constexpr std::size_t cellSize = 6;
    static_assert(sizeof Tables::opcodes == OpcodeCount * cellSize + 1);
    Instructions instructions;
    for (std::size_t code = 0; code < OpcodeCount; ++code) {
        const char *const cell = Tables::opcodes + code * cellSize;
        for (std::size_t i = 0; i < std::size(Tables::mnemonics); ++i) {
            const char *const name = Tables::mnemonics[i].name;
            if (cell[1] == name[0] && cell[2] == name[1] && cell[3] == name[2])
                instructions[code].mnemonicAt = i;
        }
        for (std::size_t i = 0; i < std::size(Tables::modes); ++i) {
            if (cell[4] == Tables::modes[i].id[0] && cell[5] == Tables::modes[i].id[1])
                instructions[code].modeAt = i;
        }
        instructions[code].documented = cell[0] == ' ';
    }
    return instructions;
}

inline constexpr Instructions instructions = readOpcodes();

template <typename Condition>
constexpr int countOf(Condition condition)
{
    int count = 0;
    for (const Instruction &instruction : instructions)
        count += condition(instruction) ? 1 : 0;
    return count;
}

/// How many mnemonics have documented opcodes, or undocumented ones.
constexpr int countOfMnemonics(bool documented)
{
    int count = 0;
    for (std::size_t at = 0; at < std::size(Tables::mnemonics); ++at) {
        const auto isIt = [&](const Instruction &i) {
            return i.mnemonicAt == at && i.documented == documented;
        };
        count += countOf(isIt) > 0 ? 1 : 0;
    }
    return count;
}

constexpr bool isRead(const Instruction &i)
{
    return i.mnemonicAt < std::size(Tables::mnemonics) && i.modeAt < std::size(Tables::modes);
}

static_assert(countOf(isRead) == 256, "a cell has no mnemonic or no mode");
static_assert(countOf([](const Instruction &i) { return i.modeCycles() >= 2; }) == 256,
              "a mnemonic stands with a mode that does not go with it");
static_assert(countOf([](const Instruction &i) { return i.documented; }) == 151);
static_assert(countOf([](const Instruction &i) {
                  return i.mnemonic().name[0] == 'J' && i.mode().length == 1;
              }) == 12);
static_assert(countOfMnemonics(true) == 56 && countOfMnemonics(false) == 20 + 2,
              "NOP and SBC are also undocumented");

} // namespace ZR::MOS6510
