#include "PresetTree.h"

#include "Translation.h"

#include "presets/ORVFileHelpers.h"
#include "presets/ORVNameTemplate.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

#include <span>
#include <string_view>

namespace orvane {

namespace {

/// Nodes of a folder that are still to be visited.
using Pending = std::vector<std::span<const PropertyListValue>>;

std::span<const PropertyListValue> childrenOf(const PropertyListValue *node) {
    const PropertyListValue *children = node == nullptr ? nullptr : node->find("children");
    return children != nullptr && children->isArray() ? children->array() : std::span<const PropertyListValue>();
}

TreeItem itemOfNode(const PropertyListValue &node, std::size_t depth) {
    TreeItem item;
    item.depth = depth;
    item.name = ORVTextValue(node.find("filename"));
    item.isFolder = ORVBoolValue(node.find("isFolder"));
    std::string storage;
    if (const long label = ORVFinderLabelForColor(ORVTextView(node.find("color"), storage)); label != ORVNotFound) {
        item.label = static_cast<int>(label);
    }
    item.mode = ORVPresetManager::modeOfPermissions(ORVTextView(node.find("permissions"), storage));
    if (!item.isFolder) {
        item.content = ORVTextValue(node.find("contentFilename"));
    }
    return item;
}

/// Why the scan of a name does not end.
std::string endlessName(std::string_view name, const char *opening, const char *closing) {
    const bool opens = ORVScanTemplate(name).ending == ORVScanEnding::OpenBraceAtEnd;
    return localized(opens ? opening : closing, {std::string(name)});
}

std::string endlessFolderName(std::string_view name) {
    return endlessName(name,
                       forTranslation("the folder name '%1' ends in an opening brace, so that looking for its variables would never end"),
                       forTranslation("the folder name '%1' ends in an escaped closing brace while a variable is open, so that looking "
                                      "for its variables would never end"));
}

std::string endlessItemName(std::string_view name) {
    return endlessName(
        name, forTranslation("the name '%1' ends in an opening brace, so that looking for its variables would never end"),
        forTranslation("the name '%1' ends in an escaped closing brace while a variable is open, so that looking for its variables "
                       "would never end"));
}

} // namespace

Tree treeOfPreset(const PropertyListValue &preset) {
    Tree tree;
    TreeItem top;
    top.name = ORVTextValue(preset.find("directoryName"));
    top.isFolder = true;
    tree.push_back(std::move(top));
    Pending pending{childrenOf(preset.find("fileHierarchy"))};
    while (!pending.empty()) {
        if (pending.back().empty()) {
            pending.pop_back();
            continue;
        }
        const PropertyListValue &node = pending.back().front();
        pending.back() = pending.back().subspan(1);
        tree.push_back(itemOfNode(node, pending.size()));
        if (tree.back().isFolder) {
            pending.push_back(childrenOf(&node));
        }
    }
    return tree;
}

std::string endlessTemplate(const ORVPresetSurvey &survey) {
    if (survey.endlessDirectoryName) {
        return endlessFolderName(*survey.endlessDirectoryName);
    }
    return survey.tree.endless() ? endlessItemName(*survey.tree.endless()) : std::string();
}

} // namespace orvane
