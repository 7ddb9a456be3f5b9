// The thread that helps with large hierarchies: where it runs, and what it is kept from.

#include "platform/posix/PosixSecondThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <sched.h>
#include <thread>

namespace orvane::testing {

namespace {

cpu_set_t processorsOfThisThread() {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    EXPECT_EQ(::sched_getaffinity(0, sizeof processors, &processors), 0);
    return processors;
}

/// The processors that a second thread of this one finds itself allowed to use.
cpu_set_t processorsOfSecondThread() {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    PosixSecondThread second;
    EXPECT_TRUE(second.start([&] { processors = processorsOfThisThread(); }));
    second.join();
    return processors;
}

TEST(SecondThreadTest, MayUseEveryProcessorOnceItRuns) {
    const cpu_set_t mine = processorsOfThisThread();
    const cpu_set_t its = processorsOfSecondThread();
    EXPECT_TRUE(CPU_EQUAL(&mine, &its));
}

TEST(SecondThreadTest, StaysOffItsMakersProcessorUntilItIsSetFree) {
    const cpu_set_t mine = processorsOfThisThread();
    std::atomic<int> before = 0;
    std::atomic<bool> isSetFree = false;
    std::atomic<bool> isAnywhere = false;
    PosixSecondThread second;
    const auto work = [&] {
        before = [] {
            const cpu_set_t own = processorsOfThisThread();
            return CPU_COUNT(&own);
        }();
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!isSetFree && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
        }
        const cpu_set_t after = processorsOfThisThread();
        isAnywhere = CPU_EQUAL(&after, &mine);
    };
    ASSERT_TRUE(second.start(work, PosixSecondThread::Place::Apart));
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (before == 0 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    EXPECT_EQ(before, CPU_COUNT(&mine) - 1);
    second.setFree();
    isSetFree = true;
    second.join();
    EXPECT_TRUE(isAnywhere);
}

TEST(SecondThreadTest, RunsWhereThereIsOneProcessorOnly) {
    std::thread([] {
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(static_cast<unsigned>(::sched_getcpu()), &one);
        ASSERT_EQ(::sched_setaffinity(0, sizeof one, &one), 0);
        EXPECT_FALSE(hasSecondProcessor());
        const cpu_set_t its = processorsOfSecondThread();
        EXPECT_TRUE(CPU_EQUAL(&one, &its));
    }).join();
}

TEST(SecondThreadTest, NoSignalReachesItAndTheCallerKeepsItsMask) {
    sigset_t before;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &before);
    sigset_t inside;
    sigemptyset(&inside);
    PosixSecondThread second;
    ASSERT_TRUE(second.start([&] { ::pthread_sigmask(SIG_SETMASK, nullptr, &inside); }));
    second.join();
    sigset_t after;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &after);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGCHLD, SIGUSR1}) {
        EXPECT_EQ(sigismember(&inside, signal), 1) << signal;
        EXPECT_EQ(sigismember(&before, signal), sigismember(&after, signal)) << signal;
    }
}

TEST(SecondThreadTest, IsWaitedForWhenItGoes) {
    bool isDone = false;
    {
        PosixSecondThread second;
        ASSERT_TRUE(second.start([&] { isDone = true; }));
    }
    EXPECT_TRUE(isDone);
}

} // namespace

} // namespace orvane::testing
