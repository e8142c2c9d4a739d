#include "commands.h"
#include "console.h"
#include "failure.h"
#include "files.h"
#include "interrupts.h"
#include "options.h"
#include "outputs.h"
#include "progress.h"

#include <zr8bitkit/zr8bittvcmidi.h>
#include <zr8bitkit/zr8bittvcpitch.h>
#include <zr8bitkit/zr8bittvcsoundplot.h>
#include <zr8bitkit/zr8bittvctune.h>
#include <zr8bitkit/zr8bittvcwave.h>

#include <memory>

using ZR::ZR8BitTVCMidi;
using ZR::ZR8BitTVCMidiReport;
using ZR::ZR8BitTVCPitch;
using ZR::ZR8BitTVCSoundPlot;
using ZR::ZR8BitTVCTune;
using ZR::ZR8BitTVCWave;

namespace {

struct Options
{
    Files files;
    ZR8BitTVCTune::Options tune;
};

struct ImportOptions
{
    Files files;
    std::optional<int> track;
    std::optional<int> channel;
    std::optional<int> tick;
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

/// Throws Failure for what the kit has refused.
void check(bool isDone, const QString &verb, const QString &input, const QString &error)
{
    if (!isDone)
        throw Failure(QStringLiteral("Couldn't %1 %2: %3").arg(verb, inputName(input), error));
}

void encode(const Options &options)
{
    const QString text = readUtf8(options.files.input);
    QByteArray sound;
    QString error;
    check(ZR8BitTVCTune::toBytes(text, sound, options.tune, &error), QStringLiteral("convert"),
          options.files.input, error);
    writeOutput(options.files.output, sound);
}

/// The text of a sound.
QString textOf(const QByteArray &sound, const QString &input, const ZR8BitTVCTune::Options &options)
{
    QString text;
    QString error;
    check(ZR8BitTVCTune::fromBytes(sound, text, options, &error), QStringLiteral("convert"), input, error);
    return text + u'\n';
}

void decode(const Options &options)
{
    const QByteArray sound = readInput(options.files.input);
    writeOutput(options.files.output, textOf(sound, options.files.input, options.tune).toUtf8());
}

/// Warns of notes that a tune has lost.
void warn(const ZR8BitTVCMidiReport &report)
{
    const QString notes = QString::number(report.notes);
    if (report.hidden > 0)
        printWarning(QStringLiteral("%1 of %2 notes are not heard: higher ones sound, or a tick is too long")
                         .arg(QString::number(report.hidden), notes));
    if (report.outOfRange > 0)
        printWarning(QStringLiteral("%1 of %2 notes are not heard: they are below G1, the lowest")
                         .arg(QString::number(report.outOfRange), notes));
    if (report.drums > 0)
        printWarning(QStringLiteral("Notes of drums, on channel 10, are left out: %1").arg(report.drums));
}

void importMidi(const ImportOptions &options)
{
    const QString &input = options.files.input;
    ZR8BitTVCMidi::Options midi;
    midi.track = options.track.value_or(midi.track);
    midi.channel = options.channel.value_or(midi.channel);
    midi.tick = options.tick.value_or(midi.tick);
    QByteArray sound;
    ZR8BitTVCMidiReport report;
    QString error;
    check(ZR8BitTVCMidi::toSound(readInput(input), sound, midi, &report, &error), QStringLiteral("import"),
          input, error);
    warn(report);
    ZR8BitTVCTune::Options notes;
    notes.notes = true;
    const QString head = QStringLiteral("# volume, note, ticks of %1 ms\n").arg(midi.tick);
    writeOutput(options.files.output, (head + textOf(sound, input, notes)).toUtf8());
}

void render(const RenderOptions &options)
{
    const QByteArray sound = readInput(options.files.input);
    ZR8BitTVCWave::Options wave = options.wave;
    wave.tick = options.tick.value_or(wave.tick);
    wave.rate = options.rate.value_or(wave.rate);
    QString error;
    const auto checkRendered = [&options, &error](bool isRendered) {
        check(isRendered, QStringLiteral("render"), options.files.input, error);
    };
    Outputs outputs;
    if (!options.plot.isEmpty()) // first, for it is quick
        outputs.add(options.plot, [&](QIODevice &file) {
            checkRendered(ZR8BitTVCSoundPlot::write(sound, wave, file, &error));
        });
    outputs.add(options.files.output, [&](QIODevice &file) {
        Progress progress;
        const auto follow = [&](qint64 done, qint64 total) {
            progress.show(QStringLiteral("seconds"), done / wave.rate, total / wave.rate);
            return !InterruptDelay::isInterrupted();
        };
        checkRendered(ZR8BitTVCWave::writeWave(sound, wave, file, follow, &error));
    });
    outputs.write();
}

/// What a pitch plays, and how far that is from the frequency that is wanted.
QString pitchText(int pitch, double wanted)
{
    const double frequency = ZR8BitTVCPitch::frequency(pitch);
    return QStringLiteral("%1 Hz, %2 cents")
        .arg(QString::number(frequency, 'f', 3),
             QString::number(ZR8BitTVCPitch::cents(frequency, wanted), 'f', 2));
}

/// The line about a note or a frequency.
QString noteLine(const QString &word)
{
    const double note = ZR8BitTVCPitch::noteFrequency(word);
    const double frequency = note != 0 ? note : word.toDouble();
    const int pitch = ZR8BitTVCPitch::nearest(frequency);
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
    const int pitch = parseNumber("--value", word, QStringLiteral("a pitch"),
                                  {ZR8BitTVCPitch::Lowest, ZR8BitTVCPitch::Highest});
    const QString note = ZR8BitTVCPitch::nearestNote(ZR8BitTVCPitch::frequency(pitch));
    return QStringLiteral("%1: %2, %3\n")
        .arg(word, note, pitchText(pitch, ZR8BitTVCPitch::noteFrequency(note)));
}

void printPitches(const PitchOptions &options)
{
    QString lines;
    for (const QString &word : options.words)
        lines += options.areValues ? valueLine(word) : noteLine(word);
    print(lines);
}

void addFormatOption(CLI::App &command, QString &target)
{
    command
        .add_option(
            "--format", target,
            "Fields of a record: v volume (0-15), p pitch (1-4095), d duration (0-255); vpd by default")
        ->type_name("LETTERS");
}

void addTickOption(CLI::App &command, std::optional<int> &target)
{
    addNumberOption(command, "--tick", "MS", {ZR8BitTVCWave::ShortestTick, ZR8BitTVCWave::LongestTick},
                    target, "Milliseconds that a duration of 1 lasts, 1 to 250; 20 by default");
}

void addConversion(CLI::App &group, const std::string &name, const std::string &description,
                   const std::vector<std::string> &examples, void (*convert)(const Options &))
{
    CLI::App *command = addCommand(group, name, description, examples);
    auto options = std::make_shared<Options>();
    addFiles(*command, options->files);
    addFormatOption(*command, options->tune.format);
    command
        ->add_option("--separator", options->tune.separator,
                     "What stands between the numbers, without digits; a comma by default")
        ->type_name("TEXT");
    command->add_flag("--rests", options->tune.rests, "A note \"-\" is silence");
    if (convert == decode)
        command->add_flag("--notes", options->tune.notes,
                          "Write notes for pitches that are exactly theirs, and a record a line");
    command->footer(
        "A value out of range becomes the largest one, with a warning. The text ends with the\n"
        "number 240, the stream with the byte 0xF0; an end that is missing is added. In a text, a\n"
        "note such as A4, C#5 or Eb3 may stand for a pitch, ends of lines separate numbers too, and\n"
        "\"#\" after white space begins a comment, which goes on to the end of the line.");
    command->callback([convert, options] {
        QString error;
        if (!ZR8BitTVCTune::isGood(options->tune, &error))
            throw CLI::ValidationError(error.toStdString());
        convert(*options);
    });
}

void addImportCommand(CLI::App &group)
{
    CLI::App *command =
        addCommand(group, "import", "Turn a MIDI file into a text of volumes, notes and durations.",
                   {"zr8bit sound import examples/tune.mid --track 2 -o tune.txt",
                    "zr8bit sound import examples/tune.mid --channel 2 | zr8bit sound encode | zr8bit sound "
                    "render -o bass.wav"});
    auto options = std::make_shared<ImportOptions>();
    addInputArgument(*command, options->files.input, "Standard MIDI file");
    addOutputOption(*command, options->files.output, "File for the text");
    addNumberOption(*command, "--track", "N", {1, 0xFFFF}, options->track,
                    "Take the notes of one track, counted from 1 on; all by default");
    addNumberOption(*command, "--channel", "N", {1, 16}, options->channel,
                    "Take the notes of one channel, 1 to 16; all but 10 by default, which has the drums");
    addTickOption(*command, options->tick);
    command->footer(
        "The TVC has one voice: the highest note that sounds is taken, with its velocity as volume.\n"
        "Changes of the tempo count. Warnings say how many notes were left out.");
    command->callback([options] { importMidi(*options); });
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
    addTickOption(*command, options->tick);
    addNumberOption(*command, "--rate", "HZ", {ZR8BitTVCWave::LowestRate, ZR8BitTVCWave::HighestRate},
                    options->rate, "Samples a second, 8000 to 192000; 44100 by default");
    command->add_option("--plot", options->plot, "File for a plot of the notes over time, as SVG")
        ->type_name("FILE");
    command->footer(
        "A record plays a square wave of 195312.5 Hz / (4096 - pitch), with no fades; without v "
        "at volume 15,\nwithout d for one tick. Above half the sample rate it is silent. The plot "
        "shows the volume as opacity.");
    command->callback([options] {
        QString error;
        if (!ZR8BitTVCWave::isFormat(options->wave.format, &error))
            throw CLI::ValidationError("--format", error.toStdString());
        if (!options->plot.isEmpty() && !repeatedOutput({options->files.output, options->plot}).isEmpty())
            throw CLI::ValidationError(
                "--plot", QStringLiteral("'%1' and the WAVE are one file").arg(options->plot).toStdString());
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
    addImportCommand(*group);
    addRenderCommand(*group);
    addPitchCommand(*group);
}
