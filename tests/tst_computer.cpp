// The computer: what a configuration makes, the failure chain, and that a failed load leaves nothing.

#include "testconfig.h"
#include "testlogger.h"
#include "testrows.h"

#include <zr8bitlib/zr8bitcomputer.h>
#include <zr8bitlib/zr8bitprocmos6510.h>
#include <zr8bitlib/zr8bitram.h>

using namespace Qt::StringLiterals;
using namespace ZR;

namespace {

TestConfig completeConfig()
{
    return TestConfig(u"Computer.Name=Test\nComputer.ROMs=CPU, a,A \nROM_CPU.Size=1\nROM_a.Size=2\n"
                      "ROM_A.Size=3\nComputer.RAMs=CPU\nRAM_CPU.Size=4\nRAM_.Size=9\n"
                      "Computer.Processors=CPU\nPROC_CPU.Type=Mos6510"_s);
}

} // namespace

class tst_Computer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void load()
    {
        ZR8BitComputer computer;
        QCOMPARE(computer.computerName(), u"Not defined"_s);
        TestConfig config = completeConfig();
        QVERIFY2(computer.readFromConfig(u"ignored"_s, &config), qPrintable(computer.lastErrorStr()));
        QCOMPARE(computer.computerName(), u"Test"_s);
        QCOMPARE(computer.roms().keys().join(u','), u"A,CPU,a"_s);
        QVERIFY(computer.roms()[u"a"_s]->size() == 2 && computer.rams()[u"CPU"_s]->size() == 4);
        ZR8BitProcessorIface *processor = computer.processors().value(u"CPU"_s);
        QVERIFY(dynamic_cast<ZR8BitProcMOS6510 *>(processor) && !processor->mainMemory());

        config.setValue(u"Computer.RAMs"_s, u" "_s); // an empty name is a name
        config.remove(u"Computer.Name"_s);
        config.remove(u"Computer.ROMs"_s);
        QVERIFY(computer.readFromConfig(QString(), &config));
        QVERIFY(computer.roms().isEmpty() && computer.rams().value(QString())->size() == 9);
        QCOMPARE(computer.computerName(), u"Not defined"_s);
    }

    void failures_data()
    {
        addRows(R"(
no ROM size | Computer.ROMs=%1%2 | Error on load 'ROM_%1%2' parameters! ROM_%1%2.Size field does not defined!
same ROM | Computer.ROMs=a, a  | ROM: 'a' is already loaded!
no RAM | Computer.RAMs | At least one RAM must be defined!
same RAM | Computer.RAMs=CPU,CPU | RAM: 'CPU' is already loaded!
no file | RAM_CPU.FilePath=/%2 | Error on load 'RAM_CPU' parameters! Couldn't read content from file: '/%2'!
no processor | Computer.Processors | At least one processor must be defined!
same processor | Computer.Processors=CPU, CPU | Processor: 'CPU' is already loaded!
no type | Computer.Processors=cpu | Processor: 'cpu' type is not defined!
bad type | PROC_CPU.Type=MOS6510  | Unsupported processor type: 'MOS6510 '!
no settings |  | Config handler must be defined!
)");
    }

    void failures()
    {
        QFETCH(QStringList, fields);
        const QString key = fields[0].section(u'=', 0, 0);
        TestConfig config = completeConfig();
        ZR8BitComputer computer;
        QVERIFY(computer.readFromConfig(QString(), &config));
        QStringList released;
        const auto watch = [&](QObject *object, const QString &name) {
            connect(object, &QObject::destroyed, this, [&released, name] { released += name; });
        };
        watch(computer.roms().first(), u"ROM"_s);
        watch(computer.rams().first(), u"RAM"_s);
        watch(static_cast<ZR8BitProcBase *>(computer.processors().first()), u"processor"_s);
        config.setValue(key, fields[0].section(u'=', 1));
        if (key == fields[0]) // with no value
            config.remove(key);
        TestLogger logger;
        computer.setLogger(&logger);
        QVERIFY(!computer.readFromConfig(QString(), key.isEmpty() ? nullptr : &config));
        // The report names the operation, not the step of it that fails.
        const auto operation = key.contains(u"Type"_s) ? u"_createProcessor"_s : u"readFromConfig"_s;
        QCOMPARE(logger.reports.join(u'\n'),
                 u"zr8bitlib/zr8bitcomputer "_s + operation + u": "_s + fields[1]);
        QCOMPARE(released.join(u','), u"processor,RAM,ROM"_s); // a processor may hold a RAM
        QVERIFY(computer.roms().isEmpty() && computer.rams().isEmpty() && computer.processors().isEmpty());
        QCOMPARE(computer.computerName(), u"Test"_s);
    }

    void memoryFiles()
    {
        QTemporaryDir dir;
        QFile file(dir.filePath(u"%1 %2.bin"_s)); // a name that looks like placeholders
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("1234") == 4);
        file.close();
        ZR8BitROM rom(file.fileName(), QString(), nullptr);
        QCOMPARE(rom.value(0, rom.size()), "1234");

        TestConfig config(u"RAM_%1.Size=-2\nRAM_%1.FilePath="_s + file.fileName());
        ZR8BitRAM ram;
        const auto load = [&config, &ram] { return ram.readFromConfig(u"RAM_%1"_s, &config); };
        QVERIFY(!load());
        QCOMPARE(ram.lastErrorStr(), u"RAM_%1.Size field does not defined!"_s);
        config.setValue(u"RAM_%1.Size"_s, u"4"_s);
        QVERIFY(load() && ram.value(0, 9) == "1234");
        config.setValue(u"RAM_%1.Size"_s, u"3"_s);
        QVERIFY(!load() && ram.value(0, 9) == QByteArray(3, 0));
        QCOMPARE(ram.lastErrorStr(), u"ROM file: '"_s + file.fileName() +
                                         u"' size: 4 bytes is not equal the ROM size: 3 bytes!"_s);
    }

    void settingsDefaults()
    {
        TestConfig config(u"Word= Yes \nOff=off\nLong=-5000000000"_s);
        QVERIFY(config.boolValue(u"Word"_s, false) && !config.boolValue(u"Off"_s, true));
        QVERIFY(config.boolValue(u"Long"_s, true) && !config.contains(u"None"_s) &&
                config.contains(u"Off"_s));
        QVERIFY(config.longValue(u"Long"_s, 1) == -5000000000 && config.doubleValue(u"Word"_s, 1) == 1);
    }
};

QTEST_GUILESS_MAIN(tst_Computer)
#include "tst_computer.moc"
