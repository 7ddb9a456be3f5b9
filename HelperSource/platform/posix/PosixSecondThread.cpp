#include "platform/posix/PosixSecondThread.h"

#include <csignal>
#include <sched.h>
#include <system_error>
#include <utility>

namespace orvane {

bool PosixSecondThread::start(std::function<void()> work) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before); // the new thread inherits it
    try {
        _thread = std::thread(std::move(work));
    } catch (const std::system_error &) { // no more threads
    }
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return _thread.joinable();
}

void PosixSecondThread::join() {
    if (_thread.joinable()) {
        _thread.join();
    }
}

bool hasSecondProcessor() {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    // More than 1,024 processors do not fit, and are enough.
    return ::sched_getaffinity(0, sizeof processors, &processors) != 0 || CPU_COUNT(&processors) > 1;
}

} // namespace orvane
