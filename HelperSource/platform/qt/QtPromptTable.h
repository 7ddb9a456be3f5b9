#pragma once

#include "platform/qt/QtPromptCells.h"
#include "ports/PromptInterface.h"

#include <functional>
#include <optional>
#include <string>

#include <QItemSelectionModel>
#include <QLineEdit>
#include <QPointer>
#include <QTableView>

namespace orvane {

/// The table of the prompt window: one row for each variable, its name at the left, its value at the right. In the interface file it
/// is of the class "QtPromptTable" and has the identifiers of its columns as the property "columnIdentifiers".
///
/// It never moves on by itself when the typing of a value ends: that is the owner's, which is told first and then has the text stored.
class QtPromptTable final : public QTableView, public TableView {
public:
    explicit QtPromptTable(QWidget *parent);

    /// Shows the owner's rows; false when the columns lack "ValueColumn". The owner is borrowed.
    [[nodiscard]] bool connectOwner(PromptOwner &owner);
    /// Ends the typing, if there is any, for another reason than a key, and commits it.
    void endEditing();
    /// What stands in the field that is typed into; nothing when there is none.
    [[nodiscard]] std::optional<std::string> typedText() const;
    /// Told when the rows may be read anew: while the user types, and when a text was stored or dropped.
    std::function<void()> changed;

    // TableView
    [[nodiscard]] int numberOfRows() override;
    [[nodiscard]] int selectedRow() override;
    [[nodiscard]] int editedRow() override;
    [[nodiscard]] int editedColumn() override;
    [[nodiscard]] int columnWithIdentifier(std::string_view identifier) override;
    void selectRowByExtendingSelection(int row, bool extends) override;
    void editColumnRowSelect(int column, int row, bool selects) override;
    void superTextDidEndEditing(TextMovement movement) override;
    void superKeyDown(int keyCode) override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index, const QEvent *event) const override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void commitData(QWidget *editor) override;
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void _endEditing(TextMovement movement);
    void _typingEnded(QWidget &editor, QtEndOfTyping end);
    void _closeField(bool stores);
    void _tellChanged() const;
    [[nodiscard]] int _nameWidth() const;

    PromptOwner *_owner = nullptr;
    QtPromptModel *_model = nullptr;
    QtPromptCells *_cells = nullptr;
    QPointer<QLineEdit> _field; ///< that is typed into
    QModelIndex _edited;
    QKeyEvent *_key = nullptr; ///< that the owner has just been told of
    int _endings = 0;          ///< of editing, nested in each other
};

} // namespace orvane
