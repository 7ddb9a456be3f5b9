#pragma once

#include "window/SettingsContext.h"

#include <QMainWindow>

class QAction;
class QActionGroup;
class QStackedWidget;
class QToolBar;

namespace orvane {

class MessageBar;
class PresetsPage;
class Saving;

/// The window of the settings program: presets, counters and general settings, and bars for what there is to say. One for each process.
class SettingsWindow final : public QMainWindow, private EditHistoryObserver {
    Q_OBJECT

public:
    enum Page { Presets, Counters, General };

    /// Takes over the context's messages for itself. Reads the preferences.
    explicit SettingsWindow(SettingsContext &context, QWidget *parent = nullptr);
    SettingsWindow(const SettingsWindow &) = delete;
    SettingsWindow &operator=(const SettingsWindow &) = delete;
    ~SettingsWindow() override;

    void showPage(Page page);
    /// Preset files are added and folders imported, behind the presets that there are.
    void openPaths(const QStringList &paths);
    [[nodiscard]] Saving &saving() { return *_saving; }

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void historyDidChange() override;
    void _makeSections();
    void _makeActions();
    void _makeMenus();
    void _say(const QString &text, bool isProblem);
    void _setReadable(bool isReadable);
    void _restoreGeometry();
    void _storeGeometry() const;
    void _finishEditing();
    void _undoStep();
    void _redoStep();
    [[nodiscard]] QString _stateFile() const;

    SettingsContext &_context;
    QToolBar *_ui_sections;
    QActionGroup *_sections;
    QStackedWidget *_ui_pages;
    MessageBar *_ui_fileBar;
    MessageBar *_ui_conflictBar;
    MessageBar *_ui_recoveryBar;
    MessageBar *_ui_messageBar;
    PresetsPage *_ui_presets;
    QAction *_undo = nullptr;
    QAction *_redo = nullptr;
    Saving *_saving;
    bool _closesWhenSaved = false; ///< the user closed it while another program held the preferences
    bool _mayLoseEdits = false;    ///< the user was told that nothing can be stored, and closes again
};

} // namespace orvane
