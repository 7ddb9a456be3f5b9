#include "fakes/FakeAssertionHandler.h"
#include "fakes/FakeKeyboardLayouts.h"
#include "fakes/FakeTextCase.h"
#include "hotkeys/SGKeyCombo.h"
#include "platform/propertylist/PropertyListFiles.h"

#include <gtest/gtest.h>

#include <charconv>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

// The list of key names that is shipped.

namespace orvane::test {
namespace {

PropertyList shippedList() {
    std::ifstream file(ORVANE_KEY_CODES, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    PropertyListReport report;
    const auto list = readPropertyList(bytes, &report);
    EXPECT_TRUE(list) << report.why;
    return list.value_or(PropertyList());
}

int codeOf(std::string_view text) {
    int code = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code);
    return error == std::errc() && end == text.data() + text.size() && std::to_string(code) == text ? code : -1;
}

std::set<int> namedKeys(const PropertyList &list) {
    std::set<int> codes;
    for (const PropertyListEntry &entry : list.root().find("unmappedKeys")->dictionary()) {
        EXPECT_TRUE(codes.insert(codeOf(entry.key)).second) << entry.key;
        EXPECT_FALSE(entry.value.string().empty()) << entry.key;
    }
    return codes;
}

std::set<int> padKeys(const PropertyList &list) {
    std::set<int> codes;
    for (const PropertyListValue &value : list.root().find("padKeys")->array()) {
        EXPECT_TRUE(codes.insert(codeOf(value.string())).second) << value.string();
    }
    return codes;
}

TEST(KeyCodesFile, HasTheNewerForm) {
    const PropertyList list = shippedList();
    ASSERT_TRUE(list.root().isDictionary());
    EXPECT_EQ(list.root().dictionary().size(), 4U);
    EXPECT_EQ(list.root().find("version")->integer(), 1);
    EXPECT_EQ(list.root().find("padKeyString")->string(), "Pad");
}

// Codes by HIToolbox/Events.h of Apple's Carbon framework (kVK_...).

TEST(KeyCodesFile, NamesExactlyTheKeysThatHaveNoCharacter) {
    const std::set<int> expected{
        0x24, 0x30, 0x31, 0x33, 0x35,                                           // Return, Tab, Space, Delete, Escape
        0x36, 0x37, 0x38, 0x39, 0x3A, 0x3B, 0x3C, 0x3D, 0x3E, 0x3F,             // modifiers, Caps Lock, Function
        0x7A, 0x78, 0x63, 0x76, 0x60, 0x61, 0x62, 0x64, 0x65, 0x6D, 0x67, 0x6F, // F1 to F12
        0x69, 0x6B, 0x71, 0x6A, 0x40, 0x4F, 0x50, 0x5A,                         // F13 to F20
        0x47, 0x4C,                                                             // keypad: Clear, Enter
        0x48, 0x49, 0x4A,                                                       // volume up, down, mute
        0x66, 0x68,                                                             // Eisu, Kana
        0x6E, 0x72, 0x73, 0x74, 0x75, 0x77, 0x79, 0x7B, 0x7C, 0x7D, 0x7E,       // menu, help, navigation, arrows
    };
    EXPECT_EQ(namedKeys(shippedList()), expected);
}

TEST(KeyCodesFile, ListsTheKeypadKeysThatHaveACharacter) {
    const std::set<int> expected{0x41, 0x43, 0x45, 0x4B, 0x4E, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56, 0x57, 0x58, 0x59, 0x5B, 0x5C, 0x5F};
    EXPECT_EQ(padKeys(shippedList()), expected);
}

TEST(KeyCodesFile, CoversEveryKeyCodeThatIsNotALayoutsOwn) {
    // What is neither named nor on the keypad is a key that layouts print on, or no key.
    std::set<int> rest;
    const PropertyList list = shippedList();
    const std::set<int> named = namedKeys(list);
    const std::set<int> pad = padKeys(list);
    for (int code = 0; code < 128; ++code) {
        EXPECT_FALSE(named.contains(code) && pad.contains(code)) << code;
        if (!named.contains(code) && !pad.contains(code)) {
            rest.insert(code);
        }
    }
    std::set<int> expected;
    for (int code = 0; code <= 0x32; ++code) {
        if (code != 0x24 && code != 0x30 && code != 0x31) {
            expected.insert(code); // letters, digits, punctuation and the ISO key
        }
    }
    expected.insert({0x5D, 0x5E});                                     // JIS yen and underscore
    expected.insert({0x34, 0x42, 0x44, 0x46, 0x4D, 0x6C, 0x70, 0x7F}); // no key
    EXPECT_EQ(rest, expected);
}

TEST(KeyCodesFile, NamesAreDistinct) {
    std::set<std::string> names;
    const PropertyList list = shippedList();
    for (const PropertyListEntry &entry : list.root().find("unmappedKeys")->dictionary()) {
        EXPECT_TRUE(names.insert(std::string(entry.value.string())).second) << entry.value.string();
    }
}

/// The shipped file as a resource.
class ShippedResources final : public Resources {
public:
    [[nodiscard]] std::optional<std::string> stringOfResource(std::string_view name, std::string_view type) override {
        if (name != "SGKeyCodes" || type != "plist") {
            return std::nullopt;
        }
        std::ifstream file(ORVANE_KEY_CODES, std::ios::binary);
        return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    }
    [[nodiscard]] std::optional<PropertyList> propertyListOfString(std::string_view text) override { return readPropertyList(text); }
    [[nodiscard]] std::string localizedString(std::string_view key) override { return std::string(key); }
};

TEST(KeyCodesFile, GivesNamesToCombinations) {
    FakeAssertionHandler assertions;
    FakeKeyboardLayouts layouts;
    FakeTextCase textCase;
    ShippedResources resources;
    layouts.current = std::make_shared<const FakeKeyboardLayouts::Layout>(std::map<std::uint16_t, std::u16string>{{83, u"1"}, {40, u"k"}});
    const SGKeyComboPorts ports{assertions, layouts, resources, textCase};
    SGKeyCombo::setSharedPorts(&ports);
    EXPECT_EQ(SGKeyCombo(36, 0x0100).description(), "\u2318Return");
    EXPECT_EQ(SGKeyCombo(49, 0x1000).keyCodeString(), "Space");
    EXPECT_EQ(SGKeyCombo(122, 0x1000).keyCodeString(), "F1");
    EXPECT_EQ(SGKeyCombo(83, 0x1000).keyCodeString(), "Pad 1");
    EXPECT_EQ(SGKeyCombo(76, 0x1000).keyCodeString(), "Pad Enter");
    EXPECT_EQ(SGKeyCombo(40, 0x0300).description(), "\u2318\u21E7K");
    EXPECT_TRUE(assertions.failures.empty());
    SGKeyCombo::setSharedPorts(nullptr);
}

} // namespace
} // namespace orvane::test
