#pragma once

#include "window/InlineMessage.h"
#include "window/ScriptTrial.h"
#include "window/SettingsContext.h"

#include <QTimer>
#include <QWidget>

#include <string>

class QFileDialog;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace orvane {

/// The script of one preset: chosen, opened, taken away, and tried on a folder made for it.
class ScriptPanel final : public QWidget, private PresetDocumentObserver {
public:
    explicit ScriptPanel(SettingsContext &context, QWidget *parent = nullptr);
    ~ScriptPanel() override;

    /// The preset whose script this is; `NoItem` for none. A test run of another one is stopped.
    void setPreset(ItemID preset);
    [[nodiscard]] ItemID preset() const { return _preset; }
    /// Takes the file into the scripts folder and gives it to the preset.
    void takeScript(const QString &path);
    [[nodiscard]] bool isTesting() const { return _trial.state() != ScriptTrial::State::Idle; }

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void documentWasReplaced() override { setPreset(NoItem); }
    void itemsWillBeInserted(ItemID, std::size_t, std::size_t) override {}
    void itemsWereInserted(ItemID, std::size_t, std::size_t) override {}
    void itemsWillBeRemoved(ItemID, std::size_t, std::size_t) override {}
    void itemsWereRemoved(ItemID parent, std::size_t first, std::size_t count) override;
    void itemWillMove(ItemID, std::size_t, ItemID, std::size_t) override {}
    void itemDidMove(ItemID, std::size_t, ItemID, std::size_t) override {}
    void itemDidChange(ItemID item, std::string_view key) override;

    void _layOut();
    void _connect();
    [[nodiscard]] bool _isEditable() const;
    [[nodiscard]] std::string _script() const;
    [[nodiscard]] QString _path() const;
    void _choose();
    void _open();
    void _remove();
    void _makeExecutable();
    void _startTest();
    void _testEnded(const ScriptTrial::Result &result);
    void _append(const QString &text, bool isError);
    void _refresh();
    void _sayWhatTheCheckerSays();
    void _refreshTest();

    SettingsContext &_context;
    ItemID _preset = NoItem;
    ItemID _tested = NoItem; ///< the preset that the last test was of
    ScriptTrial _trial;
    QTimer _seconds;
    class ElidedLabel *_ui_name;
    QPushButton *_ui_choose;
    QPushButton *_ui_open;
    QPushButton *_ui_remove;
    InlineMessage *_ui_problem;
    QPushButton *_ui_makeExecutable;
    QPushButton *_ui_test;
    QPushButton *_ui_showFolder;
    InlineMessage *_ui_result;
    QPlainTextEdit *_ui_output;
};

} // namespace orvane
