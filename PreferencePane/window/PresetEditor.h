#pragma once

#include "window/SettingsContext.h"
#include "window/Trial.h"

#include <QTimer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class QSplitter;
class QTabWidget;

namespace orvane {

class ItemPanel;
class PresetTreeView;
class PreviewPanel;
class ProblemsPanel;
class ScriptPanel;
class TemplateEdit;
class VariablesPanel;

/// Everything about one preset: its label and folder name, its tree, and beside it what is selected, the preview, the variables, the
/// script; below it its problems.
class PresetEditor final : public QWidget, private EditHistoryObserver {
    Q_OBJECT

public:
    PresetEditor(SettingsContext &context, QWidget *parent);
    PresetEditor(const PresetEditor &) = delete;
    PresetEditor &operator=(const PresetEditor &) = delete;
    ~PresetEditor() override;

    /// `NoItem` for none.
    void showPreset(ItemID preset);
    [[nodiscard]] PresetTreeView &tree() { return *_ui_tree; }
    /// Puts the keyboard into the label's field, its text selected.
    void editLabel();
    void tryPreset();
    /// Contents or scripts have come or gone.
    void checkAgain();

    [[nodiscard]] QByteArray state() const;
    void restoreState(const QByteArray &state);

protected:
    void changeEvent(QEvent *event) override;

private:
    void historyDidChange() override;
    QWidget *_makeHead();
    QWidget *_makeToolBar();
    QWidget *_makeTabs();
    void _orderForTabKey(const QWidget &toolBar);
    void _refreshFields();
    void _refresh();
    void _goTo(ItemID item, const QString &key);
    void _setField(QLineEdit &field, const std::string &text);
    void _directoryNameEdited(const QString &text);

    SettingsContext &_context;
    ItemID _preset = NoItem;
    Trial _trial;
    QTimer _pause; ///< until the user pauses, for what costs time
    QLineEdit *_ui_label = nullptr;
    TemplateEdit *_ui_directoryName = nullptr;
    QLabel *_ui_nameHint = nullptr;
    QPushButton *_ui_try = nullptr;
    QSplitter *_ui_columns = nullptr;
    QSplitter *_ui_rows = nullptr;
    PresetTreeView *_ui_tree = nullptr;
    QTabWidget *_ui_tabs = nullptr;
    ItemPanel *_ui_item = nullptr;
    PreviewPanel *_ui_preview = nullptr;
    VariablesPanel *_ui_variables = nullptr;
    ScriptPanel *_ui_script = nullptr;
    ProblemsPanel *_ui_problems = nullptr;
};

} // namespace orvane
