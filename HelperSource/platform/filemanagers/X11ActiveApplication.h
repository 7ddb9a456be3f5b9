#pragma once

#include "platform/filemanagers/ActiveApplication.h"
#include "platform/filemanagers/X11Windows.h"

#include <functional>
#include <memory>

#include <QSocketNotifier>

namespace orvane {

/// The active window as the window manager tells it. It has a connection of its own to the X server, so that it neither takes
/// events from Qt nor changes which ones Qt gets, and follows the changes of the active window through Qt's event loop.
class X11ActiveApplication final : public ActiveApplication {
public:
    /// `beginsToWait` is called by `window` before each wait for the window manager, for tests to give the focus back then.
    explicit X11ActiveApplication(std::function<void()> beginsToWait = {});
    /// False where there is no X server.
    [[nodiscard]] bool isUsable() const { return _windows.isUsable(); }
    /// Where no window is active, waits a tenth of a second for one: some desktops take the focus away while the panel's menu is
    /// open and give it back a little later.
    [[nodiscard]] std::optional<ApplicationWindow> window() override;
    void noteNow() override { _follow(); }

private:
    void _follow();
    [[nodiscard]] xcb_window_t _current();
    void _waitForSome();

    const std::function<void()> _beginsToWait;
    X11Windows _windows;
    xcb_window_t _last = 0; ///< the last active window that was an application's and not our own
    std::unique_ptr<QSocketNotifier> _notifier;
};

} // namespace orvane
