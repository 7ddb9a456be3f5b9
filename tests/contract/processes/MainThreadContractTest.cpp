// What every main thread promises, run on the fake and on the real one; then what only the real one has.

#include "ProcessTestTools.h"

#include "fakes/FakeMainThread.h"
#include "platform/posix/PosixMainThread.h"

#include <atomic>
#include <future>
#include <memory>
#include <vector>

namespace orvane {
namespace {

using namespace std::chrono_literals;

/// An object that tells when and where it was let go.
struct Traced {
    std::atomic<bool> isAlive{true};
    std::thread::id destroyer;
};
std::shared_ptr<const void> tracked(Traced &trace) {
    return {&trace, [](Traced *gone) {
                gone->destroyer = std::this_thread::get_id();
                gone->isAlive = false;
            }};
}

bool serve(FakeMainThread &mainThread, const std::function<bool()> &done) {
    return mainThread.runUntil(done, 20s);
}
bool serve(PosixMainThread &mainThread, const std::function<bool()> &done) {
    return mainThread.runUntil(done, std::chrono::steady_clock::now() + 20s);
}

template <typename Kind> class MainThreadContract : public testing::Test {
protected:
    bool serveUntil(const std::function<bool()> &done) { return serve(mainThread, done); }
    /// Serves until the other thread's body has returned.
    void serveThread(const std::function<void()> &body) {
        std::atomic<bool> isOver{false};
        std::thread thread([&] {
            body();
            isOver = true;
            mainThread.wake();
        });
        EXPECT_TRUE(serveUntil([&] { return isOver.load(); }));
        thread.join();
    }
    [[nodiscard]] std::thread::id mainThreadId() const { return _maker; }
    Kind mainThread;

private:
    const std::thread::id _maker = std::this_thread::get_id();
};

using MainThreads = testing::Types<FakeMainThread, PosixMainThread>;
TYPED_TEST_SUITE(MainThreadContract, MainThreads);

TYPED_TEST(MainThreadContract, OnlyTheThreadThatMadeItIsCurrent) {
    EXPECT_TRUE(this->mainThread.isCurrent());
    EXPECT_FALSE(std::async(std::launch::async, [&] { return this->mainThread.isCurrent(); }).get());
}

TYPED_TEST(MainThreadContract, OnTheMainThreadWorkRunsAtOnce) {
    bool hasRun = false;
    this->mainThread.performAndWait([&] { hasRun = true; });
    EXPECT_TRUE(hasRun);
}

TYPED_TEST(MainThreadContract, WorkOfAnotherThreadRunsOnTheMainThreadBeforeTheCallReturns) {
    std::thread::id worker;
    bool hasRunBeforeReturn = false;
    this->serveThread([&] {
        this->mainThread.performAndWait([&] { worker = std::this_thread::get_id(); });
        hasRunBeforeReturn = worker == this->mainThreadId();
    });
    EXPECT_TRUE(hasRunBeforeReturn);
}

TYPED_TEST(MainThreadContract, CallerStaysBlockedWhileTheMainThreadServesNobody) {
    std::atomic<bool> hasReturned{false};
    auto caller = std::async(std::launch::async, [&] {
        this->mainThread.performAndWait([] {});
        hasReturned = true;
        this->mainThread.wake();
    });
    EXPECT_EQ(caller.wait_for(30ms), std::future_status::timeout);
    EXPECT_TRUE(this->serveUntil([&] { return hasReturned.load(); }));
}

TYPED_TEST(MainThreadContract, WorkOfOneThreadKeepsItsOrder) {
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

TYPED_TEST(MainThreadContract, WorkOfManyThreadsNeverOverlaps) {
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

TYPED_TEST(MainThreadContract, DeferredObjectLivesUntilTheEventHasBeenHandled) {
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

TYPED_TEST(MainThreadContract, EndOfEventLetsGoOfDeferredObjects) {
    Traced trace;
    this->mainThread.releaseAfterCurrentEvent(tracked(trace));
    EXPECT_TRUE(trace.isAlive);
    this->mainThread.endEvent();
    EXPECT_FALSE(trace.isAlive);
    EXPECT_EQ(trace.destroyer, std::this_thread::get_id());
}

TYPED_TEST(MainThreadContract, ObjectDeferredByAnotherThreadIsLetGoOnTheMainThread) {
    Traced trace;
    this->serveThread([&] {
        this->mainThread.releaseAfterCurrentEvent(tracked(trace));
        this->mainThread.performAndWait([] {});
    });
    EXPECT_FALSE(trace.isAlive);
    EXPECT_EQ(trace.destroyer, std::this_thread::get_id());
}

// The real one only ---------------------------------------------------------------------------------------------------

TEST(PosixMainThread, WaitingEndsAtTheDeadlineWithoutPolling) {
    PosixMainThread mainThread;
    rusage before{};
    rusage after{};
    ::getrusage(RUSAGE_THREAD, &before);
    const auto deadline = std::chrono::steady_clock::now() + 100ms;
    EXPECT_FALSE(mainThread.runUntil([] { return false; }, deadline));
    EXPECT_GE(std::chrono::steady_clock::now(), deadline);
    ::getrusage(RUSAGE_THREAD, &after);
    EXPECT_LT(after.ru_nvcsw - before.ru_nvcsw, 20); // sleeps taken
}

TEST(PosixMainThread, WakeEndsAWaitingAndIsKeptForTheNextOne) {
    PosixMainThread mainThread;
    mainThread.wake();
    EXPECT_FALSE(mainThread.runOnce()); // has no deadline: only the wake ends it
    auto waker = std::async(std::launch::async, [&] { mainThread.wake(); });
    EXPECT_FALSE(mainThread.runOnce());
}

TEST(PosixMainThread, ConditionThatHoldsAlreadyServesNobody) {
    PosixMainThread mainThread;
    EXPECT_TRUE(mainThread.runUntil([] { return true; }));
}

TEST(PosixMainThread, WorkMayServeOthersAndKeepsWhatItDeferredUntilItsOwnEnd) {
    PosixMainThread mainThread;
    Traced outer;
    Traced inner;
    bool outerLivesAfterNested = false;
    bool innerLivesAfterNested = true;
    std::atomic<int> over{0};
    const auto finish = [&] {
        ++over;
        mainThread.wake();
    };
    std::thread second;
    std::thread first([&] {
        mainThread.performAndWait([&] {
            mainThread.releaseAfterCurrentEvent(tracked(outer));
            second = std::thread([&] {
                mainThread.performAndWait([&] { mainThread.releaseAfterCurrentEvent(tracked(inner)); });
                finish();
            });
            EXPECT_TRUE(mainThread.runUntil([&] { return over == 1; }, std::chrono::steady_clock::now() + 20s));
            outerLivesAfterNested = outer.isAlive;
            innerLivesAfterNested = inner.isAlive;
        });
        finish();
    });
    EXPECT_TRUE(mainThread.runUntil([&] { return over == 2; }, std::chrono::steady_clock::now() + 20s));
    first.join();
    second.join();
    EXPECT_TRUE(outerLivesAfterNested);
    EXPECT_FALSE(innerLivesAfterNested);
    EXPECT_FALSE(outer.isAlive);
}

TEST(PosixMainThread, ServingBeginsByLettingGoOfWhatWasDeferredBefore) {
    PosixMainThread mainThread;
    Traced trace;
    mainThread.releaseAfterCurrentEvent(tracked(trace));
    EXPECT_TRUE(mainThread.runUntil([&] { return !trace.isAlive; }, std::chrono::steady_clock::now() + 20s));
}

TEST(PosixMainThread, DestructorOfADeferredObjectMayDeferAnother) {
    PosixMainThread mainThread;
    Traced trace;
    mainThread.releaseAfterCurrentEvent(
        std::shared_ptr<const void>(&trace, [&](const void *) { mainThread.releaseAfterCurrentEvent(tracked(trace)); }));
    mainThread.endEvent();
    EXPECT_FALSE(trace.isAlive);
}

} // namespace
} // namespace orvane
