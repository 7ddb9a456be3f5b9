#include "presets/ORVPresetSurvey.h"

#include "presets/ORVNameTemplate.h"
#include "presets/ORVNodeEntries.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace orvane {

namespace {

/// A list of names is searched while it is short; from then on an index is asked.
constexpr std::size_t LongestSearchedList = 32;

} // namespace

void ORVTreeSurvey::walk(std::span<const PropertyListValue> nodes) {
    std::string storage;
    std::vector<Pending> pending{{nodes, nodes.data(), 0}};
    while (!pending.empty() && !_endless) {
        Pending &folder = pending.back();
        if (folder.left.empty()) {
            if (const std::size_t inside = _nodes - folder.nodesBefore; inside >= LeastLarge) {
                _large.emplace(folder.children, inside);
            }
            pending.pop_back();
            continue;
        }
        const ORVNodeEntries entries(folder.left.front());
        folder.left = folder.left.subspan(1);
        _count(1);
        _look(ORVTextView(entries.filename, storage));
        if (ORVBoolValue(entries.isFolder)) {
            const auto children = entries.childNodes();
            if (const auto known = _large.find(children.data()); known != _large.end()) {
                _count(known->second);
            } else if (!children.empty()) {
                pending.push_back({children, children.data(), _nodes});
            }
        }
    }
}

void ORVTreeSurvey::_count(std::size_t nodes) {
    _nodes += std::min(nodes, std::numeric_limits<std::size_t>::max() - _nodes);
}

std::size_t ORVTreeSurvey::sizeOf(std::span<const PropertyListValue> children) const {
    const auto found = _large.find(children.data());
    return found != _large.end() ? found->second : 0;
}

void ORVTreeSurvey::_look(std::string_view filename) {
    if (filename.find('{') == std::string_view::npos) {
        return;
    }
    std::string cleaned = ORVPresetManager::cleanFilesystemEntities(filename);
    ORVTemplateScan scan = ORVScanTemplate(cleaned);
    if (scan.ending != ORVScanEnding::Ends) {
        _endless = std::move(cleaned);
        return;
    }
    for (ORVTemplateKey &key : scan.keys) {
        _add(std::move(key.name));
    }
}

void ORVTreeSurvey::_add(std::string name) {
    if (_contains(name)) {
        return;
    }
    _names.push_back(std::move(name));
    if (!_index.empty()) {
        _index.insert(_names.back());
    }
}

bool ORVTreeSurvey::_contains(const std::string &name) {
    if (_names.size() <= LongestSearchedList) {
        return std::find(_names.begin(), _names.end(), name) != _names.end();
    }
    if (_index.empty()) {
        _index.insert(_names.begin(), _names.end());
    }
    return _index.contains(name);
}

ORVPresetSurvey::ORVPresetSurvey(const PropertyListValue &preset) {
    std::string directoryName = ORVTextValue(preset.find("directoryName"));
    ORVTemplateScan scan = ORVScanTemplate(directoryName);
    if (scan.ending != ORVScanEnding::Ends) {
        endlessDirectoryName = std::move(directoryName);
        return;
    }
    for (ORVTemplateKey &key : scan.keys) {
        variableNames.push_back(std::move(key.name));
    }
    if (const PropertyListValue *hierarchy = preset.find("fileHierarchy"); hierarchy != nullptr) {
        tree.walk(ORVNodeEntries(*hierarchy).childNodes());
    }
}

} // namespace orvane
