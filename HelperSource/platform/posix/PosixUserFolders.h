#pragma once

#include "ports/UserFolders.h"

namespace orvane {

/// The user's folders by the XDG base directory rules, version 0.8; values that are not absolute are ignored, as they ask.
/// The environment is read at each question. Nothing is created.
class PosixUserFolders final : public UserFolders {
public:
    /// $XDG_DATA_HOME, else `~/.local/share`.
    [[nodiscard]] std::string applicationSupportDirectory() override;
    /// $HOME, else what the user database says, else "/".
    [[nodiscard]] std::string homeDirectory() override;
    /// Folder of Orvane's log and state: `orvane` in $XDG_STATE_HOME, else in `~/.local/state`.
    [[nodiscard]] std::string stateDirectory();
    /// The file that holds the preference domain `org.orvane.ORVPrefPane`.
    [[nodiscard]] std::string preferencesFile();
};

} // namespace orvane
