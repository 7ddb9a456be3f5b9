// What every main thread promises, on Qt's.

#include "QtTestSupport.h"

#include "platform/qt/QtMainThread.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

/// Runs a body on a thread of its own while the main thread handles events.
void onOtherThread(const std::function<void()> &body) {
    std::atomic<bool> isOver = false;
    std::thread thread([&] {
        body();
        isOver = true;
    });
    EXPECT_TRUE(waitUntil([&] { return isOver.load(); }));
    thread.join();
}

/// Whether a thread of this process comes to sleep within 20 s.
bool fallsAsleep(pid_t thread) {
    const std::string path = "/proc/self/task/" + std::to_string(thread) + "/stat";
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    for (std::string all; std::chrono::steady_clock::now() < deadline; std::this_thread::yield()) {
        std::ifstream state(path);
        std::getline(state, all);
        const std::size_t name = all.rfind(") "); // the state stands behind the name, which is in brackets (Linux, proc(5))
        if (name != std::string::npos && all[name + 2] == 'S') {
            return true;
        }
    }
    return false;
}

TEST(QtMainThreads, OnlyTheThreadThatMadeItIsCurrent) {
    QtMainThread mainThread;
    EXPECT_TRUE(mainThread.isCurrent());
    EXPECT_FALSE(std::async(std::launch::async, [&] { return mainThread.isCurrent(); }).get());
}

TEST(QtMainThreads, OnTheMainThreadWorkRunsAtOnce) {
    QtMainThread mainThread;
    bool hasRun = false;
    mainThread.performAndWait([&] { hasRun = true; });
    EXPECT_TRUE(hasRun);
}

TEST(QtMainThreads, WorkOfAnotherThreadRunsOnTheMainThreadBeforeTheCallReturns) {
    QtMainThread mainThread;
    std::thread::id worker;
    bool hasRunBeforeReturn = false;
    onOtherThread([&] {
        mainThread.performAndWait([&] { worker = std::this_thread::get_id(); });
        hasRunBeforeReturn = worker != std::thread::id();
    });
    EXPECT_TRUE(hasRunBeforeReturn);
    EXPECT_EQ(worker, std::this_thread::get_id());
}

TEST(QtMainThreads, CallerStaysBlockedWhileNoEventsAreHandled) {
    QtMainThread mainThread;
    auto caller = std::async(std::launch::async, [&] { mainThread.performAndWait([] {}); });
    EXPECT_EQ(caller.wait_for(30ms), std::future_status::timeout);
    EXPECT_TRUE(waitUntil([&] { return caller.wait_for(0ms) == std::future_status::ready; }));
}

TEST(QtMainThreads, WorkRunsInTheOrderOfItsArrival) {
    QtMainThread mainThread;
    std::vector<int> order;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        std::promise<pid_t> isOnItsWay;
        threads.emplace_back([&, i] {
            isOnItsWay.set_value(::gettid());
            mainThread.performAndWait([&, i] { order.push_back(i); });
        });
        EXPECT_TRUE(fallsAsleep(isOnItsWay.get_future().get())); // it has arrived, and waits
    }
    EXPECT_TRUE(waitUntil([&] { return order.size() == 8; }));
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
}

TEST(QtMainThreads, ManyThreadsAreAllServed) {
    QtMainThread mainThread;
    int inside = 0;
    int most = 0;
    int total = 0;
    onOtherThread([&] {
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&] {
                for (int j = 0; j < 50; ++j) {
                    mainThread.performAndWait([&] {
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

TEST(QtMainThreads, ModalLoopServesOthersToo) {
    QtMainThread mainThread;
    QEventLoop modal;
    std::thread other([&] { mainThread.performAndWait([&] { modal.quit(); }); });
    QTimer::singleShot(20s, &modal, [&] { modal.exit(1); });
    EXPECT_EQ(modal.exec(), 0);
    other.join();
}

TEST(QtMainThreads, PauseHoldsWorkBackUntilItsEnd) {
    QtMainThread mainThread;
    std::atomic<bool> hasRun = false;
    auto pause = std::make_unique<QtMainThread::Pause>(mainThread);
    std::thread other([&] { mainThread.performAndWait([&] { hasRun = true; }); });
    bool isLater = false;
    QTimer::singleShot(100, [&] { isLater = true; });
    EXPECT_TRUE(waitUntil([&] { return isLater; }));
    EXPECT_FALSE(hasRun);
    pause.reset();
    EXPECT_TRUE(waitUntil([&] { return hasRun.load(); }));
    other.join();
}

TEST(QtMainThreads, DeferredObjectLivesUntilItsEventHasBeenHandledThoughNestedLoopsRun) {
    QtMainThread mainThread;
    auto object = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = object;
    bool livesAfterNestedLoop = false;
    QTimer::singleShot(0, [&] {
        mainThread.releaseAfterCurrentEvent(std::move(object));
        QEventLoop nested;
        QTimer::singleShot(30, &nested, &QEventLoop::quit);
        nested.exec();
        QEventLoop().processEvents();
        livesAfterNestedLoop = !watched.expired();
    });
    EXPECT_TRUE(waitUntil([&] { return watched.expired(); }));
    EXPECT_TRUE(livesAfterNestedLoop);
}

TEST(QtMainThreads, WhatHandedOverWorkDefersGoesBeforeItsCallerGoesOn) {
    QtMainThread mainThread;
    std::weak_ptr<int> watched;
    bool livesAtEndOfWork = false;
    bool livesAfterwards = true;
    std::thread::id destroyer;
    onOtherThread([&] {
        mainThread.performAndWait([&] {
            const std::shared_ptr<int> object(new int(1), [&](const int *gone) {
                destroyer = std::this_thread::get_id();
                delete gone;
            });
            watched = object;
            mainThread.releaseAfterCurrentEvent(object);
            livesAtEndOfWork = !watched.expired();
        });
        livesAfterwards = !watched.expired();
    });
    EXPECT_TRUE(livesAtEndOfWork);
    EXPECT_FALSE(livesAfterwards);
    EXPECT_EQ(destroyer, std::this_thread::get_id());
}

TEST(QtMainThreads, ObjectDeferredByAnotherThreadIsLetGoOnTheMainThread) {
    QtMainThread mainThread;
    std::atomic<std::thread::id> destroyer;
    std::thread([&] {
        mainThread.releaseAfterCurrentEvent(
            std::shared_ptr<const void>(&destroyer, [&](const void *) { destroyer = std::this_thread::get_id(); }));
    }).join();
    EXPECT_TRUE(waitUntil([&] { return destroyer.load() != std::thread::id(); }));
    EXPECT_EQ(destroyer.load(), std::this_thread::get_id());
}

TEST(QtMainThreads, DestructorOfADeferredObjectMayDeferAnother) {
    QtMainThread mainThread;
    bool secondIsGone = false;
    onOtherThread([&] {
        mainThread.performAndWait([&] {
            mainThread.releaseAfterCurrentEvent(std::shared_ptr<const void>(&secondIsGone, [&](const void *) {
                mainThread.releaseAfterCurrentEvent(std::shared_ptr<const void>(&secondIsGone, [&](const void *) { secondIsGone = true; }));
            }));
        });
    });
    EXPECT_TRUE(secondIsGone);
}

} // namespace
} // namespace orvane::test
