#pragma once

#include <cstdint>
#include <optional>

namespace orvane {

/// X key code of the key that stands where the Mac's virtual key code `keyCode` stands; nothing for a number that is no
/// key, or whose key has no X key code (Fn).
[[nodiscard]] std::optional<std::uint8_t> X11KeyCodeOfVirtualKeyCode(std::uint32_t keyCode);

/// Whether it is a key of the numeric keypad, whose digits need Num Lock on PC keyboards.
[[nodiscard]] bool X11IsKeypadKey(std::uint32_t keyCode);

} // namespace orvane
