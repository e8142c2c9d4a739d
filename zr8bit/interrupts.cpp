#include "interrupts.h"

#include <QtCore/QtGlobal>

#include <array>
#include <chrono>
#include <csignal>

namespace {

#ifdef Q_OS_WIN
constexpr std::array delayedSignals = {SIGINT, SIGTERM};
using Action = void (*)(int);
#else
constexpr std::array delayedSignals = {SIGINT, SIGTERM, SIGHUP};
using Action = struct sigaction;
#endif

int delays = 0;
std::array<Action, delayedSignals.size()> actionsBefore; ///< by delayedSignals
volatile std::sig_atomic_t noted = 0;

using Clock = std::chrono::steady_clock; // which may be asked within a handler
Clock::time_point notedAt;

/// Some programs, such as timeout, send a signal to a process and to its group: what comes together is one.
extern "C" void noteInterrupt(int signalNumber)
{
    constexpr std::chrono::milliseconds Together(200);
    if (noted == 0) {
        notedAt = Clock::now();
        noted = signalNumber;
    } else if (Clock::now() - notedAt > Together) {
        std::signal(signalNumber, SIG_DFL);
        std::raise(signalNumber);
    }
}

#ifdef Q_OS_WIN

Action noteSignal(int signalNumber)
{
    return std::signal(signalNumber, noteInterrupt);
}

void restoreAction(int signalNumber, Action action)
{
    std::signal(signalNumber, action);
}

#else

/// Returns the action before. A signal that is ignored, as nohup wants it, stays so.
Action noteSignal(int signalNumber)
{
    Action before;
    sigaction(signalNumber, nullptr, &before);
    if (before.sa_handler != SIG_IGN) {
        Action action = {}; // without SA_RESTART: a write that waits is not taken up again
        action.sa_handler = noteInterrupt;
        sigaction(signalNumber, &action, nullptr);
    }
    return before;
}

void restoreAction(int signalNumber, const Action &action)
{
    sigaction(signalNumber, &action, nullptr);
}

#endif

} // namespace

InterruptDelay::InterruptDelay()
{
    if (delays++ > 0)
        return;
    for (size_t i = 0; i < delayedSignals.size(); ++i)
        actionsBefore[i] = noteSignal(delayedSignals[i]);
}

InterruptDelay::~InterruptDelay()
{
    if (--delays > 0)
        return;
    for (size_t i = 0; i < delayedSignals.size(); ++i)
        restoreAction(delayedSignals[i], actionsBefore[i]);
    if (noted != 0)
        std::raise(noted);
}

bool InterruptDelay::isInterrupted()
{
    return noted != 0;
}
