#pragma once

#include "presets/ORVCheckedNames.h"
#include "presets/ORVPresetChecker.h"

#include <QString>

namespace orvane {

/// A problem in the user's language, its arguments put in.
[[nodiscard]] QString textOfProblem(const ORVPresetProblem &problem);
[[nodiscard]] QString textOfProblem(const ORVNameProblem &problem);
/// "Error", "Warning" or "Note".
[[nodiscard]] QString titleOfSeverity(ORVProblemSeverity severity);

} // namespace orvane
