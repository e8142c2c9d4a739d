#include "commands.h"
#include "failure.h"
#include "files.h"
#include "labels.h"
#include "options.h"
#include "outputs.h"

#include <zr8bitkit/zr8bitdisassembler.h>
#include <zr8bitkit/zr8bitprogramfile.h>
#include <zr8bitkit/zrnumbers.h>

#include <QtCore/QSet>

#include <memory>

using ZR::ZR8BitDisassembler;
using ZR::ZR8BitProgramFile;

namespace {

using MachineInstructions = ZR::ZR8BitMachine::Instructions;
using Instructions = QList<ZR8BitDisassembler::Instruction>;

constexpr QLatin1String automatically("auto");

struct Options
{
    Files files;
    std::optional<QString> address;
    QStringList labels;
    bool isZ80 = false;
    MachineInstructions instructions = MachineInstructions::AsSettings; ///< as given
};

/// Throws what ends parsing.
ZR::ZR8BitInstructionSet instructionSet(const Options &options)
{
    if (options.isZ80 && options.instructions == MachineInstructions::Documented)
        failOption("--instructions", QStringLiteral("documented"),
                   QStringLiteral("for the Z80, of which all are known"));
    if (options.isZ80)
        return ZR::ZR8BitInstructionSet::Z80;
    const bool isAll = options.instructions == MachineInstructions::All;
    return isAll ? ZR::ZR8BitInstructionSet::MOS6510All : ZR::ZR8BitInstructionSet::MOS6510Documented;
}

/// Throws Failure.
ZR8BitProgramFile::Program readProgram(const Options &options, const ZR::ZR8BitLabels &labels)
{
    const QByteArray content = readInput(options.files.input);
    QString error;
    const auto program =
        options.address
            ? ZR8BitProgramFile::readRaw(content, addressOf("--at", *options.address, labels), &error)
            : ZR8BitProgramFile::read(content, options.files.input, &error);
    if (!program)
        throw Failure(QStringLiteral("Couldn't read %1: %2").arg(inputName(options.files.input), error));
    return *program;
}

/// Gives a label to each instruction that another one jumps to, unless it has one.
void labelTargets(const Instructions &instructions, ZR::ZR8BitLabels &labels)
{
    QSet<int> addresses;
    for (const auto &instruction : instructions)
        addresses += instruction.address;
    for (const auto &instruction : instructions) {
        if (instruction.jumps && addresses.contains(instruction.target))
            labels.add(QStringLiteral("L") + ZR::ZRNumbers::hexDigits(instruction.target, 4),
                       static_cast<quint16>(instruction.target));
    }
}

void disassemble(const Options &options)
{
    ZR::ZR8BitLabels labels;
    for (const QString &path : options.labels) {
        if (path != automatically)
            readLabels(labels, path);
    }
    ZR8BitDisassembler disassembler(instructionSet(options));
    const auto program = readProgram(options, labels);
    const auto decoded = [&] {
        Instructions instructions;
        for (const auto &[address, bytes] : program.segments)
            instructions += disassembler.instructions(bytes, address);
        return instructions;
    };
    if (options.labels.contains(automatically))
        labelTargets(decoded(), labels);
    disassembler.setNames([&labels](quint16 address) { return labels.nameOf(address); });

    QString listing;
    for (const auto &instruction : decoded()) {
        const QString label = labels.nameOf(static_cast<quint16>(instruction.address));
        if (!label.isEmpty())
            listing += label + QStringLiteral(":\n");
        listing += ZR8BitDisassembler::listingLine(instruction) + u'\n';
    }
    writeOutput(options.files.output, listing.toLatin1());
}

} // namespace

void addDisassembleCommand(CLI::App &app)
{
    CLI::App *command =
        addCommand(app, "disassemble", "Print the instructions of a program.",
                   {"zr8bit disassemble examples/sieve.bin --at 0x200 --labels auto",
                    "zr8bit disassemble examples/all-modes.bin --instructions all | tail -3"});
    auto options = std::make_shared<Options>();
    addFiles(*command, options->files);
    command
        ->add_option_function<QString>(
            "--at", [options](const QString &value) { options->address = value; },
            "Address of the first byte, whatever the format; without it a .prg or Intel HEX\n"
            "file says where its bytes go, and other bytes are at 0")
        ->type_name("ADDRESS");
    addLabelsOption(*command, options->labels,
                    "File of labels, or \"auto\" for labels of its own such as L0205");
    addWordOption(
        *command, "--type", {QStringLiteral("MOS6510"), QStringLiteral("Z80")},
        [options](size_t index) { options->isZ80 = index == 1; }, "Processor type; MOS6510 by default");
    addInstructionsOption(*command, options->instructions, "for the MOS6510 alone; documented by default");
    command->footer(
        "A byte that begins no instruction is shown as .BYTE or DEFB. An address is a number, written\n"
        "as 512, 0x200 or $200, or a label of --labels.");
    command->callback([options] { disassemble(*options); });
}
