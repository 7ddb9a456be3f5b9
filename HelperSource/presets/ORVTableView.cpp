#include "presets/ORVTableView.h"

namespace orvane {

void ORVTableView::textDidEndEditing(TextMovement movement) {
    const bool wasKeyboardCommit = movement == TextMovement::Return || movement == TextMovement::Tab;
    if (wasKeyboardCommit && _super.editedRow() == _super.numberOfRows() - 1) {
        movement = TextMovement::Illegal; // else the table would start over at its first row
    }
    if (_delegate != nullptr) {
        _delegate->tableViewDidEditTableColumnRowWasKeyboardCommit(*this, _super.editedColumn(), _super.editedRow(), wasKeyboardCommit);
    }
    // Asked again, deliberately: when the delegate has ended the editing already, both are -1 by now, and neither the storing
    // nor the going on below finds a cell.
    const int row = _super.editedRow();
    const int column = _super.editedColumn();
    _super.superTextDidEndEditing(movement);
    if (wasKeyboardCommit && row + 1 < _super.numberOfRows()) {
        _super.editColumnRowSelect(column, row + 1, true);
    }
}

void ORVTableView::keyDown(int keyCode) {
    if (keyCode == ReturnKeyCode) {
        editValueOfRow(_super.selectedRow());
    } else {
        _super.superKeyDown(keyCode);
    }
}

} // namespace orvane
