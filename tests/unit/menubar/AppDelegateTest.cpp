#include "ORVHelperAppDelegate.h"

#include "fakes/FakeAssertionHandler.h"
#include "fakes/FakeHotKeyEvents.h"
#include "fakes/FakePopUpMenus.h"
#include "fakes/FakeServices.h"
#include "hotkeys/HotKeyController.h"
#include "unit/menubar/MenuDesk.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;

/// A delegate that is connected to both controllers, as the main interface file does it.
class AppDelegate : public ::testing::Test {
protected:
    AppDelegate() {
        hotkeys.setWindow(&window);
        hotkeys.setPopupMenu(&desk.menu);
        delegate->setMenubarController(desk.controller.get());
        delegate->setHotkeyController(&hotkeys);
        desk.controller->awakeFromNib();
        hotkeys.awakeFromNib();
        delegate->applicationDidFinishLaunching();
    }
    ~AppDelegate() override { desk.controller.reset(); }

    MenuDesk desk;
    FakePopUpMenus popUps;
    FakeReferenceWindow window;
    FakeAssertionHandler assertions;
    FakeHotKeyEvents events;
    std::unique_ptr<SGHotKeyCenter> center = SGHotKeyCenter::create({assertions, events});
    HotKeyController hotkeys{{desk.desk.notifications, popUps, desk.desk.preferences, *center}};
    FakeServices services;
    std::unique_ptr<ORVHelperAppDelegate> delegate = std::make_unique<ORVHelperAppDelegate>(services);
};

TEST_F(AppDelegate, ProvidesTheServicesOnceLaunched) {
    EXPECT_EQ(services.provider, delegate.get());
    EXPECT_EQ(services.journal, Lines{"setServicesProvider"});
}

TEST_F(AppDelegate, ProvidesNothingBeforeThat) {
    FakeServices others;
    {
        const ORVHelperAppDelegate early(others);
        EXPECT_EQ(others.provider, nullptr);
    }
    EXPECT_TRUE(others.journal.empty());
}

TEST_F(AppDelegate, StopsProvidingWhenItGoes) {
    delegate.reset();
    EXPECT_EQ(services.provider, nullptr);
    EXPECT_FALSE(services.makePreset(""));
}

TEST_F(AppDelegate, PopsThePresetMenuUpForARequestWhateverItHolds) {
    popUps.mouse = {500, 300};
    for (const char *pasteboard : {"", "some text", "/jobs"}) {
        popUps.popUps.clear();
        ASSERT_TRUE(services.makePreset(pasteboard, "user data"));
        EXPECT_EQ(services.error, std::nullopt);
        ASSERT_EQ(popUps.popUps.size(), 1U);
        EXPECT_EQ(popUps.popUps[0].menu, &desk.menu);
        EXPECT_EQ(popUps.popUps[0].window, &window);
        EXPECT_EQ(popUps.popUps[0].event.location, (ScreenPoint{490, 290}));
    }
    EXPECT_TRUE(desk.desk.application.activations.empty()); // who asked stays in front
}

TEST_F(AppDelegate, PopsTheSameMenuUpBeforeThereIsAnyPreset) {
    Lines shown;
    popUps.whileOpen = [&](Menu &) { shown = desk.titles(); };
    services.makePreset("");
    EXPECT_EQ(shown, (Lines{"Preferences…", "Quit Orvane"}));
}

TEST_F(AppDelegate, ReportsNoErrorWhateverBecomesOfTheRequest) {
    desk.setFile(list({labelled("Film")}));
    desk.controller->reloadPrefs();
    desk.desk.fileSystem.addFolder("/front/Film");
    desk.frontWindow.active = true;
    desk.frontWindow.shown = "/front";
    popUps.whileOpen = [](Menu &menu) { menu.performActionForItemAtIndex(0); };
    services.makePreset("");
    EXPECT_EQ(desk.desk.alerts.alerts.at(0).title, "Directory already exists");
    EXPECT_EQ(services.error, std::nullopt);
}

TEST_F(AppDelegate, TakesARequestWithoutHotKeyController) {
    delegate->setHotkeyController(nullptr);
    EXPECT_TRUE(services.makePreset(""));
    EXPECT_EQ(services.error, std::nullopt);
    EXPECT_TRUE(popUps.popUps.empty());
}

TEST_F(AppDelegate, KnowsItsWindowAndControllers) {
    EXPECT_EQ(delegate->window(), nullptr);
    delegate->setWindow(&window);
    EXPECT_EQ(delegate->window(), &window);
    EXPECT_EQ(delegate->menubarController(), desk.controller.get());
    EXPECT_EQ(delegate->hotkeyController(), &hotkeys);
}

} // namespace
} // namespace orvane::test
