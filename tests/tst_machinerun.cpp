// A machine of the kit under control: limits, waiting, calls, watches, states, the address space of settings.

#include "testlogger.h"

#include <zr8bitkit/zr8bitaddressspace.h>
#include <zr8bitkit/zr8bitmachine.h>
#include <zr8bitkit/zr8bittrace.h>
#include <zr8bitkit/zrmapconfig.h>
#include <zr8bitlib/zr8bitprocbase.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using namespace ZR;
using RunEnd = ZR8BitMachine::RunEnd;
using Limits = ZR8BitMachine::RunLimits;

class tst_MachineRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void maps_data()
    {
        QTest::addColumn<QString>("error"); // empty: it is right
        QTest::newRow("RAM:MAIN@0, ROM:BIOS@$E000+8:$8") << QString();
        QTest::newRow("RAM:MAIN@$FFFF:1") << QString();
        QTest::newRow("ROM:BIOS@0") << QString();
        QTest::newRow("RAM:MAIN@1") << u"'RAM:MAIN@1': 65536 bytes from 1 on do not fit"_s;
        QTest::newRow("RAM:MAIN@0+65536") << u"has no 1 bytes from 65536 on"_s;
        QTest::newRow("ROM:BIOS@0:17,") << u"has no 17 bytes from 0 on"_s;
        QTest::newRow("ROM:MAIN@0") << u"PROC_CPU.Map: the machine has no ROM 'MAIN'!"_s;
        QTest::newRow("RAM:MAIN@-1") << u"'RAM:MAIN@-1' is not of the form"_s;
        QTest::newRow("MAIN@0") << u"'MAIN@0' is not of the form"_s;
        QTest::newRow("RAM:MAIN@0+") << u"'RAM:MAIN@0+' is not of the form"_s;
    }

    void maps()
    {
        QFETCH(const QString, error);
        ZRMapConfig config = settings();
        config.setValue(u"PROC_CPU.Map"_s, QString::fromLatin1(QTest::currentDataTag()));
        ZR8BitMachine machine;
        QCOMPARE(machine.load(&config), error.isEmpty());
        QVERIFY2(machine.lastErrorStr().contains(error), qPrintable(machine.lastErrorStr()));
        QCOMPARE(machine.processor() == nullptr, !error.isEmpty());
        config.remove(u"PROC_CPU.Instructions"_s);
        QVERIFY(!machine.load(&config) && machine.lastErrorStr().contains("complete processor"_L1));
    }

    // A ROM lies over RAM: reads see it, loads and writes go below.
    void banks()
    {
        ZRMapConfig config = settings();
        config.setValue(u"PROC_CPU.Map"_s, u"RAM:MAIN@0, ROM:BIOS@0x400+8:4"_s);
        ZR8BitMachine machine;
        QVERIFY(machine.load(&config));
        machine.computer().roms().value(u"BIOS"_s)->setContent("0123456789ABCDEF");
        load(machine, "A9AA 8D0104 AD0104 02"); // LDA #$AA; STA $0401; LDA $0401
        QVERIFY(machine.loadBytes("xyz", 0x402));
        QCOMPARE(machine.bytes(0x3FF, 6).toHex(), "00383941427a");
        QCOMPARE(machine.run(), RunEnd::Jam);
        QCOMPARE(machine.registerValue(u"AC"_s), 0x39);
        QCOMPARE(machine.memory()->value(0x400, 5), "\0\xAAxyz"_ba);
        machine.chip()->reset();
        QVERIFY(machine.setRegister(u"PC"_s, 2) && machine.setRegister(u"AC"_s, 5) &&
                machine.setWatch(0x401, 1));
        QCOMPARE(machine.run(), RunEnd::Watch);
        QCOMPARE(int(machine.lastAccess().before), 0xAA);
        QVERIFY(!machine.loadBytes("12", 0xFFFF) && machine.loadBytes("1", 0xFFFF));
    }

    void limits()
    {
        ZR8BitMachine machine;
        make(machine, "E8 4C0000"); // INX; JMP: 5 cycles
        Limits limits;
        limits.cycles = 12;
        QCOMPARE(machine.run(limits), RunEnd::Cycles);
        QCOMPARE(machine.cycles(), quint64(12));
        limits.cycles = ~quint64(1); // beyond the counter's end
        limits.instructions = 3;
        QCOMPARE(machine.run(limits), RunEnd::Count);
        QCOMPARE(machine.instructionCount(), 8);
        limits = {};
        limits.addresses = {9, 1};
        QCOMPARE(machine.run(limits), RunEnd::Address);
        QCOMPARE(machine.programCounter(), 1);
        limits.addresses = {9};
        limits.predicate = [&] { return machine.registerValue(u"XR"_s) == 0; };
        QCOMPARE(machine.run(limits), RunEnd::Requested);
        const qint64 count = machine.instructionCount();
        QCOMPARE(machine.registerValue(u"XR"_s), 0);
        limits.predicate = [&] { return machine.stop(), false; };
        QVERIFY(machine.run(limits) == RunEnd::Requested && machine.instructionCount() == count + 1);
        make(machine, "4C0000"); // an NMI that is there ends the loop
        machine.loadBytes(QByteArray::fromHex("000300000003"), 0xFFFA);
        limits.addresses = {0x300};
        limits.predicate = [&] { return machine.chip()->triggerNMI(), false; };
        QCOMPARE(machine.run(limits), RunEnd::Address);
        make(machine, "4CF501"); // JMP $01F5, where JSR $01F5 overwrites itself
        QCOMPARE(machine.instructionCount(), 0);
        QVERIFY(machine.loadBytes(QByteArray::fromHex("20F501"), 0x1F5));
        QCOMPARE(machine.run({5}), RunEnd::Count);
    }

    // Whether a program that waits is an endless loop. Thousand million cycles would take a minute.
    void waiting_data()
    {
        QTest::addColumn<bool>("irq");
        QTest::addColumn<bool>("irqComes");
        QTest::addColumn<bool>("nmiComes");
        QTest::addColumn<RunEnd>("end");
        QTest::newRow("58 4C0100") << false << false << false << RunEnd::EndlessLoop;
        QTest::newRow("58  4C0100") << true << false << false << RunEnd::Address;
        QTest::newRow("58 4C01 00") << false << true << false << RunEnd::Cycles;
        QTest::newRow("78 4C0100") << true << true << false << RunEnd::EndlessLoop;
        QTest::newRow("78 4C01 00") << false << false << true << RunEnd::Cycles;
    }

    void waiting()
    {
        QFETCH(const bool, irq);
        Limits limits;
        limits.cycles = 1'000'000'000;
        limits.addresses = {0x300};
        QFETCH(const bool, irqComes);
        QFETCH(const bool, nmiComes);
        limits.irqComes = irqComes;
        limits.nmiComes = nmiComes;
        ZR8BitMachine machine;
        make(machine, QTest::currentDataTag());
        machine.loadBytes(QByteArray::fromHex("0003"), 0xFFFE);
        machine.chip()->setIRQ(irq);
        const RunEnd end = machine.run(limits);
        QTEST(end, "end");
        QCOMPARE(machine.instructionCount() > 300'000'000, end == RunEnd::Cycles);
        int asked = 0;
        limits.predicate = [&asked] { return ++asked == 3; };
        limits.cycles = Limits().cycles;
        QVERIFY(end != RunEnd::Cycles || machine.run(limits) == RunEnd::Requested);
    }

    // A device may stop the run and load bytes, but not run or load the machine.
    void handlers()
    {
        ZR8BitMachine machine;
        make(machine, "8D00D0 8D00D0"); // STA $D000, twice
        ZRMapConfig config = settings();
        machine.addressSpace().mapDevice(0xD000, 1, nullptr, [&](quint16, quint8) {
            QCOMPARE(machine.run(), RunEnd::Stopped);
            QCOMPARE(machine.lastErrorStr(), u"The machine is running: it cannot run now!"_s);
            QVERIFY(!machine.load(&config) && machine.lastErrorStr().contains("cannot be loaded now"_L1));
            QVERIFY(!machine.loadSettings(u"x.ini"_s) && !machine.restoreState({}) && !machine.stepOver());
            QVERIFY(machine.saveState().isEmpty() && !machine.setWatch(0, 1) && !machine.call(0));
            QVERIFY(machine.loadBytes("1", 0x400));
            machine.stop();
        });
        QCOMPARE(machine.run(), RunEnd::Requested);
        QCOMPARE(machine.programCounter(), 3);
        QCOMPARE(machine.processor()->step(), 3);
        QCOMPARE(machine.run({1}), RunEnd::Count);

        const QByteArray before = machine.saveState();
        QVERIFY(machine.setRegister(u"XR"_s, 5) && machine.loadBytes("2", 0x400));
        QByteArray heard; // the memory that goes with the register
        connect(machine.findRegister(u"XR"_s), &ZR8BitRegister::onValueChanged, this, [&] {
            QVERIFY(!machine.load(&config));
            heard += machine.bytes(0x400, 1);
        });
        QVERIFY(machine.restoreState(before) && machine.setRegister(u"XR"_s, 6));
        QCOMPARE(heard, "11");
    }

    void watches()
    {
        ZR8BitMachine machine;
        // LDA #$11; STA $0400; LDA $0400; INC $0400; LDA $0400; STA $0401; JSR $0200; there JSR $0300
        make(machine, "A911 8D0004 AD0004 EE0004 AD0004 8D0104 200002");
        machine.loadBytes(QByteArray::fromHex("200003"), 0x200);
        machine.loadBytes(QByteArray::fromHex("AD0303 02"), 0x300); // LDA $0303; JAM
        QVERIFY(machine.setWatch(0x3FF, 2));
        QCOMPARE(machine.run(), RunEnd::Watch);
        const ZR8BitMachine::SeenAccess access = machine.lastAccess();
        QVERIFY(access.isWrite && access.address == 0x400 && access.instruction == 2);
        QVERIFY(access.before == 0 && access.after == 0x11);
        QCOMPARE(machine.run(), RunEnd::Watch);
        QVERIFY(!machine.lastAccess().isWrite && machine.lastAccess().after == 0x11);
        QCOMPARE(machine.run(), RunEnd::Watch);
        QVERIFY(machine.lastAccess().isWrite && machine.lastAccess().after == 0x12);
        QVERIFY(machine.setWatch(0x400, 1, ZR8BitMachine::Access::Write));
        QCOMPARE(machine.run({2}), RunEnd::Count);
        QCOMPARE(machine.lastAccess().address, -1);
        QVERIFY(machine.setWatch(0, 0x200)); // the bytes of instructions do not count, but the stack does
        QCOMPARE(machine.run(), RunEnd::Watch);
        QCOMPARE(machine.lastAccess().address, 0x1FE);
        QCOMPARE(machine.run({0}), RunEnd::Count);
        QCOMPARE(machine.lastAccess().address, -1);
        QVERIFY(machine.setWatch(0x100, 0x204, ZR8BitMachine::Access::Read));
        QCOMPARE(machine.run(), RunEnd::Watch);
        QCOMPARE(machine.lastAccess().address, 0x303);
        QCOMPARE(machine.run(), RunEnd::Jam);
        make(machine, "EE0100"); // INC of the instruction itself
        QVERIFY(machine.setWatch(0, 3) && machine.run() == RunEnd::Watch && machine.lastAccess().isWrite);
        make(machine, "200000"); // JSR to itself, which comes to what is watched
        Limits limits;
        limits.cycles = 1000;
        limits.nmiComes = true;
        QVERIFY(machine.setWatch(0x180, 1) && machine.run(limits) == RunEnd::Watch);
        for (const auto &[address, length] : {std::pair(-1, 1), {0x10000, 1}, {0, 0x10001}, {0, -1}})
            QVERIFY(!machine.setWatch(address, length));
    }

    void calls()
    {
        ZR8BitMachine machine;
        make(machine, "200003 E8");                                           // JSR $0300; INX
        machine.loadBytes(QByteArray::fromHex("20 0503 E8 60 C8 60"), 0x300); // JSR $0305; INX; RTS; INY; RTS
        QVERIFY(machine.call(0x300));
        QCOMPARE(machine.programCounter(), 0);
        QCOMPARE(machine.registerValue(u"SP"_s), 0xFF);
        QCOMPARE(machine.registerValue(u"XR"_s) + machine.registerValue(u"YR"_s), 2);
        Limits limits;
        limits.addresses = {0, 0x305};
        QVERIFY(!machine.stepOver(limits) && machine.programCounter() == 0x305); // leaves a breakpoint
        limits.addresses = {0x305};
        QVERIFY(machine.stepOut(limits) && machine.stepOut() && machine.programCounter() == 3);
        QVERIFY(machine.stepOver());
        QCOMPARE(machine.programCounter(), 4);
        machine.setRegister(u"PC"_s, 0);
        QCOMPARE(machine.run({2}), RunEnd::Count); // within the inner one
        QVERIFY(machine.stepOut());
        QCOMPARE(machine.programCounter(), 0x303);
        QVERIFY(machine.stepOut());
        QCOMPARE(machine.programCounter(), 3);
        // PLA; TAY; PLA; PHA; TYA; PHA; TSX; INX; INX; TXS; DEX; DEX; TXS; LDA #3; PHA; LDA #$15; PHA; RTS to
        // the last INY; RTS
        machine.loadBytes(
            QByteArray::fromHex("68 A8 68 48 98 48 BA E8E8 9A CACA 9A A903 48 A915 48 60 EA C8 60"), 0x300);
        for (const bool steps : {true, false}) {
            machine.setRegister(u"PC"_s, 0);
            QVERIFY(steps ? machine.stepOver() : machine.run({1}) == RunEnd::Count && machine.stepOut());
            QCOMPARE(machine.programCounter(), 3);
        }
        machine.loadBytes(QByteArray::fromHex("E8 60"), 0x300);
        machine.setRegister(u"PC"_s, 0x301);
        QVERIFY(machine.call(0x300)); // comes by where it was called, before it returns
        QCOMPARE(machine.registerValue(u"SP"_s), 0xFF);
        make(machine, "");
        machine.loadBytes(QByteArray::fromHex("4C0003"), 0x300);
        QVERIFY(!machine.call(0x300));
        QCOMPARE(
            machine.lastErrorStr(),
            u"The subroutine did not return: the run reached an endless loop at $0300 after 1 instructions!"_s);
        QVERIFY(!machine.call(0x10000) && !machine.call(-1));
        make(machine, "02");
        QVERIFY(machine.run() == RunEnd::Jam && !machine.call(0x300));
        QCOMPARE(machine.registerValue(u"SP"_s), 0xFF);
        QCOMPARE(machine.lastErrorStr(), machine.processor()->hardwareIssueMsg());
    }

    void states()
    {
        ZR8BitMachine machine;
        make(machine, "E8 8E0004 02"); // INX; STX $0400
        const QByteArray before = machine.saveState();
        QByteArray damaged = before;
        const QByteArray chip = machine.chip()->saveState();
        damaged[before.indexOf(chip) + chip.size() - 2] = 3; // of "delayed I"
        QCOMPARE(machine.run(), RunEnd::Jam);
        const QByteArray after = machine.saveState();
        const QString difference = machine.stateDifference(after, before);
        QVERIFY2(difference.contains("XR 01, was 00; "_L1) && difference.contains("cycles 8, was 0; "_L1) &&
                     difference.endsWith("; $0400: 01, was 00"_L1),
                 qPrintable(difference));
        QVERIFY(machine.restoreState(before) && machine.saveState() == before);
        QCOMPARE(machine.stateDifference(before, machine.saveState()), QString());
        QCOMPARE(machine.run(), RunEnd::Jam);
        QCOMPARE(machine.saveState(), after);

        QByteArray other = before;
        other[5] = 9;
        QByteArray odd = before;
        odd[0] = 9;
        for (const QByteArray &bad :
             {QByteArray(), before.chopped(1), before + 'x', before.first(40), other, odd}) {
            QVERIFY(!machine.restoreState(bad) && !machine.lastErrorStr().isEmpty());
            QCOMPARE(machine.stateDifference(before, bad), machine.lastErrorStr());
        }
        QVERIFY(!machine.restoreState(damaged));
        QCOMPARE(machine.lastErrorStr(), u"The state of the processor is damaged!"_s);
        QCOMPARE(machine.saveState(), after);
        ZRMapConfig config = settings();
        config.setValue(u"RAM_MORE.Size"_s, u"0"_s);
        config.setValue(u"Computer.RAMs"_s, u"MAIN, MORE"_s);
        QVERIFY(machine.load(&config, {u"MAIN"_s, {}}) && !machine.restoreState(before));
        const QByteArray more = machine.saveState();
        QVERIFY(machine.restoreState(more) && !machine.computer().rams().value(u"MORE"_s)->isThereError());
        config.setValue(u"Computer.RAMs"_s, u"MAIN"_s);
        QVERIFY(machine.load(&config) && !machine.restoreState(more));
        config.setValue(u"RAM_MAIN.Size"_s, u"512"_s);
        QVERIFY(machine.load(&config) && !machine.restoreState(before));
        QCOMPARE(machine.lastErrorStr(), u"The state is of a machine with other RAM blocks!"_s);
        config.remove(u"PROC_CPU.Instructions"_s);
        QVERIFY(machine.load(&config) && !machine.restoreState(before));
        QCOMPARE(machine.lastErrorStr(), u"The state is of a machine with another processor!"_s);
        const QByteArray plain = machine.saveState();
        QVERIFY(machine.setRegister(u"PC"_s, 0x1234) &&
                machine.stateDifference(machine.saveState(), plain) == "PC 1234, was 0000"_L1);
        QCOMPARE(machine.run(), RunEnd::Stopped);
        QVERIFY(machine.restoreState(plain) && machine.programCounter() == 0);
        QVERIFY(!machine.processor()->hardwareIssue() && machine.loadBytes(QByteArray(20, '1'), 0x1EC));
        const QString many = machine.stateDifference(machine.saveState(), plain);
        QVERIFY2(many.endsWith("$01FB: 31, was 00; and 4 more"_L1), qPrintable(many));
    }

    // The last 256 instructions, those of an interrupt with what it is, as they were when they ran.
    void history()
    {
        ZR8BitMachine machine;
        make(machine, "58 EE0500 4C 0200"); // CLI; INC $0005; JMP $0002, which becomes JMP $0003
        machine.loadBytes(QByteArray::fromHex("0003"), 0xFFFE);
        machine.loadBytes("\x40", 0x300); // RTI
        QVERIFY(machine.setHistory(true) && machine.history().isEmpty());
        int told = 0;
        machine.setInterruptObserver([&told](auto, quint16 handler) { told += handler; });
        machine.chip()->setIRQ(true);
        QCOMPARE(machine.run({3}), RunEnd::Count);
        QCOMPARE(told, 0x300);
        const auto history = machine.history();
        QCOMPARE(history.size(), 3);
        QCOMPARE(history[1].bytes.toHex(), "ee0500");
        QVERIFY(history[1].cycles == 6 && !history[1].interrupt);
        QVERIFY(history[2].address == 0x300 && history[2].interrupt == ZR8BitChipIface::Interrupt::IRQ);
        make(machine, "E8 4C0000");
        machine.loadBytes("\1", 0xFFFB);
        machine.chip()->triggerNMI();
        QVERIFY(machine.run({1}) == RunEnd::Count && told == 0x300); // by a load nobody is told any more
        QVERIFY(machine.setRegister(u"PC"_s, 0));
        QVERIFY(machine.setHistory(true) && machine.run({301}) == RunEnd::Count);
        QCOMPARE(machine.history().size(), 256);
        QCOMPARE(machine.history().constLast().bytes.toHex(), "e8");
        QCOMPARE(machine.history().constFirst().bytes.toHex(), "4c0000");
    }

    void logging()
    {
        TestLogger logger;
        ZR8BitMachine machine;
        machine.setLogger(&logger);
        QVERIFY(!machine.load(nullptr));
        QCOMPARE(logger.reports.size(), 1);
        make(machine, "E8");
        logger.reports.clear();
        machine.memory()->byteValue(-1);
        machine.processor()->execute(nullptr, 0);
        machine.addressSpace().mapDevice(-1, 1, nullptr, nullptr);
        QCOMPARE(logger.reports.size(), 3);
        QVERIFY(!machine.loadSettings(u"none.ini"_s) && !machine.memory() &&
                machine.computer().rams().isEmpty());
    }

private:
    static ZRMapConfig settings()
    {
        return {{u"Computer.RAMs"_s, u"MAIN"_s},       {u"RAM_MAIN.Size"_s, u"0x10000"_s},
                {u"Computer.ROMs"_s, u"BIOS"_s},       {u"ROM_BIOS.Size"_s, u"16"_s},
                {u"Computer.Processors"_s, u"CPU"_s},  {u"PROC_CPU.Type"_s, u"MOS6510"_s},
                {u"PROC_CPU.Instructions"_s, u"all"_s}};
    }

    static void load(ZR8BitMachine &machine, const char *program)
    {
        QVERIFY(machine.loadBytes(QByteArray::fromHex(program), 0) && machine.setRegister(u"SP"_s, 0xFF) &&
                machine.setRegister(u"PS"_s, 0x04));
    }

    /// A machine with the program at 0, where it starts.
    static void make(ZR8BitMachine &machine, const char *program)
    {
        ZRMapConfig config = settings();
        QVERIFY(machine.load(&config));
        load(machine, program);
    }
};

QTEST_GUILESS_MAIN(tst_MachineRun)
#include "tst_machinerun.moc"
