#include "hotkeys/HotKeyController.h"
#include "fakes/FakeDistributedNotifications.h"
#include "fakes/FakeHotKeyEvents.h"
#include "fakes/FakePopUpMenus.h"
#include "fakes/FakePreferencesStore.h"
#include "unit/hotkeys/KeyDesk.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

using Journal = std::vector<std::string>;
using Combinations = std::vector<FakeHotKeyEvents::Combination>;

constexpr const char *Changed = "ORVPresetConfigurationChangedNotification";

/// A controller over fakes, its center being the shared one so that presses arrive.
class HotKeyControllerTest : public testing::Test {
protected:
    HotKeyControllerTest() {
        const SGHotKeyCenterPorts ports{assertions, events};
        SGHotKeyCenter::setSharedPorts(&ports);
        makeController();
    }
    ~HotKeyControllerTest() override {
        controller.reset();
        SGHotKeyCenter::setSharedPorts(nullptr);
    }
    void makeController() {
        controller = std::make_unique<HotKeyController>(
            HotKeyControllerPorts{notifications, popUpMenus, preferences, *SGHotKeyCenter::sharedCenter()});
        controller->setWindow(&window);
        controller->setPopupMenu(&menu);
    }
    void setPreferences(const PropertyList &code, const PropertyList &flags) {
        preferences.disk = dict({{"ORVHotKeyCode", code}, {"ORVHotKeyFlags", flags}});
    }

    FakeAssertionHandler assertions;
    FakeDistributedNotifications notifications;
    FakeHotKeyEvents events;
    FakePopUpMenus popUpMenus;
    FakePreferencesStore preferences;
    FakeReferenceWindow window;
    Menu menu;
    std::unique_ptr<HotKeyController> controller;
};

TEST_F(HotKeyControllerTest, HasNoHotKeyBeforeItWakes) {
    EXPECT_EQ(controller->hotkey(), nullptr);
    EXPECT_TRUE(events.journal.empty());
    EXPECT_EQ(notifications.observerCount(), 0U);
}

TEST_F(HotKeyControllerTest, RegistersThePreferencesKeyWhenItWakes) {
    setPreferences(number(1), number(0x100000));
    controller->awakeFromNib();
    EXPECT_EQ(events.registered(), (Combinations{{1, 0x0100}}));
    ASSERT_NE(controller->hotkey(), nullptr);
    EXPECT_EQ(controller->hotkey()->identifier(), "ORVHotkey");
    EXPECT_EQ(controller->hotkey()->keyCombo(), SGKeyCombo(1, 0x0100));
    EXPECT_EQ(controller->hotkey()->target(), controller.get());
    EXPECT_EQ(controller->hotkey()->action().name(), "launch:");
    EXPECT_EQ(controller->hotkey()->action(), HotKeyController::launchAction());
    EXPECT_EQ(SGHotKeyCenter::sharedCenter()->hotKeyWithIdentifier("ORVHotkey"), controller->hotkey());
}

TEST_F(HotKeyControllerTest, HotKeyIsCompleteAndKeptBeforeTheDesktopIsAskedForIt) {
    setPreferences(number(1), number(0x100000));
    int registrations = 0;
    events.hook = [&](const std::string &line) {
        if (!line.starts_with("register ")) {
            return;
        }
        ++registrations;
        const auto kept = controller->hotkey();
        ASSERT_NE(kept, nullptr);
        EXPECT_EQ(line, "register 1+0x100 id=" + std::to_string(registrations));
        EXPECT_EQ(kept->hotKeyID().id, static_cast<std::uint32_t>(registrations)); // the new one, at every change
        EXPECT_EQ(kept->target(), controller.get());
        EXPECT_EQ(kept->action(), HotKeyController::launchAction());
    };
    controller->awakeFromNib();
    notifications.arrive(Changed);
    events.hook = nullptr;
    EXPECT_EQ(registrations, 2);
}

TEST_F(HotKeyControllerTest, RegistersBeforeItObserves) {
    setPreferences(number(1), number(0x100000));
    Combinations before;
    notifications.whileObserving = [&] { before = events.registered(); };
    controller->awakeFromNib();
    notifications.whileObserving = nullptr;
    EXPECT_EQ(before, (Combinations{{1, 0x0100}}));
    EXPECT_EQ(notifications.observerCount(), 1U);
    EXPECT_EQ(notifications.behaviors(Changed), std::vector{DistributedNotifications::Suspension::Coalesce});
    EXPECT_EQ(preferences.journal, Journal{"dictionaryWithContentsOfFile"});
}

TEST_F(HotKeyControllerTest, ConvertsEveryModifierAndDropsOtherBits) {
    setPreferences(number(40), number(0x1E0000 | 0x10000 | 0x20));
    controller->awakeFromNib();
    EXPECT_EQ(events.registered(), (Combinations{{40, 0x1B00}}));
}

TEST_F(HotKeyControllerTest, NegativeFlagsHaveEveryModifier) {
    setPreferences(number(40), number(-1));
    controller->awakeFromNib();
    EXPECT_EQ(events.registered(), (Combinations{{40, 0x1B00}}));
}

TEST_F(HotKeyControllerTest, ValuesOfOtherTypesCountAsZero) {
    setPreferences(list({number(40)}), dict({{"flags", number(0x100000)}}));
    controller->awakeFromNib();
    EXPECT_TRUE(events.journal.empty());
    EXPECT_EQ(controller->hotkey()->keyCombo(), SGKeyCombo(0, 0));
}

TEST_F(HotKeyControllerTest, TakesDecimalTextsForNumbers) {
    setPreferences(text("40"), text("1048576"));
    controller->awakeFromNib();
    EXPECT_EQ(events.registered(), (Combinations{{40, 0x0100}}));
}

TEST_F(HotKeyControllerTest, KeyCodeZeroWithAModifierIsAHotKey) {
    preferences.disk = dict({{"ORVHotKeyFlags", number(0x100000)}});
    controller->awakeFromNib();
    EXPECT_EQ(events.registered(), (Combinations{{0, 0x0100}}));
}

TEST_F(HotKeyControllerTest, RegistersNothingWithoutPreferences) {
    controller->awakeFromNib();
    EXPECT_TRUE(events.journal.empty());
    EXPECT_TRUE(assertions.failures.empty());
    ASSERT_NE(controller->hotkey(), nullptr);
    EXPECT_EQ(controller->hotkey()->keyCombo(), SGKeyCombo(0, 0));
}

TEST_F(HotKeyControllerTest, RegistersNothingWithoutModifiers) {
    setPreferences(number(40), number(0));
    controller->awakeFromNib();
    EXPECT_TRUE(events.journal.empty());
}

TEST_F(HotKeyControllerTest, NegativeKeyCodeIsNoHotKey) {
    setPreferences(number(-1), number(0x100000));
    controller->awakeFromNib();
    EXPECT_TRUE(events.journal.empty());
}

TEST_F(HotKeyControllerTest, ChangeUnregistersTheOldKeyBeforeItRegistersTheNew) {
    setPreferences(number(1), number(0x100000));
    controller->awakeFromNib();
    events.journal.clear();
    const auto before = controller->hotkey();
    notifications.arrive(Changed);
    EXPECT_EQ(events.journal, (Journal{"unregister 1+0x100", "register 1+0x100 id=2"}));
    EXPECT_EQ(events.registered().size(), 1U);
    EXPECT_NE(controller->hotkey(), before); // a new record even when nothing changed
}

TEST_F(HotKeyControllerTest, ChangeUnregistersTheOldKeyBeforeItReadsTheFile) {
    setPreferences(number(1), number(0x100000));
    controller->awakeFromNib();
    preferences.journal.clear();
    events.hook = [&](const std::string &line) { preferences.journal.push_back(line); };
    notifications.arrive(Changed);
    EXPECT_EQ(preferences.journal, (Journal{"unregister 1+0x100", "dictionaryWithContentsOfFile", "register 1+0x100 id=2"}));
    events.hook = nullptr;
}

TEST_F(HotKeyControllerTest, ChangeTakesTheFileAsItStands) {
    setPreferences(number(1), number(0x100000));
    controller->awakeFromNib();
    setPreferences(number(2), number(0x080000));
    notifications.arrive(Changed);
    EXPECT_EQ(events.registered(), (Combinations{{2, 0x0800}}));
    preferences.disk.reset();
    notifications.arrive(Changed);
    EXPECT_TRUE(events.registered().empty());
}

TEST_F(HotKeyControllerTest, RefusalIsSilentAndTheNextChangeTriesAgain) {
    setPreferences(number(1), number(0x100000));
    events.takenElsewhere.insert({1, 0x0100});
    controller->awakeFromNib();
    EXPECT_TRUE(events.registered().empty());
    EXPECT_TRUE(assertions.failures.empty());
    events.takenElsewhere.clear();
    controller->reloadPrefs();
    EXPECT_EQ(events.registered(), (Combinations{{1, 0x0100}}));
}

TEST_F(HotKeyControllerTest, KeepsTheHotKeyThatTheDesktopRefused) {
    setPreferences(number(1), number(0x100000));
    events.takenElsewhere.insert({1, 0x0100});
    controller->awakeFromNib();
    const auto refused = controller->hotkey();
    ASSERT_NE(refused, nullptr);
    EXPECT_EQ(refused->keyCombo(), SGKeyCombo(1, 0x0100));
    EXPECT_EQ(refused->hotKeyID().id, 1U);
    notifications.arrive(Changed);
    ASSERT_NE(controller->hotkey(), nullptr);
    EXPECT_NE(controller->hotkey(), refused);
    EXPECT_EQ(controller->hotkey()->hotKeyID().id, 2U);
}

TEST_F(HotKeyControllerTest, ThousandChangesLeaveOneHotKey) {
    setPreferences(number(1), number(0x100000));
    controller->awakeFromNib();
    for (int i = 0; i < 1000; ++i) {
        notifications.arrive(Changed);
    }
    EXPECT_EQ(events.registered().size(), 1U);
    EXPECT_EQ(SGHotKeyCenter::sharedCenter()->allHotKeys().size(), 1U);
    EXPECT_EQ(controller->hotkey()->hotKeyID().id, 1001U);
}

TEST_F(HotKeyControllerTest, PressPopsTheMenuUpLeftOfAndBelowThePointer) {
    setPreferences(number(1), number(0x100000));
    popUpMenus.mouse = {500, 300};
    window.number = 77;
    controller->awakeFromNib();
    events.press(1, 0x0100);
    ASSERT_EQ(popUpMenus.popUps.size(), 1U);
    const auto &popUp = popUpMenus.popUps.front();
    EXPECT_EQ(popUp.menu, &menu);
    EXPECT_EQ(popUp.window, &window);
    const SyntheticEvent expected{.type = 15,
                                  .location = {490, 290},
                                  .modifierFlags = 15,
                                  .timestamp = 0.0,
                                  .windowNumber = 77,
                                  .subtype = 0,
                                  .data1 = 0,
                                  .data2 = 0};
    EXPECT_EQ(popUp.event, expected);
}

TEST_F(HotKeyControllerTest, AsksForTheWindowsNumberThenForTheMouseThenPopsUp) {
    Journal steps;
    window.whenAskedForItsNumber = [&] { steps.emplace_back("window number"); };
    popUpMenus.whenAskedForTheMouse = [&] { steps.emplace_back("mouse"); };
    popUpMenus.whileOpen = [&](Menu &) { steps.emplace_back("pop up"); };
    controller->launch(nullptr);
    EXPECT_EQ(steps, (Journal{"window number", "mouse", "pop up"}));
}

TEST_F(HotKeyControllerTest, LaunchWithoutSenderPopsTheMenuUpToo) {
    popUpMenus.mouse = {3, 4};
    controller->launch(nullptr);
    ASSERT_EQ(popUpMenus.popUps.size(), 1U);
    EXPECT_EQ(popUpMenus.popUps.front().event.location, (ScreenPoint{-7, -6}));
}

TEST_F(HotKeyControllerTest, WindowNumberPassesThrough32Bits) {
    window.number = (std::int64_t{1} << 32) + 5;
    controller->launch(nullptr);
    window.number = std::int64_t{0xFFFFFFFF};
    controller->launch(nullptr);
    ASSERT_EQ(popUpMenus.popUps.size(), 2U);
    EXPECT_EQ(popUpMenus.popUps[0].event.windowNumber, 5);
    EXPECT_EQ(popUpMenus.popUps[1].event.windowNumber, -1);
}

TEST_F(HotKeyControllerTest, LaunchWithoutOutletsDoesNothing) {
    controller->setPopupMenu(nullptr);
    controller->launch(nullptr);
    controller->setPopupMenu(&menu);
    controller->setWindow(nullptr);
    controller->launch(nullptr);
    EXPECT_TRUE(popUpMenus.popUps.empty());
}

TEST_F(HotKeyControllerTest, ReleaseDoesNotPopUp) {
    setPreferences(number(1), number(0x100000));
    controller->awakeFromNib();
    events.press(1, 0x0100);
    events.release(1);
    EXPECT_EQ(popUpMenus.popUps.size(), 1U);
}

TEST_F(HotKeyControllerTest, PreferencesMayChangeWhileTheMenuIsUp) {
    setPreferences(number(1), number(0x100000));
    controller->awakeFromNib();
    popUpMenus.whileOpen = [this](Menu &) { notifications.arrive(Changed); };
    events.press(1, 0x0100);
    events.release(1);
    events.press(1, 0x0100);
    EXPECT_EQ(popUpMenus.popUps.size(), 2U);
    EXPECT_EQ(events.registered().size(), 1U);
}

TEST_F(HotKeyControllerTest, GivesTheKeyBackAndStopsObservingAtItsEnd) {
    setPreferences(number(1), number(0x100000));
    controller->awakeFromNib();
    controller.reset();
    EXPECT_TRUE(events.registered().empty());
    EXPECT_EQ(notifications.observerCount(), 0U);
}

} // namespace
} // namespace orvane::test
