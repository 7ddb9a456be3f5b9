// What every thread launcher promises, run on the fake and on the real one; then what only the fake has.

#include "ProcessTestTools.h"

#include "fakes/FakeThreadLauncher.h"
#include "platform/posix/PosixThreadLauncher.h"

#include <atomic>
#include <memory>
#include <pthread.h>
#include <vector>

namespace orvane {
namespace {

using test::eventually;

/// While it lives no new thread can get its stack.
class NoRoomForStacks {
public:
    NoRoomForStacks() {
        ::pthread_getattr_default_np(&_before);
        pthread_attr_t huge;
        ::pthread_attr_init(&huge);
        ::pthread_attr_setstacksize(&huge, std::size_t{1} << 47); // more than user space has on x86-64 and arm64 with 48 bits
        ::pthread_setattr_default_np(&huge);
        ::pthread_attr_destroy(&huge);
    }
    NoRoomForStacks(const NoRoomForStacks &) = delete;
    NoRoomForStacks &operator=(const NoRoomForStacks &) = delete;
    ~NoRoomForStacks() {
        ::pthread_setattr_default_np(&_before);
        ::pthread_attr_destroy(&_before);
    }

private:
    pthread_attr_t _before{};
};

class RefusingFake {
public:
    explicit RefusingFake(FakeThreadLauncher &launcher) : _launcher(launcher) { _launcher.refuses = true; }
    RefusingFake(const RefusingFake &) = delete;
    RefusingFake &operator=(const RefusingFake &) = delete;
    ~RefusingFake() { _launcher.refuses = false; }

private:
    FakeThreadLauncher &_launcher;
};

RefusingFake refusing(FakeThreadLauncher &launcher) {
    return RefusingFake(launcher);
}
NoRoomForStacks refusing(ThreadLauncher & /*launcher*/) {
    return {};
}

std::unique_ptr<FakeThreadLauncher> make(const FakeThreadLauncher *) {
    return std::make_unique<FakeThreadLauncher>(FakeThreadLauncher::Mode::Real);
}
std::unique_ptr<PosixThreadLauncher> make(const PosixThreadLauncher *) {
    return std::make_unique<PosixThreadLauncher>();
}

template <typename Kind> class ThreadLauncherContract : public testing::Test {
protected:
    std::unique_ptr<Kind> launcher = make(static_cast<const Kind *>(nullptr));
};

using ThreadLaunchers = testing::Types<FakeThreadLauncher, PosixThreadLauncher>;
TYPED_TEST_SUITE(ThreadLauncherContract, ThreadLaunchers);

// Detached work may outlive its test by a moment, so it shares what it touches.

TYPED_TEST(ThreadLauncherContract, WorkRunsOnAnotherThread) {
    auto worker = std::make_shared<std::atomic<std::thread::id>>();
    EXPECT_TRUE(this->launcher->detachNewThread([=] { *worker = std::this_thread::get_id(); }));
    ASSERT_TRUE(eventually([&] { return worker->load() != std::thread::id(); }));
    EXPECT_NE(worker->load(), std::this_thread::get_id());
}

TYPED_TEST(ThreadLauncherContract, CallReturnsWhileTheWorkStillRuns) {
    auto mayEnd = std::make_shared<std::atomic<bool>>(false);
    auto hasSeenIt = std::make_shared<std::atomic<bool>>(false);
    EXPECT_TRUE(this->launcher->detachNewThread([=] { *hasSeenIt = eventually([&] { return mayEnd->load(); }); }));
    *mayEnd = true; // too late for work that ran inside the call
    EXPECT_TRUE(eventually([&] { return hasSeenIt->load(); }));
}

TYPED_TEST(ThreadLauncherContract, SeveralPiecesOfWorkRunAtOnce) {
    auto inside = std::make_shared<std::atomic<int>>(0);
    auto together = std::make_shared<std::atomic<int>>(0);
    for (int i = 0; i < 8; ++i) {
        EXPECT_TRUE(this->launcher->detachNewThread([=] {
            ++*inside;
            *together += eventually([&] { return *inside == 8; }) ? 1 : 0;
        }));
    }
    EXPECT_TRUE(eventually([&] { return *together == 8; }));
}

TYPED_TEST(ThreadLauncherContract, WithoutAThreadTheWorkDoesNotRun) {
    auto runs = std::make_shared<std::atomic<int>>(0);
    {
        const auto refusal = refusing(*this->launcher);
        EXPECT_FALSE(this->launcher->detachNewThread([=] { ++*runs; }));
    }
    EXPECT_TRUE(this->launcher->detachNewThread([=] { *runs += 10; }));
    EXPECT_TRUE(eventually([&] { return *runs == 10; }));
}

TEST(FakeThreadLauncher, JoinWaitsForAllWorkAlsoForWhatStartsMeanwhile) {
    FakeThreadLauncher launcher(FakeThreadLauncher::Mode::Real);
    std::atomic<bool> isDone{false};
    EXPECT_TRUE(launcher.detachNewThread([&] { EXPECT_TRUE(launcher.detachNewThread([&] { isDone = true; })); }));
    launcher.joinAll();
    EXPECT_TRUE(isDone);
    EXPECT_FALSE(launcher.isBusy());
}

TEST(FakeThreadLauncher, IsBusyUntilTheWorkHasEndedAndThenSaysSo) {
    std::atomic<bool> isFinished{false};
    std::atomic<bool> mayEnd{false};
    FakeThreadLauncher launcher(FakeThreadLauncher::Mode::Real);
    launcher.onFinished = [&] { isFinished = true; };
    EXPECT_FALSE(launcher.isBusy());
    EXPECT_TRUE(launcher.detachNewThread([&] { EXPECT_TRUE(eventually([&] { return mayEnd.load(); })); }));
    EXPECT_TRUE(launcher.isBusy());
    mayEnd = true;
    ASSERT_TRUE(eventually([&] { return isFinished.load(); }));
    EXPECT_FALSE(launcher.isBusy());
}

} // namespace
} // namespace orvane
