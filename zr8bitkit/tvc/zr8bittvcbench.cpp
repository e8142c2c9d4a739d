#include <zr8bitkit/zr8bittvcbench.h>

#include "zrfailure_p.h"

#include <zr8bitkit/zr8bitaddressspace.h>
#include <zr8bitkit/zr8bittvcscreen.h>
#include <zr8bitkit/zrmapconfig.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <QtCore/QIODevice>

#include <algorithm>
#include <new>

using namespace Qt::StringLiterals;

namespace ZR {

namespace {

/// As many tones as are kept: 64 MiB.
constexpr qsizetype MostTones = qsizetype(1) << 22;

} // namespace

struct ZR8BitTVCBench::Private
{
    Private();

    void mapPort(int port, const std::function<void(quint8 value)> &out);
    void changeTone();
    void endTone();

    ZR8BitMachine machine;

    // The sound generator
    int pitch = 0;
    int volume = 0;
    bool isOn = false;

    ZR8BitTVCTone present;      ///< what is heard now, without its end
    QList<ZR8BitTVCTone> tones; ///< what was heard before
    bool isTooLong = false;     ///< there were more tones
};

ZR8BitTVCBench::Private::Private()
{
    ZRMapConfig config{{u"Computer.Name"_s, u"TVC"_s},
                       {u"Computer.RAMs"_s, u"MAIN"_s},
                       {u"RAM_MAIN.Size"_s, u"65536"_s},
                       {u"Computer.Processors"_s, u"Z80"_s},
                       {u"PROC_Z80.Type"_s, u"Z80"_s}};
    if (!machine.load(&config))
        return; // without memory; whatever is wanted of the machine fails

    mapPort(0x04, [this](quint8 value) {
        pitch = (pitch & 0xF00) | value;
        changeTone();
    });
    mapPort(0x05, [this](quint8 value) {
        pitch = (value & 0x0F) << 8 | (pitch & 0xFF);
        isOn = value & 0x10;
        changeTone();
    });
    mapPort(0x06, [this](quint8 value) {
        volume = value >> 2 & 0x0F;
        changeTone();
    });
    mapPort(0x07, [this](quint8) { machine.chip()->setIRQ(false); });
}

/// Lets the low byte of a port's number choose it.
void ZR8BitTVCBench::Private::mapPort(int port, const std::function<void(quint8 value)> &out)
{
    machine.addressSpace().mapPort(port, 0xFF, {}, [out](quint16, quint8 value) { out(value); });
}

/// Takes over what the ports say.
void ZR8BitTVCBench::Private::changeTone()
{
    const bool isHeard = isOn && volume > 0;
    const ZR8BitTVCTone tone{0, isHeard ? pitch : 0, isHeard ? volume : 0};
    if (tone.pitch == present.pitch && tone.volume == present.volume)
        return;
    endTone();
    present = tone;
}

/// Keeps what was heard up to now.
void ZR8BitTVCBench::Private::endTone()
{
    const auto now = static_cast<qint64>(machine.cycles());
    while (!tones.isEmpty() && tones.last().end >= now) // of a state that was restored since
        tones.removeLast();
    if (tones.size() == MostTones) {
        isTooLong = true;
        return;
    }
    try {
        tones.append({now, present.pitch, present.volume});
    } catch (const std::bad_alloc &) {
        isTooLong = true;
    }
}

ZR8BitTVCBench::ZR8BitTVCBench(const QString &name)
    : ZRObject(name)
    , _d(std::make_unique<Private>())
{
}

ZR8BitTVCBench::~ZR8BitTVCBench() = default;

ZR8BitMachine &ZR8BitTVCBench::machine()
{
    return _d->machine;
}

ZR8BitMachine::RunEnd ZR8BitTVCBench::frames(qint64 count, const ZR8BitMachine::RunLimits &limits)
{
    using RunEnd = ZR8BitMachine::RunEnd;
    ZR8BitMachine &machine = _d->machine;
    const quint64 firstCycle = machine.cycles();
    const qint64 firstInstruction = machine.instructionCount();
    ZR8BitMachine::RunLimits part = limits;
    part.irqComes = true;
    RunEnd end = RunEnd::Cycles;
    while (count > 0 && end == RunEnd::Cycles && machine.cycles() - firstCycle < limits.cycles) {
        const quint64 cycle = machine.cycles();
        part.cycles =
            std::min<quint64>(FrameLength - cycle % FrameLength, limits.cycles - (cycle - firstCycle));
        if (limits.instructions != ZR8BitMachine::RunLimits().instructions) // else waiting takes no time
            part.instructions = limits.instructions - (machine.instructionCount() - firstInstruction);
        end = machine.run(part);
        if (machine.cycles() / FrameLength != cycle / FrameLength) {
            machine.chip()->setIRQ(true);
            --count;
        }
    }
    return end;
}

qint64 ZR8BitTVCBench::frameCount() const
{
    return static_cast<qint64>(_d->machine.cycles() / FrameLength);
}

QImage ZR8BitTVCBench::screen(Shape shape) const
{
    const QByteArray bytes = _d->machine.bytes(ScreenAddress, ZR8BitTVCScreen::Size);
    const QImage picture = ZR8BitTVCColor16::QImageFromTVC16Bin(bytes, ZR8BitTVCScreen::Width);
    return shape == Shape::Screen ? ZR8BitTVCScreen::screenView(picture) : picture;
}

bool ZR8BitTVCBench::writeSound(QIODevice &output, int rate, const ZR8BitTVCWave::Progress &progress,
                                QString *error)
{
    _d->endTone();
    if (_d->isTooLong)
        return fail(error, QStringLiteral("The sound changed more than %1 times!").arg(MostTones));
    return ZR8BitTVCWave::writeWave(_d->tones, rate, output, progress, error);
}

} // namespace ZR
