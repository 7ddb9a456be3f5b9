#pragma once

#include "LoginItem.h"

#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// Starting at login by the desktops' own rules (freedesktop.org, Desktop Application Autostart 0.5): a file in
/// "autostart" of the user's configuration folder stands before one of the same name in a system's folder, and `Hidden=true` in it
/// keeps that from being started.
class XDGAutostart final : public LoginItem {
public:
    /// Folders with "autostart" in them, the user's and the system's in order, the name of the file, and what is written where
    /// there is none yet.
    XDGAutostart(std::string configurationFolder, std::vector<std::string> systemFolders, std::string fileName, std::string entry);

    [[nodiscard]] bool isEnabled() override;
    /// Changes the user's own file, or makes one from the system's; every other line stays.
    [[nodiscard]] bool setEnabled(bool isEnabled) override;

    /// $XDG_CONFIG_HOME, else `~/.config`; $XDG_CONFIG_DIRS, else `/etc/xdg`.
    [[nodiscard]] static std::string configurationFolderOfEnvironment(const std::string &home);
    [[nodiscard]] static std::vector<std::string> systemFoldersOfEnvironment();

private:
    [[nodiscard]] std::optional<std::string> _text() const;

    std::string _folder; ///< the user's "autostart"
    std::vector<std::string> _systemFolders;
    std::string _fileName;
    std::string _entry;
};

} // namespace orvane
