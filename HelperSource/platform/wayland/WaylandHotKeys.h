#pragma once

#include "platform/wayland/HotKeyService.h"
#include "ports/EventHandlers.h"
#include "ports/HotKeyEvents.h"
#include "ports/SystemLog.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace orvane {

class QtDBusSession;

/// Hot keys where no program may listen to the keyboard by itself: each is taken by the first of several services that really gives
/// it. Where none does, the registration is refused, and the log says what the user can do instead. What is taken is given back
/// with this object. A key for which the desktop asks the user first counts as registered; what came of it is in the log and in
/// `statement`.
class WaylandHotKeys final : public HotKeyEvents {
public:
    /// In the order in which they are tried. `advice` is for when none gives the key.
    WaylandHotKeys(std::vector<std::unique_ptr<HotKeyService>> services, std::string advice, SystemLog &log);
    WaylandHotKeys(const WaylandHotKeys &) = delete;
    WaylandHotKeys &operator=(const WaylandHotKeys &) = delete;
    ~WaylandHotKeys() override;

    /// Called with `statement` after each attempt to take a key, and with an empty one when a key is given back. May be empty.
    std::function<void(const std::string &statement)> stated;
    /// How the hot key stands, in a sentence or two for the user; what to do where there is none.
    [[nodiscard]] const std::string &statement() const { return _statement; }

    [[nodiscard]] EventStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID hotKeyID,
                                                  EventTargetRef target, std::uint32_t options, EventHotKeyRef &hotKey) override;
    EventStatus unregisterEventHotKey(EventHotKeyRef hotKey) override;
    [[nodiscard]] EventTargetRef getEventDispatcherTarget() override { return this; }
    EventStatus installEventHandler(EventTargetRef target, EventHandler handler, std::span<const EventTypeSpec> types,
                                    void *userData) override;

private:
    struct Registration {
        EventHotKeyID id;
        int slot = 0;
        HotKeyService *service = nullptr;
    };

    [[nodiscard]] int _freeSlot() const;
    [[nodiscard]] const Registration *_registrationFor(const HotKeyService &service, int slot) const;
    void _dispatch(const HotKeyService &service, int slot, std::uint32_t kind);
    void _decide(const HotKeyService &service, int slot, bool isTaken, const std::string &what);
    void _state(std::string statement);

    std::vector<std::unique_ptr<HotKeyService>> _services;
    const std::string _advice;
    SystemLog &_log;
    std::string _statement;
    EventHandlers _handlers;
    std::vector<std::unique_ptr<Registration>> _registrations;
};

/// Those of this session: KGlobalAccel, sway's IPC, the desktop portal. `session` and `log` are borrowed. Needs the application to be
/// loaded.
[[nodiscard]] std::unique_ptr<WaylandHotKeys> makeWaylandHotKeys(QtDBusSession &session, std::string advice, SystemLog &log);

} // namespace orvane
