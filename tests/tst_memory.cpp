// Memory blocks: reading, writing, sizing, files, settings, and use from several threads; and the registers,
// which are views on blocks.

#include "testlogger.h"
#include "testrows.h"

#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zrmos6510psregister.h>

#include <climits>
#include <thread>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;
using namespace ZR;

class tst_Memory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void read()
    {
        ZR8BitROM rom("\x12\x34\xFF"_ba, u"rom"_s, nullptr);
        QCOMPARE(rom.byteValue(2), char(0xFF));
        QCOMPARE(rom.wordValue(1), short(0xFF34));
        QCOMPARE(rom.wordValue(2), short(0x00FF));
        QCOMPARE(rom.value(1, 1), "\x34"_ba);
        QCOMPARE(rom.value(1, INT_MAX), "\x34\xFF"_ba);
        QVERIFY(rom.value(0, 0).isEmpty() && !rom.isThereError() && rom.lastErrorStr().isEmpty());
        QVERIFY(rom.value(0, -1).isEmpty());
        QCOMPARE(rom.lastErrorStr(), u"Couldn't resize memory contain variable to: -1"_s);
    }

    void write()
    {
        ZR8BitRAM ram;
        QVERIFY(ram.setSize(4) && ram.write("123456789"_ba, 0) && ram.write("x", INT_MAX, 3));
        QCOMPARE(ram.value(0, 4), "123x");
        ram.setWordValue(short(0xB2B1), 1);
        ram.setWordValue(short(0xB4B3), 3);
        ram.setByteValue(char(0xB0), 0);
        QCOMPARE(ram.value(0, 4).toHex(), "b0b1b2b3");
        QVERIFY(ram.setSize(4) && ram.write(nullptr, 0, 3));
        QCOMPARE(ram.value(0, 4), QByteArray(4, 0));
        QVERIFY(!ram.isThereError() && !ram.setSize(-5) && ram.size() == 0);
        QCOMPARE(ram.lastErrorStr(), u"Couldn't set mermory size to: -5!"_s);
        // A block never writes into the bytes that its host handed over.
        const QByteArray shared("host");
        QVERIFY(ram.setContent(shared));
        ram.setByteValue('g', 0);
        QCOMPARE(shared + ram.value(0, 4), "hostgost");
    }

    // Length, position, message; the length of data above 1 is that of none.
    void failures_data()
    {
        addRows(R"(
beyond the end | 0 | 4 | Invalid memory address: 0x00000004! Availabel: 0x00000000 - 0x00000003
far away | 1 | 2147483647 | Invalid memory address: 0x7fffffff! Availabel: 0x00000000 - 0x00000003
negative | 1 | -1 | Invalid memory address: 0x-0000001! Availabel: 0x00000000 - 0x00000003
bad length | -1 | 0 | Invalid data to write! Length: -1
no data | 2 | 0 | Invalid data to write! Length: 2
)");
    }

    void failures()
    {
        QFETCH(QStringList, fields);
        const int len = fields[0].toInt();
        const int pos = fields[1].toInt();
        TestLogger logger;
        ZR8BitRAM ram;
        QVERIFY(ram.setContent("abcd"_ba));
        ram.setLogger(&logger);
        const char *data = len > 1 ? nullptr : "x";
        ram.setValue(data, len, pos);
        QVERIFY(!ram.write(data, len, pos) && ram.value(0, 4) == "abcd");
        QVERIFY(logger.lines[0] == logger.lines[1] && logger.lines[0] != logger.lines[2]);
        QStringList operations{u"ram _writeData: "_s, u"ram _writeData: "_s,
                               u"ram write: Couldn't load data! "_s};
        if (pos != 0) {
            QVERIFY(ram.byteValue(pos) + ram.wordValue(pos) == 0 && ram.value(pos, 0).isNull());
            operations += {u"rom byteValue: "_s, u"rom wordValue: "_s, u"rom value: "_s};
            QVERIFY(logger.lines[3] < logger.lines[4] && logger.lines[4] < logger.lines[5]);
        }
        for (QString &operation : operations)
            operation = u"zr8bitlib/zr8bit"_s + operation + fields[2];
        QCOMPARE(logger.reports, operations);
    }

    void quiet()
    {
        struct Quiet : ZRLoggerIface
        {
        } quiet;
        QVERIFY(!quiet.write(u"message"_s, QtInfoMsg, QString(), 1, QString()));
        ZR8BitROM rom("a"_ba, QString(), nullptr);
        rom.setLogger(&quiet);
        QVERIFY(!rom.readFromConfig(QString(), nullptr) && rom.byteValue(0) == 'a');
        QCOMPARE(rom.lastErrorStr(), u"Config handler must be defined!"_s); // which a success leaves
    }

    // The contents of a pipe count, and a device without an end is refused before it fills the memory.
    void devices()
    {
#ifdef Q_OS_LINUX
        int ends[2];
        QVERIFY(pipe(ends) == 0 && ::write(ends[1], "1234", 4) == 4 && close(ends[1]) == 0);
        ZR8BitRAM ram;
        QVERIFY(ram.setSize(4));
        QVERIFY(ram.readContentFromFile(u"/dev/fd/%1"_s.arg(ends[0])));
        close(ends[0]);
        QVERIFY(!ram.readContentFromFile(u"/dev/zero"_s));
        QCOMPARE(ram.lastErrorStr(), u"Couldn't read content from file: '/dev/zero'!"_s);
        rusage usage;
        QVERIFY(getrusage(RUSAGE_SELF, &usage) == 0 && usage.ru_maxrss < 1 << 20); // in KiB
        QCOMPARE(ram.value(0, 4), "1234");
#endif
    }

    void threads()
    {
        const int count = 5000;
        TestLogger logger;
        ZR8BitRAM ram;
        ram.setLogger(&logger);
        QVERIFY(ram.setSize(2));
        std::vector<std::thread> threads;
        for (const char *pos : {"1", "2", "3", "4"})
            threads.emplace_back([&ram, pos] {
                for (int i = 0; i < count; ++i) {
                    ram.setWordValue(ram.wordValue(0), 0);
                    ram.write("x", 1, -atoi(pos));
                }
            });
        for (std::thread &thread : threads)
            thread.join();
        // Each failure is told once and whole, and with its own cause.
        for (const char *pos : {"1", "2", "3", "4"}) {
            const QString cause = u"Invalid memory address: 0x-000000"_s + QLatin1String(pos);
            QCOMPARE(logger.reports.filter(u"_writeData: "_s + cause).size(), count);
            QCOMPARE(logger.reports.filter(u"write: Couldn't load data! "_s + cause).size(), count);
        }
    }

    // Registers

    void register8()
    {
        ZR8BitRegister reg;
        QSignalSpy spy(&reg, &ZR8BitRegister::onValueChanged);
        reg.setValue(1); // without storage
        QCOMPARE(reg.value() + reg.hi() + int(spy.size()), 0);
        QVERIFY(reg.init(u"AC"_s, ZR8BitRegType8Bit, 5, nullptr)); // no address in an own block
        reg.setValue(0x1234);
        QCOMPARE(reg.value(), short(0x34));
        reg.setHi(char(0xFF));
        QCOMPARE(reg.value(), short(-1));
        reg.setLo(0x12);
        QVERIFY(reg.hi() == 0x12 && spy.size() == 3);
    }

    void register16()
    {
        ZR8BitRegister reg;
        QVERIFY(reg.init(u"R"_s, ZR8BitRegType16Bit, 0, nullptr));
        QSignalSpy spy(&reg, &ZR8BitRegister::onValueChanged);
        for (char bit = 0; bit < 8; ++bit) {
            const int mask = 1 << bit;
            reg.setValue(0x00FF);
            reg.setHiBit(bit, 2);
            reg.setLoBit(bit, 0);
            QCOMPARE(int(reg.value()) & 0xFFFF, mask << 8 | (0xFF ^ mask));
            QVERIFY(reg.hiBit(bit) == static_cast<char>(mask) && reg.loBit(bit) == 0);
        }
        QCOMPARE(spy.size(), 8); // of setValue()
        for (const char bit : {char(-1), char(8), char(31)}) {
            reg.setHiBit(bit, 1);
            reg.setLoBit(bit, 1);
            QCOMPARE(reg.hiBit(bit), char(0));
        }
        QCOMPARE(reg.value(), short(0x807F));
    }

    void givenBlock()
    {
        ZR8BitRAM ram;
        QVERIFY(ram.setSize(8));
        ZR8BitRegister reg;
        QVERIFY(reg.init(u"R"_s, ZR8BitRegType16Bit, 5, &ram));
        reg.setValue(0x1234);
        reg.setHi(0x56);
        QVERIFY(ram.wordValue(5) == 0x5634 && reg.lo() == 0x34 && !ram.isThereError());

        // At the last byte half of the register lies outside: the block tells, not the register.
        QVERIFY(reg.init(u"R"_s, ZR8BitRegType16Bit, 7, &ram));
        QSignalSpy spy(&reg, &ZR8BitRegister::onValueChanged);
        reg.setValue(0x0BCD);
        QVERIFY(reg.value() == 0x00CD && !ram.isThereError());
        reg.setHi(1);
        QVERIFY(ram.isThereError() && !reg.isThereError() && spy.size() == 2);
    }

    void ownBlock()
    {
        TestLogger logger;
        ZR8BitRegister reg;
        reg.setLogger(&logger); // too early for the block
        QVERIFY(reg.init(u"R"_s, ZR8BitRegType8Bit, 0, nullptr));
        QPointer<ZR8BitRAM> block = reg.findChild<ZR8BitRAM *>();
        QVERIFY(block && block->name() == u"RRegisterMemory"_s && !block->logger());
        reg.setLogger(&logger);
        QCOMPARE(block->logger(), &logger);
        QVERIFY(reg.init(u"S"_s, static_cast<ZR8BitRegTypes>(7), 3, nullptr)); // no kind: no bytes
        reg.setValue(1);
        QVERIFY(!block && reg.id() == u"S"_s && reg.value() + reg.hi() + reg.lo() == 0);
    }

    void flags() // the writers of N, V, Z and C are those that ADC calls
    {
        ZRMOS6510PSRegister ps;
        ps.setB(1); // without storage
        QVERIFY(ps.B() == 0 && ps.init(u"PS"_s, ZR8BitRegType8Bit, 0, nullptr));
        ps.setB(2);
        QVERIFY(ps.value() == 0x30 && ps.B() == 0x10 && ps.D() + ps.I() == 0);
        ps.setI(1);
        QVERIFY(ps.value() == 0x34 && ps.I() == 0x04 && ps.D() == 0);
        ps.setB(0);
        ps.setD(4);
        QVERIFY(ps.value() == 0x2C && ps.D() == 0x08 && ps.N() + ps.V() + ps.Z() + ps.C() == 0);
        ps.setLo(char(0xC3));
        QVERIFY(ps.N() == char(0x80) && ps.V() == 0x40 && ps.Z() == 0x02 && ps.C() == 0x01);
    }
};

QTEST_GUILESS_MAIN(tst_Memory)
#include "tst_memory.moc"
