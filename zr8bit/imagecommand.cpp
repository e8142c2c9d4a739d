#include "commands.h"
#include "console.h"
#include "failure.h"
#include "files.h"
#include "options.h"
#include "outputs.h"
#include "pictures.h"
#include "preparation.h"

#include <zr8bitlib/zr8bittvccolor16.h>

#include <QtCore/QRegularExpression>

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
    QRect crop;
    Preparation preparation;
    QColor background; // invalid where it is not given
    bool screen = false;
};

/// The part of the picture that --crop asks for.
QImage cropped(QImage picture, const Options &options)
{
    if (options.crop.isNull())
        return picture;
    if (!picture.rect().contains(options.crop))
        throw Failure(QStringLiteral("The part to crop ends at %1,%2, the picture in %3 at %4,%5")
                          .arg(options.crop.x() + options.crop.width())
                          .arg(options.crop.y() + options.crop.height())
                          .arg(inputName(options.input))
                          .arg(picture.width())
                          .arg(picture.height()));
    return picture.copy(options.crop);
}

/// Warns of a picture that the screen has no place for.
void checkSize(const QSize &size, const Options &options)
{
    if (size.width() > Screen::Width || size.height() > Screen::Height)
        printWarning(QStringLiteral("%1 has %2 x %3 pixels, the TVC's screen %4 x %5; --screen fits it")
                         .arg(inputName(options.input))
                         .arg(size.width())
                         .arg(size.height())
                         .arg(Screen::Width)
                         .arg(Screen::Height));
}

/// The picture of the input with all that is asked for done to it.
QImage prepared(const Options &options)
{
    const Preparation &preparation = options.preparation;
    QImage picture = adjusted(cropped(readPicture(options.input), options), preparation);
    if (!preparation.size)
        checkSize(picture.size(), options);
    if (preparation.size)
        picture = Screen::fit(picture, *preparation.size, preparation.fit.value_or(Screen::Fit::Contain),
                              options.background);
    else if (options.background.isValid())
        picture = Screen::onBackground(picture, options.background);
    if (preparation.dither)
        picture = Screen::dither(picture, *preparation.dither, preparation.strength.value_or(100));
    if (picture.isNull())
        failTooLarge();
    return picture;
}

void encode(const Options &options)
{
    writeOutput(options.output, TVC::QImageToTVC16Bin(prepared(options)));
}

/// Writes a picture as it is to be looked at.
void show(QImage picture, const Options &options)
{
    if (options.screen)
        picture = Screen::screenView(picture);
    writeOutput(options.output, encodePicture(enlarge(picture, options.scale.value_or(1)), options.output));
}

void decode(const Options &options)
{
    const int width = options.width.value_or(Screen::Width);
    const QByteArray stream = readStream(options.input, Screen::bytesPerRow(width), QStringLiteral("rows"));
    show(TVC::QImageFromTVC16Bin(stream, width), options);
}

void preview(const Options &options)
{
    show(TVC::QImageToTVC16ColoredQImage(prepared(options)), options);
}

/// Writes the colours as GIMP's palette files have them.
void palette(const Options &options)
{
    struct Entry
    {
        ZR::ZRTVC16Colors color;
        const char *name;
    };
    constexpr Entry Entries[] = {{ZR::ZRTVC16ColorBlack, "Black"},
                                 {ZR::ZRTVC16ColorDarkBlue, "Dark blue"},
                                 {ZR::ZRTVC16ColorDarkRed, "Dark red"},
                                 {ZR::ZRTVC16ColorDarkMagenta, "Dark magenta"},
                                 {ZR::ZRTVC16ColorDarkGreen, "Dark green"},
                                 {ZR::ZRTVC16ColorDarkCyan, "Dark cyan"},
                                 {ZR::ZRTVC16ColorDarkYellow, "Dark yellow"},
                                 {ZR::ZRTVC16ColorGray, "Grey"},
                                 {ZR::ZRTVC16ColorBlue, "Blue"},
                                 {ZR::ZRTVC16ColorRed, "Red"},
                                 {ZR::ZRTVC16ColorMagenta, "Magenta"},
                                 {ZR::ZRTVC16ColorGreen, "Green"},
                                 {ZR::ZRTVC16ColorCyan, "Cyan"},
                                 {ZR::ZRTVC16ColorYellow, "Yellow"},
                                 {ZR::ZRTVC16ColorWhite, "White"}};
    QString text = QStringLiteral("GIMP Palette\nName: TVC\nColumns: 8\n#\n");
    for (const Entry &entry : Entries) {
        const QColor color = TVC::TVC16ColorToQColor(entry.color);
        text += QStringLiteral("%1 %2 %3\t%4\n")
                    .arg(color.red(), 3)
                    .arg(color.green(), 3)
                    .arg(color.blue(), 3)
                    .arg(QLatin1String(entry.name));
    }
    writeOutput(options.output, text.toUtf8());
}

void addCropOption(CLI::App &command, Options &options)
{
    const auto store = [&options](const QString &value) {
        static const QRegularExpression form(QStringLiteral("^(\\d{1,5}),(\\d{1,5}),(\\d{1,5})x(\\d{1,5})$"));
        const QRegularExpressionMatch match = form.match(value);
        const auto number = [&match](int group) { return match.captured(group).toInt(); };
        const QRect part(number(1), number(2), number(3), number(4));
        if (!match.hasMatch() || part.isEmpty())
            failOption("--crop", value,
                       QStringLiteral(
                           "a left column, a top row and a size of at least 1x1, written as 10,0,320x240"));
        options.crop = part;
    };
    command.add_option_function<QString>("--crop", store, "Take a part of the picture, first of all")
        ->type_name("X,Y,WxH");
}

/// Adds what encode and preview make of a picture that is no picture of the TVC yet.
void addPictureOptions(CLI::App &command, Options &options)
{
    addInputArgument(command, options.input, "Picture of any format that Qt reads, such as PNG");
    addCropOption(command, options);
    addFitSizeOption(command, options.preparation);
    command.add_flag("--screen", options.screen, "Scale it to the screen, as --size 128x240");
    addColorOption(command, "--background", options.background,
                   "Colour of the bars and below transparent pixels; black by default");
    addPreparationOptions(command, options.preparation);
}

/// Checks those options as a whole and turns --screen into a size.
void resolve(Options &options)
{
    std::optional<QSize> &size = options.preparation.size;
    if (options.screen && size)
        throw CLI::ValidationError("--size", "only one of --size and --screen is allowed");
    if (options.screen)
        size = QSize(Screen::Width, Screen::Height);
    checkPreparation(options.preparation, "--size or --screen");
}

void addEncode(CLI::App &group, const std::shared_ptr<Options> &options)
{
    CLI::App *command =
        addCommand(group, "encode", "Turn a picture into the bytes that the TVC shows.",
                   {"zr8bit image encode --screen --dither floyd-steinberg examples/balls.png -o balls.bin",
                    "zr8bit image encode < examples/coin-0.png > coin-0.bin"});
    addPictureOptions(*command, *options);
    addOutputOption(*command, options->output, "File for the bytes");
    command->footer(
        "Each pixel becomes its closest colour of the TVC. Transparency counts where a picture is scaled or "
        "has a\nbackground. The bytes do not say how wide the picture is: two pixels are a byte, and an odd "
        "width is filled\nup with black.");
    command->callback([options] {
        resolve(*options);
        encode(*options);
    });
}

void addDecode(CLI::App &group, const std::shared_ptr<Options> &options)
{
    CLI::App *command = addCommand(
        group, "decode", "Turn the bytes of a picture into a picture file.",
        {"zr8bit image encode examples/sunset.png | zr8bit image decode --width 128 -o sunset-tvc.png",
         "zr8bit image decode examples/all-modes.bin --width 32 -o modes.png"});
    addInputArgument(*command, options->input, "File with the bytes of the picture");
    addPictureOutputOption(*command, options->output);
    addNumberOption(*command, "--width", "PIXELS", {1, LongestSide}, options->width,
                    "Width of the picture; 128 by default with --screen");
    command->add_flag("--screen", options->screen, "Show pixels in their shape on the screen, each 5 x 2");
    command->footer("A last row that is cut is black from where the bytes end.");
    command->callback([options] {
        if (!options->width && !options->screen)
            throw CLI::RequiredError("--width or --screen");
        decode(*options);
    });
}

void addPreview(CLI::App &group, const std::shared_ptr<Options> &options)
{
    CLI::App *command = addCommand(
        group, "preview", "Show what a picture looks like on the TVC.",
        {"zr8bit image preview --screen --dither floyd-steinberg examples/balls.png -o balls-tvc.png",
         "zr8bit image preview < examples/coin-0.png > coin-0-preview.png"});
    addPictureOptions(*command, *options);
    addPictureOutputOption(*command, options->output);
    addScaleOption(*command, options->scale);
    command->footer(
        "It shows what encode gives with the same options. With --screen each pixel is 5 x 2, as its "
        "shape is:\n640 x 480 in all.");
    command->callback([options] {
        resolve(*options);
        preview(*options);
    });
}

void addPalette(CLI::App &group, const std::shared_ptr<Options> &options)
{
    CLI::App *command =
        addCommand(group, "palette", "Write the TVC's colours as a palette for paint programs.",
                   {"zr8bit image palette -o tvc.gpl", "zr8bit image palette | grep Dark"});
    addOutputOption(*command, options->output, "File for the palette, in GIMP's format");
    command->callback([options] { palette(*options); });
}

} // namespace

void addImageCommand(CLI::App &app)
{
    CLI::App *group = app.add_subcommand("image", "Convert pictures to and from the TVC's 16-colour mode.");
    group->require_subcommand(1);
    const auto options = std::make_shared<Options>();
    addEncode(*group, options);
    addDecode(*group, options);
    addPreview(*group, options);
    addPalette(*group, options);
}
