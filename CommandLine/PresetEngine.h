#pragma once

#include "Command.h"

#include "platform/SingleThread.h"
#include "presets/ORVPresetManager.h"

#include <memory>

namespace orvane {

/// What a command brings along for the preset engine; everything is borrowed.
struct PresetEnginePorts {
    CommandContext &context;
    Alerts &alerts;
    FileSystem &fileSystem;
    PreferencesStore &preferences;
    ProcessLauncher &processes;
    ThreadLauncher &threads;
    PromptInterface &promptInterface;
    Workspace &workspace;
    CreationProgress *progress = nullptr;
    SystemLog *log = nullptr; ///< instead of the context's
};

/// Puts the preset engine together for a program of one thread. Must outlive the managers that it made.
class PresetEngine {
public:
    /// A manager of its own for the command; never null.
    [[nodiscard]] std::unique_ptr<ORVPresetManager> makeManager(const PresetEnginePorts &ports) {
        EnginePorts &engine = *ports.context.engine;
        SystemLog &log = ports.log == nullptr ? engine.log : *ports.log;
        return ORVPresetManager::create({ports.alerts, _application, engine.clock, ports.context.notifications, ports.fileSystem,
                                         _mainThread, ports.preferences, ports.processes, log, engine.textCase, ports.threads,
                                         ports.context.folders, ports.promptInterface, ports.workspace, nullptr, ports.progress});
    }

private:
    SingleThreadApplication _application;
    SingleMainThread _mainThread;
};

} // namespace orvane
