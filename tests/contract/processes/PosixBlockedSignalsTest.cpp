#include "platform/posix/PosixBlockedSignals.h"

#include <csignal>
#include <thread>

#include <gtest/gtest.h>

namespace orvane {
namespace {

bool isBlocked(int signal) {
    sigset_t blocked;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    return sigismember(&blocked, signal) == 1;
}

volatile std::sig_atomic_t arrived = 0;

extern "C" void orvaneCountSignal(int /*signal*/) {
    arrived = arrived + 1;
}

TEST(PosixBlockedSignalsTest, BlocksAllHereAndInThreadsThatBeginMeanwhile) {
    {
        const PosixBlockedSignals blocked;
        EXPECT_TRUE(isBlocked(SIGTERM));
        EXPECT_TRUE(isBlocked(SIGPIPE));
        bool inThread = false;
        std::thread([&] { inThread = isBlocked(SIGTERM); }).join();
        EXPECT_TRUE(inThread);
    }
    EXPECT_FALSE(isBlocked(SIGTERM));
    EXPECT_FALSE(isBlocked(SIGPIPE));
}

TEST(PosixBlockedSignalsTest, BlocksOneAlone) {
    const PosixBlockedSignals blocked(SIGPIPE);
    EXPECT_TRUE(isBlocked(SIGPIPE));
    EXPECT_FALSE(isBlocked(SIGTERM));
}

TEST(PosixBlockedSignalsTest, LeavesWhatWasBlockedBefore) {
    const PosixBlockedSignals before(SIGHUP);
    {
        const PosixBlockedSignals one(SIGPIPE);
        const PosixBlockedSignals all;
        EXPECT_TRUE(isBlocked(SIGHUP));
    }
    EXPECT_TRUE(isBlocked(SIGHUP));
    EXPECT_FALSE(isBlocked(SIGPIPE));
}

TEST(PosixBlockedSignalsTest, WhatCameMeanwhileArrivesAtTheEnd) {
    auto *const before = std::signal(SIGPIPE, orvaneCountSignal);
    arrived = 0;
    {
        const PosixBlockedSignals blocked(SIGPIPE);
        std::raise(SIGPIPE);
        EXPECT_EQ(arrived, 0);
    }
    EXPECT_EQ(arrived, 1);
    std::signal(SIGPIPE, before);
}

} // namespace
} // namespace orvane
