#include "NamePreview.h"

#include "presets/ORVNameTemplate.h"
#include "presets/ORVPresetManager.h"

namespace orvane {

namespace {

/// Longest name of an item on Linux file systems in bytes (limits.h, NAME_MAX).
constexpr std::size_t LongestName = 255;

} // namespace

std::string NamePreview::sample(const std::string &variable) const {
    if (const auto given = _samples.find(variable); given != _samples.end()) {
        return given->second;
    }
    return ORVPresetManager::isAutomaticVariable(variable) ? _counters.nextValue(variable) : variable;
}

std::vector<PromptValueRow> NamePreview::rowsOfPreset(ItemID preset) {
    std::vector<PromptValueRow> rows;
    for (const std::string &name : _variables.promptNamesOfPreset(preset)) {
        rows.push_back({name, sample(name)});
    }
    return rows;
}

std::string NamePreview::nameOf(ItemID item) {
    const std::vector<PromptValueRow> rows = rowsOfPreset(_document.presetOf(item));
    if (_document.isNode(item)) {
        return ORVPresetManager::cleanFilesystemEntities(ORVFillTemplate(_document.filename(item), rows));
    }
    // The engine fills the top-level folder's name for its checks, and once more when it makes it.
    const std::string name = ORVFillTemplate(_document.text(_document.presetOf(item), "directoryName"), rows);
    return ORVPresetManager::cleanFilesystemEntities(ORVFillTemplate(name, rows));
}

NamePreview::Outcome NamePreview::outcomeOf(ItemID item) {
    const std::string text = _document.isNode(item) ? _document.filename(item) : _document.text(_document.presetOf(item), "directoryName");
    if (ORVScanTemplate(text).ending != ORVScanEnding::Ends) {
        return Outcome::Unknown;
    }
    const std::string name = nameOf(item);
    if (name.empty()) {
        return Outcome::Empty;
    }
    const bool isRefused = name == "." || name == ".." || name.size() > LongestName || name.find('\0') != std::string::npos;
    return isRefused ? Outcome::Refused : Outcome::Made;
}

} // namespace orvane
