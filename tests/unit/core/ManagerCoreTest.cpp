#include "unit/core/Desk.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>

namespace orvane::test {
namespace {

using Alert = FakeAlerts::Alert;

class SharedManager : public ::testing::Test {
protected:
    ~SharedManager() override { ORVPresetManager::setSharedPorts(nullptr); }
    void share() { share(desk.ports()); }
    static void share(const ORVPresetManagerPorts &ports) { ORVPresetManager::setSharedPorts(&ports); }
    Desk desk;
};

TEST_F(SharedManager, IsOneObject) {
    share();
    ORVPresetManager *const first = ORVPresetManager::sharedManager();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(ORVPresetManager::sharedManager(), first);
}

TEST_F(SharedManager, IsNothingWithoutPorts) {
    EXPECT_EQ(ORVPresetManager::sharedManager(), nullptr);
}

/// Does the work on so many threads, which start as one, and waits for them.
void onThreads(std::size_t count, const std::function<void(std::size_t number)> &work) {
    std::latch all(static_cast<std::ptrdiff_t>(count));
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < count; ++i) {
        threads.emplace_back([&, i] {
            all.arrive_and_wait();
            work(i);
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
}

TEST_F(SharedManager, IsMadeOnceByManyThreads) {
    share();
    std::vector<ORVPresetManager *> seen(8);
    const int before = desk.application.loads;
    desk.application.whileLoading = [] {
        for (int i = 0; i < 1000; ++i) {
            std::this_thread::yield(); // so that the others come before it is made
        }
    };
    onThreads(seen.size(), [&](std::size_t i) { seen[i] = ORVPresetManager::sharedManager(); });
    EXPECT_EQ(std::count(seen.begin(), seen.end(), seen[0]), 8);
    EXPECT_NE(seen[0], nullptr);
    EXPECT_EQ(desk.application.loads, before + 1);
}

TEST_F(SharedManager, IsLoadedAndUnloadedByOneThreadAtATime) {
    share();
    ORVPresetManager *const shared = ORVPresetManager::sharedManager();
    ASSERT_NE(shared, nullptr);
    std::atomic<int> inside = 0;
    std::atomic<int> together = 0;
    desk.notifications.whileObserving = [&] {
        together += ++inside > 1 ? 1 : 0;
        std::this_thread::yield();
        --inside;
    };
    onThreads(4, [](std::size_t /*number*/) {
        for (int i = 0; i < 500; ++i) {
            ORVPresetManager::sharedManager()->loadManager();
            ORVPresetManager::sharedManager()->unloadManager();
        }
    });
    desk.notifications.whileObserving = nullptr;
    EXPECT_EQ(together.load(), 0);
    EXPECT_EQ(desk.notifications.observerCount(), 0U);
    EXPECT_EQ(desk.notifications.additions, desk.notifications.removals);
    EXPECT_GE(desk.notifications.additions, 1);
    EXPECT_EQ(ORVPresetManager::sharedManager(), shared);
}

TEST_F(SharedManager, StaysEmptyAfterAFailedStartAndIsTriedAgain) {
    share();
    desk.application.failures = 1;
    EXPECT_EQ(ORVPresetManager::sharedManager(), nullptr);
    EXPECT_EQ(desk.log.entries(), (std::vector<std::string>{"-[ORVPresetManager init]: NSApplicationLoad failed!"}));
    EXPECT_NE(ORVPresetManager::sharedManager(), nullptr);
}

TEST_F(SharedManager, ReadsThePreferencesOnlyWhenTheApplicationIsLoaded) {
    share();
    desk.preferences.journal.clear();
    desk.application.failures = 1;
    std::size_t readings = 0;
    desk.application.whileLoading = [&] { readings += desk.preferences.journal.size(); };
    EXPECT_EQ(ORVPresetManager::sharedManager(), nullptr);
    EXPECT_TRUE(desk.preferences.journal.empty());
    EXPECT_NE(ORVPresetManager::sharedManager(), nullptr);
    EXPECT_EQ(readings, 0U);
    EXPECT_EQ(desk.preferences.journal, (std::vector<std::string>{"synchronize", "copyAppValue ORVPresets"}));
    desk.application.whileLoading = nullptr;
}

TEST_F(SharedManager, CannotBeReleased) {
    share();
    ORVPresetManager *const shared = ORVPresetManager::sharedManager();
    for (int i = 0; i < 10; ++i) {
        shared->release();
    }
    shared->dealloc();
    EXPECT_EQ(shared->retain(), shared);
    EXPECT_EQ(shared->autorelease(), shared);
    EXPECT_EQ(shared->retainCount(), ~0UL);
    EXPECT_EQ(ORVPresetManager::sharedManager(), shared);
}

TEST_F(SharedManager, IsWhatAnotherManagersRetainAndAutoreleaseGive) {
    share();
    EXPECT_NE(ORVPresetManager::sharedManager(), desk.manager.get());
    EXPECT_EQ(desk.manager->retain(), ORVPresetManager::sharedManager());
    EXPECT_EQ(desk.manager->autorelease(), ORVPresetManager::sharedManager());
}

TEST_F(SharedManager, StartsWithThePresetsReadAndEverythingElseEmpty) {
    desk.setPresets(list({preset("x")}));
    share();
    const ORVPresetManager *manager = ORVPresetManager::sharedManager();
    EXPECT_EQ(manager->presets().size(), 1U);
    EXPECT_TRUE(manager->promptValues().empty());
    EXPECT_EQ(manager->contextualDirectory(), "");
    EXPECT_EQ(manager->promptDirectoryName(), "");
    EXPECT_FALSE(manager->fileCreationError().has_value());
    EXPECT_EQ(desk.notifications.observerCount(), 0U);
}

TEST(ErrorReport, OnTheMainThreadShowsTheAlertAtOnce) {
    Desk desk;
    desk.manager->reportErrorMessage("Title", "Message");
    EXPECT_EQ(desk.alerts.alerts, (std::vector{Alert{"Title", "Message"}}));
    desk.manager->reportErrorWithDict({"T", "M"});
    EXPECT_EQ(desk.alerts.alerts.back(), (Alert{"T", "M"}));
}

TEST(ErrorReport, OnTheMainThreadWithoutATitleShowsTheMessage) {
    Desk desk;
    desk.manager->reportErrorMessage(std::nullopt, "Message");
    EXPECT_EQ(desk.alerts.alerts, (std::vector{Alert{std::nullopt, "Message"}}));
}

/// Reports from a thread of its own and handles the main thread's events until it is through.
void reportFromThread(Desk &desk, const std::optional<std::string> &title, const std::optional<std::string> &message) {
    std::atomic<bool> returned = false;
    std::thread thread([&] {
        desk.manager->reportErrorMessage(title, message);
        returned = true;
        desk.mainThread.wake();
    });
    desk.alerts.whileShown = [&] { EXPECT_FALSE(returned.load()); };
    EXPECT_TRUE(desk.mainThread.runUntil([&] { return returned.load(); }));
    thread.join();
}

TEST(ErrorReport, FromAnotherThreadBlocksItUntilTheAlertIsDismissed) {
    Desk desk;
    reportFromThread(desk, "Title", "Message");
    EXPECT_EQ(desk.alerts.alerts, (std::vector{Alert{"Title", "Message"}}));
    EXPECT_EQ(desk.alerts.threads.at(0), std::this_thread::get_id());
}

TEST(ErrorReport, FromAnotherThreadWithoutATitleShowsNeitherTitleNorMessage) {
    Desk desk;
    reportFromThread(desk, std::nullopt, "Message");
    EXPECT_EQ(desk.alerts.alerts, (std::vector{Alert{std::nullopt, std::nullopt}}));
}

TEST(ErrorReport, FromAnotherThreadWithoutAMessageShowsTheTitle) {
    Desk desk;
    reportFromThread(desk, "Title", std::nullopt);
    EXPECT_EQ(desk.alerts.alerts, (std::vector{Alert{"Title", std::nullopt}}));
}

TEST(ErrorReport, ReadsTheMessageButNotTheTitleAsAFormat) {
    Desk desk;
    desk.manager->reportErrorMessage("100%d", "'100%d' already exists");
    EXPECT_EQ(desk.alerts.alerts, (std::vector{Alert{"100%d", "'1000' already exists"}}));
}

TEST(ErrorReport, FromAnotherThreadReadsTheMessageAsAFormatOnce) {
    Desk desk;
    reportFromThread(desk, "100%%d", "100%%d");
    EXPECT_EQ(desk.alerts.alerts, (std::vector{Alert{"100%%d", "100%d"}}));
}

TEST(MessageFormat, GivesEveryDirectiveWhatAnAbsentArgumentGives) {
    const std::pair<const char *, const char *> cases[] = {{"plain", "plain"},
                                                           {"", ""},
                                                           {"100%%", "100%"},
                                                           {"%d", "0"},
                                                           {"%i%u%x%X%o", "00000"},
                                                           {"%ld %lld %hhd %zu", "0 0 0 0"},
                                                           {"%5d|", "    0|"},
                                                           {"%-5d|", "0    |"},
                                                           {"%05d|", "00000|"},
                                                           {"%+d", "+0"},
                                                           {"% d", " 0"},
                                                           {"%.3d", "000"},
                                                           {"%.0d|", "|"},
                                                           {"%5.2d|", "   00|"},
                                                           {"%#x", "0"},
                                                           {"%#.0o", "0"},
                                                           {"%@", "(null)"},
                                                           {"%s", "(null)"},
                                                           {"%8s|", "  (null)|"},
                                                           {"%-8@|", "(null)  |"},
                                                           {"%.3s", "(nu"},
                                                           {"%f", "0.000000"},
                                                           {"%.1f", "0.0"},
                                                           {"%e", "0.000000e+00"},
                                                           {"%g", "0"},
                                                           {"%p", "0x0"},
                                                           {"%c|", "|"},
                                                           {"%n|", "|"},
                                                           {"%2$d", "0"},
                                                           {"%1$@", "(null)"},
                                                           {"%*d|", "0|"},
                                                           {"100% sure", "100(null)ure"},
                                                           {"50% off", "500ff"}};
    for (const auto &[format, expected] : cases) {
        EXPECT_EQ(ORVMessageOfFormat(format), expected) << format;
    }
}

TEST(MessageFormat, LeavesWhatIsNoDirective) {
    for (const char *text : {"100%", "%", "%5", "%l", "%!", "%-", "%é", "%.", "%y"}) {
        EXPECT_EQ(ORVMessageOfFormat(text), text);
    }
}

TEST(MessageFormat, CutsAbsurdWidths) {
    EXPECT_LE(ORVMessageOfFormat("%999999999999999999999d").size(), 1000U);
    EXPECT_LE(ORVMessageOfFormat("%.999999999f").size(), 1100U);
}

} // namespace
} // namespace orvane::test
