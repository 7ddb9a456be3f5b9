#pragma once

#include <optional>
#include <string>

namespace orvane {

/// The keymap that the compositor has on its keyboard, in XKB's text format (version 1), asked on Qt's own Wayland connection. Nothing
/// where Qt does not run on Wayland, where there is no keyboard, or in a build that cannot ask.
[[nodiscard]] std::optional<std::string> WaylandSeatKeymapText();

} // namespace orvane
