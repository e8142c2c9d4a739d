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

int runCommandLine(int argc, char *argv[])
{
    CLI::App app("Runs configured 8-bit machines.\n"
                 "Exit codes: 0 success, 1 failure with the cause on standard error, 2 wrong command line.",
                 "zr8bit");
    app.set_version_flag("--version", "zr8bit " ZR_VERSION);
    app.require_subcommand(1);
    addRunCommand(app);
    addDescribeCommand(app);

    try {
        app.parse(argc, argv);
        flushOutput();
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? Success : WrongCommandLine;
    } catch (const Failure &failure) {
        printError(QStringLiteral("zr8bit: ") + failure.text());
        return CommandFailed;
    } catch (const std::bad_alloc &) {
        printError(QStringLiteral("zr8bit: Out of memory!"));
        return CommandFailed;
    }
    return Success;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return runCommandLine(argc, argv);
}
