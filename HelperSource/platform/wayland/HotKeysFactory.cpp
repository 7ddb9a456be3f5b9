#include "hotkeys/HotKeyAdvice.h"
#include "platform/wayland/KGlobalAccelHotKeys.h"
#include "platform/wayland/PortalHotKeys.h"
#include "platform/wayland/SwayHotKeys.h"
#include "platform/wayland/WaylandHotKeys.h"

#include <QtGlobal>

namespace orvane {

std::unique_ptr<WaylandHotKeys> makeWaylandHotKeys(QtDBusSession &session, SystemLog &log) {
    std::vector<std::unique_ptr<HotKeyService>> services;
    services.push_back(std::make_unique<KGlobalAccelHotKeys>(session, log));
    services.push_back(std::make_unique<SwayHotKeys>());
    services.push_back(std::make_unique<PortalHotKeys>(session, log));
    std::string advice = ORVHotKeyAdvice(qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString());
    return std::make_unique<WaylandHotKeys>(std::move(services), std::move(advice), log);
}

} // namespace orvane
