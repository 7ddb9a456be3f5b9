#include "wiring/DesktopHotKeys.h"

#include "hotkeys/HotKeyAdvice.h"
#include "platform/qt/QtX11Events.h"
#include "platform/wayland/WaylandHotKeys.h"
#include "platform/wayland/WaylandKeyboardLayouts.h"
#include "platform/x11/X11HotKeyEvents.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11KeyboardLayouts.h"
#include "wiring/StatedHotKeys.h"

#include <QGuiApplication>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <span>

namespace orvane {

namespace {

/// For window systems that give no hot keys: every registration is refused.
class NullHotKeyEvents final : public HotKeyEvents {
public:
    explicit NullHotKeyEvents(std::function<void()> refused) : _refused(std::move(refused)) {}

    EventStatus registerEventHotKey(std::uint32_t, std::uint32_t, EventHotKeyID, EventTargetRef, std::uint32_t, EventHotKeyRef &) override {
        _refused();
        return EventInternalError;
    }
    EventStatus unregisterEventHotKey(EventHotKeyRef) override { return EventInternalError; }
    EventTargetRef getEventDispatcherTarget() override { return this; }
    EventStatus installEventHandler(EventTargetRef, EventHandler, std::span<const EventTypeSpec>, void *) override { return EventNoError; }

private:
    std::function<void()> _refused;
};

/// What to do where this desktop gives no hot key.
std::string adviceForThisDesktop() {
    const char *const desktop = std::getenv("XDG_CURRENT_DESKTOP");
    return ORVHotKeyAdvice(desktop == nullptr ? "" : desktop);
}

} // namespace

DesktopHotKeys::DesktopHotKeys(const DesktopHotKeysPorts &ports) : _log(ports.log), _statement(ports.stateDirectory) {
    if (!_useX11(ports)) {
        if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
            _useWayland(ports);
        } else {
            _useNothing();
        }
    }
    if (_layouts != nullptr) {
        _keyPorts.emplace(SGKeyComboPorts{ports.assertions, *_layouts, ports.resources, ports.textCase});
        SGKeyCombo::setSharedPorts(&*_keyPorts);
    }
    _centerPorts.emplace(SGHotKeyCenterPorts{ports.assertions, *_events});
}

DesktopHotKeys::~DesktopHotKeys() {
    SGKeyCombo::setSharedPorts(nullptr);
}

void DesktopHotKeys::_state(const std::string &statement) {
    if (!statement.empty() && statement != _lastStatement) {
        _lastStatement = statement;
        _log.log(statement);
    }
    _statement.say(statement);
}

bool DesktopHotKeys::_useX11(const DesktopHotKeysPorts &ports) {
    xcb_connection_t *const connection = QtX11Events::connection();
    _keyboard = connection == nullptr ? nullptr : X11Keyboard::create(connection);
    if (_keyboard == nullptr) {
        return false;
    }
    auto grabs = std::make_unique<X11HotKeyEvents>(*_keyboard, ports.log);
    _filter =
        std::make_unique<QtX11Events>([hotKeys = grabs.get()](const xcb_generic_event_t &event) { return hotKeys->handleEvent(event); });
    _native = std::move(grabs);
    _events = std::make_unique<StatedHotKeys>(*_native, [this](const std::string &statement) { _state(statement); });
    _layouts = std::make_unique<X11KeyboardLayouts>(*_keyboard);
    return true;
}

void DesktopHotKeys::_useWayland(const DesktopHotKeysPorts &ports) {
    auto keys = makeWaylandHotKeys(ports.session, adviceForThisDesktop(), ports.log);
    keys->stated = [this](const std::string &statement) { _statement.say(statement); }; // the log has it already
    _events = std::move(keys);
    _layouts = std::make_unique<WaylandKeyboardLayouts>(&ports.session);
}

void DesktopHotKeys::_useNothing() {
    _events = std::make_unique<NullHotKeyEvents>([this, advice = adviceForThisDesktop()] { _state(advice); });
}

} // namespace orvane
