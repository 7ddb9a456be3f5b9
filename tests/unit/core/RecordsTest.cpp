#include "presets/ORVPropertyListReading.h"
#include "unit/core/Desk.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Names = std::vector<std::string>;

std::string defaultFor(std::string_view name, std::string_view stored) {
    ORVAutomaticVariables variables;
    variables.emplace(std::string(name), PropertyListValue::viewOfString(stored));
    return ORVPresetManager::defaultValueForVariable(name, variables);
}

TEST(Records, NoPreferencesAtAllGiveNoPresetsAndNoCounters) {
    Desk desk;
    EXPECT_EQ(desk.manager->presetNames(), Names());
    EXPECT_TRUE(desk.manager->automaticVariables().empty());
}

TEST(Records, PresetNamesSkipPresetsWithoutLabelAndKeepTheOrder) {
    Desk desk;
    desk.setPresets(list({dict({{"label", text("A")}}), dict({{"directoryName", text("x")}}), dict({{"label", text("B")}})}));
    desk.manager->readConfiguration();
    EXPECT_EQ(desk.manager->presetNames(), (Names{"A", "B"}));
    EXPECT_EQ(desk.manager->presets().size(), 3U);
}

TEST(Records, PresetNamesHoldALabelThatIsEmpty) {
    Desk desk;
    desk.setPresets(list({dict({{"label", text("")}}), dict({{"label", text("B")}})}));
    desk.manager->readConfiguration();
    EXPECT_EQ(desk.manager->presetNames(), (Names{"", "B"}));
}

TEST(Records, APresetsValueThatIsNoArrayCountsAsNone) {
    Desk desk;
    for (const PropertyList &wrong : {text("x"), number(3), dict({}), yes()}) {
        desk.setPresets(wrong);
        desk.manager->readConfiguration();
        EXPECT_TRUE(desk.manager->presets().empty());
    }
}

TEST(Records, ReadingTheConfigurationSynchronisesFirst) {
    Desk desk;
    desk.preferences.journal.clear();
    desk.manager->readConfiguration();
    EXPECT_EQ(desk.preferences.journal, (Names{"synchronize", "copyAppValue ORVPresets"}));
}

TEST(Records, AskingForTheCountersRefreshesThePresetsToo) {
    Desk desk;
    EXPECT_TRUE(desk.manager->presets().empty());
    desk.setPresets(list({dict({{"label", text("New")}})}));
    (void)desk.manager->automaticVariables();
    EXPECT_EQ(desk.manager->presetNames(), (Names{"New"}));
}

TEST(Records, AnArrayHandedOutEarlierStaysValidUntilTheEventHasBeenHandled) {
    Desk desk;
    desk.setPresets(list({dict({{"label", text("Old")}})}));
    desk.manager->readConfiguration();
    desk.mainThread.endEvent();
    const std::vector<PropertyListValue> &handedOut = desk.manager->presets();
    desk.setPresets(list({}));
    desk.manager->readConfiguration();
    ASSERT_EQ(desk.mainThread.deferred(), 1U);
    ASSERT_EQ(handedOut.size(), 1U);
    EXPECT_EQ(handedOut[0].find("label")->string(), "Old");
    desk.mainThread.endEvent();
    EXPECT_EQ(desk.mainThread.deferred(), 0U);
}

TEST(Records, SettingTheCountersWritesThemWholeAndSynchronisesAtOnce) {
    Desk desk;
    desk.setCounters(dict({{"AutoOld", text("1")}}));
    desk.preferences.journal.clear();
    ORVAutomaticVariables variables;
    variables["AutoNew"] = PropertyListValue::viewOfString("7");
    desk.manager->setAutomaticVariables(variables);
    EXPECT_EQ(desk.preferences.journal, (Names{"setAppValue ORVAutomaticVars", "synchronize"}));
    EXPECT_EQ(desk.counter("AutoNew"), "7");
    EXPECT_EQ(desk.counter("AutoOld"), "(absent)");
}

TEST(Records, TheCountersAreACopyThatItsOwnerMayChange) {
    Desk desk;
    desk.setCounters(dict({{"auto", text("1")}}));
    ORVAutomaticVariables copy = desk.manager->automaticVariables();
    copy["auto"] = PropertyListValue::viewOfString("9");
    EXPECT_EQ(desk.counter("auto"), "1");
    EXPECT_EQ(desk.manager->automaticVariables()["auto"].string(), "1");
}

TEST(Records, CountersOfOtherTypesSurviveARoundTrip) {
    Desk desk;
    desk.setCounters(dict({{"AutoDict", dict({{"a", number(1)}})}, {"AutoNumber", number(41)}}));
    const ORVAutomaticVariables variables = desk.manager->automaticVariables();
    desk.mainThread.endEvent();
    desk.preferences.disk.reset();
    desk.manager->readConfiguration();
    desk.mainThread.endEvent();
    desk.manager->setAutomaticVariables(variables);
    const PropertyListValue *stored = desk.preferences.disk->root().find(ORVAutomaticVarsKey);
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(stored->find("AutoDict")->find("a")->integer(), 1);
    EXPECT_EQ(stored->find("AutoNumber")->integer(), 41);
}

TEST(AutomaticVariables, AreThoseWhoseNameStartsWithAutoInAnyCase) {
    for (const char *name : {"auto", "Auto", "AUTO_JOB", "AutoNumber", "aUtO!", "auto\n2"}) {
        EXPECT_TRUE(ORVPresetManager::isAutomaticVariable(name)) << name;
    }
    for (const char *name : {"", "aut", "myauto", " auto", "Ａuto", "oto"}) {
        EXPECT_FALSE(ORVPresetManager::isAutomaticVariable(name)) << name;
    }
}

TEST(DefaultValue, OfAnOrdinaryVariableIsEmptyEvenWhenOneIsStored) {
    EXPECT_EQ(defaultFor("Project", "41"), "");
}

TEST(DefaultValue, OfAFirstUseOrAnEmptyStoredTextIsZero) {
    EXPECT_EQ(ORVPresetManager::defaultValueForVariable("AutoNumber", {}), "0");
    EXPECT_EQ(defaultFor("AutoNumber", ""), "0");
}

TEST(DefaultValue, CountsOnFromTheIntegerThatTheStoredTextStartsWith) {
    const std::pair<const char *, const char *> cases[] = {{"41", "42"},     {"0", "1"},       {"12b", "13"}, {" 7", "8"},  {"\t\n 7", "8"},
                                                           {"-1", "0"},      {"-5", "-4"},     {"+5", "6"},   {"007", "8"}, {"3.9", "4"},
                                                           {"\u00A07", "8"}, {"\u30007", "8"}, {"7 8", "8"},  {"12 ", "13"}};
    for (const auto &[stored, expected] : cases) {
        EXPECT_EQ(defaultFor("auto", stored), expected) << stored;
    }
}

TEST(DefaultValue, IsTheStoredTextWhenItStartsWithNoInteger) {
    for (const char *stored : {"A1", " ", "  ", "-", "+", "--1", "- 1", "x", "é", "\xC2", "\xE2\x80"}) {
        EXPECT_EQ(defaultFor("auto", stored), stored);
    }
}

TEST(DefaultValue, WrapsAtThirtyTwoBits) {
    EXPECT_EQ(defaultFor("auto", "2147483647"), "-2147483648");
    EXPECT_EQ(defaultFor("auto", "2147483648"), "-2147483647");
    EXPECT_EQ(defaultFor("auto", "4294967295"), "0");
    EXPECT_EQ(defaultFor("auto", "-2147483649"), "-2147483648");
}

TEST(DefaultValue, OfANumberTooLargeIsThatOfTheLargest) {
    EXPECT_EQ(defaultFor("auto", "9223372036854775807"), "0");
    EXPECT_EQ(defaultFor("auto", "99999999999999999999"), "0");
    EXPECT_EQ(defaultFor("auto", "-99999999999999999999"), "1");
}

TEST(DefaultValue, IsLookedUpByTheExactName) {
    ORVAutomaticVariables variables;
    variables["AutoJob"] = PropertyListValue::viewOfString("3");
    EXPECT_EQ(ORVPresetManager::defaultValueForVariable("AutoJob", variables), "4");
    EXPECT_EQ(ORVPresetManager::defaultValueForVariable("autojob", variables), "0");
}

TEST(DefaultValue, ReadsAStoredNumberAsItsText) {
    ORVAutomaticVariables variables;
    variables["auto"] = PropertyListValue::ofInteger(41);
    EXPECT_EQ(ORVPresetManager::defaultValueForVariable("auto", variables), "42");
    variables["auto"] = PropertyListValue::ofBoolean(true);
    EXPECT_EQ(ORVPresetManager::defaultValueForVariable("auto", variables), "0");
}

TEST(LenientReading, OfBooleanValues) {
    for (const PropertyList &value : {yes(), number(1), number(-1), real(0.5), text("YES"), text("yes"), text("true"), text("1"),
                                      text(" 2"), text("-01"), text("T"), text("y")}) {
        EXPECT_TRUE(ORVBoolValue(&value.root())) << value.root().string();
    }
    for (const PropertyList &value : {yes(false), number(0), real(0.0), text("NO"), text(""), text("0"), text("  "), text("on"), list({}),
                                      dict({}), data("1"), PropertyList()}) {
        EXPECT_FALSE(ORVBoolValue(&value.root())) << value.root().string();
    }
    EXPECT_FALSE(ORVBoolValue(nullptr));
}

TEST(LenientReading, OfTexts) {
    EXPECT_EQ(ORVTextValue(&text("a").root()), "a");
    EXPECT_EQ(ORVTextValue(&number(755).root()), "755");
    EXPECT_EQ(ORVTextValue(&real(1.5).root()), "1.5");
    EXPECT_EQ(ORVTextValue(&data("755").root()), "755");
    const auto large = PropertyListValue::ofUnsigned(18446744073709551615ULL);
    EXPECT_EQ(ORVTextValue(&large), "18446744073709551615");
    EXPECT_EQ(ORVTextValue(&yes().root()), "");
    EXPECT_EQ(ORVTextValue(&list({}).root()), "");
    EXPECT_EQ(ORVTextValue(nullptr), "");
    EXPECT_FALSE(ORVHasText(&yes().root()));
    EXPECT_TRUE(ORVHasText(&text("").root()));
}

} // namespace
} // namespace orvane::test
