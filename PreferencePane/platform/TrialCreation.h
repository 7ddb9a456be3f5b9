#pragma once

#include "ports/PromptValueRow.h"
#include "ports/PropertyList.h"
#include "ports/Sentence.h"

#include <map>
#include <string>
#include <vector>

namespace orvane {

/// What a trial is to make.
struct TrialRequest {
    PropertyList preset;
    std::vector<PromptValueRow> rows; ///< what the user would answer, in the prompt's order
    std::string supportFolder;        ///< with contents and scripts
    std::string parent;               ///< an empty folder of its own
};

/// What became of it.
struct TrialCreation {
    std::string folder;                             ///< path of the new folder; empty when none was made
    std::string script;                             ///< path of the script that would run now; empty for none
    std::map<std::string, std::string> environment; ///< the script's, whole
    Sentence problem;                               ///< what the helper would say instead of going on; empty for nothing
};

/// Makes a preset as the helper does, by the same engine, up to the point where the script would be started, and nothing else: no
/// counter is stored, nothing opens, nothing is logged. Does not return for a preset whose scan for variables never ends: look for
/// that first (`ORVPresetProblem::neverEnds`). Any thread; shares nothing with other calls.
[[nodiscard]] TrialCreation makeTrialCreation(const TrialRequest &request);

} // namespace orvane
