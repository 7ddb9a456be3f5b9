#pragma once

#include "PresetDocument.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvane {

class CounterList;

/// One place where a variable stands in a template.
struct VariableUse {
    ItemID item = NoItem;  ///< a preset (its `directoryName`) or a node (its `filename`)
    std::size_t begin = 0; ///< in bytes, of the opening brace
    std::size_t end = 0;   ///< behind the closing brace
    bool operator==(const VariableUse &) const = default;
};

/// A variable with all its places, in the order in which the engine finds them.
struct Variable {
    std::string name;
    bool isAutomatic = false;
    std::vector<VariableUse> uses;
};

/// The variables of the document, found as the engine finds them: each preset is looked through again when it has changed since.
/// Main thread only.
class VariableIndex {
public:
    /// Borrows the document.
    explicit VariableIndex(PresetDocument &document) : _document(document) {}

    /// The preset's variables in the order of the prompt. Valid until the preset changes.
    [[nodiscard]] const std::vector<Variable> &variablesOfPreset(ItemID preset);
    /// The names of the prompt's rows in their order: those of the top-level folder's name stand there as often as in it.
    [[nodiscard]] const std::vector<std::string> &promptNamesOfPreset(ItemID preset);
    /// The variables of all presets, each name once, in order of first appearance.
    [[nodiscard]] std::vector<Variable> allVariables();
    [[nodiscard]] bool isUsed(std::string_view name);

private:
    struct Found {
        std::uint64_t revision = 0;
        std::vector<Variable> variables;
        std::vector<std::string> promptNames;
    };
    [[nodiscard]] const Found &_found(ItemID preset);

    PresetDocument &_document;
    std::unordered_map<ItemID, Found> _byPreset;
};

/// Why a variable is not renamed, or that it was.
enum class VariableRenaming : std::uint8_t {
    Done,
    NotUsed,
    BadName, ///< see `ORVIsVariableName`
    Exists   ///< another variable has the name; both would become one
};

/// Renames a variable wherever it stands in these presets, and what is stored of it when it is automatic, in one step. Braces that
/// are escaped stay as they are. Where other presets keep the old name, its counter stays for them. A counter that the new name
/// has already stays, too; one whose new name is not automatic goes. With `mayJoin` it may become one with a variable that exists.
VariableRenaming renameVariable(PresetDocument &document, CounterList &counters, std::span<const ItemID> presets, const std::string &from,
                                const std::string &to, bool mayJoin = false);

/// The template with every key of that name under another name; a name that `ORVIsVariableName` takes.
[[nodiscard]] std::string templateWithRenamedVariable(std::string_view text, bool isDirectoryName, std::string_view from,
                                                      std::string_view to);

} // namespace orvane
