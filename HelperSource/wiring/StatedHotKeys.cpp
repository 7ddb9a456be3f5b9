#include "wiring/StatedHotKeys.h"

#include "hotkeys/HotKeyNames.h"

#include <utility>

namespace orvane {

namespace {

std::string statementOf(EventStatus status, const std::string &key) {
    constexpr const char *Otherwise = " Choose another one, or bind a key to the command 'orvane menu'.";
    switch (status) {
    case EventNoError:
        return "The hot key " + key + " works.";
    case EventHotKeyExistsError:
        return "The hot key " + key + " does not work: another program has it." + Otherwise;
    case EventHotKeyInvalidError:
        return "The hot key " + key + " does not work: this keyboard has no such key or modifier." + Otherwise;
    default:
        return "The hot key " + key + " does not work (status " + std::to_string(status) + ")." + Otherwise;
    }
}

} // namespace

StatedHotKeys::StatedHotKeys(HotKeyEvents &events, State state) : _events(events), _state(std::move(state)) {}

EventStatus StatedHotKeys::registerEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID hotKeyID,
                                               EventTargetRef target, std::uint32_t options, EventHotKeyRef &hotKey) {
    const EventStatus status = _events.registerEventHotKey(keyCode, modifiers, hotKeyID, target, options, hotKey);
    const SGKeyCombo combo(static_cast<std::intptr_t>(keyCode), static_cast<std::intptr_t>(modifiers));
    _state(statementOf(status, ORVHotKeyName(combo)));
    return status;
}

EventStatus StatedHotKeys::unregisterEventHotKey(EventHotKeyRef hotKey) {
    const EventStatus status = _events.unregisterEventHotKey(hotKey);
    _state({});
    return status;
}

} // namespace orvane
