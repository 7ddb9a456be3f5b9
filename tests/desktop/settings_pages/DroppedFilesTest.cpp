// Files and folders dropped on a preset's tree that changes before they are in it: a question about a large folder may take long.

#include "SettingsPagesDesk.h"

#include "window/PresetTreeView.h"

#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include <filesystem>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

using Messages = std::vector<std::string>;
const std::string Gone = "Nothing was added: the folder for it is no longer there.";

class DroppedFilesTest : public SettingsPagesTest {
protected:
    void SetUp() override {
        presetsOnDisk({make.preset("Job", {make.folder("Inbox", {})})});
        tree = show<PresetTreeView>();
        tree->showPreset(run->preset(0));
        inbox = run->presets.childAt(run->presets.treeOf(run->preset(0)), 0);
        writeFile(folder("/in/letter.txt"), "Dear …");
        writeFile(folder("/in/Shoot/raw/clip.mov"), "");
        std::filesystem::resize_file(folder("/in/Shoot/raw/clip.mov"), 21'000'000); // takes no room
    }
    /// On the folder "Inbox".
    void drop(const std::string &name) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder("/in/" + name)))});
        PresetTreeModel &model = tree->presetModel();
        EXPECT_TRUE(model.dropMimeData(&data, Qt::CopyAction, -1, -1, model.indexOfItem(inbox)));
    }
    /// Presses that button of the question that comes, or its Cancel, after `act`.
    void answer(const char *button, const std::function<void()> &act) {
        User user;
        user.when([] { return isActive("folderQuestion"); },
                  [&] {
                      act();
                      auto *const box = qobject_cast<QMessageBox *>(shownWindow("folderQuestion"));
                      auto *const named = box->findChild<QPushButton *>(QString::fromLatin1(button));
                      (named == nullptr ? box->button(QMessageBox::Cancel) : named)->click();
                  },
                  "the question");
        EXPECT_TRUE(waitUntil([&] { return user.hasFinished() && shownWindow("folderQuestion") == nullptr; }));
        QCoreApplication::sendPostedEvents();
    }
    void removeInbox() { run->presets.removeNodes({{inbox}}, "Delete"); }
    [[nodiscard]] bool hasContents() const { return std::filesystem::exists(folder("/share/Orvane/File Content")); }

    PresetTreeView *tree = nullptr;
    ItemID inbox = NoItem;
};

TEST_F(DroppedFilesTest, AreAddedWhereTheyWereDropped) {
    drop("letter.txt");
    drop("Shoot");
    answer("namesOnly", [] {});
    EXPECT_EQ(run->presets.numberOfChildren(inbox), 2U);
    EXPECT_EQ(messages, Messages());
}

TEST_F(DroppedFilesTest, OnAFolderThatIsGoneBeforeTheAnswerAreToldOf) {
    for (const char *const button : {"namesOnly", "copyContents"}) {
        messages.clear();
        drop("Shoot");
        answer(button, [this] { removeInbox(); });
        EXPECT_EQ(messages, Messages{Gone}) << button;
        EXPECT_EQ(run->presets.numberOfChildren(run->presets.treeOf(run->preset(0))), 0U);
        EXPECT_FALSE(hasContents());
        run->history.undo();
        inbox = run->presets.childAt(run->presets.treeOf(run->preset(0)), 0);
    }
}

TEST_F(DroppedFilesTest, OnAFolderThatIsGoneWhenTheirTurnComesAreToldOf) {
    drop("letter.txt");
    removeInbox();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(messages, Messages{Gone});
    EXPECT_FALSE(hasContents());
}

TEST_F(DroppedFilesTest, ThatAreNotWantedAfterAllAreNoLoss) {
    drop("Shoot");
    answer("cancel", [this] { removeInbox(); });
    EXPECT_EQ(messages, Messages());
}

} // namespace
} // namespace orvane::test
