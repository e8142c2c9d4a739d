// What assemblers write: labels and program files.

#include <zr8bitkit/zr8bitlabels.h>
#include <zr8bitkit/zr8bitprogramfile.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using namespace ZR;

class tst_Programs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labels_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("label"); // empty for a line that is skipped
        QTest::newRow("VICE") << u"al C:0229 .done"_s << u"done ($0229)"_s;
        QTest::newRow("ld65") << u"al 000229 .@loop"_s << u"@loop ($0229)"_s;
        QTest::newRow("equals") << u"\tdone\t= $229\t; ?"_s << u"done ($0229)"_s;
        QTest::newRow("decimal") << u"al=553"_s << u"al ($0229)"_s;
        QTest::newRow("pasmo") << u"done\t\tEQU 00229H\r"_s << u"done ($0229)"_s;
        QTest::newRow("z80asm") << u"done:\tequ $0229"_s << u"done ($0229)"_s;
        QTest::newRow("xa") << u"a.b, 0x0229, 0, 0x0000"_s << u"a.b ($0229)"_s;
        for (const char *line : {"al C:10000 .done", "al C:02x9 .done", "1done = 5", "$d = 5", "done = ",
                                 "done equs 5", "done = -1", "done = 12K", "al C:0229", "done = 5 6"})
            QTest::newRow(line) << QString::fromLatin1(line) << QString();
    }

    void labels()
    {
        QFETCH(const QString, line);
        QFETCH(const QString, label);
        ZR8BitLabels labels;
        labels.add(u"done"_s, 1);
        labels.add(u"again"_s, 1);
        QCOMPARE(labels.nameOf(1), u"done"_s);
        labels.read("; comment\n\n"_ba + line.toUtf8());
        QCOMPARE(labels.skippedLineCount(), label.isEmpty() ? 1 : 0);
        QCOMPARE(labels.textOf(0x229), label.isEmpty() ? u"$0229"_s : label);
        const QString name = label.section(u' ', 0, 0);
        QCOMPARE(labels.addressOf(name), label.isEmpty() ? -1 : name == u"done" ? 1 : 0x229);
    }

    void programs_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("result"); // segments, or the error
        const QByteArray end = ":00000001FF\n";
        QTest::newRow("raw") << ":\x01"_ba << u"a.bin"_s << u"Raw 0000:3a01"_s;
        QTest::newRow("64 KiB") << QByteArray(0x10001, 'x') << u"a"_s << u"65537 bytes from $0000 on"_s;
        QTest::newRow("prg") << "\x01\x08\xA9\x05"_ba << u"A.PRG"_s << u"Prg 0801:a905"_s;
        QTest::newRow("prg to the end") << "\xFE\xFF\x01\x02"_ba << u"a.prg"_s << u"Prg fffe:0102"_s;
        QTest::newRow("prg beyond") << "\xFE\xFF\x01\x02\x03"_ba << u"a.prg"_s << u"3 bytes from $FFFE on"_s;
        QTest::newRow("prg of a byte") << "\x01"_ba << u"a.prg"_s << u"A .prg file begins with two"_s;
        QTest::newRow("prg of an address") << "\x01\x08"_ba << u"a.prg"_s << u"Prg 0801:"_s;
        QTest::newRow("hex") << ":020800000102F3\r\n\n:01080200ffF6\n"_ba + end << u"a.prg"_s
                             << u"Hex 0800:0102ff"_s;
        QTest::newRow("bases") << ":020000021000EC\n:020000040000FA\n:01FFFF0007FA\n:020000020010EC\n"
                                  ":0100000008f7\n:0400000300000000F9\n"_ba +
                                      end
                               << u"a"_s << u"Hex ffff:07 0100:08"_s;
        QTest::newRow("beyond") << ":020000021000EC\n:0100000008F7\n"_ba + end << u"a"_s
                                << u"Line 2: 1 bytes from $10000 on"_s;
        QTest::newRow("checksum") << "\n:0100000008F8\n"_ba + end << u"a"_s
                                  << u"Line 2: The checksum is F8, but that of the record is F7"_s;
        QTest::newRow("digit in front") << ":G1000000AAF7\n"_ba << u"a.hex"_s << u"Line 1: Letter 2 of"_s;
        QTest::newRow("digit") << ":01000000G8F7\n"_ba << u"a.hex"_s
                               << u"Line 1: Letter 10 of the record is no"_s;
        QTest::newRow("colon") << "0100000008F7\n"_ba << u"a.ihx"_s << u"Line 1: A record begins"_s;
        QTest::newRow("cut") << ":01000000\n"_ba << u"a"_s
                             << u"Line 1: A record with 1 bytes of data has 12"_s;
        QTest::newRow("type") << ":00000006FA\n"_ba << u"a"_s << u"Line 1: A record is of type 0 to 5"_s;
        QTest::newRow("base") << ":0100000200FD\n"_ba << u"a"_s << u"Line 1: A record of type 2 has 2"_s;
        QTest::newRow("no end") << ":"_ba + "0100000008F7" << u"a"_s << u"The record of the end, "_s;
        QTest::newRow("two ends") << end + end << u"a"_s << u"Line 2: The record of the end must"_s;
    }

    void programs()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const QString, name);
        QFETCH(const QString, result);
        QString text;
        const auto program = ZR8BitProgramFile::read(content, name, &text);
        QCOMPARE(program.has_value(), text.isEmpty());
        if (program) {
            text = QStringList{u"Raw"_s, u"Prg"_s, u"Hex"_s}.at(int(program->format));
            for (const auto &[address, bytes] : program->segments)
                text += u" %1:%2"_s.arg(address, 4, 16, '0'_L1).arg(QLatin1String(bytes.toHex()));
        }
        QVERIFY2(text.startsWith(result), qPrintable(text));
        QVERIFY(!program || text == result);
    }
};

QTEST_APPLESS_MAIN(tst_Programs)
#include "tst_programs.moc"
