#include "commands.h"
#include "console.h"
#include "failure.h"
#include "files.h"
#include "interrupts.h"
#include "options.h"
#include "progress.h"

#include <zr8bitkit/zr8bittvcwave.h>
#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bittvcsound.h>

#include <QtCore/QBuffer>

#include <algorithm>
#include <memory>

using ZR::ZR8BitTVCSound;
using ZR::ZR8BitTVCWave;

namespace {

struct Options
{
    Files files;
    QString format = QStringLiteral("vpd");
    QString separator = QStringLiteral(",");
};

struct RenderOptions
{
    Files files;
    QString plot;
    ZR8BitTVCWave::Options wave;
    std::optional<int> tick;
    std::optional<int> rate;
};

struct PitchOptions
{
    QStringList words;
    bool areValues = false;
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

void render(const RenderOptions &options)
{
    const QByteArray sound = readInput(options.files.input);
    ZR8BitTVCWave::Options wave = options.wave;
    wave.tick = options.tick.value_or(wave.tick);
    wave.rate = options.rate.value_or(wave.rate);
    QString error;
    const auto check = [&options, &error](bool isWritten) {
        if (!isWritten)
            throw Failure(
                QStringLiteral("Couldn't render %1: %2").arg(inputName(options.files.input), error));
    };
    QBuffer plot; // made before anything is written
    plot.open(QIODevice::WriteOnly);
    if (!options.plot.isEmpty())
        check(ZR8BitTVCWave::writePlot(sound, wave, plot, error));
    writeOutput(options.files.output, [&](QIODevice &file) {
        const InterruptDelay delay;
        Progress progress;
        const auto follow = [&](qint64 done, qint64 total) {
            progress.show(QStringLiteral("seconds"), done / wave.rate, total / wave.rate);
            return !delay.isInterrupted();
        };
        check(ZR8BitTVCWave::writeWave(sound, wave, file, follow, error));
    });
    if (!options.plot.isEmpty())
        writeOutput(options.plot, plot.data());
}

/// What a pitch plays, and how far that is from the frequency that is wanted.
QString pitchText(int pitch, double wanted)
{
    const double frequency = ZR8BitTVCWave::pitchFrequency(pitch);
    return QStringLiteral("%1 Hz, %2 cents")
        .arg(QString::number(frequency, 'f', 3),
             QString::number(ZR8BitTVCWave::cents(frequency, wanted), 'f', 2));
}

/// The line about a note or a frequency.
QString noteLine(const QString &word)
{
    const double note = ZR8BitTVCWave::noteFrequency(word);
    const double frequency = note != 0 ? note : word.toDouble();
    const int pitch = ZR8BitTVCWave::nearestPitch(frequency);
    if (pitch == 0)
        failOption(
            "NOTE", word,
            QStringLiteral("a note or a frequency such as A4, C#5, Eb3 or 440, from 47.7 to 195312.5 Hz"));
    return QStringLiteral("%1: pitch %2, %3\n")
        .arg(word, QString::number(pitch), pitchText(pitch, frequency));
}

/// The line about a pitch.
QString valueLine(const QString &word)
{
    const int pitch = ZR::ZRNumbers::parse(word).value_or(0);
    const QString note = ZR8BitTVCWave::nearestNote(ZR8BitTVCWave::pitchFrequency(pitch));
    if (note.isEmpty())
        failOption("--value", word, QStringLiteral("a pitch from 1 to 4095, written as 512, 0x200 or $200"));
    return QStringLiteral("%1: %2, %3\n")
        .arg(word, note, pitchText(pitch, ZR8BitTVCWave::noteFrequency(note)));
}

void printPitches(const PitchOptions &options)
{
    QString lines;
    for (const QString &word : options.words)
        lines += options.areValues ? valueLine(word) : noteLine(word);
    print(lines);
}

/// Ends parsing when a format has other letters than v, p and d or does not meet a condition.
void checkFormat(const QString &format, bool isGood, const QString &expected)
{
    if (!isGood || std::any_of(format.begin(), format.end(), [](QChar letter) {
            return !QStringLiteral("vpd").contains(letter, Qt::CaseInsensitive);
        }))
        failOption("--format", format, expected);
}

void addFormatOption(CLI::App &command, QString &target)
{
    command
        .add_option(
            "--format", target,
            "Fields of a record: v volume (0-15), p pitch (1-4095), d duration (0-255); vpd by default")
        ->type_name("LETTERS");
}

void addConversion(CLI::App &group, const std::string &name, const std::string &description,
                   const std::vector<std::string> &examples, void (*convert)(const Options &))
{
    CLI::App *command = addCommand(group, name, description, examples);
    auto options = std::make_shared<Options>();
    addFiles(*command, options->files);
    addFormatOption(*command, options->format);
    command
        ->add_option("--separator", options->separator,
                     "What stands between the numbers, without digits; a comma by default")
        ->type_name("TEXT");
    command->footer("A value out of range becomes the largest one, with a warning. The text ends with the\n"
                    "number 240, the stream with the byte 0xF0; an end that is missing is added.");
    command->callback([convert, options] {
        checkFormat(options->format, !options->format.isEmpty(),
                    QStringLiteral("one or more of the letters v, p and d"));
        // Numbers that run into each other could not be read back.
        const QString &separator = options->separator;
        if (separator.isEmpty() || std::any_of(separator.begin(), separator.end(),
                                               [](QChar character) { return character.isDigit(); }))
            failOption("--separator", separator, QStringLiteral("one or more characters without a digit"));
        convert(*options);
    });
}

void addRenderCommand(CLI::App &group)
{
    CLI::App *command =
        addCommand(group, "render", "Turn a byte stream into a WAVE file to listen to.",
                   {"zr8bit sound encode examples/tune.txt | zr8bit sound render -o tune.wav --plot tune.svg",
                    "echo '800 900' | zr8bit sound encode --format p --separator ' ' | zr8bit sound render "
                    "--format p --tick 250 -o siren.wav"});
    auto options = std::make_shared<RenderOptions>();
    addInputArgument(*command, options->files.input, "File with the bytes of the sound");
    addOutputOption(*command, options->files.output, "File for the WAVE");
    addFormatOption(*command, options->wave.format);
    addNumberOption(*command, "--tick", "MS", {1, 250}, options->tick,
                    "Milliseconds that a duration of 1 lasts, 1 to 250; 20 by default");
    addNumberOption(*command, "--rate", "HZ", {8000, 192000}, options->rate,
                    "Samples a second, 8000 to 192000; 44100 by default");
    command->add_option("--plot", options->plot, "File for a plot of the notes over time, as SVG")
        ->type_name("FILE");
    command->footer(
        "A record plays a square wave of 195312.5 Hz / (4096 - pitch), with no fades; without v "
        "at volume 15,\nwithout d for one tick. Above half the sample rate it is silent. The plot "
        "shows the volume as opacity.");
    command->callback([options] {
        const QString &format = options->wave.format;
        const auto count = [&format](QChar letter) { return format.count(letter, Qt::CaseInsensitive); };
        checkFormat(format, count(u'v') <= 1 && count(u'p') == 1 && count(u'd') <= 1,
                    QStringLiteral("the letter p, with v and d or without, each once"));
        if (options->plot == options->files.output)
            failOption("--plot", options->plot, QStringLiteral("another file than the WAVE"));
        render(*options);
    });
}

void addPitchCommand(CLI::App &group)
{
    CLI::App *command = addCommand(
        group, "pitch", "Print the pitch that is nearest to a note or a frequency, or what it plays.",
        {"zr8bit sound pitch C4 D4 E4 440", "zr8bit sound pitch --value 3652"});
    auto options = std::make_shared<PitchOptions>();
    command
        ->add_option("NOTE", options->words,
                     "Notes, such as A4, C#5 or Eb3, and frequencies in Hz; pitches with --value")
        ->type_name("WORD")
        ->required();
    command->add_flag("--value", options->areValues, "Take numbers for pitches, and print the nearest notes");
    command->footer("Prints the pitch, the frequency that it plays and how far that is from what was asked "
                    "for:\n100 cents are a semitone. A4 is 440 Hz, an octave begins with C.");
    command->callback([options] { printPitches(*options); });
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
    addRenderCommand(*group);
    addPitchCommand(*group);
}
