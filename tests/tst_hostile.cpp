// Each sub-command of the command line host against inputs and outputs that are not what they should be. Some
// are made by Linux's own means, which work for the superuser too.

#include "host.h"

#include <QtCore/QRandomGenerator>

#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// What the host's process does to its standard streams before the host starts.

void openFull(int stream)
{
    dup2(open("/dev/full", O_WRONLY), stream);
}

void openWithoutReader(int stream)
{
    signal(SIGPIPE, SIG_DFL); // QProcess ignores it
    int ends[2];
    if (pipe(ends) != 0)
        _exit(99);
    dup2(ends[1], stream);
    close(ends[0]);
    close(ends[1]);
}

void closeStream(int stream)
{
    close(stream);
}

void limitFiles(int)
{
    const rlimit none{0, 0};
    setrlimit(RLIMIT_FSIZE, &none);
}

struct Command
{
    const char *words;
    const char *good;  ///< an example that it takes
    bool takesNothing; ///< an empty file will do
    bool takesBytes;   ///< any other will do too
    const char *output = " -o %2";
} const commands[] = {
    {"run %1 --trace --set XR=2 --set YR=3 --start 0x200 --until 0x216", "example.ini", false, false, ""},
    {"run %3example.ini --steps 0 --load %1@0", "title.rom", true, false, ""},
    {"text encode %1", "greeting.txt", true, false},
    {"text decode %1", "greeting.txt", true, true},
    {"db encode %1", "title.rom", true, true},
    {"db decode %1", "bytes.asm", true, false},
    {"sound encode %1", "scale.txt", true, false},
    {"sound decode %1", "title.rom", true, true},
    {"image encode %1", "sunset.png", false, false},
    {"image decode --width 4 %1", "title.rom", false, true},
    {"image preview %1", "sunset.png", false, false},
    {"sprite encode %1", "coin-0.png", false, false},
    {"sprite decode --width 4 --height 4 %1", "title.rom", false, true, " -o %2.dir"},
    {"sprite preview --width 4 --height 4 %1", "title.rom", false, true},
};

} // namespace

class tst_Hostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Commands that turn noise down get enough of it to find out whether they take their time.
#ifdef NDEBUG
        constexpr qsizetype Large = 64 << 20;
#else
        constexpr qsizetype Large = 1 << 20;
#endif
        QList<quint32> block(0x1000);
        QRandomGenerator(1).fillRange(block.data(), block.size());
        _noise = "DB  " + QByteArray(reinterpret_cast<const char *>(block.constData()), block.size() * 4);
        writeFile(path("noise"), _noise);
        writeFile(path("large"), _noise.repeated(Large / _noise.size()));
        writeFile(path("empty"), {});
        QVERIFY(QDir(_dir.path()).mkdir(u"folder"_s) && QDir(_dir.path()).mkdir(u"out"_s));
    }

    void inputs()
    {
        for (const Command &command : commands) {
            const char *noise = command.takesBytes ? "noise" : "large";
            const struct
            {
                QString input;
                bool isFine;
            } rows[] = {
                {path("none"), false},
                {path("folder"), false},
                {u"/proc/self/mem"_s, false}, // opens, but cannot be read
                {path("empty"), command.takesNothing},
                {path(noise), command.takesBytes},
            };
            for (const auto &row : rows)
                check(command, row.input, row.isFine);
        }
    }

    void outputs()
    {
        const struct
        {
            const char *name;
            void (*prepare)(int);
            int stream;
            bool isToFile; ///< else to standard output
            bool isFine;
        } conditions[] = {
            {"full output", openFull, STDOUT_FILENO, false, false},
            {"closed output", closeStream, STDOUT_FILENO, false, false},
            {"full disk", limitFiles, 0, true, false},
            {"errors without a reader", openWithoutReader, STDERR_FILENO, true, true},
        };
        for (const Command &command : commands) {
            for (const auto &condition : conditions) {
                const bool writesFile = *command.output;
                const bool writesFolder = QByteArray(command.output).endsWith("dir");
                if (condition.isToFile ? !writesFile : writesFolder)
                    continue;
                check(command, examplePath(command.good), condition.isFine, condition.isToFile,
                      [condition] { condition.prepare(condition.stream); });
            }
        }
    }

    // Descriptors, devices and names where a file should be.
    void streams()
    {
        const auto result = [this](const char *words, void (*prepare)(int), int stream) {
            return start(QString::fromLatin1(words), examplePath("all-modes.bin"),
                         [prepare, stream] { prepare(stream); });
        };
        QCOMPARE(result("text encode - -o %2", closeStream, STDIN_FILENO).exitCode, 1);
        QVERIFY(result("text decode %1 -o /dev/full", limitFiles, 0).errors.contains("No space left"));
        // The output does not get the place of standard error, and with it a warning.
        QCOMPARE(result("text decode %1 -o %2", closeStream, STDERR_FILENO).exitCode, 0);
        QCOMPARE(readFile(path("out/kept")), result("text decode %1", closeStream, STDIN_FILENO).output);
        for (const char *words : {"describe", "--help", "text decode --help", "--version"})
            QCOMPARE(result(words, openFull, STDOUT_FILENO).exitCode, 1);
        for (const char *words : {"describe", "--help", "text decode %1", "run %3example.ini"})
            QCOMPARE(result(words, openWithoutReader, STDOUT_FILENO).exitCode, -1); // by a signal
    }

    // Noise for a sound has millions of values out of range.
    void warnings()
    {
        const HostResult result = runHost({u"sound"_s, u"decode"_s, u"--format"_s, u"v"_s}, _noise);
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.errors.count('\n'), 21);
        QVERIFY(result.errors.endsWith(" more warnings are not shown\n"));
    }

private:
    QString path(const char *name)
    {
        return _dir.filePath(QString::fromLatin1(name));
    }

    /// All files of the folder for outputs.
    QMap<QString, QByteArray> outputFiles()
    {
        QMap<QString, QByteArray> files;
        QDirIterator iterator(path("out"), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (iterator.hasNext()) {
            const QString file = iterator.next();
            files.insert(file, readFile(file));
        }
        return files;
    }

    HostResult start(QString words, const QString &input, const std::function<void()> &prepare)
    {
        QStringList arguments = words.replace(u"%3"_s, examplePath("")).split(u' ');
        arguments.replaceInStrings(u"%1"_s, input).replaceInStrings(u"%2"_s, path("out/kept"));
        return runHost(arguments, {}, prepare);
    }

    /// A command either ends well, or with a line on standard error and all files as they were.
    void check(const Command &command, const QString &input, bool isFine, bool isToFile = true,
               const std::function<void()> &prepare = {})
    {
        QDir(path("out")).removeRecursively();
        QVERIFY(QDir(_dir.path()).mkpath(u"out/kept.dir"_s));
        writeFile(path("out/kept"), "old");
        writeFile(path("out/kept.dir/frame-000.png"), "old");
        const auto before = outputFiles();

        const QString words =
            QString::fromLatin1(command.words) + QString::fromLatin1(isToFile ? command.output : "");
        const HostResult result = start(words, input, prepare);
        const QByteArray what = words.toUtf8() + " < " + input.toUtf8() + ": " + result.errors;
        const auto after = outputFiles();
        QVERIFY2(result.exitCode == (isFine ? 0 : 1), what);
        QVERIFY2(isFine || (result.errors.contains("zr8bit: ") && result.errors.endsWith('\n')), what);
        QVERIFY2((after != before) == (isFine && isToFile && *command.output), what);
        QVERIFY2(after.size() == before.size() || after.contains(path("out/kept.dir/frame-001.png")), what);
    }

    QTemporaryDir _dir;
    QByteArray _noise;
};

QTEST_GUILESS_MAIN(tst_Hostile)
#include "tst_hostile.moc"
