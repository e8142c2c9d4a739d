#include "commands.h"
#include "files.h"
#include "options.h"
#include "pictures.h"

#include <zr8bitlib/zr8bittvccolor16.h>

#include <memory>

using TVC = ZR::ZR8BitTVCColor16;

namespace {

struct Options
{
    QString input = QStringLiteral("-");
    QString output = QStringLiteral("-");
    std::optional<int> width;
    std::optional<int> scale;
};

void encode(const Options &options)
{
    const QImage picture = readPicture(options.input);
    writeOutput(options.output, TVC::QImageToTVC16Bin(picture));
}

void decode(const Options &options)
{
    const QByteArray stream = readStream(options.input, bytesPerRow(*options.width), QStringLiteral("rows"));
    writeOutput(options.output, toPng(TVC::QImageFromTVC16Bin(stream, *options.width)));
}

void preview(const Options &options)
{
    const QImage picture = TVC::QImageToTVC16ColoredQImage(readPicture(options.input));
    writeOutput(options.output, toPng(enlarge(picture, options.scale.value_or(1))));
}

} // namespace

void addImageCommand(CLI::App &app)
{
    CLI::App *group = app.add_subcommand("image", "Convert pictures to and from the TVC's 16-colour mode.");
    group->require_subcommand(1);
    auto options = std::make_shared<Options>();
    const std::string picture = "Picture of any format that Qt reads, such as PNG";

    CLI::App *command = addCommand(*group, "encode", "Turn a picture into the bytes that the TVC shows.",
                                   {"zr8bit image encode examples/sunset.png -o sunset.bin",
                                    "zr8bit image encode < examples/coin-0.png > coin-0.bin"});
    addInputArgument(*command, options->input, picture);
    addOutputOption(*command, options->output, "File for the bytes");
    command->footer(
        "Each pixel becomes its closest colour of the TVC; transparency plays no part. The bytes do "
        "not say how\nwide the picture is: two pixels are a byte, and an odd width is filled up "
        "with black.");
    command->callback([options] { encode(*options); });

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

    command = addCommand(*group, "preview", "Show as PNG what a picture looks like on the TVC.",
                         {"zr8bit image preview examples/sunset.png --scale 2 -o sunset-preview.png",
                          "zr8bit image preview < examples/coin-0.png > coin-0-preview.png"});
    addInputArgument(*command, options->input, picture);
    addOutputOption(*command, options->output, "File for the PNG");
    addScaleOption(*command, options->scale);
    command->callback([options] { preview(*options); });
}
