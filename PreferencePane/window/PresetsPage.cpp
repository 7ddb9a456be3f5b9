#include "window/PresetsPage.h"

#include "window/Icons.h"
#include "window/LocalFiles.h"
#include "window/Page.h"
#include "window/PresetEditor.h"
#include "window/PresetListModel.h"
#include "window/PresetTreeView.h"

#include <QAction>
#include <QDataStream>
#include <QHBoxLayout>
#include <QIODevice>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace orvane {

PresetsPage::PresetsPage(SettingsContext &context, QWidget *parent)
    : QWidget(parent), _context(context), _model(new PresetListModel(context, this)),
      _readyMadeMenu(new QMenu(translated("Add Fro&m"), this)), _ui_splitter(new QSplitter(Qt::Horizontal, this)),
      _ui_right(new QStackedWidget(this)) {
    setObjectName(QStringLiteral("presetsPage"));
    connect(_readyMadeMenu, &QMenu::aboutToShow, this, [this] { _fillReadyMadeMenu(); });
    _ui_splitter->setChildrenCollapsible(false);
    _ui_splitter->setHandleWidth(1);
    _ui_list = new FileDropView<QListView>(this);
    _makeActions();
    _ui_splitter->addWidget(_makeList());
    _ui_right->addWidget(_makeEmptyState());
    _ui_editor = new PresetEditor(context, this); // behind the list, for those who go by the Tab key
    _ui_right->addWidget(_ui_editor);
    _ui_splitter->addWidget(_ui_right);
    _ui_splitter->setStretchFactor(0, 0);
    _ui_splitter->setStretchFactor(1, 1);
    _ui_splitter->setSizes({210, 800});
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(_ui_splitter);
    connect(_ui_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { _showCurrent(); });
    for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(_model, change, this, [this] { QMetaObject::invokeMethod(this, &PresetsPage::_showCurrent, Qt::QueuedConnection); });
    }
    // Later, since other views have not heard of it yet.
    connect(_model, &QAbstractItemModel::modelReset, this,
            [this] { QMetaObject::invokeMethod(this, &PresetsPage::selectFirst, Qt::QueuedConnection); });
    connect(_model, &PresetListModel::presetsMoved, this, [this](const std::vector<ItemID> &presets) { _select(presets); });
    // Later: a question may come up, and the program that the files come from waits until the drop is done.
    connect(
        _model, &PresetListModel::filesDropped, this, [this](const QStringList &paths, int at) { addPaths(paths, at); },
        Qt::QueuedConnection);
    selectFirst();
}

PresetTreeView &PresetsPage::tree() {
    return _ui_editor->tree();
}

QWidget *PresetsPage::_makeList() {
    auto *const side = new QWidget(this);
    auto *const column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    _ui_list->setParent(side);
    _ui_list->setObjectName(QStringLiteral("presetList"));
    _ui_list->setAccessibleName(translated("Presets"));
    _ui_list->setModel(_model);
    _ui_list->setFrameShape(QFrame::NoFrame);
    _ui_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    _ui_list->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::DoubleClicked);
    _ui_list->setDragDropMode(QAbstractItemView::DragDrop);
    _ui_list->setDefaultDropAction(Qt::MoveAction);
    _ui_list->setDragDropOverwriteMode(false);
    _ui_list->setTextElideMode(Qt::ElideRight);
    _ui_list->setUniformItemSizes(true);
    _ui_list->setIconSize(QSize(18, 18));
    _ui_list->setSpacing(1);
    _ui_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _ui_list->setContextMenuPolicy(Qt::ActionsContextMenu);
    _ui_list->installEventFilter(this);
    side->setMinimumWidth(150);
    auto *const buttons = new QHBoxLayout;
    buttons->setContentsMargins(4, 4, 4, 4);
    buttons->setSpacing(2);
    const auto addButton = [&](QAction *action, bool isLabelled) {
        auto *const button = new QToolButton(side);
        button->setDefaultAction(action);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        button->setToolButtonStyle(isLabelled ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
        button->setAccessibleName(action->text().remove(u'&'));
        buttons->addWidget(button);
    };
    addButton(_actions.add, false);
    auto *const from = new QToolButton(side);
    from->setObjectName(QStringLiteral("addFrom"));
    from->setIcon(iconFor(Icon::AddFrom));
    from->setAutoRaise(true);
    from->setFocusPolicy(Qt::TabFocus);
    from->setPopupMode(QToolButton::InstantPopup);
    from->setMenu(_readyMadeMenu);
    from->setToolTip(translated("Add from…"));
    from->setAccessibleName(translated("Add from…"));
    buttons->addWidget(from);
    addButton(_actions.duplicate, false);
    addButton(_actions.remove, false);
    buttons->addStretch(1);
    column->addWidget(_ui_list, 1);
    column->addLayout(buttons);
    return side;
}

QWidget *PresetsPage::_makeEmptyState() {
    auto *const page = new QWidget(this);
    auto *const column = new QVBoxLayout(page);
    column->setSpacing(PageSpacing);
    auto *const title = new QLabel(translated("No preset is chosen"), page);
    title->setObjectName(QStringLiteral("emptyTitle"));
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    title->setFont(font);
    title->setAlignment(Qt::AlignCenter);
    auto *const text =
        new QLabel(translated("A preset is a folder with everything in it, made again whenever you need it. Begin with an empty "
                              "one, with one that is ready made, or with a folder that you have."),
                   page);
    text->setWordWrap(true);
    text->setObjectName(QStringLiteral("emptyText"));
    text->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    text->setMaximumWidth(460);
    auto *const textRow = new QHBoxLayout;
    textRow->addStretch(1);
    textRow->addWidget(text, 100);
    textRow->addStretch(1);
    _ui_emptyAdd = new QPushButton(translated("Ne&w Preset"), page);
    _ui_emptyAdd->setObjectName(QStringLiteral("emptyAdd"));
    _ui_emptyAdd->setAutoDefault(true); // Return presses it
    _ui_emptyAdd->setDefault(true);
    connect(_ui_emptyAdd, &QPushButton::clicked, _actions.add, &QAction::trigger);
    auto *const from = new QPushButton(translated("&Ready-Made Presets"), page);
    from->setObjectName(QStringLiteral("emptyFrom"));
    from->setMenu(_readyMadeMenu);
    auto *const folder = new QPushButton(translated("I&mport Folder…"), page);
    connect(folder, &QPushButton::clicked, _actions.importFolder, &QAction::trigger);
    auto *const buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (QPushButton *button : {_ui_emptyAdd, from, folder}) {
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    column->addStretch(1);
    column->addWidget(title);
    column->addLayout(textRow);
    column->addLayout(buttons);
    column->addStretch(2);
    return page;
}

bool PresetsPage::eventFilter(QObject *watched, QEvent *event) {
    // Not the Return that ends typing a label, which comes by here on its way up from the field.
    if (watched == _ui_list && event->type() == QEvent::KeyPress && _ui_list->hasFocus()) {
        const int key = static_cast<const QKeyEvent &>(*event).key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && currentPreset() != NoItem) {
            tree().setFocus(Qt::TabFocusReason);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

// What is shown ------------------------------------------------------------------------------------------------------------

std::vector<ItemID> PresetsPage::_selected() const {
    std::vector<ItemID> presets;
    QModelIndexList rows = _ui_list->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    for (const QModelIndex &row : rows) {
        presets.push_back(_model->presetOfIndex(row));
    }
    return presets;
}

ItemID PresetsPage::currentPreset() const {
    const std::vector<ItemID> presets = _selected();
    return presets.size() == 1 ? presets.front() : NoItem;
}

void PresetsPage::_select(const std::vector<ItemID> &presets) {
    QItemSelection selection;
    for (const ItemID preset : presets) {
        if (const QModelIndex index = _model->indexOfPreset(preset); index.isValid()) {
            selection.select(index, index);
        }
    }
    if (!selection.isEmpty()) {
        _ui_list->selectionModel()->setCurrentIndex(selection.indexes().front(), QItemSelectionModel::NoUpdate);
        _ui_list->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
        _ui_list->scrollTo(selection.indexes().front());
    }
    _showCurrent();
}

void PresetsPage::selectPreset(ItemID preset) {
    _select({preset});
}

void PresetsPage::selectFirst() {
    if (_selected().empty() && _model->rowCount() > 0) {
        _select({_context.presets.presetAt(0)});
    } else {
        _showCurrent();
    }
}

void PresetsPage::_showCurrent() {
    if (_selected().empty() && _ui_list->currentIndex().isValid() && _model->rowCount() > 0) {
        // One that went leaves the row to another.
        _ui_list->selectionModel()->select(_ui_list->currentIndex(), QItemSelectionModel::ClearAndSelect);
    }
    const ItemID preset = currentPreset();
    _ui_editor->showPreset(preset);
    _putKeyboard();
    _ui_right->setCurrentIndex(preset == NoItem ? 0 : 1);
    const bool isReadable = _context.store.state() == SettingsStore::State::Loaded;
    auto *const title = _ui_right->widget(0)->findChild<QLabel *>(QStringLiteral("emptyTitle"));
    _ui_right->widget(0)->findChild<QLabel *>(QStringLiteral("emptyText"))->setVisible(isReadable);
    for (QPushButton *button : _ui_right->widget(0)->findChildren<QPushButton *>()) {
        button->setVisible(isReadable);
    }
    title->setText(!isReadable               ? translated("The presets cannot be shown")
                   : _model->rowCount() == 0 ? translated("There are no presets yet")
                   : _selected().size() > 1  ? translated("%1 presets are chosen").arg(_selected().size())
                                             : translated("No preset is chosen"));
    _updateActions();
}

/// Without any preset there is one thing to begin with; once there are some, the keyboard leaves it for the list. To be called before
/// the button goes out of sight, which would send the keyboard anywhere.
void PresetsPage::_putKeyboard() {
    const QWidget *const focused = window()->focusWidget();
    const bool isInvited = _model->rowCount() == 0 && _context.store.state() == SettingsStore::State::Loaded;
    if (isInvited && (focused == nullptr || isAncestorOf(focused))) {
        _ui_emptyAdd->setFocus(Qt::OtherFocusReason);
    } else if (!isInvited && (focused == nullptr || focused == _ui_emptyAdd)) {
        _ui_list->setFocus(Qt::OtherFocusReason);
    }
}

void PresetsPage::_updateActions() {
    const std::size_t count = _selected().size();
    for (QAction *action : {_actions.duplicate, _actions.remove, _actions.moveUp, _actions.moveDown}) {
        action->setEnabled(count > 0);
    }
    const bool isEditable = count == 1 && _context.presets.isEditable(currentPreset());
    for (QAction *action : {_actions.exportFile, _actions.rename, _actions.tryIt}) {
        action->setEnabled(isEditable);
    }
}

QByteArray PresetsPage::state() const {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << _ui_splitter->saveState() << _ui_editor->state();
    return bytes;
}

void PresetsPage::restoreState(const QByteArray &state) {
    QDataStream stream(state);
    QByteArray splitter;
    QByteArray editor;
    stream >> splitter >> editor;
    if (stream.status() == QDataStream::Ok) {
        _ui_splitter->restoreState(splitter);
        _ui_editor->restoreState(editor);
    }
}

} // namespace orvane
