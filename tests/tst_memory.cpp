// Memory blocks: reading, writing, sizing, files, settings, and use from several threads.

#include "testconfig.h"
#include "testlogger.h"

#include <zr8bitlib/zr8bitram.h>

#include <QtTest/QtTest>

#include <atomic>
#include <climits>
#include <thread>

using namespace Qt::StringLiterals;
using namespace ZR;

namespace {

QString addressFailure(const char *pos, const char *last)
{
    return u"Invalid memory address: 0x%1! Availabel: 0x00000000 - 0x%2"_s.arg(QLatin1String(pos),
                                                                               QLatin1String(last));
}

} // namespace

class tst_Memory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void read()
    {
        ZR8BitROM rom(QByteArray::fromHex("1234ff"), u"rom"_s, nullptr);
        QCOMPARE(rom.name(), u"rom"_s);
        QCOMPARE(rom.size(), 3);
        QCOMPARE(rom.byteValue(2), char(0xFF));
        QCOMPARE(rom.wordValue(0), short(0x3412));
        QCOMPARE(rom.wordValue(1), short(0xFF34));
        QCOMPARE(rom.wordValue(2), short(0x00FF));
        QCOMPARE(rom.value(1, 1), QByteArray::fromHex("34"));
        QCOMPARE(rom.value(1, INT_MAX), QByteArray::fromHex("34ff"));
        QVERIFY(rom.value(0, 0).isEmpty());
        QVERIFY2(!rom.isThereError(), qPrintable(rom.lastErrorStr()));
        QVERIFY(rom.value(0, -1).isEmpty());
        QCOMPARE(rom.lastErrorStr(), u"Couldn't resize memory contain variable to: -1"_s);
    }

    void readFailures()
    {
        const struct
        {
            int size, pos;
            QString text;
        } rows[] = {{16, 16, addressFailure("00000010", "0000000f")},
                    {1, INT_MAX, addressFailure("7fffffff", "00000000")},
                    {1, -1, addressFailure("-0000001", "00000000")},
                    {0, 0, addressFailure("00000000", "-0000001")}};
        for (const auto &row : rows) {
            ZR8BitROM rom(QByteArray(row.size, 'x'), QString(), nullptr);
            TestLogger logger;
            rom.setLogger(&logger);
            QCOMPARE(rom.byteValue(row.pos) + rom.wordValue(row.pos), 0);
            QCOMPARE(rom.value(row.pos, 0), QByteArray());
            QCOMPARE(rom.lastErrorStr(), row.text);
            QCOMPARE(logger.lines.size(), 3); // each of them reports
        }
    }

    void write()
    {
        const QByteArray data = QByteArray::fromHex("a1a2a3");
        const struct
        {
            const char *data;
            int len, pos;
            const char *after; // of 4 bytes 00
            QString failure;
        } rows[] = {{data, 3, 1, "00a1a2a3", {}},
                    {data, 3, 3, "000000a1", {}},
                    {data, INT_MAX, 3, "000000a1", {}},
                    {data, 1, 0, "a1000000", {}},
                    {nullptr, 0, 3, "00000000", {}},
                    {nullptr, 0, 4, "00000000", addressFailure("00000004", "00000003")},
                    {data, 3, -1, "00000000", addressFailure("-0000001", "00000003")},
                    {data, -1, 0, "00000000", u"Invalid data to write! Length: -1"_s},
                    {nullptr, 2, 0, "00000000", u"Invalid data to write! Length: 2"_s}};
        for (const auto &row : rows) {
            const bool isGood = row.failure.isEmpty();
            ZR8BitRAM written;
            ZR8BitRAM set;
            QVERIFY(written.setSize(4) && set.setSize(4));
            QCOMPARE(written.write(row.data, row.len, row.pos), isGood);
            set.setValue(row.data, row.len, row.pos);
            QCOMPARE(written.value(0, 4).toHex(), row.after);
            QCOMPARE(set.value(0, 4).toHex(), row.after);
            QCOMPARE(set.lastErrorStr(), row.failure);
            QCOMPARE(written.lastErrorStr(), isGood ? QString() : u"Couldn't load data! "_s + row.failure);
        }
        ZR8BitRAM ram;
        QVERIFY(ram.setSize(4) && ram.write(QByteArray(9, 'x'), 0));
        ram.setWordValue(short(0xB2B1), 1);
        ram.setWordValue(short(0xB4B3), 3);
        ram.setByteValue(char(0xB0), 0);
        QCOMPARE(ram.value(0, 4), QByteArray::fromHex("b0b1b2b3"));
    }

    void sizes()
    {
        ZR8BitRAM ram;
        QVERIFY(ram.setSize(16));
        ram.setValue(QByteArray(16, 'x'), 0);
        QVERIFY(ram.setSize(16));
        QCOMPARE(ram.value(0, 16), QByteArray(16, 0));
        QVERIFY(!ram.setSize(-5));
        QCOMPARE(ram.lastErrorStr(), u"Couldn't set mermory size to: -5!"_s);
        QCOMPARE(ram.size(), 0);
        // A block never writes into the bytes that its host handed over.
        const QByteArray shared("host");
        QVERIFY(ram.setContent(shared));
        ram.setByteValue('g', 0);
        QCOMPARE(shared + ram.value(0, 4), "hostgost");
    }

    void settingsAndFiles()
    {
        QTemporaryDir dir;
        QFile file(dir.filePath(u"%1 %2.bin"_s)); // a name that looks like placeholders
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("1234") == 4);
        file.close();
        ZR8BitROM rom(file.fileName(), QString(), nullptr);
        QCOMPARE(rom.value(0, rom.size()), "1234");
        ZR8BitROM none(dir.path(), QString(), nullptr);
        QCOMPARE(none.lastErrorStr(), u"Couldn't read content from file: '"_s + dir.path() + u"'!"_s);
        QCOMPARE(none.size(), 0);

        const QString prefix = u"RAM_%1"_s;
        const QString size = u"RAM_%1.Size"_s;
        TestConfig config{{u"RAM_%1.FilePath"_s, file.fileName()}};
        ZR8BitRAM ram;
        for (const char *bad : {"", "-2"}) {
            if (*bad)
                config[size] = QLatin1String(bad);
            QVERIFY(!ram.readFromConfig(prefix, &config));
            QCOMPARE(ram.lastErrorStr(), u"RAM_%1.Size field does not defined!"_s);
        }
        QCOMPARE(ram.size(), -2);
        config[size] = u"4"_s;
        QVERIFY(ram.readFromConfig(prefix, &config));
        QCOMPARE(ram.value(0, 9), "1234");
        config[size] = u"3"_s;
        QVERIFY(!ram.readFromConfig(prefix, &config));
        QCOMPARE(ram.lastErrorStr(), u"ROM file: '"_s + file.fileName() +
                                         u"' size: 4 bytes is not equal the ROM size: 3 bytes!"_s);
        QCOMPARE(ram.value(0, 9), QByteArray(3, 0)); // sized and cleared before the file was refused
        config.remove(u"RAM_%1.FilePath"_s);
        config[size] = u"0"_s;
        QVERIFY(ram.readFromConfig(prefix, &config));
        QCOMPARE(ram.size(), 0);
        QVERIFY(!ram.readFromConfig(prefix, nullptr));
        QCOMPARE(ram.lastErrorStr(), u"Config handler must be defined!"_s);
    }

    void threads()
    {
        // Words are written whole: a reader sees one of the values, never half of each.
        ZR8BitRAM ram;
        QVERIFY(ram.setSize(2));
        std::atomic<bool> torn{false};
        std::vector<std::thread> threads;
        for (const short word : {short(0x1111), short(0x2222)}) {
            threads.emplace_back([&ram, &torn, word] {
                for (int i = 0; i < 20000; ++i) {
                    ram.setWordValue(word, 0);
                    const short seen = ram.wordValue(0);
                    if (seen != 0x1111 && seen != 0x2222)
                        torn = true;
                    ram.write("x", 1, 2 + i % 2); // failures are reported under the lock as well
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QVERIFY(!torn);
        QVERIFY(ram.lastErrorStr().startsWith(u"Couldn't load data! Invalid memory address: 0x0000000"_s));
    }
};

QTEST_GUILESS_MAIN(tst_Memory)
#include "tst_memory.moc"
