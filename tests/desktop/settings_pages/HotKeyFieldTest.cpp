// The hot-key recorder under real keys, with other programs that hold keys beside it.

#include "SettingsPagesDesk.h"

#include "desktop/x11/X11TestDesk.h"
#include "hotkeys/HotKeyAdvice.h"
#include "platform/posix/PosixHotKeyStatement.h"
#include "window/GeneralPage.h"
#include "window/HotKeyInstructions.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace orvane::test {
namespace {

constexpr std::int64_t ShiftFlag = 0x020000;
constexpr std::int64_t ControlFlag = 0x040000;
constexpr std::int64_t OptionFlag = 0x080000;
constexpr std::int64_t CommandFlag = 0x100000;
constexpr std::uint16_t StateShift = 1; // X11's key masks
constexpr std::uint16_t StateControl = 4;

class HotKeyFieldTest : public SettingsPagesTest {
protected:
    void hotKeyOnDisk(std::int64_t code, std::int64_t flags) {
        onDisk({{"ORVShowMenubar", PropertyListValue::ofBoolean(true)},
                {"ORVHotKeyCode", PropertyListValue::ofInteger(code)},
                {"ORVHotKeyFlags", PropertyListValue::ofInteger(flags)}});
    }
    HotKeyRecorder &open(HotKeyField::Way way = HotKeyField::Way::Direct) {
        auto *const field = show<HotKeyField>(way);
        field->recorder().clearFocus();
        return field->recorder();
    }
    HotKeyRecorder &record(HotKeyField::Way way = HotKeyField::Way::Direct) {
        HotKeyRecorder &recorder = open(way);
        click(recorder);
        EXPECT_TRUE(waitUntil([&] { return recorder.isRecording(); }));
        return recorder;
    }
    [[nodiscard]] std::string message() const { return child<InlineMessage>("hotKeyMessage")->text().toStdString(); }
    [[nodiscard]] std::string hint() const { return child<InlineMessage>("hotKeyHint")->text().toStdString(); }
    [[nodiscard]] bool comesToSay(const std::string &words) {
        return waitUntil([&] { return message().find(words) != std::string::npos; });
    }
};

TEST_F(HotKeyFieldTest, AClickAndAPressRecordTheCombination) {
    HotKeyRecorder &recorder = record();
    xdotool("key super+shift+k");
    ASSERT_TRUE(waitUntil([&] { return !recorder.isRecording(); }));
    EXPECT_EQ(run->general.hotKey(), (StoredHotKey{MacK, CommandFlag | ShiftFlag}));
    EXPECT_EQ(recorder.text(), QStringLiteral("⌘⇧K"));
    EXPECT_EQ(hint(), "Super+Shift+K");
    EXPECT_EQ(message(), "");
}

TEST_F(HotKeyFieldTest, SpaceBeginsToo) {
    HotKeyRecorder &recorder = open();
    recorder.setFocus();
    xdotool("key space");
    ASSERT_TRUE(waitUntil([&] { return recorder.isRecording(); }));
    xdotool("key super+F5");
    ASSERT_TRUE(waitUntil([&] { return run->general.hasHotKey(); }));
    EXPECT_EQ(run->general.hotKey(), (StoredHotKey{0x60, CommandFlag}));
    EXPECT_EQ(recorder.text(), QStringLiteral("⌘F5"));
}

TEST_F(HotKeyFieldTest, ModifiersShowWhileTheyAreHeld) {
    HotKeyRecorder &recorder = record();
    xdotool("keydown ctrl");
    EXPECT_TRUE(waitUntil([&] { return recorder.text() == QStringLiteral("⌃…"); })) << recorder.text().toStdString();
    xdotool("keydown shift");
    EXPECT_TRUE(waitUntil([&] { return recorder.text() == QStringLiteral("⌃⇧…"); })) << recorder.text().toStdString();
    xdotool("keyup ctrl");
    EXPECT_TRUE(waitUntil([&] { return recorder.text() == QStringLiteral("⇧…"); })) << recorder.text().toStdString();
    xdotool("keyup shift");
    EXPECT_TRUE(waitUntil([&] { return recorder.text() == QStringLiteral("Press the keys…"); })) << recorder.text().toStdString();
    EXPECT_TRUE(recorder.isRecording());
}

TEST_F(HotKeyFieldTest, EscapeLeavesEverythingAsItIs) {
    hotKeyOnDisk(MacK, ControlFlag | ShiftFlag);
    HotKeyRecorder &recorder = record();
    xdotool("key Escape");
    ASSERT_TRUE(waitUntil([&] { return !recorder.isRecording(); }));
    EXPECT_EQ(recorder.text(), QStringLiteral("⌃⇧K"));
    EXPECT_FALSE(run->store.isModified());
}

TEST_F(HotKeyFieldTest, BackspaceRemovesItAndUndoBringsItBack) {
    hotKeyOnDisk(MacK, ControlFlag | ShiftFlag);
    HotKeyRecorder &recorder = record();
    xdotool("key BackSpace");
    ASSERT_TRUE(waitUntil([&] { return !run->general.hasHotKey(); }));
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_EQ(recorder.text(), QString());
    run->history.undo();
    EXPECT_EQ(recorder.text(), QStringLiteral("⌃⇧K"));
}

TEST_F(HotKeyFieldTest, DeleteRemovesItWithoutRecordingFirst) {
    hotKeyOnDisk(MacK, ControlFlag | ShiftFlag);
    open().setFocus();
    xdotool("key Delete");
    EXPECT_TRUE(waitUntil([&] { return !run->general.hasHotKey(); }));
}

TEST_F(HotKeyFieldTest, TheButtonBesideItRemovesItToo) {
    hotKeyOnDisk(MacK, ControlFlag | ShiftFlag);
    open();
    click(*child<QToolButton>("clearHotKey"));
    EXPECT_TRUE(waitUntil([&] { return !run->general.hasHotKey(); }));
    EXPECT_FALSE(child<QToolButton>("clearHotKey")->isVisible());
}

TEST_F(HotKeyFieldTest, ACombinationOfAnotherProgramIsRefusedAtOnce) {
    hotKeyOnDisk(0x60, ControlFlag);
    const X11Client other;
    ASSERT_TRUE(other.grab(XKeyK, StateControl | StateShift));
    HotKeyRecorder &recorder = record();
    xdotool("key ctrl+shift+k");
    EXPECT_TRUE(comesToSay("Another program has ⌃⇧K (Ctrl+Shift+K).")) << message();
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(run->general.hotKey(), (StoredHotKey{0x60, ControlFlag}));
    xdotool("key ctrl+alt+k");
    ASSERT_TRUE(waitUntil([&] { return !recorder.isRecording(); }));
    EXPECT_EQ(run->general.hotKey(), (StoredHotKey{MacK, ControlFlag | OptionFlag}));
    EXPECT_EQ(message(), "");
}

TEST_F(HotKeyFieldTest, WhatTheHelperHoldsItselfIsNotTaken) {
    hotKeyOnDisk(MacK, ControlFlag | ShiftFlag);
    const X11Client helper;
    ASSERT_TRUE(helper.grab(XKeyK, StateControl | StateShift));
    HotKeyRecorder &recorder = record();
    run->general.setHotKey({0x60, ControlFlag}); // another one, which is not stored yet
    click(recorder);
    ASSERT_TRUE(waitUntil([&] { return recorder.isRecording(); }));
    xdotool("key ctrl+shift+k");
    ASSERT_TRUE(waitUntil([&] { return !recorder.isRecording(); })) << message();
    EXPECT_EQ(run->general.hotKey(), (StoredHotKey{MacK, ControlFlag | ShiftFlag}));
}

TEST_F(HotKeyFieldTest, NoOtherProgramAnswersWhileItRecords) {
    X11Program other;
    EventHotKeyRef held = nullptr;
    ASSERT_EQ(other.add(MacK, Control | Shift, 7, &held), EventNoError);
    record();
    xdotool("key ctrl+shift+k");
    ASSERT_TRUE(comesToSay("Another program has"));
    EXPECT_EQ(other.told(), std::vector<std::string>());
    xdotool("key Escape");
    ASSERT_TRUE(waitUntil([&] { return !child<HotKeyRecorder>("hotKeyRecorder")->isRecording(); }));
    QGuiApplication::sync(); // the keyboard's release has reached the server
    xdotool("key ctrl+shift+k");
    EXPECT_TRUE(waitUntil([&] {
        other.pump();
        return other.journal.size() == 2;
    })) << "it answers again afterwards";
}

TEST_F(HotKeyFieldTest, NothingStaysTakenAfterwards) {
    HotKeyRecorder &recorder = record();
    xdotool("key ctrl+shift+k");
    ASSERT_TRUE(waitUntil([&] { return !recorder.isRecording(); }));
    EXPECT_TRUE(X11Client().isFree(XKeyK));
}

TEST_F(HotKeyFieldTest, AKeyAloneIsRefused) {
    HotKeyRecorder &recorder = record();
    xdotool("key k");
    EXPECT_TRUE(comesToSay("A shortcut needs at least one")) << message();
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_FALSE(run->general.hasHotKey());
}

TEST_F(HotKeyFieldTest, ShiftAloneIsRefusedForAKeyThatTypesOnly) {
    HotKeyRecorder &recorder = record();
    xdotool("key shift+k");
    EXPECT_TRUE(comesToSay("With Shift alone")) << message();
    xdotool("key shift+F6");
    ASSERT_TRUE(waitUntil([&] { return !recorder.isRecording(); }));
    EXPECT_EQ(run->general.hotKey(), (StoredHotKey{0x61, ShiftFlag}));
}

TEST_F(HotKeyFieldTest, TheKeyWithCodeZeroCanBeRecorded) {
    HotKeyRecorder &recorder = record();
    xdotool("key ctrl+shift+a");
    ASSERT_TRUE(waitUntil([&] { return !recorder.isRecording(); }));
    EXPECT_EQ(run->general.hotKey(), (StoredHotKey{0, ControlFlag | ShiftFlag}));
    EXPECT_EQ(recorder.text(), QStringLiteral("⌃⇧A"));
}

TEST_F(HotKeyFieldTest, TabGoesOnToTheNextField) {
    HotKeyRecorder &recorder = record();
    auto *const next = new QLineEdit(window.get());
    window->layout()->addWidget(next);
    QWidget::setTabOrder(&recorder, next);
    xdotool("key Tab");
    EXPECT_TRUE(waitUntil([&] { return next->hasFocus() && !recorder.isRecording(); }));
}

TEST_F(HotKeyFieldTest, LeavingTheWindowEndsTheRecording) {
    HotKeyRecorder &recorder = record();
    window->hide();
    EXPECT_FALSE(recorder.isRecording());
}

TEST_F(HotKeyFieldTest, KeysAreKnownByTheirPlaceAndNamedByTheLayout) {
    X11User user;
    user.setLayout("fr");
    HotKeyRecorder &recorder = record();
    user.strike(24, Control); // the key that is Q in the US and A in France
    ASSERT_TRUE(waitUntil([&] { return !recorder.isRecording(); }));
    EXPECT_EQ(run->general.hotKey(), (StoredHotKey{12, ControlFlag}));
    EXPECT_EQ(recorder.text(), QStringLiteral("⌃A"));
}

TEST_F(HotKeyFieldTest, WhatTheHelperSaysOfItsHotKeyIsShown) {
    hotKeyOnDisk(MacK, ControlFlag | ShiftFlag);
    open();
    EXPECT_EQ(message(), "");
    PosixHotKeyStatement statement(paths.stateFolder);
    statement.say("The hot key works by KGlobalAccel.");
    EXPECT_TRUE(comesToSay("The hot key works by KGlobalAccel.")) << message();
}

TEST_F(HotKeyFieldTest, EachDesktopIsToldWhereItsKeysAreBound) {
    for (const char *desktop : {"ubuntu:GNOME", "KDE", "sway", "Hyprland", "niri", "weston", "XFCE", ""}) {
        const ORVHotKeyTexts texts = ORVHotKeyTextsOf(desktop);
        const std::string shown = hotKeyInstructions(QString::fromLatin1(desktop)).toStdString();
        EXPECT_EQ(ORVHotKeyAdvice(desktop), shown + (*texts.shell == '\0' ? "" : ORVHotKeyAdvice(desktop).substr(shown.size())));
        EXPECT_EQ(shown.find("%1"), std::string::npos) << shown;
        EXPECT_EQ(hotKeyStatement("sway gives no hot key. " + ORVHotKeyAdvice(desktop), QString::fromLatin1(desktop)).toStdString(),
                  "sway gives no hot key. " + shown);
    }
}

TEST_F(HotKeyFieldTest, WhereADesktopGivesNoHotKeysItNamesTheCommand) {
    open(HotKeyField::Way::CommandOnly);
    // In the words of `orvane menu --help` and the helper's log.
    EXPECT_TRUE(comesToSay(ORVHotKeyAdvice(qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString()))) << message();
    EXPECT_EQ(child<QLineEdit>("hotKeyCommand")->text(), QStringLiteral("orvane menu"));
    click(*child<QPushButton>("copyHotKeyCommand"));
    EXPECT_TRUE(waitUntil([] { return QGuiApplication::clipboard()->text() == QStringLiteral("orvane menu"); }));
}

} // namespace
} // namespace orvane::test
