#include "zr8bittvctoneplayer_p.h"

#include <algorithm>

namespace ZR {

namespace {

constexpr int AmplitudeOfStep = 1024;

} // namespace

TVCTonePlayer::TVCTonePlayer(const Next &next, int rate)
    : _next(next)
    , _rate(rate)
{
}

void TVCTonePlayer::play(qint16 *samples, qint64 count)
{
    while (count > 0) {
        while (_end <= _done)
            _nextTone();
        const qint64 part = std::min(count, _end - _done);
        for (qint64 i = 0; i < part; ++i)
            samples[i] = _sample();
        samples += part;
        count -= part;
        _done += part;
    }
}

void TVCTonePlayer::_nextTone()
{
    const ZR8BitTVCTone tone = _next();
    _end = samplesUntil(tone.end, _rate);
    _amplitude = tone.volume * AmplitudeOfStep;
    _step = 0;
    if (!isHeard(tone.pitch, _rate))
        return;
    // A sample is periods / samples of a period, at most one half.
    const quint64 periods = quint64(DoubledClock) << 32;
    const auto samples = 2 * static_cast<quint64>(Divisors - tone.pitch) * static_cast<quint64>(_rate);
    _step = (periods / samples << 32) + (periods % samples << 32) / samples;
}

/// The mean of the wave from the phase on over a step, which holds one edge at most.
qint16 TVCTonePlayer::_sample()
{
    if (_step == 0)
        return 0;
    const bool wasHigh = _phase < Half;
    _phase += _step;
    const bool isHigh = _phase < Half;
    const int amplitude = wasHigh ? _amplitude : -_amplitude;
    if (wasHigh == isHigh)
        return static_cast<qint16>(amplitude);
    const auto step = static_cast<qint64>(_step >> 32);
    const auto afterEdge = static_cast<qint64>((isHigh ? _phase : _phase - Half) >> 32);
    const qint64 area = amplitude * (step - 2 * afterEdge);
    return static_cast<qint16>((2 * area + (area < 0 ? -step : step)) / (2 * step)); // rounded
}

} // namespace ZR
