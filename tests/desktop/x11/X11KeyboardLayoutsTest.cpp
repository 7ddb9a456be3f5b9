#include "desktop/x11/X11TestDesk.h"

#include "fakes/FakeAssertionHandler.h"
#include "hotkeys/SGKeyCombo.h"
#include "platform/posix/UnistringTextCase.h"
#include "platform/propertylist/PropertyListFiles.h"
#include "platform/x11/X11DeadKeys.h"
#include "platform/x11/X11KeyboardLayouts.h"
#include "ports/UTF16.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::test {
namespace {

class X11Layouts : public testing::Test {
protected:
    void setLayout(const std::string &arguments) {
        const auto before = program.keyboard->generation();
        user.setLayout(arguments);
        ASSERT_TRUE(program.pumpUntil([&] { return program.keyboard->generation() != before; }));
    }
    [[nodiscard]] std::string translate(std::uint16_t keyCode, KeyAction action = KeyAction::Display) {
        const auto source = layouts.copyCurrentKeyboardInputSource();
        std::array<char16_t, 4> text{};
        std::size_t length = 99;
        const auto *const data = source ? source->unicodeKeyLayoutData() : nullptr;
        EXPECT_EQ(layouts.keyTranslate(data, keyCode, action, 0, layouts.keyboardType(), 0, deadKeyState, text, length), 0);
        return ORVTextOfUTF16(std::u16string_view(text.data(), length));
    }

    X11User user;
    X11Program program;
    X11KeyboardLayouts layouts{*program.keyboard};
    std::uint32_t deadKeyState = 0;
};

struct Printed {
    const char *layout;
    std::uint16_t keyCode;
    const char *character;
};

TEST_F(X11Layouts, GiveWhatIsPrintedOnTheKey) {
    const std::vector<Printed> keys{
        {"us", 0x06, "z"},  {"us", 0x00, "a"},  {"us", 0x29, ";"}, {"us", 0x12, "1"}, {"us", 0x32, "`"}, {"us", 0x0A, "<"},
        {"de", 0x06, "y"},  {"de", 0x29, "ö"},  {"de", 0x1B, "ß"}, {"de", 0x18, "´"}, {"de", 0x32, "^"}, {"de", 0x0A, "<"},
        {"fr", 0x00, "q"},  {"fr", 0x0C, "a"},  {"fr", 0x12, "&"}, {"fr", 0x21, "^"}, {"fr", 0x29, "m"}, {"fr", 0x1C, "_"},
        {"ru", 0x0C, "й"},  {"ru", 0x2F, "ю"},  {"ru", 0x12, "1"}, {"tr", 0x22, "ı"}, {"tr", 0x27, "i"}, {"tr", 0x29, "ş"},
        {"jp", 0x5D, "\\"}, {"jp", 0x5E, "\\"}, {"jp", 0x18, "^"}, {"jp", 0x21, "@"},
    };
    std::string current;
    for (const Printed &key : keys) {
        if (key.layout != current) {
            current = key.layout;
            setLayout("-layout " + current);
        }
        EXPECT_EQ(translate(key.keyCode), key.character) << key.layout << " " << key.keyCode;
    }
}

TEST_F(X11Layouts, KeypadPrintsDigitsWhateverNumLockSays) {
    const std::array<std::uint16_t, 10> digits{0x52, 0x53, 0x54, 0x55, 0x56, 0x57, 0x58, 0x59, 0x5B, 0x5C};
    for (int pass = 0; pass < 2; ++pass) {
        for (std::size_t i = 0; i < digits.size(); ++i) {
            EXPECT_EQ(translate(digits[i]), std::to_string(i));
        }
        EXPECT_EQ(translate(0x41), ".");
        EXPECT_EQ(translate(0x43), "*");
        EXPECT_EQ(translate(0x45), "+");
        EXPECT_EQ(translate(0x4B), "/");
        EXPECT_EQ(translate(0x4E), "-");
        EXPECT_EQ(translate(0x51), "=");
        user.tap(XKeyNumLock);
        program.pump();
    }
}

TEST_F(X11Layouts, KeysWithoutACharacterGiveNoText) {
    constexpr std::array<std::uint16_t, 15> Keys{0x24, 0x30, 0x33, 0x35, 0x38, 0x7A, 0x7E,  0x75,
                                                 0x4C, 0x47, 0x3F, 0x34, 0x7F, 0x80, 0xFFFF};
    for (const std::uint16_t keyCode : Keys) {
        EXPECT_EQ(translate(keyCode), "") << keyCode;
    }
}

TEST_F(X11Layouts, FollowTheGroup) {
    setLayout("-layout us,ru,de");
    EXPECT_EQ(translate(0x0C), "q");
    user.lockGroup(1);
    program.pump();
    EXPECT_EQ(translate(0x0C), "й");
    user.lockGroup(2);
    program.pump();
    EXPECT_EQ(translate(0x06), "y");
    user.lockGroup(0);
    program.pump();
    EXPECT_EQ(translate(0x06), "z");
}

TEST_F(X11Layouts, SourceIsTheSameUntilKeymapOrGroupChange) {
    setLayout("-layout us,ru");
    (void)translate(0);
    program.pump();
    const auto us = layouts.copyCurrentKeyboardInputSource();
    ASSERT_NE(us, nullptr);
    user.tap(XKeyCapsLock);
    user.strike(XKeyK, Control | Shift);
    user.tap(XKeyCapsLock);
    program.pump();
    EXPECT_EQ(layouts.copyCurrentKeyboardInputSource(), us);
    user.lockGroup(1);
    program.pump();
    const auto ru = layouts.copyCurrentKeyboardInputSource();
    EXPECT_NE(ru, us);
    setLayout("-layout fr");
    EXPECT_NE(layouts.copyCurrentKeyboardInputSource(), ru);
}

TEST_F(X11Layouts, OldSourceKeepsItsCharacters) {
    setLayout("-layout de");
    const auto de = layouts.copyCurrentKeyboardInputSource();
    setLayout("-layout fr");
    std::array<char16_t, 4> text{};
    std::size_t length = 0;
    EXPECT_EQ(layouts.keyTranslate(de->unicodeKeyLayoutData(), 0x0C, KeyAction::Display, 0, 0, 0, deadKeyState, text, length), 0);
    EXPECT_EQ(text[0], u'q');
    EXPECT_EQ(translate(0x0C), "a");
}

TEST_F(X11Layouts, NoLayoutDataIsAnError) {
    std::array<char16_t, 4> text{u'x'};
    std::size_t length = 9;
    EXPECT_NE(layouts.keyTranslate(nullptr, 0, KeyAction::Display, 0, 0, 0, deadKeyState, text, length), 0);
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(text[0], u'x');
}

TEST_F(X11Layouts, DisplayOfADeadKeyIsItsAccentAndLeavesNoState) {
    setLayout("-layout de");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(translate(0x18), "´");
        EXPECT_EQ(deadKeyState, 0U);
    }
    EXPECT_EQ(translate(0x0E), "e");
}

TEST_F(X11Layouts, DeadKeyWaitsForTheNext) {
    setLayout("-layout de");
    const auto typed = [&](std::uint16_t dead, std::uint16_t next) {
        EXPECT_EQ(translate(dead, KeyAction::Down), "");
        EXPECT_NE(deadKeyState, 0U);
        std::string text = translate(next, KeyAction::Down);
        EXPECT_EQ(deadKeyState, 0U);
        return text;
    };
    EXPECT_EQ(typed(0x18, 0x0E), "é");
    EXPECT_EQ(typed(0x18, 0x18), "´"); // twice
    EXPECT_EQ(typed(0x18, 0x31), "'"); // space
    EXPECT_EQ(typed(0x32, 0x0E), "ê"); // circumflex
    EXPECT_EQ(typed(0x18, 0x2D), "ń");
    EXPECT_EQ(typed(0x18, 0x12), "´1"); // no such letter: one after the other
    EXPECT_EQ(typed(0x32, 0x7A), "^");  // F1 has no text of its own
    EXPECT_EQ(translate(0x0E, KeyAction::Down), "e");
}

TEST_F(X11Layouts, StateIsCombinedAndClearedByADisplayToo) {
    setLayout("-layout de");
    EXPECT_EQ(translate(0x18, KeyAction::Down), "");
    EXPECT_EQ(translate(0x0E, KeyAction::Display), "é");
    EXPECT_EQ(deadKeyState, 0U);
}

TEST_F(X11Layouts, TextNeverExceedsItsRoom) {
    setLayout("-layout de");
    (void)translate(0x18, KeyAction::Down);
    std::array<char16_t, 1> text{};
    std::size_t length = 0;
    const auto source = layouts.copyCurrentKeyboardInputSource();
    EXPECT_EQ(layouts.keyTranslate(source->unicodeKeyLayoutData(), 0x12, KeyAction::Down, 0, 0, 0, deadKeyState, text, length), 0);
    EXPECT_EQ(length, 1U);
    EXPECT_EQ(text[0], u'\u00B4');
}

/// The shipped list of key names.
class ShippedResources final : public Resources {
public:
    [[nodiscard]] std::optional<std::string> stringOfResource(std::string_view name, std::string_view type) override {
        const char *folder = std::getenv("ORVANE_TEST_RESOURCES");
        std::ifstream file((folder == nullptr ? "" : std::string(folder) + "/") + std::string(name) + "." + std::string(type));
        EXPECT_TRUE(file.good());
        return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    }
    [[nodiscard]] std::optional<PropertyList> propertyListOfString(std::string_view text) override { return readPropertyList(text); }
    [[nodiscard]] std::string localizedString(std::string_view key) override { return std::string(key); }
};

TEST_F(X11Layouts, NamesOfKeysFollowTheLayout) {
    FakeAssertionHandler assertions;
    ShippedResources resources;
    UnistringTextCase textCase;
    const SGKeyComboPorts ports{assertions, layouts, resources, textCase};
    SGKeyCombo::setSharedPorts(&ports);
    const SGKeyCombo combo(0x06, Command | Shift);
    setLayout("-layout us");
    EXPECT_EQ(combo.description(), "\u2318\u21E7Z");
    setLayout("-layout de");
    EXPECT_EQ(combo.description(), "\u2318\u21E7Y");
    EXPECT_EQ(SGKeyCombo(0x29, Control).keyCodeString(), "Ö");
    EXPECT_EQ(SGKeyCombo(0x1B, Control).keyCodeString(), "SS");
    EXPECT_EQ(SGKeyCombo(0x18, Control).keyCodeString(), "´");
    EXPECT_EQ(SGKeyCombo(0x53, Control).keyCodeString(), "Pad 1");
    EXPECT_EQ(SGKeyCombo(0x41, Control).keyCodeString(), "Pad ,");
    setLayout("-layout ru");
    EXPECT_EQ(SGKeyCombo(0x0C, Control).keyCodeString(), "Й");
    setLayout("-layout tr");
    EXPECT_EQ(SGKeyCombo(0x22, Control).keyCodeString(), "I");
    EXPECT_EQ(SGKeyCombo(0x7A, Control).keyCodeString(), "F1");
    EXPECT_TRUE(assertions.failures.empty());
    SGKeyCombo::setSharedPorts(nullptr);
}

} // namespace
} // namespace orvane::test
