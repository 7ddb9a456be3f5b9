#pragma once

#include "ports/MainThread.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

// What every main thread promises. A harness makes one on the thread of the test:
//
//     MainThread &mainThread();
//     bool serveUntil(done);  serves other threads until `done` holds; false when it does not within the time limit
//     void wake();            has `serveUntil` ask again; any thread
//     void handleEvent(work); has the work done as one event of the main thread, to its end

namespace orvane::test {

/// An object that tells when and where it was let go.
struct Traced {
    std::atomic<bool> isAlive{true};
    std::thread::id destroyer;
};
inline std::shared_ptr<const void> tracked(Traced &trace) {
    return {&trace, [](Traced *gone) {
                gone->destroyer = std::this_thread::get_id();
                gone->isAlive = false;
            }};
}

template <typename Harness> class MainThreadContract : public testing::Test {
protected:
    /// Serves until the other thread's body has returned.
    void serveThread(const std::function<void()> &body) {
        std::atomic<bool> isOver{false};
        std::thread thread([&] {
            body();
            isOver = true;
            harness.wake();
        });
        EXPECT_TRUE(harness.serveUntil([&] { return isOver.load(); }));
        thread.join();
    }
    [[nodiscard]] std::thread::id mainThreadId() const { return _maker; }

    Harness harness;
    MainThread &mainThread = harness.mainThread();

private:
    const std::thread::id _maker = std::this_thread::get_id();
};

TYPED_TEST_SUITE_P(MainThreadContract);

TYPED_TEST_P(MainThreadContract, OnlyTheThreadThatMadeItIsCurrent) {
    EXPECT_TRUE(this->mainThread.isCurrent());
    EXPECT_FALSE(std::async(std::launch::async, [&] { return this->mainThread.isCurrent(); }).get());
}

TYPED_TEST_P(MainThreadContract, OnTheMainThreadWorkRunsAtOnce) {
    bool hasRun = false;
    this->mainThread.performAndWait([&] { hasRun = true; });
    EXPECT_TRUE(hasRun);
}

TYPED_TEST_P(MainThreadContract, WorkOfAnotherThreadRunsOnTheMainThreadBeforeTheCallReturns) {
    std::thread::id worker;
    bool hasRunBeforeReturn = false;
    this->serveThread([&] {
        this->mainThread.performAndWait([&] { worker = std::this_thread::get_id(); });
        hasRunBeforeReturn = worker == this->mainThreadId();
    });
    EXPECT_TRUE(hasRunBeforeReturn);
}

TYPED_TEST_P(MainThreadContract, CallerStaysBlockedWhileTheMainThreadServesNobody) {
    std::atomic<bool> hasReturned{false};
    auto caller = std::async(std::launch::async, [&] {
        this->mainThread.performAndWait([] {});
        hasReturned = true;
        this->harness.wake();
    });
    EXPECT_EQ(caller.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
    EXPECT_TRUE(this->harness.serveUntil([&] { return hasReturned.load(); }));
}

TYPED_TEST_P(MainThreadContract, WorkOfOneThreadKeepsItsOrder) {
    std::vector<int> order;
    this->serveThread([&] {
        for (int i = 0; i < 100; ++i) {
            this->mainThread.performAndWait([&, i] { order.push_back(i); });
        }
    });
    ASSERT_EQ(order.size(), 100U);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
    }
}

TYPED_TEST_P(MainThreadContract, WorkOfManyThreadsNeverOverlaps) {
    int inside = 0;
    int most = 0;
    int total = 0;
    this->serveThread([&] {
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&] {
                for (int j = 0; j < 50; ++j) {
                    this->mainThread.performAndWait([&] {
                        most = std::max(most, ++inside);
                        ++total;
                        --inside;
                    });
                }
            });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
    });
    EXPECT_EQ(total, 400);
    EXPECT_EQ(most, 1);
}

TYPED_TEST_P(MainThreadContract, DeferredObjectLivesUntilTheEventHasBeenHandled) {
    Traced trace;
    bool isAliveAtEndOfWork = false;
    bool isAliveAfterEvent = true;
    this->serveThread([&] {
        this->mainThread.performAndWait([&] {
            this->mainThread.releaseAfterCurrentEvent(tracked(trace));
            isAliveAtEndOfWork = trace.isAlive;
        });
        isAliveAfterEvent = trace.isAlive;
    });
    EXPECT_TRUE(isAliveAtEndOfWork);
    EXPECT_FALSE(isAliveAfterEvent);
    EXPECT_EQ(trace.destroyer, std::this_thread::get_id());
}

TYPED_TEST_P(MainThreadContract, EndOfEventLetsGoOfDeferredObjects) {
    Traced trace;
    bool isAliveAtEndOfWork = false;
    this->harness.handleEvent([&] {
        this->mainThread.releaseAfterCurrentEvent(tracked(trace));
        isAliveAtEndOfWork = trace.isAlive;
    });
    EXPECT_TRUE(this->harness.serveUntil([&] { return !trace.isAlive.load(); }));
    EXPECT_TRUE(isAliveAtEndOfWork);
    EXPECT_EQ(trace.destroyer, std::this_thread::get_id());
}

TYPED_TEST_P(MainThreadContract, ObjectDeferredByAnotherThreadIsLetGoOnTheMainThread) {
    Traced trace;
    this->serveThread([&] {
        this->mainThread.releaseAfterCurrentEvent(tracked(trace));
        this->mainThread.performAndWait([] {});
    });
    EXPECT_FALSE(trace.isAlive);
    EXPECT_EQ(trace.destroyer, std::this_thread::get_id());
}

TYPED_TEST_P(MainThreadContract, DestructorOfADeferredObjectMayDeferAnother) {
    Traced trace;
    this->serveThread([&] {
        this->mainThread.performAndWait([&] {
            this->mainThread.releaseAfterCurrentEvent(
                std::shared_ptr<const void>(&trace, [&](const void *) { this->mainThread.releaseAfterCurrentEvent(tracked(trace)); }));
        });
        EXPECT_FALSE(trace.isAlive);
    });
}

REGISTER_TYPED_TEST_SUITE_P(MainThreadContract, OnlyTheThreadThatMadeItIsCurrent, OnTheMainThreadWorkRunsAtOnce,
                            WorkOfAnotherThreadRunsOnTheMainThreadBeforeTheCallReturns, CallerStaysBlockedWhileTheMainThreadServesNobody,
                            WorkOfOneThreadKeepsItsOrder, WorkOfManyThreadsNeverOverlaps, DeferredObjectLivesUntilTheEventHasBeenHandled,
                            EndOfEventLetsGoOfDeferredObjects, ObjectDeferredByAnotherThreadIsLetGoOnTheMainThread,
                            DestructorOfADeferredObjectMayDeferAnother);

} // namespace orvane::test
