#include "unit/core/Desk.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane::test {
namespace {

using Names = std::vector<std::string>;
constexpr const char *SharedPane = "/Library/PreferencePanes/ORVPrefPane.prefPane";
constexpr const char *OwnPane = "/home/user/Library/PreferencePanes/ORVPrefPane.prefPane";

class Service : public ::testing::Test {
protected:
    Service() {
        desk.setPresets(list({preset("zero"), preset("one"), preset("two")}));
        desk.manager->setBasePath("/jobs");
    }
    Desk desk;
};

TEST_F(Service, RunsThePresetOfTheIndex) {
    desk.manager->handlePresetClicked(1);
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"one/"}));
}

TEST_F(Service, OpensThePreferencePaneForTheIndexBehindTheLast) {
    desk.fileSystem.addFile(OwnPane);
    desk.manager->handlePresetClicked(3);
    EXPECT_EQ(desk.workspace.opened, (Names{OwnPane}));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Names());
}

TEST_F(Service, OpensThePreferencePaneForIndexZeroWhenThereAreNoPresets) {
    desk.setPresets(list({}));
    desk.fileSystem.addFile(OwnPane);
    desk.manager->handlePresetClicked(0);
    EXPECT_EQ(desk.workspace.opened, (Names{OwnPane}));
}

TEST_F(Service, IgnoresOtherIndexes) {
    desk.fileSystem.addFile(OwnPane);
    for (const std::int32_t index : {4, -1, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
        desk.manager->handlePresetClicked(index);
    }
    EXPECT_TRUE(desk.workspace.opened.empty());
    EXPECT_TRUE(desk.alerts.alerts.empty());
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Names());
}

TEST_F(Service, ReadsTheConfigurationAnewForEveryClick) {
    desk.setPresets(list({preset("fresh")}));
    desk.manager->handlePresetClicked(0);
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"fresh/"}));
}

TEST_F(Service, OpensBothPanesTheSharedOneFirst) {
    desk.fileSystem.addFile(SharedPane);
    desk.fileSystem.addFile(OwnPane);
    desk.manager->openORVPreferencePane();
    EXPECT_EQ(desk.workspace.opened, (Names{SharedPane, OwnPane}));
}

TEST_F(Service, OpensNothingWhenNoPaneIsInstalled) {
    desk.manager->openORVPreferencePane();
    EXPECT_TRUE(desk.workspace.opened.empty());
    EXPECT_TRUE(desk.alerts.alerts.empty());
}

TEST_F(Service, KeepsACopyOfTheBasePathAndTheOldOneUntilTheEventIsHandled) {
    desk.mainThread.endEvent();
    const std::string &old = desk.manager->contextualDirectory();
    EXPECT_EQ(old, "/jobs");
    desk.manager->setBasePath("/other");
    ASSERT_EQ(desk.mainThread.deferred(), 1U);
    EXPECT_EQ(old, "/jobs");
    EXPECT_EQ(desk.manager->contextualDirectory(), "/other");
    desk.manager->setBasePath(std::nullopt);
    EXPECT_EQ(desk.mainThread.deferred(), 2U);
    EXPECT_EQ(desk.manager->contextualDirectory(), "");
}

TEST_F(Service, AddsTheObserverOnce) {
    EXPECT_EQ(desk.notifications.observerCount(), 0U); // a new manager observes nothing
    desk.manager->loadManager();
    desk.manager->loadManager();
    EXPECT_EQ(desk.notifications.observerCount(), 1U);
    EXPECT_EQ(desk.notifications.behaviors(ORVPresetConfigurationChangedNotification),
              (std::vector{DistributedNotifications::Suspension::Coalesce}));
    desk.manager->unloadManager();
    desk.manager->unloadManager();
    EXPECT_EQ(desk.notifications.observerCount(), 0U);
    desk.manager->loadManager();
    EXPECT_EQ(desk.notifications.observerCount(), 1U);
}

TEST_F(Service, RemovesNoObserverThatItDidNotAdd) {
    desk.manager->unloadManager();
    EXPECT_EQ(desk.notifications.removals, 0);
    desk.manager->loadManager();
    desk.manager->unloadManager();
    desk.manager->unloadManager();
    EXPECT_EQ(desk.notifications.additions, 1);
    EXPECT_EQ(desk.notifications.removals, 1);
    desk.manager.reset();
    EXPECT_EQ(desk.notifications.removals, 1);
}

TEST_F(Service, ReReadsThePresetsWhenTheConfigurationChanges) {
    desk.manager->loadManager();
    desk.notifications.arrive("SomethingElse");
    EXPECT_TRUE(desk.manager->presets().empty()); // read before any was stored
    desk.notifications.arrive(ORVPresetConfigurationChangedNotification);
    EXPECT_EQ(desk.manager->presets().size(), 3U);
}

TEST_F(Service, TakesSeveralChangesWhileSuspendedForOne) {
    desk.manager->loadManager();
    desk.preferences.journal.clear();
    desk.notifications.suspend();
    for (int i = 0; i < 3; ++i) {
        desk.notifications.arrive(ORVPresetConfigurationChangedNotification);
    }
    EXPECT_TRUE(desk.preferences.journal.empty());
    desk.notifications.resume();
    EXPECT_EQ(std::count(desk.preferences.journal.begin(), desk.preferences.journal.end(), "synchronize"), 1);
}

TEST_F(Service, StopsObservingWhenItGoes) {
    desk.manager->loadManager();
    desk.manager.reset();
    EXPECT_EQ(desk.notifications.observerCount(), 0U);
}

} // namespace
} // namespace orvane::test
