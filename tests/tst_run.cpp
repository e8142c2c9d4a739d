// The sub-commands `run` and `describe` of the command line host, as processes.

#include "host.h"

using namespace Qt::StringLiterals;

class tst_Run : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void example()
    {
        QStringList arguments{u"run"_s, examplePath("example.ini")};
        arguments += u"--set XR=2 --set YR=$3 --start 0x200 --until 534 --trace"_s.split(u' ');
        const HostResult result = runHost(arguments);
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.output, QByteArray("Machine: Example machine\n"
                                           "PC    BYTES     INST  AC XR YR SP  NV-BDIZC  CYCLES\n"
                                           "0200  69 01     ADC   01 02 03 00  ..-.....       2\n"
                                           "0202  65 10     ADC   03 02 03 00  ..-.....       3\n"
                                           "0204  75 10     ADC   07 02 03 00  ..-.....       4\n"
                                           "0206  6D 08 03  ADC   0F 02 03 00  ..-.....       4\n"
                                           "0209  7D 08 03  ADC   1F 02 03 00  ..-.....       5\n"
                                           "020C  79 08 03  ADC   3F 02 03 00  ..-.....       5\n"
                                           "020F  61 20     ADC   7F 02 03 00  ..-.....       6\n"
                                           "0211  71 30     ADC   FF 02 03 00  N.-.....       6\n"
                                           "0213  69 01     ADC   00 02 03 00  ..-...ZC       2\n"
                                           "0215  AA        TAX   00 02 03 00  ..-...ZC       2\n"
                                           "The run reached $0216 after 10 instructions.\n"
                                           "AC XR YR SP  NV-BDIZC\n"
                                           "00 02 03 00  ..-...ZC\n"));
    }

    void loadedProgram()
    {
        // Two RAM blocks and two processors are chosen from by name; the end of the memory cuts an
        // instruction.
        const QString machine =
            writeFile("two.ini", "[Computer]\nROMs=\nRAMs=A,B.1\nProcessors=P,Q\nName=Two, of each\n"
                                 "[RAM_A]\nSize=$10\n[RAM_B.1]\nSize=4\n"
                                 "[PROC_P]\nType=mos6510\n[PROC_Q]\nType=MOS6510\n");
        const QString program = writeFile("at@2.bin", "\x69\x7F\x69\x01");
        const QStringList chosen{u"run"_s, machine, u"--memory"_s, u"B.1"_s, u"--processor"_s, u"Q"_s};
        HostResult result =
            runHost(chosen + QStringList{u"--load"_s, program + u"@0"_s, u"--steps"_s, u"2"_s});
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.output, QByteArray("Machine: Two, of each\nThe run ran 2 instructions.\n"
                                           "AC XR YR SP  NV-BDIZC\n80 00 00 00  NV-.....\n"));

        result = runHost(chosen + QStringList{u"--load"_s, program + u"@1"_s});
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.errors.endsWith("of 4 bytes does not fit at $0001 into a memory of 4 bytes!\n"),
                 result.errors);
        result = runHost({u"run"_s, machine});
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.errors,
                 QByteArray("zr8bit: The machine has more than one RAM, choose with --memory: A, B.1\n"));
    }

    void ends_data()
    {
        QTest::addColumn<QString>("arguments"); // behind the settings file
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("text"); // in standard output or standard error
        const auto row = [](const char *arguments, int exitCode, const char *text) {
            QTest::newRow(arguments) << QString::fromLatin1(arguments) << exitCode << QByteArray(text);
        };
        row("--until 0", 0, "The run reached $0000 after 0 instructions.\n");
        row("--steps 0", 0, "The run ran 0 instructions.\n");
        row("--start 0x200", 1, "zr8bit: The opcode: 0x00 is not in the processor supported command list!\n");
        row("--log", 1, "supported command list! [zr8bitlib/zr8bitprocmos6510:");
        row("--trace --start 0x9000", 1,
            "The run met a hardware issue at $9000 after 0 instructions.\nAC XR YR SP");
        row("--start 5\xc2\xa0", 2, "is not a number");
        row("--memory X", 1, "The machine has no RAM 'X', it has: MAIN");
        row("--set ZZ=1", 1, "The processor has no register 'ZZ', it has: AC, PC, PS, SP, XR, YR");
        row("--set XR=256", 1, "Register 'XR' holds 0 to 255, not 256!");
        row("--load none@0", 1, "Couldn't read file 'none'!");
        row("--start 65536", 2,
            "--start: '65536' is not a number from 0 to 65535, written as 512, 0x200 or $200");
        row("--until 0x0x1", 2, "'0x0x1' is not a number");
        row("--steps -1", 2, "'-1' is not a number");
        row("--load none", 2, "'none' is not of the form FILE@ADDRESS");
        row("--set =1", 2, "'=1' is not of the form REGISTER=VALUE");
        row("--nonsense", 2, "--nonsense");
    }

    void ends()
    {
        QFETCH(QString, arguments);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, text);
        const HostResult result =
            runHost(QStringList{u"run"_s, examplePath("example.ini")} + arguments.split(u' '));
        QCOMPARE(result.exitCode, exitCode);
        QVERIFY2((result.output + result.errors).contains(text), result.output + result.errors);
    }

    void badSettings()
    {
        const QString noFile =
            writeFile("nofile.ini", "[Computer]\nRAMs=A\nProcessors=P\n[RAM_A]\nSize=1\nFilePath=none.bin\n");
        HostResult result = runHost({u"run"_s, noFile, u"--log"_s});
        QCOMPARE(result.exitCode, 1);
        const QByteArray text = "Error on load 'RAM_A' parameters! Couldn't read content from file: '" +
                                _dir.filePath(u"none.bin"_s).toLocal8Bit() + "'!";
        QVERIFY2(result.errors.startsWith(text + " [zr8bitlib/zr8bitcomputer:"), result.errors);
        QVERIFY2(result.errors.endsWith("zr8bit: " + text + '\n'), result.errors);

        for (const QString &path : {_dir.path(), _dir.filePath(u"none.ini"_s)}) {
            result = runHost({u"run"_s, path});
            QCOMPARE(result.exitCode, 1);
            QVERIFY2(result.errors.startsWith("zr8bit: Couldn't read settings file '"), result.errors);
        }
    }

    void describe()
    {
        HostResult result = runHost({u"describe"_s, u"mos6510"_s});
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.output.startsWith("MOS 6510 Microprocessor with I/O\n"));
        QVERIFY(result.output.contains("\nPS - Processor status\n"));
        QVERIFY(
            result.output.contains("\n$7D     3      5       ADC       Add Memory to Accumulator with Carry  "
                                   "Address mode: Absolute X; ADC cccc,X\n"));
        QVERIFY(!result.output.contains("<br>"));
        result = runHost({u"describe"_s, u"Z80"_s});
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.errors, QByteArray("zr8bit: Unsupported processor type: 'Z80'!\n"));
    }

private:
    QString writeFile(const char *name, const QByteArray &content)
    {
        const QString path = _dir.filePath(QString::fromLatin1(name));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("no file");
        return path;
    }

    QTemporaryDir _dir;
};

QTEST_GUILESS_MAIN(tst_Run)
#include "tst_run.moc"
