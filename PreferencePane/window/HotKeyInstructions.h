#pragma once

#include <QString>

namespace orvane {

/// Whether this session has a service through which the helper can get a hot key, where the window system itself gives none: KDE's,
/// sway's, or the desktop portal's. What the helper then says counts for more. Asks the session bus.
[[nodiscard]] bool desktopGivesHotKeys();

/// How to bind a key to a command on a desktop that gives programs no hot keys. `desktops` is the value of XDG_CURRENT_DESKTOP.
[[nodiscard]] QString hotKeyInstructions(const QString &desktops);

} // namespace orvane
