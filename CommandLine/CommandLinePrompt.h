#pragma once

#include "Terminal.h"

#include "ports/VariablePrompt.h"

#include <span>
#include <string>
#include <vector>

namespace orvane {

/// Answers for variables from the command line, the rest from a terminal or their defaults.
class CommandLinePrompt final : public VariablePrompt {
public:
    /// How the asking came out.
    enum class Outcome {
        NotAsked,   ///< there was nothing to ask
        Answered,   ///< every row has its value
        Cancelled,  ///< the user gave up
        WrongUsage, ///< `problem()` says what is wrong with the command line
    };

    /// `assignments` are NAME=VALUE each. With `noInput`, rows without one keep their defaults and unknown names are
    /// ignored; otherwise such rows are asked for on `terminal`. Both are borrowed.
    CommandLinePrompt(std::span<const std::string> assignments, bool noInput, Terminal &terminal)
        : _assignments(assignments), _noInput(noInput), _terminal(terminal) {}

    [[nodiscard]] bool runModally(std::string_view directoryName, std::span<PromptValueRow> rows) override;

    [[nodiscard]] Outcome outcome() const { return _outcome; }
    [[nodiscard]] const std::string &problem() const { return _problem; }
    /// What is wrong with assigning to these names in a preset without variables; empty when nothing is.
    [[nodiscard]] std::string problemWithoutVariables() const;

private:
    [[nodiscard]] Outcome _fill(std::string_view directoryName, std::span<PromptValueRow> rows);
    [[nodiscard]] Outcome _ask(std::string_view directoryName, std::span<PromptValueRow> rows, const std::vector<std::size_t> &missing);

    std::span<const std::string> _assignments;
    bool _noInput;
    Terminal &_terminal;
    Outcome _outcome = Outcome::NotAsked;
    std::string _problem;
};

} // namespace orvane
