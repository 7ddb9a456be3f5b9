#include "ProblemList.h"

#include "presets/ORVPresetManager.h"

#include <algorithm>
#include <array>
#include <utility>

namespace orvane {

ProblemList::ProblemList(PresetDocument &document, TextCase &textCase, ResourcesMaker makeResources)
    : _document(document), _textCase(textCase), _makeResources(std::move(makeResources)), _resources(_makeResources()) {}

std::size_t ProblemList::_namesakes(ItemID preset) const {
    const std::string label = _document.label(preset);
    std::size_t count = 0;
    for (std::size_t index = 0; index < _document.numberOfPresets(); ++index) {
        count += _document.label(_document.presetAt(index)) == label ? 1U : 0U;
    }
    return count;
}

bool ProblemList::_isCurrent(ItemID preset, std::size_t namesakes) const {
    const auto checked = _byPreset.find(preset);
    return checked != _byPreset.end() && checked->second.revision == _document.revisionOfPreset(preset) &&
           checked->second.namesakes == namesakes;
}

bool ProblemList::isCurrent(ItemID preset) {
    return _isCurrent(preset, _namesakes(preset));
}

const std::vector<DocumentProblem> &ProblemList::problemsOfPreset(ItemID preset) {
    const std::size_t namesakes = _namesakes(preset);
    if (!_isCurrent(preset, namesakes)) {
        Checked checked;
        checked.namesakes = namesakes;
        checked.revision = _document.revisionOfPreset(preset);
        _check(preset, checked);
        _byPreset.insert_or_assign(preset, std::move(checked));
    }
    return _byPreset.at(preset).problems;
}

void ProblemList::_check(ItemID preset, Checked &checked) {
    const PropertyList record = _document.record(preset);
    ORVPresetChecker checker(*_resources, _textCase);
    // The checker counts labels itself: as many bare records with this label as there are presets with it.
    PropertyListBuilder builder;
    if (const PropertyListValue *label = record.root().find("label")) {
        const std::array<PropertyListEntry, 1> entry{{{"label", *label}}};
        const std::vector<PropertyListValue> namesakes(checked.namesakes, builder.dictionary(entry));
        checker.rememberLabels(builder.array(namesakes));
    }
    for (ORVPresetProblem &problem : checker.checkPreset(record.root())) {
        const ItemID found = problem.place.isInTree ? _document.itemAtPlace(preset, problem.place.children) : preset;
        const ItemID item = found == NoItem ? preset : found;
        const auto [severity, isNew] = checked.severities.try_emplace(item, problem.severity);
        if (!isNew) {
            severity->second = std::max(severity->second, problem.severity);
        }
        std::string key = problem.place.key;
        checked.problems.push_back({item, std::move(key), std::move(problem)});
    }
    _learnVariables(preset, checked.variables);
}

void ProblemList::_learnVariables(ItemID preset, ORVVariableUse &variables) const {
    variables.add(_document.text(preset, "directoryName"), {});
    const ORVProblemPlace place{true, {}, {}}; // which of the places it was does not matter here
    _document.forEachBelow(_document.treeOf(preset), [&](ItemID node) {
        const std::string name = _document.filename(node);
        if (name.find('{') != std::string::npos) {
            variables.add(ORVPresetManager::cleanFilesystemEntities(name), place);
        }
        return _document.isFolder(node);
    });
}

std::optional<ORVProblemSeverity> ProblemList::severityOf(ItemID item) const {
    const auto checked = _byPreset.find(_document.presetOf(item));
    if (checked == _byPreset.end()) {
        return std::nullopt;
    }
    const auto found = checked->second.severities.find(item);
    return found == checked->second.severities.end() ? std::nullopt : std::optional(found->second);
}

std::vector<ORVNameProblem> ProblemList::problemsOfTemplate(ItemID item, std::string_view text) const {
    const bool isNode = _document.isNode(item);
    if (text.empty()) {
        return {{ORVProblemSeverity::Error,
                 isNode ? "the name is empty: the creation will fail" : "the top-level folder has no name",
                 {},
                 false}};
    }
    const auto checked = _byPreset.find(_document.presetOf(item));
    ORVVariableUse variables = checked == _byPreset.end() ? ORVVariableUse() : checked->second.variables;
    const ORVProblemPlace place{isNode, {}, {}};
    variables.add(isNode ? ORVPresetManager::cleanFilesystemEntities(text) : std::string(text), place);
    return isNode ? ORVCheckNodeName(text, variables) : ORVCheckFolderName(text, variables);
}

void ProblemList::resourcesDidChange() {
    _resources.reset(); // first, so that what it holds open is let go of
    _resources = _makeResources();
    _byPreset.clear();
}

} // namespace orvane
