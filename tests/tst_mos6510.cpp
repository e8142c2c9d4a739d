// The processor: instruction table, running from a buffer and from memory, addressing, ADC, failures.

#include "testlogger.h"

#include <zr8bitlib/zr8bitprocmos6510.h>
#include <zr8bitlib/zr8bitram.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using namespace ZR;

namespace {

const QString unknownOpcode = u"The opcode: 0x%1 is not in the processor supported command list!"_s;

/// A processor that is ready to run in a memory of zeros.
struct Machine
{
    explicit Machine(int memorySize = 0x10000)
    {
        if (!ram.setSize(memorySize) || !processor.init())
            qFatal("no machine");
        processor.setMainMemory(&ram);
    }

    ZR8BitRegister &reg(const char *id) { return *processor.registers().value(QString::fromLatin1(id)); }
    int ac() { return static_cast<unsigned char>(reg("AC").lo()); }
    int pc() { return static_cast<unsigned short>(reg("PC").value()); }

    ZR8BitRAM ram;
    ZR8BitProcMOS6510 processor;
};

/// A model that adds rows of its own.
class TestProcessor : public ZR8BitProcMOS6510
{
public:
    ZR8BitProcCommands &commands() { return _commands; }
};

} // namespace

class tst_MOS6510 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void table()
    {
        const auto title = u"title"_s;
        ZR8BitProcCommands commands;
        ZR8BitProcCommand *row = commands.addCommand(0x69, 2, 255, u"A%2"_s, title, u"text"_s);
        QVERIFY(row);
        QCOMPARE(row->name(), u"ZR8BitProcCommand_A%2"_s);
        QCOMPARE(int(row->exec("", 0)), 2); // nobody is connected
        const auto copy = commands.commandList();

        QVERIFY(!commands.command(0x0A) && !commands.isThereError());
        QVERIFY(!commands.addCommand(0x69, 3, 1, u"B"_s, title, title));
        QCOMPARE(commands.lastErrorStr(),
                 u"Opcode: 0x69 is already in the commands list with assembly: 'A%2'"_s);
        QVERIFY(!commands.addCommand(0x0A, 3, 1, QString(), title, title));
        QCOMPARE(commands.lastErrorStr(), u"Assembly must defined for opcode: 0x0a!"_s);
        QCOMPARE(commands.command(0x69), row);
        QVERIFY(commands.addCommand(0x0A, 3, 1, u"B"_s, title, title));
        QCOMPARE(copy.size(), 1);
        QCOMPARE(commands.commandList().size(), 2);
    }

    void descriptions()
    {
        Machine machine;
        QString texts = machine.processor.descHint() + machine.processor.desc();
        for (ZR8BitRegister *reg : machine.processor.registers())
            texts += reg->descHint() + reg->desc();
        QCOMPARE(QCryptographicHash::hash(texts.toUtf8(), QCryptographicHash::Sha1).toHex(),
                 "ebe1c8f43a72e2791275386b9ba1db266fd119c3");
    }

    void runFromBuffer()
    {
        Machine machine;
        ZR8BitProcMOS6510 &processor = machine.processor;
        const QByteArray adc("\x69\x05", 2);
        QCOMPARE(processor.execute(adc), 2);
        QCOMPARE(processor.execute(adc.constData(), 0), 2); // the size is not looked at
        QCOMPARE(machine.ac(), 10);
        QCOMPARE(machine.pc(), 0);

        processor.pause();
        QCOMPARE(processor.execute(QByteArray("\xFF", 1)), 0);
        QVERIFY(!processor.isThereError());
        processor.resume();
        QCOMPARE(processor.execute(QByteArray("\xFF", 1)), -1);
        QVERIFY(processor.hardwareIssue());
        QCOMPARE(processor.hardwareIssueMsg(), unknownOpcode.arg(u"ff"_s));
        QCOMPARE(processor.lastErrorStr(), processor.hardwareIssueMsg());
        QCOMPARE(processor.execute(adc), 0);
        processor.pause();
        processor.resume();
        QVERIFY(processor.hardwareIssue());
        processor.resetHardwareIssue();
        QVERIFY(!processor.hardwareIssue() && processor.hardwareIssueMsg().isEmpty());
        QVERIFY(processor.isThereError());
        QCOMPARE(processor.execute(adc), 2);
        QCOMPARE(processor.execute(nullptr, 2), -1);
        QVERIFY(processor.hardwareIssue());
    }

    void zeroLength()
    {
        ZR8BitRAM ram;
        TestProcessor processor;
        QVERIFY(ram.setSize(1) && processor.init());
        QVERIFY(processor.commands().addCommand(0x0A, 0, 1, u"NUL%3"_s, {}, {}));
        QCOMPARE(processor.execute(QByteArray("\x0A", 1)), -1);
        QCOMPARE(processor.hardwareIssueMsg(), u"Error on execute command: 0x0a - 'NUL%3'! "_s);
        processor.resetHardwareIssue();
        processor.setMainMemory(&ram);
        ram.setByteValue(0x0A, 0);
        QCOMPARE(processor.step(), -1);
        QCOMPARE(processor.hardwareIssueMsg(), u"Error on execute command: 0x0a - 'NUL%3'! "_s);
        QCOMPARE(processor.registers().value(u"PC"_s)->value(), short(0));
        QVERIFY(!processor.readFromConfig(QString(), nullptr));
        QCOMPARE(processor.lastErrorStr(), u"Config handler must be defined!"_s);
    }

    void init()
    {
        Machine machine;
        QCOMPARE(machine.processor.registers().keys().join(u','), u"AC,PC,PS,SP,XR,YR"_s);
        for (ZR8BitRegister *reg : machine.processor.registers()) {
            QCOMPARE(reg->value(), short(reg->id() == QLatin1String("PS") ? 0x20 : 0));
            QCOMPARE(reg->regType(),
                     reg->id() == QLatin1String("PC") ? ZR8BitRegType16Bit : ZR8BitRegType8Bit);
        }
        QStringList rows;
        for (ZR8BitProcCommand *row : machine.processor.commandList())
            rows += u"%1 %2 %3 %4"_s.arg(row->code(), 2, 16)
                        .arg(row->length())
                        .arg(row->cycleCnt())
                        .arg(row->assembly());
        rows.sort();
        QCOMPARE(rows.join(u','),
                 QStringLiteral("61 2 6 ADC,65 2 3 ADC,69 2 2 ADC,6d 3 4 ADC,71 2 6 ADC,75 2 4 ADC,"
                                "79 3 5 ADC,7d 3 5 ADC,aa 1 2 TAX"));

        // A second init() starts the registers anew, fails, and leaves a working machine.
        machine.reg("AC").setValue(9);
        QVERIFY(!machine.processor.init());
        QCOMPARE(machine.processor.lastErrorStr(),
                 u"Opcode: 0x69 is already in the commands list with assembly: 'ADC'"_s);
        QCOMPARE(machine.processor.execute(QByteArray("\x69\x05", 2)), 2);
        QCOMPARE(machine.ac(), 5);
    }

    void sums()
    {
        Machine machine;
        auto &ps = static_cast<ZRMOS6510PSRegister &>(machine.reg("PS"));
        for (int i = 0; i < 256 * 256 * 2; ++i) {
            const int a = i & 0xFF;
            const int m = i >> 8 & 0xFF;
            const int c = i >> 16;
            const int others = (i * 7 & 0x1C) | 0x20; // B, D and I stay, and D changes nothing
            machine.reg("AC").setLo(static_cast<char>(a));
            ps.setLo(static_cast<char>(others | c));
            const char code[] = {0x69, static_cast<char>(m)};
            machine.processor.execute(code, 2);

            const int sum = a + m + c;
            const int result = sum % 256;
            const bool overflow = (a < 128) == (m < 128) && (a < 128) != (result < 128);
            const int flags =
                others | (result & 0x80) | (overflow ? 0x40 : 0) | (result == 0 ? 0x02 : 0) | sum / 256;
            if (machine.ac() != result || static_cast<unsigned char>(ps.lo()) != flags)
                QFAIL(qPrintable(u"%1 + %2 + %3"_s.arg(a).arg(m).arg(c)));
        }
    }

    void addressing()
    {
        const struct
        {
            const char *name, *code;
            int x, y, address, pointerAt, pointer;
        } rows[] = {{"zero page", "65f0", 9, 9, 0xF0, 0, 0},
                    {"zero page,X", "7501", 2, 9, 0x03, 0, 0},
                    {"zero page,X wraps", "75f0", 0x20, 9, 0x10, 0, 0},
                    {"absolute", "6d3412", 9, 9, 0x1234, 0, 0},
                    {"absolute,X is unsigned", "7d3412", 0x80, 9, 0x12B4, 0, 0},
                    {"absolute,X wraps", "7dffff", 2, 9, 1, 0, 0},
                    {"absolute,Y", "793412", 9, 3, 0x1237, 0, 0},
                    {"absolute,Y wraps", "79ffff", 9, 2, 1, 0, 0},
                    {"(zero page,X)", "6110", 3, 9, 0x4321, 0x13, 0x4321},
                    {"(zero page,X) wraps", "61fe", 3, 9, 0x8765, 0x01, 0x8765},
                    {"(zero page,X) pointer at the edge", "61f0", 0x0F, 9, 0x4321, 0xFF, 0x4321},
                    {"(zero page),Y", "7110", 9, 0xFF, 0x10FF, 0x10, 0x1000},
                    {"(zero page),Y pointer at the edge", "71ff", 9, 1, 0x4322, 0xFF, 0x4321},
                    {"(zero page),Y wraps", "7110", 9, 0x10, 0x000F, 0x10, 0xFFFF}};
        for (const auto &row : rows) {
            const QByteArray code = QByteArray::fromHex(row.code);
            Machine machine;
            machine.reg("XR").setValue(static_cast<short>(row.x));
            machine.reg("YR").setValue(static_cast<short>(row.y));
            machine.ram.setWordValue(static_cast<short>(row.pointer), row.pointerAt);
            machine.ram.setByteValue(0x5A, row.address);
            QVERIFY2(machine.processor.execute(code) == code.size() && machine.ac() == 0x5A, row.name);

            // Beyond the end of a short memory everything reads 0, which is no failure of the processor.
            Machine none(0);
            QVERIFY2(none.processor.execute(code) == code.size() && none.ac() == 0, row.name);
            QVERIFY(!none.processor.hardwareIssue());
            QVERIFY(none.ram.lastErrorStr().startsWith(u"Invalid memory address: 0x0000"_s));
        }
    }

    void step()
    {
        Machine machine;
        ZR8BitProcessorIface &processor = machine.processor;
        machine.ram.setValue(QByteArray("\x69\x05\xAA\x00", 4), 0xFFF0);
        machine.reg("PC").setValue(short(0xFFF0));
        QSignalSpy pcSpy(&machine.reg("PC"), &ZR8BitRegister::onValueChanged);
        bool flagsFirst = false;
        QObject::connect(&machine.reg("AC"), &ZR8BitRegister::onValueChanged, this,
                         [&] { flagsFirst = machine.reg("PS").loBit(1) == 0 && machine.pc() == 0xFFF0; });
        machine.reg("PS").setLoBit(1, 1);

        QCOMPARE(processor.step(), 2);
        QCOMPARE(machine.ac(), 5);
        QVERIFY(flagsFirst);
        QCOMPARE(machine.pc(), 0xFFF2);
        QCOMPARE(pcSpy.size(), 1);

        QCOMPARE(processor.step(), 1); // TAX does nothing
        QCOMPARE(machine.pc(), 0xFFF3);
        QCOMPARE(machine.ac() + machine.reg("XR").value(), 5);

        processor.pause();
        QCOMPARE(processor.step(), 0); // does not even look at the opcode
        processor.resume();
        QCOMPARE(processor.step(), -1);
        QCOMPARE(machine.pc(), 0xFFF3);
        QCOMPARE(processor.hardwareIssueMsg(), unknownOpcode.arg(u"00"_s));
        QCOMPARE(processor.step(), 0);
    }

    void stepPastTheEnd()
    {
        // The operand wraps to address 0, and so does PC.
        Machine full;
        full.ram.setValue(QByteArray("\x00\x12", 2), 0);
        full.ram.setByteValue(0x6D, 0xFFFF);
        full.ram.setByteValue(7, 0x1200);
        full.reg("PC").setValue(short(0xFFFF));
        QCOMPARE(full.processor.step(), 3);
        QCOMPARE(full.pc(), 2);
        QCOMPARE(full.ac(), 7);
        QVERIFY(!full.ram.isThereError());
    }

    void noMainMemory()
    {
        ZR8BitProcMOS6510 processor;
        ZR8BitRAM ram;
        QCOMPARE(processor.step(), -1);
        QCOMPARE(processor.hardwareIssueMsg(), u"Main memory must be defined!"_s);
        QCOMPARE(processor.lastErrorStr(), processor.hardwareIssueMsg());
        QCOMPARE(processor.step(), 0);
        processor.resetHardwareIssue();
        processor.setMainMemory(&ram);
        QCOMPARE(processor.step(), -1); // not initialised: there is no opcode at all
        QCOMPARE(processor.hardwareIssueMsg(), unknownOpcode.arg(u"00"_s));

        Machine machine;
        machine.processor.setMainMemory(nullptr);
        QCOMPARE(machine.processor.execute(QByteArray("\x69\x05", 2)), 2);
        QCOMPARE(machine.processor.execute(QByteArray("\x65\x05", 2)), 2);
        QVERIFY(machine.processor.hardwareIssue());
        QCOMPARE(machine.ac(), 5);
    }

    void unknownHandler()
    {
        Machine machine;
        ZR8BitProcCommand *tax = machine.processor.commandList().value(0xAA);
        QVERIFY(QObject::connect(tax, SIGNAL(execute(ZR8BitProcCommand *, const char *)), &machine.processor,
                                 SLOT(mc_ADC(ZR8BitProcCommand *, const char *)), Qt::DirectConnection));
        machine.ram.setByteValue(char(0xAA), 0);
        QCOMPARE(machine.processor.step(), 1);
        QCOMPARE(machine.processor.hardwareIssueMsg(), u"Opcode: 0xaa is unknow for ADC command!"_s);
        QCOMPARE(machine.pc(), 1);
        QCOMPARE(machine.processor.step(), 0);
    }

    void loggers()
    {
        TestLogger logger;
        Machine machine;
        machine.processor.setLogger(&logger);
        for (ZR8BitRegister *reg : machine.processor.registers())
            QCOMPARE(reg->logger(), &logger);
        QVERIFY(!machine.processor.init()); // the table reports, and then the processor
        machine.processor.execute(QByteArray("\xFF", 1));
        machine.ram.setLogger(&logger);
        machine.ram.write("x", 1, -1);
        QStringList files;
        for (const QString &line : logger.lines)
            files += line.section(u'|', 2, 2).section(u'/', 1);
        QCOMPARE(files.join(u','),
                 u"zr8bitproccommand,zr8bitprocmos6510,zr8bitprocbase,zr8bitram,zr8bitram"_s);
    }
};

QTEST_GUILESS_MAIN(tst_MOS6510)
#include "tst_mos6510.moc"
