#pragma once

#include <zr8bitkit/zr8bittvcwave.h>

#include <functional>

namespace ZR {

// The generator divides its clock of 195,312.5 Hz by 4096 less the pitch.
constexpr qint64 DoubledClock = 390625;
constexpr int Divisors = 4096;

/// Whether the frequency of a pitch is at most half a sample rate; above it the pitch is silent.
inline bool isHeard(int pitch, qint64 rate)
{
    return DoubledClock <= (Divisors - pitch) * rate;
}

/// How many samples there are until a time in T states.
inline qint64 samplesUntil(qint64 time, qint64 rate)
{
    return (2 * time * rate + ZR8BitTVCTone::TStates) / (2 * ZR8BitTVCTone::TStates);
}

/// Makes the samples of tones, one after the other. Private to the kit.
class TVCTonePlayer
{
public:
    /// Gives the next tone, which ends no earlier than the one before it.
    using Next = std::function<ZR8BitTVCTone()>;

    TVCTonePlayer(const Next &next, int rate);

    /// The next samples, of which there must be that many left.
    void play(qint16 *samples, qint64 count);

private:
    /// Half a period; a whole one is 2^64, so that the phase wraps by itself.
    static constexpr quint64 Half = quint64(1) << 63;

    void _nextTone();
    qint16 _sample();

    const Next _next;
    const int _rate;
    qint64 _done = 0; ///< samples
    qint64 _end = 0;  ///< of the tone
    int _amplitude = 0;
    quint64 _step = 0; ///< how far the phase goes in a sample; 0 for silence
    quint64 _phase = 0;
};

} // namespace ZR
