#pragma once

#include "Terminal.h"

#include "ports/PromptInterface.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

struct AssignmentResult;

/// Answers for variables from the command line, the rest from a terminal or their defaults. Its window is the terminal,
/// its modal session the asking; there is no table to look at.
class CommandLinePrompt final : public PromptInterface, private PromptWindow, private TableView {
public:
    /// How the asking came out.
    enum class Outcome {
        NotAsked,   ///< there was nothing to ask
        Answered,   ///< every row has its value
        Cancelled,  ///< the user gave up
        WrongUsage, ///< `problem()` says what is wrong with the command line
    };

    /// `assignments` are NAME=VALUE each. With `noInput`, rows without one keep their defaults and unknown names get a
    /// warning; otherwise such rows are asked for on `terminal`. Both are borrowed.
    CommandLinePrompt(std::span<const std::string> assignments, bool noInput, Terminal &terminal)
        : _assignments(assignments), _noInput(noInput), _terminal(terminal) {}

    [[nodiscard]] bool loadNibNamedOwner(std::string_view name, PromptOwner &owner) override;

    [[nodiscard]] Outcome outcome() const { return _outcome; }
    [[nodiscard]] const std::string &problem() const { return _problem; }
    /// Which values went nowhere, one line each, to be told once the rows are answered.
    [[nodiscard]] const std::vector<std::string> &warnings() const { return _warnings; }
    /// What is wrong with assigning to these names in a preset without variables; empty when nothing is. No more than a warning
    /// with `noInput`.
    [[nodiscard]] std::string problemWithoutVariables() const;

private:
    // The window: nothing to see, and one session that asks everything.
    void makeKeyAndOrderFront() override {}
    void orderOut() override {}
    [[nodiscard]] std::string stringWithSavedFrame() override { return {}; }
    void setFrameFromString(std::string_view /*frame*/) override {}
    void disableScreenUpdates() override {}
    void enableScreenUpdates() override {}
    void beginModalSession() override {}
    [[nodiscard]] long runModalSession() override;
    void endModalSession() override {}
    void stopModal() override {}
    void endEditing() override {}

    // The table, in which nothing is ever selected or edited.
    [[nodiscard]] int numberOfRows() override;
    [[nodiscard]] int selectedRow() override { return -1; }
    [[nodiscard]] int editedRow() override { return -1; }
    [[nodiscard]] int editedColumn() override { return -1; }
    [[nodiscard]] int columnWithIdentifier(std::string_view /*identifier*/) override { return -1; }
    void selectRowByExtendingSelection(int /*row*/, bool /*extends*/) override {}
    void editColumnRowSelect(int /*column*/, int /*row*/, bool /*selects*/) override {}
    void superTextDidEndEditing(TextMovement /*movement*/) override {}
    void superKeyDown(int /*keyCode*/) override {}

    [[nodiscard]] Outcome _fill(std::string_view directoryName, std::span<PromptValueRow> rows);
    void _noteDropped(const AssignmentResult &result, std::span<const PromptValueRow> rows);
    [[nodiscard]] Outcome _ask(std::string_view directoryName, std::span<PromptValueRow> rows, const std::vector<std::size_t> &missing);

    std::span<const std::string> _assignments;
    bool _noInput;
    Terminal &_terminal;
    PromptOwner *_owner = nullptr;
    Outcome _outcome = Outcome::NotAsked;
    std::string _problem;
    std::vector<std::string> _warnings;
};

} // namespace orvane
