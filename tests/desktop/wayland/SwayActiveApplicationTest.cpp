#include "desktop/wayland/HotKeyDesk.h"
#include "platform/wayland/WaylandActiveApplication.h"
#include "platform/wayland/WaylandPopUpMenus.h"

#include <linux/input-event-codes.h>

#include <QLabel>

namespace orvane::wayland {
namespace {

class SwayActiveApplicationTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(input, nullptr);
        ASSERT_NE(active, nullptr);
        terminal.start(QStringLiteral("foot"), {QStringLiteral("--app-id=front"), QStringLiteral("--title=The front window"),
                                                QStringLiteral("sleep"), QStringLiteral("60")});
        ASSERT_TRUE(terminal.waitForStarted(5000));
        ASSERT_TRUE(HotKeyDesk::waitFor([this] { return active->window().has_value(); }, std::chrono::seconds(10)));
    }
    void TearDown() override {
        terminal.kill();
        terminal.waitForFinished(5000);
    }

    std::unique_ptr<WaylandInput> input = WaylandInput::open(1280, 800);
    std::unique_ptr<ActiveApplication> active = makeWaylandActiveApplication();
    QProcess terminal;
    Log log;
};

TEST_F(SwayActiveApplicationTest, IsTheWindowThatHasTheKeyboard) {
    const ApplicationWindow window = active->window().value();
    EXPECT_EQ(window.className, "front");
    EXPECT_EQ(window.pid, static_cast<std::uint32_t>(terminal.processId()));
    EXPECT_FALSE(window.isOnX11);
    EXPECT_FALSE(window.title.empty());
}

TEST_F(SwayActiveApplicationTest, StaysWhatItIsWhileTheMenuIsOpenAndAfterwards) {
    Presets presets(3);
    const std::unique_ptr<PopUpMenus> menus = makeWaylandPopUpMenus(
        *application, [this] { active->noteNow(); }, log);
    input->movePointer(300, 300);
    Steps steps;
    std::optional<ApplicationWindow> meanwhile;
    steps.when([] { return shownPanel() != nullptr && shownPanel()->window()->isActiveWindow(); },
               [&] {
                   meanwhile = active->window();
                   takePicture("wayland-menu-over-window.png");
                   input->press({KEY_ESC});
               });
    steps.start();
    popUp(*menus, presets.menu);
    ASSERT_TRUE(meanwhile.has_value());
    EXPECT_EQ(meanwhile->className, "front");
    ASSERT_TRUE(active->window().has_value());
    EXPECT_EQ(active->window()->className, "front");
    EXPECT_TRUE(HotKeyDesk::waitFor([] {
        return outputOf(QStringLiteral("swaymsg"), {QStringLiteral("-t"), QStringLiteral("get_tree")}).find("\"app_id\": \"front\"") !=
               std::string::npos;
    }));
    waitUntilWindowsAreGone();
}

TEST_F(SwayActiveApplicationTest, IsNobodyOnAnEmptyWorkspace) {
    outputOf(QStringLiteral("swaymsg"), {QStringLiteral("workspace"), QStringLiteral("empty")});
    EXPECT_TRUE(HotKeyDesk::waitFor([this] { return !active->window().has_value(); }));
    outputOf(QStringLiteral("swaymsg"), {QStringLiteral("workspace"), QStringLiteral("1")});
}

TEST_F(SwayActiveApplicationTest, WindowsOfOurOwnDoNotCount) {
    active->noteNow();
    QLabel own(QStringLiteral("ours"));
    own.show();
    ASSERT_TRUE(HotKeyDesk::waitFor([&] { return own.isActiveWindow(); }));
    ASSERT_TRUE(active->window().has_value());
    EXPECT_EQ(active->window()->className, "front");
}

} // namespace
} // namespace orvane::wayland
