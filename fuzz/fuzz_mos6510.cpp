// Random programs and interrupts on the complete 6510, beside a plain model of it.

#include "fuzzchip.h"
#include "mos6510model.h"

#include <zr8bitkit/zr8bitprocmos6510full.h>

using namespace Qt::StringLiterals;
using Model = Mos6510Model;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    static ChipFuzzer<ZR::ZR8BitProcMOS6510Full, Model> fuzzer(
        {{u"AC"_s, &Model::a, 0xFF},
         {u"XR"_s, &Model::x, 0xFF},
         {u"YR"_s, &Model::y, 0xFF},
         {u"SP"_s, &Model::s, 0xFF},
         {u"PC"_s, &Model::pc, 0xFFFF},
         {u"PS"_s, &Model::p, 0xFF}},
        [](ZR::ZR8BitProcMOS6510Full &chip) { chip.setUndocumented(true); });
    fuzzer.run(bytes, size);
    return 0;
}
