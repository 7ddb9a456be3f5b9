#include "wiring/DesktopSession.h"

#include "platform/qt/QtPopUpMenus.h"
#include "platform/qt/QtX11Events.h"
#include "platform/wayland/WaylandActiveApplication.h"
#include "platform/wayland/WaylandPopUpMenus.h"

#include <QGuiApplication>

namespace orvane {

std::unique_ptr<PopUpMenus> makeDesktopPopUpMenus(QtApplication &application, ActiveApplication &active, SystemLog &log) {
    if (QtX11Events::connection() != nullptr) {
        return std::make_unique<QtPopUpMenus>(application);
    }
    return makeWaylandPopUpMenus(
        application, [&active] { active.noteNow(); }, log);
}

std::unique_ptr<ActiveApplication> makeDesktopActiveApplication(SystemLog &log) {
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        if (auto active = makeWaylandActiveApplication()) {
            log.log("The active window is asked of the compositor.");
            return active;
        }
    }
    return makeActiveApplication(log);
}

} // namespace orvane
