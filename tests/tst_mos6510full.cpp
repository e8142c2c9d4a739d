// The complete processor: its table, each instruction with its cycles, interrupts, and programs.

#include "../fuzz/mos6510model.h"
#include "mos6510machine.h"

#include <zr8bitkit/zr8bitaddressspace.h>

using namespace ZR;

namespace {

/// The registers of the model as a machine tells them.
QString registersOf(const Mos6510Model &model)
{
    return u"AC=%1 XR=%2 YR=%3 SP=%4 PS=%5 PC=%6"_s.arg(hexOf(model.a, 2), hexOf(model.x, 2),
                                                        hexOf(model.y, 2), hexOf(model.s, 2),
                                                        hexOf(model.p, 2), hexOf(model.pc, 4));
}

constexpr int End = 0; ///< the steps of a program, which ends in a jump to itself

/// A row of instructions(): code at PC, $0200 if not told, what is there before, what the steps leave; and in
/// front of which step an interrupt comes up.
void row(const char *name, const char *code, const char *before, const char *after, int steps = 1,
         int irq = 0, int nmi = 0)
{
    QTest::newRow(name) << QString::fromLatin1(code) << QString::fromLatin1(before)
                        << QString::fromLatin1(after) << steps << irq << nmi;
}

} // namespace

class tst_MOS6510Full : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void table()
    {
        const auto documented = Machine(false).processor.commandList();
        for (int code = 0; code < 256; ++code) {
            Machine machine;
            const auto rows = machine.processor.commandList();
            ZR8BitProcCommand *row = rows.value(static_cast<unsigned char>(code));
            QVERIFY(!row->descHint().isEmpty());
            QVERIFY(row->desc().contains(u"Undocumented"_s) != documented.contains(row->code()));

            QString operand = row->length() == 1 ? u""_s : u" #cc"_s;
            if (code == 0x20 || code == 0x6C)
                operand = code == 0x20 ? u" cccc"_s : u" (cccc)"_s;
            else if (code % 0x20 == 0x10)
                operand = u" rr"_s;
            else if ((code & 0x9F) == 0x0A)
                operand = u" A"_s;
            else if ((code & 5) != 0) { // by its place in the matrix the mode is one of ADC
                const QString adc = rows.value(static_cast<unsigned char>(0x61 | (code & 0x1C)))->desc();
                operand = adc.section(u"ADC"_s, 1);
                const bool isOfY = (code & 0xD6) == 0x96; // where X is the operand
                QVERIFY(isOfY || adc.startsWith(row->desc().section(u"<br>"_s, 0, 0)));
                if (isOfY)
                    operand.replace(u'X', u'Y');
            }
            if (code != 0xAA) // the base's TAX
                QCOMPARE(row->desc().section(u"<br>"_s, -1), row->assembly() + operand);
            QCOMPARE(operand.count(u'c') / 2 + operand.count(u"rr"_s), row->length() - 1);

            int pc = -1;
            connect(row, &ZR8BitProcCommand::execute, this, [&] { pc = machine.valueOf(u"PC"_s); });
            machine.set(u"PC=0200 0200="_s + hexOf(code, 2));
            QCOMPARE(machine.step(), int(row->length()));
            QCOMPARE(pc, 0x0200);
            const bool crossingOfBase = code == 0x71 || code == 0x79 || code == 0x7D;
            const bool branchTaken = code % 0x40 == 0x10;
            QCOMPARE(int(machine.processor.cycles()), row->cycleCnt() - crossingOfBase + branchTaken);
        }
    }

    /// All sums and differences of two bytes and the carry, in both modes, digit by digit.
    void arithmetic()
    {
        Machine machine;
        ZR8BitRegister &ac = *machine.reg(u"AC"_s);
        ZR8BitRegister &ps = *machine.reg(u"PS"_s);
        for (int i = 0; i < 1 << 19; ++i) {
            const int a = i & 0xFF;
            const int m = i >> 8 & 0xFF;
            const int carry = i >> 16 & 1;
            const int base = i >> 17 & 1 ? 10 : 16;
            const int otherFlags = base == 10 ? 0x28 : 0x20;
            const bool adds = i >> 18;
            ac.setLo(static_cast<char>(a));
            ps.setLo(static_cast<char>(otherFlags | carry));
            const char code[] = {static_cast<char>(adds ? 0x69 : 0xE9), static_cast<char>(m)};
            machine.processor.execute(code, 2);

            const int sign = adds ? 1 : -1;
            const int in = adds ? carry : 1 - carry;
            const auto leaves = [&](int digit) { return adds ? digit >= base : digit < 0; };
            const auto nibble = [&](int digit) { return (digit + leaves(digit) * sign * (16 - base)) & 15; };
            const int low = a % 16 + sign * (m % 16 + in);
            const int high = a / 16 + sign * (m / 16 + leaves(low));
            const int result = nibble(high) << 4 | nibble(low);

            const int binary = a + sign * (m + in);
            const bool negative = (adds ? high << 4 : binary) & 0x80; // before the high digit is corrected
            const bool overflow = (a > 127) == ((m > 127) == adds) && (a > 127) != negative;
            const int flags = otherFlags | negative << 7 | overflow << 6 | (binary % 256 == 0) << 1 |
                              (leaves(high) == adds);
            QVERIFY2((ac.lo() & 0xFF) == result && (ps.lo() & 0xFF) == flags, qPrintable(hexOf(i, 5)));
        }
    }

    /// Each opcode in 200 states of any registers and memory, beside a plain model.
    void states()
    {
        quint32 seed = 1;
        const auto next = [&seed] { return static_cast<uchar>((seed = seed * 1664525 + 1013904223) >> 24); };
        const auto states = std::make_unique<Mos6510Model>();
        Mos6510Model &model = *states;
        const QByteArrayView memory(model.memory);
        for (int code = 0; code < 256; ++code) {
            Machine machine;
            std::generate(model.memory.begin(), model.memory.end(), next);
            machine.ram.setContent(memory.toByteArray());
            for (int i = 0; i < 200; ++i) {
                for (int *value : {&model.a, &model.x, &model.y, &model.s, &model.p})
                    *value = next();
                model.pc = next() << 8 | next();
                model.memory[static_cast<size_t>(model.pc)] = static_cast<uchar>(code);
                machine.ram.setByteValue(static_cast<char>(code), model.pc);
                const QString before = registersOf(model);
                machine.set(before);
                model.isJammed = false;
                model.cycles = machine.processor.cycles();
                QCOMPARE(machine.step(), model.step());
                machine.processor.resetHardwareIssue(); // of a JAM
                QVERIFY2(machine.now(before) == registersOf(model) &&
                             machine.processor.cycles() == model.cycles,
                         qPrintable(u"%1 leaves %2"_s.arg(before, machine.now(before + u" cycles="_s))));
            }
            QVERIFY(machine.ram.value(0, 0x10000) == memory);
        }
    }

    void instructions_data()
    {
        for (const char *column : {"code", "before", "after"})
            QTest::addColumn<QString>(column);
        for (const char *column : {"steps", "irq", "nmi"})
            QTest::addColumn<int>(column);

        row("(zero page,X) at the edge", "61f0", "XR=0f 00ff=34 0000=12 1234=5a", "AC=5a cycles=6");
        row("(zero page),Y at the edge", "71ff", "YR=01 00ff=ff 0000=12 1300=5a", "AC=5a cycles=6");
        row("crossing, then none", "bdff12a510", "XR=01", "PC=0205 cycles=8", 2);
        row("over the top", "ad34", "PC=fffe 0000=12 1234=5a 10000=ff", "AC=5a PC=0001");
        row("opcode at the top", "ad", "PC=ffff 0000=3412 1234=5a 10000=ffff", "AC=5a PC=0002");

        row("branch back", "d0fd", "", "PC=01ff cycles=4");
        row("branch from the edge", "50fb", "PC=02fe", "PC=02fb cycles=4");
        row("JMP ($xxFF)", "6cff12", "12ff=34 1200=56 1300=78", "PC=5634 cycles=5");
        row("JSR over its operand", "203412", "PC=017d SP=80", "PC=7f34 SP=7e 0180=01 017f=7f");
        row("RTS", "60", "SP=fe 01ff=ff 0100=12", "SP=00 PC=1300 cycles=6");
        row("BRK", "00", "PC=0345 PS=28 fffe=3412", "PC=1234 SP=fc PS=2c 01fd=384703 cycles=7");
        row("PHA", "48", "AC=5a SP=00", "0100=5a SP=ff cycles=3");
        row("PLP", "28", "SP=fe 01ff=10 PS=e0", "SP=ff PS=20 cycles=4");

        row("IRQ", "ea", "PS=38 fffe=3412 1234=ea", "PC=1235 SP=fc PS=3c 01fd=280002 cycles=9", 1, 1);
        row("IRQ after CLI", "58eaea", "PS=24 fffe=3412 1234=ea", "PC=1235 01fd=200202 cycles=13", 3, 1);
        row("IRQ after SEI", "78ea", "fffe=3412 1234=ea", "PC=1235 SP=fc PS=24 01fd=240102", 2, 2);
        row("IRQ two after SEI", "78eaea", "", "PS=24 cycles=6", 3, 3);
        row("IRQ after PLP", "28eaea", "PS=24 SP=fe", "PC=0202 SP=ff PS=20", 2, 1);
        row("IRQ after RTI", "40", "PS=24 SP=fc 01fd=200003 fffe=3412 1234=ea", "PC=1235 cycles=15", 2, 1);
        row("NMI before IRQ", "ea", "fffa=7856 5678=ea", "PC=5679 SP=fc PS=24 01fd=200002 cycles=9", 1, 1, 1);
        row("NMI is an edge", "ea", "PS=24 fffa=7856 5678=eaea", "PC=567a 01fd=240002 cycles=11", 2, 0, 1);

        // LDX #2; next: LDA $0300,X; BNE skip; LDY $11; TXA; STA $0400,Y; INC $11; STX $10; mark: CLC; ADC
        // $10; BCS skip; TAY; STA $0300,Y; BCC mark; skip: INX; BNE next; end: JMP end
        row("sieve", "a202bd0003d015a4118a990004e6118610186510b006a899000390f5e8d0e34c1f02", "",
            "0011=36 0400=020305070b0d1113171d1f25292b2f35 0434=f1fb00", End);
        // SED; LDX #210; LDY #5; loop: CLC; LDA $10; ADC #1; STA $10; LDA $11; ADC #0; STA $11; DEX; BNE
        // loop; DEY; BNE loop; SEC; LDA $10; SBC #$35; STA $12; LDA $11; SBC #$02; STA $13; end: JMP end
        row("count to 1234, less 235",
            "f8a2d2a00518a51069018510a51169008511cad0f088d0ed38a510e9358512a511e90285134c2502", "",
            "0010=34129909", End);
        // LDA #10; JSR fib; end: JMP end; fib: CMP #2; BCC leaf; PHA; SBC #1; JSR fib; PLA; SEC; SBC #2;
        // JSR fib; RTS; leaf: ADC $10; STA $10; RTS
        row("Fibonacci", "a90a2008024c0502c902900e48e9012008026838e902200802606510851060", "",
            "0010=37 SP=ff", End);
        // LDA #$5A; fill: STA $0300,X; INX; BNE fill; INC fill+2; LDY fill+2; CPY #6; BNE fill; INC next+1;
        // next: LDX #$11; end: JMP end
        row("self-modifying", "a95a9d0003e8d0faee0402ac0402c006d0f0ee1602a2114c1702", "",
            "02ff=005a 05ff=5a00 XR=12", End);
    }

    void instructions()
    {
        QFETCH(const QString, code);
        QFETCH(const QString, before);
        QFETCH(const QString, after);
        QFETCH(const int, steps);
        QFETCH(const int, irq);
        QFETCH(const int, nmi);
        Machine machine;
        machine.set(u"SP=ff PC=0200 "_s + before);
        machine.ram.write(QByteArray::fromHex(code.toLatin1()), machine.valueOf(u"PC"_s));
        int last = -1;
        const auto place = [&] { return machine.valueOf(u"PC"_s) << 16 | machine.valueOf(u"SP"_s); };
        for (int i = 1; steps == End ? last != place() : i <= steps; ++i) {
            last = place(); // PC alone stays also where RTS returns to an RTS
            machine.processor.setIRQ(irq != 0 && i >= irq);
            if (i == nmi)
                machine.processor.triggerNMI();
            QVERIFY(machine.step() > 0);
        }
        QCOMPARE(machine.now(after), after);
    }

    /// The published program that tests all documented instructions, in an address space.
    void functionalTest_data()
    {
        QTest::addColumn<bool>("watched");
        QTest::newRow("observed") << true;
        QTest::newRow("unobserved") << false;
    }

    void functionalTest()
    {
        QFETCH(const bool, watched);
        const QString folder = qEnvironmentVariable("ZR_TEST_PROGRAMS");
        QFile file(folder + u"/6502_functional_test.bin"_s);
        if (folder.isEmpty() || !file.open(QIODevice::ReadOnly))
            QSKIP("The folder ZR_TEST_PROGRAMS has no 6502_functional_test.bin.");
        ZR8BitRAM ram;
        ram.setContent(file.readAll());
        ZR8BitAddressSpace space;
        QVERIFY(space.mapMemory(0, &ram));
        ZR8BitProcMOS6510Full processor;
        QVERIFY(processor.init());
        processor.setBus(&space);
        int rows = 0;
        if (watched) {
            for (ZR8BitProcCommand *row : processor.commandList())
                connect(row, &ZR8BitProcCommand::execute, this, [&rows] { ++rows; });
        }
        processor.setProgramCounter(0x0400);
        int steps = 0;
        for (; !processor.isWaiting() && steps < 40'000'000; ++steps)
            QVERIFY(static_cast<ZR8BitProcessorIface &>(processor).step() > 0);
        QCOMPARE(hexOf(processor.programCounter(), 4), u"3469"_s);
        QCOMPARE(rows, watched ? steps : 0);
    }
};

QTEST_GUILESS_MAIN(tst_MOS6510Full)
#include "tst_mos6510full.moc"
