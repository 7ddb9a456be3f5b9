#pragma once

#include "platform/qt/QtApplication.h"
#include "ports/PopUpMenus.h"

#include <QPoint>

namespace orvane {

/// Pop-up menus where windows may be put anywhere and get the keyboard without being active: on X11.
///
/// A request that comes while a menu is open does nothing; one that comes while a window of ours waits for the user's answer
/// brings that window to the front instead.
class QtPopUpMenus final : public PopUpMenus {
public:
    explicit QtPopUpMenus(QtApplication &application) : _application(application) {}
    QtPopUpMenus(const QtPopUpMenus &) = delete;
    QtPopUpMenus &operator=(const QtPopUpMenus &) = delete;

    [[nodiscard]] ScreenPoint mouseLocation() override;
    void popUpContextMenu(Menu &menu, const SyntheticEvent &event, ReferenceWindow &window) override;

private:
    QtApplication &_application;
    bool _isUp = false;
};

// Qt counts from the upper left corner, y downwards; the core from the lower left corner of the primary screen, y upwards.
[[nodiscard]] ScreenPoint QtScreenPointOf(const QPoint &point);
[[nodiscard]] QPoint QtPointOf(const ScreenPoint &point);

} // namespace orvane
