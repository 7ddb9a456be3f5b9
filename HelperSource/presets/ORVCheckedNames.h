#pragma once

#include "presets/ORVPresetChecker.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// The checker's knowledge of names: one name template by itself, the names in one folder, the variables of a preset.

namespace orvane {

/// A problem of a name, before it is known where the name stands. Fields as in `ORVPresetProblem`.
struct ORVNameProblem {
    ORVProblemSeverity severity;
    const char *format;
    std::vector<std::string> arguments = {};
    bool neverEnds = false;
};

/// A problem of a preset's variables among each other.
struct ORVVariableProblem {
    ORVProblemPlace place;
    const char *format;
    std::vector<std::string> arguments;
};

/// The variables of one preset and where each stands first.
class ORVVariableUse {
public:
    /// Adds those of one template, as the engine scans it.
    void add(std::string_view scannedText, const ORVProblemPlace &place);
    [[nodiscard]] bool contains(const std::string &name) const { return _places.contains(name); }
    /// Without variables no template is substituted, and backslashes stay in the names.
    [[nodiscard]] bool isEmpty() const { return _places.empty(); }
    /// Length in bytes of the longest name.
    [[nodiscard]] std::size_t longest() const { return _longest; }
    /// Names that differ only in case and, for presets with a script, names that the script cannot tell apart.
    [[nodiscard]] std::vector<ORVVariableProblem> problems(bool hasScript, TextCase &textCase) const;

private:
    std::vector<std::string> _names; ///< in order of first appearance
    std::unordered_map<std::string, ORVProblemPlace> _places;
    std::size_t _longest = 0;
};

/// What an item of the tree will be on disk.
enum class ORVSiblingKind { EmptyFile, FileWithContents, CopiedFolder, Folder };

/// The names inside one folder.
class ORVSiblingNames {
public:
    /// Adds the template of child number `index`; a problem when it cannot be told from one added before.
    [[nodiscard]] std::optional<ORVNameProblem> add(std::string_view filename, std::size_t index, ORVSiblingKind kind,
                                                    const ORVVariableUse &variables, TextCase &textCase);

private:
    struct Sibling {
        std::size_t index;
        ORVSiblingKind kind;
    };
    std::unordered_map<std::string, Sibling> _names;
    std::unordered_map<std::string, std::size_t> _namesInUpperCase;
};

/// Problems of the name template of an item in the tree. Not for an empty one.
[[nodiscard]] std::vector<ORVNameProblem> ORVCheckNodeName(std::string_view name, const ORVVariableUse &variables);

/// Problems of the top-level folder's name template. Not for an empty one.
[[nodiscard]] std::vector<ORVNameProblem> ORVCheckFolderName(std::string_view name, const ORVVariableUse &variables);

} // namespace orvane
