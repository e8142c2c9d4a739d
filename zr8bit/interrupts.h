#pragma once

/// While it lives, an interrupt (Ctrl+C, a request to end, a terminal that closes) is only noted, so that
/// temporary files can be removed first. Its end ends the program by the interrupt that was noted. One that
/// lives within another leaves that to the outer one.
///
/// A second interrupt ends the program at once. A write to standard output that waits for its reader fails at
/// the first.
class InterruptDelay
{
public:
    InterruptDelay();
    ~InterruptDelay();
    InterruptDelay(const InterruptDelay &) = delete;
    InterruptDelay &operator=(const InterruptDelay &) = delete;

    /// Whether the work should stop. Never, when no such object lives.
    static bool isInterrupted();
};
