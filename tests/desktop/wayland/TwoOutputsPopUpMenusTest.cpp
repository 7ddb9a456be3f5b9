// The menu at the pointer on two outputs of 1280x800 side by side.
#include "desktop/wayland/WaylandDesk.h"
#include "platform/wayland/WaylandPopUpMenus.h"

#include <linux/input-event-codes.h>

#include <QScreen>

namespace orvane::wayland {
namespace {

TEST(TwoOutputsPopUpMenusTest, ComesUpOnTheOutputWhereThePointerIs) {
    ASSERT_EQ(QGuiApplication::screens().size(), 2);
    const std::unique_ptr<WaylandInput> input = WaylandInput::open(2560, 800);
    ASSERT_NE(input, nullptr);
    Log log;
    Presets presets(5);
    // Locations count from its lower left corner. Which of the two it is, the compositor's order decides.
    const QRect primary = QGuiApplication::primaryScreen()->geometry();
    const std::unique_ptr<PopUpMenus> menus = makeWaylandPopUpMenus(*application, nullptr, log);
    for (const QPoint place : {QPoint(300, 200), QPoint(1280 + 400, 300), QPoint(500, 100)}) {
        input->movePointer(static_cast<std::uint32_t>(place.x()), static_cast<std::uint32_t>(place.y()));
        Steps steps;
        QPoint corner;
        int shownWindows = 0;
        steps.when([] { return shownPanel() != nullptr && shownPanel()->window()->isActiveWindow(); },
                   [&] {
                       corner = panelCorner();
                       input->press({KEY_DOWN});
                   });
        steps.when([] { return highlighted() == "Preset 0"; },
                   [&] {
                       for (const QWidget *const window : QApplication::topLevelWidgets()) {
                           shownWindows += isOnScreen(*window) ? 1 : 0;
                       }
                       input->press({KEY_ENTER});
                   });
        steps.start();
        popUp(*menus, presets.menu);
        EXPECT_EQ(corner, QPoint(place.x() % 1280 - 10, place.y() + 10));
        EXPECT_EQ(shownWindows, 1) << "the other output is still covered";
        EXPECT_EQ(menus->mouseLocation(), (ScreenPoint{static_cast<double>(place.x() - primary.x()), 800.0 - place.y()}));
    }
    EXPECT_EQ(presets.done, std::vector<std::string>(3, "Preset 0"));
    waitUntilWindowsAreGone();
}

} // namespace
} // namespace orvane::wayland
