// The computer: what a configuration makes, the failure chain, and who is released when.

#include "testconfig.h"

#include <zr8bitlib/zr8bitcomputer.h>
#include <zr8bitlib/zr8bitprocmos6510.h>
#include <zr8bitlib/zr8bitram.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using namespace ZR;

namespace {

TestConfig completeConfig()
{
    return {{u"Computer.Name"_s, u"Test"_s},   {u"Computer.ROMs"_s, u"CPU, a,A "_s},
            {u"ROM_CPU.Size"_s, u"1"_s},       {u"ROM_a.Size"_s, u"2"_s},
            {u"ROM_A.Size"_s, u"3"_s},         {u"Computer.RAMs"_s, u"CPU"_s},
            {u"RAM_CPU.Size"_s, u"4"_s},       {u"Computer.Processors"_s, u"CPU"_s},
            {u"PROC_CPU.Type"_s, u"Mos6510"_s}};
}

} // namespace

class tst_Computer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void load()
    {
        ZR8BitComputer computer;
        QVERIFY(computer.name().isEmpty());
        QCOMPARE(computer.computerName(), u"Not defined"_s);
        TestConfig config = completeConfig();
        QVERIFY2(computer.readFromConfig(u"ignored"_s, &config), qPrintable(computer.lastErrorStr()));
        QCOMPARE(computer.computerName(), u"Test"_s);
        QCOMPARE(computer.roms().keys().join(u','), u"A,CPU,a"_s);
        QCOMPARE(computer.roms().value(u"a"_s)->size(), 2);
        QCOMPARE(computer.rams().value(u"CPU"_s)->size(), 4);
        QVERIFY(computer.rams().first()->name().isEmpty() && !computer.rams().first()->parent());
        ZR8BitProcessorIface *processor = computer.processors().value(u"CPU"_s);
        QVERIFY(dynamic_cast<ZR8BitProcMOS6510 *>(processor));
        QVERIFY(!processor->mainMemory() && processor->registers().isEmpty());

        QVERIFY(!computer.readFromConfig(QString(), nullptr));
        QCOMPARE(computer.lastErrorStr(), u"Config handler must be defined!"_s);
        QVERIFY(computer.rams().isEmpty() && computer.processors().isEmpty() && computer.roms().isEmpty());
        QCOMPARE(computer.computerName(), u"Test"_s);
        config.remove(u"Computer.Name"_s);
        config.remove(u"Computer.ROMs"_s);
        QVERIFY(computer.readFromConfig(QString(), &config));
        QVERIFY(computer.roms().isEmpty());
        QCOMPARE(computer.computerName(), u"Not defined"_s);
        QVERIFY(computer.isThereError());

        config[u"Computer.RAMs"_s] = u" "_s; // an empty name is a name
        config[u"RAM_.Size"_s] = u"9"_s;
        QVERIFY(computer.readFromConfig(QString(), &config));
        QCOMPARE(computer.rams().value(QString())->size(), 9);

        // ROMs come before RAMs, and so do their failures.
        config[u"Computer.ROMs"_s] = u"x"_s;
        config.remove(u"Computer.RAMs"_s);
        QVERIFY(!computer.readFromConfig(QString(), &config));
        QVERIFY(computer.lastErrorStr().startsWith(u"Error on load 'ROM_x' parameters!"_s));
    }

    void failures()
    {
        const struct
        {
            const char *key;
            const char *value; // null to remove the setting
            const char *text;
        } rows[] = {
            {"Computer.RAMs", nullptr, "At least one RAM must be defined!"},
            {"Computer.Processors", nullptr, "At least one processor must be defined!"},
            {"Computer.ROMs", "a, a ", "ROM: 'a' is already loaded!"},
            {"Computer.RAMs", "CPU,CPU", "RAM: 'CPU' is already loaded!"},
            {"Computer.Processors", "CPU, CPU", "Processor: 'CPU' is already loaded!"},
            {"Computer.ROMs", "%1%2",
             "Error on load 'ROM_%1%2' parameters! ROM_%1%2.Size field does not defined!"},
            {"RAM_CPU.FilePath", "/no/file%2",
             "Error on load 'RAM_CPU' parameters! Couldn't read content from file: '/no/file%2'!"},
            {"PROC_CPU.Type", nullptr, "Processor: 'CPU' type is not defined!"},
            {"PROC_CPU.Type", "MOS6510 ", "Unsupported processor type: 'MOS6510 '!"},
            {"Computer.Processors", "cpu", "Processor: 'cpu' type is not defined!"},
        };
        for (const auto &row : rows) {
            TestConfig config = completeConfig();
            ZR8BitComputer computer;
            QVERIFY(computer.readFromConfig(QString(), &config));
            QSignalSpy ramDestroyed(computer.rams().first(), &QObject::destroyed);
            if (row.value)
                config[QLatin1String(row.key)] = QLatin1String(row.value);
            else
                config.remove(QLatin1String(row.key));
            QVERIFY(!computer.readFromConfig(QString(), &config));
            QCOMPARE(computer.lastErrorStr(), QLatin1String(row.text));
            QVERIFY(computer.roms().isEmpty() && computer.rams().isEmpty() &&
                    computer.processors().isEmpty());
            QCOMPARE(ramDestroyed.size(), 1);
        }
    }

    void releases()
    {
        QStringList released;
        {
            ZR8BitComputer computer;
            TestConfig config = completeConfig();
            QVERIFY(computer.readFromConfig(QString(), &config));
            const auto watch = [&](QObject *object, const QString &name) {
                connect(object, &QObject::destroyed, this, [&released, name] { released += name; });
            };
            for (const auto &[name, rom] : computer.roms().asKeyValueRange())
                watch(rom, u"ROM "_s + name);
            watch(computer.rams().first(), u"RAM"_s);
            watch(static_cast<ZR8BitProcBase *>(computer.processors().first()), u"PROC"_s);
        }
        QCOMPARE(released.join(u','), u"PROC,RAM,ROM A,ROM CPU,ROM a"_s);
    }
};

QTEST_GUILESS_MAIN(tst_Computer)
#include "tst_computer.moc"
