#include "platform/wayland/WaylandPopUpMenus.h"

#include "platform/qt/QtPopUpMenus.h"
#include "platform/wayland/MenuRows.h"

#include <utility>

#include <QEventLoop>
#include <QGuiApplication>
#include <QScreen>

namespace orvane {

WaylandPopUpMenus::WaylandPopUpMenus(QtApplication &application, std::function<void()> beforeShowing)
    : _application(application), _beforeShowing(std::move(beforeShowing)) {}

WaylandPopUpMenus::~WaylandPopUpMenus() = default;

ScreenPoint WaylandPopUpMenus::mouseLocation() {
    if (_pointer) {
        return QtScreenPointOf(*_pointer);
    }
    const QScreen *const screen = QGuiApplication::primaryScreen();
    return QtScreenPointOf(screen == nullptr ? QPoint() : screen->geometry().center());
}

void WaylandPopUpMenus::popUpContextMenu(Menu &menu, const SyntheticEvent &event, ReferenceWindow & /*window*/) {
    if (QWidget *const asking = QtApplication::modalWindow()) {
        _application.bringToFront(*asking);
        return;
    }
    if (_isUp || _application.isQuitting()) {
        return;
    }
    // The event says where the menu is to be as seen from where the pointer was thought to be. Where the pointer really is comes to
    // light only under a window of ours.
    const QPoint offset = QtPointOf(event.location) - QtPointOf(mouseLocation());
    _isUp = true;
    _hasEnded = false;
    _chosen.reset();
    if (_beforeShowing) {
        _beforeShowing();
    }
    QEventLoop loop;
    _loop = &loop;
    _open(menu, offset);
    if (!_hasEnded) {
        loop.exec();
    }
    _loop = nullptr;
    _close();
    _isUp = false;
    if (const std::optional<MenuItem> chosen = std::exchange(_chosen, std::nullopt); chosen && !_application.isQuitting()) {
        MenuRows::perform(*chosen, menu);
    }
}

void WaylandPopUpMenus::_end(std::optional<MenuItem> chosen) {
    if (!_isUp || _hasEnded) {
        return;
    }
    _hasEnded = true;
    _chosen = std::move(chosen);
    if (_loop != nullptr) {
        _loop->quit();
    }
}

} // namespace orvane
