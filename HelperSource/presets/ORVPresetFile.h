#pragma once

#include "ports/PropertyList.h"
#include "ports/Sentence.h"
#include "presets/ORVPresetResources.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// One preset as one self-contained file: a property list whose root dictionary has the keys
//
//     ORVPresetFileVersion   1
//     ORVPreset              the preset's dictionary as it stands in the preferences, unknown keys included
//     ORVFileContents        for each content file's name a dictionary of `data` (its bytes) and `mode` (octal digits as text)
//     ORVScript              a dictionary of `name` (the script's) and `data` (its bytes)
//
// The last two are left out when there is nothing to put into them.

namespace orvane {

inline constexpr std::string_view ORVPresetFileVersionKey = "ORVPresetFileVersion";
inline constexpr std::string_view ORVPresetKey = "ORVPreset";
inline constexpr std::string_view ORVFileContentsKey = "ORVFileContents";
inline constexpr std::string_view ORVScriptKey = "ORVScript";
/// The version that is written, and the highest one that is read.
inline constexpr int ORVPresetFileVersion = 1;

/// A content file inside a preset file.
struct ORVPackedContent {
    std::string name;                  ///< as the preset names it
    std::string_view data;             ///< borrowed
    std::optional<unsigned> mode = {}; ///< permission bits
};

/// The script inside a preset file.
struct ORVPackedScript {
    std::string name;
    std::string_view data; ///< borrowed
};

/// The parts of a preset file.
struct ORVPackedPreset {
    PropertyList preset; ///< a dictionary
    std::vector<ORVPackedContent> contents;
    std::optional<ORVPackedScript> script;
};

/// The document of a preset file. The parts' data are borrowed, not copied, and must live as long as it.
[[nodiscard]] PropertyList ORVPackPreset(const ORVPackedPreset &parts);

/// The parts of a document; they borrow from it. Nothing, and `why`, when it is no preset file, comes from a later
/// version, or has a value of another type at a key of its own (what is inside the preset is not looked at).
[[nodiscard]] std::optional<ORVPackedPreset> ORVUnpackPreset(const PropertyList &document, Sentence &why);

/// `name` as the name of a file in a folder of ours: its last path component, control characters replaced by "_", cut to 200
/// bytes without harming a character or a short suffix. Empty when nothing is left, or only "." or "..".
[[nodiscard]] std::string ORVSafeFileName(std::string_view name);

/// The other name that is tried when `name` is taken: "a.txt", 2 gives "a 2.txt".
[[nodiscard]] std::string ORVNumberedFileName(std::string_view name, std::size_t number);

/// Names of the content files that a preset's files use, each once, in the order of the tree.
[[nodiscard]] std::vector<std::string> ORVContentNamesOfPreset(const PropertyListValue &preset);

/// How the names in a preset change.
struct ORVRenamedResources {
    std::unordered_map<std::string, std::string> contents; ///< old content name to new; "" takes the key away
    std::optional<std::string> script;                     ///< new name of the script; "" takes the key away
};

/// The preset with other names of content files and script, and everything else, unknown keys included, as it was.
[[nodiscard]] PropertyList ORVPresetWithResources(const PropertyList &preset, const ORVRenamedResources &names);

/// The resources that a preset file brings along.
class ORVPackedResources final : public ORVPresetResources {
public:
    /// `parts` is borrowed.
    explicit ORVPackedResources(const ORVPackedPreset &parts);
    [[nodiscard]] ORVContentState stateOfContent(std::string_view name) override;
    [[nodiscard]] ORVScriptState stateOfScript(std::string_view name) override;

private:
    const ORVPackedPreset &_parts;
    std::unordered_map<std::string_view, const ORVPackedContent *> _contents;
};

} // namespace orvane
