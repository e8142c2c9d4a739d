// The Z80: its table, T states, instructions with what nobody documents, interrupts, disassembly and
// programs.

#include "../fuzz/z80model.h"
#include "z80machine.h"

#include <zr8bitkit/zr8bitdisassembler.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>

#include <QtTest/QtTest>

using namespace ZR;

class tst_Z80 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Each instruction with its conditions once met and once not: its row alone runs, and says what it
    /// takes.
    void table()
    {
        Machine machine;
        QCOMPARE(machine.processor.commandPage(0x76).size(), 0);
        const ZR8BitProcCommand *ran = nullptr;
        for (const int prefix : prefixes) {
            const auto rows =
                prefix == 0 ? machine.processor.commandList() : machine.processor.commandPage(prefix);
            QCOMPARE(rows.size(), prefix == 0xDD || prefix == 0xFD ? 252 : 256);
            for (ZR8BitProcCommand *row : rows) {
                if (row->assembly() == u"PREFIX"_s)
                    continue;
                connect(row, &ZR8BitProcCommand::execute, this, [&](const ZR8BitProcCommand *now) {
                    QCOMPARE(std::exchange(ran, now), nullptr);
                    QCOMPARE(machine.processor.programCounter(), 0x8000);
                });
                int least = 99;
                int most = 0;
                for (const char *state : {"AF=0100 BC=0001", "AF=01ff BC=0100"}) {
                    machine.set(u"PC=8000 SP=9000 HL=4000 R=ff "_s + QLatin1String(state));
                    machine.load(bytesOf(prefix, row->code(), "\x10\x40"_ba), 0x8000);
                    const auto before = machine.processor.cycles();
                    QCOMPARE(machine.step(), int(row->length()));
                    QCOMPARE(std::exchange(ran, nullptr), row);
                    least = qMin(least, int(machine.processor.cycles() - before));
                    most = qMax(most, int(machine.processor.cycles() - before));
                    const bool loadsR = prefix == 0xED && row->code() == 0x4F;
                    QCOMPARE(machine.now(u"R=00"_s), loadsR        ? u"R=01"_s
                                                     : prefix == 0 ? u"R=80"_s
                                                                   : u"R=81"_s);
                }
                const int time = timeOf(prefix, row->code());
                const QString text = row->assembly() + u' ' + row->desc();
                QVERIFY2(row->cycleCnt() == time && least == time, qPrintable(text));
                QVERIFY2(most == time + moreOf(prefix, row->code()), qPrintable(text));
                QVERIFY(!row->descHint().isEmpty() && !row->descHint().contains(u'/'));
            }
        }
    }

    /// Each instruction in 20 states of any registers and memory, beside a plain model. From the 10th on the
    /// processor is watched.
    void states()
    {
        Machine machine;
        const auto states = std::make_unique<Z80Model>();
        Z80Model &model = *states;
        int written = 0;
        model.in = [](int port) { return port & 0xFF; };
        model.out = [&written](int port, int value) { written = port << 8 | value; };
        quint32 seed = 1;
        const auto next = [&seed] { return static_cast<int>((seed = seed * 1664525 + 1013904223) >> 16); };
        for (int round = 0; round < 20; ++round) {
            if (round == 10)
                machine.processor.commandList();
            std::generate(model.memory.begin(), model.memory.end(),
                          [&] { return static_cast<uchar>(next()); });
            machine.memory = model.memory;
            for (int i = 0; i < 256 * int(std::size(prefixes)); ++i) {
                for (const auto &[id, member, bits] : z80Registers) {
                    model.*member = next() & bits;
                    QVERIFY(machine.processor.setRegisterValue(QLatin1StringView(id), model.*member));
                }
                model.isHalted = false; // PC has moved
                const QByteArray operand = QByteArray::number(next() | 0x10000).last(2);
                const QByteArray bytes = bytesOf(prefixes[i / 256], i % 256, operand);
                for (int place = 0; place < bytes.size(); ++place) {
                    const auto address = static_cast<size_t>((model.pc + place) & 0xFFFF);
                    machine.memory[address] = model.memory[address] = static_cast<uchar>(bytes[place]);
                }
                model.cycles = machine.processor.cycles();
                QCOMPARE(machine.step(), model.step());
                for (const auto &[id, member, bits] : z80Registers) {
                    const int value = machine.processor.registerValue(QLatin1StringView(id));
                    QVERIFY2(value == model.*member,
                             qPrintable(u"%1: %2 is %3, not %4"_s
                                            .arg(QString::fromLatin1(bytes.toHex()), QLatin1StringView(id))
                                            .arg(value, 0, 16)
                                            .arg(model.*member, 0, 16)));
                }
                QVERIFY2(machine.processor.cycles() == model.cycles && machine.written == written,
                         bytes.toHex().constData());
            }
            QVERIFY(machine.memory == model.memory);
        }
    }

    void reset()
    {
        Machine machine;
        machine.load("\x76"_ba, 0x4000);
        machine.set(u"AF=0012 HL=1234 SP=8000 PC=4000 I=12 R=34 IM=01 IFF1=01 IFF2=01"_s);
        machine.step();
        machine.processor.triggerNMI();
        machine.processor.setIRQ(true);
        machine.processor.reset(); // ends the halt and forgets the NMI
        QCOMPARE(machine.step(), 1);
        const QString after = u"AF=ffff HL=1234 SP=ffff PC=0001 I=00 R=01 IM=00 IFF1=00 IFF2=00"_s;
        QCOMPARE(machine.now(after), after);
    }

    /// What leaves PC where it was for good waits, and waiting at once is what steps do.
    void waiting()
    {
        for (const char *code : {"18fe", "c30080", "e9", "dde9", "76", "10fe", "edb0", "cd0080"}) {
            const bool waits = QByteArray("18c3e976dd").contains(QByteArray(code).first(2));
            Machine machine;
            Machine stepping;
            for (Machine *started : {&machine, &stepping}) {
                started->set(u"PC=8000 HL=8000 IX=8000 DE=4000 BC=0300 SP=9000 8000="_s +
                             QLatin1StringView(code));
                started->step();
            }
            QVERIFY2(machine.processor.isWaiting() == waits, code);
            QVERIFY2(machine.processor.isCallNext() == QByteArray("edb0 cd0080").contains(code), code);
            const quint64 start = machine.processor.cycles();
            for (quint64 count = waits ? machine.processor.wait(100) : 0; count > 0; --count)
                stepping.step();
            QVERIFY2(!waits || machine.processor.cycles() >= start + 100, code);
            QVERIFY2(machine.processor.saveState() == stepping.processor.saveState(), code);
        }

        Machine machine; // leaves a HALT by its host, and comes back to the place after it
        machine.set(u"PC=8000 8000=76 9000=c30180"_s);
        machine.step();
        machine.set(u"PC=9000"_s);
        machine.step();
        QVERIFY(machine.processor.programCounter() == 0x8001 && !machine.processor.isWaiting());
    }

    /// Code at $8000, what is there before, what the steps leave, and the count of steps. With irqN=.. and
    /// nmiN the line goes active before step N from 0 on.
    void instructions_data()
    {
        addRows(R"(
SCF after flags | fe2837 | A=00 | F=81 Q=81 | 2
SCF after others | fe280037 | A=00 | F=a9 | 3
CCF after POP AF | f13f | SP=4000 4000=2900 | F=38 A=00 | 2
BIT (HL) shows W | cb46 | HL=4000 WZ=2800 | F=7c T=12 | 1
BIT (IX+d) shows W | ddcb057e | IX=27fe 2803=80 | F=b8 WZ=2803 | 1
BIT of a register shows it | cb68 | B=28 | F=38 | 1
copy in a register | fdcbff80 | IY=4001 4000=ff B=11 | 4000=fe B=fe F=00 | 1
SLL | cb37 | A=80 | A=01 F=01 | 1
halves | dd6c | IXH=12 IXL=34 L=56 | IX=1212 L=56 | 1
H beside memory | dd6601 | IX=4000 4001=77 | H=77 IXH=40 T=19 | 1
LD (DE),A | 12 | DE=12ff A=56 | WZ=5600 12ff=56 | 1
LD HL,(nn) over the end | 2affff | ffff=34 0000=12 | HL=1234 WZ=0000 | 1
ADD HL | 09 | HL=0fff BC=2801 F=c7 | HL=3800 F=fc WZ=1000 | 1
EX (SP) | e3 | SP=ffff ffff=34 0000=12 HL=5678 | HL=1234 WZ=1234 ffff=78 0000=56 T=19 | 1
JR not taken | 3805 | WZ=1111 | PC=8002 WZ=1111 | 1
over the end | dd | PC=ffff ffff=dd 0000=2e 0001=99 | IXL=99 PC=0002 | 1
IN F | ed70 | BC=1280 A=01 | A=01 F=80 WZ=1281 T=12 | 1
OUT 0 | ed71 | BC=1280 | out=128000 | 1
LDIR goes on | edb0 | PC=2800 2800=edb0 BC=0002 WZ=1111 | PC=2800 F=2c WZ=2801 T=21 BC=0001 | 1
LDDR ends | edb8 | BC=0001 F=00 A=02 WZ=1111 | PC=8002 F=20 WZ=1111 T=16 HL=ffff DE=ffff | 1
CPIR goes on | edb1 | PC=2000 2000=edb1 BC=0002 A=01 | F=26 WZ=2001 PC=2000 T=21 | 1
CPIR finds | edb1 | BC=0002 HL=4000 4000=08 A=08 WZ=1111 | F=46 WZ=1112 T=16 HL=4001 | 1
INIR goes on | edb2 | PC=2800 2800=edb2 BC=0380 HL=4000 | F=2b WZ=2801 B=02 4000=80 T=21 | 1
OTIR goes on | edb3 | PC=2800 2800=edb3 BC=1110 HL=40fe 40fe=20 | F=29 WZ=2801 out=101020 HL=40ff | 1
OUTD | edab | BC=0180 HL=4000 4000=ff | F=57 WZ=007f out=0080ff | 1
HALT | 76 | A=00 | PC=8001 T=12 R=03 | 3
HALT and NMI | 76 | nmi2= SP=4000 IFF1=01 IFF2=01 | PC=0067 3ffe=01 3fff=80 IFF1=00 IFF2=01 R=04 T=23 | 3
EI waits for one | fb0000 | irq0=ff IM=01 | PC=8002 T=8 | 2
mode 1 after EI | fb0000 | irq0=ff IM=01 SP=4000 | PC=0039 T=25 3ffe=02 IFF1=00 IFF2=00 WZ=0038 R=04 | 3
mode 2 | 00 | irq0=fe IM=02 I=40 40fe=5000 IFF1=01 | PC=0051 T=23 WZ=0050 | 1
mode 2 by the stack | 00 | irq0=fe IM=02 I=40 40fe=5000 SP=4100 IFF1=01 | PC=8001 WZ=8000 SP=40fe | 1
SCF in a handler | fe28 | irq1=ff IM=01 IFF1=01 0038=37 A=00 | F=a9 PC=0039 | 2
mode 0, RST | 00 | irq0=cf IFF1=01 | PC=0009 T=17 fffe=00 R=02 | 1
mode 0, INC B | 00 | irq0=04 IFF1=01 | PC=8001 B=01 T=10 R=02 | 1
P of LD A,I | ed5700 | IFF1=01 IFF2=01 | AF=0044 | 2
P of LD A,I, interrupted | ed57 | irq1=ff IFF1=01 IFF2=01 IM=01 | F=40 PC=0039 | 2
void prefix | ddfd213412 | nmi1= irq1=ff IFF1=01 | IX=0000 IY=1234 PC=8005 T=18 R=03 | 2
)");
    }

    void instructions()
    {
        QFETCH(const QStringList, fields);
        Machine machine;
        machine.load(bytesOf(fields[0]), 0x8000);
        machine.set(u"PC=8000 "_s + fields[1]);
        for (int i = 0; i < fields[3].toInt(); ++i) {
            for (const QString &pair : fields[1].split(u' ')) {
                if (pair.startsWith(u"nmi%1="_s.arg(i)))
                    machine.processor.triggerNMI();
                if (pair.startsWith(u"irq%1="_s.arg(i)))
                    machine.processor.setIRQ(true,
                                             static_cast<quint8>(pair.section(u'=', 1).toInt(nullptr, 16)));
            }
            QVERIFY(machine.step() > 0);
        }
        QCOMPARE(machine.now(fields[2]), fields[2]);
    }

    /// Any bytes at all leave the same, with somebody connected to the rows and with nobody.
    void unwatched()
    {
        Machine watched;
        Machine unwatched;
        int rows = 0;
        for (ZR8BitProcCommand *row : watched.processor.commandList())
            connect(row, &ZR8BitProcCommand::execute, this, [&rows] { ++rows; });
        quint32 seed = 1;
        for (quint8 &byte : unwatched.memory)
            byte = static_cast<quint8>((seed = seed * 1664525 + 1013904223) >> 24);
        watched.memory = unwatched.memory;
        for (int i = 0; i < 50000; ++i) {
            for (Machine *machine : {&watched, &unwatched}) {
                if (i % 50 == 0)
                    machine->processor.setIRQ(i % 100 == 0, static_cast<quint8>(i));
                if (i % 997 == 0)
                    machine->processor.triggerNMI();
            }
            QCOMPARE(watched.step(), unwatched.step());
            QCOMPARE(watched.processor.saveState(), unwatched.processor.saveState());
        }
        QVERIFY(watched.memory == unwatched.memory);
        QVERIFY(rows > 25000 && rows < 50000);
        Machine restored;
        QVERIFY(restored.processor.restoreState(watched.processor.saveState()));
        QCOMPARE(restored.processor.saveState(), watched.processor.saveState());
    }

    void buffers()
    {
        Machine machine;
        ZR8BitProcZ80 &processor = machine.processor;
        machine.set(u"PC=8000 SP=9000 IX=4000"_s);
        QCOMPARE(processor.execute("\xDD\xCB\x02\xC6\x00"_ba), 4);
        QCOMPARE(processor.execute("\xCD\x34\x12"_ba), 3);
        QCOMPARE(processor.execute("\xDD\xFD"_ba), 1);
        QCOMPARE(machine.now(u"PC=8000 4002=01 8ffe=03 T=44"_s), u"PC=8000 4002=01 8ffe=03 T=44"_s);
        QCOMPARE(processor.execute("\xDD\x21\x34"_ba), -1);
        QCOMPARE(processor.hardwareIssueMsg(), u"The instruction has 4 bytes, of which only 3 are there!"_s);
        QCOMPARE(machine.step(), 0);
        processor.reset();
        QCOMPARE(machine.now(u"PC=0000 AF=ffff SP=ffff"_s), u"PC=0000 AF=ffff SP=ffff"_s);
        processor.setBus(nullptr);
        QCOMPARE(machine.step(), -1);
        QCOMPARE(processor.hardwareIssueMsg(), u"Main memory must be defined!"_s);
        ZR8BitRAM ram;
        QVERIFY(ram.setSize(0x10000) && ram.write("\xDB\x01"_ba, 0));
        processor.resetHardwareIssue();
        processor.setMainMemory(&ram);
        QCOMPARE(machine.step(), 2);
        QCOMPARE(machine.now(u"A=ff PC=0002"_s), u"A=ff PC=0002"_s);
    }

    /// What the disassembler writes of all pages gives the same bytes again.
    void disassembly_data() { addRows("pasmo | pasmo %1 %2\nz80asm | z80asm %1 -o %2"); }
    void disassembly()
    {
        QFETCH(const QStringList, fields);
        QStringList command = fields[0].split(u' ');
        const QString assembler = QStandardPaths::findExecutable(command.takeFirst());
        if (assembler.isEmpty())
            QSKIP("This assembler is not installed.");

        const ZR8BitDisassembler disassembler(ZR8BitInstructionSet::Z80);
        QByteArray program;
        QByteArray text = " org $8000\n";
        int count = 0;
        for (const int prefix : prefixes) {
            for (int code = 0; code < 256; ++code) {
                const QByteArray operand = QByteArray(1, static_cast<char>(code - 0x99)) + "\x85\x12"_ba;
                const auto instruction = disassembler.instruction(bytesOf(prefix, code, operand),
                                                                  0x8000 + static_cast<int>(program.size()));
                program += instruction.bytes;
                text += ' ' + instruction.text.toLatin1() + '\n';
                count += !instruction.text.startsWith(u"DEFB"_s);
            }
        }
        QCOMPARE(count, 252 + 248 + 56 + 2 * (39 + 31)); // what the data sheet has
        const QTemporaryDir folder;
        QFile source(folder.filePath(u"all.asm"_s));
        QFile result(folder.filePath(u"all.bin"_s));
        QVERIFY(source.open(QIODevice::WriteOnly) && source.write(text) == text.size());
        source.close();
        for (QString &argument : command)
            argument = argument == u"%1"_s   ? source.fileName()
                       : argument == u"%2"_s ? result.fileName()
                                             : argument;
        QCOMPARE(QProcess::execute(assembler, command), 0);
        QVERIFY(result.open(QIODevice::ReadOnly));
        QVERIFY(result.readAll() == program);
    }

    /// The published exercisers, CP/M programs of 67 groups that compare checksums: those that take
    /// seconds, or by scripts/zex all of them.
    void exercisers_data() { addRows("documented flags | zexdoc.com\nall flags | zexall.com"); }
    void exercisers()
    {
        QFETCH(const QStringList, fields);
        constexpr int TableOfGroups = 0x013A;
        QFile file(qEnvironmentVariable("ZR_TEST_PROGRAMS") + u'/' + fields[0]);
        if (!file.open(QIODevice::ReadOnly))
            QSKIP("The folder ZR_TEST_PROGRAMS has no such program.");
        Machine machine;
        machine.load(file.readAll(), 0x0100);
        const bool runsAll = qEnvironmentVariableIsSet("ZR_ALL_GROUPS");
        const auto isWanted = [runsAll](int group) {
            return runsAll || group == 8 || (group >= 32 && group <= 48) || (group >= 51 && group <= 55) ||
                   group == 59 || group >= 62;
        };
        const auto table = machine.memory.begin() + TableOfGroups;
        int count = 0;
        for (int group = 0; group < 67; ++group) {
            if (isWanted(group))
                std::copy_n(table + 2 * group, 2, table + 2 * count++);
        }
        std::fill_n(table + 2 * count, 2, quint8(0));

        machine.load("\x76"_ba, 0);              // the end
        machine.load("\xC9\x00\xF0"_ba, 0x0005); // BDOS, and the top of the stack
        machine.processor.setProgramCounter(0x0100);
        QByteArray text;
        while (!machine.processor.isHalted()) {
            if (machine.processor.programCounter() == 0x0005) {
                const int from = machine.processor.registerValue(u"DE"_s);
                const bool printsText = machine.processor.registerValue(u"C"_s) == 9;
                if (!printsText)
                    text += static_cast<char>(from);
                for (int at = from; printsText && machine.read(static_cast<quint16>(at)) != '$'; ++at)
                    text += static_cast<char>(machine.read(static_cast<quint16>(at)));
            }
            QVERIFY(machine.step() > 0);
        }
        QVERIFY2(text.count("OK") == count && !text.contains("ERROR"), text.constData());
    }
};

QTEST_GUILESS_MAIN(tst_Z80)
#include "tst_z80.moc"
