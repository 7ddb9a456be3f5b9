#pragma once

#include "platform/filemanagers/ApplicationWindow.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

namespace orvane {

/// A reply of xcb's, freed at the end.
template <typename Reply> struct X11Free {
    void operator()(Reply *reply) const noexcept { std::free(reply); }
};
template <typename Reply> using X11Reply = std::unique_ptr<Reply, X11Free<Reply>>;

/// What kind of window it is, as far as the user's work is concerned.
enum class X11WindowKind { Application, Passing, Own };

/// A connection of its own to the X server, through which windows' properties are read. One thread.
class X11Windows {
public:
    /// Connects to the display that the environment names.
    X11Windows();
    X11Windows(const X11Windows &) = delete;
    X11Windows &operator=(const X11Windows &) = delete;
    ~X11Windows();

    /// False where there is no X server, and for ever once the connection is broken.
    [[nodiscard]] bool isUsable() const;
    [[nodiscard]] int descriptor() const;
    /// Asks to be told of changes to the root window's properties.
    void watchRoot();
    /// Takes what has arrived; true when the active window may have changed.
    [[nodiscard]] bool takeEvents();

    /// The window that the window manager calls active (EWMH 1.5, _NET_ACTIVE_WINDOW; the first value, some write two); 0: none.
    [[nodiscard]] xcb_window_t activeWindow();
    /// `passing`: panels, their menus and notifications, which take the focus only for a moment.
    [[nodiscard]] X11WindowKind kindOf(xcb_window_t window);
    /// Whether it exists and is on the screen.
    [[nodiscard]] bool isViewable(xcb_window_t window);
    /// What the window, or the one that it is a dialog of, says of itself. Nothing when it is gone.
    [[nodiscard]] std::optional<ApplicationWindow> describe(xcb_window_t window);

private:
    struct Atoms {
        xcb_atom_t activeWindow, windowType, pid, name, gtkBusName, gtkWindowPath, desktopType, utf8;
        std::vector<xcb_atom_t> passingTypes;
    };
    [[nodiscard]] xcb_atom_t _atom(std::string_view name);
    [[nodiscard]] X11Reply<xcb_get_property_reply_t> _property(xcb_window_t window, xcb_atom_t property);
    [[nodiscard]] std::vector<std::uint32_t> _words(xcb_window_t window, xcb_atom_t property);
    [[nodiscard]] std::string _text(xcb_window_t window, xcb_atom_t property);
    [[nodiscard]] xcb_window_t _owner(xcb_window_t window);
    [[nodiscard]] bool _isOnThisMachine(xcb_window_t window);

    xcb_connection_t *_connection;
    xcb_window_t _root = 0;
    Atoms _atoms = {};
};

} // namespace orvane
