#include "hotkeys/SGHotKeyCenter.h"

#include <algorithm>
#include <array>
#include <optional>

namespace orvane {

namespace {

/// The process's one center. Main thread only.
struct SharedCenter {
    std::optional<SGHotKeyCenterPorts> ports;
    std::unique_ptr<SGHotKeyCenter> center;
};

SharedCenter &sharedSlot() {
    static auto *const slot = new SharedCenter; // kept to the very end: whoever owns the ports may be gone before
    return *slot;
}

constexpr const char *SourceName = "SGHotKeyCenter";

} // namespace

void SGHotKeyCenter::setSharedPorts(const SGHotKeyCenterPorts *ports) {
    SharedCenter &shared = sharedSlot();
    shared.center.reset();
    shared.ports.reset();
    if (ports != nullptr) {
        shared.ports.emplace(*ports);
    }
}

SGHotKeyCenter *SGHotKeyCenter::sharedCenter() {
    SharedCenter &shared = sharedSlot();
    if (!shared.center && shared.ports) {
        shared.center = create(*shared.ports);
    }
    return shared.center.get();
}

std::unique_ptr<SGHotKeyCenter> SGHotKeyCenter::create(const SGHotKeyCenterPorts &ports) {
    std::unique_ptr<SGHotKeyCenter> center(new SGHotKeyCenter(ports));
    center->init();
    return center;
}

SGHotKeyCenter *SGHotKeyCenter::init() {
    if (!_hasInited) {
        _hotKeys.clear();
        _hasInited = true;
    }
    return this;
}

SGHotKeyCenter::~SGHotKeyCenter() {
    for (const auto &entry : _hotKeys) {
        _ports.events.unregisterEventHotKey(entry.first);
    }
}

bool SGHotKeyCenter::registerHotKey(const std::shared_ptr<SGHotKey> &hotKey) {
    if (hotKey == nullptr) {
        return true; // as a record without a combination
    }
    if (_isRegistered(hotKey.get())) {
        unregisterHotKey(hotKey);
    }
    const SGKeyCombo combo = hotKey->keyCombo();
    if (!combo.isValidHotKeyCombo()) {
        return true; // kept deliberately: not being a hot key is no error
    }
    hotKey->setHotKeyID({HotKeySignature, ++_lastHotKeyID}); // used up even when the desktop refuses
    EventHotKeyRef carbonHotKey = nullptr;
    const EventStatus status =
        _ports.events.registerEventHotKey(static_cast<std::uint32_t>(combo.keyCode()), static_cast<std::uint32_t>(combo.modifiers()),
                                          hotKey->hotKeyID(), _ports.events.getEventDispatcherTarget(), 0, carbonHotKey);
    if (status != EventNoError) {
        return false;
    }
    if (carbonHotKey != nullptr) {
        _hotKeys[carbonHotKey] = hotKey;
    }
    _updateEventHandler();
    return true;
}

void SGHotKeyCenter::unregisterHotKey(const std::shared_ptr<SGHotKey> &hotKey) {
    if (!_isRegistered(hotKey.get())) {
        return;
    }
    const EventHotKeyRef carbonHotKey = _carbonHotKeyForHotKey(hotKey.get());
    if (carbonHotKey == nullptr) {
        _fail("-[SGHotKeyCenter unregisterHotKey:]", 116, "");
    }
    _ports.events.unregisterEventHotKey(carbonHotKey);
    _hotKeys.erase(carbonHotKey);
    _updateEventHandler();
}

std::vector<std::shared_ptr<SGHotKey>> SGHotKeyCenter::allHotKeys() const {
    std::vector<std::shared_ptr<SGHotKey>> all;
    all.reserve(_hotKeys.size());
    for (const auto &entry : _hotKeys) {
        all.push_back(entry.second);
    }
    return all;
}

std::shared_ptr<SGHotKey> SGHotKeyCenter::hotKeyWithIdentifier(const SGHotKey::Identifier &identifier) const {
    if (!identifier) {
        return nullptr;
    }
    const auto found =
        std::find_if(_hotKeys.begin(), _hotKeys.end(), [&](const auto &entry) { return entry.second->identifier() == identifier; });
    return found == _hotKeys.end() ? nullptr : found->second;
}

EventStatus SGHotKeyCenter::sendCarbonEvent(const Event &event) {
    constexpr const char *Method = "-[SGHotKeyCenter sendCarbonEvent:]";
    if (_ports.events.getEventClass(event) != EventClassKeyboard) {
        _fail(Method, 148, "Unknown event class");
    }
    EventHotKeyID hotKeyID;
    const EventStatus status = _ports.events.getEventParameter(event, EventParamDirectObject, TypeEventHotKeyID, hotKeyID);
    if (status != EventNoError) {
        return status;
    }
    if (hotKeyID.signature != HotKeySignature) {
        _fail(Method, 160, "Invalid hot key id");
    }
    if (hotKeyID.id == 0) {
        _fail(Method, 161, "Invalid hot key id");
    }
    // Held until the end: what the key starts may take the record out of the registry.
    const std::shared_ptr<SGHotKey> hotKey = _hotKeyForHotKeyID(hotKeyID);
    switch (_ports.events.getEventKind(event)) {
    case EventHotKeyPressed:
        _hotKeyDown(hotKey.get());
        break;
    case EventHotKeyReleased:
        _hotKeyUp(hotKey.get());
        break;
    default:
        _fail(Method, 180, "Unknown event kind");
    }
    return EventNoError;
}

void SGHotKeyCenter::_updateEventHandler() {
    if (_hotKeys.empty() || _eventHandlerInstalled) {
        return;
    }
    constexpr std::array<EventTypeSpec, 2> types{{{EventClassKeyboard, EventHotKeyPressed}, {EventClassKeyboard, EventHotKeyReleased}}};
    _ports.events.installEventHandler(_ports.events.getEventDispatcherTarget(), hotKeyEventHandler, types, nullptr);
    _eventHandlerInstalled = true;
}

void SGHotKeyCenter::_hotKeyDown(const SGHotKey *hotKey) {
    if (hotKey != nullptr) {
        hotKey->invoke();
    }
}

void SGHotKeyCenter::_hotKeyUp(const SGHotKey * /*hotKey*/) {}

bool SGHotKeyCenter::_isRegistered(const SGHotKey *hotKey) const {
    return std::any_of(_hotKeys.begin(), _hotKeys.end(), [&](const auto &entry) { return entry.second.get() == hotKey; });
}

EventHotKeyRef SGHotKeyCenter::_carbonHotKeyForHotKey(const SGHotKey *hotKey) {
    std::vector<EventHotKeyRef> references;
    for (const auto &[carbonHotKey, each] : _hotKeys) {
        if (each.get() == hotKey) {
            references.push_back(carbonHotKey);
        }
    }
    if (references.size() != 1) {
        _fail("-[SGHotKeyCenter _carbonHotKeyForHotKey:]", 197, "Failed to find Carbon Hotkey for SGHotKey");
    }
    return references.empty() ? nullptr : references.back();
}

std::shared_ptr<SGHotKey> SGHotKeyCenter::_hotKeyForCarbonHotKey(EventHotKeyRef carbonHotKey) const {
    const auto found = _hotKeys.find(carbonHotKey);
    return found == _hotKeys.end() ? nullptr : found->second;
}

std::shared_ptr<SGHotKey> SGHotKeyCenter::_hotKeyForHotKeyID(EventHotKeyID hotKeyID) const {
    const auto found =
        std::find_if(_hotKeys.begin(), _hotKeys.end(), [&](const auto &entry) { return entry.second->matchesHotKeyID(hotKeyID); });
    return found == _hotKeys.end() ? nullptr : found->second;
}

void SGHotKeyCenter::_fail(const char *method, int line, const char *description) {
    _ports.assertionHandler.handleFailureInMethod(method, this, SourceName, line, description);
}

EventStatus hotKeyEventHandler(const void * /*nextHandler*/, const Event &event, void * /*userData*/) {
    SGHotKeyCenter *const center = SGHotKeyCenter::sharedCenter();
    if (center == nullptr) {
        return EventInternalError;
    }
    try {
        return center->sendCarbonEvent(event);
    } catch (const AssertionFailure &) { // the handler has told of it; the desktop's event loop must go on
        return EventInternalError;
    }
}

} // namespace orvane
