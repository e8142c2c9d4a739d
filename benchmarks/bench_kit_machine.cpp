// Instructions a second of the complete processor beside that of the base, in one run.

#include <zr8bitkit/zr8bitprocmos6510full.h>
#include <zr8bitlib/zr8bitram.h>

#include <benchmark/benchmark.h>

#include <memory>

using namespace ZR;

namespace {

enum Kind
{
    Base,
    Complete
};

/// Steps through a memory full of one instruction of two bytes.
void runInstruction(benchmark::State &state, Kind kind, const char *instruction)
{
    ZR8BitRAM ram;
    ram.setSize(0x10000);
    for (int address = 0; address < ram.size(); address += 2)
        ram.setValue(instruction, 2, address);
    std::unique_ptr<ZR8BitProcMOS6510> processor = std::make_unique<ZR8BitProcMOS6510>();
    if (kind == Complete)
        processor = std::make_unique<ZR8BitProcMOS6510Full>();
    processor->init();
    processor->setMainMemory(&ram);
    ZR8BitProcessorIface &stepped = *processor;
    for (auto _ : state) {
        if (stepped.step() < 0)
            state.SkipWithError("hardware issue");
    }
}
BENCHMARK_CAPTURE(runInstruction, immediate_base, Base, "\x69\x01");
BENCHMARK_CAPTURE(runInstruction, immediate_complete, Complete, "\x69\x01");
BENCHMARK_CAPTURE(runInstruction, zeropage_base, Base, "\x65\x10");
BENCHMARK_CAPTURE(runInstruction, zeropage_complete, Complete, "\x65\x10");
BENCHMARK_CAPTURE(runInstruction, branch_complete, Complete, "\xD0\x00");
BENCHMARK_CAPTURE(runInstruction, increment_complete, Complete, "\xE6\x10");

/// Steps through a sieve of the numbers below 256, again and again.
void runProgram(benchmark::State &state)
{
    // start: LDX #2; next: LDA $0300,X; BNE skip; STX $10; TXA; mark: CLC; ADC $10; BCS skip; TAY; STA
    // $0300,Y; BCC mark; skip: INX; BNE next; TXA; clear: STA $0300,X; INX; BNE clear; BEQ start
    const QByteArray program =
        QByteArray::fromHex("a202bd0003d00e86108a186510b006a899000390f5e8d0ea8a9d0003e8d0faf0df");
    ZR8BitRAM ram;
    ram.setSize(0x10000);
    ram.setValue(program, 0x0200);
    ZR8BitProcMOS6510Full processor;
    processor.init();
    processor.setMainMemory(&ram);
    processor.registers().value(QStringLiteral("PC"))->setValue(0x0200);
    ZR8BitProcessorIface &stepped = processor;
    for (auto _ : state) {
        if (stepped.step() < 0)
            state.SkipWithError("hardware issue");
    }
}
BENCHMARK(runProgram);

} // namespace
