#pragma once

#include "Command.h"

#include <array>
#include <csignal>
#include <functional>

namespace orvane {

/// Turns the signals by which a user or the system stops a program (SIGINT, SIGTERM, SIGHUP) into a question, for as
/// long as it lives, so that what has been begun can be taken back. The second signal of a kind ends the program at once. A
/// signal that is ignored stays ignored. Waiting system calls are interrupted. One at a time.
class Interruption {
public:
    Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;
    ~Interruption() { end(); }

    /// Whether one has arrived.
    [[nodiscard]] static bool wasRequested();
    /// Waits until the descriptor can be read without blocking, or is at its end; false when a signal arrived, be it long
    /// before, right now or while waiting.
    [[nodiscard]] static bool waitForInput(int descriptor);
    /// Says on standard error that one arrived and that what was made is gone again.
    static void tell();
    /// Back to what the signals did before.
    void end();
    /// After `end`: lets the signal that arrived, if any, do what it does. May not return.
    static void raiseAgain();

private:
    static constexpr std::array<int, 3> Signals = {SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, Signals.size()> _before{};
    bool _isActive = true;
};

/// Does what takes back what it has made unless it sets `isKept`, and asks `Interruption::wasRequested` now and then. When one has arrived
/// and nothing is kept, says so. The signal then does what it does, which ends the program mostly; so does one for a broken pipe, which
/// waits until then. Returns what `work` does.
ExitStatus untilInterrupted(const std::function<ExitStatus(bool &isKept)> &work);

} // namespace orvane
