#pragma once

#include <cstdint>
#include <string>

namespace orvane {

/// What a window says of itself, in the window system's own words. UTF-8 throughout.
struct ApplicationWindow {
    std::string className;     ///< the class of WM_CLASS, or the application id of Wayland
    std::string title;         ///< as it stands in the title bar
    std::string gtkBusName;    ///< unique name on the session bus that GTK writes on its windows; may be empty
    std::string gtkWindowPath; ///< the window's object there; may be empty
    std::uint32_t pid = 0;     ///< 0: unknown
    bool isDesktop = false;    ///< it is the desktop's background
    bool isLocal = true;       ///< its program runs on this machine
    bool isOnX11 = true;
};

} // namespace orvane
