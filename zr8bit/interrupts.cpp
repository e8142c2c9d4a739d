#include "interrupts.h"

namespace {

volatile std::sig_atomic_t noted = 0;

extern "C" void noteInterrupt(int signalNumber)
{
    noted = signalNumber;
}

} // namespace

InterruptDelay::InterruptDelay()
{
    for (size_t i = 0; i < _signals.size(); ++i) {
        _handlers[i] = std::signal(_signals[i], noteInterrupt);
        if (_handlers[i] == SIG_IGN) // as nohup wants it
            std::signal(_signals[i], SIG_IGN);
    }
}

InterruptDelay::~InterruptDelay()
{
    for (size_t i = 0; i < _signals.size(); ++i)
        std::signal(_signals[i], _handlers[i]);
    if (noted != 0)
        std::raise(noted);
}

bool InterruptDelay::isInterrupted() const
{
    return noted != 0;
}
