#pragma once

#include "PresetDocument.h"

#include "ports/TextCase.h"
#include "presets/ORVCheckedNames.h"
#include "presets/ORVPresetChecker.h"
#include "presets/ORVPresetResources.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvane {

/// A problem with its place in the document.
struct DocumentProblem {
    ItemID item = NoItem; ///< the preset, its tree, or a node; the preset where the place is not in the document
    std::string key;      ///< of the item's record; empty for the item as a whole
    ORVPresetProblem problem;
};

/// The problems of all presets, from the same checker as `orvane check`.
///
/// A whole preset is checked when it is asked for and has changed since, which takes time in proportion to its size: right after
/// typing, ask for the problems of the text alone, and for the preset's when the user pauses. Main thread only.
class ProblemList {
public:
    /// Gives the resources as they are now; content files are looked up once for each call.
    using ResourcesMaker = std::function<std::unique_ptr<ORVPresetResources>()>;

    /// Borrows document and port.
    ProblemList(PresetDocument &document, TextCase &textCase, ResourcesMaker makeResources);

    /// The preset's problems in the checker's order. Valid until the next call.
    [[nodiscard]] const std::vector<DocumentProblem> &problemsOfPreset(ItemID preset);
    /// Whether `problemsOfPreset` would answer at once.
    [[nodiscard]] bool isCurrent(ItemID preset);
    /// The gravest of the item's problems as of the last check; nothing when it has none.
    [[nodiscard]] std::optional<ORVProblemSeverity> severityOf(ItemID item) const;
    /// Problems of a template by itself while it is typed into this item, with the variables known as of the last check of its preset.
    [[nodiscard]] std::vector<ORVNameProblem> problemsOfTemplate(ItemID item, std::string_view text) const;
    /// Content files or scripts have come or gone: everything is checked anew.
    void resourcesDidChange();

private:
    struct Checked {
        std::uint64_t revision = 0;
        std::size_t namesakes = 0; ///< presets with its label
        std::vector<DocumentProblem> problems;
        std::unordered_map<ItemID, ORVProblemSeverity> severities;
        ORVVariableUse variables;
    };

    [[nodiscard]] std::size_t _namesakes(ItemID preset) const;
    [[nodiscard]] bool _isCurrent(ItemID preset, std::size_t namesakes) const;
    void _check(ItemID preset, Checked &checked);
    void _learnVariables(ItemID preset, ORVVariableUse &variables) const;

    PresetDocument &_document;
    TextCase &_textCase;
    ResourcesMaker _makeResources;
    std::unique_ptr<ORVPresetResources> _resources;
    std::unordered_map<ItemID, Checked> _byPreset;
};

} // namespace orvane
