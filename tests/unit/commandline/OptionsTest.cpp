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
