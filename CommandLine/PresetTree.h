#pragma once

#include "ports/PropertyList.h"
#include "presets/ORVPresetSurvey.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// One folder or file of a hierarchy, in a list that holds a whole one: each folder before what is in it.
struct TreeItem {
    std::size_t depth = 0; ///< 0 for the top-level folder
    std::string name;      ///< UTF-8, unchanged
    bool isFolder = false;
    int label = 0;                     ///< Finder label 1 to 7; 0 for none
    std::optional<unsigned> mode = {}; ///< permission bits
    std::string content = {};          ///< name of the content file; empty for none
    std::string problem = {};          ///< what is wrong with it; empty when nothing is
};

using Tree = std::vector<TreeItem>;

/// The tree of a preset as it stands in its record: templates for names, the top-level folder's first.
[[nodiscard]] Tree treeOfPreset(const PropertyListValue &preset);

/// Why looking for the variables of some name would never end, with the name; empty when it ends everywhere.
[[nodiscard]] std::string endlessTemplate(const ORVPresetSurvey &survey);

} // namespace orvane
