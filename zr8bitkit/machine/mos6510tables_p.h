#pragma once

// What the opcodes of the MOS 6510 are: a line for each mnemonic and each addressing mode, and the matrix of
// opcodes. Private to the kit.

#include "mos6510effects_p.h"

#include <QtCore/QCoreApplication>

#include <array>
#include <iterator>

namespace ZR::MOS6510 {

/// What a mnemonic does with its operand: it uses the address alone, if there is one; reads the operand;
/// writes it; reads it and writes it back.
// clang-format off
enum Access { Plain, Read, Write, Modify };
// clang-format on

struct Mnemonic
{
    char name[4];
    Access access;
    int stackCycles;   ///< cycles for the stack, in addition to those of the mode
    const char *title; ///< null where the base has the rows
    Effect effect;
    const char *note = nullptr; ///< what else a programmer should know
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
        {"BRK", Plain,  5, QT_TR_NOOP("Interrupt by Program, which skips the Byte after it"), brk},
        {"BVC", Plain,  0, QT_TR_NOOP("Branch if Overflow is clear"), branch<FlagV, false>},
        {"BVS", Plain,  0, QT_TR_NOOP("Branch if Overflow is set"), branch<FlagV, true>},
        {"CLC", Plain,  0, QT_TR_NOOP("Clear Carry"), put<FlagC, false>},
        {"CLD", Plain,  0, QT_TR_NOOP("Clear Decimal Mode"), put<FlagD, false>},
        {"CLI", Plain,  0, QT_TR_NOOP("Allow Interrupts, after the next Instruction"), putI<false>},
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
        {"SEI", Plain,  0, QT_TR_NOOP("Refuse Interrupts, after the next Instruction"), putI<true>},
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
