#pragma once

#include "window/SettingsContext.h"

#include <QWidget>

class QAction;
class QListView;
class QMenu;
class QPushButton;
class QSplitter;
class QStackedWidget;

namespace orvane {

class PresetEditor;
class PresetListModel;
class PresetTreeView;

/// The presets: the list with what can be done with it, and the chosen one's editor.
class PresetsPage final : public QWidget {
    Q_OBJECT

public:
    struct Actions {
        QAction *add;
        QAction *importFolder;
        QAction *addFile;
        QAction *exportFile;
        QAction *rename;
        QAction *duplicate;
        QAction *remove;
        QAction *moveUp;
        QAction *moveDown;
        QAction *tryIt;
    };

    PresetsPage(SettingsContext &context, QWidget *parent);

    [[nodiscard]] const Actions &actions() const { return _actions; }
    [[nodiscard]] QMenu *readyMadeMenu() const { return _readyMadeMenu; }
    [[nodiscard]] PresetTreeView &tree();
    [[nodiscard]] PresetEditor &editor() { return *_ui_editor; }
    /// Adds preset files and imports folders before the preset at that row; a negative row means last.
    void addPaths(const QStringList &paths, int row = -1);
    void selectPreset(ItemID preset);
    [[nodiscard]] ItemID currentPreset() const;
    /// After the presets were read anew: the first one is chosen where none is.
    void selectFirst();
    [[nodiscard]] QByteArray state() const;
    void restoreState(const QByteArray &state);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QAction *_makeAction(const char *text, const QKeySequence &shortcut, const char *name, bool isForWindow, void (PresetsPage::*run)());
    void _makeActions();
    QWidget *_makeList();
    QWidget *_makeEmptyState();
    void _fillReadyMadeMenu();
    void _addPreset();
    void _importFolder();
    void _addFile();
    void _exportFile();
    void _renamePreset();
    void _duplicate();
    void _remove();
    void _moveUp() { _move(-1); }
    void _moveDown() { _move(1); }
    void _tryIt();
    void _move(int direction);
    void _addPath(const QString &path, std::size_t index);
    void _showCurrent();
    void _updateActions();
    void _putKeyboard();
    [[nodiscard]] std::vector<ItemID> _selected() const;
    void _select(const std::vector<ItemID> &presets);

    SettingsContext &_context;
    PresetListModel *_model;
    Actions _actions{};
    QMenu *_readyMadeMenu;
    QListView *_ui_list = nullptr;
    QSplitter *_ui_splitter;
    QStackedWidget *_ui_right;
    PresetEditor *_ui_editor = nullptr;
    QPushButton *_ui_emptyAdd = nullptr;
};

} // namespace orvane
