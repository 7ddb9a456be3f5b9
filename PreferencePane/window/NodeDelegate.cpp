#include "window/NodeDelegate.h"

#include "window/Icons.h"
#include "window/Page.h"
#include "window/PresetTreeModel.h"
#include "window/TemplateEdit.h"

#include "platform/qt/QtText.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QRegularExpressionValidator>
#include <QStyle>
#include <QTextLayout>

#include <cmath>

namespace orvane {

namespace {

/// Longest text of which formats are worked out while a row is painted, in UTF-16 units: names cannot be longer on disk.
constexpr qsizetype LongestPainted = 1000;

QColor inkOf(const QStyleOptionViewItem &option) {
    const QPalette::ColorGroup group = !option.state.testFlag(QStyle::State_Enabled) ? QPalette::Disabled
                                       : option.state.testFlag(QStyle::State_Active) ? QPalette::Active
                                                                                     : QPalette::Inactive;
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    return option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
}

QIcon signOf(int severity) {
    switch (static_cast<ORVProblemSeverity>(severity)) {
    case ORVProblemSeverity::Note:
        return iconFor(Icon::Note);
    case ORVProblemSeverity::Warning:
        return iconFor(Icon::Warning);
    case ORVProblemSeverity::Error:
        break;
    }
    return iconFor(Icon::Error);
}

} // namespace

void paintTemplate(QPainter &painter, const QRect &rect, const QString &text, bool isDirectoryName, const QStyleOptionViewItem &option) {
    const QString line = QtSingleLine(text.left(LongestPainted));
    const QString shown = option.fontMetrics.elidedText(line, Qt::ElideRight, rect.width());
    QTextLayout layout(shown, option.font);
    QList<QTextLayout::FormatRange> formats;
    const qsizetype kept = shown == line ? line.size() : qMax<qsizetype>(0, shown.size() - 1);
    for (QTextLayout::FormatRange range : formatsOfTemplate(line, isDirectoryName, option.palette, inkOf(option))) {
        range.length = static_cast<int>(qMin<qsizetype>(range.length, kept - range.start));
        if (range.length > 0) {
            formats.append(range);
        }
    }
    layout.setFormats(formats);
    QTextOption wrapping(Qt::AlignLeft | Qt::AlignVCenter);
    wrapping.setWrapMode(QTextOption::NoWrap);
    wrapping.setTextDirection(option.direction);
    layout.setTextOption(wrapping);
    layout.beginLayout();
    QTextLine first = layout.createLine();
    first.setLineWidth(rect.width());
    layout.endLayout();
    painter.save();
    painter.setPen(inkOf(option));
    layout.draw(&painter, QPointF(rect.x(), rect.y() + std::round((rect.height() - first.height()) / 2)));
    painter.restore();
}

NodeDelegate::NodeDelegate(QObject *parent) : QStyledItemDelegate(parent) {}

void NodeDelegate::_paintName(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    const QStyle &style = *(option.widget == nullptr ? QApplication::style() : option.widget->style());
    QRect rect = style.subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget);
    rect.adjust(2, 0, -2, 0);
    rect.setRight(option.rect.right() - 2);
    if (const QVariant severity = index.data(PresetTreeModel::SeverityRole); severity.isValid()) {
        const int side = option.decorationSize.height();
        const QRect sign(rect.right() - side, rect.y() + (rect.height() - side) / 2, side, side);
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        signOf(severity.toInt()).paint(&painter, sign, Qt::AlignCenter, isSelected ? QIcon::Selected : QIcon::Normal);
        rect.setRight(sign.left() - 4);
    }
    const QString text = index.data(Qt::DisplayRole).toString();
    if (text.isEmpty()) {
        QColor faint = inkOf(option);
        faint.setAlphaF(0.6F);
        painter.setPen(faint);
        painter.drawText(rect, Qt::AlignVCenter, translated("(no name)"));
        return;
    }
    QStyleOptionViewItem styled = option;
    styled.font.setBold(index.data(PresetTreeModel::IsDirectoryNameRole).toBool());
    styled.fontMetrics = QFontMetrics(styled.font);
    paintTemplate(painter, rect, text, index.data(PresetTreeModel::IsDirectoryNameRole).toBool(), styled);
}

void NodeDelegate::paint(QPainter *painter, const QStyleOptionViewItem &given, const QModelIndex &index) const {
    QStyleOptionViewItem option = given;
    initStyleOption(&option, index);
    painter->save();
    QStyle &style = *(option.widget == nullptr ? QApplication::style() : option.widget->style());
    if (index.column() == PresetTreeModel::Name) {
        option.text.clear();
        style.drawControl(QStyle::CE_ItemViewItem, &option, painter, option.widget);
        option.text = QStringLiteral(" "); // so that the text has its place
        _paintName(*painter, option, index);
    } else if (index.column() == PresetTreeModel::Label) {
        const std::string color = QtUtf8Of(index.data(PresetTreeModel::ColorRole).toString());
        if (!color.empty()) {
            option.icon = labelIcon(color);
            option.features |= QStyleOptionViewItem::HasDecoration;
        }
        style.drawControl(QStyle::CE_ItemViewItem, &option, painter, option.widget);
    } else {
        style.drawControl(QStyle::CE_ItemViewItem, &option, painter, option.widget);
    }
    painter->restore();
}

QSize NodeDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex & /*index*/) const {
    return {80, qMax(option.fontMetrics.height(), option.decorationSize.height()) + 6};
}

QWidget *NodeDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/, const QModelIndex &index) const {
    QLineEdit *editor = nullptr;
    if (index.column() == PresetTreeModel::Name) {
        editor = new TemplateEdit(index.data(PresetTreeModel::IsDirectoryNameRole).toBool(), parent);
        editor->setAccessibleName(translated("Name"));
    } else {
        editor = new QLineEdit(parent);
        editor->setMaxLength(3);
        static const QRegularExpression digits(QStringLiteral("[0-7]{0,3}"));
        editor->setValidator(new QRegularExpressionValidator(digits, editor));
        editor->setAccessibleName(translated("Permissions"));
    }
    editor->setObjectName(QStringLiteral("cellEditor"));
    editor->setFrame(false);
    editor->setAutoFillBackground(true);
    return editor;
}

void NodeDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const {
    auto *const field = qobject_cast<QLineEdit *>(editor);
    if (field == nullptr || field->isModified()) {
        return; // what is being typed stays
    }
    const QString text = index.data(Qt::EditRole).toString();
    field->setText(text);
    // As file managers do: what stands behind the dot stays, unless the user wants it otherwise.
    const auto dot = text.lastIndexOf(u'.');
    if (index.column() == PresetTreeModel::Name && dot > 0 && text.indexOf(u'}', dot) < 0) {
        field->setSelection(0, static_cast<int>(dot));
    } else {
        field->selectAll();
    }
}

void NodeDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const {
    if (const auto *field = qobject_cast<QLineEdit *>(editor); field != nullptr && field->text() != index.data(Qt::EditRole).toString()) {
        model->setData(index, field->text(), Qt::EditRole);
    }
}

void NodeDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &given, const QModelIndex &index) const {
    QStyleOptionViewItem option = given;
    initStyleOption(&option, index);
    option.text = QStringLiteral(" ");
    const QStyle &style = *(option.widget == nullptr ? QApplication::style() : option.widget->style());
    QRect rect = option.rect;
    if (index.column() == PresetTreeModel::Name) {
        rect.setLeft(style.subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget).left());
    }
    editor->setGeometry(rect);
}

} // namespace orvane
