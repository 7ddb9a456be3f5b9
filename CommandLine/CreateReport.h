#pragma once

#include "Command.h"
#include "CommandLineAdapters.h"
#include "PresetTree.h"
#include "Terminal.h"

#include "ports/PromptValueRow.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// The script that belongs to a creation.
struct ScriptReport {
    std::string path;
    std::optional<int> status = {}; ///< absent when it did not run, or not to its end in time
    std::string problem = {};       ///< what will keep it from running; dry runs only
};

/// Everything there is to say about one creation.
struct CreationReport {
    ExitStatus status = ExitStatus::Success;
    std::optional<std::string> path; ///< of the new folder; of the one that would be made in a dry run
    bool created = false;
    std::size_t nodes = 0; ///< made, the new folder included
    std::vector<PromptValueRow> variables;
    std::optional<ScriptReport> script;
    std::optional<ShownAlert> error;
    std::optional<Tree> tree; ///< what would be made; dry runs only
};

/// The report as one JSON object on one line, with a line feed.
[[nodiscard]] std::string jsonOfReport(const CreationReport &report);

/// A dry run's report for people: the tree, then what else would happen.
[[nodiscard]] std::string textOfDryRun(const CreationReport &report, const TextStyle &style);

} // namespace orvane
