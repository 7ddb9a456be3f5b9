#include "unit/hotkeys/KeyDesk.h"

#include "hotkeys/SGIntegerValue.h"
#include "hotkeys/SGKeyCodeTranslator.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace orvane::test {
namespace {

TEST(KeyNames, AreHexadecimalWhereTheLegacyListHasNone) {
    KeyDesk desk;
    desk.setKeyCodes(dict({{"36", text("Return")}}));
    EXPECT_EQ(SGKeyCombo(42, 0x100).keyCodeString(), "2A");
    EXPECT_EQ(SGKeyCombo(36, 0x100).keyCodeString(), "Return");
    EXPECT_EQ(SGKeyCombo(-1, 0x100).keyCodeString(), "FFFFFFFF");
    EXPECT_EQ(SGKeyCombo(0, 0x100).keyCodeString(), "0");
}

TEST(KeyNames, ListIsLegacyUnlessItsVersionIsAboveZero) {
    const auto nameWithVersion = [](const PropertyList &version) {
        KeyDesk desk;
        desk.setKeyCodes(dict({{"version", version}, {"7", text("old")}, {"unmappedKeys", dict({{"7", text("new")}})}}));
        return SGKeyCombo(7, 0x100).keyCodeString();
    };
    EXPECT_EQ(nameWithVersion(number(1)), "new");
    EXPECT_EQ(nameWithVersion(text("2")), "new");
    EXPECT_EQ(nameWithVersion(number(0)), "old");
    EXPECT_EQ(nameWithVersion(number(-1)), "old");
    EXPECT_EQ(nameWithVersion(text("none")), "old");
}

TEST(KeyNames, OfTheKeypadHaveThePrefixAndABlank) {
    KeyDesk desk;
    desk.setNewKeyCodes();
    desk.useLayout({{83, u"1"}, {18, u"1"}});
    EXPECT_EQ(SGKeyCombo(83, 0x100).keyCodeString(), "Pad 1");
    EXPECT_EQ(SGKeyCombo(18, 0x100).keyCodeString(), "1");
    desk.useLayout({{83, u"e"}});
    EXPECT_EQ(SGKeyCombo(83, 0x100).keyCodeString(), "Pad E");
}

TEST(KeyNames, FixedNameComesBeforeTheKeypadAndTheLayout) {
    KeyDesk desk;
    desk.setKeyCodes(dict({{"version", number(1)}, {"unmappedKeys", dict({{"76", text("Enter")}})}, {"padKeys", list({text("76")})}}));
    desk.useLayout({{76, u"x"}});
    EXPECT_EQ(SGKeyCombo(76, 0x100).keyCodeString(), "Enter");
    EXPECT_TRUE(desk.layouts.questions.empty());
}

TEST(KeyNames, EmptyNameIsANameInBothForms) {
    KeyDesk desk;
    desk.setKeyCodes(dict({{"version", number(1)}, {"unmappedKeys", dict({{"42", text("")}})}}));
    desk.useLayout({{42, u"x"}});
    EXPECT_EQ(SGKeyCombo(42, 0x100).keyCodeString(), "");
    EXPECT_TRUE(desk.layouts.questions.empty());
    KeyDesk legacy;
    legacy.setKeyCodes(dict({{"42", text("")}}));
    EXPECT_EQ(SGKeyCombo(42, 0x100).keyCodeString(), "");
}

TEST(KeyNames, KeypadCodesAreTextsInTheList) {
    KeyDesk desk;
    desk.setKeyCodes(dict({{"version", number(1)}, {"padKeys", list({number(83)})}, {"padKeyString", text("Pad")}}));
    desk.useLayout({{83, u"1"}});
    EXPECT_EQ(SGKeyCombo(83, 0x100).keyCodeString(), "1");
}

TEST(KeyNames, AbsentPrefixIsWrittenAsNull) {
    KeyDesk desk;
    desk.setKeyCodes(dict({{"version", number(1)}, {"padKeys", list({text("83")})}}));
    desk.useLayout({{83, u"1"}});
    EXPECT_EQ(SGKeyCombo(83, 0x100).keyCodeString(), "(null) 1");
}

TEST(KeyNames, CharactersAreMadeUpperCase) {
    KeyDesk desk;
    desk.setNewKeyCodes();
    desk.useLayout({{12, u"q"}, {27, u"\u00DF"}, {41, u"\u00E4"}});
    EXPECT_EQ(SGKeyCombo(12, 0x100).keyCodeString(), "Q");
    EXPECT_EQ(SGKeyCombo(27, 0x100).keyCodeString(), "SS");
    EXPECT_EQ(SGKeyCombo(41, 0x100).keyCodeString(), "Ä");
}

TEST(KeyNames, KeyCodeIsReadInSixteenBits) {
    KeyDesk desk;
    desk.setNewKeyCodes();
    EXPECT_EQ(SGKeyCombo(65536 + 36, 0x100).keyCodeString(), "Return");
}

TEST(KeyNames, SixteenBitsHaveASign) {
    KeyDesk desk;
    desk.setKeyCodes(dict({{"-1", text("minus one")}}));
    EXPECT_EQ(SGKeyCombo(0xFFFF, 0x100).keyCodeString(), "minus one");
    EXPECT_EQ(SGKeyCombo(0x8000, 0x100).keyCodeString(), "FFFF8000");
}

TEST(KeyNames, ListIsLoadedOnce) {
    KeyDesk desk;
    desk.setNewKeyCodes();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(SGKeyCombo(36, 0x100).keyCodeString(), "Return");
    }
    EXPECT_EQ(desk.resources.journal, std::vector<std::string>{"SGKeyCodes.plist"});
}

TEST(KeyNames, MissingListIsAnAssertionFailureAndThenHexadecimal) {
    KeyDesk desk;
    EXPECT_EQ(SGKeyCombo(42, 0x100).keyCodeString(), "2A");
    EXPECT_EQ(desk.assertions.failures,
              std::vector<std::string>{"+[SGKeyCombo _keyCodesDictionary] SGKeyCombo:109 Contents of SGKeyCodes is nil"});
}

TEST(KeyNames, MissingListStopsTheNamingWhenTheHandlerRaises) {
    KeyDesk desk;
    desk.assertions.raises = true;
    EXPECT_THROW((void)SGKeyCombo(42, 0x100).keyCodeString(), AssertionFailure);
}

TEST(KeyNames, DamagedListCountsAsEmpty) {
    KeyDesk desk;
    desk.resources.strings["SGKeyCodes.plist"] = "no property list";
    EXPECT_EQ(SGKeyCombo(255, 0x100).keyCodeString(), "FF");
    EXPECT_TRUE(desk.assertions.failures.empty());
}

TEST(SGKeyCodeTranslator, AsksForTheDisplayOfTheKeyWithoutModifiers) {
    KeyDesk desk;
    desk.layouts.type = 0x12F4;
    desk.useLayout({{5, u"g"}});
    EXPECT_EQ(SGKeyCodeTranslator::currentTranslator()->translateKeyCode(5), "g");
    ASSERT_EQ(desk.layouts.questions.size(), 1U);
    const auto &question = desk.layouts.questions.front();
    EXPECT_EQ(question.layout, desk.layouts.current->unicodeKeyLayoutData());
    EXPECT_EQ(question.keyCode, 5);
    EXPECT_EQ(question.action, KeyAction::Display);
    EXPECT_EQ(static_cast<int>(question.action), 3);
    EXPECT_EQ(question.modifierKeyState, 0U);
    EXPECT_EQ(question.keyboardType, 0xF4U);
    EXPECT_EQ(question.options, 0U);
    EXPECT_EQ(question.deadKeyState, 0U);
    EXPECT_EQ(question.room, 4U);
}

TEST(SGKeyCodeTranslator, CarriesTheDeadKeyStateToTheNextTranslation) {
    KeyDesk desk;
    desk.useLayout({{24, u"\u00B4"}});
    desk.layouts.nextDeadKeyState = 77;
    SGKeyCodeTranslator *translator = SGKeyCodeTranslator::currentTranslator();
    (void)translator->translateKeyCode(24);
    desk.layouts.nextDeadKeyState = 0;
    (void)translator->translateKeyCode(24);
    (void)translator->translateKeyCode(24);
    ASSERT_EQ(desk.layouts.questions.size(), 3U);
    EXPECT_EQ(desk.layouts.questions[1].deadKeyState, 77U);
    EXPECT_EQ(desk.layouts.questions[2].deadKeyState, 0U);
}

TEST(SGKeyCodeTranslator, GivesExactlyTheFirstUnitWhateverTheLengthAndTheStatus) {
    KeyDesk desk;
    desk.useLayout({{1, u"ab"}, {2, u"\U00010437"}});
    desk.layouts.nextStatus = -1;
    SGKeyCodeTranslator *translator = SGKeyCodeTranslator::currentTranslator();
    EXPECT_EQ(translator->translateKeyCode(1), "a");
    EXPECT_EQ(translator->translateKeyCode(2), "\xED\xA0\x81");       // the first half of a pair
    EXPECT_EQ(translator->translateKeyCode(3), std::string(1, '\0')); // no text: the unit 0
}

TEST(SGKeyCodeTranslator, IsKeptWhileTheLayoutIsTheSame) {
    KeyDesk desk;
    desk.setNewKeyCodes();
    desk.useLayout({{6, u"z"}});
    const SGKeyCodeTranslator *translator = SGKeyCodeTranslator::currentTranslator();
    EXPECT_EQ(SGKeyCodeTranslator::currentTranslator(), translator);
    EXPECT_EQ(translator->keyboardLayout(), desk.layouts.current);
}

TEST(SGKeyCodeTranslator, KeepsItsStateFromOneNameToTheNext) {
    KeyDesk desk;
    desk.setNewKeyCodes();
    desk.useLayout({{6, u"z"}});
    desk.layouts.nextDeadKeyState = 9;
    EXPECT_EQ(SGKeyCombo(6, 0x100).keyCodeString(), "Z");
    EXPECT_EQ(SGKeyCombo(6, 0x100).keyCodeString(), "Z");
    EXPECT_EQ(desk.layouts.questions.back().deadKeyState, 9U); // a translator made anew would begin with none
}

TEST(SGKeyCodeTranslator, FollowsTheLayoutAtTheNextName) {
    KeyDesk desk;
    desk.setNewKeyCodes();
    desk.useLayout({{6, u"z"}});
    EXPECT_EQ(SGKeyCombo(6, 0x100).keyCodeString(), "Z");
    desk.layouts.nextDeadKeyState = 9;
    EXPECT_EQ(SGKeyCombo(6, 0x100).keyCodeString(), "Z");
    desk.useLayout({{6, u"y"}});
    EXPECT_EQ(SGKeyCombo(6, 0x100).keyCodeString(), "Y");
    EXPECT_EQ(desk.layouts.questions.back().deadKeyState, 0U); // a new translator begins anew
}

TEST(SGKeyCodeTranslator, WorksOnTheOldLayoutsDataWhenTheLayoutIsSet) {
    KeyDesk desk;
    desk.useLayout({{6, u"z"}});
    SGKeyCodeTranslator translator(desk.layouts, desk.layouts.current);
    desk.useLayout({{6, u"y"}});
    translator.setKeyboardLayout(desk.layouts.current);
    EXPECT_EQ(translator.keyboardLayout(), desk.layouts.current);
    EXPECT_EQ(translator.translateKeyCode(6), "z");
}

TEST(SGKeyCodeTranslator, KeepsItsDeadKeyStateWhenTheLayoutIsSet) {
    KeyDesk desk;
    desk.useLayout({{24, u"\u00B4"}});
    SGKeyCodeTranslator translator(desk.layouts, desk.layouts.current);
    desk.layouts.nextDeadKeyState = 77;
    (void)translator.translateKeyCode(24);
    desk.useLayout({{24, u"`"}});
    translator.setKeyboardLayout(desk.layouts.current);
    (void)translator.translateKeyCode(24);
    ASSERT_EQ(desk.layouts.questions.size(), 2U);
    EXPECT_EQ(desk.layouts.questions[1].deadKeyState, 77U);
}

TEST(SGKeyCodeTranslator, IsMadeAnewOverOtherLayoutsEvenForTheSameSource) {
    KeyDesk desk;
    desk.useLayout({{24, u"\u00B4"}});
    desk.layouts.nextDeadKeyState = 77;
    (void)SGKeyCodeTranslator::currentTranslator()->translateKeyCode(24);
    FakeKeyboardLayouts others;
    others.current = desk.layouts.current;
    SGKeyCodeTranslator::setSharedLayouts(&others);
    (void)SGKeyCodeTranslator::currentTranslator()->translateKeyCode(24);
    EXPECT_EQ(desk.layouts.questions.size(), 1U);
    ASSERT_EQ(others.questions.size(), 1U);
    EXPECT_EQ(others.questions[0].deadKeyState, 0U);
}

TEST(SGKeyCodeTranslator, HasNoCharactersWithoutALayout) {
    KeyDesk desk;
    EXPECT_EQ(SGKeyCodeTranslator::currentTranslator()->translateKeyCode(6), std::string(1, '\0'));
    EXPECT_EQ(desk.layouts.questions.back().layout, nullptr);
}

TEST(SGKeyCodeTranslator, IsNullWithoutKeyboard) {
    EXPECT_EQ(SGKeyCodeTranslator::currentTranslator(), nullptr);
}

TEST(SGIntegerValue, ReadsNumbersAndTextsAlike) {
    const auto valueOf = [](const PropertyList &list) { return SGIntegerValue(&list.root()); };
    constexpr std::int64_t Largest = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t Smallest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(valueOf(number(-3)), -3);
    EXPECT_EQ(valueOf({nullptr, PropertyListValue::ofUnsigned(std::numeric_limits<std::uint64_t>::max())}), -1);
    EXPECT_EQ(valueOf(real(2.9)), 2);
    EXPECT_EQ(valueOf(real(-2.9)), -2);
    EXPECT_EQ(valueOf(real(1e30)), Largest);
    EXPECT_EQ(valueOf(real(-1e30)), Smallest);
    EXPECT_EQ(valueOf(real(std::numeric_limits<double>::quiet_NaN())), 0);
    EXPECT_EQ(valueOf(yes()), 1);
    EXPECT_EQ(valueOf(text("1048576")), 1048576);
    EXPECT_EQ(valueOf(text(" \t+12x")), 12);
    EXPECT_EQ(valueOf(text("-7")), -7);
    EXPECT_EQ(valueOf(text("+-7")), 0);
    EXPECT_EQ(valueOf(text("x7")), 0);
    EXPECT_EQ(valueOf(text("  ")), 0);
    EXPECT_EQ(valueOf(text("99999999999999999999")), Largest);
    EXPECT_EQ(valueOf(text("-99999999999999999999")), Smallest);
    EXPECT_EQ(valueOf(list({})), 0);
    EXPECT_EQ(SGIntegerValue(nullptr), 0);
}

} // namespace
} // namespace orvane::test
