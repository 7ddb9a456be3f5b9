#include "platform/filemanagers/X11ActiveApplication.h"

#include <cstdlib>

namespace orvane {

namespace {

/// Where the window system cannot be asked.
class UnknownActiveApplication final : public ActiveApplication {
public:
    [[nodiscard]] std::optional<ApplicationWindow> window() override { return std::nullopt; }
};

bool isSet(const char *name) {
    const char *value = std::getenv(name);
    return value != nullptr && value[0] != '\0';
}

} // namespace

std::unique_ptr<ActiveApplication> makeActiveApplication(SystemLog &log) {
    // Under Wayland an X server that may be there too knows of X programs only.
    if (!isSet("WAYLAND_DISPLAY") && isSet("DISPLAY")) {
        auto active = std::make_unique<X11ActiveApplication>();
        if (active->isUsable()) {
            log.log("The active window is asked of the X server.");
            return active;
        }
    }
    log.log("The active window cannot be asked here; the parent folder will always be chosen.");
    return std::make_unique<UnknownActiveApplication>();
}

} // namespace orvane
