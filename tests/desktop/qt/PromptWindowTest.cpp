// The prompt's window: what it is loaded from, what it shows, where it stands, how it waits.

#include "QtPromptDesk.h"

#include "platform/qt/QtFolderNameView.h"

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include <QAccessible>
#include <QDir>
#include <QLabel>
#include <QScreen>
#include <QTemporaryDir>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;

/// Shows two rows and says what happened.
class RecordingOwner final : public PromptOwner {
public:
    void awakeFromNib(PromptWindow &theWindow, TableView &theTable) override {
        window = &theWindow;
        table = &theTable;
        journal.emplace_back("awake");
    }
    std::span<PromptValueRow> promptRows() override { return rows; }
    [[nodiscard]] const std::string &promptDirectoryName() const override { return name; }
    [[nodiscard]] const std::string &promptParentFolder() const override { return parent; }
    [[nodiscard]] std::string directoryNameForRows(std::span<const PromptValueRow> some) const override {
        return some.size() < 2 ? "" : some[0].value + " of " + some[1].value;
    }
    [[nodiscard]] PromptProblem problemForRows(std::span<const PromptValueRow> some) const override {
        return !some.empty() && some[0].value == "taken" ? PromptProblem::AlreadyExists : PromptProblem::None;
    }
    void finishPrompt() override { journal.emplace_back("finish"); }
    void abortPrompt() override { journal.emplace_back("abort"); }
    void windowWillClose(PromptWindow & /*theWindow*/) override { journal.emplace_back("close"); }
    void tableTextDidEndEditing(TextMovement movement) override {
        journal.push_back("end " + std::to_string(static_cast<int>(movement)) + " in " + std::to_string(table->editedColumn()) + "," +
                          std::to_string(table->editedRow()) + " value '" + rows[0].value + "'");
        if (stores) {
            table->superTextDidEndEditing(movement);
            journal.push_back("stored '" + rows[0].value + "'");
        }
    }
    void tableKeyDown(int keyCode) override { journal.push_back("key " + std::to_string(keyCode)); }

    std::vector<PromptValueRow> rows = {{"Chapter", "1"}, {"Book", "2"}};
    std::string parent;
    std::string name = "{Chapter} of {Book}";
    PromptWindow *window = nullptr;
    TableView *table = nullptr;
    bool stores = true;
    std::vector<std::string> journal;
};

class PromptWindowTest : public testing::Test {
protected:
    void load() {
        ASSERT_TRUE(interface.loadNibNamedOwner("PromptWindow", owner));
        owner.journal.clear();
    }
    void show() {
        load();
        owner.window->makeKeyAndOrderFront();
        owner.window->beginModalSession();
        owner.window->enableScreenUpdates();
        ASSERT_TRUE(waitUntil([] { return isActive(PromptWindowName); }));
    }
    void TearDown() override {
        if (owner.window != nullptr) {
            owner.window->endModalSession();
            owner.window->orderOut();
        }
    }
    [[nodiscard]] QtPromptTable &table() const { return dynamic_cast<QtPromptTable &>(*owner.table); }
    [[nodiscard]] QtPromptWindow &window() const { return dynamic_cast<QtPromptWindow &>(*owner.window); }
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget *const focus = QApplication::focusWidget();
        ASSERT_NE(focus, nullptr);
        QKeyEvent down(QEvent::KeyPress, key, modifiers, key == Qt::Key_Return ? QStringLiteral("\r") : QString());
        QApplication::sendEvent(focus, &down);
    }

    RecordingOwner owner;
    QtPromptInterface interface { application(), environment("ORVANE_TEST_RESOURCES") };
};

// The interface file --------------------------------------------------------------------------------------------------

TEST_F(PromptWindowTest, EachLoadIsANewCopy) {
    ASSERT_TRUE(interface.loadNibNamedOwner("PromptWindow", owner));
    dynamic_cast<QtPromptWindow &>(*owner.window).setWindowTitle(QStringLiteral("changed"));
    ASSERT_TRUE(interface.loadNibNamedOwner("PromptWindow", owner));
    EXPECT_NE(dynamic_cast<QtPromptWindow &>(*owner.window).windowTitle(), QLatin1String("changed"));
    EXPECT_EQ(owner.journal, (Lines{"awake", "awake"}));
}

/// The interface file with one text replaced by another, in a folder of its own; whether it could be loaded.
bool loadsWith(const std::string &what, const std::string &instead) {
    std::ifstream original(environment("ORVANE_TEST_RESOURCES") + "/PromptWindow.ui");
    std::stringstream content;
    content << original.rdbuf();
    std::string file = content.str();
    const std::size_t place = file.find(what);
    EXPECT_NE(place, std::string::npos) << what;
    file.replace(place, what.size(), instead);
    const QTemporaryDir folder;
    std::ofstream(folder.path().toStdString() + "/PromptWindow.ui") << file;
    RecordingOwner owner;
    QtPromptInterface interface(application(), folder.path().toStdString());
    const bool loads = interface.loadNibNamedOwner("PromptWindow", owner);
    EXPECT_EQ(loads, owner.window != nullptr);
    return loads;
}

TEST_F(PromptWindowTest, FileThatIsMissingOrBrokenOrLacksAPartIsRefused) {
    QtPromptInterface nowhere(application(), "/nonexistent");
    EXPECT_FALSE(nowhere.loadNibNamedOwner("PromptWindow", owner));
    EXPECT_FALSE(interface.loadNibNamedOwner("OtherWindow", owner));
    EXPECT_FALSE(loadsWith("<ui version", "<iu version"));
    EXPECT_FALSE(loadsWith("</ui>", ""));
    EXPECT_FALSE(loadsWith("\"_ui_variableEditor\"", "\"other\""));
    EXPECT_FALSE(loadsWith("\"QtPromptTable\"", "\"QTableView\""));
    EXPECT_FALSE(loadsWith("<string>ValueColumn", "<string>OtherColumn"));
    EXPECT_FALSE(loadsWith("\"buttonBox\"", "\"other\""));
    EXPECT_FALSE(loadsWith("QDialogButtonBox::Cancel|", ""));
    EXPECT_FALSE(loadsWith("class=\"QDialog\"", "class=\"QWidget\""));
    EXPECT_EQ(owner.window, nullptr);
}

TEST_F(PromptWindowTest, OnlyTableAndButtonsAreRequired) {
    EXPECT_TRUE(loadsWith("\"directoryName\"", "\"other\""));
    EXPECT_TRUE(loadsWith("name=\"problem\"", "name=\"other\""));
    EXPECT_TRUE(loadsWith("\"problemIcon\"", "\"other\""));
}

TEST(PromptLoading, MissingFileMakesTheRunFalseWithNoWindow) {
    PromptDesk desk;
    QtPromptInterface nowhere(application(), "/nonexistent");
    RecordingOwner owner;
    EXPECT_FALSE(nowhere.loadNibNamedOwner("PromptWindow", owner));
    EXPECT_EQ(shownWindow(PromptWindowName), nullptr);
}

TEST_F(PromptWindowTest, SecondPromptWhileOneIsUpIsRefused) {
    show();
    RecordingOwner second;
    EXPECT_FALSE(interface.loadNibNamedOwner("PromptWindow", second));
    EXPECT_NE(shownWindow(PromptWindowName), nullptr);
    EXPECT_TRUE(second.journal.empty());
}

// The end of editing --------------------------------------------------------------------------------------------------

TEST_F(PromptWindowTest, OwnerIsToldOfTheMovementBeforeTheTextIsStored) {
    const std::vector<std::tuple<Qt::Key, Qt::KeyboardModifiers, std::string>> movements = {
        {Qt::Key_Return, Qt::NoModifier, "16"},
        {Qt::Key_Enter, Qt::KeypadModifier, "16"},
        {Qt::Key_Tab, Qt::NoModifier, "17"},
        {Qt::Key_Backtab, Qt::ShiftModifier, "18"},
    };
    for (const auto &[key, modifiers, number] : movements) {
        show();
        owner.rows[0].value = "1";
        table().editColumnRowSelect(1, 0, true);
        promptField()->setText(QStringLiteral("new"));
        press(key, modifiers);
        EXPECT_EQ(owner.journal, (Lines{"end " + number + " in 1,0 value '1'", "stored 'new'"}));
        EXPECT_EQ(table().editedRow(), -1);
        TearDown();
    }
}

TEST_F(PromptWindowTest, AnyOtherEndIsNoMovement) {
    show();
    table().editColumnRowSelect(1, 0, true);
    promptField()->setText(QStringLiteral("new"));
    owner.window->endEditing();
    EXPECT_EQ(owner.journal, (Lines{"end 0 in 1,0 value '1'", "stored 'new'"}));
    owner.window->endEditing();
    EXPECT_EQ(owner.journal.size(), 2U);
}

TEST_F(PromptWindowTest, GoingToAnotherCellEndsTheFirstOne) {
    show();
    table().editColumnRowSelect(1, 0, true);
    table().editColumnRowSelect(1, 1, true);
    EXPECT_EQ(owner.journal, (Lines{"end 0 in 1,0 value '1'", "stored '1'"}));
    EXPECT_EQ(table().editedRow(), 1);
}

TEST_F(PromptWindowTest, SelectingAnotherRowEndsTheEditing) {
    show();
    table().editColumnRowSelect(1, 0, true);
    table().selectRowByExtendingSelection(1, false);
    EXPECT_EQ(owner.journal, (Lines{"end 0 in 1,0 value '1'", "stored '1'"}));
    EXPECT_EQ(table().editedRow(), -1);
    EXPECT_EQ(table().selectedRow(), 1);
}

TEST_F(PromptWindowTest, TextThatTheOwnerDoesNotStoreIsDropped) {
    show();
    owner.stores = false;
    table().editColumnRowSelect(1, 0, true);
    promptField()->setText(QStringLiteral("new"));
    press(Qt::Key_Return);
    EXPECT_EQ(owner.rows[0].value, "1");
    EXPECT_EQ(table().editedRow(), -1);
}

TEST_F(PromptWindowTest, CellsThatDoNotExistAreNotEdited) {
    show();
    for (const auto &[column, row] : std::vector<std::pair<int, int>>{{1, -1}, {1, 2}, {-1, 0}, {2, 0}, {0, 0}}) {
        table().editColumnRowSelect(column, row, true);
        EXPECT_EQ(table().editedRow(), -1) << column << ',' << row;
    }
    EXPECT_TRUE(owner.journal.empty());
}

TEST_F(PromptWindowTest, ColumnsAreFoundByIdentifier) {
    load();
    EXPECT_EQ(table().columnWithIdentifier("ValueColumn"), 1);
    EXPECT_EQ(table().columnWithIdentifier("NameColumn"), 0);
    EXPECT_EQ(table().columnWithIdentifier("other"), -1);
    EXPECT_EQ(table().numberOfRows(), 2);
    EXPECT_EQ(table().selectedRow(), -1);
}

TEST_F(PromptWindowTest, KeysOfTheTableGoToTheOwner) {
    show();
    table().selectRowByExtendingSelection(0, false);
    table().setFocus();
    press(Qt::Key_Return);
    press(Qt::Key_Down);
    EXPECT_EQ(owner.journal, (Lines{"key 36", "key 65535"}));
}

TEST_F(PromptWindowTest, UntouchedBytesThatAreNoUTF8Stay) {
    owner.rows[0].value = "caf\xe9";
    show();
    table().editColumnRowSelect(1, 0, true);
    press(Qt::Key_Return);
    EXPECT_EQ(owner.rows[0].value, "caf\xe9");
}

TEST_F(PromptWindowTest, LongDefaultIsNotCut) {
    owner.rows[0].value = std::string(100000, 'x');
    show();
    table().editColumnRowSelect(1, 0, true);
    promptField()->end(false);
    promptField()->insert(QStringLiteral("y"));
    press(Qt::Key_Return);
    EXPECT_EQ(owner.rows[0].value.size(), 100001U);
}

TEST_F(PromptWindowTest, RowsThatTheOwnerDropsMeanwhileDoNoHarm) {
    show();
    table().editColumnRowSelect(1, 1, true);
    owner.rows.resize(1);
    promptField()->setText(QStringLiteral("new"));
    press(Qt::Key_Return);
    EXPECT_EQ(table().editedRow(), -1);
    EXPECT_EQ(owner.rows, (std::vector<PromptValueRow>{{"Chapter", "1"}}));
}

// What it shows -------------------------------------------------------------------------------------------------------

QtFolderNameView &nameView() {
    return dynamic_cast<QtFolderNameView &>(*child<QWidget>(PromptWindowName, "directoryName"));
}
/// The highlighted parts of the name, the one being typed in brackets.
Lines highlighted() {
    Lines parts;
    for (const QtNamePart &part : nameView().parts()) {
        const std::string text = nameView().name().mid(part.start, part.length).toStdString();
        parts.push_back(part.isEdited ? "[" + text + "]" : text);
    }
    return parts;
}

TEST_F(PromptWindowTest, NameFollowsTheTypingWithItsValuesHighlighted) {
    show();
    table().editColumnRowSelect(1, 0, true);
    EXPECT_EQ(nameView().name(), QLatin1String("1 of 2"));
    EXPECT_EQ(highlighted(), (Lines{"[1]", "2"}));
    promptField()->setText(QStringLiteral("Früh & <b>bunt</b>"));
    EXPECT_EQ(nameView().name(), QStringLiteral("Früh & <b>bunt</b> of 2"));
    EXPECT_EQ(highlighted(), (Lines{"[Früh & <b>bunt</b>]", "2"}));
    EXPECT_EQ(owner.rows[0].value, "1");
    press(Qt::Key_Escape);
    EXPECT_EQ(nameView().name(), QLatin1String("1 of 2"));
    EXPECT_EQ(highlighted(), (Lines{"1", "2"}));
}

TEST_F(PromptWindowTest, ThePlaceOfTheFolderIsSaidBelowItsName) {
    owner.parent = QDir::homePath().toStdString() + "/Projects/Big\none";
    show();
    EXPECT_EQ(nameView().place(), QStringLiteral("in ~/Projects/Big one"));
    EXPECT_EQ(nameView().accessibleDescription(), nameView().place());
    EXPECT_GE(nameView().height(), nameView().sizeHint().height());
    EXPECT_TRUE(nameView().toolTip().contains(nameView().place()));
}

TEST_F(PromptWindowTest, APlaceThatIsNotKnownTakesNoRoom) {
    QtFolderNameView view;
    const int before = view.sizeHint().height();
    view.setPlace(QString());
    EXPECT_EQ(view.place(), QString());
    EXPECT_EQ(view.sizeHint().height(), before);
    view.setPlace(QDir::homePath() + QStringLiteral("elsewhere"));
    EXPECT_EQ(view.place(), QStringLiteral("in ") + QDir::homePath() + QStringLiteral("elsewhere"));
    EXPECT_GT(view.sizeHint().height(), before);
}

TEST(PromptName, ValuesInsideValuesAreHighlightedOnce) {
    PromptDesk desk;
    User user;
    user.when([] { return isActive(PromptWindowName); },
              [] {
                  promptField()->setText(QStringLiteral("<{b}>"));
                  EXPECT_EQ(nameView().name(), QLatin1String("A <> Z"));
                  EXPECT_EQ(highlighted(), Lines{"[<>]"});
                  xdotool("key Escape Escape");
              },
              "the prompt");
    EXPECT_FALSE(desk.createFolder("A {a} Z{b}"));
}

TEST_F(PromptWindowTest, ProblemIsSaidBelowAndNothingMoves) {
    show();
    const auto *const problem = child<QLabel>(PromptWindowName, "problem");
    EXPECT_EQ(problem->text(), QString());
    const QRect before = table().geometry();
    const QSize sizeBefore = window().size();
    table().editColumnRowSelect(1, 0, true);
    promptField()->setText(QStringLiteral("taken"));
    EXPECT_TRUE(waitUntil([&] { return !problem->text().isEmpty(); }));
    EXPECT_EQ(table().geometry(), before);
    EXPECT_EQ(window().size(), sizeBefore);
    EXPECT_LE(problem->sizeHint().width(), problem->width());
    EXPECT_TRUE(child<QWidget>(PromptWindowName, "buttonBox")->isEnabled());
    promptField()->setText(QStringLiteral("free"));
    EXPECT_TRUE(waitUntil([&] { return problem->text().isEmpty(); }));
    EXPECT_EQ(table().geometry(), before);
}

TEST(PromptProblems, ExistingFolderIsSaidBeforeOKAndOKStillAsks) {
    PromptDesk desk;
    desk.fileSystem.addFolder("/jobs/Acme");
    User user;
    user.when([] { return isActive(PromptWindowName) && promptField() != nullptr; }, [] { xdotool("type --delay 2 --args 1 Acme"); },
              "the prompt");
    user.when([] { return child<QLabel>(PromptWindowName, "problem")->text().contains(QLatin1String("exists")); },
              [] { xdotool("key Return"); }, "the problem");
    EXPECT_FALSE(desk.createFolder("{Client}"));
    EXPECT_EQ(desk.alerts.alerts.size(), 1U);
}

TEST_F(PromptWindowTest, ScreenReadersFindNamesForEverything) {
    show();
    table().editColumnRowSelect(1, 1, true);
    EXPECT_EQ(promptField()->accessibleName(), QLatin1String("Book"));
    EXPECT_EQ(nameView().accessibleName(), QLatin1String("Folder name: 1 of 2"));
    EXPECT_FALSE(table().accessibleName().isEmpty());
    QAccessibleInterface *const cell = QAccessible::queryAccessibleInterface(&table())->tableInterface()->cellAt(0, 1);
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell->text(QAccessible::Name), QLatin1String("Chapter: 1"));
}

// Where it stands -----------------------------------------------------------------------------------------------------

TEST_F(PromptWindowTest, FrameGoesThroughItsText) {
    show();
    window().move(300, 200);
    ASSERT_TRUE(waitUntil([&] { return window().pos() == QPoint(300, 200); }));
    const std::string frame = owner.window->stringWithSavedFrame();
    TearDown();
    load();
    owner.window->makeKeyAndOrderFront();
    owner.window->disableScreenUpdates();
    owner.window->beginModalSession();
    owner.window->setFrameFromString(frame);
    owner.window->enableScreenUpdates();
    ASSERT_TRUE(waitUntil([] { return isActive(PromptWindowName); }));
    EXPECT_TRUE(waitUntil([&] { return window().pos() == QPoint(300, 200); })) << window().pos().x() << ',' << window().pos().y();
    EXPECT_EQ(owner.window->stringWithSavedFrame(), frame);
}

TEST_F(PromptWindowTest, SizeThatTheUserChoseIsKeptAndOthersFollowTheRows) {
    show();
    const QSize natural = window().size();
    window().resize(natural + QSize(80, 120));
    ASSERT_TRUE(waitUntil([&] { return window().size() == natural + QSize(80, 120); }));
    const std::string resized = owner.window->stringWithSavedFrame();
    TearDown();
    owner.rows.resize(10, {"more", ""});
    load();
    const QSize larger = window().size();
    EXPECT_GT(larger.height(), natural.height());
    owner.window->setFrameFromString("100 100 0 0");
    EXPECT_EQ(window().size(), larger);
    owner.window->setFrameFromString(resized);
    EXPECT_EQ(window().size(), natural + QSize(80, 120));
}

TEST_F(PromptWindowTest, FrameTextsThatMakeNoSenseChangeNothing) {
    load();
    owner.window->setFrameFromString("200 150 0 0");
    const QRect before = window().geometry();
    for (const char *text : {"", "x", "1 2 3", "1 2 3 4 5", "1 2 -3 4", "99999 99999 0 0", "-5000 -5000 0 0", "1 2 3 x"}) {
        owner.window->setFrameFromString(text);
        EXPECT_EQ(window().geometry(), before) << text;
    }
}

TEST_F(PromptWindowTest, FrameThatStandsOutIsPushedBackOntoItsScreen) {
    load();
    const QRect room = window().screen()->availableGeometry();
    owner.window->setFrameFromString(std::to_string(room.right() - 20) + " " + std::to_string(room.bottom() - 20) + " 0 0");
    EXPECT_TRUE(room.contains(window().geometry()));
    owner.window->setFrameFromString("-30 -30 9000 9000");
    EXPECT_TRUE(room.contains(window().geometry()));
}

TEST(PromptPosition, MovedPromptComesBackWhereItWasLeft) {
    PromptDesk desk;
    QPoint second;
    User user;
    user.when([] { return isActive(PromptWindowName); }, [] { shownWindow(PromptWindowName)->move(111, 222); }, "the first prompt");
    user.when([] { return shownWindow(PromptWindowName)->pos() == QPoint(111, 222); }, [] { xdotool("key Return"); }, "the moved prompt");
    EXPECT_FALSE(desk.createFolder("{a}"));
    user.when([] { return isActive(PromptWindowName) && shownWindow(PromptWindowName)->pos() == QPoint(111, 222); },
              [&] {
                  second = shownWindow(PromptWindowName)->pos();
                  xdotool("key Return");
              },
              "the second prompt where the first was left");
    EXPECT_TRUE(desk.createFolder("x{a}"));
    EXPECT_EQ(second, QPoint(111, 222));
}

// How it waits --------------------------------------------------------------------------------------------------------

TEST_F(PromptWindowTest, WaitingSessionSleepsUntilSomethingHappens) {
    show();
    table().setFocus(); // no blinking cursor
    int batches = 0;
    bool isOver = false;
    QTimer::singleShot(600, [&] { isOver = true; });
    while (!isOver && owner.window->runModalSession() == RunContinuesResponse) {
        ++batches;
    }
    EXPECT_LT(batches, 60); // a session that polls makes many thousands
}

TEST_F(PromptWindowTest, StoppedSessionAnswersSoAtOnce) {
    show();
    owner.window->stopModal();
    EXPECT_EQ(owner.window->runModalSession(), RunStoppedResponse);
    owner.window->endModalSession();
    owner.window->beginModalSession();
    QTimer::singleShot(0, [] {});
    EXPECT_EQ(owner.window->runModalSession(), RunContinuesResponse);
}

TEST_F(PromptWindowTest, SessionBlocksOtherWindowsOfTheProgram) {
    QWidget other;
    other.show();
    show();
    EXPECT_EQ(QApplication::activeModalWidget(), &window());
}

} // namespace
} // namespace orvane::test
