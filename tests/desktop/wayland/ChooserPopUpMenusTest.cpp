// The chooser, on any compositor; here the pointer and the keyboard are the tests' own.
#include "platform/wayland/ChooserPopUpMenus.h"
#include "desktop/wayland/WaylandDesk.h"

#include <linux/input-event-codes.h>

#include <QLabel>
#include <QLineEdit>

namespace orvane::wayland {
namespace {

class ChooserPopUpMenusTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(input, nullptr); }
    static bool isUp() { return shownPanel() != nullptr && shownPanel()->window()->isActiveWindow(); }
    void press(std::uint32_t code) { input->press({code}); }

    std::unique_ptr<WaylandInput> input = WaylandInput::open(1280, 800);
    int askedBefore = 0;
    ChooserPopUpMenus menus{*application, [this] { ++askedBefore; }};
    Presets presets{20};
};

TEST_F(ChooserPopUpMenusTest, IsDrivenWithArrowsAndReturnAndActsOnceItIsGone) {
    Steps steps;
    steps.when(isUp, [&] {
        takePicture("wayland-chooser.png");
        press(KEY_DOWN);
    });
    steps.when([] { return highlighted() == "Preset 0"; }, [&] { press(KEY_UP); });
    steps.when([] { return highlighted() == "Quit Orvane"; }, [&] { press(KEY_ENTER); });
    steps.start();
    popUp(menus, presets.menu);
    EXPECT_EQ(presets.done, std::vector<std::string>{"Quit Orvane"});
    EXPECT_FALSE(presets.wasShownWhenDone);
    EXPECT_EQ(askedBefore, 1);
}

TEST_F(ChooserPopUpMenusTest, TypedLettersLeaveOnlyWhatHoldsThem) {
    Steps steps;
    steps.when(isUp, [&] {
        press(KEY_1);
        press(KEY_7);
    });
    steps.when([] { return highlighted() == "Preset 17" && shownItems()->model()->rowCount() == 1; },
               [&] {
                   EXPECT_EQ(shown<QLineEdit>("menuSearch")->text(), QStringLiteral("17"));
                   takePicture("wayland-chooser-search.png");
                   press(KEY_ENTER);
               });
    steps.start();
    popUp(menus, presets.menu);
    EXPECT_EQ(presets.done, std::vector<std::string>{"Preset 17"});
}

TEST_F(ChooserPopUpMenusTest, PrefersAnItemThatStartsWithTheLetters) {
    Steps steps;
    steps.when(isUp, [&] { press(KEY_Q); });
    steps.when([] { return highlighted() == "Quit Orvane"; }, [&] { press(KEY_ENTER); });
    steps.start();
    popUp(menus, presets.menu);
    EXPECT_EQ(presets.done, std::vector<std::string>{"Quit Orvane"});
}

TEST_F(ChooserPopUpMenusTest, EscapeClosesIt) {
    Steps steps;
    steps.when(isUp, [&] { press(KEY_ESC); });
    steps.start();
    popUp(menus, presets.menu);
    EXPECT_TRUE(presets.done.empty());
    EXPECT_EQ(shownPanel(), nullptr);
}

TEST_F(ChooserPopUpMenusTest, GoingToAnotherWindowClosesIt) {
    QLabel other(QStringLiteral("another window"));
    Steps steps;
    steps.when(isUp, [&] { other.show(); });
    steps.start();
    popUp(menus, presets.menu);
    EXPECT_TRUE(presets.done.empty());
    EXPECT_TRUE(other.isVisible());
}

TEST_F(ChooserPopUpMenusTest, AThousandPresetsScrollAndAreSearched) {
    Presets many(1000);
    Steps steps;
    steps.when(isUp, [&] {
        EXPECT_LE(shownPanel()->height(), 800 * 6 / 10);
        press(KEY_UP);
    });
    steps.when([] { return highlighted() == "Quit Orvane"; }, [&] { input->press({KEY_9}); });
    steps.when([] { return shown<QLineEdit>("menuSearch")->text() == QLatin1String("9"); }, [&] { input->press({KEY_9}); });
    steps.when([] { return shown<QLineEdit>("menuSearch")->text() == QLatin1String("99"); }, [&] { input->press({KEY_9}); });
    steps.when([] { return highlighted() == "Preset 999"; }, [&] { press(KEY_ENTER); });
    steps.start();
    popUp(menus, many.menu);
    EXPECT_EQ(many.done, std::vector<std::string>{"Preset 999"});
}

} // namespace
} // namespace orvane::wayland
