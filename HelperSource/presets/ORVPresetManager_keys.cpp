#include "presets/ORVPresetManager.h"

#include "presets/ORVNameTemplate.h"
#include "presets/ORVPropertyListReading.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <unordered_set>
#include <utility>

// Bracketed variable keys: finding them in a text and in a tree, and replacing them.

namespace orvane {

namespace {

/// Names in order of appearance, each once; asks a list while it is short and an index from then on.
class NameList {
public:
    explicit NameList(std::vector<std::string> &names) : _names(names) {}
    void add(std::string name) {
        if (_contains(name)) {
            return;
        }
        _names.push_back(std::move(name));
        if (!_index.empty()) {
            _index.insert(_names.back());
        }
    }

private:
    static constexpr std::size_t LongestSearchedList = 32;
    [[nodiscard]] bool _contains(const std::string &name) {
        if (_names.size() <= LongestSearchedList) {
            return std::find(_names.begin(), _names.end(), name) != _names.end();
        }
        if (_index.empty()) {
            _index.insert(_names.begin(), _names.end());
        }
        return _index.contains(name);
    }
    std::vector<std::string> &_names;
    std::unordered_set<std::string> _index;
};

} // namespace

std::vector<std::string> ORVPresetManager::findKeysEnclosedByCloseTag(std::string_view text, std::string_view openTag,
                                                                      std::string_view closeTag) const {
    ORVTemplateScan scan = ORVScanTemplate(text, openTag, closeTag);
    while (scan.ending != ORVScanEnding::Ends) {
        // Starting over at the same delimiter, for ever. Kept deliberately; it costs time, but no processor.
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
    std::vector<std::string> keys;
    keys.reserve(scan.keys.size());
    for (ORVTemplateKey &key : scan.keys) {
        keys.push_back(std::move(key.name));
    }
    return keys;
}

std::vector<std::string> ORVPresetManager::findBracketedKeys(std::string_view text) const {
    return findKeysEnclosedByCloseTag(text, ORVOpenTag, ORVCloseTag);
}

bool ORVPresetManager::scanEnds(std::string_view text) {
    return ORVScanTemplate(text).ending == ORVScanEnding::Ends;
}

std::string ORVPresetManager::replaceBracketedKeysReplace(std::string_view text, std::span<const PromptValueRow> rows) const {
    return ORVFillTemplate(text, rows);
}

void ORVPresetManager::scanHierarchyForVariableNamesVariableNames(const PropertyListValue &node,
                                                                  std::vector<std::string> &variableNames) const {
    NameList names(variableNames);
    std::string storage;
    // Depth first without recursion: what is still to be visited, the next one last.
    std::vector<std::span<const PropertyListValue>> pending{{&node, 1}};
    while (!pending.empty()) {
        if (pending.back().empty()) {
            pending.pop_back();
            continue;
        }
        const PropertyListValue &current = pending.back().front();
        pending.back() = pending.back().subspan(1);
        const std::string_view filename = ORVTextView(current.find("filename"), storage);
        if (filename.find(ORVOpenTag) != std::string_view::npos) {
            for (std::string &key : findBracketedKeys(cleanFilesystemEntities(filename))) {
                names.add(std::move(key));
            }
        }
        if (ORVBoolValue(current.find("isFolder"))) {
            if (const PropertyListValue *children = current.find("children"); children != nullptr && children->isArray()) {
                pending.push_back(children->array());
            }
        }
    }
}

} // namespace orvane
