#pragma once

#include "platform/filemanagers/ApplicationWindow.h"
#include "ports/SystemLog.h"

#include <memory>
#include <optional>

namespace orvane {

/// The window that the user works in. Main thread only.
class ActiveApplication {
public:
    virtual ~ActiveApplication() = default;
    /// The main window of the active application (that of a dialog's owner, where a dialog is active). While a window of our
    /// own or a panel has the focus, the one that had it before. Nothing when there is none or where that cannot be known.
    [[nodiscard]] virtual std::optional<ApplicationWindow> window() = 0;
    /// To be called before a window of ours takes the focus, where the window system tells of no changes by itself.
    virtual void noteNow() {}
};

/// The one for this session. Reads the environment once, writes into the log what it chose, and gives one that knows nothing
/// where the window system cannot be asked; never nothing. It needs the application object of Qt.
[[nodiscard]] std::unique_ptr<ActiveApplication> makeActiveApplication(SystemLog &log);

} // namespace orvane
