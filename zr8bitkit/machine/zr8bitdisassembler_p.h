#pragma once

// What an instruction set gives to the disassembler. Private to the kit.

#include <QtCore/QString>

#include <functional>

namespace ZR {

/// An instruction as its set reads it.
struct DecodedInstruction
{
    QString text;         ///< with %1 in place of the target, if there is one; empty for an unknown opcode
    int target = -1;      ///< the address in its operand or of a branch, of 16 bits; -1 for none
    int targetDigits = 4; ///< how many digits the target has as a number
    bool jumps = false;   ///< whether the program goes on at target
};

/// Gives the next byte of the instruction, each once. It is as long as it takes bytes.
using NextByte = std::function<quint8()>;

/// Reads the instruction at an address.
using InstructionDecoder = std::function<DecodedInstruction(int address, const NextByte &next)>;

} // namespace ZR
