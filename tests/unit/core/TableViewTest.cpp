#include "presets/ORVTableView.h"

#include "unit/core/Desk.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;

/// A table of some rows that writes down what it is asked to do.
class PlainTable final : public TableView {
public:
    explicit PlainTable(Lines &journal) : _journal(journal) {}
    [[nodiscard]] int numberOfRows() override { return rows; }
    [[nodiscard]] int selectedRow() override { return selected; }
    [[nodiscard]] int editedRow() override { return row; }
    [[nodiscard]] int editedColumn() override { return column; }
    [[nodiscard]] int columnWithIdentifier(std::string_view identifier) override { return identifier == "ValueColumn" ? 1 : -1; }
    void selectRowByExtendingSelection(int, bool) override {}
    void editColumnRowSelect(int toColumn, int toRow, bool selects) override {
        _journal.push_back("edit " + std::to_string(toColumn) + "," + std::to_string(toRow) + (selects ? " selected" : ""));
    }
    void superTextDidEndEditing(TextMovement movement) override {
        _journal.push_back("super " + std::to_string(static_cast<int>(movement)));
        row = -1;
        column = -1;
    }
    void superKeyDown(int keyCode) override { _journal.push_back("key " + std::to_string(keyCode)); }

    int rows = 3;
    int selected = -1;
    int row = 0;
    int column = 1;

private:
    Lines &_journal;
};

class PlainDelegate final : public ORVTableViewDelegate {
public:
    explicit PlainDelegate(Lines &journal) : _journal(journal) {}
    void tableViewDidEditTableColumnRowWasKeyboardCommit(ORVTableView &, int column, int row, bool wasKeyboardCommit) override {
        _journal.push_back("did edit " + std::to_string(column) + "," + std::to_string(row) + (wasKeyboardCommit ? " by keyboard" : ""));
        if (whenTold) {
            whenTold();
        }
    }
    std::function<void()> whenTold;

private:
    Lines &_journal;
};

class Table : public ::testing::Test {
protected:
    Lines journal;
    PlainTable plain{journal};
    PlainDelegate delegate{journal};
    ORVTableView table{plain, &delegate};
};

TEST_F(Table, TellsItsDelegateThenStoresThenGoesOn) {
    table.textDidEndEditing(TextMovement::Return);
    EXPECT_EQ(journal, (Lines{"did edit 1,0 by keyboard", "super 16", "edit 1,1 selected"}));
}

TEST_F(Table, GoesOnAfterTabToo) {
    plain.row = 1;
    table.textDidEndEditing(TextMovement::Tab);
    EXPECT_EQ(journal, (Lines{"did edit 1,1 by keyboard", "super 17", "edit 1,2 selected"}));
}

TEST_F(Table, StaysInTheColumnThatWasEdited) {
    plain.column = 0;
    table.textDidEndEditing(TextMovement::Tab);
    EXPECT_EQ(journal, (Lines{"did edit 0,0 by keyboard", "super 17", "edit 0,1 selected"}));
}

TEST_F(Table, KeepsThePlainTableFromStartingOverAfterTheLastRow) {
    plain.row = 2;
    table.textDidEndEditing(TextMovement::Return);
    EXPECT_EQ(journal, (Lines{"did edit 1,2 by keyboard", "super 0"}));
}

TEST_F(Table, KeepsThePlainTableFromStartingOverAfterTabInTheLastRowToo) {
    plain.row = 2;
    table.textDidEndEditing(TextMovement::Tab);
    EXPECT_EQ(journal, (Lines{"did edit 1,2 by keyboard", "super 0"}));
}

TEST_F(Table, OnlyStoresAfterEveryOtherMovement) {
    // 19 to 22 are the arrow keys' movements, 23 is Cancel (Apple, NSText.h).
    for (const int movement : {0, 18, 19, 20, 21, 22, 23}) {
        journal.clear();
        plain.row = movement % 3;
        plain.column = 1;
        const std::string row = std::to_string(plain.row);
        table.textDidEndEditing(static_cast<TextMovement>(movement));
        EXPECT_EQ(journal, (Lines{"did edit 1," + row, "super " + std::to_string(movement)}));
    }
}

TEST_F(Table, WorksWithoutDelegate) {
    ORVTableView alone(plain, nullptr);
    alone.textDidEndEditing(TextMovement::Return);
    EXPECT_EQ(journal, (Lines{"super 16", "edit 1,1 selected"}));
}

TEST_F(Table, RemembersTheCellAfterTheDelegateWasTold) {
    delegate.whenTold = [&] { plain.row = 1; };
    table.textDidEndEditing(TextMovement::Return);
    EXPECT_EQ(journal, (Lines{"did edit 1,0 by keyboard", "super 16", "edit 1,2 selected"}));
}

TEST_F(Table, EditsTheSelectedRowsValueAfterReturn) {
    plain.selected = 2;
    table.keyDown(36);
    EXPECT_EQ(journal, Lines{"edit 1,2 selected"});
}

TEST_F(Table, LeavesOtherKeysToThePlainTable) {
    plain.selected = 2;
    table.keyDown(48);
    table.keyDown(76);
    EXPECT_EQ(journal, (Lines{"key 48", "key 76"}));
}

/// A manager whose prompt is over tables of the test's own.
class CommitInTable : public Table {
protected:
    CommitInTable() {
        desk.prompt.script = {[&] { desk.prompt.giveUp(); }};
        desk.create(preset("{a}"));
        desk.manager->awakeFromNib(window, plain);
        journal.clear();
    }
    /// What the manager makes of the end of an edit in its own table.
    bool completes(int column, int row, TextMovement movement) {
        stops = 0;
        plain.column = column;
        plain.row = row;
        desk.manager->tableTextDidEndEditing(movement);
        return stops > 0;
    }

    class Window final : public PromptWindow {
    public:
        explicit Window(int &stops) : _stops(stops) {}
        void makeKeyAndOrderFront() override {}
        void orderOut() override {}
        [[nodiscard]] std::string stringWithSavedFrame() override { return {}; }
        void setFrameFromString(std::string_view) override {}
        void disableScreenUpdates() override {}
        void enableScreenUpdates() override {}
        void beginModalSession() override {}
        [[nodiscard]] long runModalSession() override { return RunStoppedResponse; }
        void endModalSession() override {}
        void stopModal() override { ++_stops; }
        void endEditing() override {}

    private:
        int &_stops;
    };

    int stops = 0;
    Window window{stops};
    Desk desk;
};

TEST_F(CommitInTable, CompletesThePromptInTheLastRowsValueOnly) {
    EXPECT_TRUE(completes(1, 2, TextMovement::Return));
    EXPECT_TRUE(completes(1, 2, TextMovement::Tab));
    EXPECT_FALSE(completes(1, 2, TextMovement::Backtab));
    EXPECT_FALSE(completes(1, 2, TextMovement::Illegal));
    EXPECT_FALSE(completes(0, 2, TextMovement::Return));
    EXPECT_FALSE(completes(1, 1, TextMovement::Return));
    EXPECT_FALSE(completes(1, 3, TextMovement::Return));
    EXPECT_FALSE(completes(1, -1, TextMovement::Return));
}

TEST_F(CommitInTable, TakesNoNoticeOfAnotherTable) {
    ORVTableView other(plain, desk.manager.get());
    plain.row = 2;
    other.textDidEndEditing(TextMovement::Return);
    EXPECT_EQ(stops, 0);
    EXPECT_EQ(journal, Lines{"super 0"});
}

} // namespace
} // namespace orvane::test
