#pragma once

#include "platform/wayland/WaylandPopUpMenus.h"

#include <memory>

namespace orvane {

/// A small window of its own with a menu and a line to search it; the compositor decides where it is. Escape ends it, and so does
/// going to another window.
class MenuChooser final {
public:
    using End = std::function<void(std::optional<MenuItem> chosen)>;

    /// Shows it at once. `end` is called once at most and must not destroy the chooser.
    MenuChooser(Menu &menu, End end);
    MenuChooser(const MenuChooser &) = delete;
    MenuChooser &operator=(const MenuChooser &) = delete;
    ~MenuChooser();

private:
    class Window;
    std::unique_ptr<Window> _window;
};

/// Pop-up menus where windows cannot be put under the pointer: on GNOME and weston.
class ChooserPopUpMenus final : public WaylandPopUpMenus {
public:
    using WaylandPopUpMenus::WaylandPopUpMenus;
    ~ChooserPopUpMenus() override;

protected:
    void _open(Menu &menu, const QPoint &offset) override;
    void _close() override;

private:
    std::unique_ptr<MenuChooser> _chooser;
};

} // namespace orvane
