// The panel in which a folder is chosen.

#include "QtTestSupport.h"

#include "platform/qt/QtOpenPanel.h"

#include <fstream>

#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>

#include <sys/stat.h>

namespace orvane::test {
namespace {

const OpenPanelSettings ParentFolder = {.title = "Orvane: Choose Parent Folder",
                                        .prompt = "Choose",
                                        .canChooseFiles = false,
                                        .canChooseDirectories = true,
                                        .canCreateDirectories = true};

/// The present folder, as long as it lives.
class WorkingFolder {
public:
    explicit WorkingFolder(const QString &folder) : _before(QDir::currentPath()) { EXPECT_TRUE(QDir::setCurrent(folder)); }
    WorkingFolder(const WorkingFolder &) = delete;
    WorkingFolder &operator=(const WorkingFolder &) = delete;
    ~WorkingFolder() { EXPECT_TRUE(QDir::setCurrent(_before)); }

private:
    const QString _before;
};

class OpenPanelTest : public testing::Test {
protected:
    OpenPanelTest() {
        QDir(home.path()).mkpath(QStringLiteral("Jobs/Acme"));
        std::ofstream((home.path() + QLatin1String("/Jobs/letter.txt")).toStdString()) << "text";
    }
    static QFileDialog *panel() { return dynamic_cast<QFileDialog *>(shownWindow("openPanel")); }
    [[nodiscard]] std::string memory() const { return home.path().toStdString() + "/state/orvane/parent-folder"; }
    [[nodiscard]] std::string path(const char *below) const { return home.path().toStdString() + below; }
    void chooseByTyping(const std::string &folder) {
        user.when([] { return isActive("openPanel"); },
                  [folder] {
                      panel()->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(folder));
                      xdotool("key Return");
                  },
                  "the panel");
    }
    void cancelLooking(std::function<void()> looks) {
        user.when([] { return isActive("openPanel"); },
                  [looks = std::move(looks)] {
                      looks();
                      xdotool("key Escape");
                  },
                  "the panel");
    }

    QTemporaryDir home;
    User user;
};

TEST_F(OpenPanelTest, ShowsTitleAndButtonAndOffersFoldersOnly) {
    QtOpenPanel openPanel(application(), {});
    const WorkingFolder elsewhere(home.path());
    cancelLooking([&] {
        EXPECT_EQ(panel()->windowTitle(), QLatin1String("Orvane: Choose Parent Folder"));
        const auto *const buttons = panel()->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
        EXPECT_EQ(buttons->button(QDialogButtonBox::Open)->text(), QLatin1String("Choose"));
        EXPECT_TRUE(panel()->testOption(QFileDialog::ShowDirsOnly));
        EXPECT_EQ(panel()->fileMode(), QFileDialog::Directory);
        EXPECT_TRUE(panel()->findChild<QToolButton *>(QStringLiteral("newFolderButton"))->isEnabled());
    });
    EXPECT_FALSE(openPanel.runModal(ParentFolder).has_value());
}

TEST_F(OpenPanelTest, NewFolderCannotBeMadeWhenTheSettingsSayNo) {
    QtOpenPanel openPanel(application(), {});
    cancelLooking([&] { EXPECT_TRUE(panel()->testOption(QFileDialog::ReadOnly)); });
    OpenPanelSettings settings = ParentFolder;
    settings.canCreateDirectories = false;
    EXPECT_FALSE(openPanel.runModal(settings).has_value());
}

TEST_F(OpenPanelTest, ChosenFolderIsAbsoluteAndRememberedAcrossRestarts) {
    {
        QtOpenPanel openPanel(application(), memory());
        chooseByTyping(path("/Jobs"));
        EXPECT_EQ(openPanel.runModal(ParentFolder), std::vector<std::string>{path("/Jobs")});
    }
    QtOpenPanel afterRestart(application(), memory());
    cancelLooking([&] { EXPECT_EQ(panel()->directory().path().toStdString(), path("/Jobs")); });
    EXPECT_FALSE(afterRestart.runModal(ParentFolder).has_value());
}

TEST_F(OpenPanelTest, MemoryIsForTheUserAlone) {
    QtOpenPanel openPanel(application(), memory());
    chooseByTyping(path("/Jobs"));
    EXPECT_TRUE(openPanel.runModal(ParentFolder).has_value());
    struct stat file {};
    struct stat folder {};
    ASSERT_EQ(::stat(memory().c_str(), &file), 0);
    ASSERT_EQ(::stat(path("/state/orvane").c_str(), &folder), 0);
    EXPECT_EQ(file.st_mode & 07777U, 0600U);
    EXPECT_EQ(folder.st_mode & 07777U, 0700U);
}

TEST_F(OpenPanelTest, ReturnWithoutAnythingSelectedChoosesTheFolderShown) {
    QtOpenPanel openPanel(application(), memory());
    chooseByTyping(path("/Jobs"));
    EXPECT_TRUE(openPanel.runModal(ParentFolder).has_value());
    user.when([] { return isActive("openPanel"); },
              [] { panel()->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"))->button(QDialogButtonBox::Open)->click(); },
              "the panel");
    EXPECT_EQ(openPanel.runModal(ParentFolder), std::vector<std::string>{path("/Jobs")});
}

TEST_F(OpenPanelTest, CancellingRemembersNothing) {
    QtOpenPanel openPanel(application(), memory());
    cancelLooking([&] { panel()->setDirectory(QString::fromStdString(path("/Jobs"))); });
    EXPECT_FALSE(openPanel.runModal(ParentFolder).has_value());
    EXPECT_FALSE(QFile::exists(QString::fromStdString(memory())));
}

TEST_F(OpenPanelTest, RememberedFolderThatIsGoneGivesTheNearestOneAbove) {
    {
        QtOpenPanel openPanel(application(), memory());
        chooseByTyping(path("/Jobs/Acme"));
        EXPECT_TRUE(openPanel.runModal(ParentFolder).has_value());
    }
    QDir(QString::fromStdString(path("/Jobs"))).removeRecursively();
    QtOpenPanel openPanel(application(), memory());
    cancelLooking([&] { EXPECT_EQ(panel()->directory().path(), home.path()); });
    EXPECT_FALSE(openPanel.runModal(ParentFolder).has_value());
}

TEST_F(OpenPanelTest, MemoryThatMakesNoSenseGivesTheHomeFolder) {
    for (const std::string &content : {std::string("relative/path"), std::string(), std::string("\xff\xfe\0x", 4)}) {
        QDir().mkpath(QString::fromStdString(path("/state/orvane")));
        std::ofstream(memory()) << content;
        QtOpenPanel openPanel(application(), memory());
        cancelLooking([&] { EXPECT_EQ(panel()->directory().path(), QDir::homePath()) << content; });
        EXPECT_FALSE(openPanel.runModal(ParentFolder).has_value());
    }
}

TEST_F(OpenPanelTest, MemoryThatCannotBeWrittenDoesNotHinderTheChoice) {
    QtOpenPanel openPanel(application(), path("/Jobs/letter.txt/below/a/file"));
    chooseByTyping(path("/Jobs"));
    EXPECT_TRUE(openPanel.runModal(ParentFolder).has_value());
    cancelLooking([&] { EXPECT_EQ(panel()->directory().path().toStdString(), path("/Jobs")); });
    EXPECT_FALSE(openPanel.runModal(ParentFolder).has_value());
}

TEST_F(OpenPanelTest, ComesToTheFrontWhileTheUserWorksInAnotherProgram) {
    const OtherProgram other;
    QtOpenPanel openPanel(application(), memory());
    chooseByTyping(path("/Jobs/Acme"));
    EXPECT_EQ(openPanel.runModal(ParentFolder), std::vector<std::string>{path("/Jobs/Acme")});
    EXPECT_TRUE(waitUntil([&] { return other.isActive(); }));
}

} // namespace
} // namespace orvane::test
