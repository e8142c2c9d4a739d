#include "commands.h"
#include "console.h"
#include "failure.h"
#include "files.h"
#include "options.h"
#include "pictures.h"

#include <zr8bitlib/zr8bittvccolor16.h>

#include <QtGui/QPainter>

#include <limits>
#include <memory>

using TVC = ZR::ZR8BitTVCColor16;

namespace {

struct Options
{
    QStringList inputs;
    QString input = QStringLiteral("-");
    QString output = QStringLiteral("-");
    QColor transparent = QColor(255, 0, 255);
    std::optional<int> width;
    std::optional<int> height;
    std::optional<int> scale;
};

void encode(const Options &options)
{
    QList<QImage> frames;
    for (const QString &path : options.inputs) {
        frames += readPicture(path);
        const QSize first = frames.first().size();
        const QSize size = frames.last().size();
        if (size != first)
            printWarning(QStringLiteral("%1 has %2 x %3 pixels, the first frame %4 x %5")
                             .arg(inputName(path), QString::number(size.width()),
                                  QString::number(size.height()), QString::number(first.width()),
                                  QString::number(first.height())));
    }
    writeOutput(options.output, TVC::QImagesToTVC16Sprite(frames, options.transparent));
}

/// The picture of a frame with transparent pixels, where the library's has white ones.
QImage applyMask(const QImage &picture, const QByteArray &frame)
{
    QImage result = picture.convertToFormat(QImage::Format_ARGB32);
    const qint64 plane = frame.size() / 2;
    for (int y = 0; y < result.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            const qint64 place = y * bytesPerRow(result.width()) + x / 2;
            const int bits = x % 2 == 0 ? 0xAA : 0x55;
            if (place < plane && (frame.at(plane + place) & bits) == bits)
                line[x] &= 0x00FFFFFF;
        }
    }
    return result;
}

/// The pictures of all frames of the input.
QList<QImage> readFrames(const Options &options)
{
    const QString &path = options.input;
    const qint64 frameSize = 2 * bytesPerRow(*options.width) * *options.height;
    const QByteArray stream = readStream(path, frameSize, QStringLiteral("frames"));
    QList<QImage> frames = TVC::QImagesFromTVC16Sprite(stream, *options.width, *options.height);
    // One row of the first plane, which may be left of a cut frame, makes no picture.
    if (stream.size() % frameSize == bytesPerRow(*options.width))
        frames.removeLast();
    for (qsizetype i = 0; i < frames.size(); ++i) {
        frames[i] = applyMask(frames.at(i), stream.mid(i * frameSize, frameSize));
        if (frames.at(i).isNull()) // there was not enough memory for it
            failTooLarge();
    }
    if (frames.isEmpty())
        throw Failure(QStringLiteral("There is no frame in %1!").arg(inputName(path)));
    return frames;
}

void decode(const Options &options)
{
    QList<NamedData> files;
    for (const QImage &frame : readFrames(options))
        files.append(
            {QStringLiteral("frame-%1.png").arg(files.size(), 3, 10, QLatin1Char('0')), toPng(frame)});
    writeFolder(options.output, files);
}

/// Squares of two greys, by which transparent pixels are known.
QBrush checkerboard()
{
    constexpr int Square = 2;
    QImage tile(2 * Square, 2 * Square, QImage::Format_RGB32);
    for (int y = 0; y < tile.height(); ++y) {
        for (int x = 0; x < tile.width(); ++x)
            tile.setPixel(x, y, x / Square == y / Square ? 0xFFD0D0D0 : 0xFFB0B0B0);
    }
    return QBrush(tile);
}

void preview(const Options &options)
{
    const QList<QImage> frames = readFrames(options);
    const QSize size = frames.first().size(); // none is larger: a cut one has fewer rows
    QImage sheet;
    if (frames.size() <= std::numeric_limits<int>::max() / size.width())
        sheet = QImage(size.width() * static_cast<int>(frames.size()), size.height(), QImage::Format_RGB32);
    if (sheet.isNull())
        failTooLarge();
    QPainter painter(&sheet);
    painter.fillRect(sheet.rect(), checkerboard());
    int left = 0;
    for (const QImage &frame : frames) {
        painter.drawImage(left, 0, frame);
        left += size.width();
    }
    painter.end();
    writeOutput(options.output, toPng(enlarge(sheet, options.scale.value_or(1))));
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

    CLI::App *command =
        addCommand(*group, "encode", "Turn pictures into the frames of a sprite.",
                   {"zr8bit sprite encode examples/coin-?.png -o coin.bin",
                    "zr8bit sprite encode --transparent black examples/sunset.png > sunset-sprite.bin"});
    command
        ->add_option("INPUT", options->inputs,
                     "Pictures of any format that Qt reads, such as PNG, one a frame; standard input for -")
        ->type_name("FILE")
        ->required();
    addOutputOption(*command, options->output, "File for the bytes");
    addColorOption(*command, "--transparent", options->transparent,
                   "Colour of transparent pixels; #ff00ff by default");
    command->footer(
        "Pixels of exactly the transparent colour are transparent, and so are those with an alpha "
        "below 128 of 255,\nwhich count as that colour. Every other pixel becomes its closest colour "
        "of the TVC. The bytes do not say\nhow large a frame is.");
    command->callback([options] { encode(*options); });

    command = addCommand(
        *group, "decode", "Turn each frame of a sprite into a PNG with transparent pixels.",
        {"zr8bit sprite encode examples/coin-?.png | zr8bit sprite decode --width 16 --height 16 -o coin",
         "zr8bit sprite decode examples/all-modes.bin --width 8 --height 8 -o modes"});
    addSpriteOptions(*command, *options);
    command->add_option("-o,--output", options->output, "Folder for frame-000.png, frame-001.png and so on")
        ->type_name("DIR")
        ->required();
    command->footer(
        "The last frame of a sprite that is cut has fewer rows. Other files of the folder stay as they are.");
    command->callback([options] { decode(*options); });

    command = addCommand(*group, "preview", "Show all frames of a sprite side by side, as PNG.",
                         {"zr8bit sprite encode examples/coin-?.png | zr8bit sprite preview --width 16 "
                          "--height 16 --scale 8 -o coin.png",
                          "zr8bit sprite preview examples/all-modes.bin --width 8 --height 8 -o modes.png"});
    addSpriteOptions(*command, *options);
    addOutputOption(*command, options->output, "File for the PNG");
    addScaleOption(*command, options->scale);
    command->footer("Transparent pixels show a chequered ground.");
    command->callback([options] { preview(*options); });
}
