// Hot keys on sway, whose configuration has "bindsym Control+Shift+b nop theirs" and "bindcode $mod+44 nop theirs" with $mod = Mod4.
#include "desktop/wayland/HotKeyDesk.h"

#include <linux/input-event-codes.h>

namespace orvane::wayland {
namespace {

class SwayHotKeysTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(input, nullptr); }
    void pressControlShift(std::uint32_t code) { input->press({KEY_LEFTCTRL, KEY_LEFTSHIFT, code}); }

    std::unique_ptr<WaylandInput> input = WaylandInput::open(1280, 800);
    HotKeyDesk desk;
};

TEST_F(SwayHotKeysTest, EachPressArrivesOnceAndIsFollowedByItsRelease) {
    ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
    EXPECT_EQ(desk.keys->statement(), "The hot key works by sway.");
    for (std::size_t i = 1; i <= 5; ++i) {
        pressControlShift(KEY_H);
        ASSERT_TRUE(desk.waitFor([&] { return desk.releases.size() >= i; }));
        EXPECT_EQ(desk.presses.size(), i);
    }
    HotKeyDesk::stay(std::chrono::milliseconds(100));
    EXPECT_EQ(desk.presses, std::vector<std::uint32_t>(5, 1));
    EXPECT_EQ(desk.releases, desk.presses);
}

TEST_F(SwayHotKeysTest, WorksWithCapsLockAndNumLockOn) {
    ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
    std::size_t presses = 0;
    for (const std::uint32_t lock : {KEY_CAPSLOCK + 0U, KEY_NUMLOCK + 0U, KEY_CAPSLOCK + 0U}) {
        input->press({lock});
        pressControlShift(KEY_H);
        ++presses;
        EXPECT_TRUE(desk.waitFor([&] { return desk.presses.size() >= presses; })) << "lock key " << lock;
    }
    input->press({KEY_NUMLOCK});
    EXPECT_EQ(desk.presses.size(), 3U);
}

TEST_F(SwayHotKeysTest, HoldingTheKeyIsOnePress) {
    ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
    input->key(KEY_LEFTCTRL, true);
    input->key(KEY_LEFTSHIFT, true);
    input->key(KEY_H, true);
    EXPECT_TRUE(desk.waitFor([&] { return !desk.presses.empty(); }));
    HotKeyDesk::stay(std::chrono::milliseconds(1000)); // sway repeats keys after 600
    EXPECT_EQ(desk.presses.size(), 1U);
    input->key(KEY_H, false);
    input->key(KEY_LEFTSHIFT, false);
    input->key(KEY_LEFTCTRL, false);
}

TEST_F(SwayHotKeysTest, AKeyThatWasGivenBackDoesNothingAndCanBeTakenAgain) {
    ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
    EXPECT_EQ(desk.keys->unregisterEventHotKey(desk.reference), EventNoError);
    EXPECT_NE(desk.keys->unregisterEventHotKey(desk.reference), EventNoError);
    pressControlShift(KEY_H);
    HotKeyDesk::stay(std::chrono::milliseconds(200));
    EXPECT_TRUE(desk.presses.empty());
    ASSERT_EQ(desk.take(HotKeyDesk::H, HotKeyDesk::ShiftControl, 2), EventNoError);
    pressControlShift(KEY_H);
    EXPECT_TRUE(desk.waitFor([&] { return !desk.presses.empty(); }));
    EXPECT_EQ(desk.presses, std::vector<std::uint32_t>{2});
}

TEST_F(SwayHotKeysTest, WhatTheConfigurationBindsIsRefusedAndStaysAsItWas) {
    EXPECT_EQ(desk.take(HotKeyDesk::B), EventHotKeyExistsError);
    EXPECT_EQ(desk.take(0x26, 0x0100), EventHotKeyExistsError); // J, whose key code is 44
    EXPECT_EQ(desk.keys->statement(), "The hot key does not work: by sway, another program has that combination.");
}

TEST_F(SwayHotKeysTest, SurvivesReadingTheConfigurationAgain) {
    ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
    outputOf(QStringLiteral("swaymsg"), {QStringLiteral("reload")});
    // The event of it has arrived when a press counts again.
    EXPECT_TRUE(desk.waitFor([&] {
        pressControlShift(KEY_H);
        HotKeyDesk::stay(std::chrono::milliseconds(50));
        return !desk.presses.empty();
    }));
}

TEST_F(SwayHotKeysTest, NothingStaysBoundBehindAHelperThatEnds) {
    {
        HotKeyDesk other;
        ASSERT_EQ(other.take(HotKeyDesk::H), EventNoError);
    }
    // sway says so for a combination that is not bound.
    const std::string answer = outputOf(QStringLiteral("swaymsg"), {QStringLiteral("unbindcode"), QStringLiteral("Ctrl+Shift+43")});
    EXPECT_NE(answer.find("Could not find"), std::string::npos) << answer;
}

TEST_F(SwayHotKeysTest, AKeyThatIsNoneIsInvalid) {
    EXPECT_EQ(desk.take(0x7F), EventHotKeyInvalidError);
    EXPECT_EQ(desk.take(HotKeyDesk::H, 0x10000), EventHotKeyInvalidError);
}

} // namespace
} // namespace orvane::wayland
