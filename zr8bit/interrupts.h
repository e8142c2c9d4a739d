#pragma once

#include <array>
#include <csignal>

/// While it lives, an interrupt (Ctrl+C, a request to end, a terminal that closes) is only noted, so that
/// temporary files can be removed first. Its end ends the program by the interrupt that was noted.
class InterruptDelay
{
public:
    InterruptDelay();
    ~InterruptDelay();
    InterruptDelay(const InterruptDelay &) = delete;
    InterruptDelay &operator=(const InterruptDelay &) = delete;

    /// Whether the work should stop.
    bool isInterrupted() const;

private:
#ifdef SIGHUP
    static constexpr std::array _signals = {SIGINT, SIGTERM, SIGHUP};
#else
    static constexpr std::array _signals = {SIGINT, SIGTERM};
#endif

    std::array<void (*)(int), _signals.size()> _handlers; ///< those before
};
