#pragma once

#include "window/CounterTableModel.h"
#include "window/InlineMessage.h"
#include "window/SettingsContext.h"

#include <QWidget>

#include <string>
#include <vector>

class QAction;
class QLabel;
class QPushButton;
class QStackedWidget;
class QTreeView;

namespace orvane {

/// Every stored automatic variable with its value: edited in place, reset, deleted. All of it can be undone.
class CountersPage final : public QWidget, private EditHistoryObserver {
public:
    explicit CountersPage(SettingsContext &context, QWidget *parent = nullptr);
    ~CountersPage() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void historyDidChange() override;
    void _makeTable();
    QWidget *_makeEmptyState();
    void _connect();
    [[nodiscard]] std::vector<std::string> _selected() const;
    void _reset();
    void _remove();
    void _refresh();

    SettingsContext &_context;
    CounterTableModel *_model;
    QTreeView *_ui_table;
    QStackedWidget *_ui_states;
    InlineMessage *_ui_message;
    QLabel *_ui_emptyText = nullptr;
    QPushButton *_ui_reset;
    QPushButton *_ui_delete;
    QAction *_edit;
    QAction *_resetAction;
    QAction *_deleteAction;
};

} // namespace orvane
