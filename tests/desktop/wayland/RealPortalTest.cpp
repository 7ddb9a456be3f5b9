// The desktop portal itself, with the back end of the desktop that the test is on: KDE's gives the key and tells of presses; where no back
// end has global shortcuts, that is what is said.
#include "desktop/wayland/HotKeyDesk.h"
#include "platform/wayland/PortalHotKeys.h"

#include <linux/input-event-codes.h>

namespace orvane::wayland {
namespace {

/// Hot keys by the portal alone.
class RealPortalTest : public testing::Test {
protected:
    RealPortalTest() {
        std::vector<std::unique_ptr<HotKeyService>> services;
        services.push_back(std::make_unique<PortalHotKeys>(desk.session, desk.log));
        keys = std::make_unique<WaylandHotKeys>(std::move(services), "Bind a key.", desk.log);
        constexpr std::array types{EventTypeSpec{EventClassKeyboard, EventHotKeyPressed}};
        EXPECT_EQ(keys->installEventHandler(keys->getEventDispatcherTarget(), _count, types, &presses), EventNoError);
    }
    EventStatus take() {
        return keys->registerEventHotKey(HotKeyDesk::H, HotKeyDesk::ShiftControl, {FourCharacterCode("SGHk"), 1},
                                         keys->getEventDispatcherTarget(), 0, reference);
    }
    [[nodiscard]] bool says(std::string_view beginning) const {
        return HotKeyDesk::waitFor([&] { return std::string_view(keys->statement()).starts_with(beginning); }, std::chrono::seconds(40));
    }

    HotKeyDesk desk;
    std::unique_ptr<WaylandHotKeys> keys;
    EventHotKeyRef reference = nullptr;
    int presses = 0;

private:
    static EventStatus _count(const void * /*next*/, const Event & /*event*/, void *userData) {
        ++*static_cast<int *>(userData);
        return EventNoError;
    }
};

using RealPortalOfKde = RealPortalTest;
using RealPortalWithoutShortcuts = RealPortalTest;

TEST_F(RealPortalOfKde, GivesTheKeyNamesItAndTellsOfEachPress) {
    const std::unique_ptr<WaylandInput> input = WaylandInput::open(1280, 800);
    ASSERT_NE(input, nullptr);
    ASSERT_EQ(take(), EventNoError);
    EXPECT_EQ(keys->statement(), "The hot key is asked of the desktop portal, which has yet to answer.");
    ASSERT_TRUE(says("The hot key works by the desktop portal (Ctrl+Shift+H).")) << keys->statement();
    for (int number = 1; number <= 3; ++number) {
        input->press({KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_H});
        EXPECT_TRUE(HotKeyDesk::waitFor([&] { return presses == number; })) << number;
    }
    EXPECT_EQ(keys->unregisterEventHotKey(reference), EventNoError);
    HotKeyDesk::stay(std::chrono::milliseconds(300));
    input->press({KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_H});
    HotKeyDesk::stay(std::chrono::milliseconds(300));
    EXPECT_EQ(presses, 3);
}

TEST_F(RealPortalWithoutShortcuts, SaysSoAndWhatToBind) {
    ASSERT_EQ(take(), EventNoError);
    ASSERT_TRUE(says("the desktop portal gives no hot key (")) << keys->statement();
    EXPECT_TRUE(keys->statement().ends_with(" Bind a key.")) << keys->statement();
    std::printf("%s\n", keys->statement().c_str());
}

} // namespace
} // namespace orvane::wayland
