// The complete processor and its host: failures, what is heard of steps, states and control.

#include "mos6510machine.h"

#include <zr8bitkit/zr8bitaddressspace.h>

using namespace ZR;

class tst_MOS6510Host : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void failures()
    {
        Machine machine(false);
        ZR8BitProcMOS6510Full &processor = machine.processor;
        QCOMPARE(processor.commandList().size(), 151);
        machine.set(u"0000=42 AC=01"_s);
        QCOMPARE(machine.step(), -1);
        QCOMPARE(processor.hardwareIssueMsg(),
                 u"The opcode: 0x42 is not in the processor supported command list!"_s);
        QVERIFY(!processor.init()); // starts the registers anew, and goes on
        processor.reset();
        processor.setMainMemory(nullptr);
        QCOMPARE(processor.execute(QByteArray("\x69\x05", 2)), 2);
        for (const char *code : {"\x48", "\xA5\x07"}) {
            processor.execute(code, 2);
            QCOMPARE(processor.hardwareIssueMsg(), u"Main memory must be defined!"_s);
            processor.resetHardwareIssue();
        }
        QCOMPARE(machine.step(), -1);
        QCOMPARE(machine.now(u"AC=05 PC=0000 PS=24 SP=fd"_s), u"AC=05 PC=0000 PS=24 SP=fd"_s);

        Machine jammed;
        jammed.set(u"1234=42ea fffa=7856 fffc=3412"_s);
        jammed.processor.reset(); // before any step, as hosts do
        QCOMPARE(jammed.step(), 1);
        QCOMPARE(jammed.processor.hardwareIssueMsg(),
                 u"The opcode: 0x42 has stopped the processor until a reset!"_s);
        QCOMPARE(jammed.step(), 0);
        QCOMPARE(jammed.valueOf(u"PC"_s), 0x1234);
        jammed.set(u"fffc=3512 PS=20 SP=00"_s);
        jammed.processor.resetHardwareIssue();
        jammed.processor.execute(QByteArray("\x78")); // SEI, which an IRQ would not see yet
        jammed.processor.setIRQ(true);
        jammed.processor.triggerNMI();
        jammed.processor.reset(); // forgets both
        QCOMPARE(jammed.step(), 1);
        QCOMPARE(jammed.now(u"PC=1236 PS=24 SP=fd"_s), u"PC=1236 PS=24 SP=fd"_s);
    }

    /// What a host hears of steps, and a row that it runs by itself meanwhile.
    void heard()
    {
        Machine machine;
        QStringList heard;
        for (ZR8BitRegister *reg : machine.processor.registers())
            connect(reg, &ZR8BitRegister::onValueChanged, this, [&heard, reg] { heard += reg->id(); });
        connect(machine.processor.commandList().value(0x48), &ZR8BitProcCommand::execute, this, [&] {
            heard += machine.now(u"PC=0000 SP=00"_s);
            machine.processor.execute(QByteArray("\x4C\x34\x12", 3)); // moves no PC
        });
        machine.set(u"SP=ff 0000=48a900a980"_s);
        heard.clear();
        machine.processor.triggerNMI(); // its vector is $0000
        for (int i = 0; i < 3; ++i)
            machine.step();
        QCOMPARE(machine.valueOf(u"PC"_s), 5);
        machine.processor.reset();
        QCOMPARE(heard.join(u' '), u"SP PS PC SP PC=0000 SP=fb PC PS PC AC PS PC SP PC"_s);
    }

    /// Random programs with interrupts, in a block and over a bus, watched and not: all is the same.
    void watchedAndNot()
    {
        struct Way
        {
            ZR8BitRAM ram;
            ZR8BitAddressSpace space;
            ZR8BitProcMOS6510Full processor;
            int changes = 0; ///< of registers, as they are told
        };
        QRandomGenerator random(6510);
        for (int program = 0; program < 40; ++program) {
            QByteArray memory(0x10000, '\0');
            random.fillRange(reinterpret_cast<quint32 *>(memory.data()), memory.size() / 4);
            Way ways[4];
            for (int i = 0; i < 4; ++i) {
                Way &way = ways[i];
                way.processor.setUndocumented(true);
                way.ram.setContent(memory);
                if (i < 2)
                    way.processor.setMainMemory(&way.ram);
                else if (way.space.mapMemory(0, &way.ram))
                    way.processor.setBus(&way.space);
                QVERIFY(way.processor.init());
                if (i % 2 == 0)
                    continue;
                for (ZR8BitRegister *reg : way.processor.registers())
                    connect(reg, &ZR8BitRegister::onValueChanged, this, [&way] { ++way.changes; });
            }
            for (int step = 0; step < 500; ++step) {
                const int event = random.bounded(20);
                const int opcode = random.bounded(256);
                QByteArray results;
                QSet<QByteArray> states;
                for (Way &way : ways) {
                    if (event < 2)
                        way.processor.setIRQ(event == 0);
                    if (event == 2)
                        way.processor.triggerNMI();
                    if (event == 3) {
                        const char code[] = {char(opcode), char(step), char(program)};
                        results += char(way.processor.execute(code, 3));
                    }
                    results += char(static_cast<ZR8BitProcessorIface &>(way.processor).step());
                    if (way.processor.isJammed())
                        way.processor.reset();
                    states += way.processor.saveState();
                }
                QCOMPARE(states.size(), 1);
                QCOMPARE(results, results.first(results.size() / 4).repeated(4));
            }
            for (Way &way : ways)
                QVERIFY(way.ram.value(0, 0x10000) == ways[0].ram.value(0, 0x10000));
            QVERIFY(ways[1].changes > 500 && ways[3].changes == ways[1].changes && ways[0].changes == 0);
        }
    }

    /// Whoever is called while an instruction or an interrupt is at work may exchange the memory, and delete
    /// the old one, or call the processor again.
    void calledMeanwhile()
    {
        ZR8BitProcMOS6510Full processor;
        auto &stepped = static_cast<ZR8BitProcessorIface &>(processor);
        const auto newRAM = [](const char *vectors) {
            auto ram = std::make_unique<ZR8BitRAM>();
            ram->setContent(QByteArray::fromHex("e8").repeated(0x10000)); // INX
            ram->write(QByteArray::fromHex(vectors), 0xFFFA);
            return ram;
        };
        QVERIFY(processor.init());
        auto ram = newRAM("341278565634");
        processor.setMainMemory(ram.get());
        QStringList heard;
        processor.setInterruptObserver([&](ZR8BitChipIface::Interrupt interrupt, quint16 handler) {
            heard +=
                (interrupt == ZR8BitChipIface::Interrupt::NMI ? u"NMI "_s : u"IRQ "_s) + hexOf(handler, 4);
            QCOMPARE(processor.programCounter(), handler);
            processor.setInterruptObserver(nullptr);
            ram = newRAM("000000000000");
            ram->setByteValue('\xC8', 0x1234); // INY
            processor.setMainMemory(ram.get());
        });
        processor.reset();
        processor.triggerNMI();
        QCOMPARE(stepped.step(), 1);
        QCOMPARE(processor.registerValue(u"YR"_s), 1);

        connect(processor.registers().value(u"SP"_s), &ZR8BitRegister::onValueChanged, this, [&] {
            heard += QString::number(stepped.step());
            processor.setMainMemory(nullptr);
            ram.reset();
        });
        processor.triggerNMI();
        QCOMPARE(stepped.step(), -1);
        QCOMPARE(processor.hardwareIssueMsg(), u"Main memory must be defined!"_s);
        processor.resetHardwareIssue();

        ZR8BitAddressSpace space;
        const auto code = QByteArray::fromHex("ad004068"); // LDA $4000; PLA
        space.mapDevice(
            0x0200, 4, [&](quint16 at) { return quint8(code[at & 3]); }, nullptr);
        space.mapDevice(
            0x4000, 1,
            [&](quint16) {
                heard += QString::number(stepped.step()) + QString::number(processor.execute(code));
                processor.setBus(nullptr);
                return quint8(0x5A);
            },
            nullptr);
        processor.setBus(&space);
        processor.setProgramCounter(0x0200);
        QCOMPARE(stepped.step(), 3);
        QCOMPARE(heard.join(u", "), u"NMI 1234, 0, 00"_s);
        QCOMPARE(processor.registerValue(u"AC"_s), 0x5A);
        QCOMPARE(int(processor.programCounter()), 0x0203);
        processor.setMainMemory(nullptr);
        QCOMPARE(stepped.step(), -1);
    }

    /// States that are restored go on as the first one did; what is no state changes nothing.
    void restoring()
    {
        Machine machine;
        ZR8BitProcMOS6510Full &processor = machine.processor;
        machine.set(u"0000=58e8ea4203 AC=12 PC=0000 PS=24"_s);
        processor.triggerNMI();
        processor.setIRQ(true);
        QList<QByteArray> states = {processor.saveState()};
        processor.reset();
        machine.set(u"PC=0000 PS=24"_s);
        processor.setIRQ(true);
        machine.step(); // CLI, which an IRQ does not see yet
        states += processor.saveState();
        processor.setIRQ(false);
        for (int i = 0; i < 3; ++i)
            machine.step(); // JAM
        states += processor.saveState();
        QCOMPARE(QSet<QByteArray>(states.begin(), states.end()).size(), 3);
        for (const QByteArray &state : std::as_const(states)) {
            Machine other;
            for (qsizetype size = 0; size < state.size(); ++size)
                QVERIFY(!other.processor.restoreState(state.first(size)));
            QVERIFY(!other.processor.restoreState(state + '\0'));
            for (const int bad : {7, 8, 17}) // lines and the delayed I
                QVERIFY(!other.processor.restoreState(QByteArray(state).replace(bad, 1, "\x03")));
            QCOMPARE(other.processor.saveState(), Machine().processor.saveState());
            other.ram.setContent(machine.ram.value(0, 0x10000));
            QVERIFY(other.processor.restoreState(state) && processor.restoreState(state));
            QCOMPARE(other.processor.saveState(), state);
            QCOMPARE(other.processor.hardwareIssueMsg(), processor.hardwareIssueMsg());
            QCOMPARE(other.processor.isJammed(), &state == &states.constLast());
            QCOMPARE(other.step(), machine.step());
            QCOMPARE(other.processor.saveState(), processor.saveState());
        }
        QStringList fields;
        for (const ZR8BitChipIface::Field &field : processor.stateFields())
            fields += u"%1:%2"_s.arg(field.name).arg(field.bytes);
        QCOMPARE(fields.join(u' '),
                 u"AC:1 XR:1 YR:1 SP:1 PS:1 PC:2 IRQ:1 NMI:1 cycles:8 delayed I:1 JAM:1"_s);
    }

    /// What a host controls a chip by, without being connected.
    void control()
    {
        Machine machine(false);
        ZR8BitChipIface &chip = machine.processor;
        machine.set(u"0200=205634 3456=4c5634 4000=d0fe 0300=20000300 01f0=50fe fffc=0040 SP=ff PS=e2"_s);
        chip.setProgramCounter(0x0200);
        QVERIFY(chip.isCallNext() && !chip.isWaiting() && chip.acceptsIRQ());
        QCOMPARE(chip.instructionText(0x0200), u"JSR $3456"_s);
        QCOMPARE(chip.stateText(), u"00 00 00 FF  NV-...Z."_s);
        QCOMPARE(chip.stateText().size(), chip.stateHeading().size());
        chip.call(0x3456);
        QCOMPARE(machine.now(u"01fe=ff01 SP=fd PC=3456 cycles=0"_s), u"01fe=ff01 SP=fd PC=3456 cycles=0"_s);
        QCOMPARE(int(chip.stackPointer()), 0x01FD);
        QCOMPARE(chip.wait(100), 0ULL);
        QCOMPARE(machine.step(), 3);
        QVERIFY(chip.isWaiting() && !chip.isCallNext());
        QCOMPARE(chip.wait(100), 34ULL);
        QCOMPARE(chip.cycles(), 35 * 3ULL);
        chip.setIRQ(true);
        QCOMPARE(chip.wait(100), 0ULL);
        chip.setIRQ(false);

        chip.setProgramCounter(0x0300); // JSR to itself, which fills the stack step by step
        QVERIFY(!chip.isWaiting());
        machine.step();
        QVERIFY(chip.isWaiting() && chip.wait(12) == 0);
        chip.triggerNMI();
        QVERIFY(!chip.isWaiting());
        chip.setProgramCounter(0x4000);
        QVERIFY(chip.setRegisterValue(u"PS"_s, 0x20));
        machine.step();
        QVERIFY(chip.isWaiting()); // BNE
        QVERIFY(chip.setRegisterValue(u"PS"_s, 0x22) && !chip.isWaiting());
        QVERIFY(chip.setRegisterValue(u"PS"_s, 0x20) && machine.step() > 0 && chip.isWaiting());
        chip.reset(); // to the loop
        QVERIFY(!chip.isWaiting());
        chip.setProgramCounter(0x5000);
        QVERIFY(machine.step() > 0);
        chip.setProgramCounter(0x4000);
        QVERIFY(!chip.isWaiting());
        QVERIFY(!chip.setRegisterValue(u"PS"_s, 256) && !chip.setRegisterValue(u"PC"_s, 0x10000));
        QVERIFY(!chip.setRegisterValue(u"PS"_s, -1) && !chip.setRegisterValue(u"Q"_s, 0));
        QCOMPARE(chip.registerIds().join(u' '), u"AC XR YR SP PS PC"_s);
        QCOMPARE(chip.registerSize(u"PC"_s) * 10 + chip.registerSize(u"Q"_s), 20);
        QCOMPARE(chip.registerValue(u"PC"_s), 0x4000);
        QVERIFY(!machine.processor.setUndocumented(true) && machine.processor.isThereError());
    }
};

QTEST_GUILESS_MAIN(tst_MOS6510Host)
#include "tst_mos6510host.moc"
