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

/// What the two above are put together from, one after the other with a blank between them, "%1" standing for the command: for programs
/// that say the same in another language or less of it. The texts are English and live as long as the program.
struct ORVHotKeyTexts {
    const char *why;   ///< a sentence: why it is needed
    const char *start; ///< what to do, up to a colon
    const char *place; ///< where on that desktop
    const char *shell; ///< the same for a terminal, in several lines; empty where the place is as short
};
[[nodiscard]] ORVHotKeyTexts ORVHotKeyTextsOf(std::string_view currentDesktop);

} // namespace orvane
