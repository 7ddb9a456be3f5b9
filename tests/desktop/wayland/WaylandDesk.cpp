#include "desktop/wayland/WaylandDesk.h"

#include "platform/wayland/WaylandPopUpMenus.h"

#include <cstdio>

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    orvane::prepareWaylandPopUpMenus();
    orvane::QtApplication application(argc, argv);
    if (!application.load()) {
        std::fprintf(stderr, "no display\n");
        return 1;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    orvane::wayland::application = &application;
    return RUN_ALL_TESTS();
}
