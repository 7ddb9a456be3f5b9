#include "platform/posix/PosixSpawning.h"

#include <csignal>
#include <cstring>

#include <linux/close_range.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orvane {

PosixSpawnAttributes::PosixSpawnAttributes(short moreFlags) : _isInitialised(::posix_spawnattr_init(&_attributes) == 0) {
    constexpr int Signals = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    // Not sigfillset, which leaves the C library's own two signals out: they would start ignored.
    std::memset(&all, 0xFF, sizeof all);
    _isComplete = _isInitialised && ::posix_spawnattr_setsigmask(&_attributes, &none) == 0 &&
                  ::posix_spawnattr_setsigdefault(&_attributes, &all) == 0 &&
                  ::posix_spawnattr_setflags(&_attributes, static_cast<short>(Signals | moreFlags)) == 0;
}

PosixSpawnAttributes::~PosixSpawnAttributes() {
    if (_isInitialised) {
        ::posix_spawnattr_destroy(&_attributes);
    }
}

void PosixPrepareForkedChild() {
    constexpr unsigned FirstOrdinaryDescriptor = 3;
    ::syscall(SYS_close_range, FirstOrdinaryDescriptor, ~0U, CLOSE_RANGE_CLOEXEC);
    for (int number = 1; number < NSIG; ++number) { // those of the C library refuse
        ::signal(number, SIG_DFL);
    }
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

std::vector<char *> PosixPointersTo(std::vector<std::string> &texts) {
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string &text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace orvane
