#pragma once

#include "ports/Workspace.h"

namespace orvane {

/// Opens folders with the desktop's own opener, `xdg-open`, where there is a desktop.
class CommandLineWorkspace final : public Workspace {
public:
    /// With `enabled` false, nothing is ever opened.
    explicit CommandLineWorkspace(bool enabled) : _enabled(enabled) {}
    /// Starts the opener in a session of its own and does not wait for it. False without a display (neither DISPLAY nor
    /// WAYLAND_DISPLAY) or opener.
    bool openFile(std::string_view path) override;

private:
    bool _enabled;
};

} // namespace orvane
