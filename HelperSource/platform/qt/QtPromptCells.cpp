#include "platform/qt/QtPromptCells.h"

#include "platform/qt/QtText.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

namespace orvane {

namespace {

/// Room around a field in its cell.
constexpr int FieldMargin = 2;
/// A value may be as long as memory allows; a shorter limit would cut a default that was longer.
constexpr int NoLimit = std::numeric_limits<int>::max() / 4;

/// What a paste brings must not leave line breaks in a folder's name: those at the end go, others become blanks.
void keepInOneLine(QLineEdit &field) {
    const auto isBreak = [](QChar character) { return character == QLatin1Char('\n') || character == QLatin1Char('\r'); };
    QString text = field.text();
    if (std::none_of(text.begin(), text.end(), isBreak)) {
        return;
    }
    while (!text.isEmpty() && isBreak(text.back())) {
        text.chop(1);
    }
    std::replace_if(text.begin(), text.end(), isBreak, QLatin1Char(' '));
    const int cursor = field.cursorPosition();
    field.setText(text);
    field.setCursorPosition(cursor);
}

} // namespace

// Rows ----------------------------------------------------------------------------------------------------------------

QtPromptModel::QtPromptModel(PromptOwner &owner, QStringList columns, QObject *parent)
    : QAbstractTableModel(parent), _owner(owner), _columns(std::move(columns)), _rows(static_cast<int>(owner.promptRows().size())) {}

const PromptValueRow *QtPromptModel::_rowAt(int row) const {
    const auto rows = _owner.promptRows();
    const auto place = static_cast<std::size_t>(row);
    return row >= 0 && place < rows.size() ? &rows[place] : nullptr;
}

int QtPromptModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : _rows;
}

int QtPromptModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(_columns.size());
}

QVariant QtPromptModel::data(const QModelIndex &index, int role) const {
    const PromptValueRow *const row = _rowAt(index.row());
    if (row == nullptr) {
        return {};
    }
    const bool isValue = isValueColumn(index.column());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return QtTextOf(isValue ? row->value : row->key);
    case Qt::ToolTipRole:
        return QStringLiteral("<p>%1</p>").arg(QtTextOf(isValue ? row->value : row->key).toHtmlEscaped());
    case Qt::AccessibleTextRole: // a screen reader that is on a value says whose it is
        return isValue ? QStringLiteral("%1: %2").arg(QtTextOf(row->key), QtTextOf(row->value)) : QtTextOf(row->key);
    default:
        return {};
    }
}

QVariant QtPromptModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return isValueColumn(section) ? QCoreApplication::translate("Orvane", "Value") : QCoreApplication::translate("Orvane", "Variable");
}

Qt::ItemFlags QtPromptModel::flags(const QModelIndex &index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return isValueColumn(index.column()) ? flags | Qt::ItemIsEditable : flags;
}

bool QtPromptModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    const auto rows = _owner.promptRows();
    const auto place = static_cast<std::size_t>(index.row());
    if (role != Qt::EditRole || !isValueColumn(index.column()) || place >= rows.size()) {
        return false;
    }
    const QString text = value.toString();
    if (text != QtTextOf(rows[place].value)) { // bytes that are no UTF-8 stay as they are unless the user changes the text
        rows[place].value = QtUtf8Of(text);
    }
    Q_EMIT dataChanged(index, index);
    return true;
}

// Cells ---------------------------------------------------------------------------------------------------------------

QtPromptCells::QtPromptCells(QObject *parent) : QStyledItemDelegate(parent) {}

void QtPromptCells::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    const QString text = QtSingleLine(index.data(Qt::DisplayRole).toString());
    if (index.flags().testFlag(Qt::ItemIsEditable)) {
        _paintField(*painter, option, text);
        return;
    }
    const int margin = option.fontMetrics.averageCharWidth();
    const QRect area =
        option.rect.adjusted(option.direction == Qt::RightToLeft ? margin : 0, 0, option.direction == Qt::RightToLeft ? 0 : -margin, 0);
    painter->setPen(option.palette.color(QPalette::WindowText));
    painter->drawText(area,
                      static_cast<int>(QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter)) | Qt::TextSingleLine,
                      QtIsolated(option.fontMetrics.elidedText(text, Qt::ElideMiddle, area.width())));
}

void QtPromptCells::_paintField(QPainter &painter, const QStyleOptionViewItem &option, const QString &text) const {
    const QWidget *const view = option.widget;
    const QStyle *const style = view == nullptr ? QApplication::style() : view->style();
    QStyleOptionFrame frame;
    frame.rect = option.rect.adjusted(0, FieldMargin, 0, -FieldMargin);
    frame.palette = option.palette;
    frame.fontMetrics = option.fontMetrics;
    frame.direction = option.direction;
    frame.lineWidth = style->pixelMetric(QStyle::PM_DefaultFrameWidth, &frame, view);
    frame.state = QStyle::State_Sunken | (option.state & (QStyle::State_Enabled | QStyle::State_Active));
    if (option.state.testFlag(QStyle::State_Selected) && view != nullptr && view->hasFocus()) {
        frame.state |= QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    }
    style->drawPrimitive(QStyle::PE_PanelLineEdit, &frame, &painter, nullptr);
    // Where the field that is typed into has its text, so that it does not jump: 2 is QLineEdit's own margin.
    const QRect area = style->subElementRect(QStyle::SE_LineEditContents, &frame, nullptr).adjusted(2, 0, -2, 0);
    painter.setPen(option.palette.color(QPalette::Text));
    const Qt::Alignment side = text.isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
    painter.drawText(area, static_cast<int>(side | Qt::AlignVCenter | Qt::AlignAbsolute) | Qt::TextSingleLine,
                     QtIsolated(option.fontMetrics.elidedText(text, Qt::ElideMiddle, area.width())));
}

QSize QtPromptCells::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const {
    const QLineEdit measure;
    const QString text = QtSingleLine(index.data(Qt::DisplayRole).toString());
    return {option.fontMetrics.horizontalAdvance(text) + 2 * option.fontMetrics.averageCharWidth() + 12,
            measure.sizeHint().height() + 2 * FieldMargin};
}

QWidget *QtPromptCells::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/, const QModelIndex &index) const {
    auto *const field = new QLineEdit(parent);
    field->setObjectName(QStringLiteral("valueField"));
    field->setMaxLength(NoLimit);
    field->setAccessibleName(index.siblingAtColumn(index.column() == 0 ? 1 : 0).data(Qt::DisplayRole).toString());
    connect(field, &QLineEdit::textEdited, field, [field] { keepInOneLine(*field); });
    connect(field, &QLineEdit::textChanged, this, [this] {
        if (typed) {
            typed();
        }
    });
    return field;
}

void QtPromptCells::setEditorData(QWidget *editor, const QModelIndex &index) const {
    auto *const field = dynamic_cast<QLineEdit *>(editor);
    const QString text = index.data(Qt::EditRole).toString();
    if (field != nullptr && field->text() != text) {
        field->setText(text);
    }
}

void QtPromptCells::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex & /*index*/) const {
    editor->setGeometry(option.rect.adjusted(0, FieldMargin, 0, -FieldMargin));
}

bool QtPromptCells::eventFilter(QObject *watched, QEvent *event) {
    // None of the base class's: it would move on after Tab by itself and end the typing whenever another window comes up.
    auto *const editor = dynamic_cast<QWidget *>(watched);
    if (editor == nullptr || !ended) {
        return false;
    }
    if (event->type() == QEvent::KeyPress) {
        return _endsBy(*editor, static_cast<QKeyEvent *>(event)->key());
    }
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        const bool comesBack = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason;
        if (!comesBack) {
            ended(*editor, QtEndOfTyping::Elsewhere);
        }
    }
    return false;
}

bool QtPromptCells::_endsBy(QWidget &editor, int key) const {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        ended(editor, QtEndOfTyping::Return);
        return true;
    case Qt::Key_Tab:
        ended(editor, QtEndOfTyping::Tab);
        return true;
    case Qt::Key_Backtab:
        ended(editor, QtEndOfTyping::Backtab);
        return true;
    case Qt::Key_Escape:
        ended(editor, QtEndOfTyping::Escape);
        return true;
    default:
        return false;
    }
}

} // namespace orvane
