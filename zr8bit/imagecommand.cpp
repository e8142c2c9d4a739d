#include "commands.h"
#include "files.h"
#include "options.h"
#include "pictures.h"

#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <array>
#include <memory>

using Screen = ZR::ZR8BitTVCScreen;
using TVC = ZR::ZR8BitTVCColor16;

namespace {

struct Options
{
    QString input = QStringLiteral("-");
    QString output = QStringLiteral("-");
    std::optional<int> width;
    std::optional<int> scale;
    std::optional<QSize> size;
    std::optional<Screen::Fit> fit;
    std::optional<Screen::Dither> dither;
    QColor background; // invalid where it is not given
    bool screen = false;
};

/// The picture of the input, fitted and dithered where that is asked for.
QImage prepared(const Options &options)
{
    QImage picture = readPicture(options.input);
    if (options.size)
        picture =
            Screen::fit(picture, *options.size, options.fit.value_or(Screen::Contain), options.background);
    if (options.dither)
        picture = Screen::dither(picture, *options.dither);
    if (picture.isNull())
        failTooLarge();
    return picture;
}

void encode(const Options &options)
{
    writeOutput(options.output, TVC::QImageToTVC16Bin(prepared(options)));
}

void decode(const Options &options)
{
    const QByteArray stream = readStream(options.input, bytesPerRow(*options.width), QStringLiteral("rows"));
    writeOutput(options.output, toPng(TVC::QImageFromTVC16Bin(stream, *options.width)));
}

void preview(const Options &options)
{
    QImage picture = TVC::QImageToTVC16ColoredQImage(prepared(options));
    if (options.screen)
        picture = Screen::screenView(picture);
    writeOutput(options.output, toPng(enlarge(picture, options.scale.value_or(1))));
}

/// Adds what encode and preview make of a picture that is no picture of the TVC yet.
void addPrepareOptions(CLI::App &command, Options &options)
{
    constexpr int LongestFittedSide = 4096;
    addSizeOption(command, "--size", LongestFittedSide, options.size,
                  "Scale the picture to a size in pixels of the TVC, which are 2.5 times as wide as high");
    command.add_flag("--screen", options.screen, "Scale it to the screen, as --size 128x240");
    addWordOption(
        command, "--fit", {QStringLiteral("contain"), QStringLiteral("cover"), QStringLiteral("stretch")},
        [&options](size_t index) {
            constexpr std::array Fits = {Screen::Contain, Screen::Cover, Screen::Stretch};
            options.fit = Fits.at(index);
        },
        "Where the shapes differ, show all with bars, fill and cut, or fill with all; contain by default");
    addColorOption(command, "--background", options.background, "Colour of the bars; black by default");
    addWordOption(
        command, "--dither",
        {QStringLiteral("none"), QStringLiteral("bayer"), QStringLiteral("floyd-steinberg")},
        [&options](size_t index) {
            constexpr std::array Dithers = {Screen::None, Screen::Bayer, Screen::FloydSteinberg};
            options.dither = Dithers.at(index);
        },
        "Mix colours that the TVC has not, in a pattern or most finely; none by default");
}

/// Checks those options as a whole and turns --screen into a size.
void resolve(Options &options)
{
    if (options.screen && options.size)
        throw CLI::ValidationError("--size", "only one of --size and --screen is allowed");
    if (options.screen)
        options.size = QSize(Screen::Width, Screen::Height);
    if (!options.size && (options.fit || options.background.isValid()))
        throw CLI::ValidationError(options.fit ? "--fit" : "--background", "needs --size or --screen");
}

} // namespace

void addImageCommand(CLI::App &app)
{
    CLI::App *group = app.add_subcommand("image", "Convert pictures to and from the TVC's 16-colour mode.");
    group->require_subcommand(1);
    auto options = std::make_shared<Options>();
    const std::string picture = "Picture of any format that Qt reads, such as PNG";

    CLI::App *command =
        addCommand(*group, "encode", "Turn a picture into the bytes that the TVC shows.",
                   {"zr8bit image encode --screen --dither floyd-steinberg examples/balls.png -o balls.bin",
                    "zr8bit image encode < examples/coin-0.png > coin-0.bin"});
    addInputArgument(*command, options->input, picture);
    addOutputOption(*command, options->output, "File for the bytes");
    addPrepareOptions(*command, *options);
    command->footer(
        "Each pixel becomes its closest colour of the TVC; transparency plays no part. The bytes do "
        "not say how\nwide the picture is: two pixels are a byte, and an odd width is filled up "
        "with black.");
    command->callback([options] {
        resolve(*options);
        encode(*options);
    });

    command = addCommand(
        *group, "decode", "Turn the bytes of a picture into a PNG.",
        {"zr8bit image encode examples/sunset.png | zr8bit image decode --width 128 -o sunset-tvc.png",
         "zr8bit image decode examples/all-modes.bin --width 32 -o modes.png"});
    addInputArgument(*command, options->input, "File with the bytes of the picture");
    addOutputOption(*command, options->output, "File for the PNG");
    addNumberOption(*command, "--width", "PIXELS", {1, LongestSide}, options->width, "Width of the picture")
        ->required();
    command->footer("A last row that is cut is black from where the bytes end.");
    command->callback([options] { decode(*options); });

    command = addCommand(
        *group, "preview", "Show as PNG what a picture looks like on the TVC.",
        {"zr8bit image preview --screen --dither floyd-steinberg examples/balls.png -o balls-tvc.png",
         "zr8bit image preview < examples/coin-0.png > coin-0-preview.png"});
    addInputArgument(*command, options->input, picture);
    addOutputOption(*command, options->output, "File for the PNG");
    addPrepareOptions(*command, *options);
    addScaleOption(*command, options->scale);
    command->footer(
        "It shows what encode gives with the same options. With --screen each pixel is 5 x 2, as its "
        "shape is:\n640 x 480 in all.");
    command->callback([options] {
        resolve(*options);
        preview(*options);
    });
}
