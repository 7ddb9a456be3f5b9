#pragma once

#include <cstdint>
#include <optional>

struct xcb_connection_t;
struct xkb_keymap;

namespace orvane {

/// Which bits of an X key event's state stand for what.
struct X11Modifiers {
    std::uint16_t alt = 0;   ///< 0 where no key is Alt
    std::uint16_t super = 0; ///< 0 where no key is Super
    std::uint16_t locks = 0; ///< Caps Lock, Num Lock, Scroll Lock, as far as they are modifiers
    bool operator==(const X11Modifiers &) const = default;

    /// State bits of a Carbon mask: command is Super, option Alt. Nothing when the mask has other bits or the keyboard lacks
    /// one of the modifiers.
    [[nodiscard]] std::optional<std::uint16_t> ofCarbonModifiers(std::uint32_t modifiers) const;
    /// An event's state without locks, keyboard group and mouse buttons.
    [[nodiscard]] std::uint16_t relevantState(std::uint16_t state) const;
};

/// Looks up the server's modifier map: a bit stands for what the keys do that are attached to it, by the keymap's symbols.
/// Nothing is taken for granted but Shift and Control, which the protocol fixes.
[[nodiscard]] X11Modifiers X11ModifiersOfServer(xcb_connection_t *connection, xkb_keymap *keymap);

} // namespace orvane
