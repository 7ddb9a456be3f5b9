#pragma once

#include <QStyledItemDelegate>

namespace orvane {

/// Draws the cells of a preset's tree and makes their editors: names with their variables highlighted, labels as dots of their colour,
/// permissions as digits in columns, problems as a sign at the name's end.
class NodeDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit NodeDelegate(QObject *parent);

    void paint(QPainter *painter, const QStyleOptionViewItem &given, const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &given, const QModelIndex &index) const override;

private:
    void _paintName(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
};

/// Draws a name template in one line, its variables highlighted and its end left out where it does not fit.
void paintTemplate(QPainter &painter, const QRect &rect, const QString &text, bool isDirectoryName, const QStyleOptionViewItem &option);

} // namespace orvane
