#pragma once

#include "ports/Menu.h"

#include <cstdint>

namespace orvane {

/// A point on the screen: points from the lower left corner of the primary screen, y upwards.
struct ScreenPoint {
    double x = 0;
    double y = 0;
    bool operator==(const ScreenPoint &) const = default;
};

/// An event that a program makes up.
struct SyntheticEvent {
    std::uint32_t type = 0;
    ScreenPoint location;
    std::uint32_t modifierFlags = 0;
    double timestamp = 0;
    std::int64_t windowNumber = 0;
    std::int16_t subtype = 0;
    std::int64_t data1 = 0;
    std::int64_t data2 = 0;
    bool operator==(const SyntheticEvent &) const = default;
};

/// The window that serves as the frame of reference of pop-up menus. It need never be shown.
class ReferenceWindow {
public:
    virtual ~ReferenceWindow() = default;
    [[nodiscard]] virtual std::int64_t windowNumber() = 0;
};

/// Menus that come up anywhere on the screen. Main thread only.
class PopUpMenus {
public:
    virtual ~PopUpMenus() = default;
    /// Where the mouse pointer is; the last known place where the desktop does not tell.
    [[nodiscard]] virtual ScreenPoint mouseLocation() = 0;
    /// Shows the menu with its upper left corner at the event's location (kept inside the screen) and returns when it has closed;
    /// a chosen item's action has then run, after the menu was gone from the screen. The active application stays what it is
    /// wherever the desktop allows it. While a menu is up already nothing happens.
    virtual void popUpContextMenu(Menu &menu, const SyntheticEvent &event, ReferenceWindow &window) = 0;
};

} // namespace orvane
