#pragma once

#include "ports/PropertyList.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// Three versions of the presets become one: what was loaded (base), what was made of it here (mine), and what another program made of
// it meanwhile (theirs). What only one side changed is taken over; what both changed to different things is a conflict, which
// somebody has to decide.

namespace orvane {

enum class MergeSide : std::uint8_t { Mine, Theirs };

/// Something that both sides changed, each in its own way.
struct MergeConflict {
    enum class Kind : std::uint8_t {
        PresetValue,        ///< one key of a preset (empty for a preset that is no dictionary)
        PresetDeletedHere,  ///< deleted here, changed there
        PresetDeletedThere, ///< changed here, deleted there
        PresetOrder,        ///< the presets were put into different orders
        Setting             ///< one key beside the presets
    };
    Kind kind = Kind::PresetValue;
    std::string label;   ///< of the preset; of another kind empty
    std::string key;     ///< of the preset or the preferences
    PropertyList mine;   ///< the value, or the whole preset where one was deleted; null when absent
    PropertyList theirs; ///< the same

    /// The same question about the same values.
    [[nodiscard]] bool isSame(const MergeConflict &other) const;
};

/// A preset here, and which of the loaded ones it was.
struct MergeableRecord {
    PropertyList record;
    std::optional<std::size_t> base;
};

/// A preset of the outcome.
struct MergedRecord {
    PropertyList record;
    std::optional<std::size_t> mine;   ///< its index here
    std::optional<std::size_t> theirs; ///< its index there
};

struct MergedPresets {
    std::vector<MergedRecord> presets;
    std::vector<MergeConflict> conflicts; ///< those without a decision; `presets` has them decided as `Mine`
};

/// How a conflict was decided; nothing when it was not yet.
using MergeDecision = std::function<std::optional<MergeSide>(const MergeConflict &conflict)>;

/// Presets keep their identity through what was loaded: one that still is what it was is that one, wherever it stands now; else one
/// of the same label; else one with the same tree; else one at the same place with the same folder name. `base` and `theirs` are arrays,
/// anything else counts as empty.
[[nodiscard]] MergedPresets mergePresets(const PropertyList &base, const std::vector<MergeableRecord> &mine, const PropertyList &theirs,
                                         const MergeDecision &decide);

} // namespace orvane
