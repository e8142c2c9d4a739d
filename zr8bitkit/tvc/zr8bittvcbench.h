#ifndef ZR8BITTVCBENCH_H
#define ZR8BITTVCBENCH_H

#include <zr8bitkit/zr8bitkit_export.h>
#include <zr8bitkit/zr8bitmachine.h>
#include <zr8bitkit/zr8bittvcwave.h>
#include <zrbaselib/zrobject.h>

#include <QtGui/QImage>

#include <memory>

namespace ZR {

/// A bench for programs of the Videoton TV Computer (TVC): what one needs that does without the machine's
/// ROM, to be run, seen and heard.
///
/// Not modelled: the ROM and its calls, the keyboard, the paging of the memory, the screen's other modes,
/// palette and border, the cassette, other interrupts than that of the frame, and the wait states of the
/// memory that the screen shares. A program that needs one of these does not run here as on the machine.
///
///     ZR::ZR8BitTVCBench bench;
///     if (!bench.machine().loadFile(u"program.bin"_s, 0x2000) ||
///         !bench.machine().setRegister(u"PC"_s, 0x2000))
///         qFatal("%s", qPrintable(bench.machine().lastErrorStr()));
///     bench.frames(500); // ten seconds
///     bench.screen(ZR::ZR8BitTVCBench::Shape::Screen).save(u"screen.png"_s);
///
/// A Z80 runs at 3.125 MHz in 64 KiB of RAM, all 0 at first. The 15,360 bytes from $8000 on are the screen in
/// its 16-colour mode. Ports, by the low byte of their number:
///
/// | Port | A byte written there                                                               |
/// |------|------------------------------------------------------------------------------------|
/// | $04  | the low 8 bits of the pitch                                                        |
/// | $05  | bits 0 to 3: the high bits of the pitch; bit 4: the sound is on                    |
/// | $06  | bits 2 to 5: the volume                                                            |
/// | $07  | whatever it is, takes the frame interrupt back                                     |
///
/// The sound is a square wave of 195,312.5 Hz / (4096 - pitch). Reading gives $FF at every port, and writing
/// to others does nothing. The frame interrupt comes every 62,500 T states, 50 times a second, and stays
/// until it is taken back; in interrupt mode 1 it goes to $0038.
///
/// Every program is defined here: one that overwrites itself runs what it has written, one that goes beyond
/// $FFFF goes on at 0, and one that jumps into the screen runs its bytes. To be used from one thread at a
/// time.
class ZR8BITKIT_EXPORT ZR8BitTVCBench : public ZRObject
{
public:
    static constexpr int ClockRate = 3'125'000;  ///< T states a second
    static constexpr int FrameLength = 62'500;   ///< T states
    static constexpr int ScreenAddress = 0x8000; ///< of the first byte of the screen

    /// The shape of a picture.
    enum class Shape
    {
        Pixels, ///< 128 x 240, a pixel of the picture for each of the screen
        Screen  ///< 640 x 480, each pixel as wide and high as the screen shows it
    };

    /// All RAM and registers are 0, and the sound is off.
    explicit ZR8BitTVCBench(const QString &name = QString());
    ~ZR8BitTVCBench() override;

    /// The processor and its memory, to load programs, to set registers and watches, and to look at them. Not
    /// to be loaded with other settings. What its own run() runs gets no frame interrupt, and its states hold
    /// nothing of the sound generator.
    ZR8BitMachine &machine();

    /// Runs until so many frames have ended, or for another reason that ZR8BitMachine has or limits give: a
    /// jump to itself or a HALT ends it at once where interrupts are off. A count of 0 or less runs nothing.
    /// The first frame may have begun already. Gives RunEnd::Cycles when the frames have ended.
    ZR8BitMachine::RunEnd frames(qint64 count, const ZR8BitMachine::RunLimits &limits = {});

    /// How many frames have ended, since the processor's T states are counted.
    qint64 frameCount() const;

    /// The picture on the screen. A null image when there is not enough memory for it.
    QImage screen(Shape shape = Shape::Pixels) const;

    /// Writes all that was to be heard so far, silence included, as ZR8BitTVCWave::writeWave() does. Each
    /// tone begins with the end of the instruction that wrote to a port. Fails also when the sound changed
    /// more than 4,194,304 times, which is all that is kept.
    bool writeSound(QIODevice &output, int rate = 44100, const ZR8BitTVCWave::Progress &progress = {},
                    QString *error = nullptr);

private:
    struct Private;
    std::unique_ptr<Private> _d;
};

} // namespace ZR

#endif
