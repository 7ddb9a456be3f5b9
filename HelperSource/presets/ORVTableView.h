#pragma once

#include "ports/PromptInterface.h"

#include <string_view>

namespace orvane {

/// Identifier of the column in which values are edited.
inline constexpr std::string_view ORVValueColumn = "ValueColumn";

class ORVTableView;

/// Told what happens in an `ORVTableView`.
class ORVTableViewDelegate {
public:
    virtual ~ORVTableViewDelegate() = default;
    /// The editing of that cell ended; by Return or Tab when `wasKeyboardCommit`. The typed text is not stored yet.
    virtual void tableViewDidEditTableColumnRowWasKeyboardCommit(ORVTableView &tableView, int column, int row, bool wasKeyboardCommit) = 0;
};

/// A table that is filled with the keyboard alone: Return and Tab go on to the next row's value, and Return starts editing
/// the selected one. What every table does by itself is left to the table it is made over. Main thread only.
class ORVTableView {
public:
    /// Borrows both; a null delegate is told nothing.
    ORVTableView(TableView &table, ORVTableViewDelegate *delegate) : _super(table), _delegate(delegate) {}

    [[nodiscard]] int numberOfRows() { return _super.numberOfRows(); }
    /// -1 when nothing is edited.
    [[nodiscard]] int editedRow() { return _super.editedRow(); }
    /// Index of the column of values, -1 when there is none.
    [[nodiscard]] int valueColumn() { return _super.columnWithIdentifier(ORVValueColumn); }
    void selectRowByExtendingSelection(int row, bool extends) { _super.selectRowByExtendingSelection(row, extends); }
    /// Starts editing that row's value with all of its text selected.
    void editValueOfRow(int row) { _super.editColumnRowSelect(valueColumn(), row, true); }

    /// The editing of a cell's text ended.
    void textDidEndEditing(TextMovement movement);
    /// A key came while nothing is edited.
    void keyDown(int keyCode);

private:
    TableView &_super;
    ORVTableViewDelegate *_delegate;
};

} // namespace orvane
