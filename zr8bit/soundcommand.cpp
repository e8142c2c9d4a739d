#include "commands.h"
#include "console.h"
#include "failure.h"
#include "files.h"
#include "options.h"

#include <zr8bitlib/zr8bittvcsound.h>

#include <algorithm>
#include <memory>

using ZR::ZR8BitTVCSound;

namespace {

struct Options
{
    Files files;
    QString format = QStringLiteral("vpd");
    QString separator = QStringLiteral(",");
};

/// The cause of a failed conversion is in the message log.
void check(bool isConverted, const Options &options)
{
    if (!isConverted)
        throw Failure(QStringLiteral("Couldn't convert %1!").arg(inputName(options.files.input)));
}

void encode(const Options &options)
{
    QString text = readUtf8(options.files.input);
    // The end of a file's last line is not a part of the sound.
    if (text.endsWith(u'\n'))
        text.chop(text.endsWith(QLatin1String("\r\n")) ? 2 : 1);
    QByteArray sound;
    check(ZR8BitTVCSound::soundToBin(text, sound, options.format, options.separator), options);
    writeOutput(options.files.output, sound);
}

void decode(const Options &options)
{
    const QByteArray sound = readInput(options.files.input);
    QString text;
    check(ZR8BitTVCSound::binToSound(sound, text, options.format, options.separator), options);
    writeOutput(options.files.output, (text + u'\n').toUtf8());
}

void addConversion(CLI::App &group, const std::string &name, const std::string &description,
                   const std::vector<std::string> &examples, void (*convert)(const Options &))
{
    CLI::App *command = addCommand(group, name, description, examples);
    auto options = std::make_shared<Options>();
    addFiles(*command, options->files);
    command
        ->add_option(
            "--format", options->format,
            "Fields of a record: v volume (0-15), p pitch (1-4095), d duration (0-255); vpd by default")
        ->type_name("LETTERS");
    command
        ->add_option("--separator", options->separator,
                     "What stands between the numbers, without digits; a comma by default")
        ->type_name("TEXT");
    command->footer("A value out of range becomes the largest one, with a warning. The text ends with the\n"
                    "number 240, the stream with the byte 0xF0; an end that is missing is added.");
    command->callback([convert, options] {
        const QString &format = options->format;
        if (format.isEmpty() || std::any_of(format.begin(), format.end(), [](QChar letter) {
                return !QStringLiteral("vpd").contains(letter, Qt::CaseInsensitive);
            }))
            failOption("--format", format, QStringLiteral("one or more of the letters v, p and d"));
        // Numbers that run into each other could not be read back.
        const QString &separator = options->separator;
        if (separator.isEmpty() || std::any_of(separator.begin(), separator.end(),
                                               [](QChar character) { return character.isDigit(); }))
            failOption("--separator", separator, QStringLiteral("a text without digits"));
        convert(*options);
    });
}

} // namespace

void addSoundCommand(CLI::App &app)
{
    CLI::App *group = app.add_subcommand("sound", "Convert sounds to and from the TVC's byte stream.");
    group->require_subcommand(1);
    addConversion(*group, "encode", "Convert a text of decimal numbers to a byte stream.",
                  {"zr8bit sound encode examples/scale.txt -o scale.snd",
                   "echo '800 5 900 5' | zr8bit sound encode --format pd --separator ' ' > siren.snd"},
                  encode);
    addConversion(
        *group, "decode", "Convert a byte stream to a text of decimal numbers.",
        {"zr8bit sound encode examples/scale.txt | zr8bit sound decode",
         "zr8bit sound encode examples/scale.txt | zr8bit sound decode --separator ' ' -o scale.txt"},
        decode);
}
