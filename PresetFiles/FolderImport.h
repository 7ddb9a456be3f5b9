#pragma once

#include "ResourceFolder.h"

#include "ports/FinderInformation.h"
#include "ports/PropertyList.h"
#include "ports/Sentence.h"
#include "presets/ORVImportedNames.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// What an import is to do.
struct FolderImportOptions {
    std::string folder; ///< path
    std::string name;   ///< its name, from which the top-level folder's template is made
    std::string label;  ///< of the preset
    std::vector<ORVImportVariable> variables;
    ResourceFolder *contentStore = nullptr; ///< takes the files' contents; null for empty files
    std::function<bool()> shouldStop;       ///< asked before each item; may be empty
};

/// The preset made from an existing folder.
struct ImportedFolder {
    PropertyList preset;
    std::vector<Sentence> warnings; ///< what could not be taken along, one line each; UTF-8 as far as the names are
};

/// Makes a preset that gives the folder back: names, structure in the order of the names, permissions that differ from
/// those that a creation gives anyway (755 and 644), labels and, with a store, contents. Nothing, with the reason in `why`, when the
/// folder cannot be read, the store cannot take a file, or it is told to stop.
[[nodiscard]] std::optional<ImportedFolder> importFolder(const FolderImportOptions &options, FinderInformation &finderInformation,
                                                         Sentence &why);

} // namespace orvane
