#include "platform/wayland/KGlobalAccelHotKeys.h"
#include "platform/wayland/PortalHotKeys.h"
#include "platform/wayland/SwayHotKeys.h"
#include "platform/wayland/WaylandHotKeys.h"

#include <utility>
#include <vector>

namespace orvane {

std::unique_ptr<WaylandHotKeys> makeWaylandHotKeys(QtDBusSession &session, std::string advice, SystemLog &log) {
    std::vector<std::unique_ptr<HotKeyService>> services;
    services.push_back(std::make_unique<KGlobalAccelHotKeys>(session, log));
    services.push_back(std::make_unique<SwayHotKeys>());
    services.push_back(std::make_unique<PortalHotKeys>(session, log));
    return std::make_unique<WaylandHotKeys>(std::move(services), std::move(advice), log);
}

} // namespace orvane
