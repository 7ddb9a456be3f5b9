#pragma once

#include <QString>

#include <string>

namespace orvane {

/// Whether this session has a service through which the helper can get a hot key, where the window system itself gives none: KDE's,
/// sway's, or the desktop portal's. What the helper then says counts for more. Asks the session bus.
[[nodiscard]] bool desktopGivesHotKeys();

/// What a key is bound to where the desktop gives programs no hot keys.
inline constexpr const char *HotKeyCommand = "orvane menu";

/// How to bind a key to that command, in the words that the helper's log and `orvane menu --help` have, in the user's language.
/// `desktops` is the value of XDG_CURRENT_DESKTOP.
[[nodiscard]] QString hotKeyInstructions(const QString &desktops);

/// What the running helper says of its hot key, in the user's language.
[[nodiscard]] QString hotKeyStatement(const std::string &statement, const QString &desktops);

} // namespace orvane
