#pragma once

#include <optional>
#include <string>

namespace orvane {

/// The file manager's window that the user works in. Main thread only.
class FrontWindow {
public:
    virtual ~FrontWindow() = default;
    /// Whether a file manager is the active application. Windows of our own that happen to be up do not count.
    [[nodiscard]] virtual bool fileManagerIsActive() = 0;
    /// Absolute path of the folder that the active file manager's front window shows (of its front tab). Nothing when there is no
    /// window, when its place is no local folder, or when in doubt. Never starts a program; takes 300 ms at most.
    [[nodiscard]] virtual std::optional<std::string> folder() = 0;
};

} // namespace orvane
