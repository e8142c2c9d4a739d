#include "commands.h"
#include "console.h"
#include "files.h"
#include "options.h"

#include <zr8bitlib/zr8bittvc.h>

#include <memory>

using ZR::ZR8BitTVC;

namespace {

struct Options
{
    Files files;
    bool lines = false;
};

/// Looks at the spaces of a conversion's target, which has a character for each one of the source: puts line
/// ends back when they are to be kept, and counts what else became a space in a warning.
void finish(const QString &source, QString &target, bool keepLineEnds)
{
    qsizetype lost = 0;
    for (qsizetype i = 0; i < source.size(); ++i) {
        const QChar character = source[i];
        if (target[i] != u' ' || character == u' ')
            continue;
        if (keepLineEnds && (character == u'\n' || character == u'\r'))
            target[i] = character;
        else
            ++lost;
    }
    if (lost > 0)
        printWarning(QStringLiteral("%1 of %2 characters have no counterpart and became spaces")
                         .arg(lost)
                         .arg(source.size()));
}

void encode(const Options &options)
{
    const QString text = readUtf8(options.files.input);
    QString codes = QString::fromLatin1(ZR8BitTVC::QStringToTVCStr(text));
    finish(text, codes, options.lines);
    writeOutput(options.files.output, codes.toLatin1());
}

void decode(const Options &options)
{
    const QByteArray codes = readInput(options.files.input);
    QString text = ZR8BitTVC::TVCStrToQString(codes);
    finish(QString::fromLatin1(codes), text, options.lines);
    writeOutput(options.files.output, text.toUtf8());
}

void addConversion(CLI::App &group, const std::string &name, const std::string &description,
                   const std::vector<std::string> &examples, void (*convert)(const Options &))
{
    CLI::App *command = addCommand(group, name, description, examples);
    auto options = std::make_shared<Options>();
    addFiles(*command, options->files);
    command->add_flag("--lines", options->lines,
                      "Convert line by line: keep carriage returns and line feeds as they are");
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
