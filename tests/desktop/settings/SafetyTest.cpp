// The settings window beside other programs that write the preferences, beside files that cannot be read, and after a crash.

#include "SettingsWindowDesk.h"

#include "platform/posix/PosixPreferencesLock.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>

namespace orvane::test {
namespace {

using Labels = std::vector<std::string>;

TEST_F(SettingsWindowTest, WhatAnotherProgramAddsIsTakenOverBesideWhatWasEdited) {
    writePresets({"One", "Two"});
    start();
    changeOnDisk(">Two<", ">Zwei<");
    context().presets.renamePreset(context().presets.presetAt(0), "Eins");
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Eins", "Zwei"}; }));
    EXPECT_EQ(context().presets.label(context().presets.presetAt(1)), "Zwei");
    EXPECT_TRUE(bar("conflictBar").isHidden());
}

TEST_F(SettingsWindowTest, UndoingWhatAnotherProgramAddedIsSaidAndRedoBringsItBack) {
    writePresets({"One"});
    start();
    context().presets.renamePreset(context().presets.presetAt(0), "Eins");
    ASSERT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Eins"}; }));
    changeOnDisk("<array>", "<array><dict><key>label</key><string>Added</string><key>directoryName</key><string>x</string></dict>");
    ASSERT_TRUE(waitUntil([this] { return context().presets.numberOfPresets() == 2; }));
    EXPECT_TRUE(bar("messageBar").isHidden());
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(context().presets.numberOfPresets(), 1U);
    ASSERT_TRUE(bar("messageBar").isVisible());
    const QString text = bar("messageBar").text();
    EXPECT_TRUE(text.contains(QStringLiteral("Added")) && text.contains(QStringLiteral("Redo"))) << text.toStdString();
    ASSERT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Eins"}; }));
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Added", "Eins"}; }));
    EXPECT_TRUE(bar("messageBar").isHidden());
}

TEST_F(SettingsWindowTest, UndoingWhatAnotherProgramChangedIsSaidToo) {
    writePresets({"One", "Two"});
    start();
    changeOnDisk(">Two<", ">Zwei<");
    ASSERT_TRUE(waitUntil([this] { return context().presets.label(context().presets.presetAt(1)) == "Zwei"; }));
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(context().presets.label(context().presets.presetAt(1)), "Two");
    EXPECT_EQ(bar("messageBar").text(), u"What another program had changed is undone, too. Redo brings it back.");
    bar("messageBar").clear();
    context().presets.renamePreset(context().presets.presetAt(0), "Eins");
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(bar("messageBar").isHidden()) << "of the user's own steps nothing needs to be said";
}

TEST_F(SettingsWindowTest, TheSameChangedTwiceIsAskedAboutAndNothingIsWrittenUntilThen) {
    writePresets({"One"});
    start();
    context().presets.renamePreset(context().presets.presetAt(0), "Mine");
    changeOnDisk(">One<", ">Theirs<");
    ASSERT_TRUE(waitUntil([this] { return bar("conflictBar").isVisible(); }));
    EXPECT_TRUE(bar("conflictBar").text().contains(QStringLiteral("Theirs"))) << QtUtf8Of(bar("conflictBar").text());
    EXPECT_EQ(diskLabels(), Labels{"Theirs"});
    QTest::mouseClick(widget<QPushButton>("keepMine"), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Mine"}; }));
    EXPECT_TRUE(bar("conflictBar").isHidden());
}

TEST_F(SettingsWindowTest, TheOthersChangeCanBeTakenInstead) {
    writePresets({"One"});
    start();
    context().presets.renamePreset(context().presets.presetAt(0), "Mine");
    changeOnDisk(">One<", ">Theirs<");
    ASSERT_TRUE(waitUntil([this] { return bar("conflictBar").isVisible(); }));
    QTest::mouseClick(widget<QPushButton>("takeTheirs"), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([this] { return context().presets.label(context().presets.presetAt(0)) == "Theirs"; }));
    EXPECT_EQ(diskLabels(), Labels{"Theirs"});
}

TEST_F(SettingsWindowTest, AnUnreadableFileIsShownAsSuchAndNeverReplaced) {
    const std::string damaged = "<plist><dict><key>ORVPresets</key>";
    writeFile(preferencesFile(), damaged);
    start();
    ASSERT_TRUE(bar("fileBar").isVisible());
    EXPECT_TRUE(bar("fileBar").text().contains(QtTextOf(preferencesFile())));
    EXPECT_FALSE(widget<QWidget>("presetsPage")->isEnabled());
    QTest::keyClick(window.get(), Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(context().presets.numberOfPresets(), 0U);
    stop();
    EXPECT_EQ(readFile(preferencesFile()), damaged);
}

TEST_F(SettingsWindowTest, AFileThatWasRepairedIsReadAgain) {
    writeFile(preferencesFile(), "damaged");
    start();
    ASSERT_TRUE(bar("fileBar").isVisible());
    writePresets({"One"});
    EXPECT_TRUE(waitUntil([this] { return context().presets.numberOfPresets() == 1; }));
    EXPECT_TRUE(bar("fileBar").isHidden());
    EXPECT_TRUE(widget<QWidget>("presetsPage")->isEnabled());
    EXPECT_TRUE(widget<QLineEdit>("presetLabel")->isEnabled());
}

TEST_F(SettingsWindowTest, EditsThatCouldNotBeSavedAreOfferedAfterACrash) {
    writePresets({"One"});
    start();
    context().presets.renamePreset(context().presets.presetAt(0), "Mine");
    changeOnDisk(">One<", ">Theirs<");
    ASSERT_TRUE(waitUntil([this] { return bar("conflictBar").isVisible(); }));
    ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(paths.stateFolder + "/unsaved"); }));
    crash();
    changeOnDisk(">Theirs<", ">One<");
    start();
    ASSERT_TRUE(bar("recoveryBar").isVisible());
    QTest::mouseClick(widget<QPushButton>("restoreEdits"), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Mine"}; }));
    EXPECT_TRUE(bar("recoveryBar").isHidden());
}

TEST_F(SettingsWindowTest, ClosingSavesAtOnceAndKeepsTheWindowsSize) {
    writePresets({"One"});
    start();
    window->resize(900, 560);
    const QSize size = window->size();
    context().presets.renamePreset(context().presets.presetAt(0), "Last words");
    stop();
    EXPECT_EQ(diskLabels(), Labels{"Last words"});
    start();
    EXPECT_EQ(window->size(), size);
}

// While another program holds the preferences ---------------------------------------------------------------------------------

/// Another program that is saving, and takes its time.
class Holder {
public:
    explicit Holder(const std::string &stateFolder) : _lock(stateFolder + "/preferences.lock") {
        std::string why;
        EXPECT_TRUE(_lock.acquire(std::chrono::milliseconds::zero(), why)) << why;
    }
    Holder(const Holder &) = delete;
    Holder &operator=(const Holder &) = delete;
    ~Holder() { _lock.release(); }

private:
    PosixPreferencesLock _lock;
};

/// The longest time in which no event was handled, in ms.
class Heart {
public:
    Heart() {
        QObject::connect(&_beat, &QTimer::timeout, &_beat, [this] { _longest = std::max(_longest, _since.restart()); });
        _since.start();
        _beat.start(5);
    }
    [[nodiscard]] qint64 longestPause() const { return std::max(_longest, _since.elapsed()); }

private:
    QTimer _beat;
    QElapsedTimer _since;
    qint64 _longest = 0;
};

TEST_F(SettingsWindowTest, WhileAnotherProgramHoldsThePreferencesTheWindowGoesOnAndSavesAfterwards) {
    writePresets({"One"});
    start();
    auto other = std::make_unique<Holder>(paths.stateFolder);
    const Heart heart;
    auto *const label = widget<QLineEdit>("presetLabel");
    label->setFocus();
    key(Qt::Key_A, Qt::ControlModifier);
    keys(QStringLiteral("Mine"));
    ASSERT_TRUE(waitUntil([this] { return bar("fileBar").isVisible(); }));
    EXPECT_EQ(bar("fileBar").text(), u"Another program holds the preferences. Your changes are saved as soon as it lets go.");
    keys(QStringLiteral(" and more"));
    EXPECT_EQ(context().presets.label(context().presets.presetAt(0)), "Mine and more");
    EXPECT_EQ(diskLabels(), Labels{"One"});
    EXPECT_TRUE(std::filesystem::exists(paths.stateFolder + "/unsaved"));
    EXPECT_LT(heart.longestPause(), 3000) << "waiting for the other one would take ten seconds";
    other.reset();
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Mine and more"}; }));
    EXPECT_TRUE(waitUntil([this] { return bar("fileBar").isHidden(); }));
    EXPECT_TRUE(waitUntil([this] { return !std::filesystem::exists(paths.stateFolder + "/unsaved"); }));
    const std::string log = readFile(paths.stateFolder + "/log");
    const std::size_t first = log.find("cannot be locked");
    EXPECT_NE(first, std::string::npos) << log;
    EXPECT_EQ(log.find("cannot be locked", first + 1), std::string::npos) << "one line for all attempts: " << log;
}

TEST_F(SettingsWindowTest, AWindowThatIsClosedMeanwhileGoesOnceItsEditsAreSaved) {
    writePresets({"One"});
    start();
    auto other = std::make_unique<Holder>(paths.stateFolder);
    context().presets.renamePreset(context().presets.presetAt(0), "Mine");
    const Heart heart;
    EXPECT_FALSE(window->close());
    EXPECT_LT(heart.longestPause(), 3000);
    EXPECT_TRUE(bar("messageBar").text().contains(QStringLiteral("closes as soon as your changes are saved")));
    EXPECT_TRUE(window->isVisible());
    other.reset();
    EXPECT_TRUE(waitUntil([this] { return window->isHidden(); }));
    EXPECT_EQ(diskLabels(), Labels{"Mine"});
}

TEST_F(SettingsWindowTest, ClosedTwiceItGoesAtOnceAndOffersTheEditsAtTheNextStart) {
    writePresets({"One"});
    start();
    auto other = std::make_unique<Holder>(paths.stateFolder);
    context().presets.renamePreset(context().presets.presetAt(0), "Mine");
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->close());
    crash();
    other.reset();
    EXPECT_EQ(diskLabels(), Labels{"One"});
    start();
    ASSERT_TRUE(bar("recoveryBar").isVisible());
    QTest::mouseClick(widget<QPushButton>("restoreEdits"), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Mine"}; }));
}

// Unsaved edits -------------------------------------------------------------------------------------------------------------

TEST_F(SettingsWindowTest, WhatWasTypedAMomentAgoIsOfferedAfterACrash) {
    writePresets({"One"});
    start();
    const Holder other(paths.stateFolder); // so that nothing is saved in the meantime, however slow the machine is
    auto *const label = widget<QLineEdit>("presetLabel");
    label->setFocus();
    key(Qt::Key_A, Qt::ControlModifier);
    QElapsedTimer clock;
    clock.start();
    keys(QStringLiteral("Mine"));
    ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(paths.stateFolder + "/unsaved"); }));
    RecordProperty("milliseconds_until_it_is_kept", static_cast<int>(clock.elapsed()));
    crash();
    start();
    ASSERT_TRUE(bar("recoveryBar").isVisible());
    QTest::mouseClick(widget<QPushButton>("restoreEdits"), Qt::LeftButton);
    EXPECT_EQ(context().presets.label(context().presets.presetAt(0)), "Mine");
}

TEST_F(SettingsWindowTest, WhatWasUndoneIsNotOfferedAgain) {
    writePresets({"One"});
    start();
    {
        const Holder other(paths.stateFolder);
        context().presets.renamePreset(context().presets.presetAt(0), "Mine");
        ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(paths.stateFolder + "/unsaved"); }));
        context().history.undo();
        EXPECT_TRUE(waitUntil([this] { return !std::filesystem::exists(paths.stateFolder + "/unsaved"); }));
    }
    stop();
    start();
    EXPECT_TRUE(bar("recoveryBar").isHidden());
    EXPECT_EQ(diskLabels(), Labels{"One"});
}

// Round trip ----------------------------------------------------------------------------------------------------------------

/// Paths below a folder, folders with a slash behind them, in order.
std::vector<std::string> namesBelow(const std::filesystem::path &folder) {
    std::vector<std::string> names;
    for (const auto &each : std::filesystem::recursive_directory_iterator(folder)) {
        names.push_back(each.path().lexically_relative(folder).string() + (each.is_directory() ? "/" : ""));
    }
    std::sort(names.begin(), names.end());
    return names;
}

TEST_F(SettingsWindowTest, APresetMadeInTheWindowGivesItsFoldersOnDisk) {
    writeFile(path("/in/plan.txt"), "The plan\n");
    start();
    key(Qt::Key_N, Qt::ControlModifier);
    keys(QStringLiteral("Round trip"));
    key(Qt::Key_Tab);
    key(Qt::Key_A, Qt::ControlModifier);
    keys(QStringLiteral("{Client} {AutoJob}"));
    tree().setFocus();
    for (const char *name : {"Footage", "Sound {Client}"}) {
        key(Qt::Key_Return);
        ASSERT_TRUE(waitUntil([this] { return editor() != nullptr; }));
        keys(QtTextOf(name));
        key(Qt::Key_Return);
        ASSERT_TRUE(waitUntil([this] { return editor() == nullptr; }));
    }
    tree().selectItems({item("Footage")});
    tree().addFilesAtPaths({QtTextOf(path("/in/plan.txt"))});
    const std::array items{item("Footage/plan.txt")};
    ASSERT_TRUE(context().presets.setPermissions(items, "640"));
    stop();

    const std::string target = path("/out");
    std::filesystem::create_directories(target);
    QProcess orvane;
    orvane.start(QtTextOf(environment("ORVANE_TEST_PROGRAM")),
                 {QStringLiteral("create"), QStringLiteral("Round trip"), QStringLiteral("--in"), QtTextOf(target), QStringLiteral("--set"),
                  QStringLiteral("Client=ACME"), QStringLiteral("--set"), QStringLiteral("AutoJob=7"), QStringLiteral("--no-open")});
    ASSERT_TRUE(orvane.waitForFinished(30000));
    ASSERT_EQ(orvane.exitCode(), 0) << orvane.readAllStandardError().toStdString();
    EXPECT_EQ(namesBelow(target),
              (std::vector<std::string>{"ACME 7/", "ACME 7/Footage/", "ACME 7/Footage/plan.txt", "ACME 7/Sound ACME/"}));
    EXPECT_EQ(readFile(target + "/ACME 7/Footage/plan.txt"), "The plan\n");
    EXPECT_EQ(std::filesystem::status(target + "/ACME 7/Footage/plan.txt").permissions(), std::filesystem::perms(0640));

    start(); // the counter of that creation is shown now
    EXPECT_EQ(context().counters.value("AutoJob"), "7");
}

} // namespace
} // namespace orvane::test
