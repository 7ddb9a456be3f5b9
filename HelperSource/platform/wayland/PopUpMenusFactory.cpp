#include "platform/wayland/ChooserPopUpMenus.h"

#ifdef ORVANE_LAYER_SHELL
#include "platform/wayland/LayerShellPopUpMenus.h"
#endif

#include <utility>

namespace orvane {

const char *prepareWaylandPopUpMenus() {
#ifdef ORVANE_LAYER_SHELL
    LayerShell::prepareEnvironment();
    return LayerShell::environmentVariable();
#else
    return nullptr;
#endif
}

std::unique_ptr<PopUpMenus> makeWaylandPopUpMenus(QtApplication &application, std::function<void()> beforeShowing, SystemLog &log) {
#ifdef ORVANE_LAYER_SHELL
    if (std::unique_ptr<LayerShell> shell = LayerShell::connect()) {
        log.log("The menu comes up at the pointer: the compositor has the layer shell");
        return std::make_unique<LayerShellPopUpMenus>(std::move(shell), application, std::move(beforeShowing));
    }
    log.log("The menu comes up in a window that the compositor places: it has no layer shell");
#else
    log.log("The menu comes up in a window that the compositor places: this build knows no layer shell");
#endif
    return std::make_unique<ChooserPopUpMenus>(application, std::move(beforeShowing));
}

} // namespace orvane
