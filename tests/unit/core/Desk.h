#pragma once

#include "fakes/FakeAlerts.h"
#include "fakes/FakeApplication.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeCreationProgress.h"
#include "fakes/FakeDistributedNotifications.h"
#include "fakes/FakeFileSystem.h"
#include "fakes/FakeKeyValueObserver.h"
#include "fakes/FakeMainThread.h"
#include "fakes/FakePreferencesStore.h"
#include "fakes/FakeProcesses.h"
#include "fakes/FakePromptInterface.h"
#include "fakes/FakeSystemLog.h"
#include "fakes/FakeTextCase.h"
#include "fakes/FakeThreadLauncher.h"
#include "fakes/FakeUserFolders.h"
#include "fakes/FakeWorkspace.h"
#include "presets/ORVPresetManager.h"
#include "unit/core/Plist.h"

#include <memory>
#include <string>

namespace orvane::test {

/// A manager over fakes: an empty disk with the folder /jobs, no preferences.
class Desk {
public:
    Desk() {
        fileSystem.addFolder("/jobs");
        manager = ORVPresetManager::create(ports());
    }

    [[nodiscard]] ORVPresetManagerPorts ports() {
        return {.alerts = alerts,
                .application = application,
                .clock = clock,
                .notifications = notifications,
                .fileSystem = fileSystem,
                .mainThread = mainThread,
                .preferences = preferences,
                .processes = processes,
                .log = log,
                .textCase = textCase,
                .threads = threads,
                .folders = folders,
                .promptInterface = prompt,
                .workspace = workspace,
                .observer = &observer,
                .progress = &progress};
    }

    /// Puts the presets on disk, beside whatever else is there.
    void setPresets(const PropertyList &presets) { preferences.writeToDisk(ORVPresetsKey, presets); }
    void setCounters(const PropertyList &counters) { preferences.writeToDisk(ORVAutomaticVarsKey, counters); }
    /// The counter's text on disk, "(absent)" when there is none.
    [[nodiscard]] std::string counter(std::string_view name) const {
        const PropertyListValue *all = preferences.disk ? preferences.disk->root().find(ORVAutomaticVarsKey) : nullptr;
        const PropertyListValue *value = all != nullptr ? all->find(name) : nullptr;
        return value == nullptr ? "(absent)" : std::string(value->string());
    }
    /// Creates the preset inside /jobs.
    void create(const PropertyList &preset) const {
        manager->setBasePath("/jobs");
        manager->createFileHierarchyFromPreset(preset.root());
    }
    [[nodiscard]] bool makeNode(const PropertyList &node, std::span<const PromptValueRow> rows = {}) const {
        return manager->createFileNodeAtBasePathWithReplacePairs(node.root(), "/jobs", rows);
    }
    [[nodiscard]] std::string creationError() const {
        const auto &error = manager->fileCreationError();
        return error ? error->localizedDescription().value_or("(no description)") : "(none)";
    }

    FakeAlerts alerts;
    FakeApplication application;
    FakeClock clock;
    FakeDistributedNotifications notifications;
    FakeFileSystem fileSystem;
    FakeMainThread mainThread;
    FakePreferencesStore preferences;
    FakeProcessLauncher processes;
    FakeSystemLog log;
    FakeTextCase textCase;
    FakeThreadLauncher threads;
    FakeUserFolders folders;
    FakePromptInterface prompt;
    FakeWorkspace workspace;
    FakeKeyValueObserver observer;
    FakeCreationProgress progress;
    std::unique_ptr<ORVPresetManager> manager;
};

} // namespace orvane::test
