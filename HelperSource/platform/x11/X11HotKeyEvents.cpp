#include "platform/x11/X11HotKeyEvents.h"

#include "platform/x11/X11KeyCodes.h"
#include "platform/x11/X11Reply.h"

#include <algorithm>
#include <string>
#include <utility>

namespace orvane {

namespace {

/// Calls `visit(state)` for the modifiers with each combination of the locks.
template <typename Visit> void forEachState(std::uint16_t state, std::uint16_t locks, Visit visit) {
    unsigned combination = 0;
    do {
        visit(static_cast<std::uint16_t>(state | combination));
        combination = (combination - locks) & locks; // the next subset of the locks' bits
    } while (combination != 0);
}

} // namespace

X11HotKeyEvents::X11HotKeyEvents(X11Keyboard &keyboard, SystemLog &log) : _keyboard(keyboard), _log(log), _modifiers(keyboard.modifiers()) {
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(keyboard.connection())); screen.rem > 0; xcb_screen_next(&screen)) {
        _roots.push_back(screen.data->root);
    }
}

X11HotKeyEvents::~X11HotKeyEvents() {
    for (const auto &registration : _registrations) {
        if (registration->grab) {
            _giveBack(*registration->grab);
        }
    }
    xcb_flush(_keyboard.connection());
}

EventStatus X11HotKeyEvents::registerEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID hotKeyID,
                                                 EventTargetRef target, std::uint32_t options, EventHotKeyRef &hotKey) {
    const auto grab = target == this && options == 0 ? _grabFor(keyCode, modifiers) : std::nullopt;
    if (!grab) {
        return EventHotKeyInvalidError;
    }
    if (_registrationFor(grab->key, grab->state) != nullptr) { // the server would let one client grab a key twice
        return EventHotKeyExistsError;
    }
    if (const EventStatus status = _take(*grab); status != EventNoError) {
        return status;
    }
    _registrations.push_back(std::make_unique<Registration>(Registration{keyCode, modifiers, hotKeyID, grab}));
    hotKey = _registrations.back().get();
    return EventNoError;
}

EventStatus X11HotKeyEvents::unregisterEventHotKey(EventHotKeyRef hotKey) {
    const auto found = std::find_if(_registrations.begin(), _registrations.end(), [&](const auto &each) { return each.get() == hotKey; });
    if (found == _registrations.end()) {
        return EventHotKeyInvalidError;
    }
    if ((*found)->grab) {
        _giveBack(*(*found)->grab);
        xcb_flush(_keyboard.connection());
    }
    _registrations.erase(found);
    return EventNoError;
}

EventStatus X11HotKeyEvents::installEventHandler(EventTargetRef target, EventHandler handler, std::span<const EventTypeSpec> types,
                                                 void *userData) {
    if (target != this) {
        return EventInternalError;
    }
    _handlers.install(handler, types, userData);
    return EventNoError;
}

std::optional<X11HotKeyEvents::Grab> X11HotKeyEvents::_grabFor(std::uint32_t keyCode, std::uint32_t modifiers) {
    const auto key = X11KeyCodeOfVirtualKeyCode(keyCode);
    const auto state = _modifiers.ofCarbonModifiers(modifiers);
    const xcb_setup_t *setup = xcb_get_setup(_keyboard.connection());
    if (!key || !state || *key < setup->min_keycode || *key > setup->max_keycode) {
        return std::nullopt;
    }
    return Grab{*key, *state, _modifiers.locks};
}

EventStatus X11HotKeyEvents::_take(const Grab &grab) {
    struct Attempt {
        xcb_void_cookie_t cookie;
        std::uint32_t root;
        std::uint16_t state;
    };
    xcb_connection_t *const connection = _keyboard.connection();
    std::vector<Attempt> attempts;
    for (const std::uint32_t root : _roots) {
        forEachState(grab.state, grab.locks, [&](std::uint16_t state) {
            attempts.push_back(
                {xcb_grab_key_checked(connection, 0, root, state, grab.key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC), root, state});
        });
    }
    EventStatus status = EventNoError;
    std::vector<Attempt> taken;
    for (const Attempt &attempt : attempts) { // all are on their way: one round trip answers them
        const X11Reply<xcb_generic_error_t> error(xcb_request_check(connection, attempt.cookie));
        if (!error) {
            taken.push_back(attempt);
        } else {
            status = error->error_code == XCB_ACCESS ? EventHotKeyExistsError : EventInternalError;
        }
    }
    if (xcb_connection_has_error(connection) != 0) {
        return EventInternalError;
    }
    if (status != EventNoError) {
        for (const Attempt &attempt : taken) {
            xcb_ungrab_key(connection, grab.key, attempt.root, attempt.state);
        }
        xcb_flush(connection);
    }
    return status;
}

void X11HotKeyEvents::_giveBack(const Grab &grab) {
    for (const std::uint32_t root : _roots) {
        forEachState(grab.state, grab.locks, [&](std::uint16_t state) { xcb_ungrab_key(_keyboard.connection(), grab.key, root, state); });
    }
}

void X11HotKeyEvents::_followModifiers() {
    const X11Modifiers now = _keyboard.modifiers();
    if (now == _modifiers && std::all_of(_registrations.begin(), _registrations.end(), [](const auto &each) { return each->grab; })) {
        return;
    }
    std::vector<std::pair<Registration *, bool>> all; // with whether the key was grabbed
    for (const auto &registration : _registrations) {
        all.emplace_back(registration.get(), registration->grab.has_value());
        if (registration->grab) {
            _giveBack(*registration->grab);
            registration->grab.reset();
        }
    }
    _modifiers = now;
    for (const auto &[registration, wasGrabbed] : all) {
        const auto grab = _grabFor(registration->keyCode, registration->modifiers);
        if (grab && _registrationFor(grab->key, grab->state) == nullptr && _take(*grab) == EventNoError) {
            registration->grab = grab;
        } else if (wasGrabbed) {
            _log.log("The keyboard has changed and no longer gives the hot key with key code " + std::to_string(registration->keyCode));
        }
    }
    xcb_flush(_keyboard.connection());
}

bool X11HotKeyEvents::handleEvent(const xcb_generic_event_t &event) {
    if (_keyboard.handleEvent(event) == X11Keyboard::Change::Keymap) {
        _followModifiers();
        return false;
    }
    switch (event.response_type) { // keys that a client sends, not the keyboard, carry another bit here and do not count
    case XCB_KEY_PRESS:
        return _press(reinterpret_cast<const xcb_key_press_event_t &>(event));
    case XCB_KEY_RELEASE:
        return _release(reinterpret_cast<const xcb_key_release_event_t &>(event).detail);
    default:
        return false;
    }
}

bool X11HotKeyEvents::_press(const xcb_key_press_event_t &event) {
    if (const auto held = _held.find(event.detail); held != _held.end()) {
        if (_isRepetition(held->second, event.detail, event.time)) {
            return true;
        }
        _held.erase(held);
    }
    if (std::find(_roots.begin(), _roots.end(), event.event) == _roots.end()) {
        return false; // typed into a window of this program
    }
    const Registration *const registration = _registrationFor(event.detail, _modifiers.relevantState(event.state));
    if (registration == nullptr) {
        return false;
    }
    const EventHotKeyID id = registration->id;
    _held[event.detail] = {id, event.time, std::nullopt, false};
    _handlers.dispatchHotKey(EventHotKeyPressed, id); // registrations may be others from here on
    return true;
}

bool X11HotKeyEvents::_release(std::uint8_t key) {
    const auto held = _held.find(key);
    if (held == _held.end()) {
        return false;
    }
    const EventHotKeyID id = held->second.id;
    _held.erase(held);
    if (_isRegistered(id)) {
        _handlers.dispatchHotKey(EventHotKeyReleased, id);
    }
    return true;
}

/// Whether a press of a key that is down comes from holding it. It does not when the key was released while another
/// client had the keyboard, for instance after a menu of ours was closed by the mouse with the key still down: repetitions
/// then stop coming, so one that is late is a press of its own.
bool X11HotKeyEvents::_isRepetition(Held &held, std::uint8_t key, std::uint32_t time) {
    constexpr std::uint32_t Slack = 250; // milliseconds
    if (!held.patience) {
        const auto delay = _keyboard.repeatDelay(key);
        held.repeats = delay.has_value();
        held.patience = delay ? static_cast<std::uint32_t>(delay->count()) + Slack : 0;
    }
    const bool isRepetition = held.repeats && time - held.seen <= *held.patience; // server time wraps around
    held.seen = time;
    return isRepetition;
}

const X11HotKeyEvents::Registration *X11HotKeyEvents::_registrationFor(std::uint8_t key, std::uint16_t state) const {
    const auto found = std::find_if(_registrations.begin(), _registrations.end(),
                                    [&](const auto &each) { return each->grab && each->grab->key == key && each->grab->state == state; });
    return found == _registrations.end() ? nullptr : found->get();
}

bool X11HotKeyEvents::_isRegistered(EventHotKeyID id) const {
    return std::any_of(_registrations.begin(), _registrations.end(), [&](const auto &each) { return each->id == id; });
}

} // namespace orvane
