#pragma once

// What the opcodes of the Z80 are: a line for each kind of instruction, and the pages that the lines make.
// Private to the kit.

#include "z80effects_p.h"

#include <QtCore/QCoreApplication>

#include <iterator>

namespace ZR::Z80 {

/// A page is the meaning of the opcodes after a prefix.
enum Page
{
    Main,
    CB,
    ED,
    DD,
    FD,
    DDCB,
    FDCB,
    PageCount
};

// clang-format off
enum Kind {
    Documented,
    Undocumented,
    Copy ///< does what another encoding does, which assemblers write
};
// clang-format on

/// A kind of instruction. Of texts with strokes in between the opcode chooses one by its bits 5 to 3.
///
/// In the operands small letters stand for what the opcode or the bytes after it say: y and z are the
/// registers of the bits 5 to 3 and 2 to 0, r and s the same where they are never a half of an index
/// register, p is the pair of the bits 5 to 4, q the same where it is pushed; c is a condition, j that of a
/// JR, b a bit, t an address of RST; x is HL or the index register, m what it points at; n is a byte, w a
/// word, e a distance.
struct Line
{
    char bits[9];         ///< the opcode from bit 7 on: digits, and letters for either
    const char *name;     ///< mnemonics
    const char *operands; ///< as in "A,(w)"
    int cycles;           ///< T states, the least, without those of a prefix DD or FD
    Effect effect;
    const char *title;
    int more = 0; ///< T states that it takes more when it jumps, calls, returns or repeats itself
    Kind kind = Documented;
};

/// The lines of the pages with X in place of HL. The first line that an opcode matches counts.
template <Pair X>
struct Lines
{
    Q_DECLARE_TR_FUNCTIONS(ZR::ZR8BitProcZ80)

public:
    using E = Effects<X>;

    static constexpr char alu[] = "ADD/ADC/SUB/SBC/AND/XOR/OR/CP";
    static constexpr char aluTitle[] =
        QT_TR_NOOP("Add to A/Add with Carry to A/Subtract from A/Subtract with Carry from A/"
                   "AND with A/Exclusive-OR with A/OR with A/Compare with A");
    static constexpr char ofA[] = "RLCA/RRCA/RLA/RRA/DAA/CPL/SCF/CCF";
    static constexpr char ofATitle[] =
        QT_TR_NOOP("Rotate A Left/Rotate A Right/Rotate A Left through Carry/Rotate A Right through Carry/"
                   "Correct A after decimal Digits were added or subtracted/Invert A/Set Carry/Invert Carry");
    static constexpr char shift[] = "RLC/RRC/RL/RR/SLA/SRA/SLL/SRL";
    static constexpr char shiftTitle[] =
        QT_TR_NOOP("Rotate Left/Rotate Right/Rotate Left through Carry/Rotate Right through Carry/"
                   "Shift Left/Shift Right with the Sign/Shift Left with a 1/Shift Right");
    static constexpr char copyTitle[] =
        QT_TR_NOOP("Copy a Byte, counting up/Copy a Byte, counting down/Copy a Block, counting up/"
                   "Copy a Block, counting down");
    static constexpr char lookTitle[] =
        QT_TR_NOOP("Compare a Byte with A, counting up/Compare a Byte with A, counting down/"
                   "Look for A in a Block, counting up/Look for A in a Block, counting down");
    static constexpr char readTitle[] =
        QT_TR_NOOP("Read a Byte from a Port, counting up/Read a Byte from a Port, counting down/"
                   "Read a Block from a Port, counting up/Read a Block from a Port, counting down");
    static constexpr char writeTitle[] =
        QT_TR_NOOP("Write a Byte to a Port, counting up/Write a Byte to a Port, counting down/"
                   "Write a Block to a Port, counting up/Write a Block to a Port, counting down");
    static constexpr char digitsTitle[] =
        QT_TR_NOOP("Rotate Digits of A and Memory Right/Rotate Digits of A and Memory Left");

    // clang-format off
    static constexpr char nothing[] = QT_TR_NOOP("Do nothing");
    static constexpr char voidPrefix[] = QT_TR_NOOP("Prefix, void before another one");
    static constexpr char loadWord[] = QT_TR_NOOP("Load Pair from Memory");
    static constexpr char storeWord[] = QT_TR_NOOP("Store Pair in Memory");
    static constexpr char testBit[] = QT_TR_NOOP("Test Bit");
    static constexpr char clearBit[] = QT_TR_NOOP("Clear Bit");
    static constexpr char setBit[] = QT_TR_NOOP("Set Bit");
    static constexpr char negate[] = QT_TR_NOOP("Subtract A from 0");
    static constexpr char returnTitle[] = QT_TR_NOOP("Return from NMI");

    static constexpr Line main[] = {
        {"00000000", "NOP",  "",        4, E::nop, nothing},
        {"00001000", "EX",   "AF,AF'",  4, E::exAF, QT_TR_NOOP("Exchange A and Flags with their Shadows")},
        {"00010000", "DJNZ", "e",       8, E::djnz, QT_TR_NOOP("Subtract 1 from B, jump if it is not 0"), 5},
        {"00011000", "JR",   "e",      12, E::jr, QT_TR_NOOP("Jump by a Distance")},
        {"001yy000", "JR",   "j,e",     7, E::jrIf, QT_TR_NOOP("Jump by a Distance on a Condition"), 5},
        {"00pp0001", "LD",   "p,w",    10, E::ldWord, QT_TR_NOOP("Load Pair with a Number")},
        {"00pp1001", "ADD",  "x,p",    11, E::addWord, QT_TR_NOOP("Add Pair to Pair")},
        {"000p0010", "LD",   "(p),A",   7, E::ldAToPair, QT_TR_NOOP("Store A where a Pair points at")},
        {"00100010", "LD",   "(w),x",  16, E::ldWordTo, storeWord},
        {"00110010", "LD",   "(w),A",  13, E::ldATo, QT_TR_NOOP("Store A in Memory")},
        {"000p1010", "LD",   "A,(p)",   7, E::ldAFromPair, QT_TR_NOOP("Load A from where a Pair points at")},
        {"00101010", "LD",   "x,(w)",  16, E::ldWordFrom, loadWord},
        {"00111010", "LD",   "A,(w)",  13, E::ldAFrom, QT_TR_NOOP("Load A from Memory")},
        {"00pp0011", "INC",  "p",       6, E::incWord, QT_TR_NOOP("Add 1 to Pair")},
        {"00pp1011", "DEC",  "p",       6, E::decWord, QT_TR_NOOP("Subtract 1 from Pair")},
        {"00110100", "INC",  "m",      11, E::incAt, QT_TR_NOOP("Add 1 to Memory")},
        {"00yyy100", "INC",  "y",       4, E::inc, QT_TR_NOOP("Add 1 to Register")},
        {"00110101", "DEC",  "m",      11, E::decAt, QT_TR_NOOP("Subtract 1 from Memory")},
        {"00yyy101", "DEC",  "y",       4, E::dec, QT_TR_NOOP("Subtract 1 from Register")},
        {"00110110", "LD",   "m,n",    10, E::ldByteTo, QT_TR_NOOP("Store a Number in Memory")},
        {"00yyy110", "LD",   "y,n",     7, E::ldByte, QT_TR_NOOP("Load Register with a Number")},
        {"00yyy111", ofA,    "",        4, E::accumulator, ofATitle},
        {"01110110", "HALT", "",        4, E::halt, QT_TR_NOOP("Wait for an Interrupt")},
        {"01110zzz", "LD",   "m,s",     7, E::ldTo, QT_TR_NOOP("Store Register in Memory")},
        {"01yyy110", "LD",   "r,m",     7, E::ldFrom, QT_TR_NOOP("Load Register from Memory")},
        {"01yyyzzz", "LD",   "y,z",     4, E::ld, QT_TR_NOOP("Load Register from Register")},
        {"10yyy110", alu, "A,m/A,m/m/A,m/m/m/m/m", 7, E::aluAt, aluTitle},
        {"10yyyzzz", alu, "A,z/A,z/z/A,z/z/z/z/z", 4, E::alu, aluTitle},
        {"11yyy000", "RET",  "c",       5, E::retIf, QT_TR_NOOP("Return on a Condition"), 6},
        {"11pp0001", "POP",  "q",      10, E::pop, QT_TR_NOOP("Pop Pair from the Stack")},
        {"11001001", "RET",  "",       10, E::ret, QT_TR_NOOP("Return from Subroutine")},
        {"11011001", "EXX",  "",        4, E::exx, QT_TR_NOOP("Exchange BC, DE and HL with their Shadows")},
        {"11101001", "JP",   "(x)",     4, E::jpX, QT_TR_NOOP("Jump to where a Pair points at")},
        {"11111001", "LD",   "SP,x",    6, E::ldSP, QT_TR_NOOP("Load Stack Pointer from Pair")},
        {"11yyy010", "JP",   "c,w",    10, E::jpIf, QT_TR_NOOP("Jump on a Condition")},
        {"11000011", "JP",   "w",      10, E::jp, QT_TR_NOOP("Jump")},
        {"11010011", "OUT",  "(n),A",  11, E::outA, QT_TR_NOOP("Write A to a Port")},
        {"11011011", "IN",   "A,(n)",  11, E::inA, QT_TR_NOOP("Read A from a Port")},
        {"11100011", "EX",   "(SP),x", 19, E::exSP, QT_TR_NOOP("Exchange Pair with the Word on the Stack")},
        {"11101011", "EX",   "DE,HL",   4, E::exDE, QT_TR_NOOP("Exchange DE and HL")},
        {"11110011", "DI",   "",        4, E::di, QT_TR_NOOP("Refuse Interrupts")},
        {"11111011", "EI",   "",        4, E::ei, QT_TR_NOOP("Allow Interrupts, after the next Instruction")},
        {"11yyy100", "CALL", "c,w",    10, E::callIf, QT_TR_NOOP("Call Subroutine on a Condition"), 7},
        {"11pp0101", "PUSH", "q",      11, E::push, QT_TR_NOOP("Push Pair onto the Stack")},
        {"11001101", "CALL", "w",      17, E::call, QT_TR_NOOP("Call Subroutine")},
        {"11yyy110", alu, "A,n/A,n/n/A,n/n/n/n/n", 7, E::aluByte, aluTitle},
        {"11yyy111", "RST",  "t",      11, E::rst, QT_TR_NOOP("Call Subroutine at a fixed Address")},
        {"11001011", "PREFIX", "",    4, E::prefix, voidPrefix},
        {"11pp1101", "PREFIX", "",    4, E::prefix, voidPrefix},
    };

    /// After CB.
    static constexpr Line bits[] = {
        {"00110110", shift, "m",       15, E::rotateAt, shiftTitle, 0, Undocumented},
        {"00110zzz", shift, "s",        8, E::rotate, shiftTitle, 0, Undocumented},
        {"00yyy110", shift, "m",       15, E::rotateAt, shiftTitle},
        {"00yyyzzz", shift, "s",        8, E::rotate, shiftTitle},
        {"01yyy110", "BIT", "b,m",     12, E::bitAt, testBit},
        {"01yyyzzz", "BIT", "b,s",      8, E::bit, testBit},
        {"10yyy110", "RES", "b,m",     15, E::resAt, clearBit},
        {"10yyyzzz", "RES", "b,s",      8, E::res, clearBit},
        {"11yyy110", "SET", "b,m",     15, E::setAt, setBit},
        {"11yyyzzz", "SET", "b,s",      8, E::set, setBit},
    };

    /// After DD CB and FD CB. The operand is always in memory, and what is written goes to a register, too.
    static constexpr Line indexedBits[] = {
        {"00110110", shift, "m",       15, E::rotateAt, shiftTitle, 0, Undocumented},
        {"00yyy110", shift, "m",       15, E::rotateAt, shiftTitle},
        {"00yyyzzz", shift, "m,s",     15, E::rotateAt, shiftTitle, 0, Undocumented},
        {"01yyy110", "BIT", "b,m",     12, E::bitAt, testBit},
        {"01yyyzzz", "BIT", "b,m",     12, E::bitAt, testBit, 0, Copy},
        {"10yyy110", "RES", "b,m",     15, E::resAt, clearBit},
        {"10yyyzzz", "RES", "b,m,s",   15, E::resAt, clearBit, 0, Undocumented},
        {"11yyy110", "SET", "b,m",     15, E::setAt, setBit},
        {"11yyyzzz", "SET", "b,m,s",   15, E::setAt, setBit, 0, Undocumented},
    };

    /// After ED.
    static constexpr Line extended[] = {
        {"01110000", "IN",   "F,(C)",  12, E::inFlags, QT_TR_NOOP("Set Flags by Port BC"), 0, Undocumented},
        {"01yyy000", "IN",   "r,(C)",  12, E::in, QT_TR_NOOP("Read Register from the Port BC")},
        {"01110001", "OUT",  "(C),0",  12, E::outZero, QT_TR_NOOP("Write 0 to the Port BC"), 0, Undocumented},
        {"01yyy001", "OUT",  "(C),r",  12, E::out, QT_TR_NOOP("Write Register to the Port BC")},
        {"01pp0010", "SBC",  "HL,p",   15, E::sbcWord, QT_TR_NOOP("Subtract Pair with Carry from HL")},
        {"01pp1010", "ADC",  "HL,p",   15, E::adcWord, QT_TR_NOOP("Add Pair with Carry to HL")},
        {"01100011", "LD",   "(w),p",  20, E::ldWordTo, storeWord, 0, Copy},
        {"01pp0011", "LD",   "(w),p",  20, E::ldWordTo, storeWord},
        {"01101011", "LD",   "p,(w)",  20, E::ldWordFrom, loadWord, 0, Copy},
        {"01pp1011", "LD",   "p,(w)",  20, E::ldWordFrom, loadWord},
        {"01000100", "NEG",  "",        8, E::neg, negate},
        {"01yyy100", "NEG",  "",        8, E::neg, negate, 0, Copy},
        {"01000101", "RETN", "",       14, E::retn, returnTitle},
        {"01001101", "RETI", "",       14, E::retn, QT_TR_NOOP("Return from Interrupt")},
        {"01yyy101", "RETN", "",       14, E::retn, returnTitle, 0, Copy},
        {"01000110", "IM",   "0",       8, E::im, QT_TR_NOOP("Take an Instruction as an Interrupt")},
        {"01010110", "IM",   "1",       8, E::im, QT_TR_NOOP("Take an Interrupt as a Call of $0038")},
        {"01011110", "IM",   "2",       8, E::im, QT_TR_NOOP("Take an Interrupt as a Call by a Table")},
        {"01yyy110", "IM",   "0/0/1/2", 8, E::im, QT_TR_NOOP("Set Interrupt Mode"), 0, Copy},
        {"01000111", "LD",   "I,A",     9, E::template ldFromA<I>, QT_TR_NOOP("Load I from A")},
        {"01001111", "LD",   "R,A",     9, E::template ldFromA<R>, QT_TR_NOOP("Load R from A")},
        {"01010111", "LD",   "A,I",     9, E::template ldToA<I>, QT_TR_NOOP("Load A from I, P from IFF2")},
        {"01011111", "LD",   "A,R",     9, E::template ldToA<R>, QT_TR_NOOP("Load A from R, P from IFF2")},
        {"0110y111", "RRD/RLD", "",    18, E::rotateDigits, digitsTitle},
        {"101yy000", "LDI/LDD/LDIR/LDDR", "",  16, E::copyBlock, copyTitle, 5},
        {"101yy001", "CPI/CPD/CPIR/CPDR", "",  16, E::compareBlock, lookTitle, 5},
        {"101yy010", "INI/IND/INIR/INDR", "",  16, E::inBlock, readTitle, 5},
        {"101yy011", "OUTI/OUTD/OTIR/OTDR", "", 16, E::outBlock, writeTitle, 5},
        {"oooooooo", "NOP",  "",        8, E::nop, nothing, 0, Copy},
    };
    // clang-format on
};

/// What an opcode of a page stands for.
struct Instruction
{
    const Line *line = nullptr;
    Effect effect = nullptr;
    quint8 length = 0;  ///< bytes, those of the prefixes too
    quint8 cycles = 0;  ///< T states, those of the prefixes too; the least
    quint8 more = 0;    ///< T states that it may take more, as its line says
    quint8 fetches = 0; ///< how many of the bytes R counts
    Kind kind = Documented;
    bool isPrefix = false;
};

using Instructions = std::array<Instruction, 256>;

constexpr bool matches(const Line &line, int opcode)
{
    for (int bit = 0; bit < 8; ++bit) {
        const char wanted = line.bits[bit];
        const char found = opcode & 0x80 >> bit ? '1' : '0';
        if (wanted != found && (wanted == '0' || wanted == '1'))
            return false;
    }
    return true;
}

/// Whether the operands have a letter, in their first form.
constexpr bool has(const Line &line, char letter)
{
    for (const char *at = line.operands; *at != '\0' && *at != '/'; ++at) {
        if (*at == letter)
            return true;
    }
    return false;
}

/// What kind a line of the main page is after DD or FD.
constexpr Kind kindOfIndexed(const Line &line, int opcode)
{
    const bool isPair = pOf(opcode) == 2 && (has(line, 'p') || has(line, 'q'));
    if (has(line, 'x') || has(line, 'm') || isPair)
        return Documented;
    const bool isHalf =
        (has(line, 'y') && yOf(opcode) >> 1 == 2) || (has(line, 'z') && zOf(opcode) >> 1 == 2);
    return isHalf ? Undocumented : Copy;
}

constexpr Instruction instructionOf(const Line &line, Page page, int opcode)
{
    const bool afterIndex = page == DD || page == FD;
    const bool hasDistance = page >= DD && has(line, 'm');
    int length = page == Main ? 1 : page < DDCB ? 2 : 3;
    int cycles = line.cycles;
    length += (has(line, 'n') || has(line, 'e') ? 1 : 0) + (has(line, 'w') ? 2 : 0) + (hasDistance ? 1 : 0);
    cycles += (afterIndex ? 4 : 0) + (hasDistance ? (has(line, 'n') ? 5 : 8) : 0);
    return {&line,
            line.effect,
            static_cast<quint8>(length),
            static_cast<quint8>(cycles),
            static_cast<quint8>(line.more),
            static_cast<quint8>(page == Main ? 1 : 2),
            afterIndex ? kindOfIndexed(line, opcode) : line.kind,
            line.name[0] == 'P' && line.name[1] == 'R'};
}

template <std::size_t Count>
constexpr Instructions expanded(const Line (&lines)[Count], Page page)
{
    Instructions instructions;
    for (int opcode = 0; opcode < 256; ++opcode) {
        std::size_t at = 0;
        while (at < Count && !matches(lines[at], opcode))
            ++at;
        instructions[static_cast<std::size_t>(opcode)] = instructionOf(lines[at], page, opcode);
    }
    return instructions;
}

/// All instructions, by Page and opcode.
inline constexpr std::array<Instructions, PageCount> pages = {
    expanded(Lines<HL>::main, Main),        expanded(Lines<HL>::bits, CB),
    expanded(Lines<HL>::extended, ED),      expanded(Lines<IX>::main, DD),
    expanded(Lines<IY>::main, FD),          expanded(Lines<IX>::indexedBits, DDCB),
    expanded(Lines<IY>::indexedBits, FDCB),
};

} // namespace ZR::Z80
