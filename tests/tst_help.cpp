// The help texts of the command line host: their examples work, and the manual page and the completion for
// bash know every command and option.

#include "host.h"

using namespace Qt::StringLiterals;

namespace {

struct Command
{
    QStringList words;
    QString help;
};

/// All captures of a pattern in a text.
QStringList found(const char *pattern, const QString &text)
{
    QStringList captures;
    const QRegularExpression expression(QLatin1String(pattern), QRegularExpression::MultilineOption);
    for (const auto &match : expression.globalMatch(text))
        captures += match.captured(1);
    return captures;
}

/// A command and all below it.
QList<Command> readCommands(const QStringList &words = {})
{
    const QString help = QString::fromUtf8(runHost(words + QStringList{u"--help"_s}).output);
    QList<Command> commands{{words, help}};
    for (const QString &name : found("^  ([a-z]+) ", help.section("\nSubcommands:\n"_L1, 1)))
        commands += readCommands(words + QStringList{name});
    return commands;
}

} // namespace

class tst_Help : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        _commands = readCommands();
        QVERIFY(_commands.size() > 10);
    }

    void examples()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir(u"examples"_s));
        const QDir shipped(QStringLiteral(ZR_EXAMPLES));
        for (const QString &file : shipped.entryList(QDir::Files))
            QVERIFY(QFile::copy(shipped.filePath(file), dir.filePath("examples/"_L1 + file)));
        const QString path = "PATH='"_L1 + QFileInfo(QStringLiteral(ZR_HOST)).absolutePath() + "':$PATH; "_L1;
        for (const Command &command : std::as_const(_commands)) {
            const QStringList lines =
                found("^  (.*zr8bit .*)$", command.help.section("\n\n"_L1, 0, 0)); // the first paragraph
            QCOMPARE(lines.size(), command.help.contains("\nSubcommands:"_L1) ? 0 : 2);
            for (const QString &line : lines) {
                QVERIFY2(line.contains("zr8bit "_L1 + command.words.join(u' ')), qPrintable(line));
                QProcess shell;
                shell.setWorkingDirectory(dir.path());
                const HostResult result = runProcess(shell, u"sh"_s, {u"-c"_s, path + line});
                // A part of a pipe that fails says so on standard error.
                QVERIFY2(result.exitCode == 0 && result.errors.isEmpty(), qPrintable(line));
            }
        }
    }

    void documents()
    {
        for (const char *name : {"zr8bit.1", "completion.bash"}) {
            QString text = QString::fromUtf8(readFile(examplePath("../zr8bit/") + QLatin1String(name)));
            text.remove(u'\\'); // groff's, in front of a minus
            for (const Command &command : std::as_const(_commands)) {
                for (const QString &word : command.words + found("(--[a-z-]+)", command.help)) {
                    const QRegularExpression whole(word + "\\b"_L1);
                    QVERIFY2(text.contains(whole), qPrintable(QLatin1String(name) + ": "_L1 + word));
                }
            }
        }
    }

private:
    QList<Command> _commands;
};

QTEST_GUILESS_MAIN(tst_Help)
#include "tst_help.moc"
