#include "platform/posix/PosixClock.h"

#include <cerrno>
#include <ctime>

namespace orvane {

std::uint64_t PosixClock::nowInSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec);
}

void PosixClock::sleep(std::chrono::microseconds duration) {
    if (duration.count() <= 0) {
        return;
    }
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
    timespec remaining{};
    remaining.tv_sec = static_cast<time_t>(seconds.count());
    remaining.tv_nsec = static_cast<long>(std::chrono::nanoseconds(duration - seconds).count());
    // An interrupted sleep leaves what is still to be slept.
    while (::nanosleep(&remaining, &remaining) != 0 && errno == EINTR) {
    }
}

} // namespace orvane
