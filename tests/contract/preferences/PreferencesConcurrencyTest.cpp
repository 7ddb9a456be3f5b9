// Several programs at once, and programs that die while they save.

#include "contract/preferences/PreferencesHome.h"

#include <chrono>
#include <csignal>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <poll.h>

namespace orvane {
namespace {

int counterIn(PosixPreferencesStore &store) {
    const auto value = store.copyAppValue("counter");
    return value ? std::stoi(std::string(value->root().string())) : 0;
}

/// Reads, adds one and stores, all under the lock. False when any step fails.
bool increment(PosixPreferencesStore &store) {
    const auto lock = store.lock();
    if (lock == nullptr || !store.synchronize()) {
        return false;
    }
    store.setAppValue("counter", text(std::to_string(counterIn(store) + 1)));
    return store.synchronize();
}

TEST(ConcurrentPreferences, NoUpdateOfEightProgramsIsLost) {
    constexpr int Programs = 8;
    constexpr int Rounds = 25;
    PreferencesHome home;
    home.put("<dict><key>other</key><string>kept</string></dict>");
    std::vector<pid_t> children;
    for (int i = 0; i < Programs; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            PosixPreferencesStore store = home.store();
            for (int round = 0; round < Rounds; ++round) {
                if (!increment(store)) {
                    ::_exit(1);
                }
            }
            ::_exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    const auto list = home.onDisk();
    ASSERT_TRUE(list);
    EXPECT_EQ(list->root().find("counter")->string(), std::to_string(Programs * Rounds));
    EXPECT_EQ(list->root().find("other")->string(), "kept");
    EXPECT_EQ(home.leftovers(), 0U);
}

TEST(ConcurrentPreferences, AProgramKilledWhileItSavesLeavesAWholeFile) {
    PreferencesHome home;
    home.put("<dict><key>other</key><string>" + std::string(20'000, 'x') + "</string></dict>");
    std::mt19937 random(5);
    int last = 0;
    for (int trial = 0; trial < 60; ++trial) {
        int ready[2] = {-1, -1};
        ASSERT_EQ(::pipe(ready), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            PosixPreferencesStore store = home.store();
            while (increment(store)) {
                static_cast<void>(!::write(ready[1], "x", 1));
            }
            ::_exit(1);
        }
        ::close(ready[1]);
        pollfd wait{ready[0], POLLIN, 0};
        EXPECT_EQ(::poll(&wait, 1, 10'000), 1); // it saves now; the kill falls anywhere into the following rounds
        ::usleep(static_cast<useconds_t>(random() % 3000));
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));
        ::close(ready[0]);
        const auto list = home.onDisk();
        ASSERT_TRUE(list) << trial;
        ASSERT_EQ(list->root().find("other")->string().size(), 20'000U);
        const int counter = std::stoi(std::string(list->root().find("counter")->string()));
        EXPECT_GT(counter, last);
        last = counter;
        EXPECT_LE(home.leftovers(), 1U);
    }
    PosixPreferencesStore store = home.store();
    EXPECT_TRUE(increment(store));
    EXPECT_EQ(home.leftovers(), 0U) << "the next save clears what the killed ones left";
}

TEST(ConcurrentPreferences, TheLockKeepsOtherProgramsOutAndEndsWithItsHolder) {
    PreferencesHome home;
    PosixPreferencesLock mine((home.folder / "run" / "lock").string());
    PosixPreferencesLock other((home.folder / "run" / "lock").string());
    std::string why;
    ASSERT_TRUE(mine.acquire(std::chrono::seconds(1), why));
    ASSERT_TRUE(mine.acquire(std::chrono::seconds(1), why));
    EXPECT_FALSE(other.acquire(std::chrono::milliseconds(30), why));
    int asked = 0;
    EXPECT_FALSE(other.acquire(std::chrono::hours(1), why, [&] { return ++asked == 3; })); // ends long before
    EXPECT_EQ(asked, 3);
    EXPECT_TRUE(other.isHeldElsewhere());
    EXPECT_FALSE(why.empty());
    mine.release();
    EXPECT_FALSE(other.acquire(std::chrono::milliseconds(30), why));
    mine.release();
    EXPECT_TRUE(other.acquire(std::chrono::seconds(1), why));
}

TEST(ConcurrentPreferences, ALockFileThatWasTakenAwayIsMadeAnew) {
    PreferencesHome home;
    const auto path = home.folder / "run" / "lock";
    PosixPreferencesLock mine(path.string());
    std::string why;
    ASSERT_TRUE(mine.acquire(std::chrono::seconds(1), why));
    mine.release();
    std::filesystem::remove(path);
    PosixPreferencesLock other(path.string());
    ASSERT_TRUE(other.acquire(std::chrono::seconds(1), why));
    EXPECT_FALSE(mine.acquire(std::chrono::milliseconds(30), why));
}

TEST(ConcurrentPreferences, AChangeByAProgramWithoutTheLockIsKept) {
    PreferencesHome home;
    home.put("<dict><key>a</key><string>1</string></dict>");
    PosixPreferencesStore store = home.store();
    EXPECT_TRUE(store.synchronize());
    home.put("<dict><key>a</key><string>2</string><key>b</key><true/></dict>");
    store.setAppValue("counter", text("1"));
    EXPECT_TRUE(store.synchronize());
    const auto list = home.onDisk();
    EXPECT_EQ(list->root().find("a")->string(), "2");
    EXPECT_NE(list->root().find("b"), nullptr);
}

} // namespace
} // namespace orvane
