#include "presets/ORVEndlessTemplates.h"

#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

#include <span>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace orvane {

namespace {

/// A walk through a tree, depth first and without recursion. A binary property list can name one array as the contents of
/// many folders; each is walked through once, so that a small file cannot keep the walk busy for long.
class TreeWalk {
public:
    explicit TreeWalk(const PropertyListValue &root) { _enter(root); }

    /// The next node, or null at the end.
    const PropertyListValue *next() {
        while (!_pending.empty() && _pending.back().empty()) {
            _pending.pop_back();
        }
        if (_pending.empty()) {
            return nullptr;
        }
        const PropertyListValue &node = _pending.back().front();
        _pending.back() = _pending.back().subspan(1);
        if (ORVBoolValue(node.find("isFolder"))) {
            _enter(node);
        }
        return &node;
    }

private:
    void _enter(const PropertyListValue &folder) {
        const PropertyListValue *children = folder.find("children");
        if (children != nullptr && children->isArray() && _entered.insert(children->storage()).second) {
            _pending.push_back(children->array());
        }
    }

    std::vector<std::span<const PropertyListValue>> _pending; ///< what is still to be visited, the next one last
    std::unordered_set<const void *> _entered;
};

} // namespace

std::optional<std::string> ORVFindEndlessTemplate(const PropertyListValue &preset) {
    std::string storage;
    const std::string_view directoryName = ORVTextView(preset.find("directoryName"), storage);
    if (!ORVPresetManager::scanEnds(directoryName)) {
        return std::string(directoryName);
    }
    const PropertyListValue *hierarchy = preset.find("fileHierarchy");
    if (hierarchy == nullptr) {
        return std::nullopt;
    }
    TreeWalk walk(*hierarchy); // the top node counts as a folder whatever it says, and its name is never looked at
    while (const PropertyListValue *node = walk.next()) {
        const std::string_view name = ORVTextView(node->find("filename"), storage);
        if (name.find('{') != std::string_view::npos && !ORVPresetManager::scanEnds(ORVPresetManager::cleanFilesystemEntities(name))) {
            return std::string(name);
        }
    }
    return std::nullopt;
}

} // namespace orvane
