// The sub-commands `run` and `describe` of the command line host, as processes.

#include "host.h"

using namespace Qt::StringLiterals;

class tst_Run : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void example()
    {
        const HostResult result = run("run %1 --set XR=2 --set YR=$3 --start 0x200 --until 534 --trace",
                                      examplePath("example.ini"));
        QCOMPARE(result.errors, "");
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.output, "Machine: Example machine\n"
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
                                "00 02 03 00  ..-...ZC\n");
    }

    // Two RAM blocks and two processors, of which the options choose by name.
    void loadedProgram()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(u"two.ini"_s),
                  "[Computer]\nROMs=\nRAMs=A,B.1\nProcessors=P,Q\nName=Two, of each\n"
                  "[RAM_A]\nSize=$10\n[RAM_B.1]\nSize=4\n"
                  "[PROC_P]\nType=mos6510\n[PROC_Q]\nType=MOS6510\n");
        writeFile(dir.filePath(u"at@2.bin"_s), "\x69\x7F\x69\x01");
        HostResult result =
            run("run %1/two.ini --memory B.1 --processor Q --load %1/at@2.bin@0 --steps 2", dir.path());
        QCOMPARE(result.errors, "");
        QCOMPARE(result.output, "Machine: Two, of each\nThe run ran 2 instructions.\n"
                                "AC XR YR SP  NV-BDIZC\n80 00 00 00  NV-.....\n");
        result = run("run %1/two.ini --memory B.1 --processor Q --load %1/at@2.bin@1", dir.path());
        QCOMPARE(result.exitCode, 1);
        QVERIFY(result.errors.endsWith("of 4 bytes does not fit at $0001 into a memory of 4 bytes!\n"));
        QCOMPARE(run("run %1/two.ini", dir.path()).errors,
                 "zr8bit: The machine has more than one RAM, choose with --memory: A, B.1\n");
    }

    void ends()
    {
        const struct
        {
            const char *arguments; // behind the settings file
            int exitCode;
            const char *text; // in standard output or standard error
        } rows[] = {
            {"--until 0", 0, "The run reached $0000 after 0 instructions.\n"},
            {"--steps 0", 0, "The run ran 0 instructions.\n"},
            {"--start 0x200", 1,
             "zr8bit: The opcode: 0x00 is not in the processor supported command list!\n"},
            {"--log", 1, "supported command list! [zr8bitlib/zr8bitprocmos6510:"},
            {"--trace --start 0x9000", 1,
             "The run met a hardware issue at $9000 after 0 instructions.\nAC XR YR SP"},
            {"--memory X", 1, "The machine has no RAM 'X', it has: MAIN"},
            {"--set ZZ=1", 1, "The processor has no register 'ZZ', it has: AC, PC, PS, SP, XR, YR"},
            {"--set XR=256", 1, "Register 'XR' holds 0 to 255, not 256!"},
            {"--start 65536", 2,
             "--start: '65536' is not a number from 0 to 65535, written as 512, 0x200 or $200"},
            {"--start 5\u00a0", 2, "is not a number"},
            {"--until 0x0x1", 2, "'0x0x1' is not a number"},
            {"--until +1", 2, "'+1' is not a number"},
            {"--steps -1", 2, "'-1' is not a number"},
            {"--load none", 2, "'none' is not of the form FILE@ADDRESS"},
            {"--set =1", 2, "'=1' is not of the form REGISTER=VALUE"},
            {"--nonsense", 2, "--nonsense"},
        };
        for (const auto &row : rows) {
            const HostResult result =
                run(("run %1 " + QByteArray(row.arguments)).constData(), examplePath("example.ini"));
            QVERIFY2(result.exitCode == row.exitCode && (result.output + result.errors).contains(row.text),
                     row.arguments);
        }
    }

    void badSettings()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(u"x.ini"_s),
                  "[Computer]\nRAMs=A\nProcessors=P\n[RAM_A]\nSize=1\nFilePath=none.bin\n");
        const HostResult result = run("run --log %1/x.ini", dir.path());
        QCOMPARE(result.exitCode, 1);
        const QByteArray text = "Error on load 'RAM_A' parameters! Couldn't read content from file: '" +
                                dir.path().toLocal8Bit() + "/none.bin'!";
        QVERIFY2(result.errors.startsWith(text + " [zr8bitlib/zr8bitcomputer:"), result.errors);
        QVERIFY2(result.errors.endsWith("zr8bit: " + text + '\n'), result.errors);
        QVERIFY(run("run %1", dir.path()).errors.startsWith("zr8bit: Couldn't read settings file '"));
    }

    void describe()
    {
        HostResult result = run("describe mos6510");
        QCOMPARE(result.exitCode, 0);
        for (const char *text : {"MOS 6510 Microprocessor with I/O\n---", "\nPS - Processor status\n",
                                 "\n$7D     3      5       ADC       Add Memory to Accumulator with Carry  "
                                 "Address mode: Absolute X; ADC cccc,X\n"})
            QVERIFY2(result.output.contains(text), text);
        QVERIFY(!result.output.contains("<br>"));
        result = run("describe Z80");
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.errors, "zr8bit: Unsupported processor type: 'Z80'!\n");
    }
};

QTEST_GUILESS_MAIN(tst_Run)
#include "tst_run.moc"
