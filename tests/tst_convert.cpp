// The sub-commands `text`, `db` and `sound` of the command line host, as processes.

#include "host.h"

using namespace Qt::StringLiterals;

class tst_Convert : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void conversions()
    {
        const struct
        {
            const char *arguments; // separated by "|"
            QByteArray input;
            int exitCode;
            QByteArray output;
            const char *errors; // the start of standard error
        } rows[] = {
            {"text|encode|--lines", "\xEF\xBB\xBFŰr\r\n", 0, "\x88r\r\n", ""},
            {"text|encode|-", "a\nb c", 0, "a b c",
             "zr8bit: warning: 1 of 5 characters have no counterpart and became spaces\n"},
            {"text|decode|--lines", "\x88r\r\n\x95", 0, "Űr\r\nő", ""},
            {"text|encode", "ab\xEF-", 1, "",
             "zr8bit: standard input, line 1: not UTF-8 text, the byte at offset 2 is $EF!"},
            {"db|encode", QByteArray(17, 9), 0, "DB 9" + QByteArray(",9").repeated(15) + "\nDB 9\n", ""},
            {"db|encode|--hex|--padded|--per-line|2|--newline|crlf", "\x0A\xDB\x01", 0,
             "DB $0A,$DB\r\nDB $01\r\n", ""},
            {"db|encode|--newline|cr|--per-line|1", "12", 0, "DB 49\rDB 50", ""},
            {"db|decode", "; \xE1\ndb $db, 1 ; \xE1", 0, "\xDB\x01", ""}, // a comment in another encoding
            {"db|decode", " RET\n", 0, "",
             "zr8bit: warning: The listing in standard input holds no DB values\n"},
            {"db|decode", "DB 1\r\nDB 2\rDB 3\nDB 1,\n x\x1B,2\nDB 6", 1, "",
             "zr8bit: standard input, line 5: not a number in 'x\\x1B,2', values are written as 10 or $A!\n"},
            {"db|encode|--per-line|-1", "1", 2, "", "zr8bit: --per-line: '-1' is not a number from 0"},
            {"sound|encode", "15,1000,20,240,\r\n", 0, "\x0F\x03\xE8\x14\xF0", ""},
            {"sound|decode", "\x0F\x03\xE8\x14\xF0", 0, "15,1000,020,240\n", ""},
            {"sound|encode|--format|V|--separator|; ", "16; 1; \n", 0, "\x0F\x01\xF0",
             "zr8bit: warning: ZR8BitTVCSound::soundToBin(): Invalid volume value: 16 on index: 0!"},
            {"sound|encode", "1,2\n,x", 1, "",
             "zr8bit: error: ZR8BitTVCSound::soundToBin(): Invalid data: 'x' on index: 2!\n"
             "zr8bit: Couldn't convert standard input!\n"},
            {"sound|decode|--format|vx", "", 2, "", "zr8bit: --format: 'vx' is not one or more of"},
            {"text|endcode", "", 2, "", "zr8bit: unknown command 'endcode', known are: encode, decode\n"},
            {"sound|decode|--separator|", "", 2, "", "zr8bit: --separator: '' is not a text without digits"},
            {"text|decode|-o|", "x", 1, "", "zr8bit: Couldn't write '': "},
        };
        for (const auto &row : rows) {
            const HostResult result = runHost(QString::fromLatin1(row.arguments).split(u'|'), row.input);
            QVERIFY2(result.errors.startsWith(row.errors) && (*row.errors || result.errors.isEmpty()),
                     result.errors);
            QVERIFY2(result.exitCode == row.exitCode && result.output == row.output, row.arguments);
        }
    }

    void badLines()
    {
        for (int bad = 1; bad <= 7; ++bad) {
            QByteArrayList lines(7, "DB 1");
            lines[bad - 1] = "DB x";
            const QByteArray errors = run("db decode", {}, lines.join('\n')).errors;
            QVERIFY2(errors.contains("line " + QByteArray::number(bad) + ": not a number in 'DB x'"), errors);
        }
    }

    // Bytes pass a file that is input and output at once as they are.
    void sameFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"bytes"_s);
        QCOMPARE(run("db encode --hex -o %1", path, "\n\r\x1A\x80").exitCode, 0);
        QCOMPARE(run("db decode %1 -o %1", path).errors, "");
        QCOMPARE(readFile(path), "\n\r\x1A\x80");
    }
};

QTEST_GUILESS_MAIN(tst_Convert)
#include "tst_convert.moc"
