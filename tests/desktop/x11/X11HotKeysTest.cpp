#include "desktop/x11/X11TestDesk.h"

#include "fakes/FakeAssertionHandler.h"
#include "hotkeys/SGHotKeyCenter.h"
#include "platform/x11/X11KeyCodes.h"
#include "platform/x11/X11Reply.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

// What only a real X server can show: locks, layouts, modifier maps, other clients, crashes.

namespace orvane::test {
namespace {

using Journal = std::vector<std::string>;

const Journal Struck{"press 7", "release 7"};

class X11HotKeys : public testing::Test {
protected:
    X11User user;
    X11Program program;
};

TEST_F(X11HotKeys, WorkWithEveryCombinationOfLocks) {
    ASSERT_EQ(program.add(MacK, Control | Shift, 7), EventNoError);
    std::set<std::uint16_t> states;
    for (int locks = 0; locks < 4; ++locks) {
        user.strike(XKeyK, Control | Shift);
        EXPECT_EQ(program.told(), Struck) << "state " << user.state();
        states.insert(user.state());
        user.tap(locks % 2 == 0 ? XKeyCapsLock : XKeyNumLock);
    }
    EXPECT_EQ(states.size(), 4U); // the locks were really on
    EXPECT_TRUE(states.contains(0));
    EXPECT_TRUE(states.contains(XCB_MOD_MASK_LOCK));
}

TEST_F(X11HotKeys, WorkWithScrollLockWhereItIsAModifier) {
    user.xmodmap({"add mod3 = Scroll_Lock"});
    ASSERT_TRUE(program.pumpUntil([&] { return (program.keyboard->modifiers().locks & XCB_MOD_MASK_3) != 0; }));
    ASSERT_EQ(program.add(MacK, Control | Shift, 7), EventNoError);
    user.press(XKeyScrollLock); // attached so, it is set as long as it is held
    EXPECT_NE(user.state() & XCB_MOD_MASK_3, 0);
    user.strike(XKeyK, Control | Shift);
    EXPECT_EQ(program.told(), Struck);
    user.release(XKeyScrollLock);
    user.strike(XKeyK, Control | Shift);
    EXPECT_EQ(program.told(), Struck);
}

TEST_F(X11HotKeys, FollowANumLockThatMovesToAnotherModifier) {
    ASSERT_EQ(program.add(MacK, Control | Shift, 7), EventNoError);
    user.xmodmap({"clear mod2", "clear mod3", "add mod3 = Num_Lock"});
    ASSERT_TRUE(program.pumpUntil([&] { return (program.keyboard->modifiers().locks & XCB_MOD_MASK_3) != 0; }));
    EXPECT_EQ(program.keyboard->modifiers().locks & XCB_MOD_MASK_2, 0);
    user.lockModifiers(XCB_MOD_MASK_3);
    EXPECT_EQ(user.state(), XCB_MOD_MASK_3);
    user.strike(XKeyK, Control | Shift);
    EXPECT_EQ(program.told(), Struck);
}

TEST_F(X11HotKeys, FollowASuperThatMovesToAnotherModifier) {
    ASSERT_EQ(program.add(MacK, Command, 7), EventNoError);
    user.strike(XKeyK, Command);
    EXPECT_EQ(program.told(), Struck);
    user.xmodmap({"clear mod4", "clear mod3", "add mod3 = Super_L"});
    ASSERT_TRUE(program.pumpUntil([&] { return program.keyboard->modifiers().super == XCB_MOD_MASK_3; }));
    user.strike(XKeyK, Command);
    EXPECT_EQ(program.told(), Struck);
    EXPECT_TRUE(program.log.entries().empty());
}

TEST_F(X11HotKeys, FollowAltAndSuperChangingPlaces) {
    user.setLayout("-layout us -option altwin:swap_alt_win");
    ASSERT_EQ(program.add(MacK, Command, 7), EventNoError);
    ASSERT_EQ(program.add(MacK, Option, 8), EventNoError);
    user.strike(XKeyK, Option); // the key that says Alt is Super now
    EXPECT_EQ(program.told(), Struck);
    user.strike(XKeyK, Command);
    EXPECT_EQ(program.told(), (Journal{"press 8", "release 8"}));
}

TEST_F(X11HotKeys, AreRefusedWhereTheModifierIsMissing) {
    user.xmodmap({"clear mod4"});
    ASSERT_TRUE(program.pumpUntil([&] { return program.keyboard->modifiers().super == 0; }));
    EXPECT_EQ(program.add(MacK, Command, 7), EventHotKeyInvalidError);
    EXPECT_EQ(program.add(MacK, Control, 8), EventNoError);
}

TEST_F(X11HotKeys, ComeBackWhenTheirModifierDoes) {
    ASSERT_EQ(program.add(MacK, Command, 7), EventNoError);
    user.xmodmap({"clear mod4"});
    ASSERT_TRUE(program.pumpUntil([&] { return !program.log.entries().empty(); }));
    EXPECT_EQ(program.log.entries().size(), 1U);
    EXPECT_TRUE(X11Client().isFree(XKeyK));
    user.xmodmap({"add mod4 = Super_L"});
    ASSERT_TRUE(program.pumpUntil([&] { return program.keyboard->modifiers().super != 0; }));
    user.strike(XKeyK, Command);
    EXPECT_EQ(program.told(), Struck);
}

TEST_F(X11HotKeys, ThatSomebodyTookMeanwhileStayRegisteredAndAreTriedAgain) {
    ASSERT_EQ(program.add(MacK, Command, 7), EventNoError);
    const X11Client other;
    ASSERT_TRUE(other.grab(XKeyK, XCB_MOD_MASK_3));
    user.xmodmap({"clear mod4", "clear mod3", "add mod3 = Super_L"});
    ASSERT_TRUE(program.pumpUntil([&] { return program.log.entries().size() == 1; }));
    other.ungrab(XKeyK, XCB_MOD_MASK_3);
    EXPECT_TRUE(X11Client().isFree(XKeyK)); // the refused attempt left nothing behind
    user.xmodmap({"clear mod3", "add mod4 = Super_L"});
    ASSERT_TRUE(program.pumpUntil([&] { return program.keyboard->modifiers().super == XCB_MOD_MASK_4; }));
    user.strike(XKeyK, Command);
    EXPECT_EQ(program.told(), Struck);
}

TEST_F(X11HotKeys, AreRefusedWholeWhenOneCombinationWithALockIsTaken) {
    const X11Client other;
    ASSERT_TRUE(other.grab(XKeyK, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2));
    EXPECT_EQ(program.add(MacK, Control | Shift, 7), EventHotKeyExistsError);
    other.ungrab(XKeyK, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2);
    program.client.sync();
    EXPECT_TRUE(other.isFree(XKeyK));
    EXPECT_EQ(program.add(MacK, Control | Shift, 7), EventNoError);
}

TEST_F(X11HotKeys, OfTheWindowManagerAreRefused) {
    constexpr std::uint32_t F4 = 0x76; // with Alt it closes windows
    // Window managers take their keys anew after a change of layouts, such as every test begins with.
    EXPECT_TRUE(program.pumpUntil([&] {
        EventHotKeyRef reference = nullptr;
        const EventStatus status = program.add(F4, Option, 7, &reference);
        if (status == EventNoError) {
            EXPECT_EQ(program.hotKeys->unregisterEventHotKey(reference), EventNoError);
        }
        return status == EventHotKeyExistsError;
    }));
}

TEST_F(X11HotKeys, AreFreeAfterACrash) {
    X11OtherProcess other([] {
        auto *const crashing = new X11Program;
        return crashing->add(MacK, Control | Shift, 1) == EventNoError && crashing->add(MacK, Command, 2) == EventNoError;
    });
    ASSERT_TRUE(other.isReady());
    EXPECT_EQ(program.add(MacK, Control | Shift, 7), EventHotKeyExistsError);
    other.kill();
    const X11Client stranger;
    EXPECT_TRUE(program.pumpUntil([&] { return stranger.isFree(XKeyK); }));
    EXPECT_EQ(program.add(MacK, Control | Shift, 7), EventNoError);
}

TEST_F(X11HotKeys, AreFreeWhenTheAdapterIsGone) {
    ASSERT_EQ(program.add(MacK, Control | Shift, 7), EventNoError);
    const X11Client stranger;
    EXPECT_FALSE(stranger.isFree(XKeyK));
    program.hotKeys.reset();
    program.client.sync();
    EXPECT_TRUE(stranger.isFree(XKeyK));
}

TEST_F(X11HotKeys, WorkInEveryLayoutAndWhileLayoutsChange) {
    ASSERT_EQ(program.add(MacK, Control | Shift, 7), EventNoError);
    for (const char *layout : {"us", "de", "fr", "ru", "tr", "jp", "us"}) {
        user.setLayout("-layout " + std::string(layout));
        user.strike(XKeyK, Control | Shift); // struck before the program has heard of the change
        EXPECT_EQ(program.told(), Struck) << layout;
        user.strike(XKeyK, Control | Shift);
        EXPECT_EQ(program.told(), Struck) << layout;
    }
}

TEST_F(X11HotKeys, CanBeRegisteredInEveryLayout) {
    for (const char *layout : {"us", "de", "fr", "ru", "tr", "jp", "us,ru"}) {
        user.setLayout("-layout " + std::string(layout));
        for (const std::uint32_t modifiers : {Command, Option, Control | Shift, Command | Option | Control | Shift}) {
            EventHotKeyRef reference = nullptr;
            program.pump();
            ASSERT_EQ(program.add(MacK, modifiers, 7, &reference), EventNoError) << layout;
            user.strike(XKeyK, modifiers);
            EXPECT_EQ(program.told(), Struck) << layout << " " << modifiers;
            EXPECT_EQ(program.hotKeys->unregisterEventHotKey(reference), EventNoError);
        }
    }
}

TEST_F(X11HotKeys, WorkInEveryGroup) {
    user.setLayout("-layout us,ru,de,tr");
    ASSERT_EQ(program.add(MacK, Control | Shift, 7), EventNoError);
    for (std::uint8_t group = 0; group < 4; ++group) {
        user.lockGroup(group);
        EXPECT_TRUE(program.pumpUntil([&] { return program.keyboard->group() == group; })) << int{group};
        user.strike(XKeyK, Control | Shift);
        EXPECT_EQ(program.told(), Struck) << int{group};
        user.tap(XKeyCapsLock);
        user.strike(XKeyK, Control | Shift);
        EXPECT_EQ(program.told(), Struck) << int{group};
        user.tap(XKeyCapsLock);
    }
}

TEST_F(X11HotKeys, EveryKeyOfTheMacThatExistsWorks) {
    for (std::uint32_t keyCode = 0; keyCode < 128; ++keyCode) {
        const auto key = X11KeyCodeOfVirtualKeyCode(keyCode);
        const bool isModifierOrLock = (keyCode >= 0x36 && keyCode <= 0x3F) || keyCode == 0x47;
        if (isModifierOrLock) {
            continue; // striking those changes the state
        }
        EventHotKeyRef reference = nullptr;
        const EventStatus status = program.add(keyCode, Command | Option | Shift, 7, &reference);
        EXPECT_EQ(status == EventNoError, key.has_value()) << keyCode;
        if (status == EventNoError) {
            user.strike(*key, Command | Option | Shift);
            EXPECT_EQ(program.told(), Struck) << keyCode;
            EXPECT_EQ(program.hotKeys->unregisterEventHotKey(reference), EventNoError);
        }
    }
}

TEST_F(X11HotKeys, TakeRepetitionsAndReleaseAwayFromAWindowOfOurs) {
    ASSERT_EQ(program.add(MacK, Control | Shift, 7), EventNoError);
    xcb_connection_t *const connection = program.client.connection();
    const xcb_window_t window = xcb_generate_id(connection);
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, program.client.root(), 0, 0, 10, 10, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_map_window(connection, window);
    program.onEvent = [&](std::uint32_t kind, std::uint32_t) { // as a menu that opens takes the keyboard
        if (kind == EventHotKeyPressed) {
            const X11Reply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
                connection, xcb_grab_keyboard(connection, 0, window, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC), nullptr));
            ASSERT_TRUE(reply);
            EXPECT_EQ(reply->status, XCB_GRAB_STATUS_SUCCESS);
        }
    };
    user.pressModifiers(Control | Shift);
    user.press(XKeyK);
    EXPECT_TRUE(program.pumpUntil([&] { return program.rawPresses() >= 4; }));
    user.release(XKeyK);
    program.pump();
    EXPECT_EQ(program.journal, Struck);
    EXPECT_EQ(program.swallowed(), program.rawPresses() + 1);
    const int before = program.swallowed();
    user.tap(XKeyK); // now it is the menu's
    program.pump();
    EXPECT_EQ(program.swallowed(), before);
    xcb_destroy_window(connection, window);
}

/// A release that never arrives: the keyboard was taken and given back while the key was down.
class X11LostRelease : public X11HotKeys {
protected:
    void loseARelease() {
        xcb_connection_t *const connection = program.client.connection();
        ASSERT_EQ(program.add(MacK, Control | Shift, 7), EventNoError);
        user.pressModifiers(Control | Shift);
        user.press(XKeyK);
        EXPECT_EQ(program.told(), Journal{"press 7"});
        const X11Reply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
            connection, xcb_grab_keyboard(connection, 0, program.client.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr));
        ASSERT_TRUE(reply);
        xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
        program.pump();
        user.release(XKeyK);
        EXPECT_EQ(program.told(), Journal()); // it went to whoever has the focus
    }
};

TEST_F(X11LostRelease, IsMadeUpForByTheNextPressWhenKeysDoNotRepeat) {
    user.run("xset r off");
    loseARelease();
    user.tap(XKeyK);
    EXPECT_EQ(program.told(), Struck);
    user.run("xset r on");
}

TEST_F(X11LostRelease, IsMadeUpForByALaterPress) {
    loseARelease();
    // What follows at once may be a repetition; what comes after more than the repeat delay cannot be one.
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(program.pumpUntil([&] { return std::chrono::steady_clock::now() - start > std::chrono::milliseconds(1200); }));
    user.tap(XKeyK);
    EXPECT_EQ(program.told(), Struck);
}

TEST_F(X11HotKeys, DoNotListenToKeysThatClientsSend) {
    ASSERT_EQ(program.add(MacK, Control | Shift, 7), EventNoError);
    const X11Client other;
    xcb_key_press_event_t event{};
    event.response_type = XCB_KEY_PRESS;
    event.detail = XKeyK;
    event.state = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT;
    event.root = event.event = other.root();
    const std::uint32_t mask = XCB_EVENT_MASK_KEY_PRESS;
    xcb_change_window_attributes(program.client.connection(), program.client.root(), XCB_CW_EVENT_MASK, &mask);
    program.client.sync();
    xcb_send_event(other.connection(), 0, other.root(), XCB_EVENT_MASK_KEY_PRESS, reinterpret_cast<const char *>(&event));
    other.sync();
    EXPECT_EQ(program.told(), Journal());
}

TEST_F(X11HotKeys, TellTheSharedCenter) {
    struct Listener {
        int launches = 0;
        void launch(const SGHotKey *) { ++launches; }
    } listener;
    FakeAssertionHandler assertions;
    const SGHotKeyCenterPorts ports{assertions, *program.hotKeys};
    SGHotKeyCenter::setSharedPorts(&ports);
    const auto hotKey = std::make_shared<SGHotKey>("ORVHotkey", SGKeyCombo(MacK, Control | Shift), &listener,
                                                   SGSelector::of<Listener, &Listener::launch>("launch:"));
    EXPECT_TRUE(SGHotKeyCenter::sharedCenter()->registerHotKey(hotKey));
    for (int i = 1; i <= 100; ++i) {
        user.strike(XKeyK, Control | Shift);
        EXPECT_TRUE(SGHotKeyCenter::sharedCenter()->registerHotKey(hotKey)); // between the press and its handling
        program.pump();
        EXPECT_EQ(listener.launches, i);
    }
    EXPECT_EQ(hotKey->hotKeyID().id, 101U);
    EXPECT_TRUE(assertions.failures.empty());
    SGHotKeyCenter::setSharedPorts(nullptr);
    program.client.sync();
    EXPECT_TRUE(X11Client().isFree(XKeyK));
}

} // namespace
} // namespace orvane::test
