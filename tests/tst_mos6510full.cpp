// The complete processor: its table, each instruction with its cycles, interrupts, and programs.

#include <zr8bitkit/zr8bitprocmos6510full.h>
#include <zr8bitlib/zr8bitram.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using namespace ZR;

namespace {

QString hexOf(int value, int digits)
{
    return QString::number(0x10000 | value, 16).right(digits);
}

/// The complete processor in zeros, with two bytes more than it reaches. Its state is told in pairs such as
/// "AC=7f 1234=6005": registers by their ids and memory by its addresses, in hexadecimal digits.
struct Machine
{
    explicit Machine(bool undocumented = true)
    {
        processor.setUndocumented(undocumented);
        if (!ram.setSize(0x10002) || !processor.init())
            qFatal("no machine");
        processor.setMainMemory(&ram);
    }

    ZR8BitRegister *reg(const QString &id) { return processor.registers().value(id); }
    int valueOf(const QString &id) { return static_cast<unsigned short>(reg(id)->value()); }
    int step() { return static_cast<ZR8BitProcessorIface &>(processor).step(); }

    void set(const QString &state)
    {
        for (const QString &pair : state.split(u' ', Qt::SkipEmptyParts)) {
            const QString key = pair.section(u'=', 0, 0);
            const QString value = pair.section(u'=', 1);
            if (ZR8BitRegister *written = reg(key))
                written->setValue(static_cast<short>(value.toInt(nullptr, 16)));
            else
                ram.write(QByteArray::fromHex(value.toLatin1()), key.toInt(nullptr, 16));
        }
    }

    /// What there is now of a state, which may ask for the cycles, too.
    QString now(const QString &state)
    {
        QStringList pairs;
        for (const QString &pair : state.split(u' ', Qt::SkipEmptyParts)) {
            const QString key = pair.section(u'=', 0, 0);
            const auto digits = static_cast<int>(pair.section(u'=', 1).size());
            QString value = QString::fromLatin1(ram.value(key.toInt(nullptr, 16), digits / 2).toHex());
            if (reg(key))
                value = hexOf(valueOf(key), digits);
            else if (key == u"cycles"_s)
                value = QString::number(processor.cycles());
            pairs += key + u'=' + value;
        }
        return pairs.join(u' ');
    }

    ZR8BitRAM ram;
    ZR8BitProcMOS6510Full processor;
};

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

    /// Each opcode in 200 states of any registers and memory. The sums are those of a model that was written
    /// from the tables of the chip, apart from this one.
    void states()
    {
        const QByteArray sums =
            "e509d10fe458d6804a3863f22c62227a4a801973f980a3bf89eed44bc332c352e0abd33d02a8d5c94b636cadb34ac2c0"
            "713b66bbf8f1143c1c7d2615930f702bad3e7371d6691892a6cce857ed3d2848c89bfe7074e52dd194b1a10d32b9617d"
            "e4b47597f634d6255a3af7541cca79035d74756321871094c374c353d8f8be3b005afbe200694df37febdda3debdc942"
            "87a121f2b54260d70e40b48f81269d1235ce2f36825a07e2f8aa17b7aa8b870c058a23bfeda858d66aee5739ede5c307"
            "2be6dca41f0945414a008362651bc9aefcbd3845c34bf69e0e21f5d08be4a1dbc5b33b0a2a29e680fafd8c366aafa3db"
            "50d882cbf1c6780074620d055dae59489203740a10aad9aa284d9faa7edb5338fe66166bbb920c242b23cc3cb4865525"
            "39456ec27ba5134cd13f67147560657170c63b91b317a294eebd15c24a0d77a1e176616a1edb795477cde0ff69057559"
            "6a5c2f37be547b9d8d1b7274f3d49e149681679a41d3219e8d0c17890c6f8bf9dd079b026ec8d85868e3f1d09fc1c06f"
            "de99f09149c21c308e1b848938ce775cf46f93f9c59c174ae29801d8fbaace58a1f3b28cfcdd4f86069e7d62300dec19"
            "ebfd0ba2636ea1a352c1130b9ec83fe909f89d3a550286e0719d80b94f598bc4e717ad994c20e7728f90ffd8d6da2369"
            "9b1942cfb0fb81913959bb7066d98cbe6691f167a48f28e4eeda2f6ecf9e6c7b";
        quint32 seed = 1;
        const auto next = [&seed] { return static_cast<char>((seed = seed * 1664525 + 1013904223) >> 24); };
        for (int code = 0; code < 256; ++code) {
            Machine machine;
            QByteArray memory(0x10000, '\0');
            std::generate(memory.begin(), memory.end(), next);
            machine.ram.setContent(memory);
            QByteArray seen;
            for (int i = 0; i < 200; ++i) {
                for (ZR8BitRegister *reg : machine.processor.registers()) {
                    reg->setLo(next());
                    reg->setHi(next());
                }
                machine.ram.setByteValue(static_cast<char>(code), machine.valueOf(u"PC"_s));
                const quint64 before = machine.processor.cycles();
                machine.step();
                machine.processor.resetHardwareIssue(); // of a JAM
                for (ZR8BitRegister *reg : machine.processor.registers())
                    seen.append(reg->lo()).append(reg->hi());
                seen += static_cast<char>(machine.processor.cycles() - before);
            }
            const int sum = qChecksum(seen + machine.ram.value(0, 0x10000));
            QCOMPARE(hexOf(code, 2) + u' ' + hexOf(sum, 4),
                     hexOf(code, 2) + u' ' + QLatin1StringView(sums).mid(code * 4, 4));
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
        row("IRQ behind CLI", "58eaea", "PS=24 fffe=3412 1234=ea", "PC=1235 01fd=200202 cycles=13", 3, 1);
        row("IRQ behind SEI", "78ea", "fffe=3412 1234=ea", "PC=1235 SP=fc PS=24 01fd=240102", 2, 2);
        row("IRQ two behind SEI", "78eaea", "", "PS=24 cycles=6", 3, 3);
        row("IRQ behind PLP", "28eaea", "PS=24 SP=fe", "PC=0202 SP=ff PS=20", 2, 1);
        row("IRQ behind RTI", "40", "PS=24 SP=fc 01fd=200003 fffe=3412 1234=ea", "PC=1235 cycles=15", 2, 1);
        row("NMI before IRQ", "ea", "fffa=7856 5678=ea", "PC=5679 SP=fc PS=24 01fd=200002 cycles=9", 1, 1, 1);
        row("NMI is an edge", "ea", "PS=24 fffa=7856 5678=eaea", "PC=567a 01fd=240002 cycles=11", 2, 0, 1);

        // again: LDX #6; LDY #0; next: LDA $40,X; CMP $41,X; BCC ok; BEQ ok; PHA; LDA $41,X; STA $40,X; PLA;
        // STA $41,X; INY; ok: DEX; BPL next; TYA; BNE again; end: JMP end
        row("sort", "a206a000b540d541900bf00948b5419540689541c8ca10ec98d0e54c1b02", "0040=08ff017f8000080100",
            "0040=00010108087f80ff00", End);
        // LDX #2; next: LDA $0300,X; BNE skip; LDY $11; TXA; STA $0400,Y; INC $11; STX $10; mark: CLC; ADC
        // $10; BCS skip; TAY; STA $0300,Y; BCC mark; skip: INX; BNE next; end: JMP end
        row("sieve", "a202bd0003d015a4118a990004e6118610186510b006a899000390f5e8d0e34c1f02", "",
            "0011=36 0400=020305070b0d1113171d1f25292b2f35 0434=f1fb00", End);
        // LDX #16; loop: LSR $13; ROR $12; BCC no; CLC; LDA $16; ADC $10; STA $16; LDA $17; ADC $11; STA $17;
        // no: ROR $17; ROR $16; ROR $15; ROR $14; DEX; BNE loop; end: JMP end
        row("$1234 * $ABCD", "a21046136612900d18a51665108516a517651185176617661666156614cad0e24c2002",
            "0010=3412cdab", "0014=a44f370c", End);
        // LDX #16; loop: ASL $10; ROL $11; ROL $14; ROL $15; LDA $14; SEC; SBC $12; TAY; LDA $15; SBC $13;
        // BCC no; STA $15; STY $14; INC $10; no: DEX; BNE loop; end: JMP end
        row("$FEDC / $0123", "a2100610261126142615a51438e512a8a515e513900685158414e610cad0e34c1f02",
            "0010=dcfe2301", "0010=e000 0014=3c00", End);
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
};

QTEST_GUILESS_MAIN(tst_MOS6510Full)
#include "tst_mos6510full.moc"
