#pragma once

#include "window/SettingsContext.h"

#include "model/LoginItem.h"
#include "model/RecoveryFile.h"

#include "ports/PreferencesStore.h"
#include "ports/TextCase.h"

namespace orvane {

/// What the settings program reaches its surroundings through; everything is borrowed.
struct SettingsPorts {
    PreferencesStore &preferences;
    DistributedNotifications &notifications;
    RecoveryFile &recovery;
    PropertyListTextForm &form;
    LoginItem &loginItem;
    ContentStore &contents;
    ProcessLauncher &processes;
    Workspace &workspace;
    SystemLog &log;
    TextCase &textCase;
    ProblemList::ResourcesMaker makeResources;
    HotKeyEvents *hotKeyEvents = nullptr;
    KeyboardLayouts *keyboardLayouts = nullptr;
};

/// All models over those ports, and the context that widgets are given. Must outlive the window.
class SettingsModels {
public:
    SettingsModels(const SettingsPorts &ports, SettingsPaths paths)
        : _paths(std::move(paths)), _general(_history, ports.loginItem),
          _store({ports.preferences, ports.notifications, ports.recovery, ports.form}, {_history, _presets, _counters, _general}),
          _problems(_presets, ports.textCase, ports.makeResources), _context{_history,
                                                                             _presets,
                                                                             _counters,
                                                                             _general,
                                                                             _store,
                                                                             _variables,
                                                                             _preview,
                                                                             _problems,
                                                                             ports.contents,
                                                                             ports.form,
                                                                             ports.notifications,
                                                                             ports.processes,
                                                                             ports.workspace,
                                                                             ports.log,
                                                                             _paths,
                                                                             ports.hotKeyEvents,
                                                                             ports.keyboardLayouts,
                                                                             [] {},
                                                                             [](const QString &, bool) {}} {}
    SettingsModels(const SettingsModels &) = delete;
    SettingsModels &operator=(const SettingsModels &) = delete;

    [[nodiscard]] SettingsContext &context() { return _context; }

private:
    SettingsPaths _paths;
    EditHistory _history;
    PresetDocument _presets{_history};
    CounterList _counters{_history};
    GeneralSettings _general;
    SettingsStore _store;
    VariableIndex _variables{_presets};
    NamePreview _preview{_presets, _variables, _counters};
    ProblemList _problems;
    SettingsContext _context;
};

} // namespace orvane
