#pragma once

#include "ports/PromptInterface.h"

#include <functional>

#include <QAbstractTableModel>
#include <QStringList>
#include <QStyledItemDelegate>

namespace orvane {

/// The owner's rows as a table of names and values. It keeps no copy: what the owner has is what is shown.
class QtPromptModel final : public QAbstractTableModel {
public:
    /// The owner is borrowed. `columns` are identifiers; only "ValueColumn" can be edited.
    QtPromptModel(PromptOwner &owner, QStringList columns, QObject *parent);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    [[nodiscard]] bool isValueColumn(int column) const { return column >= 0 && column == _columns.indexOf(valueColumn()); }
    [[nodiscard]] int columnOf(const QString &identifier) const { return static_cast<int>(_columns.indexOf(identifier)); }
    [[nodiscard]] static QString valueColumn() { return QStringLiteral("ValueColumn"); }

private:
    [[nodiscard]] const PromptValueRow *_rowAt(int row) const;

    PromptOwner &_owner;
    QStringList _columns;
    int _rows; ///< when the window was made; rows that go meanwhile are shown empty
};

/// Why the typing of a value ended, as far as keys tell.
enum class QtEndOfTyping { Return, Tab, Backtab, Elsewhere, Escape };

/// Draws names as a form's labels and values as its fields, and makes the fields that are typed into.
class QtPromptCells final : public QStyledItemDelegate {
public:
    explicit QtPromptCells(QObject *parent);

    /// Told while the user types.
    std::function<void()> typed;
    /// Told when the typing ends. What then becomes of the field is the receiver's affair.
    std::function<void(QWidget &editor, QtEndOfTyping end)> ended;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void _paintField(QPainter &painter, const QStyleOptionViewItem &option, const QString &text) const;
    bool _endsBy(QWidget &editor, int key) const;
};

} // namespace orvane
