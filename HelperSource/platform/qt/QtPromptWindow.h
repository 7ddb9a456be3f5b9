#pragma once

#include "platform/qt/QtApplication.h"
#include "platform/qt/QtFolderNameView.h"
#include "platform/qt/QtPromptTable.h"
#include "ports/PromptInterface.h"

#include <QDialog>
#include <QTimer>

class QLabel;

namespace orvane {

/// The prompt's window as the interface file describes it. What the file must hold: a table "_ui_variableEditor" of the class
/// "QtPromptTable" and a button box "buttonBox" with OK and Cancel; what it may hold: "directoryName" (class "QtFolderNameView"), which
/// shows the folder's name as it will be, and the labels "problem" and "problemIcon" for what would stop the creation.
class QtPromptWindow final : public QDialog, public PromptWindow {
public:
    explicit QtPromptWindow(QtApplication &application);

    /// Finds the parts and connects them; false when one is missing. The owner is borrowed.
    [[nodiscard]] bool connectOutlets(PromptOwner &owner);
    [[nodiscard]] QtPromptTable &table() { return *_table; }
    [[nodiscard]] bool isInSession() const { return _isInSession; }

    // PromptWindow
    /// The window appears with the next `enableScreenUpdates` or batch of events, so that it comes up where its saved frame says.
    void makeKeyAndOrderFront() override;
    void orderOut() override;
    /// "x y width height": the upper left corner in Qt's coordinates; 0 for the sizes when the user left them alone, so that the next
    /// prompt is as large as its own rows need.
    [[nodiscard]] std::string stringWithSavedFrame() override;
    void setFrameFromString(std::string_view frame) override;
    void disableScreenUpdates() override;
    void enableScreenUpdates() override;
    void beginModalSession() override;
    [[nodiscard]] long runModalSession() override;
    void endModalSession() override;
    void stopModal() override;
    void endEditing() override;

    /// Escape.
    void reject() override;

protected:
    void closeEvent(QCloseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    void _connectButtons();
    void _fitToContents();
    void _appear();
    void _placeOnScreen();
    void _refresh();
    void _refreshName(const std::vector<PromptValueRow> &rows);
    void _refreshProblem();
    /// The rows with what is being typed in its row.
    [[nodiscard]] std::vector<PromptValueRow> _rowsAsTyped();

    QtApplication &_application;
    PromptOwner *_owner = nullptr;
    QtPromptTable *_table = nullptr;
    QtFolderNameView *_name = nullptr;
    QLabel *_problem = nullptr;
    QLabel *_problemIcon = nullptr;
    QTimer _appearance;     ///< shows a window that was ordered front, at the latest with the next event
    QTimer _problemCheck;   ///< asks the disk, now and then while the user types
    QSize _natural;         ///< what the contents ask for
    bool _hasFrame = false; ///< a saved frame was applied
    bool _isInSession = false;
    bool _wasStopped = false;
};

} // namespace orvane
