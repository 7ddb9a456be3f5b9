#pragma once

#include "ResourceFolder.h"

#include "ports/FinderInformation.h"
#include "ports/PropertyList.h"
#include "presets/ORVImportedNames.h"

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
};

/// The preset made from an existing folder.
struct ImportedFolder {
    PropertyList preset;
    std::vector<std::string> warnings; ///< what could not be taken along, one line each; UTF-8 as far as the names are
};

/// Makes a preset that gives the folder back: names, structure in the order of the names, permissions that differ from
/// those that a creation gives anyway (755 and 644), labels and, with a store, contents. Nothing, with the reason in `why`, when the
/// folder cannot be read, or the store cannot take a file.
[[nodiscard]] std::optional<ImportedFolder> importFolder(const FolderImportOptions &options, FinderInformation &finderInformation,
                                                         std::string &why);

} // namespace orvane
