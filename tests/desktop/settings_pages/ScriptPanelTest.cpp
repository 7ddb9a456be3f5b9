// The panel on a preset's script: choosing, opening, trying.

#include "SettingsPagesDesk.h"

#include "window/ScriptPanel.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include <csignal>
#include <sys/stat.h>

namespace orvane::test {
namespace {

class ScriptPanelTest : public SettingsPagesTest {
protected:
    void open(const std::string &script = {}) {
        const PropertyListValue preset =
            make.preset("{AutoJob} {Client}", {make.folder("Inbox of {Client}", {})}, {{"scriptFile", make.text(script)}});
        onDisk({{"ORVPresets", make.list({preset})}, {"ORVShowMenubar", PropertyListValue::ofBoolean(true)}});
        panel = show<ScriptPanel>();
        panel->setPreset(run->preset(0));
    }
    void scriptInStore(const std::string &name, const std::string &text, bool isExecutable = true) {
        writeFile(scripts() + "/" + name, "#!/bin/sh\n" + text, isExecutable);
    }
    [[nodiscard]] std::string scripts() const { return folder("/share/Orvane/Scripts"); }
    [[nodiscard]] std::string script() const { return run->presets.text(run->preset(0), "scriptFile"); }
    [[nodiscard]] std::string shownName() const { return child<QLabel>("scriptName")->text().toStdString(); }
    [[nodiscard]] std::string problem() const { return child<InlineMessage>("scriptProblem")->text().toStdString(); }
    [[nodiscard]] std::string result() const { return child<InlineMessage>("scriptResult")->text().toStdString(); }
    [[nodiscard]] InlineMessage::Kind resultKind() const { return child<InlineMessage>("scriptResult")->kind(); }
    [[nodiscard]] std::string output() const { return child<QPlainTextEdit>("scriptOutput")->toPlainText().toStdString(); }
    void startTest() { click(*child<QPushButton>("testScript")); }
    [[nodiscard]] bool testEnds() {
        return waitUntil([&] { return !panel->isTesting() && !result().empty(); });
    }

    ScriptPanel *panel = nullptr;
};

TEST_F(ScriptPanelTest, TheFolderOfATestIsOfferedWithItsPresetOnly) {
    scriptInStore("ok.sh", "exit 0\n");
    open("ok.sh");
    startTest();
    ASSERT_TRUE(testEnds());
    EXPECT_TRUE(child<QPushButton>("showTestFolder")->isVisible());
    const ItemID other = run->presets.addPreset(1, "Other", "{Name}");
    panel->setPreset(other);
    EXPECT_FALSE(child<QPushButton>("showTestFolder")->isVisible());
    panel->setPreset(run->preset(0));
    EXPECT_TRUE(child<QPushButton>("showTestFolder")->isVisible());
}

TEST_F(ScriptPanelTest, ATestThatIsStoppedByGoingToAnotherPresetSaysNothingThere) {
    scriptInStore("slow.sh", "echo begun\nsleep 60\n");
    open("slow.sh");
    startTest();
    ASSERT_TRUE(waitUntil([this] { return output().find("begun") != std::string::npos; }));
    panel->setPreset(run->presets.addPreset(1, "Other", "{Name}"));
    ASSERT_TRUE(waitUntil([this] { return !panel->isTesting(); }));
    EXPECT_EQ(result(), "");
    EXPECT_FALSE(child<QPlainTextEdit>("scriptOutput")->isVisible());
}

TEST_F(ScriptPanelTest, AChosenScriptIsCopiedAndMadeExecutable) {
    writeFile(folder("/Downloads/tidy.sh"), "#!/bin/sh\n");
    open();
    EXPECT_EQ(shownName(), "None");
    EXPECT_FALSE(child<QPushButton>("openScript")->isEnabled());
    EXPECT_FALSE(child<QPushButton>("testScript")->isEnabled());
    click(*child<QPushButton>("chooseScriptButton"));
    ASSERT_TRUE(waitUntil([] { return isActive("chooseScript"); }));
    auto *const field = shownWindow("chooseScript")->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(field, nullptr);
    field->setText(QString::fromStdString(folder("/Downloads/tidy.sh")));
    field->setFocus();
    xdotool("key Return");
    ASSERT_TRUE(waitUntil([&] { return script() == "tidy.sh"; }));
    EXPECT_EQ(shownName(), "tidy.sh");
    EXPECT_EQ(problem(), "");
    EXPECT_EQ(resourceChanges, 1);
    struct stat status {};
    ASSERT_EQ(::stat((scripts() + "/tidy.sh").c_str(), &status), 0);
    EXPECT_NE(status.st_mode & S_IXUSR, 0U);
    run->history.undo();
    EXPECT_EQ(shownName(), "None");
}

TEST_F(ScriptPanelTest, AnotherScriptOfTheSameNameGetsANumber) {
    scriptInStore("tidy.sh", "echo one\n");
    writeFile(folder("/Downloads/tidy.sh"), "#!/bin/sh\necho two\n");
    open("tidy.sh");
    panel->takeScript(QString::fromStdString(folder("/Downloads/tidy.sh")));
    EXPECT_EQ(script(), "tidy 2.sh");
    std::ifstream first(scripts() + "/tidy.sh");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(first), {}), "#!/bin/sh\necho one\n");
}

TEST_F(ScriptPanelTest, AFileThatCannotBeTakenSaysWhy) {
    open();
    panel->takeScript(QString::fromStdString(folder("/Downloads/absent.sh")));
    EXPECT_NE(problem().find("absent.sh” cannot be taken"), std::string::npos) << problem();
    EXPECT_EQ(script(), "");
}

TEST_F(ScriptPanelTest, RemoveTakesItFromThePresetOnly) {
    scriptInStore("tidy.sh", "");
    open("tidy.sh");
    click(*child<QPushButton>("removeScript"));
    ASSERT_TRUE(waitUntil([&] { return script().empty(); }));
    EXPECT_EQ(shownName(), "None");
    EXPECT_TRUE(QFile::exists(QString::fromStdString(scripts() + "/tidy.sh")));
    run->history.undo();
    EXPECT_EQ(shownName(), "tidy.sh");
}

TEST_F(ScriptPanelTest, OpenHandsItToTheDesktop) {
    scriptInStore("tidy.sh", "");
    open("tidy.sh");
    click(*child<QPushButton>("openScript"));
    ASSERT_TRUE(waitUntil([&] { return workspace.opened.size() == 1; }));
    EXPECT_EQ(workspace.opened.front(), scripts() + "/tidy.sh");
    workspace.opens = false;
    click(*child<QPushButton>("openScript"));
    EXPECT_TRUE(waitUntil([&] { return problem().find("No program was found") != std::string::npos; }));
}

TEST_F(ScriptPanelTest, AMissingScriptIsShownAsMissing) {
    open("gone.sh");
    EXPECT_NE(problem().find("There is no such file in the scripts folder."), std::string::npos) << problem();
    EXPECT_FALSE(child<QPushButton>("testScript")->isEnabled());
    EXPECT_TRUE(child<QPushButton>("removeScript")->isEnabled());
}

TEST_F(ScriptPanelTest, AScriptThatIsNotExecutableIsMadeSo) {
    scriptInStore("tidy.sh", "", false);
    open("tidy.sh");
    EXPECT_NE(problem().find("not executable"), std::string::npos) << problem();
    click(*child<QPushButton>("makeScriptExecutable"));
    ASSERT_TRUE(waitUntil([&] { return problem().empty(); }));
    EXPECT_EQ(script(), "tidy.sh");
    EXPECT_TRUE(QFileInfo(QString::fromStdString(scripts() + "/tidy.sh")).isExecutable());
    EXPECT_TRUE(child<QPushButton>("testScript")->isEnabled());
}

TEST_F(ScriptPanelTest, WhatTheCheckerSaysOfTheScriptIsShown) {
    scriptInStore("no interpreter.sh", "");
    open("no interpreter.sh");
    EXPECT_NE(problem().find("interpreter"), std::string::npos) << problem();
}

TEST_F(ScriptPanelTest, ATestRunsItOnAFolderOfItsOwnAsTheHelperWould) {
    scriptInStore("tidy.sh",
                  "cd \"$ORV_ROOT_PATH\" && ls; /usr/bin/env | sort | grep -v -e ^PWD= -e ^OLDPWD= -e ^_= -e ^SHLVL=; echo oops >&2");
    open("tidy.sh");
    run->counters.setValue("AutoJob", "41");
    startTest();
    ASSERT_TRUE(testEnds());
    EXPECT_EQ(result().substr(0, 20), "Exit status 0 after ") << result();
    EXPECT_EQ(resultKind(), InlineMessage::Kind::Note);
    EXPECT_NE(output().find("Inbox of Client\n"), std::string::npos) << output();
    EXPECT_NE(output().find("ORV_CONTEXT=postflight\n"), std::string::npos) << output();
    EXPECT_NE(output().find("/42 Client\nP_AUTOJOB=42\nP_CLIENT=Client\n"), std::string::npos) << output();
    EXPECT_NE(output().find("oops\n"), std::string::npos) << output();
    EXPECT_EQ(output().find("HOME="), std::string::npos) << "nothing else is in the environment: " << output();
    EXPECT_EQ(run->counters.value("AutoJob"), "41") << "a test counts nothing";
    click(*child<QPushButton>("showTestFolder"));
    ASSERT_TRUE(waitUntil([&] { return workspace.opened.size() == 1; }));
    EXPECT_NE(workspace.opened.front().find("/42 Client"), std::string::npos);
    EXPECT_TRUE(QFileInfo(QString::fromStdString(workspace.opened.front())).isDir());
    const QString made = QString::fromStdString(workspace.opened.front());
    window.reset();
    EXPECT_FALSE(QFileInfo::exists(made)) << "it goes with the panel";
}

TEST_F(ScriptPanelTest, AFailureShowsTheExitStatus) {
    scriptInStore("tidy.sh", "echo no >&2; exit 7\n");
    open("tidy.sh");
    startTest();
    ASSERT_TRUE(testEnds());
    EXPECT_EQ(result().substr(0, 20), "Exit status 7 after ") << result();
    EXPECT_EQ(resultKind(), InlineMessage::Kind::Error);
    EXPECT_EQ(output(), "no\n");
}

TEST_F(ScriptPanelTest, AScriptEndedByASignalSaysWhich) {
    scriptInStore("tidy.sh", "kill -9 $$\n");
    open("tidy.sh");
    startTest();
    ASSERT_TRUE(testEnds());
    EXPECT_EQ(result().substr(0, 24), "Ended by signal 9 after ") << result();
}

TEST_F(ScriptPanelTest, ALongRunShowsItsOutputLeavesTheWindowFreeAndIsStoppedWithAllItStarted) {
    const std::string pidFile = folder("/child.pid");
    scriptInStore("tidy.sh", "sleep 600 & echo $! >" + pidFile + "; echo started; wait\n");
    open("tidy.sh");
    startTest();
    ASSERT_TRUE(waitUntil([&] { return output() == "started\n"; })) << output();
    EXPECT_TRUE(panel->isTesting());
    EXPECT_EQ(child<QPushButton>("testScript")->text(), QStringLiteral("&Stop"));
    int sleeper = 0;
    std::ifstream(pidFile) >> sleeper;
    ASSERT_GT(sleeper, 1);
    click(*child<QPushButton>("testScript"));
    ASSERT_TRUE(testEnds());
    EXPECT_EQ(result().substr(0, 14), "Stopped after ") << result();
    EXPECT_TRUE(waitUntil([&] {
        std::ifstream file("/proc/" + std::to_string(sleeper) + "/stat");
        std::string words;
        std::getline(file, words);
        return words.empty() || words.find(") Z ") != std::string::npos;
    })) << "what the script had started is gone, too";
}

// Else the second click, which is to stop it, hits whatever has come under the pointer.
TEST_F(ScriptPanelTest, TheButtonStaysUnderThePointerWhenOutputComesUp) {
    scriptInStore("tidy.sh", "echo one; echo two >&2; sleep 600\n");
    open("tidy.sh");
    const auto *const button = child<QPushButton>("testScript");
    const auto place = [&] { return QRect(button->mapTo(window.get(), QPoint()), button->size()).center(); };
    window->resize(window->width(), 420); // about what the panel has in the settings' own window
    ASSERT_TRUE(waitUntil([&] { return window->height() == 420 && panel->height() > 300; }));
    const QPoint before = place();
    startTest();
    ASSERT_TRUE(waitUntil([&] { return output() == "one\ntwo\n" && result().find("Running for") == 0; })) << output();
    QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    ASSERT_TRUE(waitUntil([&] { return child<QPlainTextEdit>("scriptOutput")->height() > 40; }));
    EXPECT_EQ(place().y(), before.y());
    EXPECT_TRUE(QRect(button->mapTo(window.get(), QPoint()), button->size()).contains(before.x(), before.y()));
    startTest(); // it is the button to stop it now
    ASSERT_TRUE(testEnds());
    EXPECT_EQ(place().y(), before.y());
}

TEST_F(ScriptPanelTest, AScriptThatDoesNotListenIsEndedTwoSecondsLater) {
    scriptInStore("tidy.sh", "trap '' TERM\necho deaf\nwhile :; do sleep 1; done\n");
    open("tidy.sh");
    startTest();
    ASSERT_TRUE(waitUntil([&] { return output() == "deaf\n"; }));
    startTest(); // it is the button to stop it now
    ASSERT_TRUE(testEnds());
    EXPECT_EQ(result().substr(0, 14), "Stopped after ") << result();
}

TEST_F(ScriptPanelTest, MoreOutputThanTheHelpersPipeHoldsIsWarnedOf) {
    scriptInStore("tidy.sh", "i=0; while [ $i -lt 2000 ]; do echo 'a line of forty characters, or thereabouts'; i=$((i+1)); done\n");
    open("tidy.sh");
    startTest();
    ASSERT_TRUE(testEnds());
    EXPECT_NE(result().find("writes more than 64 KiB"), std::string::npos) << result();
    EXPECT_EQ(resultKind(), InlineMessage::Kind::Warning);
}

TEST_F(ScriptPanelTest, AScriptThatCannotBeStartedSaysSo) {
    writeFile(scripts() + "/tidy.sh", "#!/nowhere/interpreter\n", true);
    open("tidy.sh");
    startTest();
    ASSERT_TRUE(testEnds());
    EXPECT_NE(result().find("The script cannot be started"), std::string::npos) << result();
}

TEST_F(ScriptPanelTest, AFolderThatCannotBeMadeSaysWhatTheHelperWouldSay) {
    scriptInStore("tidy.sh", "");
    open("tidy.sh");
    run->presets.setDirectoryName(run->preset(0), "..");
    startTest();
    ASSERT_TRUE(testEnds());
    EXPECT_EQ(resultKind(), InlineMessage::Kind::Error);
    EXPECT_EQ(output(), "");
}

TEST_F(ScriptPanelTest, APresetWhoseScanNeverEndsIsNotTried) {
    scriptInStore("tidy.sh", "");
    open("tidy.sh");
    run->presets.setDirectoryName(run->preset(0), "Job {");
    startTest();
    EXPECT_TRUE(
        waitUntil([&] { return result().find("never") != std::string::npos || result().find("ever ending") != std::string::npos; }));
    EXPECT_FALSE(panel->isTesting());
}

TEST_F(ScriptPanelTest, ADeletedPresetLeavesNothingToEdit) {
    scriptInStore("tidy.sh", "");
    open("tidy.sh");
    const ItemID preset = run->preset(0);
    run->presets.removePresets(std::array{preset});
    EXPECT_EQ(panel->preset(), NoItem);
    EXPECT_FALSE(child<QPushButton>("chooseScriptButton")->isEnabled());
    EXPECT_EQ(shownName(), "None");
}

} // namespace
} // namespace orvane::test
