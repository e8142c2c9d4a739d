// The command line host as the documents and the files of transcripts/ show it.
//
// A block is a run of indented lines that begins with "    $ ". Its commands, which may go on in lines with
// "    > ", are run one by one in a new folder with a copy of examples/. What they print on standard output
// and standard error must be what stands after them, with the exit code as in "[1]" where it is not 0. With
// ZR_ACCEPT in the environment, what they print is written there instead.

#include <QtCore/QProcess>
#include <QtTest/QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView Command("    $ ");
constexpr QByteArrayView Continuation("    > ");
constexpr QByteArrayView Indent("    ");

const QDir source(QStringLiteral(ZR_SOURCE));

QByteArrayList readLines(const QString &name)
{
    QFile file(source.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QByteArrayList();
}

void writeLines(const QString &path, const QByteArrayList &lines)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(lines.join('\n')) >= 0);
}

/// What a command prints in a folder, with its exit code.
QByteArray runCommand(const QByteArray &command, const QString &folder)
{
    QProcess shell;
    shell.setWorkingDirectory(folder);
    shell.setProcessChannelMode(QProcess::MergedChannels);
    shell.setStandardInputFile(QProcess::nullDevice());
    shell.start(u"bash"_s, {u"-o"_s, u"pipefail"_s, u"-c"_s, QString::fromUtf8(command)});
    if (!shell.waitForFinished(240000))
        return "\\ No end\n";
    QByteArray output = shell.readAll();
    if (!output.isEmpty() && !output.endsWith('\n'))
        output += "\n\\ No line end\n";
    const int code = shell.exitCode() + (shell.exitStatus() == QProcess::CrashExit ? 128 : 0);
    return code == 0 ? output : output + '[' + QByteArray::number(code) + "]\n";
}

/// The block as it is when its commands have been run.
QByteArrayList runBlock(const QByteArrayList &block, const QString &folder)
{
    QByteArrayList result;
    for (qsizetype i = 0; i < block.size();) {
        QByteArray command;
        do {
            command += block[i].sliced(Command.size()) + '\n';
            result += block[i];
        } while (++i < block.size() && block[i].startsWith(Continuation));
        QByteArrayList printed = runCommand(command, folder).split('\n');
        printed.removeLast();
        for (const QByteArray &line : std::as_const(printed))
            result += line.isEmpty() ? line : Indent.toByteArray() + line;
        while (i < block.size() && !block[i].startsWith(Command))
            ++i;
    }
    while (result.last().isEmpty())
        result.removeLast();
    return result;
}

} // namespace

class tst_Transcripts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("LC_ALL", "C.UTF-8");
        qputenv("PATH", QFileInfo(QStringLiteral(ZR_HOST)).path().toLocal8Bit() + ':' + qgetenv("PATH"));
        qputenv("ZR_SOURCE", source.path().toLocal8Bit());
    }

    void blocks_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qsizetype>("first");
        QTest::addColumn<QByteArrayList>("block");
        QStringList names;
        for (const QString &folder : {u""_s, u"docs/"_s, u"tests/transcripts/"_s}) {
            for (const QString &file : QDir(source.filePath(folder)).entryList({u"*.md"_s, u"*.txt"_s}))
                names += folder + file;
        }
#ifndef Q_OS_LINUX
        names.removeAll(u"tests/transcripts/linux.txt"_s);
#endif
        for (const QString &name : std::as_const(names)) {
            const QByteArrayList lines = readLines(name);
            for (qsizetype first = 0; first < lines.size(); ++first) {
                qsizetype end = first;
                for (qsizetype i = first; i < lines.size(); ++i) {
                    if (lines[i].startsWith(i == first ? Command : Indent))
                        end = i + 1;
                    else if (i == first || !lines[i].isEmpty())
                        break;
                }
                if (end == first)
                    continue;
                QTest::addRow("%s:%d", qPrintable(name), static_cast<int>(first) + 1)
                    << name << first << lines.sliced(first, end - first);
                first = end;
            }
        }
    }

    void blocks()
    {
        QFETCH(const QString, name);
        QFETCH(const qsizetype, first);
        QFETCH(const QByteArrayList, block);
        const QTemporaryDir folder;
        for (const QString &name : {u"examples"_s, u"examples/tvc-program"_s}) {
            QVERIFY(QDir(folder.path()).mkdir(name));
            const QDir examples(source.filePath(name));
            for (const QString &file : examples.entryList(QDir::Files))
                QVERIFY(QFile::copy(examples.filePath(file), folder.filePath(name + u'/' + file)));
        }

        const QByteArrayList result = runBlock(block, folder.path());
        if (result == block)
            return;
        if (qEnvironmentVariableIsSet("ZR_ACCEPT")) {
            const QByteArrayList lines = readLines(name);
            qsizetype &growth = _growth[name];
            writeLines(source.filePath(name),
                       lines.first(first + growth) + result + lines.sliced(first + growth + block.size()));
            growth += result.size() - block.size();
        } else {
            writeLines(folder.filePath(u"expected"_s), block + QByteArrayList{{}});
            writeLines(folder.filePath(u"printed"_s), result + QByteArrayList{{}});
            QFAIL(runCommand("diff -u expected printed | tail -n +3 || true", folder.path()));
        }
    }

private:
    QMap<QString, qsizetype> _growth; ///< lines that each file has got before its next block
};

QTEST_GUILESS_MAIN(tst_Transcripts)
#include "tst_transcripts.moc"
