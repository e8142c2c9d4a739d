#include "program.h"
#include "smallmachine.h"

#include <QtTest/QtTest>

class tst_SmallMachine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void program()
    {
        SmallMachine computer(exampleROM());
        ZR::ZR8BitMachine &machine = computer.machine();
        QVERIFY(machine.loadBytes(exampleProgram(), 0x200) && machine.loadBytes(exampleHandler(), 0x300));
        QVERIFY(machine.loadBytes(QByteArray::fromHex("0003"), 0xFFFE));
        QVERIFY(machine.setRegister(QStringLiteral("SP"), 0xFF));
        QVERIFY(machine.setRegister(QStringLiteral("PC"), 0x200));
        QVERIFY(computer.run(10'000));
        QCOMPARE(computer.printed(), QByteArray("AB*..."));
        QVERIFY(machine.cycles() > 3 * 1024 && machine.cycles() < 3 * 1024 + 150);
    }

    // A routine alone.
    void routine()
    {
        SmallMachine computer(exampleROM());
        ZR::ZR8BitMachine &machine = computer.machine();
        QVERIFY(machine.loadBytes(QByteArray::fromHex("8501 20 00A0 60"), 0x200)); // STA 1, JSR $A000, RTS
        for (const int bank : {3, 1}) {
            QVERIFY(machine.setRegister(QStringLiteral("AC"), bank));
            QVERIFY2(machine.call(0x200), qPrintable(machine.lastErrorStr()));
        }
        QCOMPARE(computer.printed(), QByteArray("BB")); // the port has no outputs: its lines read 1
    }
};

QTEST_GUILESS_MAIN(tst_SmallMachine)
#include "tst_smallmachine.moc"
