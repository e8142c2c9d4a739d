// The computer: what a configuration makes, the failure chain, and who is released when.

#include "testconfig.h"

#include <zr8bitlib/zr8bitcomputer.h>
#include <zr8bitlib/zr8bitprocmos6510.h>
#include <zr8bitlib/zr8bitram.h>

#include <QtTest/QtTest>

using namespace ZR;

namespace {

TestConfig completeConfig()
{
    return {{QStringLiteral("Computer.Name"), QStringLiteral("Test")},
            {QStringLiteral("Computer.ROMs"), QStringLiteral("CPU, a,A ")},
            {QStringLiteral("ROM_CPU.Size"), QStringLiteral("1")},
            {QStringLiteral("ROM_a.Size"), QStringLiteral("2")},
            {QStringLiteral("ROM_A.Size"), QStringLiteral("3")},
            {QStringLiteral("Computer.RAMs"), QStringLiteral("CPU")},
            {QStringLiteral("RAM_CPU.Size"), QStringLiteral("4")},
            {QStringLiteral("Computer.Processors"), QStringLiteral("CPU")},
            {QStringLiteral("PROC_CPU.Type"), QStringLiteral("Mos6510")}};
}

} // namespace

class tst_Computer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void load();
    void failures_data();
    void failures();
    void emptyName();
    void releases();
};

void tst_Computer::load()
{
    ZR8BitComputer computer;
    QVERIFY(computer.name().isEmpty());
    QCOMPARE(computer.computerName(), QStringLiteral("Not defined"));
    TestConfig config = completeConfig();
    QVERIFY2(computer.readFromConfig(QStringLiteral("ignored"), &config),
             qPrintable(computer.lastErrorStr()));
    QCOMPARE(computer.computerName(), QStringLiteral("Test"));
    QCOMPARE(computer.roms().keys().join(u','), QStringLiteral("A,CPU,a"));
    QCOMPARE(computer.roms().value(QStringLiteral("a"))->size(), 2);
    QCOMPARE(computer.rams().value(QStringLiteral("CPU"))->size(), 4);
    QVERIFY(computer.rams().first()->name().isEmpty() && !computer.rams().first()->parent());
    ZR8BitProcessorIface *processor = computer.processors().value(QStringLiteral("CPU"));
    QVERIFY(dynamic_cast<ZR8BitProcMOS6510 *>(processor));
    QVERIFY(!processor->mainMemory() && processor->registers().isEmpty());

    QVERIFY(!computer.readFromConfig(QString(), nullptr));
    QCOMPARE(computer.lastErrorStr(), QStringLiteral("Config handler must be defined!"));
    QVERIFY(computer.rams().isEmpty() && computer.processors().isEmpty() && computer.roms().isEmpty());
    QCOMPARE(computer.computerName(), QStringLiteral("Test"));
    config.remove(QStringLiteral("Computer.Name"));
    config.remove(QStringLiteral("Computer.ROMs"));
    QVERIFY(computer.readFromConfig(QString(), &config));
    QVERIFY(computer.roms().isEmpty());
    QCOMPARE(computer.computerName(), QStringLiteral("Not defined"));
    QVERIFY(computer.isThereError());
}

void tst_Computer::failures_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value"); // null to remove the setting
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *key, const char *value, const char *text) {
        QTest::newRow(name) << QString::fromLatin1(key) << QString::fromLatin1(value)
                            << QString::fromLatin1(text);
    };
    row("no RAM", "Computer.RAMs", nullptr, "At least one RAM must be defined!");
    row("no processor", "Computer.Processors", nullptr, "At least one processor must be defined!");
    row("ROM twice", "Computer.ROMs", "a, a ", "ROM: 'a' is already loaded!");
    row("RAM twice", "Computer.RAMs", "CPU,CPU", "RAM: 'CPU' is already loaded!");
    row("processor twice", "Computer.Processors", "CPU, CPU", "Processor: 'CPU' is already loaded!");
    row("ROM without size", "Computer.ROMs", "%1%2",
        "Error on load 'ROM_%1%2' parameters! ROM_%1%2.Size field does not defined!");
    row("RAM without size", "RAM_CPU.Size", nullptr,
        "Error on load 'RAM_CPU' parameters! RAM_CPU.Size field does not defined!");
    row("RAM without file", "RAM_CPU.FilePath", "/no/file%2",
        "Error on load 'RAM_CPU' parameters! Couldn't read content from file: '/no/file%2'!");
    row("no type", "PROC_CPU.Type", nullptr, "Processor: 'CPU' type is not defined!");
    row("unknown type", "PROC_CPU.Type", "6510", "Unsupported processor type: '6510'!");
    row("untrimmed type", "PROC_CPU.Type", "MOS6510 ", "Unsupported processor type: 'MOS6510 '!");
    row("unknown name", "Computer.Processors", "cpu", "Processor: 'cpu' type is not defined!");
}

void tst_Computer::failures()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QString, text);
    TestConfig config = completeConfig();
    ZR8BitComputer computer;
    QVERIFY(computer.readFromConfig(QString(), &config));
    QSignalSpy ramDestroyed(computer.rams().first(), &QObject::destroyed);
    if (value.isNull())
        config.remove(key);
    else
        config[key] = value;
    QVERIFY(!computer.readFromConfig(QString(), &config));
    QCOMPARE(computer.lastErrorStr(), text);
    QVERIFY(computer.roms().isEmpty() && computer.rams().isEmpty() && computer.processors().isEmpty());
    QCOMPARE(ramDestroyed.size(), 1);
}

void tst_Computer::emptyName()
{
    TestConfig config = completeConfig();
    config[QStringLiteral("Computer.RAMs")] = QStringLiteral(" ");
    config[QStringLiteral("RAM_.Size")] = QStringLiteral("9");
    ZR8BitComputer computer;
    QVERIFY(computer.readFromConfig(QString(), &config));
    QCOMPARE(computer.rams().value(QString())->size(), 9);
}

void tst_Computer::releases()
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
            watch(rom, QStringLiteral("ROM ") + name);
        watch(computer.rams().first(), QStringLiteral("RAM"));
        watch(static_cast<ZR8BitProcBase *>(computer.processors().first()), QStringLiteral("PROC"));
    }
    QCOMPARE(released.join(u','), QStringLiteral("PROC,RAM,ROM A,ROM CPU,ROM a"));
}

QTEST_GUILESS_MAIN(tst_Computer)
#include "tst_computer.moc"
