// The command line host as its documents and the files of transcripts/ show it.
//
// A block is a run of indented lines that begins with "    $ ". Its commands, which may go on in lines with
// "    > ", are run by bash one by one in a new folder with a copy of examples/. What they print on standard
// output and standard error must be what stands behind them, with the exit code as in "[1]" where it is not
// 0. With ZR_ACCEPT in the environment, what they print is written there instead.

#include <QtCore/QProcess>
#include <QtTest/QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr char Command[] = "    $ ";
constexpr char Continuation[] = "    > ";

const QDir source(QStringLiteral(ZR_SOURCE));

QByteArrayList readLines(const QString &name)
{
    QFile file(source.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QByteArrayList();
}

bool writeLines(const QString &path, const QByteArrayList &lines)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(lines.join('\n')) >= 0;
}

/// Lines as they stand in a block.
QByteArrayList indented(const QByteArray &text)
{
    QByteArrayList lines = text.split('\n');
    lines.removeLast();
    for (QByteArray &line : lines) {
        if (!line.isEmpty())
            line.prepend("    ");
    }
    return lines;
}

/// What a command prints in a folder, and its exit code.
QByteArray runCommand(const QByteArray &command, const QString &folder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    environment.insert(u"PATH"_s,
                       QFileInfo(QStringLiteral(ZR_HOST)).path() + u':' + environment.value(u"PATH"_s));
    environment.insert(u"ZR_SOURCE"_s, source.path());
    QProcess shell;
    shell.setProcessEnvironment(environment);
    shell.setWorkingDirectory(folder);
    shell.setProcessChannelMode(QProcess::MergedChannels);
    shell.setStandardInputFile(QProcess::nullDevice());
    shell.start(u"bash"_s, {u"-o"_s, u"pipefail"_s, u"-c"_s, QString::fromUtf8(command)});
    if (!shell.waitForFinished(60000))
        return "[no end]\n";
    QByteArray output = shell.readAll();
    if (!output.isEmpty() && !output.endsWith('\n'))
        output += "\n\\ No line end\n";
    const int status = shell.exitCode() + (shell.exitStatus() == QProcess::CrashExit ? 128 : 0);
    if (status != 0)
        output += '[' + QByteArray::number(status) + "]\n";
    return output;
}

/// The block as it is when its commands have been run.
QByteArrayList runBlock(const QByteArrayList &block, const QString &folder)
{
    QByteArrayList result;
    for (qsizetype i = 0; i < block.size();) {
        QByteArray command = block[i].mid(qstrlen(Command));
        result += block[i];
        while (++i < block.size() && block[i].startsWith(Continuation)) {
            command += '\n' + block[i].mid(qstrlen(Continuation));
            result += block[i];
        }
        result += indented(runCommand(command, folder));
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
    void blocks_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qsizetype>("first");
        QTest::addColumn<QByteArrayList>("block");
        QStringList names{u"README.md"_s};
        for (const QString &folder : {u"docs"_s, u"tests/transcripts"_s}) {
            for (const QString &file : QDir(source.filePath(folder)).entryList({u"*.md"_s, u"*.txt"_s}))
                names += folder + u'/' + file;
        }
#ifndef Q_OS_LINUX
        names.removeAll(u"tests/transcripts/linux.txt"_s);
#endif
        for (const QString &name : std::as_const(names)) {
            const QByteArrayList lines = readLines(name);
            for (qsizetype first = 0, end; first < lines.size(); first = end) {
                end = first + 1;
                if (!lines[first].startsWith(Command))
                    continue;
                for (qsizetype i = end; lines[i].isEmpty() || lines[i].startsWith("    "); ++i) {
                    if (i + 1 == lines.size())
                        break;
                    if (!lines[i].isEmpty())
                        end = i + 1;
                }
                QTest::addRow("%s:%lld", qPrintable(name), static_cast<long long>(first + 1))
                    << name << first << lines.sliced(first, end - first);
            }
        }
    }

    void blocks()
    {
        QFETCH(const QString, name);
        QFETCH(const qsizetype, first);
        QFETCH(const QByteArrayList, block);
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"examples"_s));
        const QDir examples(source.filePath(u"examples"_s));
        for (const QString &file : examples.entryList(QDir::Files))
            QVERIFY(QFile::copy(examples.filePath(file), folder.filePath("examples/"_L1 + file)));

        const QByteArrayList result = runBlock(block, folder.path());
        if (result == block)
            return;
        if (qEnvironmentVariableIsSet("ZR_ACCEPT")) {
            _accepted[name].prepend({first, block.size(), result});
            return;
        }
        const QTemporaryDir both;
        QVERIFY(writeLines(both.filePath(u"expected"_s), block + QByteArrayList{{}}) &&
                writeLines(both.filePath(u"printed"_s), result + QByteArrayList{{}}));
        QFAIL(runCommand("diff -u expected printed | tail -n +3 || true", both.path()));
    }

    void cleanupTestCase()
    {
        for (const auto &[name, changes] : _accepted.asKeyValueRange()) {
            QByteArrayList lines = readLines(name);
            for (const Change &change : changes) // from the last one on
                lines = lines.first(change.first) + change.block + lines.sliced(change.first + change.count);
            QVERIFY(writeLines(source.filePath(name), lines));
        }
    }

private:
    struct Change
    {
        qsizetype first; ///< index of the line
        qsizetype count;
        QByteArrayList block;
    };
    QMap<QString, QList<Change>> _accepted;
};

QTEST_GUILESS_MAIN(tst_Transcripts)
#include "tst_transcripts.moc"
