#include "Interruption.h"

#include "CommandSupport.h"
#include "Translation.h"

#include "platform/posix/PosixBlockedSignals.h"

#include <atomic>
#include <cerrno>
#include <string>

#include <poll.h>

namespace orvane {

namespace {

/// Set by the handler, asked by every thread that makes something.
std::atomic<int> arrivedSignal = 0;
static_assert(std::atomic<int>::is_always_lock_free, "what a signal handler sets must need no lock");

void note(int signal) {
    arrivedSignal = signal;
}

} // namespace

Interruption::Interruption() {
    arrivedSignal = 0;
    struct sigaction action {};
    action.sa_handler = note;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t i = 0; i < Signals.size(); ++i) {
        ::sigaction(Signals[i], &action, &_before[i]);
        if (_before[i].sa_handler == SIG_IGN) {
            ::sigaction(Signals[i], &_before[i], nullptr);
        }
    }
}

bool Interruption::wasRequested() {
    return arrivedSignal != 0;
}

bool Interruption::waitForInput(int descriptor) {
    // A signal between the question and the waiting would be lost: so it is held back until the waiting lets it through.
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : Signals) {
        sigaddset(&held, signal);
    }
    sigset_t before;
    ::sigprocmask(SIG_BLOCK, &held, &before);
    pollfd input{descriptor, POLLIN, 0};
    int ready = -1;
    while (!wasRequested() && ready < 0) {
        ready = ::ppoll(&input, 1, nullptr, &before);
        if (ready < 0 && errno != EINTR) {
            break; // the reading will tell what is wrong
        }
    }
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
    return !wasRequested();
}

void Interruption::tell() {
    writeStandardError(std::string("orvane: ") + localized("interrupted, and what was made is removed again") + "\n");
}

void Interruption::end() {
    if (!_isActive) {
        return;
    }
    _isActive = false;
    for (std::size_t i = 0; i < Signals.size(); ++i) {
        ::sigaction(Signals[i], &_before[i], nullptr);
    }
}

void Interruption::raiseAgain() {
    if (arrivedSignal != 0) {
        ::raise(arrivedSignal);
    }
}

ExitStatus untilInterrupted(const std::function<ExitStatus(bool &isKept)> &work) {
    const PosixBlockedSignals deferred(SIGPIPE);
    Interruption interruption;
    bool isKept = false;
    const ExitStatus status = work(isKept);
    if (Interruption::wasRequested() && !isKept) {
        Interruption::tell();
    }
    interruption.end();
    Interruption::raiseAgain();
    return status;
}

} // namespace orvane
