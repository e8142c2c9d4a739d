#include "commands.h"
#include "console.h"
#include "failure.h"
#include "files.h"
#include "options.h"

#include <zr8bitlib/zr8bittvc.h>

#include <algorithm>
#include <array>
#include <memory>

using ZR::ZR8BitTVC;

namespace {

struct EncodeOptions
{
    Files files;
    bool hex = false;
    bool padded = false;
    std::optional<int> perLine;
    QString lineEnd = QStringLiteral("\n");
    QString label;
};

void encode(const EncodeOptions &options)
{
    constexpr int ValuesPerLine = 16;
    const QByteArray data = readInput(options.files.input);
    QString listing =
        ZR8BitTVC::BinToDB(data, options.hex, options.padded, options.perLine.value_or(ValuesPerLine));
    if (!options.label.isEmpty()) {
        const QString head = QStringLiteral("%1_SIZE EQU %2\r%1:").arg(options.label).arg(data.size());
        listing = data.isEmpty() ? head : head + u'\r' + listing;
    }
    // The library only separates lines; other programs want every line to have its end.
    if (options.lineEnd != QLatin1String("\r") && !listing.isEmpty()) {
        listing += u'\r';
        listing.replace(QLatin1String("\r"), options.lineEnd);
    }
    writeOutput(options.files.output, listing.toLatin1());
}

/// Whether a listing stays good with its next line. What the lines before it leave open stands in the text
/// open, empty at first: it is the shortest listing with the same effect on the rest. A "$" at the end of a
/// line counts as bad, though the next line may complete it.
bool takesLine(QStringView line, QString &open)
{
    QString listing = open;
    listing += line;
    QByteArray ignored;
    if (!ZR8BitTVC::DBToBin(listing, ignored))
        return false;
    const QLatin1String keyword("DB");
    qsizetype lastKeyword = listing.lastIndexOf(keyword, -1, Qt::CaseInsensitive);
    while (lastKeyword > 0 && listing[lastKeyword - 1] == u'$') // a value
        lastKeyword = listing.lastIndexOf(keyword, lastKeyword - 1, Qt::CaseInsensitive);
    if (lastKeyword < 0)
        return true;
    const qsizetype lastItem = qMax(lastKeyword + keyword.size(), listing.lastIndexOf(u',') + 1);
    const QStringView item = QStringView(listing).sliced(lastItem).trimmed();
    if (item.contains(u';'))
        open = QStringLiteral("DB ;\n");
    else
        open = item.isEmpty() ? QStringLiteral("DB ") : QStringLiteral("DB 0\n");
    return true;
}

/// What is wrong with a listing that is refused.
QString badLineText(const QString &path, const QString &listing)
{
    constexpr qsizetype LongestShown = 40;
    QString open;
    QStringView line;
    qsizetype number = 0;
    for (const QStringView next : QStringView(listing).tokenize(u'\n')) {
        line = next;
        ++number;
        if (!takesLine(line, open))
            break;
    }
    line = line.trimmed();
    QString shown = line.left(LongestShown).toString();
    if (line.size() > LongestShown)
        shown += QStringLiteral("...");
    return QStringLiteral("%1, line %2: not a number in '%3', values are written as 10 or $A!")
        .arg(inputName(path), QString::number(number), shown);
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

/// Ends parsing when a label cannot stand in front of a listing.
void checkLabel(const QString &label)
{
    const auto isPart = [](QChar character) {
        return character == u'_' || (character.unicode() < 0x80 && character.isLetterOrNumber());
    };
    if (label.isEmpty() || label.front().isDigit() || !std::all_of(label.begin(), label.end(), isPart))
        failOption("--label", label,
                   QStringLiteral("an identifier: letters from A to Z, digits and _, no digit in front"));
    if (label.contains(QLatin1String("db"), Qt::CaseInsensitive))
        failOption(
            "--label", label,
            QStringLiteral("a label without \"db\", which would count as the directive when it is read"));
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
    addWordOption(
        *command, "--newline", {QStringLiteral("lf"), QStringLiteral("cr"), QStringLiteral("crlf")},
        [options](size_t index) {
            options->lineEnd =
                std::array{QStringLiteral("\n"), QStringLiteral("\r"), QStringLiteral("\r\n")}.at(index);
        },
        "End of a line; cr stands only between lines; lf by default");
    CLI::Option *label = command->add_option(
        "--label", options->label, "Label in front of the listing, and LABEL_SIZE for the number of bytes");
    label->type_name("LABEL");
    command->callback([options, label] {
        if (label->count() > 0)
            checkLabel(options->label);
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
