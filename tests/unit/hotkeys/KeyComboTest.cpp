#include "unit/hotkeys/KeyDesk.h"

#include "hotkeys/SRRecorderControl.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace orvane::test {
namespace {

constexpr const char *Command = "\u2318";
constexpr const char *Option = "\u2325";
constexpr const char *Control = "\u2303";
constexpr const char *Shift = "\u21E7";

std::pair<std::intptr_t, std::intptr_t> numbers(const SGKeyCombo &combo) {
    return {combo.keyCode(), combo.modifiers()};
}

using Numbers = std::pair<std::intptr_t, std::intptr_t>;

SGKeyCombo comboOf(const PropertyList &list) {
    return SGKeyCombo(&list.root());
}

TEST(SGKeyCombo, ClearCombinationIsNeitherKeyNorModifiers) {
    KeyDesk desk;
    desk.resources.languages["(None)"] = "(Keine)";
    const SGKeyCombo combo = SGKeyCombo::clearKeyCombo();
    EXPECT_EQ(numbers(combo), Numbers(-1, -1));
    EXPECT_TRUE(combo.isClearCombo());
    EXPECT_FALSE(combo.isValidHotKeyCombo());
    EXPECT_EQ(combo.keyCodeString(), "");
    EXPECT_EQ(combo.modifierMask(), 0U);
    EXPECT_EQ(combo.description(), "(Keine)");
}

TEST(SGKeyCombo, NoneIsItsOwnTextWithoutATranslation) {
    const KeyDesk desk;
    EXPECT_EQ(SGKeyCombo(12, 0).description(), "(None)");
}

TEST(SGKeyCombo, KeyCodeZeroIsAKeyButNeedsAModifier) {
    const SGKeyCombo bare(0, 0);
    EXPECT_FALSE(bare.isClearCombo());
    EXPECT_FALSE(bare.isValidHotKeyCombo());
    EXPECT_TRUE(SGKeyCombo(0, 0x0100).isValidHotKeyCombo());
}

TEST(SGKeyCombo, IsValidOnlyWithAKeyAndAPositiveMask) {
    EXPECT_FALSE(SGKeyCombo(-1, 0x0100).isValidHotKeyCombo());
    EXPECT_FALSE(SGKeyCombo(5, -1).isValidHotKeyCombo());
    EXPECT_FALSE(SGKeyCombo(5, 0).isValidHotKeyCombo());
    EXPECT_TRUE(SGKeyCombo(5, 1).isValidHotKeyCombo());
    EXPECT_FALSE(SGKeyCombo(-1, 0).isClearCombo());
    EXPECT_FALSE(SGKeyCombo(0, -1).isClearCombo());
}

TEST(SGKeyCombo, ConvenienceConstructorKeepsBothNumbersUnchanged) {
    EXPECT_EQ(numbers(SGKeyCombo::keyComboWithKeyCodeModifiers(-7, 99999)), Numbers(-7, 99999));
}

TEST(SGKeyCombo, PropertyListNumbersNotAboveZeroBecomeNone) {
    EXPECT_EQ(numbers(comboOf(dict({{"keyCode", number(0)}, {"modifiers", number(256)}}))), Numbers(-1, 256));
    EXPECT_EQ(numbers(comboOf(dict({{"keyCode", number(12)}, {"modifiers", number(-5)}}))), Numbers(12, -1));
    EXPECT_EQ(numbers(comboOf(dict({{"keyCode", number(12)}, {"modifiers", number(0)}}))), Numbers(12, -1));
}

TEST(SGKeyCombo, EmptyOrAbsentPropertyListIsTheClearCombination) {
    EXPECT_TRUE(comboOf(dict({})).isClearCombo());
    EXPECT_TRUE(SGKeyCombo(nullptr).isClearCombo());
    EXPECT_TRUE(comboOf(dict({{"other", number(3)}})).isClearCombo());
}

TEST(SGKeyCombo, PropertyListNumbersMayBeTexts) {
    EXPECT_EQ(numbers(comboOf(dict({{"keyCode", text(" 12 apples")}, {"modifiers", text("256")}}))), Numbers(12, 256));
}

TEST(SGKeyCombo, PropertyListHoldsBothNumbersAsTheyAre) {
    EXPECT_TRUE(SGKeyCombo(-1, -1).plistRepresentation().root().equals(dict({{"keyCode", number(-1)}, {"modifiers", number(-1)}}).root()));
    EXPECT_TRUE(
        SGKeyCombo(40, 768).plistRepresentation().root().equals(dict({{"keyCode", number(40)}, {"modifiers", number(768)}}).root()));
}

TEST(SGKeyCombo, EqualCodesAndModifiersAreEqualWhateverTheObject) {
    struct Lookalike {
        [[nodiscard]] std::intptr_t keyCode() const { return 40; }
        [[nodiscard]] std::intptr_t modifiers() const { return 768; }
    };
    EXPECT_EQ(SGKeyCombo(40, 768), SGKeyCombo(40, 768));
    EXPECT_TRUE(SGKeyCombo(40, 768).isEqual(Lookalike()));
    EXPECT_NE(SGKeyCombo(40, 768), SGKeyCombo(41, 768));
    EXPECT_NE(SGKeyCombo(40, 768), SGKeyCombo(40, 256));
}

TEST(SGKeyCombo, EveryBitCountsForEquality) {
    constexpr int Bits = 63; // without the sign
    for (int bit = 0; bit < Bits; ++bit) {
        const std::intptr_t flipped = std::intptr_t{1} << bit;
        EXPECT_NE(SGKeyCombo(40, 768), SGKeyCombo(40, 768 ^ flipped)) << bit;
        EXPECT_NE(SGKeyCombo(40, 768), SGKeyCombo(40 ^ flipped, 768)) << bit;
    }
    EXPECT_NE(SGKeyCombo(40, -1), SGKeyCombo(40, 0));
    EXPECT_NE(SGKeyCombo(-1, 768), SGKeyCombo(0, 768));
}

TEST(SGKeyCombo, SettersChangeTheNumbers) {
    SGKeyCombo combo = SGKeyCombo::clearKeyCombo();
    combo.setKeyCode(3);
    combo.setModifiers(0x0200);
    EXPECT_EQ(numbers(combo), Numbers(3, 0x0200));
}

TEST(SGKeyCombo, GlyphsComeInTheOrderCommandOptionControlShift) {
    EXPECT_EQ(SGKeyCombo::_stringForModifiers(0x0300), std::string(Command) + Shift);
    EXPECT_EQ(SGKeyCombo::_stringForModifiers(0x1A00), std::string(Option) + Control + Shift);
    EXPECT_EQ(SGKeyCombo::_stringForModifiers(-1), std::string(Command) + Option + Control + Shift);
    EXPECT_EQ(SGKeyCombo::_stringForModifiers(0), "");
    EXPECT_EQ(SGKeyCombo::_stringForModifiers(0x0400), ""); // alpha lock is none of the four
}

TEST(SGKeyCombo, ModifierMaskIsInTheCocoaConvention) {
    EXPECT_EQ(SGKeyCombo(1, 0x0900).modifierMask(), 0x180000U);
    EXPECT_EQ(SGKeyCombo(1, 0x1A00).modifierMask(), 0x0E0000U);
    EXPECT_EQ(SGKeyCombo(1, 0x0500).modifierMask(), 0x100000U);
    EXPECT_EQ(SGKeyCombo(1, -1).modifierMask(), 0x1E0000U); // a key without modifiers set is not the clear combination
}

TEST(SGKeyCombo, DescriptionIsGlyphsAndThenTheKey) {
    KeyDesk desk;
    desk.setNewKeyCodes();
    desk.useLayout({{40, u"k"}});
    EXPECT_EQ(SGKeyCombo(40, 0x0300).description(), std::string(Command) + Shift + "K");
    EXPECT_EQ(SGKeyCombo(36, 0x0100).description(), std::string(Command) + "Return");
}

TEST(SGKeyCombo, DescriptionOfInvalidCombinationsNamesNoKey) {
    KeyDesk desk;
    desk.setNewKeyCodes();
    EXPECT_EQ(SGKeyCombo(36, 0).description(), "(None)");
    EXPECT_EQ(SGKeyCombo(-1, 0x0100).description(), "(None)");
}

TEST(SGKeyCombo, IsUsableWithoutPorts) {
    EXPECT_EQ(SGKeyCombo(40, 0x0100).keyCodeString(), "");
    EXPECT_EQ(SGKeyCombo::clearKeyCombo().description(), "(None)");
}

TEST(SRRecorderControl, ChangesTheFourModifiersToTheCarbonConvention) {
    const SRRecorderControl recorder;
    EXPECT_EQ(recorder.cocoaToCarbonFlags(0x100000), 0x0100);
    EXPECT_EQ(recorder.cocoaToCarbonFlags(0x080000), 0x0800);
    EXPECT_EQ(recorder.cocoaToCarbonFlags(0x040000), 0x1000);
    EXPECT_EQ(recorder.cocoaToCarbonFlags(0x020000), 0x0200);
    EXPECT_EQ(recorder.cocoaToCarbonFlags(0x1E0000), 0x1B00);
    EXPECT_EQ(recorder.cocoaToCarbonFlags(0), 0);
}

TEST(SRRecorderControl, DropsEverythingElse) {
    EXPECT_EQ(SRRecorderControl().cocoaToCarbonFlags(0xFFFFFFFFFFE1FFFFU), 0);
}

} // namespace
} // namespace orvane::test
