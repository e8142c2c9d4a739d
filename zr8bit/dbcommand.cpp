#include "commands.h"
#include "failure.h"
#include "files.h"
#include "options.h"
#include "outputs.h"

#include <zr8bitkit/zr8bittvclisting.h>

#include <array>
#include <memory>

using ZR::ZR8BitTVCListing;

namespace {

struct EncodeOptions
{
    Files files;
    ZR8BitTVCListing::Options listing;
    std::optional<int> perLine;
};

void encode(const EncodeOptions &options)
{
    ZR8BitTVCListing::Options listing = options.listing;
    listing.perLine = options.perLine.value_or(listing.perLine);
    const QByteArray bytes = readInput(options.files.input);
    writeOutput(options.files.output, ZR8BitTVCListing::fromBytes(bytes, listing).toLatin1());
}

void decode(const Files &files)
{
    // Comments may be in any encoding: only ASCII matters, and what is not UTF-8 is no number.
    const QString listing = QString::fromUtf8(readInput(files.input));
    QByteArray bytes;
    QString error;
    if (!ZR8BitTVCListing::toBytes(listing, bytes, &error))
        throw Failure(QStringLiteral("%1: %2").arg(inputName(files.input), error));
    writeOutput(files.output, bytes);
}

void addEncodeCommand(CLI::App &group)
{
    CLI::App *command =
        addCommand(group, "encode", "Convert bytes to a listing.",
                   {"zr8bit db encode examples/title.rom",
                    "zr8bit db encode --hex --padded --per-line 8 examples/all-modes.bin -o modes.asm"});
    auto options = std::make_shared<EncodeOptions>();
    addFiles(*command, options->files);
    command->add_flag("--hex", options->listing.hex, "Write values as $A instead of 10");
    command->add_flag("--padded", options->listing.padded,
                      "Write values with zeros in front, as 010 or $0A; some assemblers take 010 for octal");
    addNumberOption(*command, "--per-line", "N", {}, options->perLine,
                    "Values on a line, 16 by default; 0 puts all on a single line");
    addWordOption(
        *command, "--newline", {QStringLiteral("lf"), QStringLiteral("cr"), QStringLiteral("crlf")},
        [options](size_t index) {
            options->listing.lineEnd =
                std::array{QStringLiteral("\n"), QStringLiteral("\r"), QStringLiteral("\r\n")}.at(index);
        },
        "End of a line; cr stands only between lines; lf by default");
    CLI::Option *label =
        command->add_option("--label", options->listing.label,
                            "Label in front of the listing, and LABEL_SIZE for the number of bytes");
    label->type_name("LABEL");
    command->callback([options, label] {
        QString error;
        if (label->count() > 0 && !ZR8BitTVCListing::isLabel(options->listing.label, &error))
            throw CLI::ValidationError("--label", error.toStdString());
        encode(*options);
    });
}

void addDecodeCommand(CLI::App &group)
{
    CLI::App *command = addCommand(
        group, "decode", "Convert a listing to bytes.",
        {"zr8bit db decode examples/bytes.asm -o bytes.bin", "echo 'DB 72,$49' | zr8bit db decode"});
    auto files = std::make_shared<Files>();
    addFiles(*command, *files);
    command->footer(
        "Values are decimal, or hexadecimal after \"$\"; of each the low 8 bits count. All up to the first\n"
        "DB is skipped. A DB counts wherever it stands, in a word or a comment too, but not after \"$\". A\n"
        "comment begins with \";\" and must hold no comma. Other instructions after a DB are an error,\n"
        "and so is a text without a DB.");
    command->callback([files] { decode(*files); });
}

} // namespace

void addDbCommand(CLI::App &app)
{
    CLI::App *group =
        app.add_subcommand("db", "Convert bytes to and from listings of assembler DB directives.");
    group->require_subcommand(1);
    addEncodeCommand(*group);
    addDecodeCommand(*group);
}
