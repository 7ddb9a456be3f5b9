#pragma once

#include <array>
#include <csignal>

#include <sys/types.h>

namespace orvane {

/// Has the signals by which a user or the system stops a program (SIGINT, SIGTERM, SIGHUP) stop one child of it, too. As soon as this is
/// there they are held back; `passTo` lets them through. One that a process has sent then goes on to the child before it ends this program
/// as ever; one that the terminal has sent does not, as the child has got it from there, unless it has left this program's process group.
/// A signal that is ignored, or handled by somebody else, stays so. The destructor puts everything back; what is still held back comes
/// then.
///
/// One at a time; made, used and destroyed by the one thread to which these signals are delivered. Whoever waits for the child destroys
/// this before reaping it: its number may be another process's afterwards.
class PosixStopSignals {
public:
    PosixStopSignals();
    PosixStopSignals(const PosixStopSignals &) = delete;
    PosixStopSignals &operator=(const PosixStopSignals &) = delete;
    ~PosixStopSignals();

    /// From now on the child, which has not been reaped, gets them as well.
    void passTo(pid_t child);

private:
    static constexpr std::array<int, 3> Signals = {SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, Signals.size()> _before{};
    sigset_t _maskBefore{};
};

} // namespace orvane
