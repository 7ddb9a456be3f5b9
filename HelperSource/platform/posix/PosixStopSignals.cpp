#include "platform/posix/PosixStopSignals.h"

#include <atomic>
#include <cstddef>

#include <pthread.h>
#include <unistd.h>

namespace orvane {

namespace {

/// Read by the handler; 0 when there is none.
std::atomic<pid_t> childToStop = 0;
static_assert(std::atomic<pid_t>::is_always_lock_free, "what a signal handler reads must need no lock");

bool wasSentByAProcess(const siginfo_t &information) {
    return information.si_code <= 0; // POSIX, 2.4.3: what the system sends has a positive one
}

/// Whether the child has got the signal as well: the terminal sends it to all of the process group in its foreground. A child that has
/// left that group, perhaps for a session of its own, has not. (Both questions are system calls and nothing else, as a handler needs.)
bool hasReached(pid_t child, const siginfo_t &information) {
    return !wasSentByAProcess(information) && ::getpgid(child) == ::getpgrp();
}

/// Runs once: the action is the default one again by then, and the signal waits for the handler's end.
void stopBoth(int signal, siginfo_t *information, void * /*context*/) {
    const pid_t child = childToStop;
    if (child > 0 && !hasReached(child, *information)) {
        ::kill(child, signal);
    }
    ::raise(signal);
}

} // namespace

PosixStopSignals::PosixStopSignals() {
    sigset_t held;
    ::sigemptyset(&held);
    for (const int signal : Signals) {
        ::sigaddset(&held, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &held, &_maskBefore);
    struct sigaction action {};
    action.sa_sigaction = stopBoth;
    action.sa_flags = static_cast<int>(SA_SIGINFO | SA_RESETHAND);
    for (std::size_t i = 0; i < Signals.size(); ++i) {
        ::sigaction(Signals[i], nullptr, &_before[i]);
        if (_before[i].sa_handler == SIG_DFL) {
            ::sigaction(Signals[i], &action, nullptr);
        }
    }
}

void PosixStopSignals::passTo(pid_t child) {
    childToStop = child;
    ::pthread_sigmask(SIG_SETMASK, &_maskBefore, nullptr);
}

PosixStopSignals::~PosixStopSignals() {
    childToStop = 0;
    for (std::size_t i = 0; i < Signals.size(); ++i) {
        if (_before[i].sa_handler == SIG_DFL) {
            ::sigaction(Signals[i], &_before[i], nullptr);
        }
    }
    ::pthread_sigmask(SIG_SETMASK, &_maskBefore, nullptr);
}

} // namespace orvane
