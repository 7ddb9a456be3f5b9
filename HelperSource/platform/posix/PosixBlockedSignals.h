#pragma once

#include <csignal>

namespace orvane {

/// Keeps signals from the thread that makes it, and from the threads that this one starts meanwhile, which begin with them blocked. What
/// comes meanwhile waits, or goes to another thread. The end of this object lets through what was let through before. One thread.
class PosixBlockedSignals {
public:
    /// All signals.
    PosixBlockedSignals() {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_BLOCK, &all, &_before);
    }
    /// That signal alone.
    explicit PosixBlockedSignals(int signal) {
        sigset_t one;
        sigemptyset(&one);
        sigaddset(&one, signal);
        ::pthread_sigmask(SIG_BLOCK, &one, &_before);
    }
    PosixBlockedSignals(const PosixBlockedSignals &) = delete;
    PosixBlockedSignals &operator=(const PosixBlockedSignals &) = delete;
    ~PosixBlockedSignals() { ::pthread_sigmask(SIG_SETMASK, &_before, nullptr); }

private:
    sigset_t _before{};
};

} // namespace orvane
