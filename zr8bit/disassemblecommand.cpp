#include "commands.h"
#include "failure.h"
#include "files.h"
#include "options.h"

#include <zr8bitkit/zr8bitdisassembler.h>
#include <zr8bitkit/zr8bitprocmos6510full.h>
#include <zr8bitkit/zrnumbers.h>

#include <memory>

using ZR::ZRNumbers;

namespace {

constexpr int AddressCount = 0x10000;

struct Options
{
    Files files;
    std::optional<int> address;
    QString instructions;
};

void disassemble(const Options &options)
{
    const QByteArray bytes = readInput(options.files.input);
    const int start = options.address.value_or(0);
    if (bytes.size() > AddressCount - start)
        throw Failure(QStringLiteral("%1 of %2 bytes goes beyond $FFFF from %3 on!")
                          .arg(inputName(options.files.input), QString::number(bytes.size()),
                               ZRNumbers::addressText(start)));
    ZR::ZR8BitProcMOS6510Full processor;
    processor.setUndocumented(options.instructions == QLatin1String("all"));
    if (!processor.init())
        throw Failure(processor.lastErrorStr());
    const ZR::ZR8BitDisassembler disassembler(processor.commandList());
    QString listing;
    for (qsizetype place = 0; place < bytes.size();) {
        const auto instruction =
            disassembler.instruction(bytes.sliced(place), start + static_cast<int>(place));
        listing += ZR::ZR8BitDisassembler::listingLine(instruction) + u'\n';
        place += instruction.bytes.size();
    }
    writeOutput(options.files.output, listing.toLatin1());
}

} // namespace

void addDisassembleCommand(CLI::App &app)
{
    CLI::App *command =
        addCommand(app, "disassemble", "Print the instructions of a MOS 6510 program.",
                   {"zr8bit disassemble examples/sieve.bin --at 0x200",
                    "zr8bit disassemble examples/all-modes.bin --instructions all | tail -3"});
    auto options = std::make_shared<Options>();
    addFiles(*command, options->files);
    addNumberOption(*command, "--at", "ADDRESS", {0, AddressCount - 1}, options->address,
                    "Address of the first byte; 0 by default");
    addInstructionsOption(*command, options->instructions, "documented by default");
    command->footer("A byte that begins no instruction is shown as .BYTE.");
    command->callback([options] { disassemble(*options); });
}
