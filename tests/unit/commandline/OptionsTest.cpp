#include "Options.h"

#include <gtest/gtest.h>

#include <array>

namespace orvane {
namespace {

constexpr std::array<OptionRule, 4> Rules = {{{"in", true}, {"no-input", false}, {"no-open", false}, {"json", false}}};

ParsedOptions parsed(const std::vector<std::string> &words) {
    return parseOptions(words, Rules);
}

TEST(Options, ValueStandsInTheNextWordOrBehindEquals) {
    EXPECT_EQ(parsed({"--in", "a b"}).lastValue("in"), "a b");
    EXPECT_EQ(parsed({"--in=a=b"}).lastValue("in"), "a=b");
    EXPECT_EQ(parsed({"--in="}).lastValue("in"), "");
    EXPECT_EQ(parsed({"--in", "--json"}).lastValue("in"), "--json");
    EXPECT_FALSE(parsed({"--in", "--json"}).has("json"));
}

TEST(Options, MixFreelyWithOperands) {
    const ParsedOptions result = parsed({"0", "--json", "rest", "--in", "x"});
    EXPECT_EQ(result.operands, (std::vector<std::string>{"0", "rest"}));
    EXPECT_TRUE(result.has("json"));
    EXPECT_EQ(result.lastValue("in"), "x");
    EXPECT_EQ(result.error, "");
}

TEST(Options, TwoDashesEndThem) {
    const ParsedOptions result = parsed({"--json", "--", "--in", "-x", "--"});
    EXPECT_EQ(result.operands, (std::vector<std::string>{"--in", "-x", "--"}));
    EXPECT_EQ(result.error, "");
}

TEST(Options, LoneDashAndEmptyWordAreOperands) {
    EXPECT_EQ(parsed({"-", ""}).operands, (std::vector<std::string>{"-", ""}));
}

TEST(Options, MayBeShortenedWhileUnambiguous) {
    EXPECT_TRUE(parsed({"--js"}).has("json"));
    EXPECT_TRUE(parsed({"--no-i"}).has("no-input"));
    EXPECT_EQ(parsed({"--no"}).error, "option '--no' is ambiguous");
}

TEST(Options, ThoseThatMustBeWholeAreNotShortened) {
    constexpr std::array<OptionRule, 2> Two = {{{.name = "remove", .mustBeWhole = true}, {.name = "rename"}}};
    EXPECT_EQ(parseOptions(std::vector<std::string>{"--remov"}, Two).error, "unknown option '--remov'");
    EXPECT_TRUE(parseOptions(std::vector<std::string>{"--re"}, Two).has("rename"));
    EXPECT_TRUE(parseOptions(std::vector<std::string>{"--remove"}, Two).has("remove"));
}

TEST(Options, HelpAndVersionAreKnownEverywhereAndTakeNoValue) {
    for (const std::string option : {"--help", "--version"}) {
        EXPECT_EQ(parsed({option + "=1"}).error, "option '" + option + "' takes no value");
        EXPECT_EQ(generalOptionIn(std::vector<std::string>{option + "=1"}, Rules), GeneralOption::None);
    }
    EXPECT_EQ(parsed({"--helpful=1"}).error, "unknown option '--helpful'");
}

TEST(Options, JSONIsAskedForAnywhereBeforeTwoDashes) {
    const auto asks = [](const std::vector<std::string> &words) { return asksForJSON(words); };
    EXPECT_TRUE(asks({"0", "--nonsense", "--json"}));
    EXPECT_TRUE(asks({"--set", "--json"}));
    EXPECT_TRUE(asks({"--js"}));
    EXPECT_FALSE(asks({"--", "--json"}));
    EXPECT_FALSE(asks({"--jsons", "--json=1", "json", "--"}));
}

TEST(Options, TheLastOfSeveralValuesCounts) {
    EXPECT_EQ(parsed({"--in", "a", "--in", "b"}).lastValue("in"), "b");
    EXPECT_EQ(parsed({}).lastValue("in"), std::nullopt);
}

TEST(Options, MistakesAreNamed) {
    EXPECT_EQ(parsed({"--nothing"}).error, "unknown option '--nothing'");
    EXPECT_EQ(parsed({"--nothing=1"}).error, "unknown option '--nothing'");
    EXPECT_EQ(parsed({"-x"}).error, "unknown option '-x'");
    EXPECT_EQ(parsed({"-1"}).error, "unknown option '-1'");
    EXPECT_EQ(parsed({"--in"}).error, "option '--in' needs a value");
    EXPECT_EQ(parsed({"--json=yes"}).error, "option '--json' takes no value");
    EXPECT_EQ(parsed({"--=x"}).error, "unknown option '--'");
}

} // namespace
} // namespace orvane
