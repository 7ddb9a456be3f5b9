#pragma once

#include "ports/PropertyList.h"
#include "ports/Sentence.h"
#include "presets/ORVImportedNames.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// A preset that comes from outside, its contents and its script stored already.
struct IncomingPreset {
    PropertyList preset;
    std::string script;             ///< name of the script that was stored, which will run after each creation; empty for none
    std::vector<Sentence> warnings; ///< what could not be taken along, one line each
};

/// What an import of an existing folder is to do.
struct FolderImportRequest {
    std::string folder; ///< path
    std::string label;  ///< of the preset; empty for the folder's name
    std::vector<ORVImportVariable> variables = {};
    bool withContent = false;
};

/// The support folder's content files and scripts, and presets as single files: the same as `orvane import`, `export` and `add` do.
/// Nothing that is stored is ever overwritten: what has the same name and differs gets a free one ("a.txt", "a 2.txt"). Where
/// something fails, `problem` gets the reason, and nothing is left behind. Main thread only.
class ContentStore {
public:
    virtual ~ContentStore() = default;
    /// Copies a file into the content folder. Returns its name there, that of the file itself when it is in the folder already.
    [[nodiscard]] virtual std::optional<std::string> addContent(const std::string &path, Sentence &problem) = 0;
    /// Copies a script into the scripts folder and makes it executable for all who can read it; one that is there already is made
    /// executable only.
    [[nodiscard]] virtual std::optional<std::string> addScript(const std::string &path, Sentence &problem) = 0;
    /// Makes a preset from an existing folder.
    [[nodiscard]] virtual std::optional<IncomingPreset> importFolder(const FolderImportRequest &request, Sentence &problem) = 0;
    /// Takes a preset out of a file.
    [[nodiscard]] virtual std::optional<IncomingPreset> readPresetFile(const std::string &path, Sentence &problem) = 0;
    /// Writes a preset with contents and script to one file. What is missing is left out, with a warning. A file that exists is
    /// replaced only with `replaces`.
    [[nodiscard]] virtual bool writePresetFile(const PropertyList &preset, const std::string &path, bool replaces,
                                               std::vector<Sentence> &warnings, Sentence &problem) = 0;
    /// Where a content file or script of that name is, or would be.
    [[nodiscard]] virtual std::string pathOfContent(std::string_view name) const = 0;
    [[nodiscard]] virtual std::string pathOfScript(std::string_view name) const = 0;
};

} // namespace orvane
