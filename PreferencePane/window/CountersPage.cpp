#include "window/CountersPage.h"

#include "window/CounterValueField.h"
#include "window/Page.h"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace orvane {

CountersPage::CountersPage(SettingsContext &context, QWidget *parent)
    : QWidget(parent), _context(context), _model(new CounterTableModel(context, this)), _ui_table(new QTreeView(this)),
      _ui_states(new QStackedWidget(this)), _ui_message(new InlineMessage(QStringLiteral("counterMessage"), this)),
      _ui_reset(new QPushButton(translated("&Reset"), this)), _ui_delete(new QPushButton(translated("De&lete"), this)),
      _edit(new QAction(translated("&Edit"), this)), _resetAction(new QAction(translated("&Reset"), this)),
      _deleteAction(new QAction(translated("De&lete"), this)) {
    setObjectName(QStringLiteral("countersPage"));
    _makeTable();
    _ui_states->addWidget(_ui_table);
    _ui_states->addWidget(_makeEmptyState());

    auto *const explanation = new QLabel(
        translated("Variables whose names begin with “auto” count: each new folder is offered the number after the last one."), this);
    explanation->setWordWrap(true);
    auto *const buttons = new QHBoxLayout;
    buttons->addWidget(_ui_reset);
    buttons->addWidget(_ui_delete);
    buttons->addStretch();
    auto *const rows = new QVBoxLayout(this);
    rows->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    rows->addWidget(explanation);
    rows->addWidget(_ui_states, 1);
    rows->addWidget(_ui_message);
    rows->addLayout(buttons);
    _connect();
    _context.history.addObserver(*this);
    _refresh();
}

CountersPage::~CountersPage() {
    _context.history.removeObserver(*this);
}

void CountersPage::_makeTable() {
    _ui_table->setObjectName(QStringLiteral("counters"));
    _ui_table->setAccessibleName(translated("Counters"));
    _ui_table->setModel(_model);
    _ui_table->setRootIsDecorated(false);
    _ui_table->setAllColumnsShowFocus(false);
    _ui_table->setUniformRowHeights(true);
    _ui_table->setAlternatingRowColors(true);
    _ui_table->setTextElideMode(Qt::ElideMiddle);
    _ui_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    _ui_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked | QAbstractItemView::AnyKeyPressed);
    _ui_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    _ui_table->addActions({_edit, _resetAction, _deleteAction});
    auto *const field = new CounterValueField(*_model, _ui_table);
    field->problemDidChange = [this](const QString &problem) { _ui_message->say(InlineMessage::Kind::Error, problem); };
    _ui_table->setItemDelegateForColumn(CounterTableModel::Value, field);
    QHeaderView *const header = _ui_table->header();
    header->setSectionsMovable(false);
    header->setStretchLastSection(true);
    const int character = fontMetrics().averageCharWidth();
    for (const int column : {CounterTableModel::Name, CounterTableModel::Value, CounterTableModel::Next}) {
        const int usual = (column == CounterTableModel::Name ? 26 : 20) * character;
        header->resizeSection(column, std::max(usual, header->sectionSizeHint(column)));
    }
}

QWidget *CountersPage::_makeEmptyState() {
    auto *const state = new QFrame(this);
    state->setFrameStyle(_ui_table->frameStyle());
    state->setAutoFillBackground(true);
    state->setBackgroundRole(QPalette::Base);
    auto *const title = new QLabel(translated("No counters yet"), state);
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    title->setFont(large);
    title->setAlignment(Qt::AlignCenter);
    _ui_emptyText =
        new QLabel(translated("A counter appears here when a folder was made from a preset with a variable such as {AutoJob}."), state);
    _ui_emptyText->setObjectName(QStringLiteral("noCounters"));
    _ui_emptyText->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    _ui_emptyText->setWordWrap(true);
    auto *const rows = new QVBoxLayout(state);
    rows->setContentsMargins(4 * PageMargin, PageMargin, 4 * PageMargin, PageMargin);
    rows->addStretch(2);
    rows->addWidget(title);
    rows->addWidget(_ui_emptyText);
    rows->addStretch(3);
    return state;
}

void CountersPage::_connect() {
    _ui_reset->setObjectName(QStringLiteral("resetCounter"));
    _ui_reset->setToolTip(translated("The next folder is offered 0"));
    _ui_delete->setObjectName(QStringLiteral("deleteCounter"));
    _resetAction->setToolTip(_ui_reset->toolTip());
    _edit->setShortcut(Qt::Key_F2);
    _deleteAction->setShortcuts({QKeySequence(Qt::Key_Delete), QKeySequence(Qt::Key_Backspace)});
    for (QAction *action : {_edit, _resetAction, _deleteAction}) {
        action->setShortcutContext(Qt::WidgetShortcut); // in the table, and not while a value is typed
    }
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        connect(new QShortcut(key, _ui_table, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, _edit, &QAction::trigger);
    }
    connect(_edit, &QAction::triggered, this, [this] {
        const QModelIndex current = _ui_table->currentIndex();
        if (current.isValid()) {
            _ui_table->edit(current.siblingAtColumn(CounterTableModel::Value));
        }
    });
    connect(_resetAction, &QAction::triggered, this, [this] { _reset(); });
    connect(_deleteAction, &QAction::triggered, this, [this] { _remove(); });
    connect(_ui_reset, &QPushButton::clicked, _resetAction, &QAction::trigger);
    connect(_ui_delete, &QPushButton::clicked, _deleteAction, &QAction::trigger);
    connect(_ui_table->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { _refresh(); });
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(_model, signal, this, [this] { _refresh(); });
    }
    _model->refused = [this](const QString &name, const QString &) {
        _ui_message->say(InlineMessage::Kind::Error,
                         translated("The value typed for “%1” was not stored: it holds characters that the preferences cannot.").arg(name));
    };
}

std::vector<std::string> CountersPage::_selected() const {
    std::vector<std::string> names;
    for (const QModelIndex &index : _ui_table->selectionModel()->selectedRows()) {
        names.push_back(_model->nameAt(index.row()));
    }
    return names;
}

void CountersPage::_reset() {
    const EditHistory::Step step(_context.history, "Reset Counter");
    for (const std::string &name : _selected()) {
        _context.counters.reset(name);
    }
    _ui_message->clear();
}

void CountersPage::_remove() {
    const std::vector<std::string> names = _selected();
    const int row = _ui_table->currentIndex().row();
    {
        const EditHistory::Step step(_context.history, "Delete Counter");
        for (const std::string &name : names) {
            _context.counters.remove(name);
        }
    }
    _ui_message->clear();
    // The selection goes to what has come up in its place, so that the next key finds something.
    if (!names.empty() && _model->rowCount() > 0) {
        _ui_table->setCurrentIndex(_model->index(std::clamp(row - static_cast<int>(names.size()) + 1, 0, _model->rowCount() - 1), 0));
    }
}

void CountersPage::_refresh() {
    const bool isEmpty = _model->rowCount() == 0;
    _ui_states->setCurrentIndex(isEmpty ? 1 : 0);
    const bool hasSelection = !_ui_table->selectionModel()->selectedRows().isEmpty();
    for (QAction *action : {_edit, _resetAction, _deleteAction}) {
        action->setEnabled(hasSelection);
    }
    _ui_reset->setEnabled(hasSelection);
    _ui_delete->setEnabled(hasSelection);
}

void CountersPage::historyDidChange() {
    if (isVisible()) { // nobody sees it otherwise, and looking takes time
        _model->refreshUsers();
    }
}

void CountersPage::showEvent(QShowEvent *event) {
    _model->refreshUsers();
    QWidget::showEvent(event);
}

} // namespace orvane
