// Instructions a second of the complete processor beside that of the base, in one run.

#include <zr8bitkit/zr8bitaddressspace.h>
#include <zr8bitkit/zr8bitprocmos6510full.h>
#include <zr8bitkit/zr8bitprocz80.h>
#include <zr8bitlib/zr8bitram.h>

#include <QtCore/QFile>

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

/// Bytes that the processor reaches by a plain array.
class PlainBus : public ZR8BitBus
{
public:
    quint8 read(quint16 address) override { return static_cast<quint8>(bytes[address]); }
    void write(quint16 address, quint8 value) override { bytes[address] = static_cast<char>(value); }

    QByteArray bytes;
};

/// One of the published test programs.
QByteArray testProgram(const char *name)
{
    QFile file(qEnvironmentVariable("ZR_TEST_PROGRAMS") + QLatin1Char('/') + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

enum Memory
{
    Block,
    Bus,
    Space
};

/// Steps through the functional test of the 6510, a program of 64 KiB that begins at $0400 and ends in a jump
/// to itself, in a block, over a bus or in an address space of blocks; with somebody connected to each row,
/// or with nobody who has asked for the rows.
void runProgram(benchmark::State &state, Memory memory, bool rowsWatched)
{
    constexpr int StepsAtOnce = 1'000'000;
    const QByteArray program = testProgram("6502_functional_test.bin");
    if (program.isEmpty()) {
        state.SkipWithError("the folder ZR_TEST_PROGRAMS has no 6502_functional_test.bin");
        return;
    }
    ZR8BitRAM ram;
    PlainBus bus;
    ZR8BitAddressSpace space;
    ZR8BitProcMOS6510Full processor;
    processor.init();
    processor.setMainMemory(&ram);
    if (memory == Bus)
        processor.setBus(&bus);
    if (memory == Space)
        processor.setBus(&space);
    quint64 rows = 0;
    if (rowsWatched) {
        for (ZR8BitProcCommand *row : processor.commandList())
            QObject::connect(row, &ZR8BitProcCommand::execute, &processor, [&rows] { ++rows; });
    }
    const auto start = [&] {
        ram.setContent(program);
        bus.bytes = program;
        processor.setProgramCounter(0x0400);
    };
    start();
    if (!space.mapMemory(0, &ram))
        state.SkipWithError("no address space");
    ZR8BitProcessorIface &stepped = processor;
    while (state.KeepRunningBatch(StepsAtOnce)) {
        if (processor.isWaiting())
            start();
        for (int i = 0; i < StepsAtOnce; ++i)
            stepped.step();
    }
    if (processor.hardwareIssue() || rows > processor.cycles())
        state.SkipWithError("hardware issue");
}
BENCHMARK_CAPTURE(runProgram, block_unwatched, Block, false);
BENCHMARK_CAPTURE(runProgram, bus_unwatched, Bus, false);
BENCHMARK_CAPTURE(runProgram, block_watched, Block, true);
BENCHMARK_CAPTURE(runProgram, bus_watched, Bus, true);
BENCHMARK_CAPTURE(runProgram, space_unwatched, Space, false);
BENCHMARK_CAPTURE(runProgram, space_watched, Space, true);

/// Steps the Z80 over a bus through the first groups of ZEXALL, whose way to CP/M returns at once; with
/// somebody connected to each row, or with nobody who has asked for the rows.
void runZ80(benchmark::State &state, bool rowsWatched)
{
    constexpr int StepsAtOnce = 1'000'000;
    const QByteArray program = testProgram("zexall.com");
    if (program.isEmpty()) {
        state.SkipWithError("the folder ZR_TEST_PROGRAMS has no zexall.com");
        return;
    }
    PlainBus bus;
    bus.bytes = QByteArray(0x10000, '\0').replace(0x0100, program.size(), program);
    bus.bytes.replace(0x0005, 3, QByteArray("\xC9\x00\xF0", 3));
    ZR8BitProcZ80 processor;
    processor.init();
    processor.setBus(&bus);
    processor.setProgramCounter(0x0100);
    quint64 rows = 0;
    if (rowsWatched) {
        for (const int prefix : {0, 0xCB, 0xED, 0xDD, 0xFD, 0xDDCB, 0xFDCB}) {
            const auto page = prefix == 0 ? processor.commandList() : processor.commandPage(prefix);
            for (ZR8BitProcCommand *row : page)
                QObject::connect(row, &ZR8BitProcCommand::execute, &processor, [&rows] { ++rows; });
        }
    }
    ZR8BitProcessorIface &stepped = processor;
    while (state.KeepRunningBatch(StepsAtOnce)) {
        for (int i = 0; i < StepsAtOnce; ++i)
            stepped.step();
    }
    if (processor.hardwareIssue() || processor.isHalted() || rows > processor.cycles())
        state.SkipWithError("hardware issue");
}
BENCHMARK_CAPTURE(runZ80, unwatched, false);
BENCHMARK_CAPTURE(runZ80, watched, true);

} // namespace
