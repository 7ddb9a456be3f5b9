#pragma once

#include <string>
#include <string_view>

namespace orvane {

/// How a key is bound to a command, for where the desktop gives programs no hot keys.
/// `currentDesktop` is the value of XDG_CURRENT_DESKTOP (names separated by colons; may be empty), `command` what to bind. English,
/// several lines, without a line feed at the end.
[[nodiscard]] std::string ORVHotKeyInstructions(std::string_view currentDesktop, std::string_view command = "orvane menu");
/// The same after a sentence that says why it is needed.
[[nodiscard]] std::string ORVHotKeyAdvice(std::string_view currentDesktop, std::string_view command = "orvane menu");

} // namespace orvane
