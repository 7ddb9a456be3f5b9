#pragma once

#include "window/LocalFiles.h"
#include "window/PresetTreeModel.h"

#include <QTreeView>

#include <array>
#include <functional>
#include <vector>

class QAction;
class QMenu;

namespace orvane {

/// A preset's tree, to be edited with keys and mouse as people know it from file managers: F2 renames, Return adds a sibling, Shift+Return
/// an item inside, Del deletes, Alt with the arrow keys moves, Ctrl+X/C/V and Ctrl+D do what they do everywhere.
class PresetTreeView final : public FileDropView<QTreeView> {
    Q_OBJECT

public:
    /// What the view can do, for menus and tool bars; shortcuts work while the view has the keyboard.
    struct Actions {
        QAction *newFolder;
        QAction *newFile;
        QAction *rename;
        QAction *cut;
        QAction *copy;
        QAction *paste;
        QAction *duplicate;
        QAction *remove;
        QAction *moveUp;
        QAction *moveDown;
        QAction *moveOut;
        QAction *moveIn;
        QAction *addFiles;
    };

    PresetTreeView(SettingsContext &context, QWidget *parent);

    void showPreset(ItemID preset);
    [[nodiscard]] PresetTreeModel &presetModel() { return *_model; }
    [[nodiscard]] const Actions &actions() const { return _actions; }
    /// Submenu of label colours for the selected items; owned by the view.
    [[nodiscard]] QMenu *labelMenu() const { return _labelMenu; }
    /// Selected items in the order of the tree, the top-level folder left out.
    [[nodiscard]] std::vector<ItemID> selectedNodes() const;
    [[nodiscard]] ItemID currentItem() const;
    /// Selects these, the first one the current, and makes them visible.
    void selectItems(const std::vector<ItemID> &items);
    /// Goes to the item and opens its editor in that column.
    void editItem(ItemID item, int column = PresetTreeModel::Name);
    void addNode(bool isFolder, bool isInside);
    /// Adds files and folders where the current item is. The user is asked before large folders are copied.
    void addFilesAtPaths(const QStringList &paths);

Q_SIGNALS:
    void nodesSelected();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QAction *_makeAction(const char *text, const QKeySequence &shortcut, const char *name, std::function<void()> run);
    void _sizeColumns();
    void _makeActions();
    void _makeLabelMenu();
    void _updateActions();
    void _copy();
    void _paste();
    void _remove(const char *stepName);
    void _duplicate();
    void _move(int direction);
    void _moveOut();
    void _moveIn();
    void _chooseFiles();
    void _addFiles(const QStringList &paths, ItemID parent, int row);

    SettingsContext &_context;
    PresetTreeModel *_model;
    Actions _actions{};
    QMenu *_labelMenu = nullptr;
    std::array<int, PresetTreeModel::NumberOfColumns> _widths{}; ///< what the columns beside the name take
};

} // namespace orvane
