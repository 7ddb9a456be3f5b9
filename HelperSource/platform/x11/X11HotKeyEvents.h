#pragma once

#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11Modifiers.h"
#include "ports/EventHandlers.h"
#include "ports/HotKeyEvents.h"
#include "ports/SystemLog.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace orvane {

/// Hot keys by passive grabs on the root windows. A key that another client holds is refused at once, with every
/// combination of Caps, Num and Scroll Lock grabbed or none. When the keyboard's modifiers move to other bits the grabs
/// move along; what is then refused stays registered, is tried again at the next such change, and the log says so.
/// While another client holds the keyboard (an open menu, say) the server gives no hot key to anybody.
class X11HotKeyEvents final : public HotKeyEvents {
public:
    /// Both are borrowed. The keyboard's events pass through `handleEvent` here.
    X11HotKeyEvents(X11Keyboard &keyboard, SystemLog &log);
    X11HotKeyEvents(const X11HotKeyEvents &) = delete;
    X11HotKeyEvents &operator=(const X11HotKeyEvents &) = delete;
    ~X11HotKeyEvents() override;

    /// To be called with every event of the keyboard's connection, before anybody else sees it. True for the press, the
    /// repetitions and the release of a hot key, which are nobody else's then, whatever window they are for. Handlers run
    /// inside and may have further events handled, may register and unregister.
    bool handleEvent(const xcb_generic_event_t &event);

    [[nodiscard]] EventStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID hotKeyID,
                                                  EventTargetRef target, std::uint32_t options, EventHotKeyRef &hotKey) override;
    EventStatus unregisterEventHotKey(EventHotKeyRef hotKey) override;
    [[nodiscard]] EventTargetRef getEventDispatcherTarget() override { return this; }
    EventStatus installEventHandler(EventTargetRef target, EventHandler handler, std::span<const EventTypeSpec> types,
                                    void *userData) override;

private:
    /// A key as the server knows it.
    struct Grab {
        std::uint8_t key = 0;
        std::uint16_t state = 0; ///< modifiers without locks
        std::uint16_t locks = 0; ///< each combination of these was grabbed too
        bool operator==(const Grab &) const = default;
    };
    struct Registration {
        std::uint32_t keyCode;
        std::uint32_t modifiers;
        EventHotKeyID id;
        std::optional<Grab> grab; ///< nothing while the keyboard cannot give it
    };
    /// A hot key that is down.
    struct Held {
        EventHotKeyID id;
        std::uint32_t seen = 0;                ///< server time of the last press or repetition
        std::optional<std::uint32_t> patience; ///< milliseconds between two of them at most; asked for once
        bool repeats = false;
    };

    [[nodiscard]] std::optional<Grab> _grabFor(std::uint32_t keyCode, std::uint32_t modifiers);
    [[nodiscard]] EventStatus _take(const Grab &grab);
    void _giveBack(const Grab &grab);
    void _followModifiers();
    [[nodiscard]] bool _press(const xcb_key_press_event_t &event);
    [[nodiscard]] bool _release(std::uint8_t key);
    [[nodiscard]] bool _isRepetition(Held &held, std::uint8_t key, std::uint32_t time);
    [[nodiscard]] const Registration *_registrationFor(std::uint8_t key, std::uint16_t state) const;
    [[nodiscard]] bool _isRegistered(EventHotKeyID id) const;

    X11Keyboard &_keyboard;
    SystemLog &_log;
    EventHandlers _handlers;
    std::vector<std::uint32_t> _roots; ///< root windows
    std::vector<std::unique_ptr<Registration>> _registrations;
    std::map<std::uint8_t, Held> _held; ///< by X key code
    X11Modifiers _modifiers;            ///< those that the grabs were made with
};

} // namespace orvane
