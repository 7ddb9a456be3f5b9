#include "Interruption.h"

namespace orvane {

namespace {

volatile std::sig_atomic_t arrivedSignal = 0;

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

} // namespace orvane
