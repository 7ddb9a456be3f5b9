// A keyboard with several layouts, on sway and on KWin: names of keys follow the one in use, and the hot key is the same key in each.
#include "desktop/wayland/HotKeyDesk.h"
#include "platform/wayland/SeatKeymap.h"
#include "platform/wayland/WaylandKeyboardLayouts.h"

#include <linux/input-event-codes.h>

#include <array>
#include <string>

namespace orvane::wayland {
namespace {

constexpr std::uint16_t MacZ = 0x06; // right of the left Shift on ISO keyboards, right of the ISO key
constexpr std::uint16_t MacQ = 0x0C;
constexpr std::uint32_t CommandOption = 0x0900;

struct Layout {
    const char *name;
    std::u16string q;
    std::u16string z;
};

/// Those of a keymap, which has four at most.
const std::array<Layout, 4> &layouts() {
    static const std::array<Layout, 4> all{{{"us", u"q", u"z"}, {"de", u"q", u"y"}, {"fr", u"a", u"w"}, {"ru", u"\u0439", u"\u044F"}}};
    return all;
}

class WaylandLayoutsTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(input, nullptr);
        input->press({KEY_LEFTSHIFT}); // sway's seat has the keymap of the keyboard that was used last
        // The compositor may not know the keyboard at once, and has no layouts until then.
        ASSERT_TRUE(HotKeyDesk::waitFor([] { return WaylandSeatKeymapText().value_or("").find("\"Russian\"") != std::string::npos; }));
    }
    void TearDown() override { switchTo(0); }

    static bool isOnSway() { return qEnvironmentVariableIsSet("SWAYSOCK"); }
    void switchTo(std::uint32_t number) const {
        if (isOnSway()) {
            input->switchLayout(number);
            input->press({KEY_LEFTSHIFT});
            return;
        }
        outputOf(QStringLiteral("gdbus"),
                 {QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"), QStringLiteral("org.kde.keyboard"),
                  QStringLiteral("--object-path"), QStringLiteral("/Layouts"), QStringLiteral("--method"),
                  QStringLiteral("org.kde.KeyboardLayouts.setLayout"), QString::number(number)});
    }
    std::u16string textOf(std::uint16_t keyCode) {
        const auto source = names.copyCurrentKeyboardInputSource();
        std::array<char16_t, 4> text{};
        std::uint32_t state = 0;
        std::size_t length = 0;
        names.keyTranslate(source == nullptr ? nullptr : source->unicodeKeyLayoutData(), keyCode, KeyAction::Display, 0, 0, 0, state, text,
                           length);
        return {text.data(), length};
    }
    void pressesArriveInEachLayout(std::uint32_t modifiers, const std::vector<std::uint32_t> &keys) {
        ASSERT_EQ(desk.take(MacZ, modifiers), EventNoError) << desk.keys->statement();
        std::size_t presses = 0;
        for (std::uint32_t number : {0U, 1U, 2U, 3U, 0U}) {
            switchTo(number);
            EXPECT_TRUE(HotKeyDesk::waitFor([&] { return textOf(MacZ) == layouts()[number].z; }));
            input->press(keys);
            ++presses;
            EXPECT_TRUE(HotKeyDesk::waitFor([&] { return desk.presses.size() >= presses; })) << layouts()[number].name;
            presses = desk.presses.size();
        }
        EXPECT_EQ(presses, 5U);
    }

    std::unique_ptr<WaylandInput> input = WaylandInput::open(1280, 800, "us,de,fr,ru");
    HotKeyDesk desk;
    WaylandKeyboardLayouts names{&desk.session};
};

TEST_F(WaylandLayoutsTest, NamesOfKeysAreThoseOfTheLayoutInUse) {
    for (std::uint32_t number : {0U, 1U, 2U, 3U, 1U, 0U}) {
        switchTo(number);
        EXPECT_TRUE(HotKeyDesk::waitFor([&] { return textOf(MacQ) == layouts()[number].q && textOf(MacZ) == layouts()[number].z; }))
            << layouts()[number].name;
    }
}

TEST_F(WaylandLayoutsTest, SourceIsTheSameUntilTheLayoutIsAnother) {
    switchTo(1); // what the compositor tells at the start has come when that is seen
    ASSERT_TRUE(HotKeyDesk::waitFor([&] { return textOf(MacZ) == u"y"; }));
    switchTo(0);
    ASSERT_TRUE(HotKeyDesk::waitFor([&] { return textOf(MacZ) == u"z"; }));
    const auto source = names.copyCurrentKeyboardInputSource();
    EXPECT_EQ(names.copyCurrentKeyboardInputSource(), source);
    switchTo(1);
    EXPECT_TRUE(HotKeyDesk::waitFor([&] { return names.copyCurrentKeyboardInputSource() != source; }));
    EXPECT_EQ(textOf(MacZ), u"y");
}

TEST_F(WaylandLayoutsTest, NumbersThatDoNotFitTheKeymapDoNotCount) {
    switchTo(3);
    ASSERT_TRUE(HotKeyDesk::waitFor([&] { return textOf(MacZ) == u"\u044F"; }));
    EXPECT_EQ(ActiveLayout(&desk.session).index({"No such layout", "Nor this one"}), std::nullopt);
}

TEST_F(WaylandLayoutsTest, WithoutTheCompositorsWordTheFirstLayoutCounts) {
    switchTo(3);
    ASSERT_TRUE(HotKeyDesk::waitFor([&] { return textOf(MacZ) == u"\u044F"; }));
    const QByteArray socket = qgetenv("SWAYSOCK");
    qunsetenv("SWAYSOCK");
    EXPECT_EQ(ActiveLayout(nullptr).index({"a", "b", "c", "d"}), std::nullopt);
    WaylandKeyboardLayouts alone; // without a bus
    const auto source = alone.copyCurrentKeyboardInputSource();
    if (!socket.isEmpty()) {
        qputenv("SWAYSOCK", socket);
    }
    ASSERT_NE(source, nullptr);
    std::array<char16_t, 4> text{};
    std::uint32_t state = 0;
    std::size_t length = 0;
    alone.keyTranslate(source->unicodeKeyLayoutData(), MacZ, KeyAction::Display, 0, 0, 0, state, text, length);
    EXPECT_EQ(std::u16string(text.data(), length), u"z");
}

TEST_F(WaylandLayoutsTest, HotKeyWithControlAndShiftIsTheSameKeyInEachLayout) {
    pressesArriveInEachLayout(HotKeyDesk::ShiftControl, {KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_Z});
}

TEST_F(WaylandLayoutsTest, HotKeyWithSuperAndAltIsTheSameKeyInEachLayout) {
    pressesArriveInEachLayout(CommandOption, {KEY_LEFTMETA, KEY_LEFTALT, KEY_Z});
}

} // namespace
} // namespace orvane::wayland
