#ifndef ZR8BITTVCSOUNDPLOT_H
#define ZR8BITTVCSOUNDPLOT_H

#include <zr8bitkit/zr8bittvcwave.h>

namespace ZR {

/// Sounds of the Videoton TV Computer (TVC) to look at. The class keeps no state: any number of threads may
/// call it at once, each with outputs of its own.
class ZR8BITKIT_EXPORT ZR8BitTVCSoundPlot
{
public:
    /// What a plot is to know of a sound beside its bytes.
    using Options = ZR8BitTVCWaveOptions;

    /// Writes a plot of a sound as SVG to a device that is open for writing: a bar for each run of equal
    /// records, at its place in seconds and notes, with the volume as its opacity. Silent records, also those
    /// above half the sample rate, leave a gap. Takes and refuses what ZR8BitTVCWave::writeWave() does, and
    /// has then written nothing; it also fails when the device does, with a part written.
    static bool write(const QByteArray &sound, const Options &options, QIODevice &output,
                      QString *error = nullptr);
};

} // namespace ZR

#endif
