#include "commands.h"
#include "console.h"
#include "failure.h"

#include <CLI/CLI.hpp>

#include <QtCore/QCoreApplication>

#include <new>

#ifndef Q_OS_WIN
#include <fcntl.h>

#include <csignal>
#endif

namespace {

enum ExitCode
{
    Success = 0,
    CommandFailed = 1,
    WrongCommandLine = 2
};

/// Runs the sub-command, or prints the help or what is wrong with the command line. Returns the exit code.
int parse(CLI::App &app, int argc, char *argv[])
{
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success &help) {
        app.exit(help);
    } catch (const CLI::ParseError &error) {
        // The parser calls a command missing where it is one that it does not know.
        const std::vector<std::string> unknown = app.remaining(true);
        printError(
            QStringLiteral("zr8bit: %1")
                .arg(unknown.empty()
                         ? fromArgument(error.what())
                         : QStringLiteral("'%1' is not known here").arg(fromArgument(unknown.front()))));
        printError(QStringLiteral("Run with --help for more information."));
        return WrongCommandLine;
    }
    return Success;
}

int runCommandLine(int argc, char *argv[])
{
    CLI::App app("Runs configured 8-bit machines and converts data of the Videoton TV Computer (TVC).\n"
                 "Exit codes: 0 success, 1 failure with the cause on standard error, 2 wrong command line.",
                 "zr8bit");
    app.set_version_flag("--version", "zr8bit " ZR_VERSION);
    app.require_subcommand(1);
    addRunCommand(app);
    addDescribeCommand(app);
    addTextCommand(app);
    addDbCommand(app);
    addSoundCommand(app);
    addImageCommand(app);
    addSpriteCommand(app);

    try {
        const int exitCode = parse(app, argc, argv);
        flushOutput();
        return exitCode;
    } catch (const Failure &failure) {
        printError(QStringLiteral("zr8bit: ") + failure.text());
    } catch (const std::bad_alloc &) {
        printError(QStringLiteral("zr8bit: Out of memory!"));
    }
    return CommandFailed;
}

/// Makes whatever cannot be written an error, where the system would end the program by a signal: a pipe
/// whose reader is gone, and a file beyond the limit of its size.
void ignoreWriteSignals()
{
#ifndef Q_OS_WIN
    for (const int writeSignal : {SIGPIPE, SIGXFSZ})
        std::signal(writeSignal, SIG_IGN);
#endif
}

/// Takes the places of standard streams that are closed, so that no file opened later gets their numbers and
/// is read or written in their stead. Input and output fail there.
void reserveStandardStreams()
{
#ifndef Q_OS_WIN
    constexpr int Directions[] = {O_WRONLY, O_RDONLY, O_RDWR}; // of the streams 0, 1 and 2
    for (int stream = 0; stream <= 2; ++stream) {
        if (fcntl(stream, F_GETFD) < 0)
            open("/dev/null", Directions[stream]); // gets the lowest free number
    }
#endif
}

} // namespace

int main(int argc, char *argv[])
{
    ignoreWriteSignals();
    reserveStandardStreams();
    const QCoreApplication application(argc, argv);
    showMessageLog();
    const int exitCode = runCommandLine(argc, argv);
    finishMessageLog();
    return exitCode;
}
