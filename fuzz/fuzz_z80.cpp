// Random programs and interrupts on the Z80, beside a plain model of it, and on the bench of the TVC.

#include "fuzzchip.h"
#include "z80model.h"

#include <zr8bitkit/zr8bitprocz80.h>
#include <zr8bitkit/zr8bittvcbench.h>

#include <QtCore/QBuffer>

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

/// The state after two frames of a program at 0, or after its endless loop, and what was heard. So many T
/// states run at once.
QByteArray afterFrames(const QByteArray &program, quint64 cycles)
{
    using Bench = ZR::ZR8BitTVCBench;
    using RunEnd = ZR::ZR8BitMachine::RunEnd;
    constexpr int FrameCount = 2;
    constexpr int Rate = 8000;
    Bench bench;
    ZR::ZR8BitMachine &machine = bench.machine();
    LAW(machine.loadBytes(program, 0));
    for (const char *id : {"IFF1", "IM"})
        LAW(machine.setRegister(QString::fromLatin1(id), 1));
    ZR::ZR8BitMachine::RunLimits limits;
    limits.cycles = cycles;
    auto end = RunEnd::Cycles;
    while (end == RunEnd::Cycles && bench.frameCount() < FrameCount)
        end = bench.frames(FrameCount - bench.frameCount(), limits);
    LAW(end == RunEnd::Cycles || end == RunEnd::EndlessLoop);
    LAW(bench.frameCount() <= FrameCount && bench.screen().size() == QSize(128, 240));
    QBuffer sound;
    LAW(sound.open(QIODevice::WriteOnly) && bench.writeSound(sound, Rate));
    const qint64 samples = static_cast<qint64>(machine.cycles()) * Rate / Bench::ClockRate;
    LAW(qAbs((sound.size() - 44) / 2 - samples) <= 1);
    return machine.saveState() + sound.data();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    static Z80Fuzzer fuzzer(registers(), [](Chip &) {});
    fuzzer.run(bytes, size);
    LAW(fuzzer.bus.written == fuzzer.model.ports.written);
    if (size % 16 == 0) { // frames take long
        const QByteArray program(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size));
        LAW(afterFrames(program, ZR::ZR8BitTVCBench::FrameLength * 2) == afterFrames(program, 7777));
    }
    return 0;
}
