#include "PresetDocument.h"

#include "Permissions.h"

#include "presets/ORVPresetFile.h"
#include "presets/ORVPropertyListReading.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_set>
#include <utility>

namespace orvane {

namespace {

std::string keyOf(const char *what, ItemID item) {
    return std::string(what) + " " + std::to_string(static_cast<std::uint32_t>(item));
}

/// Names in one folder, and names for what comes into it.
class NamesInFolder {
public:
    NamesInFolder(const PresetDocument &document, ItemID folder) {
        for (std::size_t index = 0; index < document.numberOfChildren(folder); ++index) {
            _names.insert(document.filename(document.childAt(folder, index)));
        }
    }

    /// `name`, or a numbered form of it that is free; taken from then on.
    std::string take(const std::string &name, bool isFolder) {
        std::string result = name;
        for (std::size_t number = 2; !name.empty() && _names.contains(result); ++number) {
            // What stands behind a dot in a folder's name is no suffix.
            result = isFolder ? name + " " + std::to_string(number) : ORVNumberedFileName(name, number);
        }
        _names.insert(result);
        return result;
    }

private:
    std::unordered_set<std::string> _names;
};

} // namespace

// Presets ---------------------------------------------------------------------------------------------------------

ItemID PresetDocument::addPreset(std::size_t index, std::string_view label, std::string_view directoryName) {
    PropertyListBuilder builder;
    const std::array<PropertyListEntry, 2> tree{{{"isFolder", PropertyListValue::ofBoolean(true)}, {"children", builder.array({})}}};
    const std::array<PropertyListEntry, 3> preset{{{"label", builder.string(freeLabel(label))},
                                                   {"directoryName", builder.string(directoryName)},
                                                   {"fileHierarchy", builder.dictionary(tree)}}};
    return insertPreset(builder.finish(builder.dictionary(preset)), index, "Add Preset");
}

ItemID PresetDocument::insertPreset(const PropertyList &record, std::size_t index, const char *name) {
    const EditHistory::Step step(_history, name);
    const ItemID preset = _makePreset(record);
    _insert(PresetList, index, {preset});
    return preset;
}

std::vector<ItemID> PresetDocument::duplicatePresets(std::span<const ItemID> presets) {
    const EditHistory::Step step(_history, presets.size() == 1 ? "Duplicate Preset" : "Duplicate Presets");
    std::vector<ItemID> copies;
    for (const ItemID preset : outermost(presets)) {
        const ItemID copy = _copy(preset);
        if (isEditable(copy) && !label(preset).empty()) {
            _putText(copy, "label", freeLabel(label(preset)));
            _presets[copy].record.reset();
        }
        _insert(PresetList, indexOf(preset) + 1, {copy});
        copies.push_back(copy);
    }
    return copies;
}

void PresetDocument::renamePreset(ItemID preset, std::string_view label) {
    const EditHistory::Step step(_history, "Rename Preset", keyOf("label", preset));
    setText(preset, "label", label, true);
}

void PresetDocument::removePresets(std::span<const ItemID> presets) {
    const EditHistory::Step step(_history, presets.size() == 1 ? "Delete Preset" : "Delete Presets");
    std::vector<ItemID> items = outermost(presets);
    std::erase_if(items, [this](ItemID item) { return !isPreset(item); });
    _removeAll(items);
}

void PresetDocument::movePresets(std::span<const ItemID> presets, std::size_t index) {
    const EditHistory::Step step(_history, presets.size() == 1 ? "Move Preset" : "Move Presets");
    std::vector<ItemID> items = outermost(presets);
    std::erase_if(items, [this](ItemID item) { return !isPreset(item); });
    _move(std::move(items), PresetList, index);
}

void PresetDocument::setDirectoryName(ItemID preset, std::string_view text) {
    const EditHistory::Step step(_history, "Change Folder Name", keyOf("directoryName", preset));
    setText(preset, "directoryName", text, false);
}

void PresetDocument::setScript(ItemID preset, std::string_view name) {
    const EditHistory::Step step(_history, "Change Script");
    setText(preset, "scriptFile", name, true);
}

/// Gives another text to an item that is not in the document yet, where it has one.
void PresetDocument::_putText(ItemID item, std::string_view key, std::string_view text) {
    for (Attribute &attribute : _at(item).attributes) {
        if (attribute.key == key && !text.empty()) {
            attribute.value = propertyListOfText(text);
        }
    }
}

/// The item gets these entries and no others.
void PresetDocument::_takeOver(ItemID item, const std::vector<Attribute> &attributes) {
    const auto has = [](const std::vector<Attribute> &list, const std::string &key) {
        return std::any_of(list.begin(), list.end(), [&](const Attribute &each) { return each.key == key; });
    };
    const std::vector<Attribute> before = _at(item).attributes;
    for (const Attribute &each : before) {
        if (!has(attributes, each.key)) {
            _setValue(item, each.key, std::nullopt);
        }
    }
    for (const Attribute &each : attributes) {
        _setValue(item, each.key, each.value);
    }
}

bool PresetDocument::replacePreset(ItemID preset, const PropertyList &newRecord, const char *name) {
    if (!isEditable(preset) || !newRecord.root().isDictionary()) {
        return false;
    }
    const PropertyListValue *newTree = newRecord.root().find("fileHierarchy");
    const PropertyListValue nothing;
    const EditHistory::Step step(_history, name);
    const ItemID made = _makePreset(newRecord); // to be taken apart
    if (!isEditable(made)) {
        _release(std::array{made});
        return false;
    }
    const std::vector<Attribute> attributes = _at(made).attributes;
    const std::vector<Attribute> treeAttributes = _at(treeOf(made)).attributes;
    const PropertyList oldRecord = record(preset);
    const PropertyListValue *oldTree = oldRecord.root().find("fileHierarchy");
    const bool hasOtherTree = !(oldTree == nullptr ? nothing : *oldTree).equals(newTree == nullptr ? nothing : *newTree);
    std::vector<ItemID> nodes;
    if (hasOtherTree) {
        nodes = std::exchange(_at(treeOf(made)).children, {});
    }
    _release(std::array{made});
    _takeOver(preset, attributes);
    if (hasOtherTree) {
        const ItemID tree = treeOf(preset);
        _takeOver(tree, treeAttributes);
        _remove(tree, 0, numberOfChildren(tree));
        _insert(tree, 0, std::move(nodes));
    }
    return true;
}

// Nodes -----------------------------------------------------------------------------------------------------------

ItemID PresetDocument::addNode(ItemID parent, std::size_t index, std::string_view filename, bool isFolder) {
    PropertyListBuilder builder;
    const std::array<PropertyListEntry, 2> entries{
        {{"filename", builder.string(filename)}, {"isFolder", PropertyListValue::ofBoolean(isFolder)}}};
    const std::array<PropertyListValue, 1> node{builder.dictionary(entries)};
    const auto made = insertNodes(builder.finish(builder.array(node)), parent, index, isFolder ? "Add Folder" : "Add File");
    return made.empty() ? NoItem : made.front();
}

std::vector<ItemID> PresetDocument::insertNodes(const PropertyList &nodes, ItemID parent, std::size_t index, const char *name) {
    if (!canInsert(parent) || !nodes.root().isArray()) {
        return {};
    }
    const EditHistory::Step step(_history, name);
    PropertyListBuilder builder;
    const std::array<PropertyListEntry, 1> folder{{{"children", builder.adopt(nodes)}}};
    std::vector<ItemID> made = _makeNodes(nodes, builder.dictionary(folder));
    NamesInFolder names(*this, parent);
    for (const ItemID node : made) {
        const std::string wanted = filename(node);
        const std::string free = names.take(wanted, isFolder(node));
        if (free != wanted) {
            _putText(node, "filename", free);
        }
    }
    _insert(parent, index, made);
    return made;
}

std::vector<ItemID> PresetDocument::duplicateNodes(std::span<const ItemID> nodes) {
    const EditHistory::Step step(_history, "Duplicate Items");
    std::vector<ItemID> copies;
    std::unordered_map<ItemID, NamesInFolder> names;
    for (const ItemID node : outermost(nodes)) {
        if (!isNode(node)) {
            continue;
        }
        const ItemID parent = parentOf(node);
        const ItemID copy = _copy(node);
        const std::string wanted = filename(node);
        const std::string free = names.try_emplace(parent, *this, parent).first->second.take(wanted, isFolder(node));
        if (free != wanted) {
            _putText(copy, "filename", free);
        }
        _insert(parent, indexOf(node) + 1, {copy});
        copies.push_back(copy);
    }
    return copies;
}

void PresetDocument::removeNodes(std::span<const ItemID> nodes, const char *name) {
    const EditHistory::Step step(_history, name);
    std::vector<ItemID> items = outermost(nodes);
    std::erase_if(items, [this](ItemID item) { return !isNode(item); });
    _removeAll(items);
}

void PresetDocument::moveNodes(std::span<const ItemID> nodes, ItemID parent, std::size_t index) {
    std::vector<ItemID> items = outermost(nodes);
    if (!canMove(items, parent)) {
        return;
    }
    const EditHistory::Step step(_history, "Move Items");
    _move(std::move(items), parent, index);
}

void PresetDocument::renameNode(ItemID node, std::string_view filename) {
    const EditHistory::Step step(_history, "Rename", keyOf("filename", node));
    setText(node, "filename", filename, false);
}

void PresetDocument::setFolder(std::span<const ItemID> nodes, bool isFolder) {
    const EditHistory::Step step(_history, isFolder ? "Change to Folder" : "Change to File");
    for (const ItemID node : nodes) {
        if (isNode(node) && this->isFolder(node) != isFolder) {
            _setValue(node, "isFolder", PropertyList(nullptr, PropertyListValue::ofBoolean(isFolder)));
        }
    }
}

void PresetDocument::_setTexts(std::span<const ItemID> nodes, std::string_view key, std::string_view text, const char *name) {
    const EditHistory::Step step(_history, name);
    for (const ItemID node : nodes) {
        if (isNode(node)) {
            setText(node, key, text, true);
        }
    }
}

void PresetDocument::setColor(std::span<const ItemID> nodes, std::string_view color) {
    _setTexts(nodes, "color", color, "Change Colour");
}

bool PresetDocument::setPermissions(std::span<const ItemID> nodes, std::string_view permissions) {
    if (!permissions.empty() && !modeOfOctalText(permissions)) {
        return false;
    }
    _setTexts(nodes, "permissions", permissions, "Change Permissions");
    return true;
}

void PresetDocument::setContentFilename(std::span<const ItemID> nodes, std::string_view name) {
    _setTexts(nodes, "contentFilename", name, "Change Content File");
}

void PresetDocument::setText(ItemID item, std::string_view key, std::string_view text, bool removesEmpty) {
    const PropertyListValue *before = value(item, key);
    std::string storage;
    const bool isSame = before == nullptr ? text.empty() : ORVHasText(before) && ORVTextView(before, storage) == text;
    if (isSame) {
        return;
    }
    const EditHistory::Step step(_history, "Change");
    const bool removes = removesEmpty && text.empty();
    _setValue(item, key, removes ? std::nullopt : std::optional(propertyListOfText(text)));
}

} // namespace orvane
