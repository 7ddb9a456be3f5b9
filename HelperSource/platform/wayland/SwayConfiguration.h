#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// A set of modifiers as sway names them; bits in no particular convention.
struct SwayModifiers {
    bool hasShift = false;
    bool hasControl = false;
    bool hasAlt = false;
    bool hasSuper = false;
    bool hasOther = false; ///< one that no hot key of ours can have
    bool operator==(const SwayModifiers &) const = default;
};

/// Nothing for a mask with other bits than command (Super), shift, option (Alt) and control.
[[nodiscard]] std::optional<SwayModifiers> SwayModifiersOfCarbon(std::uint32_t modifiers);
/// "Ctrl+Shift+", each name followed by a plus; empty for none.
[[nodiscard]] std::string SwayNameOf(const SwayModifiers &modifiers);

/// Whether a configuration's text binds the combination in the ordinary mode, by key code or by symbol. `keysym` is the one on the key,
/// nothing when it has none. Variables (`set $mod Mod4`) are followed; files that the text includes are not read, and bindings for
/// releases, other input devices, mouse buttons and other groups do not count. The text may be anything.
[[nodiscard]] bool SwayConfigurationBinds(std::string_view text, const SwayModifiers &modifiers, std::uint32_t keyCode,
                                          std::optional<std::uint32_t> keysym);

} // namespace orvane
