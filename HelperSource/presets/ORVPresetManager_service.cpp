#include "presets/ORVPresetManager.h"

#include "presets/ORVFileHelpers.h"

#include <array>
#include <utility>

// The manager's service face: the parent folder, presets by index, the preference pane, the change notification.

namespace orvane {

namespace {

/// All users' pane first, then the user's own.
constexpr std::array<std::string_view, 2> PaneRoots = {"/", "~/"};
constexpr std::string_view PaneFile = "Library/PreferencePanes/ORVPrefPane.prefPane";

} // namespace

void ORVPresetManager::loadManager() {
    const std::lock_guard lock(_monitor);
    if (_isLoaded) {
        return;
    }
    _isLoaded = true;
    _ports.notifications.addObserver(this, ORVPresetConfigurationChangedNotification, DistributedNotifications::Suspension::Coalesce,
                                     [this] { handlePresetConfigurationChangedNotification(); });
}

void ORVPresetManager::unloadManager() {
    const std::lock_guard lock(_monitor);
    if (!_isLoaded) {
        return;
    }
    _isLoaded = false;
    _ports.notifications.removeObserver(this, ORVPresetConfigurationChangedNotification);
}

void ORVPresetManager::setBasePath(const std::optional<std::string> &path) {
    auto copy = std::make_shared<const std::string>(path.value_or(std::string()));
    _ports.mainThread.releaseAfterCurrentEvent(std::exchange(_contextualDirectory, std::move(copy)));
}

void ORVPresetManager::handlePresetConfigurationChangedNotification() {
    readConfiguration();
}

void ORVPresetManager::handlePresetClicked(std::int32_t index) {
    readConfiguration();
    const auto position = static_cast<std::uint64_t>(static_cast<std::int64_t>(index)); // widened with its sign
    const std::shared_ptr<const PresetArray> presets = _presets;
    if (position == presets->records.size()) {
        openORVPreferencePane();
        return;
    }
    if (position > presets->records.size()) { // a negative index counts as huge
        return;
    }
    createFileHierarchyFromPreset(presets->records[position]);
}

void ORVPresetManager::openORVPreferencePane() {
    for (const std::string_view root : PaneRoots) {
        const std::string path = stringByAppendingPathComponent(stringByExpandingTildeInPath(root, _ports.folders), PaneFile);
        if (_ports.fileSystem.fileExists(path)) {
            _ports.workspace.openFile(path); // deliberately no stop at the first: both are opened when both exist
        }
    }
}

} // namespace orvane
