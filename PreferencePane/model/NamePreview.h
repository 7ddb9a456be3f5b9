#pragma once

#include "CounterList.h"
#include "PresetDocument.h"
#include "VariableIndex.h"

#include "ports/PromptValueRow.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace orvane {

/// What a creation would make of the names, with sample values: the tree that an item view shows beside the templates. A name is made
/// when it is asked for, so that a tree of any size costs what is on the screen. Main thread only.
class NamePreview {
public:
    /// What becomes of an item of that name.
    enum class Outcome : std::uint8_t {
        Made,
        Empty,   ///< nothing is left of the name: the creation fails
        Refused, ///< "." or "..", a NUL, or more than 255 bytes: the creation fails
        Unknown  ///< looking for the preset's variables never ends
    };

    /// Borrows all of them.
    NamePreview(PresetDocument &document, VariableIndex &variables, const CounterList &counters)
        : _document(document), _variables(variables), _counters(counters) {}

    /// A value for a variable, in all presets, instead of its own sample.
    void setSample(const std::string &variable, std::string value) { _samples.insert_or_assign(variable, std::move(value)); }
    void removeSample(const std::string &variable) { _samples.erase(variable); }
    /// The variable's sample: the one that was set; for automatic variables what the next creation offers; else its own name.
    [[nodiscard]] std::string sample(const std::string &variable) const;

    /// The rows of the preset's prompt, filled with samples.
    [[nodiscard]] std::vector<PromptValueRow> rowsOfPreset(ItemID preset);
    /// The name that the node's folder or file gets; of a preset or its tree, the top-level folder's.
    [[nodiscard]] std::string nameOf(ItemID item);
    [[nodiscard]] Outcome outcomeOf(ItemID item);

private:
    PresetDocument &_document;
    VariableIndex &_variables;
    const CounterList &_counters;
    std::unordered_map<std::string, std::string> _samples;
};

} // namespace orvane
