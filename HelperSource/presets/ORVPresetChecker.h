#pragma once

#include "ports/PropertyList.h"
#include "ports/TextCase.h"
#include "presets/ORVPresetResources.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvane {

/// How much a problem matters: an error makes a creation fail, hang or lose something; a warning is most likely not
/// what was meant; a note only tells what will happen.
enum class ORVProblemSeverity { Note, Warning, Error };

/// "note", "warning" or "error".
[[nodiscard]] const char *ORVNameOfSeverity(ORVProblemSeverity severity);

/// Where in a preset a problem is.
struct ORVProblemPlace {
    bool isInTree = false;               ///< in `fileHierarchy`; else a key of the preset itself
    std::vector<std::uint32_t> children; ///< positions in `children`, from the tree's root down to the node
    std::string key;                     ///< key of the preset or node; empty for the preset or node as a whole

    bool operator==(const ORVProblemPlace &) const = default;
};

/// One problem of one preset. A plain value.
struct ORVPresetProblem {
    ORVProblemSeverity severity = ORVProblemSeverity::Note;
    ORVProblemPlace place;
    const char *format = "";            ///< fixed English text with %1, %2 … for the arguments; the key for a translation
    std::vector<std::string> arguments; ///< UTF-8 as they stand in the preset: not made safe for any output
    bool neverEnds = false;             ///< a creation would not come to an end

    /// The text in English, arguments put in.
    [[nodiscard]] std::string text() const;
};

/// A place in words, such as `directoryName` or `fileHierarchy/children[2] "Footage"/filename`. Positions are counted from 0.
[[nodiscard]] std::string ORVTextOfPlace(const ORVProblemPlace &place, const PropertyListValue &preset);

/// Finds every problem of presets. Takes time in proportion to the size of the tree, whatever its depth, and changes nothing.
/// One thread at a time.
class ORVPresetChecker {
public:
    /// Borrows both for its life.
    ORVPresetChecker(ORVPresetResources &resources, TextCase &textCase) : _resources(resources), _textCase(textCase) {}

    /// Remembers the labels of all presets (an array), so that `checkPreset` can tell which stand twice.
    void rememberLabels(const PropertyListValue &presets);

    /// All problems: those of the preset's own keys, then those of the tree in its order, then those of its variables.
    [[nodiscard]] std::vector<ORVPresetProblem> checkPreset(const PropertyListValue &preset);

private:
    struct Run;

    ORVPresetResources &_resources;
    TextCase &_textCase;
    std::unordered_map<std::string, std::size_t> _labels; ///< label to how many presets have it
};

/// The keys that mean something in a preset and in a node.
[[nodiscard]] std::span<const std::string_view> ORVKnownPresetKeys();
[[nodiscard]] std::span<const std::string_view> ORVKnownNodeKeys();

} // namespace orvane
