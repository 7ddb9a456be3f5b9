#include "platform/qt/QtPromptTable.h"

#include "platform/qt/QtText.h"

#include <algorithm>

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QProxyStyle>
#include <QScopedValueRollback>
#include <QScrollBar>

namespace orvane {

namespace {

/// What a key that the owner has no use for is called: no key has this code.
constexpr int OtherKeyCode = 0xFFFF;
/// So many rows are shown without scrolling.
constexpr int MostRowsShown = 12;
// Widths in average characters.
constexpr int WidestName = 36;
constexpr int NarrowestValue = 30;
constexpr int WidestValue = 56;

/// The selected row shows by its field's frame alone, as in a form; the band that styles lay below a row would hide that.
class FormStyle final : public QProxyStyle {
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const override {
        if (element != PE_PanelItemViewRow) {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
        }
    }
};

/// The keypad's Enter counts as Return, as everywhere on this desktop.
bool isReturn(const QKeyEvent &event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

QtPromptTable::QtPromptTable(QWidget *parent) : QTableView(parent), _cells(new QtPromptCells(this)) {
    auto *const form = new FormStyle;
    form->setParent(this);
    setStyle(form);
    setItemDelegate(_cells);
    _cells->typed = [this] { _tellChanged(); };
    _cells->ended = [this](QWidget &editor, QtEndOfTyping end) { _typingEnded(editor, end); };
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setTabKeyNavigation(false);
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setShowGrid(false);
    setWordWrap(false);
    setFrameStyle(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    horizontalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(1);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

bool QtPromptTable::connectOwner(PromptOwner &owner) {
    const QStringList columns = property("columnIdentifiers").toStringList();
    if (!columns.contains(QtPromptModel::valueColumn())) {
        return false;
    }
    _owner = &owner;
    _model = new QtPromptModel(owner, columns, this);
    setModel(_model);
    verticalHeader()->setDefaultSectionSize(_cells->sizeHint(QStyleOptionViewItem(), QModelIndex()).height());
    verticalScrollBar()->setSingleStep(verticalHeader()->defaultSectionSize());
    return true;
}

// What the owner asks -------------------------------------------------------------------------------------------------

int QtPromptTable::numberOfRows() {
    return _model->rowCount();
}

int QtPromptTable::selectedRow() {
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.front().row();
}

int QtPromptTable::editedRow() {
    return _field ? _edited.row() : -1;
}

int QtPromptTable::editedColumn() {
    return _field ? _edited.column() : -1;
}

int QtPromptTable::columnWithIdentifier(std::string_view identifier) {
    return _model->columnOf(QtTextOf(identifier));
}

void QtPromptTable::selectRowByExtendingSelection(int row, bool /*extends*/) {
    const QModelIndex value = _model->index(row, _model->columnOf(QtPromptModel::valueColumn()));
    if (value.isValid()) {
        setCurrentIndex(value); // and selects its row, one at a time
    }
}

void QtPromptTable::editColumnRowSelect(int column, int row, bool selects) {
    const QModelIndex index = _model->index(row, column);
    if (!index.isValid() || !_model->isValueColumn(column)) {
        return;
    }
    if (_field && _edited != index) {
        _endEditing(TextMovement::Illegal);
    }
    setCurrentIndex(index);
    scrollTo(index);
    if (!_field) {
        static_cast<void>(edit(index, AllEditTriggers, nullptr));
    }
    if (!_field) {
        return;
    }
    _field->setFocus();
    if (selects) {
        _field->selectAll();
    } else {
        _field->end(false);
    }
    _tellChanged();
}

void QtPromptTable::superTextDidEndEditing(TextMovement /*movement*/) {
    _closeField(true);
}

void QtPromptTable::superKeyDown(int /*keyCode*/) {
    if (_key != nullptr) {
        QTableView::keyPressEvent(_key);
    }
}

// Typing --------------------------------------------------------------------------------------------------------------

bool QtPromptTable::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) {
    const bool begins = QTableView::edit(index, trigger, event);
    if (auto *const field = dynamic_cast<QLineEdit *>(indexWidget(index)); field != nullptr && field != _field) {
        _field = field;
        _edited = index;
        _tellChanged();
    }
    return begins;
}

std::optional<std::string> QtPromptTable::typedText() const {
    return _field ? std::optional(QtUtf8Of(_field->text())) : std::nullopt;
}

void QtPromptTable::endEditing() {
    _endEditing(TextMovement::Illegal);
}

void QtPromptTable::_typingEnded(QWidget &editor, QtEndOfTyping end) {
    if (&editor != _field) {
        return; // its end has been told already
    }
    switch (end) {
    case QtEndOfTyping::Return:
        return _endEditing(TextMovement::Return);
    case QtEndOfTyping::Tab:
        return _endEditing(TextMovement::Tab);
    case QtEndOfTyping::Backtab:
        return _endEditing(TextMovement::Backtab);
    case QtEndOfTyping::Elsewhere:
        return _endEditing(TextMovement::Illegal);
    case QtEndOfTyping::Escape: // gives the typing up: there is nothing to store
        return _closeField(false);
    }
}

void QtPromptTable::_endEditing(TextMovement movement) {
    if (!_field) {
        return;
    }
    if (_endings > 1) { // the owner ends the editing because it ended, again and again: once is enough
        _closeField(true);
        return;
    }
    const QScopedValueRollback<int> nested(_endings, _endings + 1);
    const QPointer<QLineEdit> ending = _field;
    _owner->tableTextDidEndEditing(movement);
    if (ending && _field == ending) { // the owner had nothing stored
        _closeField(false);
    }
}

void QtPromptTable::_closeField(bool stores) {
    if (!_field) {
        return;
    }
    QLineEdit *const field = _field;
    const QModelIndex index = _edited;
    _field = nullptr;
    _edited = {};
    if (stores) {
        _model->setData(index, field->text(), Qt::EditRole);
    }
    const bool hadFocus = field->hasFocus();
    QTableView::closeEditor(field, QAbstractItemDelegate::NoHint);
    if (hadFocus) {
        setFocus();
    }
    _tellChanged();
}

void QtPromptTable::commitData(QWidget * /*editor*/) {
    // Qt would store now; what is typed is stored once the owner has been told that the editing ended.
}

void QtPromptTable::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) {
    if (editor == _field) { // Qt ends it because another cell becomes current
        _endEditing(TextMovement::Illegal);
    } else {
        QTableView::closeEditor(editor, hint);
    }
}

void QtPromptTable::_tellChanged() const {
    if (changed) {
        changed();
    }
}

// Keys, mouse, sizes --------------------------------------------------------------------------------------------------

void QtPromptTable::keyPressEvent(QKeyEvent *event) {
    if (_owner == nullptr) {
        QTableView::keyPressEvent(event);
        return;
    }
    const QScopedValueRollback<QKeyEvent *> present(_key, event);
    _owner->tableKeyDown(isReturn(*event) ? ReturnKeyCode : OtherKeyCode);
}

void QtPromptTable::mouseReleaseEvent(QMouseEvent *event) {
    QTableView::mouseReleaseEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && _model != nullptr && _model->isValueColumn(index.column())) {
        editColumnRowSelect(index.column(), index.row(), true); // a field is typed into as soon as it is clicked
    }
}

/// A row stays selected whatever key is held during a click: Return always has a value to begin with.
QItemSelectionModel::SelectionFlags QtPromptTable::selectionCommand(const QModelIndex &index, const QEvent *event) const {
    const QItemSelectionModel::SelectionFlags usual = QTableView::selectionCommand(index, event);
    const bool takesAway = usual.testAnyFlags(QItemSelectionModel::Toggle | QItemSelectionModel::Deselect);
    return takesAway ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows : usual;
}

void QtPromptTable::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QTableView::currentChanged(current, previous);
    if (_model != nullptr && current.isValid() && !_model->isValueColumn(current.column())) {
        selectionModel()->setCurrentIndex(current.siblingAtColumn(_model->columnOf(QtPromptModel::valueColumn())),
                                          QItemSelectionModel::NoUpdate); // letters typed then go to the value
    }
}

int QtPromptTable::_nameWidth() const {
    int widest = 0;
    for (int row = 0; row < _model->rowCount(); ++row) {
        for (int column = 0; column < _model->columnCount(); ++column) {
            if (!_model->isValueColumn(column)) {
                widest = std::max(widest, fontMetrics().horizontalAdvance(QtSingleLine(_model->index(row, column).data().toString())));
            }
        }
    }
    const int character = fontMetrics().averageCharWidth();
    return std::min(widest, WidestName * character) + 3 * character;
}

void QtPromptTable::resizeEvent(QResizeEvent *event) {
    QTableView::resizeEvent(event);
    if (_model == nullptr || _model->columnCount() < 2) {
        return;
    }
    const int all = viewport()->width();
    const int name = std::min(_nameWidth(), all * 45 / 100);
    for (int column = 0; column < _model->columnCount(); ++column) {
        const bool isValue = _model->isValueColumn(column);
        setColumnWidth(column, isValue ? all - name : name / (_model->columnCount() - 1));
    }
}

QSize QtPromptTable::sizeHint() const {
    if (_model == nullptr) {
        return QTableView::sizeHint();
    }
    const int character = fontMetrics().averageCharWidth();
    int widest = 0;
    for (const int row : {0, std::max(0, _model->rowCount() - 1)}) {
        const QModelIndex value = _model->index(row, _model->columnOf(QtPromptModel::valueColumn()));
        widest = std::max(widest, fontMetrics().horizontalAdvance(value.data().toString()) + 3 * character);
    }
    const int value = std::clamp(widest, NarrowestValue * character, WidestValue * character);
    const int rows = std::clamp(_model->rowCount(), 1, MostRowsShown);
    const int bar = _model->rowCount() > MostRowsShown ? verticalScrollBar()->sizeHint().width() : 0;
    return {_nameWidth() + value + bar, rows * verticalHeader()->defaultSectionSize() + 2 * frameWidth()};
}

QSize QtPromptTable::minimumSizeHint() const {
    const int row = verticalHeader()->defaultSectionSize();
    return {fontMetrics().averageCharWidth() * NarrowestValue, row};
}

} // namespace orvane
