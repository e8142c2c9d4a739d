#pragma once

// How the bytes of a program become instructions of the Z80 that run. Private to the kit.

#include "z80tables_p.h"

namespace ZR::Z80 {

/// An instruction with the bytes that it was read from.
struct Decoded
{
    const Instruction *instruction = nullptr;
    Page page = Main;
    quint8 opcode = 0;
    quint8 operandAt = 1; ///< where its operand is in the bytes
    std::array<quint8, 4> bytes = {};

    const quint8 *operand() const { return &bytes[operandAt]; }
};

/// The page of the opcodes after a prefix, as in 0xDD and 0xDDCB; the main page for any other number.
constexpr Page pageAfter(int prefix)
{
    // clang-format off
    switch (prefix) {
    case 0xCB: return CB;
    case 0xED: return ED;
    case 0xDD: return DD;
    case 0xFD: return FD;
    case 0xDDCB: return DDCB;
    case 0xFDCB: return FDCB;
    default: return Main;
    }
    // clang-format on
}

/// Reads an instruction by a function that gives its bytes, each once. Of a void prefix it takes one byte too
/// many.
template <typename Next>
Decoded decode(Next next)
{
    Decoded result;
    std::size_t count = 1;
    result.opcode = result.bytes[0] = next();
    result.page = pageAfter(result.opcode);
    if (result.page != Main) {
        result.opcode = result.bytes[1] = next();
        count = 2;
    }
    result.instruction = &pages[result.page][result.opcode];
    if (result.page >= DD && result.instruction->isPrefix) {
        if (result.opcode != 0xCB) {
            result.page = Main;
            result.opcode = result.bytes[0];
            result.instruction = &pages[Main][result.opcode];
            return result;
        }
        result.bytes[2] = next();
        result.opcode = result.bytes[3] = next();
        result.page = result.page == DD ? DDCB : FDCB;
        result.instruction = &pages[result.page][result.opcode];
        result.operandAt = 2;
        return result;
    }
    result.operandAt = static_cast<quint8>(count);
    while (count < result.instruction->length)
        result.bytes[count++] = next();
    return result;
}

} // namespace ZR::Z80
