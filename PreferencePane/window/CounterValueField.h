#pragma once

#include <QStyledItemDelegate>

#include <functional>

namespace orvane {

class CounterTableModel;

/// The field in which a counter's value is typed. What the preferences cannot hold is said while it is typed, and Return leaves the
/// field open then.
class CounterValueField final : public QStyledItemDelegate {
public:
    CounterValueField(const CounterTableModel &model, QObject *parent);

    /// Told what is wrong with the text, empty for nothing.
    std::function<void(const QString &problem)> problemDidChange;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// What has been typed stays, also when the helper counts on meanwhile.
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const CounterTableModel &_model;
};

} // namespace orvane
