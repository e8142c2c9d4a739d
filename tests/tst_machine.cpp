// The machine of the kit: settings, wiring, runs, and the text of instructions.

#include <zr8bitkit/zr8bitdisassembler.h>
#include <zr8bitkit/zr8bitmachine.h>
#include <zr8bitkit/zr8bitprocmos6510full.h>
#include <zr8bitkit/zriniconfig.h>
#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bitram.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using namespace ZR;

class tst_Machine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A file and a map with the same texts are the same settings.
    void settings()
    {
        const QTemporaryDir dir;
        const QString path = dir.filePath(u"x.ini"_s);
        const QString image = dir.filePath(u"g.bin"_s);
        ZRMapConfig map{{u"S.List"_s, u" a , b.c"_s},
                        {u"S.None"_s, QString()},
                        {u"S.%.Number"_s, u" $10"_s},
                        {u"S.Text"_s, u"d, e"_s},
                        {u"S.FilePath"_s, image}};
        ZRIniConfig ini;
        QVERIFY(!ini.load(path) && ini.lastErrorStr().startsWith("Couldn't read settings file '"_L1 + path));
        writeFile(path, "\xEF\xBB\xBF; comment\r\n# = [\n[ S ];\nList= a , b.c ; = \nText=d, e\nNone=\n"
                        "Quoted = \" C:\\new;\"\"1\"\" \" ; \"\nFilePath=g.bin\n[S.%25]\nNumber= $10\n");
        QVERIFY2(ini.load(path), qPrintable(ini.lastErrorStr()));
        QCOMPARE(ini.stringValue(u"S.Quoted"_s, QString()), u" C:\\new;\"1\" "_s);
        for (ZRMapConfig *config : {&map, static_cast<ZRMapConfig *>(&ini)}) {
            QCOMPARE(config->stringListValue(u"S.List"_s, {}), QStringList({u"a"_s, u"b.c"_s}));
            QCOMPARE(config->stringListValue(u"S.None"_s, {u"default"_s}), QStringList());
            QCOMPARE(config->intValue(u"S.%.Number"_s, -1), 16);
            QCOMPARE(config->longValue(u"S.%.Number"_s, -1), 16);
            QCOMPARE(config->stringValue(u"S.Text"_s, QString()), u"d, e"_s);
            QCOMPARE(config->stringValue(u"S.FilePath"_s, QString()), image);
        }

        // Whatever is written again is read again, at the same time and of the same size as well.
        for (const char *digit : {"1", "2"}) {
            writeFile(path, "[S]\nA="_ba + digit + "K\nB=");
            QVERIFY(ini.load(path) && ini.badNumberText().isEmpty());
            QCOMPARE(ini.intValue(u"S.A"_s, 7), 7);
            const QString name = u"S.A ('%1', line 2)"_s.arg(path);
            QCOMPARE(ini.nameOf(u"S.A"_s), name);
            QVERIFY(ini.badNumberText().startsWith(name + u" is '%1K'"_s.arg(QLatin1String(digit))));
            QCOMPARE(ini.unreadKeys(), QStringList{u"S.B"_s});
        }
    }

    void badSettings_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QString>("error");
        QTest::newRow("open section") << "\n[S"_ba << u", line 2: a section is written"_s;
        QTest::newRow("more on the line") << "[S] a=1"_ba << u", line 1: a section is written"_s;
        QTest::newRow("no name") << "[ ]"_ba << u", line 1: the section has no name"_s;
        QTest::newRow("no section") << "a=1"_ba << u", line 1: the setting stands in no"_s;
        QTest::newRow("no key") << "[S]\n=1"_ba << u", line 2: this is none of"_s;
        QTest::newRow("no value") << "[S]\n\nSize 5"_ba << u", line 3: this is none of"_s;
        QTest::newRow("twice") << "[S]\na=1\n[T]\na=1\n[S]\na=1"_ba << u", line 6: S.a was set in line 2"_s;
        QTest::newRow("quotes") << "[S]\na=\"b\"\"\nc=\""_ba << u", line 2: the double quotes"_s;
        QTest::newRow("not UTF-8") << "[S]\na=\xC3\nb"_ba << u", line 2: the text is not UTF-8"_s;
        QTest::newRow("too large") << QByteArray((1 << 20) + 1, ';') << u" is larger than 1 MiB"_s;
    }

    void badSettings()
    {
        QFETCH(const QByteArray, lines);
        QFETCH(const QString, error);
        const QTemporaryDir dir;
        const QString path = dir.filePath(u"x.ini"_s);
        ZRIniConfig ini;
        ini.setValue(u"S.a"_s, u"1"_s);
        writeFile(path, lines);
        QVERIFY(!ini.load(path) && !ini.contains(u"S.a"_s));
        QVERIFY2(ini.lastErrorStr().contains(path + u'\'' + error), qPrintable(ini.lastErrorStr()));
    }

    void numbers()
    {
        for (const auto &text : {u"512"_s, u"0x200"_s, u"$200"_s, u"0X0200"_s})
            QCOMPARE(ZRNumbers::parse(text), 512);
        QCOMPARE(ZRNumbers::parse(u"-$80000000"_s), std::numeric_limits<int>::min());
        for (const char *text :
             {"", "$", "0x", "+1", "--1", "$-1", "0x0x1", " 1", "1 ", "1,000", "2147483648"})
            QVERIFY2(!ZRNumbers::parse(QString::fromLatin1(text)), text);
    }

    void wiring()
    {
        ZR8BitMachine machine;
        QVERIFY(machine.load(&_config, {u"B"_s, u"P"_s}) && !machine.chip());
        QVERIFY(!machine.load(&_config, {u"A"_s, u"Q"_s}));
        QCOMPARE(machine.lastErrorStr(), u"PROC_Q.Instructions is 'documented' or 'all', not 'some'!"_s);
        QVERIFY(!machine.memory() && !machine.processor() && machine.computer().rams().size() == 2);
        QVERIFY(!machine.setRegister(u"PC"_s, 0) && machine.lastErrorStr() == "No machine is loaded!"_L1);
        QVERIFY(!machine.loadBytes("1", 0));
        QCOMPARE(machine.run(), ZR8BitMachine::RunEnd::Stopped);

        // The caller's word outweighs the key.
        QVERIFY(machine.load(&_config, {u"B"_s, u"Q"_s, ZR8BitMachine::Instructions::All}) && machine.chip());
        QCOMPARE(machine.processor()->mainMemory(), machine.computer().rams().value(u"B"_s));
        const QTemporaryDir dir;
        const QString path = dir.filePath(u"1%1.bin"_s);
        writeFile(path, "12");
        QVERIFY(machine.loadFile(path, 0x1FE));
        QCOMPARE(machine.memory()->value(0x1FD, 9), "\00012"_ba);
        QVERIFY(!machine.loadFile(path, 0x1FF) && !machine.loadBytes("1", -1));
        QVERIFY(!machine.loadFile(path, std::numeric_limits<int>::max()));
        QVERIFY(machine.lastErrorStr().contains(path + "': 2 bytes do not fit at $7FFFFFFF"_L1));
        QVERIFY(machine.setRegister(u"PC"_s, 0xFFFF) && !machine.setRegister(u"AC"_s, -1));
    }

    // Programs that end by themselves.
    void runs_data()
    {
        QTest::addColumn<bool>("isEndless"); // else stopped by an unknown opcode
        QTest::addColumn<int>("count");
        QTest::newRow("EA 02") << false << 1;
        QTest::newRow("EA 4C0100") << true << 2;
        QTest::newRow("6C0300 0000") << true << 1;
        QTest::newRow("00") << false << 1; // the vector is not there
        QTest::newRow("A901 D0FE") << true << 2;
        QTest::newRow("A900 48 A90C 48 A900 48 A90B 48 60 02") << false << 10; // RTS to itself, and on
    }

    void runs()
    {
        ZR8BitMachine machine;
        QVERIFY(machine.load(&_config, {u"B"_s, u"P"_s, ZR8BitMachine::Instructions::Documented}) &&
                machine.loadBytes(QByteArray::fromHex(QTest::currentDataTag()), 0));
        QTEST(machine.run({99}) == ZR8BitMachine::RunEnd::EndlessLoop, "isEndless");
        QTEST(int(machine.instructionCount()), "count");
    }

    void disassembly_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("target");
        QTest::addColumn<bool>("jumps");
        QTest::newRow("7D0803EA") << u"ADC $0308,X"_s << 0x308 << false;
        QTest::newRow("71FF") << u"ADC ($FF),Y"_s << 0xFF << false;
        QTest::newRow("6903") << u"ADC #$03"_s << -1 << false;
        QTest::newRow("6C3412") << u"JMP ($1234)"_s << 0x1234 << false;
        QTest::newRow("200300") << u"JSR $0003"_s << 3 << true;
        QTest::newRow("D003") << u"BNE $0003"_s << 3 << true;
        QTest::newRow("0A") << u"ASL A"_s << -1 << false;
        QTest::newRow("AA") << u"TAX"_s << -1 << false;
        QTest::newRow("7D08") << u".BYTE $7D"_s << -1 << false;
    }

    void disassembly()
    {
        ZR8BitDisassembler disassembler(ZR8BitInstructionSet::MOS6510Documented);
        const QByteArray bytes = QByteArray::fromHex(QTest::currentDataTag());
        const ZR8BitDisassembler::Instruction instruction = disassembler.instruction(bytes, 0xFFFE);
        QTEST(instruction.text, "text");
        QTEST(instruction.target, "target");
        QTEST(instruction.jumps, "jumps");
        disassembler.setNames([](quint16 address) { return address == 3 ? u"loop"_s : QString(); });
        const QString named = disassembler.instruction(bytes, 0xFFFE).text;
        QCOMPARE(named, QString(instruction.text).replace(u"$0003"_s, u"loop"_s));

        ZR8BitRAM memory;
        QVERIFY(memory.setSize(0x10000) && memory.write("\x34\x12", 0));
        memory.setByteValue('\x6D', 0xFFFF);
        QCOMPARE(disassembler.instruction(memory, (std::numeric_limits<int>::max)()).text, u"ADC $1234"_s);
        QVERIFY(memory.setSize(2) && memory.write("\x6D\x34", 0));
        QCOMPARE(disassembler.instruction(memory, 0).bytes.toHex(), "6d3400");
        QVERIFY(!memory.isThereError());
    }

private:
    static void writeFile(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    ZRMapConfig _config{{u"Computer.RAMs"_s, u"A, B"_s},      {u"RAM_A.Size"_s, u"$10"_s},
                        {u"RAM_B.Size"_s, u"0x200"_s},        {u"Computer.Processors"_s, u"P,Q"_s},
                        {u"PROC_P.Type"_s, u"MOS6510"_s},     {u"PROC_Q.Type"_s, u"MOS6510"_s},
                        {u"PROC_Q.Instructions"_s, u"some"_s}};
};

QTEST_GUILESS_MAIN(tst_Machine)
#include "tst_machine.moc"
