#include "unit/core/Desk.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <random>

#include <unistd.h>

namespace orvane::test {
namespace {

using Names = std::vector<std::string>;
using Rows = std::vector<PromptValueRow>;

class Keys : public ::testing::Test {
protected:
    [[nodiscard]] Names find(std::string_view text) const {
        EXPECT_TRUE(ORVPresetManager::scanEnds(text)) << text;
        return desk.manager->findBracketedKeys(text);
    }
    [[nodiscard]] std::string replace(std::string_view text, const Rows &rows) const {
        return desk.manager->replaceBracketedKeysReplace(text, rows);
    }
    Desk desk;
};

TEST_F(Keys, StandInOrderOfAppearanceWithDuplicates) {
    EXPECT_EQ(find("{a}-{b}-{a}"), (Names{"a", "b", "a"}));
}

TEST_F(Keys, OfTheTreeAreAddedOnce) {
    Names names = find("{a}-{b}-{a}");
    desk.manager->scanHierarchyForVariableNamesVariableNames(folder("{a}", {file("{c}{b}{c}")}).root(), names);
    EXPECT_EQ(names, (Names{"a", "b", "a", "c"}));
}

TEST_F(Keys, ThatAreEmptyAreNoKeys) {
    EXPECT_EQ(find("{}x{y}"), (Names{"y"}));
    EXPECT_EQ(find("{}"), Names());
}

TEST_F(Keys, DoNotNest) {
    EXPECT_EQ(find("{a{b}"), (Names{"a{b"}));
    EXPECT_EQ(find("{{a}}"), (Names{"{a"}));
}

TEST_F(Keys, BehindABackslashAreNone) {
    EXPECT_EQ(find("\\{a}{b}"), (Names{"b"}));
    EXPECT_EQ(find("\\\\{a}{b}"), (Names{"b"})); // only the one character before the brace is looked at
    EXPECT_EQ(find("\\{ab"), Names());
}

TEST_F(Keys, MayHoldEscapedBraces) {
    EXPECT_EQ(find("{a\\}b}"), (Names{"a}b"}));
    EXPECT_EQ(find("{a\\{b}"), (Names{"a{b"}));
    EXPECT_EQ(find("{\\}}"), (Names{"}"}));
}

TEST_F(Keys, EndTheScanWhenOneIsNotClosed) {
    EXPECT_EQ(find("{ab"), Names());
    EXPECT_EQ(find("{a}{bc"), (Names{"a"}));
    EXPECT_EQ(find("{a}{b\\}c"), (Names{"a"}));
}

TEST_F(Keys, KeepBlanksAndCase) {
    EXPECT_EQ(find("{ Project }{project}{Project}"), (Names{" Project ", "project", "Project"}));
    EXPECT_EQ(find("{ }"), (Names{" "}));
}

TEST_F(Keys, MayBeOfAnyCharacters) {
    EXPECT_EQ(find("ä{日本}😀{e\u0301}"), (Names{"日本", "e\u0301"}));
    EXPECT_EQ(find("\xFF{\xFE\xFD}"), (Names{"\xFE\xFD"}));
}

TEST_F(Keys, AreNotSearchedInTextsShorterThanThree) {
    // Scanned, the first two would never end.
    for (const char *text : {"{", "a{", "", "{}", "é{", "é"}) {
        EXPECT_EQ(find(text), Names()) << text;
    }
}

TEST_F(Keys, NeverEndWhereATextEndsInAnOpenBraceOrAnEscapedCloseAfterOne) {
    for (const char *text : {"ab{", "Job {", "{a\\}", "{a}{b\\}", "{a}b{", "😀{", "{a\\}\\}"}) {
        EXPECT_FALSE(ORVPresetManager::scanEnds(text)) << text;
    }
    for (const char *text : {"ab\\{", "{a\\}b", "ab}", "\\}", "{a}\\}", "ab{c", "\\{a\\}"}) {
        EXPECT_TRUE(ORVPresetManager::scanEnds(text)) << text;
    }
}

TEST_F(Keys, ThatAreNoneLeaveEscapesToBeTakenOut) {
    const Rows rows = {{"a", "b"}};
    EXPECT_EQ(replace("x\\}", rows), "x}");
    EXPECT_EQ(replace("x\\}y\\{z", rows), "x}y{z");
    EXPECT_EQ(replace("x\\y", rows), "x\\y");
}

TEST_F(Keys, OfSuchATextAreLookedForUntilTheProcessIsKilled) {
    for (const char *text : {"Job {", "{a\\}"}) {
        EXPECT_EXIT(
            {
                ualarm(200'000, 0);
                (void)desk.manager->findBracketedKeys(text);
                std::exit(0);
            },
            ::testing::KilledBySignal(SIGALRM), "")
            << text;
    }
}

TEST_F(Keys, WithOtherDelimiters) {
    EXPECT_EQ(desk.manager->findKeysEnclosedByCloseTag("a<b>c<d>", "<", ">"), (Names{"b", "d"}));
    EXPECT_EQ(desk.manager->findKeysEnclosedByCloseTag("a«b»c", "«", "»"), (Names{"b"}));
    EXPECT_EQ(desk.manager->findKeysEnclosedByCloseTag("a{b}", "", "}"), Names());
    EXPECT_EQ(desk.manager->findKeysEnclosedByCloseTag("a{b}", "{", ""), Names());
    // A key starts one position after its opening delimiter, however long that is.
    EXPECT_EQ(desk.manager->findKeysEnclosedByCloseTag("a<<b>", "<<", ">"), (Names{"<b"}));
}

TEST_F(Keys, AreNotSearchedInTextsWithoutRoomForBothDelimitersAndOneCharacter) {
    EXPECT_EQ(desk.manager->findKeysEnclosedByCloseTag("<<>", "<<", ">"), Names());
    EXPECT_EQ(desk.manager->findKeysEnclosedByCloseTag("<<>>", "<<", ">>"), Names());
    EXPECT_EQ(desk.manager->findKeysEnclosedByCloseTag("<<a>", "<<", ">"), (Names{"<a"}));
    EXPECT_EQ(desk.manager->findKeysEnclosedByCloseTag("<a>>", "<", ">>"), (Names{"a"}));
    EXPECT_EQ(desk.manager->findKeysEnclosedByCloseTag("«é»", "«", "»"), (Names{"é"})); // counted in characters
}

TEST_F(Keys, OfATreeCountOnlyInFileNames) {
    const PropertyList node = dict({{"filename", text("{n}")},
                                    {"isFolder", yes(false)},
                                    {"contentFilename", text("{c}")},
                                    {"color", text("{k}")},
                                    {"permissions", text("{p}")},
                                    {"children", list({file("{child}")})}});
    Names names;
    desk.manager->scanHierarchyForVariableNamesVariableNames(node.root(), names);
    EXPECT_EQ(names, (Names{"n"})); // children of a file are not looked at
}

TEST_F(Keys, OfATreeStandDepthFirstFoldersBeforeTheirContents) {
    const PropertyList node = folder("{1}", {folder("{2}", {file("{3}"), folder("{4}")}), file("{5}{1}")});
    Names names;
    desk.manager->scanHierarchyForVariableNamesVariableNames(node.root(), names);
    EXPECT_EQ(names, (Names{"1", "2", "3", "4", "5"}));
}

TEST_F(Keys, OfATreeAreCleanedBeforeTheScan) {
    Names names;
    desk.manager->scanHierarchyForVariableNamesVariableNames(file("{a/b}{c:d}").root(), names);
    EXPECT_EQ(names, (Names{"a_b", "c_d"}));
}

TEST_F(Keys, ManyAndDeepAreFoundInReasonableTime) {
    std::vector<PropertyList> files;
    Names expected;
    for (int i = 0; i < 20000; ++i) {
        expected.push_back("v" + std::to_string(i));
        files.push_back(file("{" + expected.back() + "}{v0}"));
    }
    Names names;
    desk.manager->scanHierarchyForVariableNamesVariableNames(folder("x", files).root(), names);
    EXPECT_EQ(names, expected);
}

TEST_F(Keys, OfATreeAreAddedOnceHoweverManyThereAre) {
    std::vector<PropertyList> files;
    Names expected{"first"};
    for (int i = 0; i < 200; ++i) {
        expected.push_back("v" + std::to_string(i));
        files.push_back(file("{" + expected.back() + "}{first}"));
    }
    Names names{"first"};
    desk.manager->scanHierarchyForVariableNamesVariableNames(folder("x", {folder("y", files), folder("z", files)}).root(), names);
    EXPECT_EQ(names, expected);
}

TEST_F(Keys, OfAWronglyTypedTreeAreNone) {
    Names names;
    for (const PropertyList &node : {text("{a}"), list({file("{a}")}), dict({{"filename", list({text("{a}")})}}),
                                     dict({{"isFolder", yes()}, {"children", text("{a}")}}), PropertyList()}) {
        desk.manager->scanHierarchyForVariableNamesVariableNames(node.root(), names);
    }
    EXPECT_EQ(names, Names());
}

TEST_F(Keys, AreReplacedEverywhere) {
    EXPECT_EQ(replace("{a}-{b}-{a}", {{"a", "1"}, {"b", "2"}}), "1-2-1");
}

TEST_F(Keys, AreUnescapedBeforeTheyAreReplaced) {
    EXPECT_EQ(replace("\\{Project} {Project}", {{"Project", "Acme"}}), "Acme Acme");
    EXPECT_EQ(replace("\\{Other\\}", {{"Project", "Acme"}}), "{Other}");
    EXPECT_EQ(replace("a\\b", {{"Project", "Acme"}}), "a\\b");
}

TEST_F(Keys, StayAsTheyAreWithAnEmptyTable) {
    EXPECT_EQ(replace("\\{Project} {Project}", {}), "\\{Project} {Project}");
    EXPECT_EQ(replace("", {{"Project", "Acme"}}), "");
}

TEST_F(Keys, TakeTheValueOfTheFirstOfSeveralRows) {
    EXPECT_EQ(replace("{a}{a}", {{"a", "first"}, {"a", "second"}}), "firstfirst");
}

TEST_F(Keys, InAValueAreReplacedByLaterRowsOnly) {
    EXPECT_EQ(replace("{a}", {{"a", "{b}"}, {"b", "x"}}), "x");
    EXPECT_EQ(replace("{b}", {{"a", "x"}, {"b", "{a}"}}), "{a}");
    EXPECT_EQ(replace("{a}", {{"a", "{a}"}}), "{a}");
}

TEST_F(Keys, AreReplacedByValuesThatAreNotUnescaped) {
    EXPECT_EQ(replace("{a}{b}", {{"a", "\\{x\\}"}, {"b", "y"}}), "\\{x\\}y");
}

TEST_F(Keys, ThatOnlyAValueCompletesAreReplacedToo) {
    EXPECT_EQ(replace("{a}b}", {{"a", "{"}, {"b", "x"}}), "x");
}

TEST_F(Keys, WithEscapedBracesAreReplacedByThePlainName) {
    EXPECT_EQ(replace("{a\\}b} {c\\{d}", {{"a}b", "1"}, {"c{d", "2"}}), "1 2");
}

TEST_F(Keys, WithoutARowStay) {
    EXPECT_EQ(replace("{a}{z}", {{"a", "1"}}), "1{z}");
}

TEST_F(Keys, ThatDifferInCaseAreReplacedIndependently) {
    EXPECT_EQ(replace("{p}{P}", {{"P", "big"}, {"p", "small"}}), "smallbig");
}

TEST_F(Keys, WithASlashAreListedCleanedAndThenNotReplaced) {
    Names names;
    desk.manager->scanHierarchyForVariableNamesVariableNames(file("{a/b}").root(), names);
    const Rows rows{{names.at(0), "value"}};
    EXPECT_EQ(ORVPresetManager::cleanFilesystemEntities(replace("{a/b}", rows)), "{a_b}");
}

/// The scan as one would write it on UTF-16 units, with the outer and the inner search range.
std::optional<std::vector<std::u16string>> slowScan(const std::u16string &text) {
    std::vector<std::u16string> keys;
    if (text.size() < 3) {
        return keys;
    }
    std::size_t outer = 0;
    while (outer < text.size()) {
        const std::size_t open = text.find(u'{', outer);
        if (open == std::u16string::npos) {
            return keys;
        }
        if (open > 0 && text[open - 1] == u'\\') {
            outer = open + 1;
            continue;
        }
        std::size_t inner = open + 1;
        bool closed = false;
        while (inner < text.size() && !closed) {
            const std::size_t close = text.find(u'}', inner);
            if (close == std::u16string::npos) {
                return keys;
            }
            if (text[close - 1] == u'\\') {
                inner = close + 1;
                continue;
            }
            std::u16string key;
            for (std::size_t i = open + 1; i < close; ++i) {
                if (text[i] == u'\\' && i + 1 < close && (text[i + 1] == u'{' || text[i + 1] == u'}')) {
                    continue;
                }
                key.push_back(text[i]);
            }
            if (!key.empty()) {
                keys.push_back(key);
            }
            outer = close + 1;
            closed = true;
        }
        if (!closed) {
            return std::nullopt;
        }
    }
    return keys;
}

TEST_F(Keys, AgreeWithASlowScanOnRandomTexts) {
    std::mt19937 random(20261121);
    constexpr char Letters[] = "{{{}}}\\\\ab";
    for (int round = 0; round < 200000; ++round) {
        std::string text;
        std::u16string units;
        for (auto length = static_cast<unsigned>(random() % 9); length > 0; --length) {
            text.push_back(Letters[random() % (sizeof Letters - 1)]);
            units.push_back(static_cast<char16_t>(text.back()));
        }
        const auto expected = slowScan(units);
        ASSERT_EQ(ORVPresetManager::scanEnds(text), expected.has_value()) << text;
        if (!expected) {
            continue;
        }
        Names names;
        for (const std::u16string &key : *expected) {
            names.emplace_back(key.begin(), key.end());
        }
        ASSERT_EQ(desk.manager->findBracketedKeys(text), names) << text;
    }
}

} // namespace
} // namespace orvane::test
