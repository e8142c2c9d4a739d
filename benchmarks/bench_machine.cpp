// Instructions a second beside the floor that their contract costs, and accesses to a memory block beside a
// bare lock with an array access.
//
// The floor of an instruction is what any implementation of the interface pays for: one direct signal
// emission through a connection by strings, the block locks that the instruction takes, and the two-byte
// array that it is copied into.

#include <zr8bitlib/zr8bitprocmos6510.h>
#include <zr8bitlib/zr8bitram.h>

#include <benchmark/benchmark.h>

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

using namespace ZR;

namespace {

/// Counts the locks of an instruction: PC read and written, the opcode, the instruction's bytes, AC and C
/// read, four flags each read and written, AC written.
constexpr int LocksOfImmediate = 2 + 1 + 1 + 2 + 4 * 2 + 1;

/// A row of a table whose handler does nothing.
class EmptyProcessor : public ZR8BitProcMOS6510
{
    Q_OBJECT

public:
    EmptyProcessor()
    {
        init();
        _row = _commands.command(0xAA);
        connect(_row, SIGNAL(execute(ZR8BitProcCommand *, const char *)), this,
                SLOT(mc_Nothing(ZR8BitProcCommand *, const char *)), Qt::DirectConnection);
    }

    void emitSignal(const char *params) { _row->exec(params, 1); }

public Q_SLOTS:
    void mc_Nothing(ZR8BitProcCommand *, const char *params) { benchmark::DoNotOptimize(params); }

private:
    ZR8BitProcCommand *_row;
};

void instructionFloor(benchmark::State &state)
{
    EmptyProcessor processor;
    QMutex mutex;
    for (auto _ : state) {
        QByteArray instruction(2, Qt::Uninitialized);
        benchmark::DoNotOptimize(instruction.data());
        processor.emitSignal(instruction.constData() + 1);
        for (int i = 0; i < LocksOfImmediate + static_cast<int>(state.range(0)); ++i) {
            const QMutexLocker locker(&mutex);
            benchmark::ClobberMemory();
        }
    }
}
BENCHMARK(instructionFloor)->ArgName("furtherLocks")->Arg(0)->Arg(1)->Arg(2);

/// Runs a memory full of one instruction.
void runInstruction(benchmark::State &state, const QByteArray &instruction)
{
    ZR8BitRAM ram;
    ram.setSize(0x10000);
    const int length = static_cast<int>(instruction.size());
    for (int address = 0; address + length <= ram.size(); address += length)
        ram.setValue(instruction, address);
    ZR8BitProcMOS6510 processor;
    processor.init();
    processor.setMainMemory(&ram);
    ZR8BitProcessorIface &stepped = processor;
    // 65,536 is no multiple of 3, so the last bytes of the memory must not be run into.
    const int last = ram.size() / length - 1;
    int count = 0;
    for (auto _ : state) {
        if (stepped.step() < 0)
            state.SkipWithError("hardware issue");
        if (++count == last) {
            processor.registers().value(QStringLiteral("PC"))->setValue(0);
            count = 0;
        }
    }
}
BENCHMARK_CAPTURE(runInstruction, immediate, QByteArray("\x69\x01", 2));
BENCHMARK_CAPTURE(runInstruction, zeropage, QByteArray("\x65\x10", 2));
BENCHMARK_CAPTURE(runInstruction, absoluteX, QByteArray("\x7D\x00\x12", 3));

constexpr int BlockSize = 0x10000;

void lockAndReadByte(benchmark::State &state)
{
    QMutex mutex;
    const QByteArray content(BlockSize, 'x');
    int pos = 0;
    for (auto _ : state) {
        const QMutexLocker locker(&mutex);
        benchmark::DoNotOptimize(content.constData()[pos]);
        pos = (pos + 1) & 0xFFF;
    }
}
BENCHMARK(lockAndReadByte);

void lockAndWriteByte(benchmark::State &state)
{
    QMutex mutex;
    QByteArray content(BlockSize, 'x');
    char *bytes = content.data();
    int pos = 0;
    for (auto _ : state) {
        const QMutexLocker locker(&mutex);
        bytes[pos] = 'y';
        benchmark::ClobberMemory();
        pos = (pos + 1) & 0xFFF;
    }
}
BENCHMARK(lockAndWriteByte);

template <typename Access>
void accessBlock(benchmark::State &state, Access access)
{
    ZR8BitRAM ram;
    ram.setSize(BlockSize);
    int pos = 0;
    for (auto _ : state) {
        access(ram, pos);
        pos = (pos + 1) & 0xFFF;
    }
}
BENCHMARK_CAPTURE(accessBlock, readByte,
                  [](ZR8BitRAM &ram, int pos) { benchmark::DoNotOptimize(ram.byteValue(pos)); });
BENCHMARK_CAPTURE(accessBlock, readWord,
                  [](ZR8BitRAM &ram, int pos) { benchmark::DoNotOptimize(ram.wordValue(pos)); });
BENCHMARK_CAPTURE(accessBlock, writeByte, [](ZR8BitRAM &ram, int pos) { ram.setByteValue('y', pos); });
BENCHMARK_CAPTURE(accessBlock, writeWord, [](ZR8BitRAM &ram, int pos) { ram.setWordValue(0x1234, pos); });

} // namespace

#include "bench_machine.moc"
