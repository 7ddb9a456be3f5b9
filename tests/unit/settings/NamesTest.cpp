#include "Documents.h"
#include "NamePreview.h"
#include "TemplateSpans.h"

namespace orvane {
namespace {

using Kind = TemplateSpan::Kind;

/// "KIND:TEXT" for each span, with one letter for the kind.
std::vector<std::string> spans(std::string_view text, bool isDirectoryName = false) {
    std::vector<std::string> result;
    for (const TemplateSpan &span : spansOfTemplate(text, isDirectoryName)) {
        result.push_back(std::string(1, "VAUEP"[static_cast<std::size_t>(span.kind)]) + ":" +
                         std::string(text.substr(span.begin, span.end - span.begin)));
    }
    return result;
}
using List = std::vector<std::string>;

TEST(TemplateSpans, MarkVariables) {
    EXPECT_EQ(spans("{a}-{AutoJob} x"), (List{"V:{a}", "A:{AutoJob}"}));
    EXPECT_EQ(spans("plain"), List{});
    EXPECT_EQ(spans(""), List{});
}

TEST(TemplateSpans, MarkEscapedBracesOutsideOfVariables) {
    EXPECT_EQ(spans(R"(\{a}{b\}c}\})"), (List{R"(E:\{)", R"(V:{b\}c})", R"(E:\})"}));
}

TEST(TemplateSpans, MarkVariablesThatAreNotReplacedInFileNames) {
    EXPECT_EQ(spans("{a/b}{c:d}{e}"), (List{"U:{a/b}", "U:{c:d}", "V:{e}"}));
    EXPECT_EQ(spans("{a/b}", true), List{"V:{a/b}"});
}

TEST(TemplateSpans, MarkAnUnclosedBraceToTheEnd) {
    EXPECT_EQ(spans("{a}x{b"), (List{"V:{a}", "P:{b"}));
    EXPECT_EQ(spans("{}x{b"), List{"P:{b"});
    EXPECT_EQ(spans(R"(\{x{b)"), (List{R"(E:\{)", "P:{b"}));
}

TEST(TemplateSpans, MarkWhatWouldNeverEnd) {
    EXPECT_EQ(spans("Job {"), List{"P:{"});
    EXPECT_EQ(spans(R"(ab{a\})"), List{R"(P:{a\})"});
}

TEST(TemplateSpans, CountUnitsForTextFields) {
    const auto found = spansOfTemplate("ä𐐀{ß}", false);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].begin, 6U);
    EXPECT_EQ(found[0].end, 10U);
    EXPECT_EQ(found[0].beginUnit, 3U);
    EXPECT_EQ(found[0].endUnit, 6U);
}

class Preview : public test::DocumentTest {
protected:
    VariableIndex variables{document};
    CounterList counters{history};
    NamePreview preview{document, variables, counters};
};

TEST_F(Preview, ShowsNamesWithSamples) {
    load({make.preset("{Project} {AutoJob}", {make.folder("{Project}/raw", {make.file("{Who}.txt")})})});
    counters.values().load(make.document(make.dictionary({{"AutoJob", make.text("41")}})));
    preview.setSample("Project", "Film");
    EXPECT_EQ(preview.nameOf(document.presetAt(0)), "Film 42");
    EXPECT_EQ(preview.nameOf(tree()), "Film 42");
    EXPECT_EQ(preview.nameOf(at({0})), "Film_raw");
    EXPECT_EQ(preview.nameOf(at({0, 0})), "Who.txt");
    preview.removeSample("Project");
    EXPECT_EQ(preview.nameOf(at({0})), "Project_raw");
}

TEST_F(Preview, FollowsTyping) {
    load({make.preset("x", {make.file(R"(a\{b\})")})});
    EXPECT_EQ(preview.nameOf(at({0})), R"(a\{b\})"); // without variables nothing is substituted
    document.setDirectoryName(document.presetAt(0), "{New}");
    EXPECT_EQ(preview.nameOf(at({0})), "a{b}");
}

TEST_F(Preview, FillsTheTopLevelNameTwiceAsTheEngineDoes) {
    load({make.preset("{A}{B}")});
    preview.setSample("A", "{B}");
    preview.setSample("B", "b:{A}");
    // First {A} gives {B}, both {B} give b:{A}; then {A} gives {B}, and that b:{A} again.
    EXPECT_EQ(preview.nameOf(tree()), "b_b_{A}b_b_{A}");
}

TEST_F(Preview, TellsWhatCannotBeMade) {
    load({make.preset("{A}", {make.file("{A}"), make.file(".."), make.file(std::string(256, 'x')), make.file("{"), make.file("Job {"),
                              make.file("ok")})});
    preview.setSample("A", "");
    EXPECT_EQ(preview.outcomeOf(at({0})), NamePreview::Outcome::Empty);
    EXPECT_EQ(preview.outcomeOf(at({1})), NamePreview::Outcome::Refused);
    EXPECT_EQ(preview.outcomeOf(at({2})), NamePreview::Outcome::Refused);
    EXPECT_EQ(preview.outcomeOf(at({3})), NamePreview::Outcome::Made); // too short to be scanned at all
    EXPECT_EQ(preview.outcomeOf(at({4})), NamePreview::Outcome::Unknown);
    EXPECT_EQ(preview.outcomeOf(at({5})), NamePreview::Outcome::Made);
}

TEST_F(Preview, RowsAreThoseOfThePrompt) {
    load({make.preset("{a}{b}{a}", {make.file("{c}{a}"), make.file("{c}")})});
    List keys;
    for (const PromptValueRow &row : preview.rowsOfPreset(document.presetAt(0))) {
        keys.push_back(row.key);
    }
    EXPECT_EQ(keys, (List{"a", "b", "a", "c"}));
}

} // namespace
} // namespace orvane
