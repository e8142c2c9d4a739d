// Random programs and interrupts on the Z80, beside a plain model of it.

#include "fuzzchip.h"
#include "z80model.h"

#include <zr8bitkit/zr8bitprocz80.h>

namespace {

using Chip = ZR::ZR8BitProcZ80;

/// The model with ports of its own.
struct Model : public Z80Model
{
    Model()
    {
        in = [this](int port) { return ports.in(static_cast<quint16>(port)); };
        out = [this](int port, int value) {
            ports.out(static_cast<quint16>(port), static_cast<quint8>(value));
        };
    }

    FuzzBus ports;
};

class Z80Fuzzer : public ChipFuzzer<Chip, Model>
{
public:
    using ChipFuzzer::ChipFuzzer;

protected:
    /// The device gives an RST, or some address.
    void setIRQ(Chip &chip, bool active) override
    {
        model.irqData = static_cast<int>(model.cycles) | 0xC7;
        model.irqData &= 0xFF;
        chip.setIRQ(active, static_cast<quint8>(model.irqData));
    }
};

std::vector<FuzzRegister<Model>> registers()
{
    std::vector<FuzzRegister<Model>> result;
    for (const auto &[id, member, bits] : z80Registers)
        result.push_back({QString::fromLatin1(id), member, bits});
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    static Z80Fuzzer fuzzer(registers(), [](Chip &) {});
    fuzzer.run(bytes, size);
    LAW(fuzzer.bus.written == fuzzer.model.ports.written);
    return 0;
}
