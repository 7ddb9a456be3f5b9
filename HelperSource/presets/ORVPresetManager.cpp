#include "presets/ORVPresetManager.h"

#include <limits>
#include <utility>

// The manager itself: the shared instance, its life, and the reporting of errors.

namespace orvane {

namespace {

/// The process's one manager. Never destroyed, but for `setSharedPorts(nullptr)`.
struct SharedSlot {
    std::recursive_mutex monitor;
    std::optional<ORVPresetManagerPorts> ports;
    std::unique_ptr<ORVPresetManager> manager;
};

SharedSlot &sharedSlot() {
    static SharedSlot *const slot = new SharedSlot; // kept to the very end: script threads may still use the manager then
    return *slot;
}

} // namespace

void ORVPresetManager::setSharedPorts(const ORVPresetManagerPorts *ports) {
    SharedSlot &slot = sharedSlot();
    const std::lock_guard lock(slot.monitor);
    slot.manager.reset();
    slot.ports.reset();
    if (ports != nullptr) {
        slot.ports.emplace(*ports);
    }
}

ORVPresetManager *ORVPresetManager::sharedManager() {
    SharedSlot &slot = sharedSlot();
    const std::lock_guard lock(slot.monitor);
    if (!slot.manager && slot.ports) {
        slot.manager = create(*slot.ports);
    }
    return slot.manager.get();
}

std::unique_ptr<ORVPresetManager> ORVPresetManager::create(const ORVPresetManagerPorts &ports) {
    std::unique_ptr<ORVPresetManager> manager(new ORVPresetManager(ports));
    return manager->_init() ? std::move(manager) : nullptr;
}

ORVPresetManager::ORVPresetManager(const ORVPresetManagerPorts &ports)
    : _ports(ports), _presets(std::make_shared<const PresetArray>()), _contextualDirectory(std::make_shared<const std::string>()) {}

ORVPresetManager::~ORVPresetManager() {
    unloadManager();
}

bool ORVPresetManager::_init() {
    if (!_ports.application.load()) {
        _ports.log.log("-[ORVPresetManager init]: NSApplicationLoad failed!");
        return false;
    }
    readConfiguration();
    return true;
}

ORVPresetManager *ORVPresetManager::retain() {
    return sharedManager();
}

ORVPresetManager *ORVPresetManager::autorelease() {
    return sharedManager();
}

void ORVPresetManager::release() {}

unsigned long ORVPresetManager::retainCount() const {
    return std::numeric_limits<unsigned long>::max();
}

void ORVPresetManager::dealloc() {}

void ORVPresetManager::reportErrorMessage(const std::optional<std::string> &title, const std::optional<std::string> &message) {
    if (_ports.mainThread.isCurrent()) {
        // The message stands where the panel expects a format, so a per-cent sign of a file name counts as a directive;
        // kept deliberately, and made harmless.
        _ports.alerts.runAlertPanel(title, message ? std::optional(ORVMessageOfFormat(*message)) : std::nullopt);
        return;
    }
    ORVErrorDictionary error;
    if (title) { // the list of entries ends at the first one that is missing
        error.title = title;
        error.message = message;
    }
    _ports.mainThread.performAndWait([this, &error] { reportErrorWithDict(error); });
}

void ORVPresetManager::reportErrorWithDict(const ORVErrorDictionary &error) {
    reportErrorMessage(error.title, error.message);
}

} // namespace orvane
