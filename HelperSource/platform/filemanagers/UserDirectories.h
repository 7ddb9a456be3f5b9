#pragma once

#include <string>
#include <string_view>

namespace orvane {

/// The value of XDG_DESKTOP_DIR in the text of a user-dirs.dirs file (xdg-user-dirs 0.18, user-dirs.dirs(5)): a double-quoted
/// absolute path, or one that begins with $HOME. Empty where the text has none that is valid; the last valid one counts.
[[nodiscard]] std::string desktopDirectoryInText(std::string_view text, const std::string &home);
/// The folder that the desktop shows: what user-dirs.dirs in `configurationFolder` says, else "Desktop" in the home folder.
/// It need not exist.
[[nodiscard]] std::string desktopDirectory(const std::string &configurationFolder, const std::string &home);

} // namespace orvane
