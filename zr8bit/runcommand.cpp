#include "commands.h"
#include "console.h"
#include "failure.h"
#include "machinerun.h"

#include <zr8bitkit/zrmessagelogger.h>
#include <zr8bitlib/zr8bitcomputer.h>

#include <memory>

using ZR::ZR8BitMachine;

namespace {

struct Options
{
    QString settings;
    ZR8BitMachine::Choice choice;
    RunOptions run;
};

/// Loads the machine as the options want it. Throws Failure.
void load(ZR8BitMachine &machine, const Options &options)
{
    if (machine.loadSettings(options.settings, options.choice)) {
        const QStringList warnings = machine.warnings();
        for (const QString &warning : warnings)
            printWarning(warning);
        return;
    }
    QString hint;
    if (options.choice.processor.isEmpty() && machine.computer().processors().size() > 1)
        hint = QStringLiteral(" (--processor NAME)");
    else if (options.choice.memory.isEmpty() && machine.computer().rams().size() > 1)
        hint = QStringLiteral(" (--memory NAME)");
    throw Failure(machine.lastErrorStr() + hint);
}

void run(const Options &options)
{
    ZR::ZRMessageLogger logger;
    ZR8BitMachine machine;
    if (options.run.log)
        machine.setLogger(&logger);
    load(machine, options);
    MachineRun run(machine, options.run);
    print(QStringLiteral("Machine: %1\n").arg(printable(machine.computer().computerName())));
    run.run();
}

} // namespace

void addRunCommand(CLI::App &app)
{
    CLI::App *command = addCommand(
        app, "run", "Run a program on a machine of a settings file.",
        {"zr8bit run examples/sieve.ini --load examples/sieve.bin@0x200 --start 0x200 --dump 0x400:216",
         "zr8bit run examples/example.ini --set XR=2 --set YR=3 --start 0x200 --until 0x216 --trace"});
    auto options = std::make_shared<Options>();
    command->add_option("MACHINE.ini", options->settings, "Settings file of the machine")
        ->type_name("FILE")
        ->required();
    command->add_option("--processor", options->choice.processor, "Processor to run; the only one by default")
        ->type_name("NAME");
    command
        ->add_option("--memory", options->choice.memory,
                     "Main memory; by default the only RAM, or the first of the key Map")
        ->type_name("NAME");
    addInstructionsOption(*command, options->choice.instructions, "as the settings say by default");
    addRunOptions(*command, options->run);
    addNumberOption(*command, "--irq-every", "CYCLES", {1}, options->run.irqEvery,
                    "Make the line IRQ active once in so many cycles, until the interrupt is taken");
    command->footer(
        "Numbers are written as 512, 0x200 or $200, and an ADDRESS may be a label of --labels. A run goes "
        "on\n"
        "to the first of its ends, to an endless loop that no interrupt can leave, or to the first hardware\n"
        "issue, such as an unknown opcode, which is a failure. Ctrl-C ends it too; nothing is saved then.\n"
        "Exit codes: those of --exit; 1 also when the run did not reach --until or the program did not "
        "--exit.");
    command->callback([options] { run(*options); });
}
