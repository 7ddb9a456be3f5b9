#include "CommandLinePrompt.h"

#include <gtest/gtest.h>

#include <deque>

namespace orvane {
namespace {

using Rows = std::vector<PromptValueRow>;
using Words = std::vector<std::string>;
using Outcome = CommandLinePrompt::Outcome;

/// Somebody who types prepared lines and then ends the input.
class FakeTerminal final : public Terminal {
public:
    [[nodiscard]] bool isAvailable() override { return available; }
    void write(std::string_view text) override { shown += text; }
    [[nodiscard]] std::optional<std::string> readLine() override {
        if (lines.empty()) {
            return std::nullopt;
        }
        std::string line = lines.front();
        lines.pop_front();
        return line;
    }

    bool available = true;
    std::deque<std::string> lines;
    std::string shown;
};

TEST(CommandLinePrompt, AsksForRowsWithoutValueOnly) {
    FakeTerminal terminal;
    terminal.lines = {"b2"};
    const Words assignments{"A=a1"};
    CommandLinePrompt prompt(assignments, false, terminal);
    Rows rows{{"A", ""}, {"B", ""}};
    EXPECT_TRUE(prompt.runModally("{A} {B}", rows));
    EXPECT_EQ(rows, (Rows{{"A", "a1"}, {"B", "b2"}}));
    EXPECT_EQ(prompt.outcome(), Outcome::Answered);
    EXPECT_EQ(terminal.shown, "Values for {A} {B}\nB: ");
}

TEST(CommandLinePrompt, AnEmptyLineTakesTheDefaultThatWasOffered) {
    FakeTerminal terminal;
    terminal.lines = {"", ""};
    CommandLinePrompt prompt({}, false, terminal);
    Rows rows{{"AutoNumber", "42"}, {"B", ""}};
    EXPECT_TRUE(prompt.runModally("T", rows));
    EXPECT_EQ(rows, (Rows{{"AutoNumber", "42"}, {"B", ""}}));
    EXPECT_NE(terminal.shown.find("AutoNumber [42]: "), std::string::npos);
}

TEST(CommandLinePrompt, RowsOfOneNameAreAskedWithTheirNumber) {
    FakeTerminal terminal;
    terminal.lines = {"1", "2"};
    CommandLinePrompt prompt({}, false, terminal);
    Rows rows{{"A", ""}, {"A", ""}};
    EXPECT_TRUE(prompt.runModally("T", rows));
    EXPECT_EQ(rows, (Rows{{"A", "1"}, {"A", "2"}}));
    EXPECT_NE(terminal.shown.find("A (1 of 2): A (2 of 2): "), std::string::npos);
}

TEST(CommandLinePrompt, TheEndOfInputCancels) {
    FakeTerminal terminal;
    terminal.lines = {"1"};
    CommandLinePrompt prompt({}, false, terminal);
    Rows rows{{"A", ""}, {"B", ""}};
    EXPECT_FALSE(prompt.runModally("T", rows));
    EXPECT_EQ(prompt.outcome(), Outcome::Cancelled);
}

TEST(CommandLinePrompt, WithNoInputDefaultsStayAndUnknownNamesAreIgnored) {
    FakeTerminal terminal;
    const Words assignments{"A=1", "Unknown=2"};
    CommandLinePrompt prompt(assignments, true, terminal);
    Rows rows{{"A", ""}, {"AutoB", "7"}};
    EXPECT_TRUE(prompt.runModally("T", rows));
    EXPECT_EQ(rows, (Rows{{"A", "1"}, {"AutoB", "7"}}));
    EXPECT_EQ(terminal.shown, "");
    EXPECT_EQ(prompt.problemWithoutVariables(), "");
}

TEST(CommandLinePrompt, WithoutTerminalMissingNamesAreListedOnce) {
    FakeTerminal terminal;
    terminal.available = false;
    const Words assignments{"B=1"};
    CommandLinePrompt prompt(assignments, false, terminal);
    Rows rows{{"A", ""}, {"B", ""}, {"A", ""}, {"c d", ""}};
    EXPECT_FALSE(prompt.runModally("T", rows));
    EXPECT_EQ(prompt.outcome(), Outcome::WrongUsage);
    EXPECT_EQ(prompt.problem(), "no value for 'A', 'c d'; give each with --set NAME=VALUE, or take the defaults with --no-input");
}

TEST(CommandLinePrompt, AnUnknownNameIsWrongUsageEvenOnATerminal) {
    FakeTerminal terminal;
    terminal.lines = {"1"};
    const Words assignments{"X=1"};
    CommandLinePrompt prompt(assignments, false, terminal);
    Rows rows{{"A", ""}};
    EXPECT_FALSE(prompt.runModally("T", rows));
    EXPECT_EQ(prompt.outcome(), Outcome::WrongUsage);
    EXPECT_EQ(prompt.problem(), "this preset has no variable 'X'; it has 'A'");
    EXPECT_EQ(terminal.shown, "");
    EXPECT_EQ(prompt.problemWithoutVariables(), "this preset has no variable 'X'; it has none");
}

TEST(CommandLinePrompt, WithoutTerminalEverythingGivenIsEnough) {
    FakeTerminal terminal;
    terminal.available = false;
    const Words assignments{"A=1"};
    CommandLinePrompt prompt(assignments, false, terminal);
    Rows rows{{"A", ""}};
    EXPECT_TRUE(prompt.runModally("T", rows));
}

} // namespace
} // namespace orvane
