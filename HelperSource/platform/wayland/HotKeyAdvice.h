#pragma once

#include <string>
#include <string_view>

namespace orvane {

/// What the user can do where the desktop gives programs no hot keys: which command to bind to a key and how that is done there.
/// `currentDesktop` is the value of XDG_CURRENT_DESKTOP (names separated by colons; may be empty), `command` what to bind. English,
/// several lines, without a line feed at the end.
[[nodiscard]] std::string ORVHotKeyAdvice(std::string_view currentDesktop, std::string_view command = "orvane menu");

} // namespace orvane
