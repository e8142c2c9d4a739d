#include "commands.h"
#include "console.h"
#include "failure.h"
#include "machinerun.h"
#include "outputs.h"
#include "pictures.h"

#include <zr8bitkit/zr8bittvcbench.h>
#include <zr8bitkit/zrmessagelogger.h>

#include <QtCore/QFileInfo>

#include <memory>

using ZR::ZR8BitMachine;
using ZR::ZR8BitTVCBench;

namespace {

constexpr int MostPictures = 10'000; // which are kept in the memory until the run has ended

struct Options
{
    QString program;
    std::optional<int> at; ///< always given
    std::optional<int> frames;
    std::optional<int> every;
    QString screenshot;
    QString sound;
    RunOptions run;
};

/// The screen as the bytes of a file of that name.
QByteArray screenshot(const ZR8BitTVCBench &bench, const QString &path)
{
    return encodePicture(bench.screen(ZR8BitTVCBench::Shape::Screen), path);
}

/// Runs a program on the bench, and takes pictures and the sound.
class BenchRun : public MachineRun
{
public:
    BenchRun(ZR8BitTVCBench &bench, const Options &options)
        : MachineRun(bench.machine(), options.run)
        , _bench(bench)
        , _options(options)
    {
        if (options.frames)
            endAtCycle(static_cast<quint64>(bench.frameCount() + *options.frames) *
                       ZR8BitTVCBench::FrameLength);
    }

protected:
    /// Runs a frame at most.
    ZR8BitMachine::RunEnd runPart(const ZR8BitMachine::RunLimits &limits) override;
    void addOutputs(Outputs &outputs) override;

private:
    QString _pictureName(qsizetype number) const;

    ZR8BitTVCBench &_bench;
    const Options &_options;
    QList<QByteArray> _pictures; ///< of --every, as bytes of files
};

ZR8BitMachine::RunEnd BenchRun::runPart(const ZR8BitMachine::RunLimits &limits)
{
    const qint64 frame = _bench.frameCount();
    const ZR8BitMachine::RunEnd end = _bench.frames(1, limits);
    if (!_options.every || _bench.frameCount() == frame || _bench.frameCount() % *_options.every != 0)
        return end;
    if (_pictures.size() == MostPictures)
        throw Failure(QStringLiteral("--every %1 gives more than %2 pictures!")
                          .arg(QString::number(*_options.every), QString::number(MostPictures)));
    _pictures.append(screenshot(_bench, _options.screenshot));
    return end;
}

void BenchRun::addOutputs(Outputs &outputs)
{
    if (!_options.screenshot.isEmpty() && !_options.every)
        outputs.add(_options.screenshot, screenshot(_bench, _options.screenshot));
    if (_options.every && _pictures.isEmpty())
        printWarning(
            QStringLiteral("The run was too short for a picture of --every %1").arg(*_options.every));
    for (qsizetype i = 0; i < _pictures.size(); ++i)
        outputs.add(_pictureName(i), _pictures[i]);
    if (_options.sound.isEmpty())
        return;
    outputs.add(_options.sound, [this](QIODevice &device) {
        QString error;
        if (!_bench.writeSound(device, 44100, {}, &error))
            throw Failure(error);
    });
}

/// The name of a numbered picture, as in screen-000.png.
QString BenchRun::_pictureName(qsizetype number) const
{
    const QFileInfo file(_options.screenshot);
    const auto digits = qMax<qsizetype>(3, QString::number(_pictures.size() - 1).size());
    const qsizetype suffix = file.suffix().isEmpty() ? 0 : file.suffix().size() + 1;
    return _options.screenshot.chopped(suffix) + u'-' + QString::number(number).rightJustified(digits, u'0') +
           _options.screenshot.last(suffix);
}

void run(Options &options)
{
    refuseStandardOutput("--screenshot", options.screenshot);
    refuseStandardOutput("--sound", options.sound);
    // A state has the program already, and where it was. Else it goes first, so that --load can change it.
    if (options.run.loadState.isEmpty()) {
        const QString at = QString::number(*options.at);
        options.run.loads.prepend(options.program + u'@' + at);
        options.run.start = options.run.start.value_or(at);
    }

    ZR::ZRMessageLogger logger;
    ZR8BitTVCBench bench;
    if (options.run.log)
        bench.machine().setLogger(&logger);
    BenchRun(bench, options).run();
}

} // namespace

void addTVCCommand(CLI::App &app)
{
    CLI::App *command =
        addCommand(app, "tvc", "Run a program of the TVC on a bench with its screen and its sound.",
                   {"zr8bit tvc examples/tvc-program/program.bin --at 0x2000 --screenshot screen.png",
                    "zr8bit tvc examples/tvc-program/program.bin --at 0x2000 --sound tune.wav"});
    auto options = std::make_shared<Options>();
    command
        ->add_option("PROGRAM", options->program,
                     "File with the bytes of the program, not read where --load-state has them")
        ->type_name("FILE")
        ->required();
    addNumberOption(*command, "--at", "ADDRESS", {0, 0xFFFF}, options->at,
                    "Where they go to, and where the run starts unless --start says otherwise")
        ->required();
    addNumberOption(*command, "--frames", "N", {}, options->frames,
                    "End after this many frames of the screen, 50 a second");
    CLI::Option *screenshot = addPictureFileOption(*command, "--screenshot", options->screenshot,
                                                   "Picture of the screen after the run, 640 x 480");
    addNumberOption(*command, "--every", "N", {1}, options->every,
                    "Number the screenshots instead: one every N frames, as in FILE-000.png")
        ->needs(screenshot);
    command->add_option("--sound", options->sound, "WAVE file for all that was to be heard")
        ->type_name("FILE");
    addRunOptions(*command, options->run);
    command->footer("Numbers are written as 512, 0x200 or $200, and an ADDRESS of other options than --at "
                    "may be a label\n"
                    "of --labels. Not modelled are the machine's ROM, keyboard, pages of the memory and "
                    "other screen modes.\n"
                    "Without another end the run goes on to a jump to itself or a HALT with interrupts off. "
                    "Ctrl-C ends it\n"
                    "too; nothing is written then.");
    command->callback([options] { run(*options); });
}
