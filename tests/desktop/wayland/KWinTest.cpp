// KWin itself: its KGlobalAccel, and its scripts for the active window.
#include "desktop/wayland/HotKeyDesk.h"
#include "platform/wayland/WaylandActiveApplication.h"
#include "platform/wayland/WaylandPopUpMenus.h"

#include <algorithm>
#include <cstdio>

#include <linux/input-event-codes.h>

namespace orvane::wayland {
namespace {

class KWinHotKeysTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(input, nullptr); }
    void pressControlShift(std::uint32_t code) { input->press({KEY_LEFTCTRL, KEY_LEFTSHIFT, code}); }

    std::unique_ptr<WaylandInput> input = WaylandInput::open(1280, 800);
    HotKeyDesk desk;
};

TEST_F(KWinHotKeysTest, EachPressArrivesOnce) {
    ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
    EXPECT_EQ(desk.keys->statement(), "The hot key works by KGlobalAccel.");
    for (std::size_t i = 1; i <= 5; ++i) {
        pressControlShift(KEY_H);
        ASSERT_TRUE(desk.waitFor([&] { return desk.presses.size() >= i && desk.releases.size() >= i; }));
    }
    HotKeyDesk::stay(std::chrono::milliseconds(100));
    EXPECT_EQ(desk.presses, std::vector<std::uint32_t>(5, 1));
    EXPECT_EQ(desk.releases, desk.presses);
}

TEST_F(KWinHotKeysTest, HoldingTheKeyIsOnePress) {
    ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
    pressControlShift(KEY_H); // the first release shows that there are such
    ASSERT_TRUE(desk.waitFor([&] { return !desk.releases.empty(); }));
    input->key(KEY_LEFTCTRL, true);
    input->key(KEY_LEFTSHIFT, true);
    input->key(KEY_H, true);
    EXPECT_TRUE(desk.waitFor([&] { return desk.presses.size() == 2; }));
    HotKeyDesk::stay(std::chrono::milliseconds(1200));
    EXPECT_EQ(desk.presses.size(), 2U);
    input->key(KEY_H, false);
    input->key(KEY_LEFTSHIFT, false);
    input->key(KEY_LEFTCTRL, false);
}

TEST_F(KWinHotKeysTest, ShiftWithAKeyThatPrintsSomethingElseWorks) {
    ASSERT_EQ(desk.take(0x13), EventNoError); // 2, with Shift "@"
    pressControlShift(KEY_2);
    EXPECT_TRUE(desk.waitFor([&] { return !desk.presses.empty(); }));
}

TEST_F(KWinHotKeysTest, FunctionKeysAndTheSuperKeyWork) {
    ASSERT_EQ(desk.take(0x65, 0x0100), EventNoError); // F9 with command
    input->press({KEY_LEFTMETA, KEY_F9});
    EXPECT_TRUE(desk.waitFor([&] { return !desk.presses.empty(); }));
}

TEST_F(KWinHotKeysTest, AKeyThatWasGivenBackDoesNothingAndCanBeTakenAgain) {
    ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
    EXPECT_EQ(desk.keys->unregisterEventHotKey(desk.reference), EventNoError);
    pressControlShift(KEY_H);
    HotKeyDesk::stay(std::chrono::milliseconds(200));
    EXPECT_TRUE(desk.presses.empty());
    ASSERT_EQ(desk.take(HotKeyDesk::H, HotKeyDesk::ShiftControl, 2), EventNoError);
    pressControlShift(KEY_H);
    EXPECT_TRUE(desk.waitFor([&] { return !desk.presses.empty(); }));
    EXPECT_EQ(desk.presses, std::vector<std::uint32_t>{2});
}

/// A call of KGlobalAccel by another program; what it prints.
std::string accel(const QString &method, const QStringList &arguments) {
    return outputOf(QStringLiteral("gdbus"),
                    QStringList{QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"),
                                QStringLiteral("org.kde.kglobalaccel"), QStringLiteral("--object-path"), QStringLiteral("/kglobalaccel"),
                                QStringLiteral("--method"), QStringLiteral("org.kde.KGlobalAccel.") + method} +
                        arguments);
}

TEST_F(KWinHotKeysTest, WhatAnotherProgramHasIsRefusedAndStaysThere) {
    const QString other = QStringLiteral("['other.program','act','Other Program','Act']");
    const QString key = QString::number(QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_B).toCombined());
    accel(QStringLiteral("doRegister"), {other});
    ASSERT_NE(accel(QStringLiteral("setShortcut"), {other, QLatin1Char('[') + key + QLatin1Char(']'), QStringLiteral("6")})
                  .find(key.toStdString()),
              std::string::npos);
    EXPECT_EQ(desk.take(HotKeyDesk::B), EventHotKeyExistsError);
    EXPECT_TRUE(desk.log.has("other.program")) << "the log does not name the holder";
    EXPECT_NE(accel(QStringLiteral("shortcut"), {other}).find(key.toStdString()), std::string::npos);
    accel(QStringLiteral("unregister"), {QStringLiteral("other.program"), QStringLiteral("act")});
    EXPECT_EQ(desk.take(HotKeyDesk::B), EventNoError);
}

TEST_F(KWinHotKeysTest, NothingStaysTakenBehindAHelperThatEnds) {
    {
        HotKeyDesk other;
        ASSERT_EQ(other.take(HotKeyDesk::H), EventNoError);
    }
    const QString key = QString::number(QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_H).toCombined());
    EXPECT_EQ(accel(QStringLiteral("isGlobalShortcutAvailable"), {key, QStringLiteral("other.program")}), "(true,)\n");
}

class KWinActiveApplicationTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(input, nullptr);
        ASSERT_NE(active, nullptr);
        other.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--window"), QStringLiteral("The front window")});
        ASSERT_TRUE(other.waitForStarted(5000));
        ASSERT_TRUE(HotKeyDesk::waitFor([this] { return active->window().has_value(); }, std::chrono::seconds(10)));
    }
    void TearDown() override {
        other.kill();
        other.waitForFinished(5000);
    }

    std::unique_ptr<WaylandInput> input = WaylandInput::open(1280, 800);
    std::unique_ptr<ActiveApplication> active = makeWaylandActiveApplication();
    QProcess other;
    Log log;
};

TEST_F(KWinActiveApplicationTest, IsTheWindowThatHasTheKeyboardAndIsAskedQuickly) {
    const ApplicationWindow window = active->window().value();
    EXPECT_EQ(window.pid, static_cast<std::uint32_t>(other.processId()));
    EXPECT_NE(window.title.find("The front window"), std::string::npos) << window.title;
    EXPECT_FALSE(window.className.empty());
    std::vector<double> times;
    for (int i = 0; i < 100; ++i) {
        QElapsedTimer clock;
        clock.start();
        ASSERT_TRUE(active->window().has_value());
        times.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    RecordProperty("medianMilliseconds", std::to_string(times[50]));
    std::printf("active window: median %.1f ms, 95th percentile %.1f ms\n", times[50], times[95]);
    EXPECT_LT(times[50], 100);
}

TEST_F(KWinActiveApplicationTest, StaysWhatItIsWhileTheMenuIsOpenAndAfterwards) {
    Presets presets(3);
    const std::unique_ptr<PopUpMenus> menus = makeWaylandPopUpMenus(
        *application, [this] { active->noteNow(); }, log);
    input->movePointer(300, 300);
    Steps steps;
    std::optional<ApplicationWindow> meanwhile;
    steps.when([] { return shownPanel() != nullptr && shownPanel()->window()->isActiveWindow(); },
               [&] {
                   meanwhile = active->window();
                   input->press({KEY_ESC});
               });
    steps.start();
    popUp(*menus, presets.menu);
    const auto pid = static_cast<std::uint32_t>(other.processId());
    ASSERT_TRUE(meanwhile.has_value());
    EXPECT_EQ(meanwhile->pid, pid);
    ASSERT_TRUE(active->window().has_value());
    EXPECT_EQ(active->window()->pid, pid);
    waitUntilWindowsAreGone();
}

TEST_F(KWinActiveApplicationTest, LeavesNoScriptBehind) {
    static_cast<void>(active->window());
    EXPECT_EQ(outputOf(QStringLiteral("gdbus"),
                       {QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"), QStringLiteral("org.kde.KWin"),
                        QStringLiteral("--object-path"), QStringLiteral("/Scripting"), QStringLiteral("--method"),
                        QStringLiteral("org.kde.kwin.Scripting.isScriptLoaded"), QStringLiteral("orvane-active-window")}),
              "(false,)\n");
}

} // namespace
} // namespace orvane::wayland
