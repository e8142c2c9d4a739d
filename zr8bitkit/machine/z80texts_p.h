#pragma once

// The instructions of the Z80 in words and as assemblers write them. Private to the kit.

#include "z80tables_p.h"
#include "zr8bitdisassembler_p.h"

#include <QtCore/QMap>
#include <QtCore/QString>

namespace ZR::Z80 {

/// Lets registers say what they are for.
void describeRegisters(const QMap<QString, ZR8BitRegister *> &registers);

/// The mnemonic of an opcode.
QString nameOf(const Instruction &instruction, int opcode);
/// What a row of an opcode says in front of its text.
QString titleOf(const Instruction &instruction, int opcode);
/// What a host reads below the title: what is special, and the assembler's form.
QString textOf(const Instruction &instruction, Page page, int opcode);

/// Reads an instruction for the disassembler. What the data sheet does not have is a DEFB of its bytes, with
/// the instruction as a comment: assemblers do not agree on it. So are copies of other encodings.
DecodedInstruction disassemble(int address, const NextByte &next);

} // namespace ZR::Z80
