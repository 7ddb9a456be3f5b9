#include "platform/filemanagers/X11ActiveApplication.h"

#include "platform/filemanagers/Deadline.h"
#include "platform/posix/FileDescriptor.h"

#include <chrono>
#include <utility>

#include <poll.h>

namespace orvane {

namespace {

/// GNOME was seen to give the focus back within 90 ms.
constexpr std::chrono::milliseconds LongestWait(100);

} // namespace

X11ActiveApplication::X11ActiveApplication(std::function<void()> beginsToWait) : _beginsToWait(std::move(beginsToWait)) {
    if (!_windows.isUsable()) {
        return;
    }
    _windows.watchRoot();
    _notifier = std::make_unique<QSocketNotifier>(_windows.descriptor(), QSocketNotifier::Read);
    QObject::connect(_notifier.get(), &QSocketNotifier::activated, _notifier.get(), [this] { _follow(); });
    (void)_current();
}

/// Remembers which windows become active; asking may bring further events in, which the descriptor would not tell of.
void X11ActiveApplication::_follow() {
    while (_windows.takeEvents()) {
        (void)_current();
    }
    if (!_windows.isUsable() && _notifier) {
        _notifier->setEnabled(false);
    }
}

/// The window to speak of: the active one, or the one before while a panel or a window of our own is active; 0: none.
xcb_window_t X11ActiveApplication::_current() {
    const xcb_window_t active = _windows.activeWindow();
    // Openbox goes on calling the last window active when it has been closed.
    if (active == XCB_WINDOW_NONE || !_windows.isViewable(active)) {
        return XCB_WINDOW_NONE;
    }
    if (_windows.kindOf(active) == X11WindowKind::Application) {
        _last = active;
        return active;
    }
    // What was minimised or closed since is not what the user works in.
    return _last != XCB_WINDOW_NONE && _windows.isViewable(_last) ? _last : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

void X11ActiveApplication::_waitForSome() {
    const Deadline deadline(LongestWait);
    while (_windows.isUsable() && _windows.activeWindow() == XCB_WINDOW_NONE && !deadline.passed()) {
        if (_windows.takeEvents()) {
            continue;
        }
        if (_beginsToWait) {
            _beginsToWait();
        }
        struct pollfd descriptor = {_windows.descriptor(), POLLIN, 0};
        (void)uninterrupted([&] { return ::poll(&descriptor, 1, deadline.remaining()); });
    }
}

std::optional<ApplicationWindow> X11ActiveApplication::window() {
    if (!_windows.isUsable()) {
        return std::nullopt;
    }
    _follow();
    if (_last != XCB_WINDOW_NONE && _windows.activeWindow() == XCB_WINDOW_NONE) {
        _waitForSome();
    }
    const xcb_window_t window = _current();
    auto description = window == XCB_WINDOW_NONE ? std::nullopt : _windows.describe(window);
    _follow();
    return description;
}

} // namespace orvane
