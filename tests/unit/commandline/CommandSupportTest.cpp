#include "CommandSupport.h"

#include "unit/commandline/TestPresets.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

class Candidates : public testing::Test {
protected:
    PropertyListValue labelled(std::string_view label) { return _make.dictionary({{"label", _make.text(label)}}); }
    PresetMaker _make;
    PropertyList _presets = _make.list(
        {labelled("Film"), labelled("Photo"), labelled("Film"), _make.dictionary({}), labelled("7"), labelled("1"), labelled("01")});
};

TEST_F(Candidates, AnIndexCountsFromZero) {
    EXPECT_EQ(choosePreset("0", _presets).index, 0U);
    EXPECT_EQ(choosePreset("6", _presets).index, 6U);
}

TEST_F(Candidates, AnExactLabelIsFound) {
    EXPECT_EQ(choosePreset("Photo", _presets).index, 1U);
    EXPECT_EQ(choosePreset("photo", _presets).index, std::nullopt);
    EXPECT_EQ(choosePreset("Photo ", _presets).index, std::nullopt);
}

TEST_F(Candidates, AValidIndexIsAnIndexEvenWhereALabelReadsTheSame) {
    EXPECT_EQ(choosePreset("1", _presets).index, 1U);
}

TEST_F(Candidates, ANumberThatIsNoIndexMayBeALabel) {
    EXPECT_EQ(choosePreset("7", _presets).index, 4U);
    EXPECT_EQ(choosePreset("01", _presets).index, 6U);
}

TEST_F(Candidates, AnAmbiguousLabelNamesItsIndexes) {
    const PresetChoice choice = choosePreset("Film", _presets);
    EXPECT_EQ(choice.index, std::nullopt);
    EXPECT_EQ(choice.problem, "more than one preset 'Film'; give one of the indexes:\n  0  Film\n  2  Film");
}

TEST_F(Candidates, AnUnknownWordGetsAllPresets) {
    EXPECT_EQ(choosePreset("x\n", _presets).problem,
              "no preset 'x\\x0a'; there are:\n  0  Film\n  1  Photo\n  2  Film\n  3  (no label)\n  4  7\n  5  1\n  6  01");
    EXPECT_EQ(choosePreset("-1", _presets).index, std::nullopt);
    EXPECT_EQ(choosePreset("99999999999999999999", _presets).index, std::nullopt);
    EXPECT_EQ(choosePreset("", _presets).index, std::nullopt);
}

TEST_F(Candidates, AFolderNamesTemplateStandsForALabelThatIsMissing) {
    const auto unlabelled = [&](std::string_view name) { return _make.dictionary({{"directoryName", _make.text(name)}}); };
    const auto labelledAs = [&](std::string_view label, std::string_view name) {
        return _make.dictionary({{"label", _make.text(label)}, {"directoryName", _make.text(name)}});
    };
    const PropertyList presets = _make.list({unlabelled("{A} job"), labelledAs("L", "{B}"), unlabelled("L"), unlabelled("x"),
                                             unlabelled("x"), labelledAs("", "x"), _make.dictionary({})});
    EXPECT_EQ(choosePreset("{A} job", presets).index, 0U);
    EXPECT_EQ(choosePreset("{B}", presets).index, std::nullopt); // its name is its label
    EXPECT_EQ(choosePreset("L", presets).index, 1U);             // a label goes before
    EXPECT_EQ(choosePreset("x", presets).problem, "more than one preset 'x'; give one of the indexes:\n  3  x\n  4  x");
    EXPECT_EQ(choosePreset("", presets).index, 5U); // an empty label is one
    EXPECT_EQ(choosePreset("y", presets).problem,
              "no preset 'y'; there are:\n  0  {A} job\n  1  L\n  2  L\n  3  x\n  4  x\n  5  \n  6  (no label)");
}

TEST_F(Candidates, WithoutPresetsItSaysSo) {
    EXPECT_EQ(choosePreset("0", _make.list({})).problem, "no preset '0': there are no presets");
}

TEST_F(Candidates, AreNotEndless) {
    const std::vector<PropertyListValue> many(1000, labelled("x"));
    const std::string problem = choosePreset("y", _make.list(many)).problem;
    EXPECT_NE(problem.find("and 950 more"), std::string::npos);
    EXPECT_EQ(problem.find("\n  50  x"), std::string::npos);
}

TEST(Printable, LeavesTextOfEveryAlphabet) {
    for (const std::string text : {"", "plain ~", "Grüße", "日本語", "😀", "שלום", "e\u0301"}) {
        EXPECT_EQ(printable(text), text);
    }
}

TEST(Printable, ShowsControlCharactersAndStrayBytes) {
    EXPECT_EQ(printable("a\tb\nc\033[31m\x7f"), "a\\x09b\\x0ac\\x1b[31m\\x7f");
    EXPECT_EQ(printable(std::string_view("a\0b", 3)), "a\\x00b");
    EXPECT_EQ(printable("\u009b0m"), "\\xc2\\x9b0m"); // the one-character form of an escape sequence's start
    EXPECT_EQ(printable("\xff\xc3"), "\\xff\\xc3");
    EXPECT_EQ(printable("\xed\xa0\x80"), "\\xed\\xa0\\x80");
    EXPECT_EQ(printable("\u00a0"), "\u00a0");
}

TEST(Messages, AreGivenAsTheyAreWhereNoTerminalIs) {
    testing::internal::CaptureStderr();
    writeStandardError("a\033" + printable("\x01") + "\n  b\xff\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "a\033\\x01\n  b\xff\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(usageError("list", "unexpected '\033'"), ExitStatus::Usage);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "orvane: list: unexpected '\033'\nTry 'orvane list --help' for more information.\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(failure("No\r", "two\nlines\t\x7f"), ExitStatus::NotMade);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "orvane: No\r: two\nlines\t\x7f\n");
}

} // namespace
} // namespace orvane
