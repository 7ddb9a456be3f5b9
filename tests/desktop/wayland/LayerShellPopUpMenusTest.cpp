// The menu at the pointer, on a compositor with the layer shell: one output of 1280x800, the pointer and the keyboard are the tests' own.
#include "desktop/wayland/WaylandDesk.h"
#include "platform/wayland/WaylandPopUpMenus.h"

#include <linux/input-event-codes.h>

#include <QScrollBar>

namespace orvane::wayland {
namespace {

class LayerShellPopUpMenusTest : public testing::Test {
protected:
    void SetUp() override {
        input = WaylandInput::open(1280, 800);
        ASSERT_NE(input, nullptr);
        menus = makeWaylandPopUpMenus(
            *application,
            [this] {
                ++askedBefore;
                EXPECT_EQ(shownPanel(), nullptr);
                for (const QWidget *const window : QApplication::topLevelWidgets()) {
                    EXPECT_FALSE(isOnScreen(*window));
                }
            },
            log);
        ASSERT_TRUE(log.has("at the pointer")) << "the compositor has no layer shell";
    }
    void TearDown() override { waitUntilWindowsAreGone(); }
    static bool isUp() { return shownPanel() != nullptr && shownPanel()->window()->isActiveWindow(); }
    void press(std::uint32_t code) { input->press({code}); }

    Log log;
    std::unique_ptr<WaylandInput> input;
    std::unique_ptr<PopUpMenus> menus;
    Presets presets{20};
    int askedBefore = 0;
};

TEST_F(LayerShellPopUpMenusTest, ComesUpTenLeftOfAndBelowThePointer) {
    input->movePointer(640, 150);
    Steps steps;
    QPoint corner;
    steps.when(isUp, [&] {
        corner = panelCorner();
        takePicture("wayland-menu.png");
        press(KEY_ESC);
    });
    steps.start();
    popUp(*menus, presets.menu);
    EXPECT_EQ(corner, QPoint(630, 160));
    EXPECT_EQ(askedBefore, 1);
    EXPECT_TRUE(presets.done.empty());
    EXPECT_EQ(menus->mouseLocation(), (ScreenPoint{640, 650}));
}

TEST_F(LayerShellPopUpMenusTest, IsDrivenWithArrowsAndReturnAndActsOnceItIsGone) {
    input->movePointer(200, 200);
    Steps steps;
    steps.when(isUp, [&] { press(KEY_DOWN); });
    steps.when([] { return highlighted() == "Preset 0"; }, [&] { press(KEY_DOWN); });
    steps.when([] { return highlighted() == "Preset 1"; }, [&] { press(KEY_UP); });
    steps.when([] { return highlighted() == "Preset 0"; }, [&] { press(KEY_UP); });
    steps.when([] { return highlighted() == "Quit Orvane"; }, [&] { press(KEY_UP); });
    steps.when([] { return highlighted() == "Preferences\u2026"; }, [&] { press(KEY_UP); });
    steps.when([] { return highlighted() == "Preset 19"; },
               [&] {
                   takePicture("wayland-menu-highlighted.png");
                   press(KEY_ENTER);
               });
    steps.start();
    popUp(*menus, presets.menu);
    EXPECT_EQ(presets.done, std::vector<std::string>{"Preset 19"});
    EXPECT_FALSE(presets.wasShownWhenDone);
}

TEST_F(LayerShellPopUpMenusTest, GoesToTheItemThatStartsWithTheLetter) {
    input->movePointer(200, 200);
    Steps steps;
    steps.when(isUp, [&] { press(KEY_Q); });
    steps.when([] { return highlighted() == "Quit Orvane"; }, [&] { press(KEY_ENTER); });
    steps.start();
    popUp(*menus, presets.menu);
    EXPECT_EQ(presets.done, std::vector<std::string>{"Quit Orvane"});
}

TEST_F(LayerShellPopUpMenusTest, AClickChoosesTheItemUnderThePointer) {
    input->movePointer(200, 200);
    Steps steps;
    steps.when(isUp, [&] {
        const QListView &items = *shownItems();
        const QPoint middle = items.mapTo(items.window(), items.visualRect(items.model()->index(3, 0)).center());
        input->movePointer(static_cast<std::uint32_t>(middle.x()), static_cast<std::uint32_t>(middle.y()));
    });
    steps.when([] { return highlighted() == "Preset 3"; }, [&] { input->click(BTN_LEFT); });
    steps.start();
    popUp(*menus, presets.menu);
    EXPECT_EQ(presets.done, std::vector<std::string>{"Preset 3"});
}

TEST_F(LayerShellPopUpMenusTest, AClickBesideItClosesItAndNothingElse) {
    input->movePointer(200, 200);
    Steps steps;
    steps.when(isUp, [&] {
        input->movePointer(1000, 700);
        input->click(BTN_LEFT);
    });
    steps.start();
    popUp(*menus, presets.menu);
    EXPECT_TRUE(presets.done.empty());
    EXPECT_EQ(shownPanel(), nullptr);
}

TEST_F(LayerShellPopUpMenusTest, StaysInsideTheScreenAndOpensUpwardsNearItsLowerEdge) {
    input->movePointer(1270, 790);
    Steps steps;
    QRect place;
    steps.when(isUp, [&] {
        place = QRect(panelCorner(), shownPanel()->size());
        press(KEY_ESC);
    });
    steps.start();
    popUp(*menus, presets.menu);
    EXPECT_TRUE(QRect(0, 0, 1280, 800).contains(place));
    EXPECT_EQ(place.bottom(), 779);
}

TEST_F(LayerShellPopUpMenusTest, AThousandPresetsScroll) {
    Presets many(1000);
    input->movePointer(640, 400);
    Steps steps;
    QRect place;
    QElapsedTimer clock;
    qint64 took = 0;
    steps.when(isUp, [&] {
        took = clock.elapsed();
        place = QRect(panelCorner(), shownPanel()->size());
        press(KEY_END);
    });
    steps.when([] { return highlighted() == "Quit Orvane"; },
               [&] {
                   const QListView &items = *shownItems();
                   EXPECT_TRUE(items.viewport()->rect().contains(items.visualRect(items.currentIndex())));
                   takePicture("wayland-menu-thousand.png");
                   press(KEY_UP);
               });
    steps.when([] { return highlighted() == "Preferences\u2026"; }, [&] { press(KEY_UP); });
    steps.when([] { return highlighted() == "Preset 999"; }, [&] { press(KEY_ENTER); });
    clock.start();
    steps.start();
    popUp(*menus, many.menu);
    EXPECT_TRUE(QRect(0, 0, 1280, 800).contains(place));
    EXPECT_EQ(many.done, std::vector<std::string>{"Preset 999"});
    RecordProperty("milliseconds", static_cast<int>(took));
    EXPECT_LT(took, 2000);
}

TEST_F(LayerShellPopUpMenusTest, ARequestWhileItIsOpenDoesNothing) {
    input->movePointer(200, 200);
    Steps steps;
    steps.when(isUp, [&] {
        popUp(*menus, presets.menu);
        EXPECT_TRUE(isUp());
        EXPECT_EQ(askedBefore, 1);
        press(KEY_ESC);
    });
    steps.start();
    popUp(*menus, presets.menu);
    EXPECT_TRUE(presets.done.empty());
}

TEST_F(LayerShellPopUpMenusTest, FollowsTheMenuWhileItIsOpen) {
    input->movePointer(200, 100);
    Steps steps;
    steps.when(isUp, [&] { presets.add("Zoo"); });
    steps.when([] { return shownItems() != nullptr && shownItems()->model()->rowCount() == 24; }, [&] { press(KEY_Z); });
    steps.when([] { return highlighted() == "Zoo"; }, [&] { press(KEY_ENTER); });
    steps.start();
    popUp(*menus, presets.menu);
    EXPECT_EQ(presets.done, std::vector<std::string>{"Zoo"});
}

TEST_F(LayerShellPopUpMenusTest, ComesUpInTheMiddleWhereThereIsNoPointer) {
    input.reset(); // and with it the seat's only pointer
    Steps steps;
    QRect place;
    steps.when([] { return shownPanel() != nullptr; },
               [&] {
                   place = QRect(panelCorner(), shownPanel()->size());
                   shownPanel()->window()->close();
               });
    steps.start();
    popUp(*menus, presets.menu);
    EXPECT_LE((place.center() - QPoint(640, 400)).manhattanLength(), 4);
}

TEST_F(LayerShellPopUpMenusTest, ComesAndGoesManyTimes) {
    for (int i = 0; i < 50; ++i) {
        const auto x = static_cast<std::uint32_t>(100 + 10 * i);
        input->movePointer(x, 100);
        Steps steps;
        QPoint corner;
        steps.when(isUp, [&] {
            corner = panelCorner();
            press(KEY_ESC);
        });
        steps.start();
        popUp(*menus, presets.menu);
        ASSERT_EQ(corner, QPoint(static_cast<int>(x) - 10, 110));
    }
    EXPECT_EQ(askedBefore, 50);
}

} // namespace
} // namespace orvane::wayland
