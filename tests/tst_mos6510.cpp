// The processor: instruction table, running from a buffer and from memory, addressing, ADC, failures.

#include "testlogger.h"
#include "testrows.h"

#include <zr8bitlib/zr8bitprocmos6510.h>
#include <zr8bitlib/zr8bitram.h>

using namespace Qt::StringLiterals;
using namespace ZR;

namespace {

/// A processor that is ready to run in a memory of zeros.
class Machine : public ZR8BitProcMOS6510
{
public:
    explicit Machine(int memorySize = 0x10000)
    {
        if (!ram.setSize(memorySize) || !init())
            qFatal("no machine");
        setMainMemory(&ram);
    }

    ZR8BitRegister &reg(const char *id) { return *_registers.value(QLatin1String(id)); }
    int ac() { return static_cast<unsigned char>(reg("AC").lo()); }
    int pc() { return static_cast<unsigned short>(reg("PC").value()); }
    ZR8BitProcCommands &commands() { return _commands; }

    ZR8BitRAM ram;
};

/// Puts the context in front of each text.
class ContextTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return QLatin1String(context) + u'|' + QLatin1String(text);
    }
};

} // namespace

class tst_MOS6510 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Each text is translated in the context of the class that reports it.
    void failures_data()
    {
        addRows(R"(
unknown opcode | 0a | base execute | The opcode: 0x0a is not in the processor supported command list!
unknown opcode in memory | @ff | mos6510 execute | The opcode: 0xff is not in the processor supported command list!
length 0 | 0b | base execute | Error on execute command: 0x0b - 'NUL%3'!
length 0 in memory | @0b | base execute | Error on execute command: 0x0b - 'NUL%3'!
no instruction |  | base execute | There is no instruction to execute!
no memory | @ | mos6510 execute | Main memory must be defined!
no memory for an operand | 6505 | mos6510 mc_ADC | Main memory must be defined!
not ADC | aa | mos6510 mc_ADC | Opcode: 0xaa is unknow for ADC command!
)");
    }

    void failures()
    {
        QFETCH(QStringList, fields);
        const bool isInMemory = fields[0].startsWith(u'@');
        const QByteArray code = bytesOf(fields[0]);
        TestLogger logger;
        Machine machine;
        machine.setLogger(&logger);
        machine.ram.setValue(code, 0);
        machine.commands().addCommand(0x0B, 0, 1, u"NUL%3"_s, {}, {});
        connect(machine.commands().command(0xAA), SIGNAL(execute(ZR8BitProcCommand *, const char *)),
                &machine, SLOT(mc_ADC(ZR8BitProcCommand *, const char *)), Qt::DirectConnection);
        if (fields[2].contains(u"Main memory"_s))
            machine.setMainMemory(nullptr);
        const auto run = [&machine, code, isInMemory] {
            const char *data = code.isEmpty() ? nullptr : code.constData();
            return isInMemory ? machine.step() : machine.execute(data, 1); // the size is not looked at
        };
        ContextTranslator translator;
        QCoreApplication::installTranslator(&translator);
        const bool isRun = fields[1].endsWith(u"mc_ADC"_s); // what fails within an instruction counts as run
        QCOMPARE(run(), isRun ? int(code.size()) : -1);
        const QString context =
            fields[1].startsWith(u"base"_s) ? u"ZR::ZR8BitProcBase|"_s : u"ZR::ZR8BitProcMOS6510|"_s;
        QCOMPARE(logger.reports.join(u'\n').trimmed(),
                 u"zr8bitlib/zr8bitproc"_s + fields[1] + u": "_s + context + fields[2]);
        QCOMPARE(machine.hardwareIssueMsg(), machine.lastErrorStr());
        machine.pause();
        machine.resume();
        QVERIFY(machine.hardwareIssue() && run() == 0 && machine.ac() + machine.pc() == 0);
        machine.resetHardwareIssue();
        QVERIFY(machine.hardwareIssueMsg().isEmpty() && machine.isThereError());
        machine.pause();
        QCOMPARE(run(), 0);
        QCOMPARE(logger.reports.size(), 1);
        machine.resume();
        QCOMPARE(machine.execute("\x69\x05"_ba), 2);
    }

    void init()
    {
        Machine machine;
        TestLogger logger;
        machine.setLogger(&logger);
        QCOMPARE(machine.registers().keys().join(u','), u"AC,PC,PS,SP,XR,YR"_s);
        for (ZR8BitRegister *reg : machine.registers()) {
            QCOMPARE(reg->value(), short(reg == &machine.reg("PS") ? 0x20 : 0));
            QVERIFY((reg->regType() == ZR8BitRegType16Bit) == (reg == &machine.reg("PC")));
            QCOMPARE(reg->logger(), &logger);
        }
        // A second init() starts the registers anew, fails, and leaves a working machine.
        machine.reg("AC").setValue(9);
        QVERIFY(!machine.init() && !machine.readFromConfig(QString(), nullptr));
        QVERIFY(!machine.commands().addCommand(0x69, 2, 2, QString(), {}, {}));
        const QString taken = u"Opcode: 0x69 is already in the commands list with assembly: 'ADC'"_s;
        QCOMPARE(logger.reports.join(u'\n').trimmed(),
                 u"zr8bitlib/zr8bitproccommand addCommand: "_s + taken +
                     u"\nzr8bitlib/zr8bitprocmos6510 init: "_s + taken +
                     u"\nzr8bitlib/zr8bitprocbase readFromConfig: Config handler must be defined!"
                     "\nzr8bitlib/zr8bitproccommand addCommand: Assembly must defined for opcode: 0x69!"_s);
        QVERIFY(machine.execute("\x69\x05"_ba) == 2 && machine.ac() == 5);
        ZRObject *object = &machine;
        QVERIFY(machine.qt_metacast("ZRObject") == object && qobject_cast<ZR8BitProcessorIface *>(&machine));
    }

    void sums()
    {
        Machine machine;
        ZR8BitRegister &ps = machine.reg("PS");
        for (int i = 0; i < 256 * 256 * 2; ++i) {
            const int a = i & 0xFF;
            const int m = i >> 8 & 0xFF;
            const int c = i >> 16;
            const int others = (i * 7 & 0x1C) | 0x20; // B, D and I stay, and D changes nothing
            machine.reg("AC").setLo(static_cast<char>(a));
            ps.setLo(static_cast<char>(others | c));
            const char code[] = {0x69, static_cast<char>(m)};
            machine.execute(code, 2);

            const int sum = a + m + c;
            const int result = sum % 256;
            const bool overflow = (a < 128) == (m < 128) && (a < 128) != (result < 128);
            const int flags =
                others | (result & 0x80) | (overflow ? 0x40 : 0) | (result == 0 ? 0x02 : 0) | sum / 256;
            if (machine.ac() != result || static_cast<unsigned char>(ps.lo()) != flags)
                QFAIL(qPrintable(u"%1 + %2 + %3"_s.arg(a).arg(m).arg(c)));
        }
    }

    // Code, X, Y, the place of a pointer to FFF0, the operand's place.
    void addressing_data()
    {
        addRows(R"(
zero page | 65f0 | 09 | 09 | 0 | f0
zero page,X wraps | 75f0 | 90 | 09 | 0 | 80
absolute | 6d3412 | 09 | 09 | 0 | 1234
absolute,X is unsigned | 7d3412 | 80 | 09 | 0 | 12b4
absolute,X wraps | 7dffff | 02 | 09 | 0 | 1
absolute,Y is unsigned | 793412 | 09 | 80 | 0 | 12b4
absolute,Y wraps | 79ffff | 09 | 02 | 0 | 1
(zero page,X) wraps | 61fe | 90 | 09 | 8e | fff0
(zero page,X) pointer at the edge | 61f0 | 0f | 09 | ff | fff0
(zero page),Y | 7190 | 09 | 03 | 90 | fff3
(zero page),Y pointer at the edge | 71ff | 09 | 03 | ff | fff3
(zero page),Y wraps | 7110 | 09 | 90 | 10 | 80
)");
    }

    void addressing()
    {
        QFETCH(QStringList, fields);
        const auto number = [&fields](int i) { return fields[i].toInt(nullptr, 16); };
        const QByteArray code = bytesOf(fields[0]);
        Machine machine;
        machine.reg("XR").setValue(static_cast<short>(number(1)));
        machine.reg("YR").setValue(static_cast<short>(number(2)));
        machine.ram.setWordValue(short(0xFFF0), number(3));
        machine.ram.setByteValue(0x5A, number(4));
        QVERIFY(machine.execute(code) == code.size() && machine.ac() == 0x5A);

        // Beyond the end of a short memory everything reads 0, which is no failure of the processor.
        Machine none(0);
        QVERIFY(none.execute(code) == code.size() && none.ac() == 0 && !none.hardwareIssue());
        QVERIFY(none.ram.lastErrorStr().startsWith(u"Invalid memory address: 0x0000"_s));
    }

    void step()
    {
        Machine machine;
        machine.ram.setValue("\x69\x05\xAA\x6D"_ba, 0xFFFC);
        machine.ram.setWordValue(0x1200, 0); // the operand goes on at address 0
        machine.ram.setByteValue(7, 0x1200);
        machine.reg("PC").setValue(short(0xFFFC));
        machine.reg("PS").setLoBit(1, 1);
        QSignalSpy moves(&machine.reg("PC"), &ZR8BitRegister::onValueChanged);
        bool flagsFirst = true; // and PC last
        connect(&machine.reg("AC"), &ZR8BitRegister::onValueChanged, this,
                [&] { flagsFirst = flagsFirst && machine.reg("PS").loBit(1) == 0 && moves.size() != 1; });
        QVERIFY(machine.step() == 2 && machine.ac() == 5 && flagsFirst && machine.pc() == 0xFFFE);
        QVERIFY(machine.step() == 1 && machine.reg("XR").value() == 0 && machine.ac() == 5); // TAX
        QVERIFY(machine.step() == 3 && machine.ac() == 12 && machine.pc() == 2);
        QVERIFY(moves.size() == 3 && !machine.ram.isThereError());
    }
};

QTEST_GUILESS_MAIN(tst_MOS6510)
#include "tst_mos6510.moc"
