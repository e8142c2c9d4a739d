#include "commands.h"
#include "console.h"
#include "failure.h"
#include "files.h"
#include "options.h"
#include "pictures.h"
#include "progress.h"

#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitkit/zr8bittvcsheet.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <memory>

using Sheet = ZR::ZR8BitTVCSheet;
using TVC = ZR::ZR8BitTVCColor16;

namespace {

struct Options
{
    QStringList inputs;
    QString input = QStringLiteral("-");
    QString output = QStringLiteral("-");
    QString folder;
    QString sheet;
    QColor transparent = QColor(255, 0, 255);
    std::optional<QSize> frame;
    std::optional<int> width;
    std::optional<int> height;
    std::optional<int> scale;
    std::optional<int> columns;
    bool screen = false;
};

/// Throws Failure for what the kit has refused.
void check(bool isDone, const QString &path, const QString &error)
{
    if (!isDone)
        throw Failure(QStringLiteral("%1: %2").arg(inputName(path), error));
}

/// Warns of a frame that has another size than the first.
void checkSize(const QSize &size, const QSize &first, const QString &path)
{
    if (size != first)
        printWarning(QStringLiteral("%1 has %2 x %3 pixels, the first frame %4 x %5")
                         .arg(inputName(path), QString::number(size.width()), QString::number(size.height()),
                              QString::number(first.width()), QString::number(first.height())));
}

void encode(const Options &options)
{
    QByteArray sprite;
    QSize first;
    Progress progress;
    for (qsizetype i = 0; i < options.inputs.size(); ++i) {
        const QString &path = options.inputs.at(i);
        const QImage picture = readPicture(path);
        QList<QImage> frames{picture};
        QString error;
        if (options.frame)
            check(Sheet::cut(picture, *options.frame, frames, error), path, error);
        if (i == 0)
            first = frames.front().size();
        checkSize(frames.front().size(), first, path);
        sprite += TVC::QImagesToTVC16Sprite(frames, options.transparent);
        progress.show(QStringLiteral("pictures"), i + 1, options.inputs.size());
    }
    writeOutput(options.output, sprite);
}

/// The pictures of all frames of the input, with transparent pixels.
QList<QImage> readFrames(const Options &options)
{
    const QSize size(*options.width, *options.height);
    const QByteArray sprite =
        readStream(options.input, 2 * bytesPerRow(size.width()) * size.height(), QStringLiteral("frames"));
    QList<QImage> frames;
    QString error;
    check(Sheet::framesOfSprite(sprite, size, frames, error), options.input, error);
    return frames;
}

/// All frames in one picture.
QImage joinFrames(const QList<QImage> &frames, int columns, const Options &options)
{
    QImage sheet;
    QString error;
    check(Sheet::join(frames, columns, sheet, error), options.input, error);
    return sheet;
}

void decode(const Options &options)
{
    constexpr int Columns = 16;
    const QList<QImage> frames = readFrames(options);
    if (!options.sheet.isEmpty())
        writeOutput(options.sheet, toPng(joinFrames(frames, options.columns.value_or(Columns), options)));
    if (options.folder.isEmpty())
        return;
    Progress progress;
    QList<NamedData> files;
    for (const QImage &frame : frames) {
        files.append(
            {QStringLiteral("frame-%1.png").arg(files.size(), 3, 10, QLatin1Char('0')), toPng(frame)});
        progress.show(QStringLiteral("frames"), files.size(), frames.size());
    }
    writeFolder(options.folder, files);
}

void preview(const Options &options)
{
    const QList<QImage> frames = readFrames(options);
    const QImage sheet = joinFrames(frames, static_cast<int>(frames.size()), options);
    // The squares of the ground are squares on the screen too.
    QImage picture = Sheet::onCheckerboard(sheet, options.screen ? QSize(2, 5) : QSize(2, 2));
    if (options.screen)
        picture = ZR::ZR8BitTVCScreen::screenView(picture);
    writeOutput(options.output, toPng(enlarge(picture, options.scale.value_or(1))));
}

/// Adds what a sprite is read by.
void addSpriteOptions(CLI::App &command, Options &options)
{
    addInputArgument(command, options.input, "File with the bytes of the sprite");
    addNumberOption(command, "--width", "PIXELS", {1, LongestSide}, options.width, "Width of a frame")
        ->required();
    addNumberOption(command, "--height", "PIXELS", {1, LongestSide}, options.height, "Height of a frame")
        ->required();
}

} // namespace

void addSpriteCommand(CLI::App &app)
{
    CLI::App *group = app.add_subcommand("sprite", "Convert sprites to and from the TVC's 16-colour mode.");
    group->require_subcommand(1);
    auto options = std::make_shared<Options>();

    CLI::App *command = addCommand(
        *group, "encode", "Turn pictures into the frames of a sprite.",
        {"zr8bit sprite encode examples/coin-?.png -o coin.bin",
         "zr8bit sprite encode --frame 16x16 --transparent black examples/sunset.png > tiles.bin"});
    command
        ->add_option("INPUT", options->inputs,
                     "Pictures of any format that Qt reads, such as PNG, one a frame; standard input for -")
        ->type_name("FILE")
        ->required();
    addOutputOption(*command, options->output, "File for the bytes");
    addColorOption(*command, "--transparent", options->transparent,
                   "Colour of transparent pixels; #ff00ff by default");
    addSizeOption(*command, "--frame", LongestSide, options->frame,
                  "Take the pictures for sheets, and cut them into frames of this size");
    command->footer(
        "Pixels of exactly the transparent colour are transparent, and so are those with an alpha "
        "below 128 of 255,\nwhich count as that colour. Every other pixel becomes its closest colour "
        "of the TVC. The bytes do not say\nhow large a frame is. A sheet is cut into frames from the left to "
        "the right and from the top to the bottom.");
    command->callback([options] { encode(*options); });

    command = addCommand(
        *group, "decode", "Turn each frame of a sprite into a PNG with transparent pixels.",
        {"zr8bit sprite encode examples/coin-?.png | zr8bit sprite decode --width 16 --height 40 -o coin",
         "zr8bit sprite decode examples/all-modes.bin --width 8 --height 8 --sheet modes.png"});
    addSpriteOptions(*command, *options);
    command->add_option("-o,--output", options->folder, "Folder for frame-000.png, frame-001.png and so on")
        ->type_name("DIR");
    CLI::Option *sheet = command->add_option("--sheet", options->sheet, "File for one PNG with all frames");
    sheet->type_name("FILE");
    addNumberOption(*command, "--columns", "N", {1, LongestSide}, options->columns,
                    "Frames in a row of the sheet, 16 by default")
        ->needs(sheet);
    command->footer(
        "Frames go to a folder, a sheet or both. The last frame of a sprite that is cut has fewer rows. "
        "Other "
        "files\nof the folder stay as they are. The sheet tells encode --frame how many frames it has, so "
        "that places\nleft over in its last row count as none.");
    command->callback([options] {
        if (options->folder.isEmpty() && options->sheet.isEmpty())
            throw CLI::ValidationError("--output", "a folder is needed, or a file by --sheet");
        decode(*options);
    });

    command = addCommand(*group, "preview", "Show all frames of a sprite side by side, as PNG.",
                         {"zr8bit sprite encode examples/coin-?.png | zr8bit sprite preview --width 16 "
                          "--height 40 --screen --scale 2 -o coin.png",
                          "zr8bit sprite preview examples/all-modes.bin --width 8 --height 8 -o modes.png"});
    addSpriteOptions(*command, *options);
    addOutputOption(*command, options->output, "File for the PNG");
    addScaleOption(*command, options->scale);
    command->add_flag("--screen", options->screen, "Show pixels in their shape on the screen, each 5 x 2");
    command->footer("Transparent pixels show a chequered ground.");
    command->callback([options] { preview(*options); });
}
