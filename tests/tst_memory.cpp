// Memory blocks: reading, writing, sizing, files, settings, and use from several threads.

#include "testconfig.h"

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
        QCOMPARE(rom.byteValue(0), char(0x12));
        QCOMPARE(rom.byteValue(2), char(0xFF));
        QCOMPARE(rom.wordValue(0), short(0x3412));
        QCOMPARE(rom.wordValue(1), short(0xFF34));
        QCOMPARE(rom.wordValue(2), short(0x00FF));
        QCOMPARE(rom.value(0, 3), QByteArray::fromHex("1234ff"));
        QCOMPARE(rom.value(1, 1), QByteArray::fromHex("34"));
        QCOMPARE(rom.value(1, INT_MAX), QByteArray::fromHex("34ff"));
        QVERIFY(rom.value(0, 0).isEmpty());
        QVERIFY2(!rom.isThereError(), qPrintable(rom.lastErrorStr()));
        QVERIFY(rom.setContent(QByteArray::fromHex("ffff")));
        QCOMPARE(rom.size(), 2);
        QCOMPARE(rom.wordValue(0), short(-1));
    }

    void readFailures_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("pos");
        QTest::addColumn<QString>("text");
        QTest::newRow("behind the end")
            << QByteArray(16, 'x') << 16 << addressFailure("00000010", "0000000f");
        QTest::newRow("far behind") << QByteArray(1, 'x') << INT_MAX
                                    << addressFailure("7fffffff", "00000000");
        QTest::newRow("negative") << QByteArray(1, 'x') << -1 << addressFailure("-0000001", "00000000");
        QTest::newRow("empty block") << QByteArray() << 0 << addressFailure("00000000", "-0000001");
    }

    void readFailures()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, pos);
        QFETCH(QString, text);
        const auto failsWith = [&](auto readAt) {
            ZR8BitROM rom(content, QString(), nullptr);
            readAt(rom);
            return rom.lastErrorStr();
        };
        QCOMPARE(failsWith([&](ZR8BitROM &rom) { QCOMPARE(rom.byteValue(pos), char(0)); }), text);
        QCOMPARE(failsWith([&](ZR8BitROM &rom) { QCOMPARE(rom.wordValue(pos), short(0)); }), text);
        QCOMPARE(failsWith([&](ZR8BitROM &rom) { QCOMPARE(rom.value(pos, 0), QByteArray()); }), text);
        if (content.size() > 1) {
            QCOMPARE(failsWith([&](ZR8BitROM &rom) { QCOMPARE(rom.value(0, -1), QByteArray()); }),
                     u"Couldn't resize memory contain variable to: -1"_s);
        }
    }

    void write_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<int>("len");
        QTest::addColumn<int>("pos");
        QTest::addColumn<QByteArray>("after"); // of 4 bytes 00
        QTest::addColumn<QString>("failure");
        const QByteArray data = QByteArray::fromHex("a1a2a3");
        const QByteArray zeros(4, 0);
        QTest::newRow("inside") << data << 3 << 1 << QByteArray::fromHex("00a1a2a3") << QString();
        QTest::newRow("cut") << data << 3 << 3 << QByteArray::fromHex("000000a1") << QString();
        QTest::newRow("cut, far") << data << INT_MAX << 3 << QByteArray::fromHex("000000a1") << QString();
        QTest::newRow("part") << data << 1 << 0 << QByteArray::fromHex("a1000000") << QString();
        QTest::newRow("nothing") << QByteArray() << 0 << 3 << zeros << QString();
        QTest::newRow("nothing at the end")
            << QByteArray() << 0 << 4 << zeros << addressFailure("00000004", "00000003");
        QTest::newRow("negative pos") << data << 3 << -1 << zeros << addressFailure("-0000001", "00000003");
        QTest::newRow("negative length")
            << data << -1 << 0 << zeros << u"Invalid data to write! Length: -1"_s;
        QTest::newRow("null data") << QByteArray() << 2 << 0 << zeros
                                   << u"Invalid data to write! Length: 2"_s;
    }

    void write()
    {
        QFETCH(QByteArray, data);
        QFETCH(int, len);
        QFETCH(int, pos);
        QFETCH(QByteArray, after);
        QFETCH(QString, failure);
        const char *source = data.isEmpty() ? nullptr : data.constData();
        ZR8BitRAM written;
        ZR8BitRAM set;
        QVERIFY(written.setSize(4) && set.setSize(4));
        QCOMPARE(written.write(source, len, pos), failure.isEmpty());
        set.setValue(source, len, pos);
        QCOMPARE(written.value(0, 4), after);
        QCOMPARE(set.value(0, 4), after);
        QCOMPARE(set.lastErrorStr(), failure);
        QCOMPARE(written.lastErrorStr(), failure.isEmpty() ? QString() : u"Couldn't load data! "_s + failure);

        // The overloads agree, and single bytes and words go the same way.
        if (len == data.size()) {
            ZR8BitRAM other;
            QVERIFY(other.setSize(4));
            QCOMPARE(other.write(data, pos), failure.isEmpty());
            QCOMPARE(other.value(0, 4), after);
        }
        set.setValue(QByteArray(4, 0), 0);
        set.setWordValue(short(0xB2B1), 1);
        set.setWordValue(short(0xB4B3), 3);
        set.setByteValue(char(0xB0), 0);
        QCOMPARE(set.value(0, 4), QByteArray::fromHex("b0b1b2b3"));
    }

    void sizes()
    {
        ZR8BitRAM ram;
        QCOMPARE(ram.size(), 0);
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
        QCOMPARE(shared, QByteArray("host"));
        QCOMPARE(ram.value(0, 4), QByteArray("gost"));
    }

    void files()
    {
        const QString path = makeFile("12345");
        ZR8BitROM rom(path, QString(), nullptr);
        QCOMPARE(rom.size(), 5);
        QCOMPARE(rom.value(0, 5), QByteArray("12345"));

        ZR8BitRAM ram;
        QVERIFY(ram.setSize(4));
        QVERIFY(!ram.readContentFromFile(path));
        QCOMPARE(ram.lastErrorStr(),
                 u"ROM file: '"_s + path + u"' size: 5 bytes is not equal the ROM size: 4 bytes!"_s);
        QCOMPARE(ram.value(0, 4), QByteArray(4, 0));
        QVERIFY(ram.setSize(5) && ram.readContentFromFile(path));
        QCOMPARE(ram.value(0, 9), QByteArray("12345"));

        const QString missing = path + u".none"_s;
        ZR8BitROM none(missing, QString(), nullptr);
        QCOMPARE(none.lastErrorStr(), u"Couldn't read content from file: '"_s + missing + u"'!"_s);
        QCOMPARE(none.size(), 0);
    }

    void settings()
    {
        const QString size = u"RAM_%1.Size"_s;
        const QString filePath = u"RAM_%1.FilePath"_s;
        const QString prefix = u"RAM_%1"_s;
        TestConfig config{{filePath, makeFile("1234")}};
        ZR8BitRAM ram;
        const QString noSize = u"RAM_%1.Size field does not defined!"_s;
        QVERIFY(!ram.readFromConfig(prefix, &config));
        QCOMPARE(ram.lastErrorStr(), noSize);
        config[size] = u"-2"_s;
        QVERIFY(!ram.readFromConfig(prefix, &config));
        QCOMPARE(ram.lastErrorStr(), noSize);
        QCOMPARE(ram.size(), -2);
        config[size] = u"4"_s;
        QVERIFY(ram.readFromConfig(prefix, &config));
        QCOMPARE(ram.value(0, 4), QByteArray("1234"));
        config[size] = u"3"_s;
        QVERIFY(!ram.readFromConfig(prefix, &config));
        QCOMPARE(ram.value(0, 9), QByteArray(3, 0)); // sized and cleared before the file was refused
        config.remove(filePath);
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
            threads.emplace_back([&ram, word] {
                for (int i = 0; i < 20000; ++i)
                    ram.setWordValue(word, 0);
            });
            threads.emplace_back([&ram, &torn] {
                for (int i = 0; i < 20000; ++i) {
                    const short seen = ram.wordValue(0);
                    if (seen != 0 && seen != 0x1111 && seen != 0x2222)
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

private:
    QString makeFile(const QByteArray &content)
    {
        const QString path = _dir.filePath(u"%1 %2.bin"_s);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("no file");
        return path;
    }

    QTemporaryDir _dir;
};

QTEST_GUILESS_MAIN(tst_Memory)
#include "tst_memory.moc"
