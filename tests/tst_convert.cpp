// The sub-commands `text`, `db` and `sound` of the command line host, as processes.

#include "host.h"

using namespace Qt::StringLiterals;

class tst_Convert : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void conversions_data()
    {
        QTest::addColumn<QString>("arguments"); // separated by "|"
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<QByteArray>("errors"); // the start of standard error
        const auto row = [](const char *arguments, const QByteArray &input, const QByteArray &output,
                            const QByteArray &errors = QByteArray(), int exitCode = 0) {
            QTest::addRow("%s %s", arguments, input.left(20).constData())
                << QString::fromLatin1(arguments) << input << exitCode << output << errors;
        };
        const auto bad = [&row](const char *arguments, const QByteArray &input, const QByteArray &errors,
                                int exitCode = 1) { row(arguments, input, QByteArray(), errors, exitCode); };
        const QByteArray lost = " characters have no counterpart and became spaces\n";

        row("text|encode|--lines", "\xEF\xBB\xBFŰr\r\n", "\x88r\r\n");
        row("text|encode|-", "a\nb", "a b", "zr8bit: warning: 1 of 3" + lost);
        row("text|decode|--lines", "\x88r\r\n\x95", "Űr\r\nő");
        row("text|decode", QByteArray("\n\0 a", 4), "   a", "zr8bit: warning: 2 of 4" + lost);
        bad("text|encode", "ab\xFF-",
            "zr8bit: standard input is not UTF-8 text from the byte at offset 2 on!\n");

        row("db|encode", QByteArray(17, 9), "DB 9" + QByteArray(",9").repeated(15) + "\nDB 9\n");
        row("db|encode|--hex|--padded|--per-line|2|--newline|crlf", "\x0A\xDB\x01",
            "DB $0A,$DB\r\nDB $01\r\n");
        row("db|encode|--newline|cr|--per-line|1", "12", "DB 49\rDB 50");
        row("db|decode", "; \xE1\ndb $db, 1 ; \xE1", "\xDB\x01"); // a comment in another encoding
        row("db|decode", " RET\n", "", "zr8bit: warning: The listing in standard input holds no DB values\n");
        bad("db|decode", "DB 1\r\nDB 2\rDB 3\nDB 1,\n x\x1B,2",
            "zr8bit: standard input, line 5: 'x\\x1B,2' holds what is not a number!\n");
        bad("db|encode|--per-line|-1", "1", "--per-line: '-1' is not a number from 0", 2);

        row("sound|encode", "15,1000,20,240,\n", "\x0F\x03\xE8\x14\xF0");
        row("sound|decode", "\x0F\x03\xE8\x14\xF0", "15,1000,020,240\n");
        row("sound|encode|--format|V|--separator|; ", "16; 1\n", "\x0F\x01\xF0",
            "zr8bit: warning: ZR8BitTVCSound::soundToBin(): Invalid volume value: 16 on index: 0!");
        row("sound|decode|--format|pp|--separator|\t", QByteArray("\x01\x01\x01\0", 4), "0257\t0256\t240\n");
        bad("sound|encode", "1,2\n,x",
            "zr8bit: error: ZR8BitTVCSound::soundToBin(): Invalid data: 'x' on index: 2!\n"
            "zr8bit: Couldn't convert standard input!\n");
        bad("sound|decode|--separator|", "", "--separator: '' is not a text without digits", 2);
        bad("text|decode|/nonexistent", "", "zr8bit: Couldn't read '/nonexistent': ");
        bad("text|decode|/", "", "zr8bit: Couldn't read '/': ");
        bad("text|decode|-o|/dev/full", "x", "zr8bit: Couldn't write '/dev/full': ");
    }

    void conversions()
    {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, input);
        QFETCH(QByteArray, errors);
        const HostResult result = runHost(arguments.split(u'|'), input);
        QVERIFY2(errors.isEmpty() ? result.errors.isEmpty() : result.errors.startsWith(errors),
                 result.errors);
        QTEST(result.exitCode, "exitCode");
        QTEST(result.output, "output");
    }

    void files()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"bytes"_s);
        QByteArray bytes;
        for (int byte = 0; byte < 0x100; ++byte)
            bytes += static_cast<char>(byte);

        QCOMPARE(run("db decode -o %1", path, "DB 1,2").exitCode, 0);
        QCOMPARE(readFile(path), "\x01\x02");
        QCOMPARE(run("db decode -o %1", path, "DB 3,x").exitCode, 1);
        QCOMPARE(readFile(path), "\x01\x02");
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 1); // nothing half-written stays behind

        // Bytes pass the standard streams and a file that is input and output at once as they are.
        QCOMPARE(run("db encode --hex -o %1", path, bytes).exitCode, 0);
        QCOMPARE(run("db decode %1", path).output, bytes);
        QCOMPARE(run("db decode %1 -o %1", path).errors, "");
        QCOMPARE(readFile(path), bytes);
    }
};

QTEST_GUILESS_MAIN(tst_Convert)
#include "tst_convert.moc"
