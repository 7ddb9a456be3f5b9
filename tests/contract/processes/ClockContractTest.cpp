// What every clock promises, run on the fake and on the real one.

#include "ProcessTestTools.h"

#include "fakes/FakeClock.h"
#include "platform/posix/PosixClock.h"

#include <csignal>
#include <sys/time.h>

namespace orvane {
namespace {

using namespace std::chrono_literals;

template <typename Kind> class ClockContract : public testing::Test {
protected:
    Kind clock;
};

using Clocks = testing::Types<FakeClock, PosixClock>;
TYPED_TEST_SUITE(ClockContract, Clocks);

TYPED_TEST(ClockContract, NeverRunsBackwards) {
    std::uint64_t last = this->clock.nowInSeconds();
    for (int i = 0; i < 1000; ++i) {
        const std::uint64_t now = this->clock.nowInSeconds();
        ASSERT_GE(now, last);
        last = now;
    }
}

TYPED_TEST(ClockContract, SleepingASecondMovesItByOneOrTwo) {
    const std::uint64_t before = this->clock.nowInSeconds();
    this->clock.sleep(1s);
    const std::uint64_t after = this->clock.nowInSeconds();
    EXPECT_GE(after - before, 1U);
    EXPECT_LE(after - before, 20U); // a busy machine may wake it late
}

TYPED_TEST(ClockContract, SleepOfNoTimeReturnsAtOnce) {
    const auto before = std::chrono::steady_clock::now();
    this->clock.sleep(0us);
    EXPECT_LT(std::chrono::steady_clock::now() - before, 4s);
}

TEST(PosixClock, SleepsAtLeastTheTime) {
    PosixClock clock;
    for (const auto duration : {1000us, 20'000us}) {
        const auto before = std::chrono::steady_clock::now();
        clock.sleep(duration);
        EXPECT_GE(std::chrono::steady_clock::now() - before, duration);
    }
}

TEST(PosixClock, SleepOfNegativeTimeReturnsAtOnce) {
    PosixClock clock;
    const auto before = std::chrono::steady_clock::now();
    clock.sleep(-5s);
    EXPECT_LT(std::chrono::steady_clock::now() - before, 4s);
}

volatile std::sig_atomic_t alarms = 0;

TEST(PosixClock, SignalsDoNotShortenASleep) {
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) { alarms = alarms + 1; };
    ::sigaction(SIGALRM, &action, &before);
    const itimerval every5Milliseconds{{0, 5000}, {0, 5000}};
    ::setitimer(ITIMER_REAL, &every5Milliseconds, nullptr);
    PosixClock clock;
    const auto start = std::chrono::steady_clock::now();
    clock.sleep(50ms);
    const auto slept = std::chrono::steady_clock::now() - start;
    const itimerval none{};
    ::setitimer(ITIMER_REAL, &none, nullptr);
    ::sigaction(SIGALRM, &before, nullptr);
    EXPECT_GE(slept, 50ms);
    EXPECT_GT(alarms, 0); // it was interrupted
}

} // namespace
} // namespace orvane
