#include "window/CounterValueField.h"

#include "window/CounterTableModel.h"
#include "window/Icons.h"
#include "window/Page.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace orvane {

CounterValueField::CounterValueField(const CounterTableModel &model, QObject *parent) : QStyledItemDelegate(parent), _model(model) {}

QWidget *CounterValueField::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &index) const {
    auto *const field = new QLineEdit(parent);
    field->setObjectName(QStringLiteral("counterValue"));
    field->setFrame(false);
    field->setAutoFillBackground(true);
    field->setAccessibleName(translated("Value of %1").arg(index.siblingAtColumn(CounterTableModel::Name).data().toString()));
    connect(field, &QLineEdit::textChanged, this, [this, field](const QString &text) {
        const bool accepts = _model.accepts(text);
        QPalette palette = field->parentWidget()->palette();
        if (!accepts) {
            palette.setColor(QPalette::Text, errorColor(palette));
        }
        field->setPalette(palette);
        problemDidChange(accepts ? QString() : translated("The preferences cannot hold one of these characters."));
    });
    return field;
}

void CounterValueField::setEditorData(QWidget *editor, const QModelIndex &index) const {
    const auto *const field = qobject_cast<QLineEdit *>(editor);
    if (field == nullptr || !field->isModified()) {
        QStyledItemDelegate::setEditorData(editor, index);
    }
}

bool CounterValueField::eventFilter(QObject *watched, QEvent *event) {
    const auto *const field = qobject_cast<QLineEdit *>(watched);
    if (field != nullptr && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const bool commits = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab || key == Qt::Key_Backtab;
        if (commits && !_model.accepts(field->text())) {
            return true;
        }
        if (key == Qt::Key_Escape) {
            problemDidChange({});
        }
    }
    return QStyledItemDelegate::eventFilter(watched, event);
}

} // namespace orvane
