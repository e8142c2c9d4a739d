#include "commands.h"
#include "console.h"
#include "files.h"
#include "options.h"
#include "outputs.h"

#include <zr8bitkit/zr8bittvctext.h>
#include <zr8bitkit/zrnumbers.h>

#include <memory>

using ZR::ZR8BitTVCText;

namespace {

struct Options
{
    Files files;
    ZR8BitTVCText::Options text;
};

/// Warns of characters that became spaces.
void warn(const ZR::ZR8BitTVCTextReport &report)
{
    if (report.lost > 0)
        printWarning(QStringLiteral("%1 of %2 characters have no counterpart and became spaces")
                         .arg(report.lost)
                         .arg(report.characters));
    for (const ZR::ZR8BitTVCTextLoss &loss : report.first)
        printWarning(QStringLiteral("line %1, column %2: '%3' (U+%4)")
                         .arg(QString::number(loss.line), QString::number(loss.column),
                              QString::fromUcs4(&loss.character, 1),
                              ZR::ZRNumbers::hexDigits(static_cast<int>(loss.character), 4)));
    if (!report.first.isEmpty() && report.lost > report.first.size())
        printWarning(QStringLiteral("and %1 more").arg(report.lost - report.first.size()));
}

void encode(const Options &options)
{
    ZR::ZR8BitTVCTextReport report;
    const QByteArray codes = ZR8BitTVCText::encode(readUtf8(options.files.input), options.text, &report);
    warn(report);
    writeOutput(options.files.output, codes);
}

void decode(const Options &options)
{
    ZR::ZR8BitTVCTextReport report;
    const QString text = ZR8BitTVCText::decode(readInput(options.files.input), options.text, &report);
    warn(report);
    writeOutput(options.files.output, text.toUtf8());
}

void addConversion(CLI::App &group, const std::string &name, const std::string &description,
                   const std::vector<std::string> &examples, void (*convert)(const Options &))
{
    CLI::App *command = addCommand(group, name, description, examples);
    auto options = std::make_shared<Options>();
    addFiles(*command, options->files);
    command->add_flag("--lines", options->text.lines,
                      "Convert line by line: keep carriage returns and line feeds as they are");
    if (convert == encode)
        command->add_flag(
            "--replace", options->text.replace,
            "Write stand-ins: plain quotes, dashes and dots, letters without accents and so on");
    command->footer("Line ends have no code in the TVC's character set: without --lines each of their\n"
                    "characters becomes a space, as does all else without a counterpart. A warning says how\n"
                    "many did.");
    command->callback([convert, options] { convert(*options); });
}

} // namespace

void addTextCommand(CLI::App &app)
{
    CLI::App *group = app.add_subcommand("text", "Convert text to and from the TVC's character code.");
    group->require_subcommand(1);
    addConversion(*group, "encode", "Convert UTF-8 text to TVC codes, one byte a character.",
                  {"zr8bit text encode --lines examples/greeting.txt -o greeting.tvc",
                   "printf HELLO | zr8bit text encode > word.tvc"},
                  encode);
    addConversion(*group, "decode", "Convert TVC codes to UTF-8 text.",
                  {"zr8bit text encode --lines examples/greeting.txt | zr8bit text decode --lines",
                   "zr8bit text decode --lines examples/title.rom -o title.txt"},
                  decode);
}
