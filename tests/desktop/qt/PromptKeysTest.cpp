// The keyboard in the prompt: real keys, a real window manager, the real manager behind it.

#include "QtPromptDesk.h"

#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QPushButton>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;

bool isEditing(int row) {
    QtPromptTable *const table = promptTable();
    return isActive(PromptWindowName) && table->editedRow() == row && promptField() != nullptr && promptField()->hasFocus();
}
bool isEditingSelected(int row) {
    return isEditing(row) && promptField()->selectedText() == promptField()->text();
}
/// The window has the keyboard, no value is edited, and the table's row is selected.
bool isSelected(int row) {
    QtPromptTable *const table = promptTable();
    return isActive(PromptWindowName) && table->editedRow() == -1 && table->selectedRow() == row && table->hasFocus();
}

class PromptKeys : public testing::Test {
public:
    /// Waits until row `row` is edited with its value selected, then types.
    PromptKeys &type(int row, const std::string &text, const std::string &key) {
        user.when([row] { return isEditingSelected(row); },
                  [text, key] { xdotool((text.empty() ? std::string() : "type --delay 2 --args 1 '" + text + "' ") + "key " + key); },
                  "editing of row " + std::to_string(row));
        return *this;
    }
    PromptKeys &key(std::function<bool()> holds, const std::string &keys, std::string what) {
        user.when(
            std::move(holds), [keys] { xdotool("key " + keys); }, std::move(what));
        return *this;
    }
    /// Clicks into the middle of a widget, or at a place in it.
    static void click(const QWidget &widget, QPoint place) {
        const QPoint point = widget.mapToGlobal(place) * widget.devicePixelRatio();
        xdotool("mousemove --sync " + std::to_string(point.x()) + ' ' + std::to_string(point.y()) + " click 1");
    }
    static QPoint middleOfCell(int row, int column) {
        return promptTable()->visualRect(promptTable()->model()->index(row, column)).center();
    }

    PromptDesk desk;
    User user;
};

TEST_F(PromptKeys, OneVariableOpensSelectedAndIsCompletedByReturn) {
    type(0, "Acme", "Return");
    EXPECT_TRUE(desk.createFolder("{Client}"));
    EXPECT_EQ(desk.values(), Lines{"Acme"});
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Lines{"Acme/"});
}

TEST_F(PromptKeys, DefaultIsReplacedByTyping) {
    type(0, "7", "Return");
    EXPECT_TRUE(desk.createFolder("{auto number}"));
    EXPECT_EQ(desk.values(), Lines{"7"});
}

TEST_F(PromptKeys, ReturnAndTabGoOnAndTheLastRowCompletes) {
    type(0, "one", "Return").type(1, "two", "Tab").type(2, "three", "Return");
    EXPECT_TRUE(desk.createFolder("{a} {b} {c}"));
    EXPECT_EQ(desk.values(), (Lines{"one", "two", "three"}));
}

TEST_F(PromptKeys, TabInTheLastRowCompletes) {
    type(0, "one", "Tab").type(1, "two", "Tab");
    EXPECT_TRUE(desk.createFolder("{a} {b}"));
    EXPECT_EQ(desk.values(), (Lines{"one", "two"}));
}

TEST_F(PromptKeys, EnterOfTheKeypadIsReturn) {
    type(0, "one", "KP_Enter").type(1, "two", "KP_Enter");
    EXPECT_TRUE(desk.createFolder("{a} {b}"));
    EXPECT_EQ(desk.values(), (Lines{"one", "two"}));
}

TEST_F(PromptKeys, BacktabEndsEditingWithoutGoingOnOrCompleting) {
    type(0, "one", "shift+Tab").key([] { return isSelected(0); }, "Escape", "row 0 selected, not edited");
    EXPECT_FALSE(desk.createFolder("{a}"));
    EXPECT_EQ(desk.values(), Lines{"one"});
}

TEST_F(PromptKeys, BacktabInTheLastRowDoesNotComplete) {
    type(0, "one", "Return").type(1, "two", "shift+Tab").key([] { return isSelected(1); }, "Return", "row 1 selected, not edited");
    type(1, "", "Return");
    EXPECT_TRUE(desk.createFolder("{a} {b}"));
    EXPECT_EQ(desk.values(), (Lines{"one", "two"}));
}

TEST_F(PromptKeys, ReturnOnASelectedRowEditsItsValue) {
    type(0, "one", "shift+Tab").key([] { return isSelected(0); }, "Down", "row 0 selected");
    key([] { return isSelected(1); }, "Return", "row 1 selected").type(1, "two", "Return");
    EXPECT_TRUE(desk.createFolder("{a} {b}"));
    EXPECT_EQ(desk.values(), (Lines{"one", "two"}));
}

TEST_F(PromptKeys, TypingOnASelectedRowReplacesItsValue) {
    type(0, "one", "shift+Tab");
    user.when([] { return isSelected(0); }, [] { xdotool("type --delay 2 --args 1 'new'"); }, "row 0 selected");
    user.when([] { return isEditing(0) && promptField()->text() == QLatin1String("new"); }, [] { xdotool("key Return"); }, "typed text");
    EXPECT_TRUE(desk.createFolder("{a}"));
    EXPECT_EQ(desk.values(), Lines{"new"});
}

TEST_F(PromptKeys, EscapeWhileEditingGivesUpOnlyTheTyping) {
    type(0, "typed", "Escape").key([] { return isSelected(0); }, "Return", "row 0 selected").type(0, "", "Return");
    EXPECT_TRUE(desk.createFolder("x{a}"));
    EXPECT_EQ(desk.values(), Lines{""});
}

TEST_F(PromptKeys, EscapeOtherwiseAbandons) {
    type(0, "one", "Escape").key([] { return isSelected(0); }, "Escape", "row 0 selected");
    EXPECT_FALSE(desk.createFolder("{a}"));
    EXPECT_TRUE(desk.fileSystem.listing("/jobs").empty());
}

TEST_F(PromptKeys, ClickingElsewhereEndsEditingAndNothingMore) {
    user.when([] { return isEditingSelected(0); }, [] { xdotool("type --delay 2 --args 1 one"); }, "editing of row 0");
    user.when([] { return promptField()->text() == QLatin1String("one"); },
              [] {
                  click(*shownWindow(PromptWindowName), {4, 4});
              },
              "typed text");
    key([] { return isSelected(0); }, "Escape", "row 0 selected, not edited");
    EXPECT_FALSE(desk.createFolder("{a}"));
    EXPECT_EQ(desk.values(), Lines{"one"});
}

TEST_F(PromptKeys, ClickingAnotherNameSelectsItsRowWithoutEditing) {
    user.when([] { return isEditingSelected(0); }, [] { xdotool("type --delay 2 --args 1 one"); }, "editing of row 0");
    user.when([] { return promptField()->text() == QLatin1String("one"); }, [] { click(*promptTable()->viewport(), middleOfCell(1, 0)); },
              "typed text");
    key([] { return isSelected(1); }, "Escape", "row 1 selected, not edited");
    EXPECT_FALSE(desk.createFolder("{a} {b}"));
    EXPECT_EQ(desk.values(), (Lines{"one", ""}));
}

TEST_F(PromptKeys, ClickingWithControlHeldDoesNotTakeTheSelectionAway) {
    user.when([] { return isEditingSelected(0); },
              [] {
                  xdotool("keydown ctrl");
                  click(*promptTable()->viewport(), middleOfCell(0, 0));
                  xdotool("keyup ctrl");
              },
              "editing of row 0");
    key([] { return isSelected(0); }, "Return", "the row still selected");
    type(0, "one", "Return");
    EXPECT_TRUE(desk.createFolder("{a}"));
    EXPECT_EQ(desk.values(), Lines{"one"});
}

TEST_F(PromptKeys, ClickingAnotherValueEditsIt) {
    user.when([] { return isEditingSelected(0); }, [] { xdotool("type --delay 2 --args 1 one"); }, "editing of row 0");
    user.when([] { return promptField()->text() == QLatin1String("one"); }, [] { click(*promptTable()->viewport(), middleOfCell(2, 1)); },
              "typed text");
    type(2, "three", "Return");
    EXPECT_TRUE(desk.createFolder("{a} {b} {c}"));
    EXPECT_EQ(desk.values(), (Lines{"one", "", "three"}));
}

TEST_F(PromptKeys, OKCommitsWhatIsBeingTyped) {
    user.when([] { return isEditingSelected(0); }, [] { xdotool("type --delay 2 --args 1 one"); }, "editing of row 0");
    user.when([] { return promptField()->text() == QLatin1String("one"); },
              [] {
                  const QWidget *const ok = child<QDialogButtonBox>(PromptWindowName, "buttonBox")->button(QDialogButtonBox::Ok);
                  click(*ok, ok->rect().center());
              },
              "typed text");
    EXPECT_TRUE(desk.createFolder("{a} {b}"));
    EXPECT_EQ(desk.values(), (Lines{"one", ""}));
}

TEST_F(PromptKeys, CancelAbandonsAndDoesNotCommitWhatIsBeingTyped) {
    user.when([] { return isEditingSelected(0); }, [] { xdotool("type --delay 2 --args 1 one"); }, "editing of row 0");
    user.when([] { return promptField()->text() == QLatin1String("one"); },
              [] {
                  const QWidget *const cancel = child<QDialogButtonBox>(PromptWindowName, "buttonBox")->button(QDialogButtonBox::Cancel);
                  click(*cancel, cancel->rect().center());
              },
              "typed text");
    EXPECT_FALSE(desk.createFolder("{a}"));
    EXPECT_EQ(desk.values(), Lines{""});
}

bool hasFocus(QDialogButtonBox::StandardButton button) {
    return child<QDialogButtonBox>(PromptWindowName, "buttonBox")->button(button)->hasFocus();
}

TEST_F(PromptKeys, TabLeadsFromTheTableToOKAndReturnPressesIt) {
    type(0, "one", "shift+Tab").key([] { return isSelected(0); }, "Tab", "row 0 selected");
    key([] { return hasFocus(QDialogButtonBox::Ok); }, "Return", "OK has the focus");
    EXPECT_TRUE(desk.createFolder("{a}"));
    EXPECT_EQ(desk.values(), Lines{"one"});
}

TEST_F(PromptKeys, TabLeadsOnToCancelAndReturnPressesThat) {
    type(0, "one", "shift+Tab").key([] { return isSelected(0); }, "Tab", "row 0 selected");
    key([] { return hasFocus(QDialogButtonBox::Ok); }, "Tab", "OK has the focus");
    key([] { return hasFocus(QDialogButtonBox::Cancel); }, "Return", "Cancel has the focus");
    EXPECT_FALSE(desk.createFolder("{a}"));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Lines{});
}

TEST_F(PromptKeys, ClosingTheWindowAbandons) {
    user.when([] { return isEditingSelected(0); }, [] { xdotool("type --delay 2 --args 1 one key alt+F4"); }, "editing of row 0");
    EXPECT_FALSE(desk.createFolder("{a}"));
    EXPECT_TRUE(desk.fileSystem.listing("/jobs").empty());
}

TEST_F(PromptKeys, EditingSurvivesThatAnotherWindowComesInBetween) {
    user.when([] { return isEditingSelected(0); }, [] { xdotool("type --delay 2 --args 1 one"); }, "editing of row 0");
    const std::unique_ptr<OtherProgram> other = std::make_unique<OtherProgram>();
    user.when([] { return promptField()->text() == QLatin1String("one"); }, [] { xdotool("search --class xterm windowactivate --sync"); },
              "typed text");
    user.when([&] { return other->isActive() && !shownWindow(PromptWindowName)->isActiveWindow(); },
              [] { application().activateIgnoringOtherApps(true); }, "the other program's window");
    user.when([] { return isEditing(0) && promptField()->text() == QLatin1String("one"); },
              [] { xdotool("key End type --delay 2 --args 1 ' more'"); }, "editing again");
    key([] { return promptField()->text() == QLatin1String("one more"); }, "Return", "more text");
    EXPECT_TRUE(desk.createFolder("{a}"));
    EXPECT_EQ(desk.values(), Lines{"one more"});
}

TEST_F(PromptKeys, ComesToTheFrontWhileTheUserWorksInAnotherProgramAndGivesTheKeyboardBack) {
    const OtherProgram other;
    type(0, "one", "Return");
    EXPECT_TRUE(desk.createFolder("{a}"));
    EXPECT_TRUE(waitUntil([&] { return other.isActive(); }));
}

TEST_F(PromptKeys, PastedLineBreaksDoNotGetIntoTheName) {
    user.when([] { return isEditingSelected(0); },
              [] {
                  promptField()->insert(QStringLiteral("one\ntwo\n")); // as a paste does
                  xdotool("type --delay 2 --args 1 3 key Return");
              },
              "editing of row 0");
    EXPECT_TRUE(desk.createFolder("{a}"));
    EXPECT_EQ(desk.values(), Lines{"one two3"});
}

TEST_F(PromptKeys, TwoHundredVariablesScrollTheEditedOneIntoView) {
    std::string name;
    for (int i = 0; i < 200; ++i) {
        name += "{v" + std::to_string(i) + "}";
    }
    for (int i = 0; i < 40; ++i) {
        type(i, "", i % 2 == 0 ? "Return" : "Tab");
    }
    user.when([] { return isEditingSelected(40); },
              [] {
                  const QRect field(promptField()->mapTo(promptTable()->viewport(), QPoint()), promptField()->size());
                  EXPECT_TRUE(promptTable()->viewport()->rect().contains(field));
                  EXPECT_EQ(promptTable()->numberOfRows(), 200);
                  xdotool("key Escape Escape");
              },
              "editing of row 40");
    EXPECT_FALSE(desk.createFolder(name));
}

} // namespace
} // namespace orvane::test
