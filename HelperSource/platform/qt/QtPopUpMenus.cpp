#include "platform/qt/QtPopUpMenus.h"

#include "platform/qt/QtMenuView.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QScreen>

namespace orvane {

namespace {

QRect primaryScreen() {
    const QScreen *const screen = QGuiApplication::primaryScreen();
    return screen == nullptr ? QRect() : screen->geometry();
}

/// The point, or the one nearest to it on the screen that the pointer is on: Qt puts a menu on the screen that its corner is on.
QPoint onPointersScreen(const QPoint &point) {
    const QScreen *const screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) {
        return point;
    }
    const QRect area = screen->geometry();
    return {std::clamp(point.x(), area.left(), area.right()), std::clamp(point.y(), area.top(), area.bottom())};
}

} // namespace

ScreenPoint QtScreenPointOf(const QPoint &point) {
    const QRect screen = primaryScreen();
    return {static_cast<double>(point.x() - screen.x()), static_cast<double>(screen.y() + screen.height() - point.y())};
}

QPoint QtPointOf(const ScreenPoint &point) {
    const QRect screen = primaryScreen();
    return {screen.x() + static_cast<int>(std::lround(point.x)), screen.y() + screen.height() - static_cast<int>(std::lround(point.y))};
}

ScreenPoint QtPopUpMenus::mouseLocation() {
    return QtScreenPointOf(QCursor::pos());
}

void QtPopUpMenus::popUpContextMenu(Menu &menu, const SyntheticEvent &event, ReferenceWindow & /*window*/) {
    if (QWidget *const asking = QtApplication::modalWindow()) {
        _application.bringToFront(*asking);
        return;
    }
    if (_isUp || QApplication::activePopupWidget() != nullptr || _application.isQuitting()) {
        return;
    }
    _isUp = true;
    QtMenuView view(menu);
    view.setPerformsChosen(false);
    view.menu().exec(onPointersScreen(QtPointOf(event.location)));
    _isUp = false;
    if (!_application.isQuitting()) {
        view.performChosen();
    }
}

} // namespace orvane
