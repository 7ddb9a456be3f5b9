// The page on what stands beside the presets.

#include "SettingsPagesDesk.h"

#include "window/GeneralPage.h"
#include "window/PathLabel.h"

#include <QCheckBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>

namespace orvane::test {
namespace {

class GeneralPageTest : public SettingsPagesTest {
protected:
    void open() {
        if (!preferences.disk) {
            onDisk({{"ORVShowMenubar", PropertyListValue::ofBoolean(true)}});
        }
        show<GeneralPage>(HotKeyField::Way::Direct);
    }
    [[nodiscard]] std::string said(const char *name) const { return child<InlineMessage>(name)->text().toStdString(); }
    [[nodiscard]] std::string shownLog() const { return child<QPlainTextEdit>("log")->toPlainText().toStdString(); }
};

TEST_F(GeneralPageTest, TheMenuBarItemIsSwitchedWithItsAccessKeyAndUndone) {
    open();
    EXPECT_TRUE(child<QCheckBox>("showInMenuBar")->isChecked());
    EXPECT_EQ(said("menuBarHint"), "");
    xdotool("key alt+m");
    ASSERT_TRUE(waitUntil([&] { return !run->general.showsMenubar(); }));
    EXPECT_NE(said("menuBarHint"), "");
    run->history.undo();
    EXPECT_TRUE(child<QCheckBox>("showInMenuBar")->isChecked());
}

TEST_F(GeneralPageTest, StartAtLoginIsStoredAtOnce) {
    open();
    xdotool("key alt+a");
    ASSERT_TRUE(waitUntil([&] { return loginItem.enabled; }));
    EXPECT_TRUE(child<QCheckBox>("startAtLogin")->isChecked());
    EXPECT_FALSE(run->store.isModified());
}

TEST_F(GeneralPageTest, StartAtLoginThatCannotBeStoredSaysSo) {
    loginItem.refuses = true;
    open();
    click(*child<QCheckBox>("startAtLogin"));
    EXPECT_TRUE(waitUntil([&] { return said("loginProblem").find("could not be stored") != std::string::npos; }));
    EXPECT_FALSE(child<QCheckBox>("startAtLogin")->isChecked());
}

TEST_F(GeneralPageTest, EachPlaceIsShownWholeAndOpens) {
    open();
    std::vector<std::string> shown;
    for (const char *place : {"preferencesPath", "scriptsPath", "contentsPath"}) {
        shown.push_back(child<PathLabel>(place)->path().toStdString());
    }
    EXPECT_EQ(shown,
              (std::vector<std::string>{paths.preferencesFile, folder("/share/Orvane/Scripts"), folder("/share/Orvane/File Content")}));
    for (const char *button : {"preferencesShow", "scriptsShow", "contentsShow"}) {
        child<QPushButton>(button)->setFocus();
        const std::size_t before = workspace.opened.size();
        xdotool("key space");
        ASSERT_TRUE(waitUntil([&] { return workspace.opened.size() == before + 1; })) << button;
    }
    EXPECT_EQ(workspace.opened, (std::vector<std::string>{folder("/Library/Preferences"), folder("/share/Orvane/Scripts"),
                                                          folder("/share/Orvane/File Content")}));
    EXPECT_TRUE(QFileInfo(QString::fromStdString(folder("/share/Orvane/Scripts"))).isDir());
}

TEST_F(GeneralPageTest, APlaceThatCannotBeOpenedSaysSo) {
    workspace.opens = false;
    open();
    child<QPushButton>("scriptsShow")->click();
    EXPECT_NE(said("placeProblem").find("share/Orvane/Scripts” cannot be opened"), std::string::npos) << said("placeProblem");
}

TEST_F(GeneralPageTest, TheLogIsFollowedFromItsFirstLineOn) {
    open();
    EXPECT_EQ(shownLog(), "");
    child<QPushButton>("openLog")->click();
    EXPECT_NE(said("placeProblem"), "");
    writeFile(paths.stateFolder + "/log", "2026-11-21T10:00:00+0100 first\n");
    EXPECT_TRUE(waitUntil([&] { return shownLog() == "2026-11-21T10:00:00+0100 first"; })) << shownLog();
    std::ofstream(paths.stateFolder + "/log", std::ios::app) << "second\n";
    EXPECT_TRUE(waitUntil([&] { return shownLog() == "2026-11-21T10:00:00+0100 first\nsecond"; })) << shownLog();
    child<QPushButton>("openLog")->click();
    EXPECT_EQ(workspace.opened.back(), paths.stateFolder + "/log");
}

TEST_F(GeneralPageTest, OfALongLogTheEndIsShown) {
    std::string text;
    for (int line = 1; line <= 5000; ++line) {
        text += "line " + std::to_string(line) + " of a log that has been written to for a long time\n";
    }
    writeFile(paths.stateFolder + "/log", text);
    open();
    const std::string shown = shownLog();
    EXPECT_EQ(shown.substr(0, shown.find(" of")), "line 4801");
    EXPECT_EQ(shown.substr(shown.rfind('\n') + 1, 9), "line 5000");
    const QScrollBar *const bar = child<QPlainTextEdit>("log")->verticalScrollBar();
    EXPECT_TRUE(waitUntil([&] { return bar->maximum() > 0 && bar->value() == bar->maximum(); }));
}

TEST_F(GeneralPageTest, TheLogThatIsRotatedIsFollowedOn) {
    writeFile(paths.stateFolder + "/log", "old\n");
    open();
    EXPECT_EQ(shownLog(), "old");
    QFile::rename(QString::fromStdString(paths.stateFolder + "/log"), QString::fromStdString(paths.stateFolder + "/log.1"));
    writeFile(paths.stateFolder + "/log", "new\n");
    EXPECT_TRUE(waitUntil([&] { return shownLog() == "new"; })) << shownLog();
    std::ofstream(paths.stateFolder + "/log", std::ios::app) << "newer\n";
    EXPECT_TRUE(waitUntil([&] { return shownLog() == "new\nnewer"; })) << shownLog();
}

} // namespace
} // namespace orvane::test
