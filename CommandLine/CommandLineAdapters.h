#pragma once

#include "ports/Alerts.h"
#include "ports/CreationProgress.h"
#include "ports/PreferencesStore.h"
#include "ports/Processes.h"
#include "ports/SystemLog.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The smaller ports as the command line fills them.

namespace orvane {

/// Forgets everything: nothing has happened in a dry run.
class SilentLog final : public SystemLog {
public:
    void log(std::string_view /*text*/) override {}
};

/// One alert as it was shown.
struct ShownAlert {
    std::optional<std::string> title;
    std::optional<std::string> message;
};

/// Alerts on standard error, "orvane: TITLE: MESSAGE", kept for the exit status.
class CommandLineAlerts final : public Alerts {
public:
    void runAlertPanel(const std::optional<std::string> &title, const std::optional<std::string> &message) override;
    [[nodiscard]] const std::vector<ShownAlert> &shown() const { return _shown; }
    /// Called before each; false keeps it from being shown and kept.
    void setGate(std::function<bool()> gate) { _gate = std::move(gate); }

private:
    std::vector<ShownAlert> _shown;
    std::function<bool()> _gate;
};

/// Counts nodes, of any thread; others may look.
class NodeCounter final : public CreationProgress {
public:
    void advanced(std::size_t nodes) override { _nodes.fetch_add(nodes, std::memory_order_relaxed); }
    void startedOver() override { _nodes.store(0, std::memory_order_relaxed); }
    [[nodiscard]] std::size_t nodes() const { return _nodes.load(std::memory_order_relaxed); }

private:
    std::atomic<std::size_t> _nodes{0};
};

/// Starts programs through another launcher and keeps what became of the last one.
class RecordingProcessLauncher final : public ProcessLauncher {
public:
    explicit RecordingProcessLauncher(ProcessLauncher &launcher) : _launcher(launcher) {}
    [[nodiscard]] std::unique_ptr<ChildProcess> launch(const std::string &path,
                                                       const std::map<std::string, std::string> &environment) override;
    /// Exit status of the last program; absent while none has ended in time.
    [[nodiscard]] std::optional<int> lastStatus() const { return *_status; }

private:
    ProcessLauncher &_launcher;
    std::shared_ptr<std::optional<int>> _status = std::make_shared<std::optional<int>>();
};

/// The preferences as another store has them, to be read only: what is set is forgotten, and nobody is locked out.
class ReadOnlyPreferencesStore final : public PreferencesStore {
public:
    explicit ReadOnlyPreferencesStore(PreferencesStore &store) : _store(store) {}
    bool synchronize() override { return _store.synchronize(); }
    [[nodiscard]] std::optional<PropertyList> copyAppValue(std::string_view key) override { return _store.copyAppValue(key); }
    void setAppValue(std::string_view /*key*/, const PropertyList & /*value*/) override {}
    [[nodiscard]] bool canStoreText(std::string_view text) override { return _store.canStoreText(text); }
    [[nodiscard]] std::optional<PropertyList> dictionaryWithContentsOfFile() override { return _store.dictionaryWithContentsOfFile(); }
    [[nodiscard]] std::unique_ptr<Lock> lock() override { return std::make_unique<Lock>(); }
    [[nodiscard]] bool isHeldElsewhere() const override { return false; }

private:
    PreferencesStore &_store;
};

} // namespace orvane
