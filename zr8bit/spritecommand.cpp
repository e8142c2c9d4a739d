#include "commands.h"
#include "console.h"
#include "failure.h"
#include "files.h"
#include "options.h"
#include "outputs.h"
#include "pictures.h"
#include "preparation.h"
#include "progress.h"

#include <zr8bitkit/zr8bittvcsheet.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <algorithm>
#include <memory>

using Screen = ZR::ZR8BitTVCScreen;
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
    Preparation preparation;
    std::optional<int> width;
    std::optional<int> height;
    std::optional<int> scale;
    std::optional<int> columns;
    bool screen = false;
};

/// Throws Failure for what the kit has refused.
[[noreturn]] void failFor(const QString &path, const QString &error)
{
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

/// The bytes of a frame, with what is asked for done to it.
QByteArray bytesOf(const QImage &frame, const Options &options)
{
    if (!options.preparation.isNeeded())
        return TVC::QImageToTVC16SpriteFrame(frame, options.transparent);
    const QColor noColorOfTvc(1, 1, 1); // opaque pixels have these now, and one may be that of --transparent
    const QImage prepared = preparedFrame(frame, options.transparent, options.preparation);
    if (prepared.isNull())
        failTooLarge();
    return TVC::QImageToTVC16SpriteFrame(prepared, noColorOfTvc);
}

/// The bytes of a picture's frames: of the cells of a sheet, or of itself.
QByteArray bytesOfCells(const QImage &picture, const QString &path, const Options &options)
{
    const QSize size = options.frame.value_or(picture.size());
    QString error;
    const qsizetype count = Sheet::frameCount(picture, size, &error);
    if (count == 0)
        failFor(path, error);
    QByteArray bytes;
    for (qsizetype i = 0; i < count; ++i)
        bytes += bytesOf(Sheet::frameAt(picture, size, i), options);
    return bytes;
}

void encode(const Options &options)
{
    QByteArray sprite;
    QSize first;
    Progress progress;
    for (qsizetype i = 0; i < options.inputs.size(); ++i) {
        const QString &path = options.inputs.at(i);
        const QList<QImage> pictures = readFrames(path);
        if (i == 0)
            first = pictures.front().size();
        if (!options.frame && !options.preparation.size)
            checkSize(pictures.front().size(), first, path);
        for (const QImage &picture : pictures)
            sprite += bytesOfCells(picture, path, options);
        progress.show(QStringLiteral("pictures"), i + 1, options.inputs.size());
    }
    writeOutput(options.output, sprite);
}

/// The pictures of all frames of the input, with transparent pixels.
QList<QImage> readSprite(const Options &options)
{
    const QSize size(*options.width, *options.height);
    const QByteArray sprite =
        readStream(options.input, qint64(2) * Screen::bytesPerRow(size.width()) * size.height(),
                   QStringLiteral("frames"));
    QString error;
    QList<QImage> frames = Sheet::framesOfSprite(sprite, size, &error);
    if (frames.isEmpty())
        failFor(options.input, error);
    return frames;
}

/// All frames in one picture.
QImage joinFrames(const QList<QImage> &frames, int columns, const Options &options)
{
    QString error;
    QImage sheet = Sheet::join(frames, columns, &error);
    if (sheet.isNull())
        failFor(options.input, error);
    return sheet;
}

/// A PNG for each frame.
QList<NamedData> frameFiles(const QList<QImage> &frames)
{
    Progress progress;
    QList<NamedData> files;
    const int digits = std::max(3, static_cast<int>(QString::number(frames.size() - 1).size()));
    for (const QImage &frame : frames) {
        const QString name = QStringLiteral("frame-%1.png").arg(files.size(), digits, 10, QLatin1Char('0'));
        files.append({name, encodePicture(frame, name)});
        progress.show(QStringLiteral("frames"), files.size(), frames.size());
    }
    return files;
}

void decode(const Options &options)
{
    constexpr int Columns = 16;
    const QList<QImage> frames = readSprite(options);
    Outputs outputs;
    if (!options.sheet.isEmpty())
        outputs.add(
            options.sheet,
            encodePicture(joinFrames(frames, options.columns.value_or(Columns), options), options.sheet));
    if (!options.folder.isEmpty())
        outputs.addFolder(options.folder, frameFiles(frames));
    outputs.write();
}

void preview(const Options &options)
{
    const QList<QImage> frames = readSprite(options);
    const QImage sheet = joinFrames(frames, static_cast<int>(frames.size()), options);
    // The squares of the ground are squares on the screen too.
    QImage picture = Sheet::onCheckerboard(sheet, options.screen ? QSize(2, 5) : QSize(2, 2));
    if (options.screen)
        picture = Screen::screenView(picture);
    writeOutput(options.output, encodePicture(enlarge(picture, options.scale.value_or(1)), options.output));
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

void addEncode(CLI::App &group, const std::shared_ptr<Options> &options)
{
    CLI::App *command = addCommand(
        group, "encode", "Turn pictures into the frames of a sprite.",
        {"zr8bit sprite encode examples/coin-?.png -o coin.bin",
         "zr8bit sprite encode --frame 16x16 --transparent black examples/sunset.png > tiles.bin"});
    command
        ->add_option("INPUT", options->inputs,
                     "Pictures of any format that Qt reads, such as PNG; each frame of a GIF; standard input "
                     "for -")
        ->type_name("FILE")
        ->required();
    addOutputOption(*command, options->output, "File for the bytes");
    addColorOption(*command, "--transparent", options->transparent,
                   "Colour of transparent pixels; #ff00ff by default");
    addSizeOption(*command, "--frame", LongestSide, options->frame,
                  "Take the pictures for sheets, and cut them into frames of this size");
    addFitSizeOption(*command, options->preparation);
    addPreparationOptions(*command, options->preparation);
    command->footer(
        "Pixels of exactly the transparent colour are transparent, and so are those with an alpha "
        "below 128 of 255,\nwhich count as that colour. Every other pixel becomes its closest colour "
        "of the TVC. The bytes do not say\nhow large a frame is. A sheet is cut into frames from the left to "
        "the right and from the top to the bottom;\neach is scaled on its own, and a pixel is opaque when at "
        "least half of its area is.");
    command->callback([options] {
        checkPreparation(options->preparation, "--size");
        encode(*options);
    });
}

void addDecode(CLI::App &group, const std::shared_ptr<Options> &options)
{
    CLI::App *command = addCommand(
        group, "decode", "Turn each frame of a sprite into a PNG with transparent pixels.",
        {"zr8bit sprite encode examples/coin-?.png | zr8bit sprite decode --width 16 --height 40 -o coin",
         "zr8bit sprite decode examples/all-modes.bin --width 8 --height 8 --sheet modes.png"});
    addSpriteOptions(*command, *options);
    command->add_option("-o,--output", options->folder, "Folder for frame-000.png, frame-001.png and so on")
        ->type_name("DIR");
    CLI::Option *sheet =
        addPictureFileOption(*command, "--sheet", options->sheet, "File for one picture with all frames");
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
        if (isStandardStream(options->folder))
            failOption("--output", options->folder,
                       QStringLiteral("a folder; --sheet takes a standard stream"));
        decode(*options);
    });
}

void addPreview(CLI::App &group, const std::shared_ptr<Options> &options)
{
    CLI::App *command =
        addCommand(group, "preview", "Show all frames of a sprite side by side, as a picture.",
                   {"zr8bit sprite encode examples/coin-?.png | zr8bit sprite preview --width 16 "
                    "--height 40 --screen --scale 2 -o coin.png",
                    "zr8bit sprite preview examples/all-modes.bin --width 8 --height 8 -o modes.png"});
    addSpriteOptions(*command, *options);
    addPictureOutputOption(*command, options->output);
    addScaleOption(*command, options->scale);
    command->add_flag("--screen", options->screen, "Show pixels in their shape on the screen, each 5 x 2");
    command->footer("Transparent pixels show a chequered ground.");
    command->callback([options] { preview(*options); });
}

} // namespace

void addSpriteCommand(CLI::App &app)
{
    CLI::App *group = app.add_subcommand("sprite", "Convert sprites to and from the TVC's 16-colour mode.");
    group->require_subcommand(1);
    const auto options = std::make_shared<Options>();
    addEncode(*group, options);
    addDecode(*group, options);
    addPreview(*group, options);
}
