#pragma once

#include "ports/Workspace.h"

#include <functional>
#include <utility>

namespace orvane {

/// Opens folders with the desktop's own opener, `xdg-open`, where there is a desktop.
class CommandLineWorkspace final : public Workspace {
public:
    /// While `isEnabled` is false, nothing is opened.
    explicit CommandLineWorkspace(std::function<bool()> isEnabled) : _isEnabled(std::move(isEnabled)) {}
    /// Starts the opener in a session of its own and does not wait for it. False without a display (neither DISPLAY nor
    /// WAYLAND_DISPLAY) or opener.
    bool openFile(std::string_view path) override;

private:
    std::function<bool()> _isEnabled;
};

} // namespace orvane
