#pragma once

#include "Command.h"

#include "ports/PromptValueRow.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orvane {

/// The words of `orvane create`.
struct CreateOptions {
    std::string preset;                   ///< index or label
    std::optional<std::string> in;        ///< folder in which the new one is made; absent for the current one
    std::vector<std::string> assignments; ///< NAME=VALUE each, in the order given
    bool noInput = false;
    bool noOpen = false;
    bool dryRun = false;
    bool json = false;

    /// What the words mean, or what is wrong with them in `error`.
    [[nodiscard]] static CreateOptions parse(const CommandArguments &arguments, std::string &error);
};

/// What became of the assignments.
struct AssignmentResult {
    std::vector<std::string> unknown; ///< names without a row, each once, in the order given
    std::vector<std::size_t> missing; ///< positions of rows without an assignment
    std::vector<std::string> surplus; ///< names with more values than rows, each once; what is left over goes nowhere
};

/// Gives the values of the assignments to the rows. A value goes to every row of its name; where a name is assigned several
/// times, the values go to the rows of that name in order, the last one to all that remain. Names may hold "=": an
/// assignment is split where it leaves the longest name of a row, "x=y=3" into "x=y" and "3" where there are rows "x=y" and "x".
AssignmentResult distributeAssignments(std::span<const std::string> assignments, std::span<PromptValueRow> rows);

} // namespace orvane
