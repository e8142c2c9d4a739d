#include "commands.h"
#include "console.h"
#include "failure.h"
#include "files.h"

#include <zr8bitlib/zr8bitlib_version.h>

#include <CLI/CLI.hpp>

#include <QtCore/QCoreApplication>

#include <csignal>
#include <cstdio>
#include <new>
#include <sstream>

#include <fcntl.h>
#ifdef Q_OS_WIN
#include <io.h>
#endif

namespace {

enum ExitCode
{
    Success = 0,
    CommandFailed = 1,
    WrongCommandLine = 2
};

/// The command that the arguments have chosen, or the program itself.
const CLI::App &chosenCommand(const CLI::App &app)
{
    const std::vector<CLI::App *> chosen = app.get_subcommands();
    return chosen.empty() ? app : chosenCommand(*chosen.back());
}

/// What is wrong with the command line, and what is allowed.
QString problemText(const CLI::App &app, const CLI::ParseError &error)
{
    const CLI::App &command = chosenCommand(app);
    QStringList known;
    for (const CLI::App *next : command.get_subcommands([](const CLI::App *) { return true; }))
        known += QString::fromStdString(next->get_name());

    // The parser calls a command missing where it is one that it does not know.
    const std::vector<std::string> unknown = app.remaining(true);
    const QString word = unknown.empty() ? QString() : QString::fromStdString(unknown.front());
    if (word.size() > 1 && word.startsWith(u'-'))
        return QStringLiteral("unknown option '%1'").arg(word);
    if (!known.isEmpty())
        return QStringLiteral("%1, known are: %2")
            .arg(unknown.empty() ? QStringLiteral("a command is missing")
                                 : QStringLiteral("unknown command '%1'").arg(word),
                 known.join(QStringLiteral(", ")));
    if (!unknown.empty())
        return QStringLiteral("one argument too many: '%1'").arg(word);
    QString text = QString::fromStdString(error.what());
    if (error.get_name() == "ArgumentMismatch") // an option without its value, or one that is given twice
        return QStringLiteral("%1: exactly one value is needed").arg(text.section(u':', 0, 0));
    if (error.get_name() == "ConversionError") // an option that is given a value and takes none
        return QStringLiteral("%1: no value is allowed").arg(text.section(u' ', 3, 3));
    return text;
}

/// Runs the sub-command, or prints the help or what is wrong with the command line. Returns the exit code.
int parse(CLI::App &app)
{
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    std::vector<std::string> words; // in reverse, as the parser takes them
    for (auto argument = arguments.crbegin(); argument != arguments.crend(); ++argument)
        words.push_back(argument->toStdString());
    try {
        app.parse(std::move(words));
    } catch (const InputIsTerminal &) {
        print(QString::fromStdString(app.help()));
    } catch (const CLI::Success &help) {
        std::ostringstream text;
        app.exit(help, text);
        print(QString::fromStdString(text.str()));
    } catch (const ExitStatus &exit) {
        return exit.code;
    } catch (const CLI::ParseError &error) {
        printError(QStringLiteral("zr8bit: ") + problemText(app, error));
        printError(QStringLiteral("Run with --help for more information."));
        return WrongCommandLine;
    }
    return Success;
}

int runCommandLine()
{
    CLI::App app("Runs configured 8-bit machines and converts data of the Videoton TV Computer (TVC).\n"
                 "Exit codes: 0 success, 1 failure with the cause on standard error, 2 wrong command line;\n"
                 "with the option --exit of run and tvc the byte that the program gives.\n"
                 "The examples of the help texts are installed in share/doc/zr8bit/examples.",
                 "zr8bit");
    app.set_version_flag("--version", "zr8bit " ZR8BITLIB_VERSION_STR);
    app.require_subcommand(1);
    addRunCommand(app);
    addTVCCommand(app);
    addDescribeCommand(app);
    addDisassembleCommand(app);
    addTextCommand(app);
    addDbCommand(app);
    addSoundCommand(app);
    addImageCommand(app);
    addSpriteCommand(app);

    try {
        const int exitCode = parse(app);
        flushOutput();
        return exitCode;
    } catch (const ReaderIsGone &) {
        endWithoutReader();
    } catch (const Failure &failure) {
        printError(QStringLiteral("zr8bit: ") + failure.text());
    } catch (const std::bad_alloc &) {
        printError(QStringLiteral("zr8bit: Out of memory!"));
    }
    return CommandFailed;
}

/// Makes a write that fails an error, where the system would end the program by a signal: to a pipe whose
/// reader is gone, or beyond the limit of a file's size. Standard error may lose its reader at no harm.
void ignoreWriteSignals()
{
#ifndef Q_OS_WIN
    for (const int writeSignal : {SIGPIPE, SIGXFSZ})
        std::signal(writeSignal, SIG_IGN);
#endif
}

/// Makes the standard streams carry bytes as they are. Replaces those that are closed, where input and output
/// then fail: a file that is opened later would get the number of a closed one, and be read or written
/// instead of it.
void prepareStandardStreams()
{
#ifdef Q_OS_WIN
    for (FILE *stream : {stdin, stdout})
        _setmode(_fileno(stream), _O_BINARY);
#else
    constexpr int Directions[] = {O_WRONLY, O_RDONLY, O_RDWR}; // of the streams 0, 1 and 2
    for (int stream = 0; stream <= 2; ++stream) {
        if (fcntl(stream, F_GETFD) < 0)
            open("/dev/null", Directions[stream]); // gets the lowest free number
    }
#endif
}

/// Refuses arguments that are not UTF-8: two names of files could become the same.
bool checkArguments(int argc, char *argv[])
{
#ifndef Q_OS_WIN
    for (int i = 1; i < argc; ++i) {
        if (!QByteArrayView(argv[i]).isValidUtf8()) {
            printError(QStringLiteral("zr8bit: argument %1 is not UTF-8: '%2'")
                           .arg(QString::number(i), QString::fromUtf8(argv[i])));
            return false;
        }
    }
#else
    Q_UNUSED(argc)
    Q_UNUSED(argv)
#endif
    return true;
}

/// In a locale that is not UTF-8, Qt warns while it starts, and then uses UTF-8 all the same.
void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int main(int argc, char *argv[])
{
    ignoreWriteSignals();
    prepareStandardStreams();
    if (!checkArguments(argc, argv))
        return WrongCommandLine;
    qInstallMessageHandler(ignoreMessage);
    const QCoreApplication application(argc, argv);
    showMessageLog();
    const int exitCode = runCommandLine();
    finishMessageLog();
    return exitCode;
}
