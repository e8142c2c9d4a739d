// The help texts of the command line host: their examples work, and the manual page and the completion for
// bash say the same.

#include "host.h"

using namespace Qt::StringLiterals;

namespace {

struct Command
{
    QStringList words;
    QString help;
    bool isGroup;

    QStringList options() const { return optionsIn(help.sliced(help.indexOf("\nOptions:\n"_L1))); }

    /// The long options of a text in alphabetical order.
    static QStringList optionsIn(const QString &text)
    {
        static const QRegularExpression option(u"(?<![a-z])--[a-z-]+"_s);
        QStringList found;
        for (const auto &match : option.globalMatch(text))
            found += match.captured();
        found.sort();
        found.removeDuplicates();
        return found;
    }
};

/// A command and all below it.
QList<Command> readCommands(const QStringList &words = {})
{
    const QString help = QString::fromUtf8(runHost(words + QStringList{u"--help"_s}).output);
    const qsizetype list = help.indexOf("\nSubcommands:\n"_L1);
    QList<Command> commands{{words, help, list >= 0}};
    static const QRegularExpression name(u"^  ([a-z]+) "_s, QRegularExpression::MultilineOption);
    if (list >= 0) {
        for (const auto &match : name.globalMatch(help, list))
            commands += readCommands(words + QStringList{match.captured(1)});
    }
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
        QVERIFY(QDir(_dir.path()).mkdir(u"examples"_s));
        const QDir examples(QStringLiteral(ZR_EXAMPLES));
        for (const QString &file : examples.entryList(QDir::Files))
            QVERIFY(QFile::copy(examples.filePath(file), _dir.filePath("examples/"_L1 + file)));
    }

    void examples()
    {
        const QString path = "PATH='"_L1 + QFileInfo(QStringLiteral(ZR_HOST)).absolutePath() + "':$PATH; "_L1;
        for (const Command &command : std::as_const(_commands)) {
            if (command.isGroup)
                continue;
            const QStringList lines = command.help.section("\n\n"_L1, 0, 0).split(u'\n');
            QCOMPARE(lines.size(), 3);
            QCOMPARE(lines.first(), "Examples:"_L1);
            for (const QString &line : lines.sliced(1)) {
                QVERIFY2(line.contains("zr8bit "_L1 + command.words.join(u' ')), qPrintable(line));
                const HostResult result = inShell(u"sh"_s, {u"-c"_s, path + line});
                // A part of a pipe that fails says so on standard error.
                QVERIFY2(result.exitCode == 0 && result.errors.isEmpty(), qPrintable(line));
            }
        }
    }

    void manual()
    {
        const QString text =
            QString::fromUtf8(readFile(examplePath("../zr8bit/zr8bit.1"))).replace("\\-"_L1, "-"_L1);
        const QStringList shared = Command::optionsIn(text.section("\n.SH "_L1, 4, 4));
        for (const Command &command : std::as_const(_commands)) {
            const QString name = command.words.join(u' ');
            const qsizetype start = text.indexOf("\n.SS "_L1 + name + u' ');
            QVERIFY2(command.isGroup || start > 0, qPrintable(name));
            const QStringList own = command.isGroup
                                        ? QStringList()
                                        : Command::optionsIn(text.sliced(start + 1).section("\n.S"_L1, 0, 0));
            const QStringList options = command.options();
            for (const QString &option : options)
                QVERIFY2(own.contains(option) || shared.contains(option), qPrintable(name + option));
            for (const QString &option : own)
                QVERIFY2(options.contains(option), qPrintable(name + option));
        }
        if (!QStandardPaths::findExecutable(u"groff"_s).isEmpty())
            QCOMPARE(inShell(u"groff"_s,
                             {u"-ww"_s, u"-man"_s, u"-Tutf8"_s, u"-z"_s, examplePath("../zr8bit/zr8bit.1")})
                         .errors,
                     "");
    }

    void completion()
    {
        if (QStandardPaths::findExecutable(u"bash"_s).isEmpty())
            QSKIP("There is no bash.");
        for (const Command &command : std::as_const(_commands)) {
            QCOMPARE(completed(command.words + QStringList{u"--"_s}), command.options());
            for (qsizetype i = 0; i < command.words.size(); ++i)
                QVERIFY(
                    completed(command.words.first(i) + QStringList{QString()}).contains(command.words.at(i)));
        }
        const struct
        {
            const char *words;
            QStringList completed;
        } rows[] = {
            {"db decode exam", {u"examples"_s}},
            {"sprite encode examples/coin-0.png examples/b", {u"examples/bytes.asm"_s}},
            {"text encode -o examples/gr", {u"examples/greeting.txt"_s}},
            {"sprite decode -o exam", {u"examples"_s}},
            {"sprite decode -o examples/", {}},
            {"db encode --newline c", {u"cr"_s, u"crlf"_s}},
            {"image decode --width ", {}},
            {"describe M", {u"MOS6510"_s}},
        };
        for (const auto &row : rows)
            QCOMPARE(completed(QString::fromLatin1(row.words).split(u' ')), row.completed);
    }

private:
    HostResult inShell(const QString &shell, const QStringList &arguments)
    {
        QProcess process;
        process.setWorkingDirectory(_dir.path());
        return runProcess(process, shell, arguments);
    }

    /// What bash offers for the last of the words behind zr8bit, in alphabetical order.
    QStringList completed(const QStringList &words)
    {
        const QString script =
            u"source \"$0\" && complete -p zr8bit >/dev/null && COMP_WORDS=(zr8bit \"$@\") "
            "COMP_CWORD=$#; _zr8bit; printf '%s\\n' \"${COMPREPLY[@]}\""_s;
        const HostResult result = inShell(
            u"bash"_s, QStringList{u"-c"_s, script, examplePath("../zr8bit/completion.bash")} + words);
        QStringList choices =
            QString::fromUtf8(result.errors + result.output).split(u'\n', Qt::SkipEmptyParts);
        choices.sort();
        return choices;
    }

    QTemporaryDir _dir;
    QList<Command> _commands;
};

QTEST_GUILESS_MAIN(tst_Help)
#include "tst_help.moc"
