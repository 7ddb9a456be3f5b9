// The settings window with real keys, a real pointer and real files.

#include "SettingsWindowDesk.h"

#include "presets/ORVPresetManager.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

#include <filesystem>

namespace orvane::test {
namespace {

using Labels = std::vector<std::string>;

// Making and editing -------------------------------------------------------------------------------------------------------

TEST_F(SettingsWindowTest, APresetIsMadeWithKeysAloneAndStandsOnDiskSoonAfter) {
    start();
    key(Qt::Key_N, Qt::ControlModifier);
    ASSERT_EQ(QApplication::focusWidget()->objectName(), u"presetLabel");
    keys(QStringLiteral("Job"));
    key(Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget()->objectName(), u"directoryName");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    keys(QStringLiteral("{Client} {AutoJob}"));
    tree().setFocus();
    key(Qt::Key_Return); // in the top-level folder
    ASSERT_TRUE(waitUntil([this] { return editor() != nullptr; }));
    keys(QStringLiteral("Footage"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return editor() == nullptr; }));
    key(Qt::Key_Return, Qt::ShiftModifier); // inside of that
    ASSERT_TRUE(waitUntil([this] { return editor() != nullptr; }));
    keys(QStringLiteral("{Client} A"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return editor() == nullptr; }));
    key(Qt::Key_Return); // beside it
    ASSERT_TRUE(waitUntil([this] { return editor() != nullptr; }));
    keys(QStringLiteral("B"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return editor() == nullptr; }));
    key(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier); // a file in it
    ASSERT_TRUE(waitUntil([this] { return editor() != nullptr; }));
    keys(QStringLiteral("notes.txt"));
    key(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([this] { return diskTree(0) == "Footage({Client} A B(notes.txt))"; })) << diskTree(0);
    EXPECT_EQ(diskLabels(), Labels{"Job"});
    const PropertyList presets = diskPresets();
    EXPECT_EQ(presets.root().array()[0].find("directoryName")->string(), "{Client} {AutoJob}");
    EXPECT_TRUE(waitUntil([this] { return !notifications.posted.empty(); }));
    EXPECT_EQ(notifications.posted.front(), ORVPresetConfigurationChangedNotification);
}

TEST_F(SettingsWindowTest, RenamingDeletingDuplicatingCanBeUndoneAndDoneAgain) {
    writePresets({"One"});
    start();
    tree().selectItems({item("A")});
    tree().setFocus();
    key(Qt::Key_F2);
    ASSERT_TRUE(waitUntil([this] { return editor() != nullptr; }));
    keys(QStringLiteral("Alpha"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return editor() == nullptr; }));
    EXPECT_EQ(shownTree(), "Alpha B c.txt");
    key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(shownTree(), "Alpha Alpha 2 B c.txt");
    tree().selectItems({item("B"), item("c.txt")});
    key(Qt::Key_Delete);
    EXPECT_EQ(shownTree(), "Alpha Alpha 2");
    EXPECT_EQ(widget<QAction>("undo")->text().remove(u'&'), u"Undo Delete Items");
    for (const char *after : {"Alpha Alpha 2 B c.txt", "Alpha B c.txt", "A B c.txt"}) {
        key(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(shownTree(), after);
    }
    for (const char *after : {"Alpha B c.txt", "Alpha Alpha 2 B c.txt", "Alpha Alpha 2"}) {
        key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(shownTree(), after);
    }
    EXPECT_TRUE(waitUntil([this] { return diskTree(0) == "Alpha Alpha 2"; }));
    EXPECT_NE(readFile(preferencesFile()).find("x-unknown"), std::string::npos);
    EXPECT_NE(readFile(preferencesFile()).find("x-preset"), std::string::npos);
    EXPECT_NE(readFile(preferencesFile()).find("foreign"), std::string::npos);
}

TEST_F(SettingsWindowTest, UndoInATextFieldTakesTheDocumentsStepBack) {
    writePresets({"One"});
    start();
    auto *const label = widget<QLineEdit>("presetLabel");
    label->setFocus();
    key(Qt::Key_A, Qt::ControlModifier);
    keys(QStringLiteral("Two"));
    EXPECT_EQ(context().presets.label(context().presets.presetAt(0)), "Two");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(context().presets.label(context().presets.presetAt(0)), "One");
    EXPECT_EQ(label->text(), u"One");
}

TEST_F(SettingsWindowTest, UndoInThePermissionsTakesTheDocumentsStepsBack) {
    writePresets({"One"});
    start();
    const ItemID folder = item("A");
    const auto permissions = [&] { return context().presets.text(folder, "permissions"); };
    tree().selectItems({folder});
    context().presets.renameNode(folder, "Alpha");
    auto *const octal = widget<QLineEdit>("itemPermissions");
    octal->setFocus();
    keys(QStringLiteral("750"));
    key(Qt::Key_A, Qt::ControlModifier);
    keys(QStringLiteral("640"));
    EXPECT_EQ(permissions(), "640");
    for (const char *after : {"750", ""}) {
        key(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(permissions(), after);
        EXPECT_EQ(octal->text(), QString::fromLatin1(after));
    }
    for (const char *after : {"750", "640"}) {
        key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(permissions(), after);
        EXPECT_EQ(octal->text(), QString::fromLatin1(after));
    }
    for (int step = 0; step < 3; ++step) {
        key(Qt::Key_Z, Qt::ControlModifier);
    }
    EXPECT_EQ(context().presets.filename(folder), "A") << "one history for all";
}

TEST_F(SettingsWindowTest, UndoTakesHalfTypedPermissionsBackBeforeAnyStep) {
    writePresets({"One"});
    start();
    const ItemID folder = item("A");
    tree().selectItems({folder});
    context().presets.renameNode(folder, "Alpha");
    auto *const octal = widget<QLineEdit>("itemPermissions");
    octal->setFocus();
    keys(QStringLiteral("75"));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(octal->text(), QString());
    EXPECT_EQ(context().presets.filename(folder), "Alpha");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(context().presets.filename(folder), "A");
}

// Going by keys -------------------------------------------------------------------------------------------------------------

/// What has the keyboard: a button by what it does.
QString focused() {
    const QWidget *const widget = QApplication::focusWidget();
    const auto *const button = qobject_cast<const QToolButton *>(widget);
    return widget == nullptr                                         ? QString()
           : button != nullptr && button->defaultAction() != nullptr ? button->defaultAction()->objectName()
                                                                     : widget->objectName();
}

TEST_F(SettingsWindowTest, ReturnMakesTheFirstPreset) {
    start();
    ASSERT_TRUE(waitUntil([] { return focused() == u"emptyAdd"; })) << focused().toStdString();
    xdotool("key Return");
    ASSERT_TRUE(waitUntil([this] { return context().presets.numberOfPresets() == 1; }));
    EXPECT_TRUE(waitUntil([] { return focused() == u"presetLabel"; })) << focused().toStdString();
}

TEST_F(SettingsWindowTest, TheKeyboardGoesToTheInvitationWithTheLastPresetAndBackToTheListWithTheFirst) {
    writePresets({"One"});
    start();
    ASSERT_TRUE(waitUntil([] { return focused() == u"presetList"; })) << focused().toStdString();
    xdotool("key Delete");
    ASSERT_TRUE(waitUntil([this] { return context().presets.numberOfPresets() == 0; }));
    EXPECT_TRUE(waitUntil([] { return focused() == u"emptyAdd"; })) << focused().toStdString();
    xdotool("key ctrl+z");
    ASSERT_TRUE(waitUntil([this] { return context().presets.numberOfPresets() == 1; }));
    EXPECT_TRUE(waitUntil([] { return focused() == u"presetList"; })) << focused().toStdString();
}

TEST_F(SettingsWindowTest, TheKeyboardGoesToTheListWithAFileThatIsOpened) {
    start();
    ASSERT_TRUE(waitUntil([] { return focused() == u"emptyAdd"; })) << focused().toStdString();
    window->openPaths({QtTextOf(paths.resourceFolder + "/presets/film-production/film-production.orvpreset")});
    ASSERT_EQ(context().presets.numberOfPresets(), 1U);
    QApplication::processEvents();
    EXPECT_EQ(focused(), u"presetList");
}

TEST_F(SettingsWindowTest, TheTabKeyGoesFromTheListToTheFieldsAndTheTreeAndWhatStandsBesideIt) {
    writePresets({"One"});
    start();
    context().presets.renameNode(item("B"), "A");
    ASSERT_TRUE(waitUntil([this] { return widget<QListWidget>("problemList")->isVisible(); }));
    tree().selectItems({item("c.txt")});
    list().setFocus();
    QStringList order{focused()};
    while (order.back() != u"problemList" && order.size() < 60) {
        const QWidget *const before = QApplication::focusWidget();
        xdotool("key Tab");
        ASSERT_TRUE(waitUntil([&] { return QApplication::focusWidget() != before; })) << order.back().toStdString();
        order.append(focused());
    }
    QStringList expected;
    for (const char *name : {"presetList",  "newPreset",      "addFrom",      "duplicatePreset", "deletePreset",
                             "presetLabel", "directoryName",  "tryIt",        "newFolder",       "newFile",
                             "addFiles",    "duplicateNodes", "deleteNodes",  "presetTree",      "qt_tabwidget_tabbar",
                             "itemKind",    "label-none",     "label-red",    "label-orange",    "label-yellow",
                             "label-green", "label-blue",     "label-purple", "label-gray",      "itemPermissions"}) {
        expected.append(QString::fromLatin1(name));
    }
    for (int box = 0; box < 9; ++box) {
        expected.append(QStringLiteral("permission%1").arg(box));
    }
    expected.append({QStringLiteral("itemContent"), QStringLiteral("chooseContent"), QStringLiteral("problemList")});
    EXPECT_EQ(order.join(u' ').toStdString(), expected.join(u' ').toStdString());
}

// -------------------------------------------------------------------------------------------------------------------------

TEST_F(SettingsWindowTest, CutAndPasteMoveThroughTheClipboardAsText) {
    writePresets({"One"});
    start();
    tree().selectItems({item("c.txt")});
    tree().setFocus();
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(shownTree(), "A B");
    EXPECT_TRUE(QApplication::clipboard()->text().contains(QStringLiteral("c.txt")));
    tree().selectItems({item("B")});
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(shownTree(), "A B(c.txt)");
}

TEST_F(SettingsWindowTest, AltWithArrowsMovesItems) {
    writePresets({"One"});
    start();
    tree().selectItems({item("c.txt")});
    tree().setFocus();
    key(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(shownTree(), "A c.txt B");
    key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(shownTree(), "A(c.txt) B");
    key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(shownTree(), "A c.txt B");
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(shownTree(), "A B c.txt");
}

TEST_F(SettingsWindowTest, DraggingAnItemOntoAFolderMovesItThere) {
    writePresets({"One"});
    start();
    tree().selectItems({item("c.txt")});
    ASSERT_TRUE(waitUntil([this] { return tree().visualRect(tree().presetModel().indexOfItem(item("c.txt"))).height() > 0; }));
    drag(placeOf(item("c.txt")), placeOf(item("A")));
    EXPECT_TRUE(waitUntil([this] { return shownTree() == "A(c.txt) B"; })) << shownTree();
    EXPECT_EQ(tree().selectedNodes(), std::vector<ItemID>{item("A/c.txt")});
}

TEST_F(SettingsWindowTest, FilesOfAFileManagerBecomeContentFilesAndFoldersTrees) {
    writePresets({"One"});
    writeFile(path("/in/letter {1}.txt"), "Dear …");
    writeFile(path("/in/Kit/sub/tool.sh"), "#!/bin/sh\n");
    start();
    EXPECT_EQ(dropOn("B", {"/in/letter {1}.txt", "/in/Kit"}), Qt::CopyAction) << "whatever the file manager proposes";
    ASSERT_TRUE(waitUntil([this] { return shownTree() != "A B c.txt"; }));
    EXPECT_EQ(shownTree(), "A B(letter \\{1\\}.txt Kit(sub(tool.sh))) c.txt");
    const std::string content = context().presets.text(item("B/Kit/sub/tool.sh"), "contentFilename");
    EXPECT_EQ(readFile(paths.supportFolder + "/File Content/" + content), "#!/bin/sh\n");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(shownTree(), "A B c.txt");
}

TEST_F(SettingsWindowTest, LabelAndPermissionsAreSetForAllChosenItems) {
    writePresets({"One"});
    start();
    tree().selectItems({item("A"), item("B")});
    QTest::mouseClick(widget<QWidget>("label-green"), Qt::LeftButton);
    auto *const octal = widget<QLineEdit>("itemPermissions");
    octal->setFocus();
    keys(QStringLiteral("750"));
    EXPECT_TRUE(waitUntil([this] { return readFile(preferencesFile()).find("750") != std::string::npos; }));
    EXPECT_EQ(context().presets.text(item("A"), "color"), "green");
    EXPECT_EQ(context().presets.text(item("B"), "color"), "green");
    EXPECT_EQ(context().presets.text(item("B"), "permissions"), "750");
    QTest::mouseClick(widget<QWidget>("permission8"), Qt::LeftButton, Qt::NoModifier, QPoint(6, 8)); // others may execute
    EXPECT_EQ(context().presets.text(item("A"), "permissions"), "751");
}

// Presets ------------------------------------------------------------------------------------------------------------------

TEST_F(SettingsWindowTest, PresetsAreReorderedDuplicatedAndDeletedWithKeys) {
    writePresets({"One", "Two", "Three"});
    start();
    list().setFocus();
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Two", "One", "Three"}; }));
    key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Two", "One", "One 2", "Three"}; }));
    key(Qt::Key_Delete);
    key(Qt::Key_Delete);
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Two", "One"}; }));
    key(Qt::Key_Z, Qt::ControlModifier);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Two", "One", "One 2", "Three"}; }));
}

TEST_F(SettingsWindowTest, ALabelTypedInTheListLeavesTheKeyboardThere) {
    writePresets({"One", "Two"});
    start();
    list().setFocus();
    key(Qt::Key_F2);
    ASSERT_TRUE(waitUntil([] { return qobject_cast<QLineEdit *>(QApplication::focusWidget()) != nullptr; }));
    keys(QStringLiteral("Uno"));
    key(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([this] { return list().hasFocus(); }));
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Uno", "Two"}; }));
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"Two", "Uno"}; }));
    key(Qt::Key_Return); // on a preset, it goes to its tree
    EXPECT_TRUE(tree().hasFocus());
}

TEST_F(SettingsWindowTest, AnExportedPresetComesBackWithItsContents) {
    writePresets({"One"});
    writeFile(paths.supportFolder + "/File Content/text", "inside");
    start();
    context().presets.setContentFilename(std::array{item("c.txt")}, "text");
    Sentence problem;
    std::vector<Sentence> warnings;
    const std::string file = path("/one.orvpreset");
    ASSERT_TRUE(context().contents.writePresetFile(context().presets.record(context().presets.presetAt(0)), file, false, warnings, problem))
        << problem.english();
    ASSERT_EQ(std::remove((paths.supportFolder + "/File Content/text").c_str()), 0);
    window->openPaths({QtTextOf(file)});
    EXPECT_EQ(context().presets.numberOfPresets(), 2U);
    EXPECT_EQ(readFile(paths.supportFolder + "/File Content/text"), "inside");
}

TEST_F(SettingsWindowTest, APresetWithoutALabelGoesByItsFoldersNameInTheListAndOnDisk) {
    writePresets({"One"});
    start();
    auto *const label = widget<QLineEdit>("presetLabel");
    const auto shown = [this] { return list().model()->index(0, 0).data().toString(); };
    label->setFocus();
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Delete);
    EXPECT_EQ(shown(), u"{Name}");
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"?"}; })) << "an empty label is an empty item in the helper's menu";
    context().presets.setDirectoryName(context().presets.presetAt(0), "{Client}");
    EXPECT_EQ(shown(), u"{Client}");
    context().presets.setDirectoryName(context().presets.presetAt(0), "");
    EXPECT_EQ(shown(), u"(no name)");
}

TEST_F(SettingsWindowTest, AnAddedPresetThatBringsAScriptIsNamed) {
    writePresets({"Tidy job"});
    writeFile(paths.supportFolder + "/Scripts/tidy.sh", "#!/bin/sh\n");
    start();
    const ItemID preset = context().presets.presetAt(0);
    context().presets.setScript(preset, "tidy.sh");
    Sentence problem;
    std::vector<Sentence> warnings;
    ASSERT_TRUE(context().contents.writePresetFile(context().presets.record(preset), path("/one.orvpreset"), false, warnings, problem))
        << problem.english();
    window->openPaths({QtTextOf(path("/one.orvpreset"))});
    const QString text = bar("messageBar").text();
    EXPECT_TRUE(text.contains(QStringLiteral("Tidy job"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("tidy 2.sh"))) << text.toStdString(); // the other one is not executable
}

TEST_F(SettingsWindowTest, AFileDroppedOnAnItemThatIsGoneByThenIsNotAdded) {
    writePresets({"One"});
    writeFile(path("/in/letter.txt"), "Dear …");
    start();
    static_cast<void>(dropOn("B", {"/in/letter.txt"}));
    context().presets.removeNodes({{item("B")}}, "Delete");
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(shownTree(), "A c.txt");
    EXPECT_FALSE(std::filesystem::exists(paths.supportFolder + "/File Content"));
}

class LargeFolder : public SettingsWindowTest {
protected:
    LargeFolder() {
        writeFile(path("/in/Shoot/notes.txt"), "few");
        writeFile(path("/in/Shoot/raw/clip.mov"), "");
        std::filesystem::resize_file(path("/in/Shoot/raw/clip.mov"), 21'000'000); // takes no room
    }
    /// Opens the folder and presses that button of the question.
    void open(const char *button) {
        answer(button, [this] { window->openPaths({QtTextOf(path("/in/Shoot"))}); });
    }
    void answer(const char *button, const std::function<void()> &act) {
        User user;
        user.when([] { return isActive("folderQuestion"); },
                  [&] {
                      auto *const box = qobject_cast<QMessageBox *>(shownWindow("folderQuestion"));
                      said = box->text();
                      const auto *const named = box->findChild<QPushButton *>(QString::fromLatin1(button));
                      QTest::mouseClick(named == nullptr ? box->button(QMessageBox::Cancel)
                                                         : box->findChild<QPushButton *>(QString::fromLatin1(button)),
                                        Qt::LeftButton);
                  },
                  "the question");
        act();
        EXPECT_TRUE(waitUntil([&] { return user.hasFinished(); }));
    }
    [[nodiscard]] std::size_t contents() const {
        const std::filesystem::path folder = paths.supportFolder + "/File Content";
        return std::filesystem::exists(folder) ? static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder),
                                                                                        std::filesystem::directory_iterator()))
                                               : 0;
    }

    QString said;
};

TEST_F(LargeFolder, IsNotCopiedWithoutAQuestion) {
    start();
    open("cancel");
    EXPECT_TRUE(said.contains(QStringLiteral("Shoot"))) << said.toStdString();
    EXPECT_TRUE(said.contains(QStringLiteral(": 2, with 21 MB"))) << said.toStdString();
    EXPECT_EQ(context().presets.numberOfPresets(), 0U);
    EXPECT_EQ(contents(), 0U);
}

TEST_F(LargeFolder, IsNotCopiedIntoATreeWithoutAQuestionEither) {
    writePresets({"One"});
    start();
    answer("cancel", [this] { static_cast<void>(dropOn("B", {"/in/Shoot"})); });
    EXPECT_TRUE(said.contains(QStringLiteral(": 2, with 21 MB"))) << said.toStdString();
    ASSERT_TRUE(waitUntil([] { return shownWindow("folderQuestion") == nullptr; }));
    EXPECT_EQ(shownTree(), "A B c.txt");
    answer("namesOnly", [this] { tree().addFilesAtPaths({QtTextOf(path("/in/Shoot"))}); });
    ASSERT_TRUE(waitUntil([this] { return shownTree().find("Shoot") != std::string::npos; }));
    EXPECT_EQ(contents(), 0U);
    context().history.undo();
    answer("copyContents", [this] { static_cast<void>(dropOn("B", {"/in/Shoot"})); });
    ASSERT_TRUE(waitUntil([this] { return shownTree() == "A B(Shoot(notes.txt raw(clip.mov))) c.txt"; })) << shownTree();
    EXPECT_EQ(contents(), 2U);
}

TEST_F(LargeFolder, BecomesAPresetWithEmptyFilesByItsNamesOnly) {
    start();
    open("namesOnly");
    ASSERT_EQ(context().presets.numberOfPresets(), 1U);
    EXPECT_EQ(shownTree(), "notes.txt raw(clip.mov)");
    EXPECT_EQ(context().presets.text(item("raw/clip.mov"), "contentFilename"), "");
    EXPECT_EQ(contents(), 0U);
}

TEST_F(LargeFolder, BringsItsContentsAlongWhereThatIsWanted) {
    start();
    open("copyContents");
    ASSERT_EQ(context().presets.numberOfPresets(), 1U);
    EXPECT_EQ(context().presets.text(item("raw/clip.mov"), "contentFilename"), "clip.mov");
    EXPECT_EQ(contents(), 2U);
}

TEST_F(SettingsWindowTest, ASmallFolderIsTakenWithItsContentsAtOnce) {
    writeFile(path("/in/Kit/tool.sh"), "#!/bin/sh\n");
    start();
    window->openPaths({QtTextOf(path("/in/Kit"))});
    ASSERT_EQ(context().presets.numberOfPresets(), 1U);
    EXPECT_EQ(context().presets.text(item("tool.sh"), "contentFilename"), "tool.sh");
}

// Problems, variables, preview ----------------------------------------------------------------------------------------------

TEST_F(SettingsWindowTest, AProblemIsListedAndChoosingItGoesToItsPlace) {
    writePresets({"One"});
    start();
    context().presets.renameNode(item("B"), "A");
    auto *const problems = widget<QListWidget>("problemList");
    const ItemID second = context().presets.childAt(item(""), 1);
    const auto first = [&] { return problems->count() == 0 ? 0U : problems->item(0)->data(Qt::UserRole).toUInt(); };
    ASSERT_TRUE(waitUntil([&] { return first() == static_cast<std::uint32_t>(second); })); // the worst one comes first
    tree().selectItems({item("c.txt")});
    QTest::mouseClick(problems->viewport(), Qt::LeftButton, Qt::NoModifier, problems->visualItemRect(problems->item(0)).center());
    EXPECT_EQ(tree().currentItem(), second);
    EXPECT_TRUE(tree().presetModel().indexOfItem(second).data(PresetTreeModel::SeverityRole).isValid());
}

TEST_F(SettingsWindowTest, TheWayToAProblemHasAWordForAFolderWithoutAName) {
    writePresets({"One"});
    start();
    const ItemID folder = item("A");
    context().presets.addNode(folder, 0, "a/b", false);
    context().presets.renameNode(folder, "");
    auto *const problems = widget<QListWidget>("problemList");
    const auto lines = [&] {
        QStringList said;
        for (int row = 0; row < problems->count(); ++row) {
            said.append(problems->item(row)->text());
        }
        return said;
    };
    ASSERT_TRUE(waitUntil([&] { return !lines().filter(QStringLiteral("a/b — ")).isEmpty(); })) << lines().join(u'\n').toStdString();
    for (const QString &line : lines().filter(QStringLiteral("a/b — "))) {
        EXPECT_TRUE(line.startsWith(QStringLiteral("(no name) › a/b — "))) << line.toStdString();
    }
}

TEST_F(SettingsWindowTest, AVariableGetsAnotherNameWhereverItIsUsed) {
    writePresets({"One"});
    start();
    context().presets.renameNode(item("A"), "{Name} raw");
    auto *const variables = widget<QTreeWidget>("variableTree");
    ASSERT_TRUE(waitUntil([&] { return variables->topLevelItemCount() == 1 && variables->topLevelItem(0)->text(2) == u"2"; }));
    widget<QTabWidget>("presetTabs")->setCurrentIndex(2);
    variables->setFocus();
    variables->setCurrentItem(variables->topLevelItem(0));
    key(Qt::Key_F2);
    ASSERT_TRUE(waitUntil([] { return qobject_cast<QLineEdit *>(QApplication::focusWidget()) != nullptr; }));
    keys(QStringLiteral("Client"));
    key(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([this] { return shownTree() == "{Client} raw B c.txt"; })) << shownTree();
    EXPECT_EQ(widget<QLineEdit>("directoryName")->text(), u"{Client}");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(shownTree(), "{Name} raw B c.txt");
    EXPECT_EQ(widget<QLineEdit>("directoryName")->text(), u"{Name}");
}

TEST_F(SettingsWindowTest, ATextInNamesBecomesAVariable) {
    writePresets({"One"});
    start();
    context().presets.renameNode(item("A"), "Acme raw");
    context().presets.renameNode(item("c.txt"), "Acme.txt");
    widget<QTabWidget>("presetTabs")->setCurrentIndex(2);
    EXPECT_FALSE(widget<QPushButton>("makeVariable")->isEnabled());
    widget<QLineEdit>("textForVariable")->setFocus();
    keys(QStringLiteral("Acme"));
    key(Qt::Key_Tab);
    keys(QStringLiteral("Client"));
    key(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([this] { return shownTree() == "{Client} raw B {Client}.txt"; })) << shownTree();
    EXPECT_EQ(bar("messageBar").text(), u"“Acme” is the variable “Client” now. Names that changed: 2");
    EXPECT_EQ(widget<QLineEdit>("textForVariable")->text(), QString());
    keys(QStringLiteral("nowhere"));
    key(Qt::Key_Tab);
    keys(QStringLiteral("Client"));
    key(Qt::Key_Return);
    EXPECT_EQ(bar("messageBar").text(), u"No name of this preset has the text “nowhere”.");
}

TEST_F(SettingsWindowTest, TryItMakesThePresetInATemporaryFolderAndOpensThat) {
    writePresets({"One"});
    start();
    context().preview.setSample("Name", "Sample");
    QTest::mouseClick(widget<QPushButton>("tryIt"), Qt::LeftButton);
    ASSERT_EQ(workspace.opened.size(), 1U) << QtUtf8Of(bar("messageBar").text());
    const QDir made(QtTextOf(workspace.opened.front()));
    EXPECT_EQ(made.dirName(), u"Sample");
    EXPECT_EQ(made.entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              (QStringList{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("c.txt")}));
    stop();
    EXPECT_FALSE(made.exists());
}

} // namespace
} // namespace orvane::test
