#include "commands.h"
#include "console.h"
#include "failure.h"
#include "files.h"
#include "options.h"

#include <zr8bitlib/zr8bittvc.h>

#include <memory>

using ZR::ZR8BitTVC;

namespace {

struct EncodeOptions
{
    Files files;
    bool hex = false;
    bool padded = false;
    std::optional<int> perLine;
    QString newline = QStringLiteral("lf");
};

void encode(const EncodeOptions &options)
{
    constexpr int ValuesPerLine = 16;
    const QByteArray data = readInput(options.files.input);
    QString listing =
        ZR8BitTVC::BinToDB(data, options.hex, options.padded, options.perLine.value_or(ValuesPerLine));
    // The library only separates lines; other programs want every line to have its end.
    if (options.newline != QLatin1String("cr") && !listing.isEmpty()) {
        listing += u'\r';
        listing.replace(u'\r', options.newline == QLatin1String("lf") ? QStringLiteral("\n")
                                                                      : QStringLiteral("\r\n"));
    }
    writeOutput(options.files.output, listing.toLatin1());
}

/// The index of the line that makes a listing bad: the last one of the fewest lines that are refused. A "$"
/// at the end of a line, which only the next line completes, may be named in its stead.
qsizetype badLine(const QString &listing, const QList<QStringView> &lines)
{
    qsizetype first = 0; // what stands before it does not matter to what follows
    qsizetype good = 0;
    qsizetype bad = lines.size();
    while (bad - good > 1) {
        const qsizetype middle = good + (bad - good) / 2;
        const qsizetype start = lines[first].begin() - listing.constBegin();
        const qsizetype end = lines[middle - 1].end() - listing.constBegin();
        QByteArray ignored;
        if (!ZR8BitTVC::DBToBin(listing.sliced(start, end - start), ignored)) {
            bad = middle;
            continue;
        }
        good = middle;
        if (lines[middle].trimmed().startsWith(QLatin1String("DB"), Qt::CaseInsensitive))
            first = middle;
    }
    return bad - 1;
}

QString badLineText(const QString &path, const QString &listing)
{
    constexpr qsizetype LongestShown = 40;
    const QList<QStringView> lines = QStringView(listing).split(u'\n');
    const qsizetype index = badLine(listing, lines);
    const QStringView line = lines[index].trimmed();
    QString shown = line.left(LongestShown).toString();
    if (line.size() > LongestShown)
        shown += QStringLiteral("...");
    return QStringLiteral("%1, line %2: '%3' holds what is not a number!")
        .arg(inputName(path), QString::number(index + 1), shown);
}

void decode(const Files &files)
{
    // Comments may be in any encoding: only ASCII matters, and what is not UTF-8 is no number.
    const QString &path = files.input;
    QString listing = QString::fromUtf8(readInput(path));
    listing.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
    QByteArray data;
    if (!ZR8BitTVC::DBToBin(listing, data))
        throw Failure(badLineText(path, listing));
    if (data.isEmpty() && !listing.trimmed().isEmpty())
        printWarning(QStringLiteral("The listing in %1 holds no DB values").arg(inputName(path)));
    writeOutput(files.output, data);
}

void addEncodeCommand(CLI::App &group)
{
    CLI::App *command =
        addCommand(group, "encode", "Convert bytes to a listing.",
                   {"zr8bit db encode examples/title.rom",
                    "zr8bit db encode --hex --padded --per-line 8 examples/all-modes.bin -o modes.asm"});
    auto options = std::make_shared<EncodeOptions>();
    addFiles(*command, options->files);
    command->add_flag("--hex", options->hex, "Write values as $A instead of 10");
    command->add_flag("--padded", options->padded,
                      "Write values with zeros in front, as 010 or $0A; some assemblers take 010 for octal");
    addNumberOption(*command, "--per-line", "N", {}, options->perLine,
                    "Values on a line, 16 by default; 0 puts all on a single line");
    command
        ->add_option("--newline", options->newline,
                     "End of a line: lf, crlf, or cr, which stands only between lines; lf by default")
        ->type_name("END");
    command->callback([options] {
        if (!QStringList{QStringLiteral("lf"), QStringLiteral("cr"), QStringLiteral("crlf")}.contains(
                options->newline))
            failOption("--newline", options->newline, QStringLiteral("lf, cr or crlf"));
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
        "Values are decimal, or hexadecimal behind \"$\"; of each the low 8 bits count. All up to the first\n"
        "DB is skipped. A DB counts wherever it stands, in a word or a comment too, but not behind \"$\". A\n"
        "comment begins with \";\" and must hold no comma. Other instructions behind a DB are an error.");
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
