#include "commands.h"
#include "console.h"
#include "failure.h"

#include <CLI/CLI.hpp>

#include <QtCore/QCoreApplication>

#include <new>

namespace {

enum ExitCode
{
    Success = 0,
    CommandFailed = 1,
    WrongCommandLine = 2
};

/// Runs the sub-command, or prints the help or what is wrong with the command line.
int parse(CLI::App &app, int argc, char *argv[])
{
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? Success : WrongCommandLine;
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

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    showMessageLog();
    return runCommandLine(argc, argv);
}
