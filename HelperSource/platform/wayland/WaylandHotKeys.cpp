#include "platform/wayland/WaylandHotKeys.h"

#include <algorithm>
#include <utility>

namespace orvane {

WaylandHotKeys::WaylandHotKeys(std::vector<std::unique_ptr<HotKeyService>> services, std::string advice, SystemLog &log)
    : _services(std::move(services)), _advice(std::move(advice)), _log(log) {
    for (const std::unique_ptr<HotKeyService> &owned : _services) {
        HotKeyService *const service = owned.get();
        service->pressed = [this, service](int slot) { _dispatch(*service, slot, EventHotKeyPressed); };
        service->released = [this, service](int slot) { _dispatch(*service, slot, EventHotKeyReleased); };
        service->decided = [this, service](int slot, bool isTaken, const std::string &what) { _decide(*service, slot, isTaken, what); };
    }
}

WaylandHotKeys::~WaylandHotKeys() = default;

void WaylandHotKeys::_state(std::string statement) {
    if (statement != _statement) {
        _statement = std::move(statement);
        _log.log(_statement);
    }
    if (stated) {
        stated(_statement);
    }
}

int WaylandHotKeys::_freeSlot() const {
    int slot = 0;
    while (std::any_of(_registrations.begin(), _registrations.end(), [slot](const auto &taken) { return taken->slot == slot; })) {
        ++slot;
    }
    return slot;
}

EventStatus WaylandHotKeys::registerEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID hotKeyID,
                                                EventTargetRef target, std::uint32_t options, EventHotKeyRef &hotKey) {
    if (target != getEventDispatcherTarget() || options != 0) {
        return EventInternalError;
    }
    const HotKeyRequest request{keyCode, modifiers, _freeSlot()};
    for (const std::unique_ptr<HotKeyService> &service : _services) {
        const HotKeyService::Answer answer = service->take(request);
        switch (answer) {
        case HotKeyService::Answer::Taken:
        case HotKeyService::Answer::Pending:
            _registrations.push_back(std::make_unique<Registration>(Registration{hotKeyID, request.slot, service.get()}));
            hotKey = _registrations.back().get();
            _state(answer == HotKeyService::Answer::Taken ? "The hot key works by " + service->name() + "."
                                                          : "The hot key is asked of " + service->name() + ", which has yet to answer.");
            return EventNoError;
        case HotKeyService::Answer::Refused:
            _state("The hot key does not work: by " + service->name() + ", another program has that combination.");
            return EventHotKeyExistsError;
        case HotKeyService::Answer::Invalid:
            _state("The hot key does not work: " + service->name() + " knows no such key.");
            return EventHotKeyInvalidError;
        case HotKeyService::Answer::Unavailable:
            break;
        }
    }
    _state(_advice);
    return EventInternalError;
}

EventStatus WaylandHotKeys::unregisterEventHotKey(EventHotKeyRef hotKey) {
    const auto found =
        std::find_if(_registrations.begin(), _registrations.end(), [hotKey](const auto &registered) { return registered.get() == hotKey; });
    if (hotKey == nullptr || found == _registrations.end()) {
        return EventInternalError;
    }
    (*found)->service->giveBack((*found)->slot);
    _registrations.erase(found);
    if (stated) {
        stated({});
    }
    return EventNoError;
}

EventStatus WaylandHotKeys::installEventHandler(EventTargetRef target, EventHandler handler, std::span<const EventTypeSpec> types,
                                                void *userData) {
    if (target != getEventDispatcherTarget() || handler == nullptr) {
        return EventInternalError;
    }
    _handlers.install(handler, types, userData);
    return EventNoError;
}

const WaylandHotKeys::Registration *WaylandHotKeys::_registrationFor(const HotKeyService &service, int slot) const {
    for (const std::unique_ptr<Registration> &registered : _registrations) {
        if (registered->service == &service && registered->slot == slot) {
            return registered.get();
        }
    }
    return nullptr;
}

void WaylandHotKeys::_dispatch(const HotKeyService &service, int slot, std::uint32_t kind) {
    if (const Registration *const registered = _registrationFor(service, slot)) {
        _handlers.dispatchHotKey(kind, registered->id);
    }
}

void WaylandHotKeys::_decide(const HotKeyService &service, int slot, bool isTaken, const std::string &what) {
    if (_registrationFor(service, slot) == nullptr) {
        return;
    }
    // A key that was refused late stays registered as far as the core goes: it never comes, and giving it back does nothing.
    const std::string more = what.empty() ? "." : " (" + what + ").";
    _state(isTaken ? "The hot key works by " + service.name() + more : service.name() + " gives no hot key" + more + " " + _advice);
}

} // namespace orvane
