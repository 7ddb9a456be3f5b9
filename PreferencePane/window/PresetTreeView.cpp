#include "window/PresetTreeView.h"

#include "window/Icons.h"
#include "window/LocalFiles.h"
#include "window/NodeDelegate.h"
#include "window/Page.h"

#include "platform/qt/QtHintColor.h"
#include "platform/qt/QtText.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDrag>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QResizeEvent>

#include <algorithm>
#include <array>

namespace orvane {

namespace {

constexpr std::size_t Last = SIZE_MAX;

constexpr std::array<const char *, 7> LabelNames{"red", "orange", "yellow", "green", "blue", "purple", "gray"};

/// Deeper and larger trees are opened by hand.
constexpr std::size_t MostRowsOpened = 20000;

} // namespace

PresetTreeView::PresetTreeView(SettingsContext &context, QWidget *parent)
    : FileDropView(parent), _context(context), _model(new PresetTreeModel(context, this)) {
    setObjectName(QStringLiteral("presetTree"));
    setAccessibleName(translated("Folders and files of the preset"));
    setModel(_model);
    setItemDelegate(new NodeDelegate(this));
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(EditKeyPressed | DoubleClicked);
    setExpandsOnDoubleClick(false);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setDropIndicatorShown(true);
    setAutoExpandDelay(600);
    setTabKeyNavigation(false);
    setFrameShape(QFrame::StyledPanel);
    header()->setStretchLastSection(false);
    header()->setFirstSectionMovable(false);
    header()->setMinimumSectionSize(48);
    header()->setSectionResizeMode(PresetTreeModel::Name, QHeaderView::Stretch);
    _sizeColumns();
    _makeActions();
    _makeLabelMenu();
    _updateActions();
    connect(_model, &PresetTreeModel::itemsDropped, this, [this](const std::vector<ItemID> &items) { selectItems(items); });
    // Later: a question may come up, and the program that the files come from waits until the drop is done.
    connect(_model, &PresetTreeModel::filesDropped, this, &PresetTreeView::_addFiles, Qt::QueuedConnection);
    connect(_model, &QAbstractItemModel::modelReset, this, [this] {
        _updateActions();
        Q_EMIT nodesSelected();
    });
}

/// The label's column holds the longest of the colours' names with its dot, whatever the language and the letters are.
void PresetTreeView::_sizeColumns() {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.features |= QStyleOptionViewItem::HasDisplay | QStyleOptionViewItem::HasDecoration;
    option.decorationAlignment = Qt::AlignCenter;
    int widest = 0;
    for (const char *name : LabelNames) {
        option.text = labelTitle(name);
        widest = std::max(widest, style()->sizeFromContents(QStyle::CT_ItemViewItem, &option, QSize(), this).width());
    }
    const int character = fontMetrics().averageCharWidth();
    for (const auto &[column, width] : {std::pair{PresetTreeModel::Label, widest}, std::pair{PresetTreeModel::Permissions, 5 * character},
                                        std::pair{PresetTreeModel::Content, 17 * character}}) {
        _widths.at(column) = std::max(header()->sectionSizeHint(column) + 8, width);
        header()->resizeSection(column, _widths.at(column));
    }
}

void PresetTreeView::changeEvent(QEvent *event) {
    QTreeView::changeEvent(event);
    if ((event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) && _labelMenu != nullptr) {
        _sizeColumns();
    }
}

void PresetTreeView::showPreset(ItemID preset) {
    if (preset == _model->preset()) {
        return;
    }
    _model->setPreset(preset);
    if (preset == NoItem) {
        return;
    }
    std::size_t rows = 0;
    _context.presets.forEachBelow(_context.presets.treeOf(preset), [&](ItemID) { return ++rows <= MostRowsOpened; });
    if (rows <= MostRowsOpened) {
        expandAll();
    } else {
        expandToDepth(0);
    }
    setCurrentIndex(_model->index(0, 0));
}

std::vector<ItemID> PresetTreeView::selectedNodes() const {
    std::vector<ItemID> items;
    const QModelIndexList rows = selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        if (const ItemID item = PresetTreeModel::itemOfIndex(row); _context.presets.isNode(item)) {
            items.push_back(item);
        }
    }
    return items;
}

ItemID PresetTreeView::currentItem() const {
    return PresetTreeModel::itemOfIndex(currentIndex());
}

void PresetTreeView::selectItems(const std::vector<ItemID> &items) {
    QItemSelection selection;
    QModelIndex first;
    for (const ItemID item : items) {
        const QModelIndex index = _model->indexOfItem(item);
        if (!index.isValid()) {
            continue;
        }
        for (QModelIndex above = index.parent(); above.isValid() && !isExpanded(above); above = above.parent()) {
            expand(above);
        }
        selection.select(index, index);
        first = first.isValid() ? first : index;
    }
    if (first.isValid()) {
        selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
        selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        scrollTo(first);
    }
}

void PresetTreeView::editItem(ItemID item, int column) {
    selectItems({item});
    setFocus(Qt::OtherFocusReason);
    if (const QModelIndex index = _model->indexOfItem(item, column); index.isValid() && index.flags().testFlag(Qt::ItemIsEditable)) {
        edit(index);
    }
}

// Actions ------------------------------------------------------------------------------------------------------------------

QAction *PresetTreeView::_makeAction(const char *text, const QKeySequence &shortcut, const char *name, std::function<void()> run) {
    auto *const action = new QAction(translated(text), this);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, [run = std::move(run)] { run(); });
    addAction(action);
    return action;
}

void PresetTreeView::_makeActions() {
    _actions.newFolder = _makeAction(QT_TRANSLATE_NOOP("Orvane", "New &Folder"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N),
                                     "newFolder", [this] { addNode(true, true); });
    _actions.newFile = _makeAction(QT_TRANSLATE_NOOP("Orvane", "New F&ile"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F), "newFile",
                                   [this] { addNode(false, true); });
    _actions.addFiles = _makeAction(QT_TRANSLATE_NOOP("Orvane", "&Add Files…"), {}, "addFiles", [this] { _chooseFiles(); });
    _actions.rename = _makeAction(QT_TRANSLATE_NOOP("Orvane", "Rena&me"), QKeySequence(Qt::Key_F2), "renameNode", [this] {
        if (const QModelIndex index = currentIndex(); index.isValid()) {
            edit(index.siblingAtColumn(PresetTreeModel::Name));
        }
    });
    _actions.cut = _makeAction(QT_TRANSLATE_NOOP("Orvane", "Cu&t"), QKeySequence::Cut, "cutNodes", [this] {
        _copy();
        _remove("Cut");
    });
    _actions.copy = _makeAction(QT_TRANSLATE_NOOP("Orvane", "&Copy"), QKeySequence::Copy, "copyNodes", [this] { _copy(); });
    _actions.paste = _makeAction(QT_TRANSLATE_NOOP("Orvane", "&Paste"), QKeySequence::Paste, "pasteNodes", [this] { _paste(); });
    _actions.duplicate = _makeAction(QT_TRANSLATE_NOOP("Orvane", "Duplicat&e"), QKeySequence(Qt::CTRL | Qt::Key_D), "duplicateNodes",
                                     [this] { _duplicate(); });
    _actions.remove = _makeAction(QT_TRANSLATE_NOOP("Orvane", "&Delete"), QKeySequence(Qt::Key_Delete), "deleteNodes",
                                  [this] { _remove("Delete Items"); });
    _actions.moveUp =
        _makeAction(QT_TRANSLATE_NOOP("Orvane", "Mo&ve Up"), QKeySequence(Qt::ALT | Qt::Key_Up), "moveUp", [this] { _move(-1); });
    _actions.moveDown =
        _makeAction(QT_TRANSLATE_NOOP("Orvane", "Move Do&wn"), QKeySequence(Qt::ALT | Qt::Key_Down), "moveDown", [this] { _move(1); });
    _actions.moveOut = _makeAction(QT_TRANSLATE_NOOP("Orvane", "Move &Out of Its Folder"), QKeySequence(Qt::ALT | Qt::Key_Left), "moveOut",
                                   [this] { _moveOut(); });
    _actions.moveIn = _makeAction(QT_TRANSLATE_NOOP("Orvane", "Move I&nto the Folder Above"), QKeySequence(Qt::ALT | Qt::Key_Right),
                                  "moveIn", [this] { _moveIn(); });
    _actions.newFolder->setIcon(iconFor(Icon::NewFolder));
    _actions.newFile->setIcon(iconFor(Icon::NewFile));
    _actions.addFiles->setIcon(iconFor(Icon::AddFrom));
    _actions.duplicate->setIcon(iconFor(Icon::Duplicate));
    _actions.remove->setIcon(iconFor(Icon::Delete));
}

void PresetTreeView::_makeLabelMenu() {
    _labelMenu = new QMenu(translated("&Label"), this);
    const auto add = [this](const char *name) {
        QAction *const action = _labelMenu->addAction(labelIcon(name), labelTitle(name));
        connect(action, &QAction::triggered, this, [this, name] { _context.presets.setColor(selectedNodes(), name); });
    };
    add("");
    std::for_each(LabelNames.begin(), LabelNames.end(), add);
}

void PresetTreeView::_updateActions() {
    const PresetDocument &document = _context.presets;
    const std::vector<ItemID> nodes = _model->preset() == NoItem ? std::vector<ItemID>() : selectedNodes();
    const bool isShown = _model->preset() != NoItem;
    const bool hasNodes = !nodes.empty();
    for (QAction *action : {_actions.newFolder, _actions.newFile, _actions.addFiles, _actions.paste}) {
        action->setEnabled(isShown && document.canInsert(document.treeOf(_model->preset())));
    }
    _actions.rename->setEnabled(isShown && currentIndex().isValid());
    for (QAction *action : {_actions.cut, _actions.copy, _actions.duplicate, _actions.remove, _actions.moveUp, _actions.moveDown,
                            _actions.moveOut, _actions.moveIn}) {
        action->setEnabled(hasNodes);
    }
    _labelMenu->setEnabled(hasNodes);
}

void PresetTreeView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) {
    QTreeView::selectionChanged(selected, deselected);
    if (_labelMenu != nullptr) {
        _updateActions();
        Q_EMIT nodesSelected();
    }
}

void PresetTreeView::addNode(bool isFolder, bool isInside) {
    const PresetDocument &document = _context.presets;
    if (_model->preset() == NoItem) {
        return;
    }
    const ItemID current = currentItem() == NoItem ? document.treeOf(_model->preset()) : currentItem();
    const bool goesInside = document.isTree(current) || (isInside && document.isFolder(current) && document.canInsert(current));
    const ItemID parent = goesInside ? current : document.parentOf(current);
    const std::size_t at = goesInside ? Last : document.indexOf(current) + 1;
    const QString name = isFolder ? translated("New Folder") : translated("New File");
    const ItemID made = _context.presets.addNode(parent, at, QtUtf8Of(name), isFolder);
    if (made != NoItem) {
        editItem(made);
    }
}

void PresetTreeView::_copy() {
    if (QMimeData *const copied = _model->mimeDataOfItems(_context.presets.outermost(selectedNodes()), false); copied != nullptr) {
        QApplication::clipboard()->setMimeData(copied);
    }
}

void PresetTreeView::_paste() {
    const PresetDocument &document = _context.presets;
    const QMimeData *const held = QApplication::clipboard()->mimeData();
    if (held == nullptr || _model->preset() == NoItem) {
        return;
    }
    const ItemID current = currentItem() == NoItem ? document.treeOf(_model->preset()) : currentItem();
    const bool goesInside = document.canInsert(current) && document.isFolder(current);
    const ItemID parent = goesInside ? current : document.parentOf(current);
    const int row = goesInside ? -1 : static_cast<int>(document.indexOf(current)) + 1;
    if (!_model->canInsertMimeData(*held, parent, false)) {
        _context.showMessage(translated("The clipboard holds nothing that can be pasted here."), true);
        return;
    }
    if (PresetTreeModel::holdsFiles(*held, _context.form)) {
        _addFiles(localPaths(*held), parent, row);
    } else {
        selectItems(_model->insertMimeData(*held, parent, row, false));
    }
}

void PresetTreeView::_remove(const char *stepName) {
    const PresetDocument &document = _context.presets;
    const std::vector<ItemID> items = document.outermost(selectedNodes());
    if (items.empty()) {
        return;
    }
    // The next one takes the place of the last that goes, as in file managers.
    const ItemID parent = document.parentOf(items.back());
    const std::size_t at = document.indexOf(items.back());
    const ItemID next = at + 1 < document.numberOfChildren(parent) ? document.childAt(parent, at + 1) : NoItem;
    _context.presets.removeNodes(items, stepName);
    if (next != NoItem && document.contains(next)) {
        selectItems({next});
    } else if (document.contains(parent)) {
        const std::size_t left = document.numberOfChildren(parent);
        selectItems({left == 0 ? parent : document.childAt(parent, left - 1)});
    }
}

void PresetTreeView::_duplicate() {
    selectItems(_context.presets.duplicateNodes(selectedNodes()));
}

/// Up or down among the siblings of the first one.
void PresetTreeView::_move(int direction) {
    const PresetDocument &document = _context.presets;
    const std::vector<ItemID> items = document.outermost(selectedNodes());
    if (items.empty()) {
        return;
    }
    const ItemID end = direction < 0 ? items.front() : items.back();
    const ItemID parent = document.parentOf(end);
    const std::size_t at = document.indexOf(end);
    if (direction < 0 ? at > 0 : at + 1 < document.numberOfChildren(parent)) {
        _context.presets.moveNodes(items, parent, direction < 0 ? at - 1 : at + 2);
        selectItems(items);
    }
}

void PresetTreeView::_moveOut() {
    const PresetDocument &document = _context.presets;
    const std::vector<ItemID> items = document.outermost(selectedNodes());
    if (!items.empty() && document.isNode(document.parentOf(items.front()))) {
        const ItemID folder = document.parentOf(items.front());
        _context.presets.moveNodes(items, document.parentOf(folder), document.indexOf(folder) + 1);
        selectItems(items);
    }
}

void PresetTreeView::_moveIn() {
    const PresetDocument &document = _context.presets;
    const std::vector<ItemID> items = document.outermost(selectedNodes());
    if (items.empty() || document.indexOf(items.front()) == 0) {
        return;
    }
    const ItemID above = document.childAt(document.parentOf(items.front()), document.indexOf(items.front()) - 1);
    if (document.isFolder(above) && document.canMove(items, above)) {
        _context.presets.moveNodes(items, above, Last);
        selectItems(items);
    }
}

// Keys and mouse -----------------------------------------------------------------------------------------------------------

void PresetTreeView::keyPressEvent(QKeyEvent *event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && state() != EditingState && _model->preset() != NoItem && _actions.newFolder->isEnabled()) {
        const ItemID current = currentItem();
        const bool isFolder = current == NoItem || _context.presets.isFolder(current);
        addNode(isFolder, event->modifiers().testFlag(Qt::ShiftModifier));
        return;
    }
    QTreeView::keyPressEvent(event);
}

void PresetTreeView::contextMenuEvent(QContextMenuEvent *event) {
    if (_model->preset() == NoItem) {
        return;
    }
    QMenu menu(this);
    menu.addActions({_actions.newFolder, _actions.newFile, _actions.addFiles});
    menu.addSeparator();
    menu.addActions({_actions.cut, _actions.copy, _actions.paste, _actions.duplicate});
    menu.addSeparator();
    menu.addActions({_actions.rename, _actions.remove});
    menu.addSeparator();
    menu.addMenu(_labelMenu);
    QAction *const kind = menu.addAction(QString());
    const std::vector<ItemID> nodes = selectedNodes();
    const bool becomesFile = !nodes.empty() && _context.presets.isFolder(nodes.front());
    kind->setText(becomesFile ? translated("Chan&ge to File") : translated("Chan&ge to Folder"));
    kind->setEnabled(!nodes.empty());
    connect(kind, &QAction::triggered, this, [this, nodes, becomesFile] { _context.presets.setFolder(nodes, !becomesFile); });
    menu.addActions({_actions.moveUp, _actions.moveDown, _actions.moveOut, _actions.moveIn});
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    menu.exec(isByKey ? viewport()->mapToGlobal(visualRect(currentIndex()).center()) : event->globalPos());
}

/// As the base class does it, but that nothing is removed after a move: the model has moved the items itself.
void PresetTreeView::startDrag(Qt::DropActions supportedActions) {
    const std::vector<ItemID> items = _context.presets.outermost(selectedNodes());
    QMimeData *const dragged = items.empty() ? nullptr : _model->mimeDataOfItems(items, true);
    if (dragged == nullptr) {
        return;
    }
    auto *const drag = new QDrag(this);
    drag->setMimeData(dragged);
    const QModelIndex first = _model->indexOfItem(items.front());
    const auto icon = first.data(Qt::DecorationRole).value<QIcon>();
    const int side = style()->pixelMetric(QStyle::PM_LargeIconSize);
    drag->setPixmap(icon.pixmap(QSize(side, side), devicePixelRatioF()));
    drag->exec(supportedActions, Qt::MoveAction);
}

/// Names need the room first; what else an item has stands in the panel beside the tree, too.
void PresetTreeView::resizeEvent(QResizeEvent *event) {
    QTreeView::resizeEvent(event);
    constexpr int FewestCharacters = 44;
    int room = event->size().width() - FewestCharacters * fontMetrics().averageCharWidth();
    for (const auto column : {PresetTreeModel::Label, PresetTreeModel::Permissions, PresetTreeModel::Content}) {
        room -= _widths.at(column);
        setColumnHidden(column, room < 0);
    }
}

void PresetTreeView::paintEvent(QPaintEvent *event) {
    QTreeView::paintEvent(event);
    const ItemID preset = _model->preset();
    if (preset != NoItem && _context.presets.numberOfChildren(_context.presets.treeOf(preset)) == 0) {
        QPainter painter(viewport());
        painter.setPen(QtHintColor(palette(), QPalette::Text, QPalette::Base));
        QRect rect = viewport()->rect().adjusted(24, 40, -24, -12);
        painter.drawText(rect, Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextWordWrap,
                         translated("Nothing in here yet.\nPress Return to add a folder, or drop files and folders here."));
    }
}

} // namespace orvane
