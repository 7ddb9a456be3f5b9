// What every main thread promises, run on Qt's; then what only Qt's has.

#include "QtTestSupport.h"

#include "contract/processes/MainThreadContract.h"
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

class QtMainThreadHarness {
public:
    MainThread &mainThread() { return _mainThread; }
    static bool serveUntil(const std::function<bool()> &done) { return waitUntil(done); }
    static void wake() {} // it asks again by itself
    static void handleEvent(const std::function<void()> &work) {
        bool isHandled = false;
        QTimer::singleShot(0, [&] {
            work();
            isHandled = true;
        });
        EXPECT_TRUE(waitUntil([&] { return isHandled; }));
    }

private:
    QtMainThread _mainThread;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainThreadContract, QtMainThreadHarness);

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

} // namespace
} // namespace orvane::test
