#include "CreateOptions.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using Rows = std::vector<PromptValueRow>;
using Words = std::vector<std::string>;

CreateOptions parsed(const CommandArguments &words, std::string &error) {
    return CreateOptions::parse(words, error);
}

TEST(CreateOptions, KeepsEverythingGiven) {
    std::string error;
    const CreateOptions options =
        parsed({"--set", "A=1", "Film", "--in=/x", "--no-input", "--set=B=2", "--no-open", "--dry-run", "--json"}, error);
    EXPECT_EQ(error, "");
    EXPECT_EQ(options.preset, "Film");
    EXPECT_EQ(options.in, "/x");
    EXPECT_EQ(options.assignments, (Words{"A=1", "B=2"}));
    EXPECT_TRUE(options.noInput && options.noOpen && options.dryRun && options.json);
}

TEST(CreateOptions, NothingIsOnByItself) {
    std::string error;
    const CreateOptions options = parsed({"0"}, error);
    EXPECT_EQ(error, "");
    EXPECT_EQ(options.in, std::nullopt);
    EXPECT_FALSE(options.noInput || options.noOpen || options.dryRun || options.json);
}

TEST(CreateOptions, WantsExactlyOnePreset) {
    std::string error;
    (void)parsed({}, error);
    EXPECT_EQ(error, "which preset?");
    (void)parsed({"a", "b"}, error);
    EXPECT_EQ(error, "one preset at a time, not 'b' as well");
}

TEST(CreateOptions, WrongWordsAreToldInJSONWhereverItIsAskedFor) {
    for (const CommandArguments &words : {CommandArguments{"0", "--nonsense", "--json"}, {"0", "--set", "--json"}, {"--json"}}) {
        std::string error;
        EXPECT_TRUE(parsed(words, error).json);
        EXPECT_NE(error, "");
    }
    std::string error;
    EXPECT_FALSE(parsed({"0", "--in", "--json"}, error).json); // a folder's name
    EXPECT_EQ(error, "");
}

TEST(CreateOptions, AssignmentNeedsNameAndEquals) {
    for (const char *wrong : {"Project", "", "=Acme", "="}) {
        std::string error;
        (void)parsed({"0", "--set", wrong}, error);
        EXPECT_EQ(error, "option '--set' needs NAME=VALUE, not '" + std::string(wrong) + "'");
    }
    std::string error;
    (void)parsed({"0", "--set", "Project="}, error);
    EXPECT_EQ(error, "");
}

TEST(Assignments, OneValueGoesToEveryRowOfItsName) {
    Rows rows{{"A", ""}, {"B", "b"}, {"A", ""}};
    const AssignmentResult result = distributeAssignments(Words{"A=x"}, rows);
    EXPECT_EQ(rows, (Rows{{"A", "x"}, {"B", "b"}, {"A", "x"}}));
    EXPECT_EQ(result.missing, (std::vector<std::size_t>{1}));
    EXPECT_TRUE(result.unknown.empty());
    EXPECT_TRUE(result.surplus.empty());
}

TEST(Assignments, SeveralValuesGoToTheRowsInOrderAndTheLastToTheRest) {
    Rows rows{{"A", ""}, {"A", ""}, {"B", ""}, {"A", ""}, {"A", ""}};
    const AssignmentResult result = distributeAssignments(Words{"A=1", "B=b", "A=2"}, rows);
    EXPECT_TRUE(result.surplus.empty());
    EXPECT_EQ(rows, (Rows{{"A", "1"}, {"A", "2"}, {"B", "b"}, {"A", "2"}, {"A", "2"}}));
}

TEST(Assignments, MoreValuesThanRowsLeaveTheLaterOnesUnused) {
    Rows rows{{"A", ""}, {"B", ""}, {"C", ""}, {"B", ""}};
    const AssignmentResult result = distributeAssignments(Words{"A=1", "C=c", "A=2", "B=1", "B=2", "B=3", "A=3"}, rows);
    EXPECT_EQ(rows, (Rows{{"A", "1"}, {"B", "1"}, {"C", "c"}, {"B", "2"}}));
    EXPECT_EQ(result.surplus, (Words{"A", "B"}));
    EXPECT_TRUE(result.unknown.empty());
}

TEST(Assignments, EmptyValueIsAValue) {
    Rows rows{{"AutoNumber", "7"}};
    const AssignmentResult result = distributeAssignments(Words{"AutoNumber="}, rows);
    EXPECT_EQ(rows, (Rows{{"AutoNumber", ""}}));
    EXPECT_TRUE(result.missing.empty());
}

TEST(Assignments, UnknownNamesAreListedOnceInOrder) {
    Rows rows{{"A", ""}};
    const AssignmentResult result = distributeAssignments(Words{"z=1", "A=1", "a=1", "z=2"}, rows);
    EXPECT_EQ(result.unknown, (Words{"z", "a"}));
}

TEST(Assignments, ValueMayHoldEquals) {
    Rows rows{{"A", ""}};
    distributeAssignments(Words{"A=b=c"}, rows);
    EXPECT_EQ(rows, (Rows{{"A", "b=c"}}));
}

TEST(Assignments, NameMayHoldEquals) {
    Rows rows{{"a=b", ""}};
    const AssignmentResult result = distributeAssignments(Words{"a=b=c"}, rows);
    EXPECT_EQ(rows, (Rows{{"a=b", "c"}}));
    EXPECT_TRUE(result.unknown.empty());
}

TEST(Assignments, TheLongestNameThatFitsIsMeant) {
    Rows rows{{"x", ""}, {"x=y", ""}, {"x=y=z", ""}};
    EXPECT_TRUE(distributeAssignments(Words{"x=y=3", "x=1=2", "x=y=z="}, rows).unknown.empty());
    EXPECT_EQ(rows, (Rows{{"x", "1=2"}, {"x=y", "3"}, {"x=y=z", ""}}));
    EXPECT_EQ(distributeAssignments(Words{"u=v=w", "=x"}, rows).unknown, (Words{"u", ""}));
}

TEST(Assignments, NamesKeepTheirBlanksAndCase) {
    Rows rows{{" Project ", ""}, {"project", ""}};
    const AssignmentResult result = distributeAssignments(Words{" Project =x", "Project=y"}, rows);
    EXPECT_EQ(rows, (Rows{{" Project ", "x"}, {"project", ""}}));
    EXPECT_EQ(result.unknown, (Words{"Project"}));
    EXPECT_EQ(result.missing, (std::vector<std::size_t>{1}));
}

} // namespace
} // namespace orvane
