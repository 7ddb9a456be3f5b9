#pragma once

#include "ports/Menu.h"

#include <memory>
#include <string_view>

namespace orvane {

/// One item in the status bar; shown as long as it lives and has not been removed. Main thread only.
class StatusItem {
public:
    virtual ~StatusItem() = default;
    virtual void setTitle(std::string_view title) = 0;
    /// Name of an image among the application's resources.
    virtual void setImage(std::string_view name) = 0;
    /// Whether the item is highlighted while its menu is open, where the desktop leaves that to the program.
    virtual void setHighlightMode(bool highlights) = 0;
    /// The menu that a click opens; borrowed, and followed as it changes. Null for none.
    virtual void setMenu(Menu *menu) = 0;
};

/// The desktop's status bar (its tray). Main thread only.
class StatusBar {
public:
    /// A length that follows the item's content.
    static constexpr double VariableLength = -1.0;

    virtual ~StatusBar() = default;
    /// A new item, shown as soon as a status bar is there: one that starts later, or goes and comes back, shows it too.
    [[nodiscard]] virtual std::shared_ptr<StatusItem> statusItemWithLength(double length) = 0;
    /// Takes the item away; null does nothing.
    virtual void removeStatusItem(const std::shared_ptr<StatusItem> &item) = 0;
};

} // namespace orvane
