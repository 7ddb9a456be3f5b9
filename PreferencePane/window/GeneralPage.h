#pragma once

#include "window/HotKeyField.h"
#include "window/InlineMessage.h"
#include "window/SettingsContext.h"

#include <QWidget>

class QCheckBox;
class QFormLayout;
class QLabel;

namespace orvane {

/// What stands beside the presets: the menu bar, starting at login, the hot key, where things are, the log.
class GeneralPage final : public QWidget, private GeneralSettingsObserver {
public:
    explicit GeneralPage(SettingsContext &context, QWidget *parent = nullptr);
    /// With a hot-key field for another desktop than this one.
    GeneralPage(SettingsContext &context, HotKeyField::Way way, QWidget *parent);
    ~GeneralPage() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void generalSettingsDidChange() override;
    void _addSwitches(QFormLayout &form);
    void _addPlaces(QFormLayout &form);
    void _addLog(QFormLayout &form);
    /// A row with a path and a button that opens it.
    void _addPlace(QFormLayout &form, const QString &title, const QString &path, const char *name, bool isFile);
    void _showPlace(const QString &path, bool isFile);
    void _setStartsAtLogin(bool starts);
    void _refresh();

    SettingsContext &_context;
    QCheckBox *_ui_showInMenuBar;
    QCheckBox *_ui_startAtLogin;
    InlineMessage *_ui_menuBarHint;
    InlineMessage *_ui_loginProblem;
    HotKeyField *_ui_hotKey;
    InlineMessage *_ui_placeProblem;
};

} // namespace orvane
