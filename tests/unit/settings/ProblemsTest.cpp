#include "Documents.h"
#include "ProblemList.h"

#include "fakes/FakeTextCase.h"

#include <set>

namespace orvane {
namespace {

using List = std::vector<std::string>;

/// Knows the names in two sets, and counts questions.
class KnownResources final : public ORVPresetResources {
public:
    KnownResources(const std::set<std::string> &names, int &questions) : _names(names), _questions(questions) {}
    [[nodiscard]] ORVContentState stateOfContent(std::string_view name) override {
        ++_questions;
        return _names.contains(std::string(name)) ? ORVContentState::Usable : ORVContentState::Missing;
    }
    [[nodiscard]] ORVScriptState stateOfScript(std::string_view name) override {
        ++_questions;
        return _names.contains(std::string(name)) ? ORVScriptState::Usable : ORVScriptState::Missing;
    }

private:
    const std::set<std::string> &_names;
    int &_questions;
};

class Problems : public test::DocumentTest {
protected:
    List linesOf(ItemID preset) {
        List lines;
        for (const DocumentProblem &each : problems.problemsOfPreset(preset)) {
            lines.push_back(std::string(ORVNameOfSeverity(each.problem.severity)) + " " + each.key + " " +
                            (document.isNode(each.item)     ? document.filename(each.item)
                             : document.isPreset(each.item) ? "preset"
                                                            : "tree"));
        }
        return lines;
    }
    std::set<std::string> resources;
    int questions = 0;
    FakeTextCase textCase;
    ProblemList problems{document, textCase, [this] { return std::make_unique<KnownResources>(resources, questions); }};
};

TEST_F(Problems, AreTheCheckersWithTheirItems) {
    load({make.preset("", {make.folder("f", {make.file("x", {{"contentFilename", make.text("gone.txt")}}), make.file("Job {")})},
                      {{"scriptFile", make.text("s")}})});
    const ItemID preset = document.presetAt(0);
    EXPECT_EQ(linesOf(preset),
              (List{"error directoryName preset", "error scriptFile preset", "error contentFilename x", "error filename Job {"}));
    EXPECT_EQ(problems.severityOf(at({0, 0})), ORVProblemSeverity::Error);
    EXPECT_EQ(problems.severityOf(at({0})), std::nullopt);
    // The same as the checker says of the record.
    KnownResources same(resources, questions);
    const auto expected = ORVPresetChecker(same, textCase).checkPreset(document.record(preset).root());
    const auto &found = problems.problemsOfPreset(preset);
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(found[i].problem.text(), expected[i].text());
    }
}

TEST_F(Problems, AreLookedForAgainOnlyInWhatHasChanged) {
    load({make.preset("{A}", {make.file("x", {{"contentFilename", make.text("gone")}})}, {{"label", make.text("One")}}),
          make.preset("{B}", {make.file("y", {{"contentFilename", make.text("gone")}})}, {{"label", make.text("Two")}})});
    (void)problems.problemsOfPreset(document.presetAt(0));
    (void)problems.problemsOfPreset(document.presetAt(1));
    questions = 0;
    document.renameNode(at({0}), "z");
    EXPECT_FALSE(problems.isCurrent(document.presetAt(0)));
    EXPECT_TRUE(problems.isCurrent(document.presetAt(1)));
    (void)problems.problemsOfPreset(document.presetAt(0));
    (void)problems.problemsOfPreset(document.presetAt(0));
    (void)problems.problemsOfPreset(document.presetAt(1));
    EXPECT_EQ(questions, 1);
}

TEST_F(Problems, ALabelThatAnotherPresetGetsIsTwoPresetsProblem) {
    const auto named = [&](std::string_view label) {
        return make.dictionary({{"label", make.text(label)}, {"directoryName", make.text("{N}")}});
    };
    load({named("A"), named("B")});
    EXPECT_EQ(linesOf(document.presetAt(0)), List{});
    document.renamePreset(document.presetAt(1), "A");
    EXPECT_EQ(linesOf(document.presetAt(0)), List{"warning label preset"});
    EXPECT_EQ(linesOf(document.presetAt(1)), List{"warning label preset"});
    history.undo();
    EXPECT_EQ(linesOf(document.presetAt(0)), List{});
}

TEST_F(Problems, ResourcesThatComeAreSeen) {
    load({make.preset("{A}", {make.file("x", {{"contentFilename", make.text("later")}})})});
    EXPECT_EQ(linesOf(document.presetAt(0)), List{"error contentFilename x"});
    resources.insert("later");
    problems.resourcesDidChange();
    EXPECT_EQ(linesOf(document.presetAt(0)), List{});
}

TEST_F(Problems, ATemplateIsCheckedWhileItIsTyped) {
    load({make.preset("{A}", {make.file("x")})});
    (void)problems.problemsOfPreset(document.presetAt(0));
    questions = 0;
    const auto severities = [&](ItemID item, std::string_view text) {
        List result;
        for (const ORVNameProblem &problem : problems.problemsOfTemplate(item, text)) {
            result.emplace_back(ORVNameOfSeverity(problem.severity));
        }
        return result;
    };
    EXPECT_EQ(severities(at({0}), "fine {B}"), List{});
    EXPECT_EQ(severities(at({0}), ""), List{"error"});
    EXPECT_EQ(severities(at({0}), "{Bc"), List{"warning"});
    EXPECT_EQ(severities(at({0}), "a:b"), List{"note"});
    EXPECT_EQ(severities(document.presetAt(0), "a:b"), List{"warning"}); // the folder's name is another matter
    EXPECT_TRUE(problems.problemsOfTemplate(document.presetAt(0), "Job {")[0].neverEnds);
    EXPECT_EQ(severities(at({0}), R"(\{A})"), List{"warning"}); // a variable of the preset, replaced in spite of the backslash
    EXPECT_EQ(questions, 0);
}

TEST_F(Problems, APresetThatIsNoneIsOne) {
    load({make.text("odd")});
    EXPECT_EQ(linesOf(document.presetAt(0)), List{"error  preset"});
}

} // namespace
} // namespace orvane
