#pragma once

#include "model/ContentStore.h"
#include "model/CounterList.h"
#include "model/EditHistory.h"
#include "model/GeneralSettings.h"
#include "model/NamePreview.h"
#include "model/PresetDocument.h"
#include "model/ProblemList.h"
#include "model/PropertyListTextForm.h"
#include "model/SettingsStore.h"
#include "model/VariableIndex.h"

#include "ports/DistributedNotifications.h"
#include "ports/HotKeyEvents.h"
#include "ports/KeyboardLayouts.h"
#include "ports/Processes.h"
#include "ports/SystemLog.h"
#include "ports/Workspace.h"

#include <functional>
#include <string>

class QString;

namespace orvane {

/// Where things are, as absolute paths; nothing of it need exist.
struct SettingsPaths {
    std::string preferencesFile;
    std::string supportFolder; ///< holds "Scripts" and "File Content"
    std::string stateFolder;   ///< log, remembered windows
    std::string resourceFolder;
};

/// What the window's pages and panels work with. All of it is borrowed and outlives every widget. Main thread only.
///
/// Pages change the models, never the files behind them: the window saves soon after each edit and tells the helper.
struct SettingsContext {
    EditHistory &history;
    PresetDocument &presets;
    CounterList &counters;
    GeneralSettings &general;
    SettingsStore &store;
    VariableIndex &variables;
    NamePreview &preview;
    ProblemList &problems;
    ContentStore &contents;
    PropertyListTextForm &form;
    DistributedNotifications &notifications;
    ProcessLauncher &processes;
    Workspace &workspace;
    SystemLog &log;
    const SettingsPaths &paths;
    HotKeyEvents *hotKeyEvents;               ///< null where the window system gives no hot keys to a program like this
    KeyboardLayouts *keyboardLayouts;         ///< null where it tells nothing about the keyboard
    std::function<void()> resourcesDidChange; ///< to be called after contents or scripts have come or gone; never empty
    /// Shows one line in the window's message bar until the next one; never empty. `isProblem`: it did not go as asked.
    std::function<void(const QString &text, bool isProblem)> showMessage;
};

} // namespace orvane
