#pragma once

#include "platform/x11/X11Modifiers.h"

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

struct xkb_context;
struct xkb_keymap;

namespace orvane {

/// The server's keyboard as it is now: its keymap, the group in use, its modifiers. Follows the server by the events that
/// it is handed. Main thread only.
class X11Keyboard {
public:
    /// What an event changed.
    enum class Change { Nothing, Group, Keymap };

    /// The connection is borrowed and may be shared: only XKB's events for keyboards, maps and groups, and detectable
    /// auto-repeat, are switched on. Null when the server has no XKB.
    [[nodiscard]] static std::unique_ptr<X11Keyboard> create(xcb_connection_t *connection);
    X11Keyboard(const X11Keyboard &) = delete;
    X11Keyboard &operator=(const X11Keyboard &) = delete;
    ~X11Keyboard();

    /// To be called with every event of the connection.
    Change handleEvent(const xcb_generic_event_t &event);

    [[nodiscard]] xcb_connection_t *connection() const { return _connection; }
    [[nodiscard]] xkb_context *context() const { return _context.get(); }
    /// Null when it could not be fetched.
    [[nodiscard]] const std::shared_ptr<xkb_keymap> &keymap();
    /// Index of the layout in use, from 0.
    [[nodiscard]] std::uint32_t group();
    [[nodiscard]] const X11Modifiers &modifiers();
    /// Grows whenever the keymap or the group is another.
    [[nodiscard]] std::uint64_t generation() const { return _generation; }
    /// How long a key must be held until the server repeats it; nothing when it does not repeat that key. Asks the server.
    [[nodiscard]] std::optional<std::chrono::milliseconds> repeatDelay(std::uint8_t keyCode);

private:
    struct Unref {
        void operator()(xkb_context *context) const noexcept;
    };
    X11Keyboard() = default;
    [[nodiscard]] bool _init(xcb_connection_t *connection);
    [[nodiscard]] bool _selectEvents();
    void _fetch();

    xcb_connection_t *_connection = nullptr;
    std::unique_ptr<xkb_context, Unref> _context;
    std::shared_ptr<xkb_keymap> _keymap;
    X11Modifiers _modifiers;
    std::int32_t _device = 0; ///< the core keyboard's
    std::uint32_t _group = 0;
    std::uint64_t _generation = 1;
    std::uint8_t _firstEvent = 0; ///< XKB's
    bool _isStale = true;
};

} // namespace orvane
