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

/// Owner of the prompt: its rows, and what became of it.
class Asker final : public PromptOwner {
public:
    Asker(Rows &rows, std::string directoryName) : _rows(rows), _directoryName(std::move(directoryName)) {}
    void awakeFromNib(PromptWindow &window, TableView &) override { _window = &window; }
    [[nodiscard]] std::span<PromptValueRow> promptRows() override { return _rows; }
    [[nodiscard]] const std::string &promptDirectoryName() const override { return _directoryName; }
    [[nodiscard]] const std::string &promptParentFolder() const override { return _parentFolder; }
    [[nodiscard]] std::string directoryNameForRows(std::span<const PromptValueRow>) const override { return {}; }
    [[nodiscard]] PromptProblem problemForRows(std::span<const PromptValueRow>) const override { return PromptProblem::None; }
    void finishPrompt() override { ++completions; }
    void abortPrompt() override { ++cancellations; }
    void windowWillClose(PromptWindow &) override {}
    void tableTextDidEndEditing(TextMovement) override {}
    void tableKeyDown(int) override {}

    /// Runs the prompt as its owner does; true when it was completed.
    [[nodiscard]] bool run(PromptInterface &prompt) {
        EXPECT_TRUE(prompt.loadNibNamedOwner("PromptWindow", *this));
        EXPECT_NE(_window->runModalSession(), RunContinuesResponse);
        EXPECT_EQ(completions + cancellations, 1);
        return completions == 1;
    }

    int completions = 0;
    int cancellations = 0;

private:
    Rows &_rows;
    std::string _directoryName;
    std::string _parentFolder;
    PromptWindow *_window = nullptr;
};

bool run(CommandLinePrompt &prompt, std::string directoryName, Rows &rows) {
    return Asker(rows, std::move(directoryName)).run(prompt);
}

TEST(CommandLinePrompt, AsksForRowsWithoutValueOnly) {
    FakeTerminal terminal;
    terminal.lines = {"b2"};
    const Words assignments{"A=a1"};
    CommandLinePrompt prompt(assignments, false, terminal);
    Rows rows{{"A", ""}, {"B", ""}};
    EXPECT_TRUE(run(prompt, "{A} {B}", rows));
    EXPECT_EQ(rows, (Rows{{"A", "a1"}, {"B", "b2"}}));
    EXPECT_EQ(prompt.outcome(), Outcome::Answered);
    EXPECT_EQ(terminal.shown, "Values for {A} {B}\nB: ");
}

TEST(CommandLinePrompt, AnEmptyLineTakesTheDefaultThatWasOffered) {
    FakeTerminal terminal;
    terminal.lines = {"", ""};
    CommandLinePrompt prompt({}, false, terminal);
    Rows rows{{"AutoNumber", "42"}, {"B", ""}};
    EXPECT_TRUE(run(prompt, "T", rows));
    EXPECT_EQ(rows, (Rows{{"AutoNumber", "42"}, {"B", ""}}));
    EXPECT_NE(terminal.shown.find("AutoNumber [42]: "), std::string::npos);
}

TEST(CommandLinePrompt, RowsOfOneNameAreAskedWithTheirNumber) {
    FakeTerminal terminal;
    terminal.lines = {"1", "2"};
    CommandLinePrompt prompt({}, false, terminal);
    Rows rows{{"A", ""}, {"A", ""}};
    EXPECT_TRUE(run(prompt, "T", rows));
    EXPECT_EQ(rows, (Rows{{"A", "1"}, {"A", "2"}}));
    EXPECT_EQ(terminal.shown, "Values for T\n'A': names take the first value, the script and counters the last\nA (1 of 2): A (2 of 2): ");
}

TEST(CommandLinePrompt, WhatSeveralValuesAreGoodForIsToldOfWhatIsAskedOnly) {
    FakeTerminal terminal;
    terminal.lines = {"c", "d"};
    const Words assignments{"A=1"};
    CommandLinePrompt prompt(assignments, false, terminal);
    Rows rows{{"A", ""}, {"A", ""}, {"C", ""}, {"D", ""}};
    EXPECT_TRUE(run(prompt, "T", rows));
    EXPECT_EQ(terminal.shown, "Values for T\nC: D: ");
}

TEST(CommandLinePrompt, ValuesThatGoNowhereAreWarnedOf) {
    FakeTerminal terminal;
    const Words assignments{"A=1", "B=2", "A=3", "B=4", "B=5"};
    CommandLinePrompt prompt(assignments, false, terminal);
    Rows rows{{"A", ""}, {"B", ""}, {"B", ""}};
    EXPECT_TRUE(run(prompt, "T", rows));
    EXPECT_EQ(prompt.warnings(), Words{"more values than places for 'A', 'B': the last are not used"});
    const Words two{"A=1", "B=2"};
    CommandLinePrompt enough(two, false, terminal);
    EXPECT_TRUE(run(enough, "T", rows));
    EXPECT_TRUE(enough.warnings().empty());
}

TEST(CommandLinePrompt, TheEndOfInputCancels) {
    FakeTerminal terminal;
    terminal.lines = {"1"};
    CommandLinePrompt prompt({}, false, terminal);
    Rows rows{{"A", ""}, {"B", ""}};
    EXPECT_FALSE(run(prompt, "T", rows));
    EXPECT_EQ(prompt.outcome(), Outcome::Cancelled);
}

TEST(CommandLinePrompt, WithNoInputDefaultsStayAndUnknownNamesGetAWarning) {
    FakeTerminal terminal;
    const Words assignments{"A=1", "Unknown=2"};
    CommandLinePrompt prompt(assignments, true, terminal);
    Rows rows{{"A", ""}, {"AutoB", "7"}};
    EXPECT_TRUE(run(prompt, "T", rows));
    EXPECT_EQ(rows, (Rows{{"A", "1"}, {"AutoB", "7"}}));
    EXPECT_EQ(terminal.shown, "");
    EXPECT_EQ(prompt.problem(), "");
    EXPECT_EQ(prompt.warnings(), Words{"this preset has no variable 'Unknown'; it has 'A', 'AutoB'"});
}

TEST(CommandLinePrompt, WithoutTerminalMissingNamesAreListedOnce) {
    FakeTerminal terminal;
    terminal.available = false;
    const Words assignments{"B=1"};
    CommandLinePrompt prompt(assignments, false, terminal);
    Rows rows{{"A", ""}, {"B", ""}, {"A", ""}, {"c d", ""}};
    EXPECT_FALSE(run(prompt, "T", rows));
    EXPECT_EQ(prompt.outcome(), Outcome::WrongUsage);
    EXPECT_EQ(prompt.problem(), "no value for 'A', 'c d'; give each with --set NAME=VALUE, or take the defaults with --no-input");
}

TEST(CommandLinePrompt, AnUnknownNameIsWrongUsageEvenOnATerminal) {
    FakeTerminal terminal;
    terminal.lines = {"1"};
    const Words assignments{"X=1"};
    CommandLinePrompt prompt(assignments, false, terminal);
    Rows rows{{"A", ""}};
    EXPECT_FALSE(run(prompt, "T", rows));
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
    EXPECT_TRUE(run(prompt, "T", rows));
}

} // namespace
} // namespace orvane
