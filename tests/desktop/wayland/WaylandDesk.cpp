#include "desktop/wayland/WaylandDesk.h"

#include "platform/wayland/WaylandPopUpMenus.h"

#include <cstdio>
#include <cstring>

#include <QLabel>

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    orvane::prepareWaylandPopUpMenus();
    orvane::QtApplication application(argc, argv);
    if (!application.load()) {
        std::fprintf(stderr, "no display\n");
        return 1;
    }
    // For tests that need a window of another program.
    if (argc == 3 && std::strcmp(argv[1], "--window") == 0) {
        QLabel window(QString::fromLocal8Bit(argv[2]));
        window.setWindowTitle(window.text());
        window.resize(400, 300);
        window.show();
        return application.run();
    }
    QApplication::setQuitOnLastWindowClosed(false);
    orvane::wayland::application = &application;
    return RUN_ALL_TESTS();
}
