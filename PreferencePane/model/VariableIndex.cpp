#include "VariableIndex.h"

#include "CounterList.h"

#include "presets/ORVImportedNames.h"
#include "presets/ORVNameTemplate.h"
#include "presets/ORVPresetManager.h"

#include <algorithm>
#include <utility>

namespace orvane {

namespace {

/// Keys of a template as the engine lists them.
std::vector<ORVTemplateKey> keysOf(std::string_view text, bool isDirectoryName) {
    if (text.find('{') == std::string_view::npos) {
        return {};
    }
    return ORVScanTemplate(isDirectoryName ? std::string(text) : ORVPresetManager::cleanFilesystemEntities(text)).keys;
}

/// Gathers variables by name, in order of appearance.
class Gatherer {
public:
    void add(std::string name, const VariableUse &use) {
        const auto [place, isNew] = _places.try_emplace(name, variables.size());
        if (isNew) {
            const bool isAutomatic = ORVPresetManager::isAutomaticVariable(name);
            variables.push_back({std::move(name), isAutomatic, {}});
        }
        variables[place->second].uses.push_back(use);
    }
    [[nodiscard]] bool contains(const std::string &name) const { return _places.contains(name); }

    std::vector<Variable> variables;

private:
    std::unordered_map<std::string, std::size_t> _places;
};

/// The item that holds the template, with the template's key.
void renameIn(PresetDocument &document, ItemID item, const char *key, const std::string &from, const std::string &to) {
    const bool isDirectoryName = document.isPreset(item);
    const std::string text = document.text(item, key);
    document.setText(item, key, templateWithRenamedVariable(text, isDirectoryName, from, to), false);
}

bool isUsedIn(VariableIndex &index, ItemID preset, const std::string &name) {
    const auto &variables = index.variablesOfPreset(preset);
    return std::any_of(variables.begin(), variables.end(), [&](const Variable &each) { return each.name == name; });
}

} // namespace

const VariableIndex::Found &VariableIndex::_found(ItemID preset) {
    Found &found = _byPreset[preset];
    const std::uint64_t revision = _document.revisionOfPreset(preset);
    if (found.revision == revision) {
        return found;
    }
    found = {revision, {}, {}};
    if (!_document.isEditable(preset)) {
        return found;
    }
    Gatherer gatherer;
    for (ORVTemplateKey &key : keysOf(_document.text(preset, "directoryName"), true)) {
        found.promptNames.push_back(key.name);
        gatherer.add(std::move(key.name), {preset, key.begin, key.end});
    }
    _document.forEachBelow(_document.treeOf(preset), [&](ItemID node) {
        for (ORVTemplateKey &key : keysOf(_document.filename(node), false)) {
            if (!gatherer.contains(key.name)) {
                found.promptNames.push_back(key.name);
            }
            gatherer.add(std::move(key.name), {node, key.begin, key.end});
        }
        return _document.isFolder(node);
    });
    found.variables = std::move(gatherer.variables);
    return found;
}

const std::vector<Variable> &VariableIndex::variablesOfPreset(ItemID preset) {
    return _found(preset).variables;
}

const std::vector<std::string> &VariableIndex::promptNamesOfPreset(ItemID preset) {
    return _found(preset).promptNames;
}

std::vector<Variable> VariableIndex::allVariables() {
    Gatherer gatherer;
    for (std::size_t index = 0; index < _document.numberOfPresets(); ++index) {
        for (const Variable &variable : variablesOfPreset(_document.presetAt(index))) {
            for (const VariableUse &use : variable.uses) {
                gatherer.add(variable.name, use);
            }
        }
    }
    return std::move(gatherer.variables);
}

bool VariableIndex::isUsed(std::string_view name) {
    for (std::size_t index = 0; index < _document.numberOfPresets(); ++index) {
        if (isUsedIn(*this, _document.presetAt(index), std::string(name))) {
            return true;
        }
    }
    return false;
}

std::string templateWithRenamedVariable(std::string_view text, bool isDirectoryName, std::string_view from, std::string_view to) {
    std::string result;
    std::size_t done = 0;
    for (const ORVTemplateKey &key : keysOf(text, isDirectoryName)) {
        if (key.name == from) {
            result.append(text, done, key.begin - done).append(ORVOpenTag).append(to).append(ORVCloseTag);
            done = key.end;
        }
    }
    return result.append(text, done, std::string_view::npos);
}

VariableRenaming renameVariable(PresetDocument &document, CounterList &counters, std::span<const ItemID> presets, const std::string &from,
                                const std::string &to, bool mayJoin) {
    if (!ORVIsVariableName(to)) {
        return VariableRenaming::BadName;
    }
    VariableIndex index(document);
    std::vector<VariableUse> uses;
    for (const ItemID preset : presets) {
        const auto &variables = index.variablesOfPreset(preset);
        const auto found = std::find_if(variables.begin(), variables.end(), [&](const Variable &each) { return each.name == from; });
        if (found != variables.end()) {
            uses.insert(uses.end(), found->uses.begin(), found->uses.end());
        }
        if (!mayJoin && to != from && isUsedIn(index, preset, to)) {
            return VariableRenaming::Exists;
        }
    }
    if (uses.empty()) {
        return VariableRenaming::NotUsed;
    }
    if (from == to) {
        return VariableRenaming::Done;
    }
    const EditHistory::Step step(document.history(), "Rename Variable");
    ItemID last = NoItem;
    for (const VariableUse &use : uses) {
        if (use.item != last) { // all places in one template change together
            last = use.item;
            renameIn(document, use.item, document.isPreset(use.item) ? "directoryName" : "filename", from, to);
        }
    }
    if (!ORVPresetManager::isAutomaticVariable(from)) {
        return VariableRenaming::Done;
    }
    const bool isKept = index.isUsed(from);
    const bool movesValue = ORVPresetManager::isAutomaticVariable(to) && !counters.contains(to);
    if (movesValue && isKept) {
        counters.copy(from, to);
    } else if (movesValue) {
        counters.rename(from, to);
    } else if (!isKept) {
        counters.values().set(from, std::nullopt);
    }
    return VariableRenaming::Done;
}

} // namespace orvane
