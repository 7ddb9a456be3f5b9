#pragma once

#include "platform/qt/QtApplication.h"
#include "ports/PopUpMenus.h"
#include "ports/SystemLog.h"

#include <functional>
#include <memory>
#include <optional>

#include <QPoint>

class QEventLoop;

namespace orvane {

/// Pop-up menus where only the compositor knows where the pointer is, places windows and gives the keyboard. What it is that shows the
/// menu, subclasses decide; the rest is here. Main thread only.
///
/// A request that comes while a menu is open does nothing; one that comes while a window of ours waits for the user's answer brings
/// that window to the front instead.
class WaylandPopUpMenus : public PopUpMenus {
public:
    /// `beforeShowing` is called each time before a window of ours is shown: the last moment in which the compositor names the
    /// application that the user works in. May be empty.
    WaylandPopUpMenus(QtApplication &application, std::function<void()> beforeShowing);
    WaylandPopUpMenus(const WaylandPopUpMenus &) = delete;
    WaylandPopUpMenus &operator=(const WaylandPopUpMenus &) = delete;
    ~WaylandPopUpMenus() override;

    /// Where the pointer was last over a window of ours; the middle of the primary screen before that.
    [[nodiscard]] ScreenPoint mouseLocation() final;
    void popUpContextMenu(Menu &menu, const SyntheticEvent &event, ReferenceWindow &window) final;

protected:
    /// Shows the menu. `offset` leads from the pointer to the menu's upper left corner, in Qt's directions. Calls `_end` when the
    /// user has chosen or given up, then or later.
    virtual void _open(Menu &menu, const QPoint &offset) = 0;
    /// Takes everything off the screen; the compositor has been told when this returns.
    virtual void _close() = 0;
    void _end(std::optional<MenuItem> chosen);
    /// To be told wherever the pointer was seen, in Qt's coordinates of the whole desktop.
    void _notePointer(const QPoint &pointer) { _pointer = pointer; }

private:
    QtApplication &_application;
    const std::function<void()> _beforeShowing;
    std::optional<QPoint> _pointer;
    QEventLoop *_loop = nullptr; ///< that of the open menu
    bool _isUp = false;
    bool _hasEnded = false;
    std::optional<MenuItem> _chosen;
};

/// Sets what the layer shell's presenter needs in this process's environment; does nothing in a build without it. To be called before
/// Qt and other threads are started. Gives the name of the variable, which programs that this one starts need not inherit, or null.
const char *prepareWaylandPopUpMenus();

/// The best that the compositor allows: a menu at the pointer where it has the layer shell, else a small window with the menu in it.
/// Writes into the log which. To be called once the application is loaded; `prepareWaylandPopUpMenus` before that.
[[nodiscard]] std::unique_ptr<PopUpMenus> makeWaylandPopUpMenus(QtApplication &application, std::function<void()> beforeShowing,
                                                                SystemLog &log);

} // namespace orvane
