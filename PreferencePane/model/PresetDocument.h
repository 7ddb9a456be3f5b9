#pragma once

#include "EditHistory.h"

#include "ports/PropertyList.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvane {

/// An item of the document: never given to another item, and the same again after an item was deleted and brought back.
enum class ItemID : std::uint32_t {};
/// The list of presets itself, parent of all of them.
inline constexpr ItemID PresetList{0};
/// No item; also the parent of `PresetList`.
inline constexpr ItemID NoItem{0xFFFFFFFF};

/// Told of every single change, before and after the rows move, in the order that item views want. Between the two calls
/// nothing may be asked of the document.
class PresetDocumentObserver {
public:
    virtual ~PresetDocumentObserver() = default;
    /// Everything is about to become another; ids from before mean nothing afterwards.
    virtual void documentWillBeReplaced() {}
    virtual void documentWasReplaced() {}
    virtual void itemsWillBeInserted(ItemID parent, std::size_t first, std::size_t count) = 0;
    virtual void itemsWereInserted(ItemID parent, std::size_t first, std::size_t count) = 0;
    virtual void itemsWillBeRemoved(ItemID parent, std::size_t first, std::size_t count) = 0;
    virtual void itemsWereRemoved(ItemID parent, std::size_t first, std::size_t count) = 0;
    /// `to` is the row before which the item comes to stand, counted while it is still at its old place.
    virtual void itemWillMove(ItemID oldParent, std::size_t from, ItemID newParent, std::size_t to) = 0;
    virtual void itemDidMove(ItemID oldParent, std::size_t from, ItemID newParent, std::size_t to) = 0;
    /// The value under one key of the item's dictionary is another.
    virtual void itemDidChange(ItemID item, std::string_view key) = 0;
};

/// All presets as an editable document.
///
/// The items form a tree: `PresetList`, below it the presets, below each preset exactly one item for its `fileHierarchy` (whether
/// there is one in the record or not), below that the folders and files. Every item keeps the whole dictionary that it came from,
/// unknown keys, types and the order of keys included; only what is edited changes. Presets and nodes that are no dictionaries are
/// kept as they are, too: they can be moved and deleted, not edited.
///
/// Every edit is a step (or part of one) in the history, and costs time in proportion to what it touches and to the depth of the
/// tree, not to the document's size. Texts are UTF-8. Main thread only.
class PresetDocument {
public:
    /// Borrows the history, which must live longer.
    explicit PresetDocument(EditHistory &history);
    PresetDocument(const PresetDocument &) = delete;
    PresetDocument &operator=(const PresetDocument &) = delete;
    ~PresetDocument();

    // The whole ---------------------------------------------------------------------------------------------------

    /// Takes over an array of presets (anything else counts as empty) and forgets everything before it, the history included.
    void load(const PropertyList &presets);
    /// All presets as an array, presets that were not edited sharing what was loaded.
    [[nodiscard]] PropertyList propertyList();
    /// One preset's record. Made anew only when the preset has changed since.
    [[nodiscard]] PropertyList record(ItemID preset);
    /// Grows whenever something in the preset, or whose child it is, changes.
    [[nodiscard]] std::uint64_t revisionOfPreset(ItemID preset) const;

    // Structure ---------------------------------------------------------------------------------------------------

    [[nodiscard]] std::size_t numberOfPresets() const { return numberOfChildren(PresetList); }
    [[nodiscard]] ItemID presetAt(std::size_t index) const { return childAt(PresetList, index); }
    [[nodiscard]] std::size_t numberOfChildren(ItemID item) const { return _at(item).children.size(); }
    /// `index` must be below `numberOfChildren`.
    [[nodiscard]] ItemID childAt(ItemID item, std::size_t index) const { return _at(item).children[index]; }
    [[nodiscard]] ItemID parentOf(ItemID item) const { return _at(item).parent; }
    /// The item's place among its parent's children.
    [[nodiscard]] std::size_t indexOf(ItemID item) const;
    /// The preset that an item belongs to; of a preset itself, that one.
    [[nodiscard]] ItemID presetOf(ItemID item) const;
    /// The item that stands for the preset's `fileHierarchy`.
    [[nodiscard]] ItemID treeOf(ItemID preset) const { return _at(preset).children.front(); }
    [[nodiscard]] bool isPreset(ItemID item) const { return _at(item).kind == Kind::Preset; }
    [[nodiscard]] bool isTree(ItemID item) const { return _at(item).kind == Kind::Tree; }
    [[nodiscard]] bool isNode(ItemID item) const { return _at(item).kind == Kind::Node; }
    /// Whether the item is there, and not deleted.
    [[nodiscard]] bool contains(ItemID item) const;
    /// Whether the item is a dictionary, which can be edited.
    [[nodiscard]] bool isEditable(ItemID item) const { return !_at(item).opaque; }
    /// Whether `ancestor` is the item itself or somewhere above it.
    [[nodiscard]] bool isWithin(ItemID item, ItemID ancestor) const;
    /// The item's places from the preset's tree downwards, as `ORVProblemPlace::children` has them; empty for preset and tree.
    [[nodiscard]] std::vector<std::uint32_t> placeOf(ItemID item) const;
    /// The inverse; `NoItem` where nothing is there.
    [[nodiscard]] ItemID itemAtPlace(ItemID preset, std::span<const std::uint32_t> place) const;
    /// Calls for each item below `top`, parents first, in the order of the tree; what is inside of an item is left out where the
    /// visitor says false. The visitor must not change anything.
    void forEachBelow(ItemID top, const std::function<bool(ItemID item)> &visit) const;

    // Values ------------------------------------------------------------------------------------------------------

    /// The value under a key; null when absent. Valid until the next change.
    [[nodiscard]] const PropertyListValue *value(ItemID item, std::string_view key) const;
    /// The text under a key as the engine reads it; "" when absent or no text.
    [[nodiscard]] std::string text(ItemID item, std::string_view key) const;
    [[nodiscard]] std::string label(ItemID preset) const { return text(preset, "label"); }
    /// What the preset goes by everywhere: its label, or without one the template of its top folder's name. May be empty.
    [[nodiscard]] std::string title(ItemID preset) const;
    [[nodiscard]] std::string filename(ItemID node) const { return text(node, "filename"); }
    /// A tree and a list always are folders.
    [[nodiscard]] bool isFolder(ItemID item) const;
    /// How many times operations have looked at an item since the document was made: edits are kept cheap with it.
    [[nodiscard]] std::size_t itemsVisited() const { return _visits; }

    // Edits of presets --------------------------------------------------------------------------------------------

    /// A preset with a label that no other has ("New Preset", "New Preset 2"), a folder name template, and nothing in it, put
    /// before the preset at `index` (beyond the end: last).
    ItemID addPreset(std::size_t index, std::string_view label, std::string_view directoryName);
    /// A whole preset from elsewhere. `name` is the step's.
    ItemID insertPreset(const PropertyList &record, std::size_t index, const char *name);
    /// Copies, each behind its original, under labels that no other preset has. Returns them in order.
    std::vector<ItemID> duplicatePresets(std::span<const ItemID> presets);
    /// "" takes the label away: an empty one would be an empty item in menus.
    void renamePreset(ItemID preset, std::string_view label);
    void removePresets(std::span<const ItemID> presets);
    /// Moves presets together before the one at `index` (beyond the end: last), in their order.
    void movePresets(std::span<const ItemID> presets, std::size_t index);
    /// Template of the top-level folder's name. Typing in a row is one step.
    void setDirectoryName(ItemID preset, std::string_view text);
    /// Name of the script in the scripts folder; "" for none.
    void setScript(ItemID preset, std::string_view name);
    /// Gives the preset another record and keeps its id, and its tree's. False, and nothing changed, where one of both records is no
    /// dictionary.
    bool replacePreset(ItemID preset, const PropertyList &record, const char *name);

    // Edits of nodes ----------------------------------------------------------------------------------------------
    // Lists of items may hold items together with items inside them: these go with them. `parent` is a tree or a folder that can be
    // edited (see `canInsert`), else nothing happens. What cannot be edited is left out.

    [[nodiscard]] bool canInsert(ItemID parent) const;
    /// A folder or file before the child at `index` (beyond the end: last), under that name, or "NAME 2" and so on.
    ItemID addNode(ItemID parent, std::size_t index, std::string_view filename, bool isFolder);
    /// Nodes from elsewhere: an array of dictionaries. Those whose name is taken in the folder get a numbered one.
    std::vector<ItemID> insertNodes(const PropertyList &nodes, ItemID parent, std::size_t index, const char *name);
    /// Copies, each behind its original, under numbered names.
    std::vector<ItemID> duplicateNodes(std::span<const ItemID> nodes);
    void removeNodes(std::span<const ItemID> nodes, const char *name = "Delete Items");
    /// Whether `moveNodes` would do it: not into one of them or below.
    [[nodiscard]] bool canMove(std::span<const ItemID> nodes, ItemID parent) const;
    /// Moves nodes, from whatever folders and presets, together before the child at `index`, in their order in the document.
    void moveNodes(std::span<const ItemID> nodes, ItemID parent, std::size_t index);
    /// Typing in a row is one step.
    void renameNode(ItemID node, std::string_view filename);
    /// What is in a folder stays in the record when it becomes a file.
    void setFolder(std::span<const ItemID> nodes, bool isFolder);
    /// One of the label colours; "" for none.
    void setColor(std::span<const ItemID> nodes, std::string_view color);
    /// Exactly three octal digits, or "" for none. False, and nothing changed, for any other text.
    bool setPermissions(std::span<const ItemID> nodes, std::string_view permissions);
    /// Name of a file in the content folder; "" for none.
    void setContentFilename(std::span<const ItemID> nodes, std::string_view name);
    /// Any text under any key; an empty one takes the key away where `removesEmpty`. A value that already reads so keeps its type.
    void setText(ItemID item, std::string_view key, std::string_view text, bool removesEmpty);

    /// Nodes without those that are inside of others, in the order of the document.
    [[nodiscard]] std::vector<ItemID> outermost(std::span<const ItemID> items) const;
    /// The nodes' dictionaries as an array, for the clipboard.
    [[nodiscard]] PropertyList nodes(std::span<const ItemID> nodes) const;
    /// `label` or, when a preset has it, the first of "LABEL 2", "LABEL 3" … that none has.
    [[nodiscard]] std::string freeLabel(std::string_view label) const;

    [[nodiscard]] EditHistory &history() const { return _history; }
    /// Borrowed; must be removed before it is destroyed.
    void addObserver(PresetDocumentObserver &observer) { _observers.push_back(&observer); }
    void removeObserver(PresetDocumentObserver &observer) { std::erase(_observers, &observer); }

private:
    enum class Kind : std::uint8_t { List, Preset, Tree, Node };
    struct Attribute {
        std::string key;
        PropertyList value;
    };
    struct Item {
        ItemID parent = NoItem;
        Kind kind = Kind::Node;
        bool opaque = false;                ///< no dictionary: `whole` is its value
        mutable std::uint32_t counted = 0;  ///< so many children, from the first on, have their right position
        mutable std::uint32_t position = 0; ///< among the parent's children, when counted
        std::vector<ItemID> children;
        std::vector<Attribute> attributes; ///< of the dictionary in its order; a container of children stands for its place only
        PropertyList whole;
    };
    /// What is kept for presets alone.
    struct PresetState {
        std::uint64_t revision = 1;
        std::optional<PropertyList> record; ///< as it is now, unless it has to be made
    };
    class InsertChange;
    class RemoveChange;
    class MoveChange;
    class ValueChange;
    struct Written;

    [[nodiscard]] const Item &_at(ItemID item) const {
        ++_visits;
        return _items[static_cast<std::size_t>(item)];
    }
    [[nodiscard]] Item &_at(ItemID item) {
        ++_visits;
        return _items[static_cast<std::size_t>(item)];
    }

    // Making items out of records, and the other way round (PresetDocument_records.cpp).
    [[nodiscard]] ItemID _newItem(Kind kind, ItemID parent);
    [[nodiscard]] ItemID _makePreset(const PropertyList &record);
    [[nodiscard]] ItemID _makeNode(const PropertyList &node);
    [[nodiscard]] ItemID _makeTree(ItemID preset, const PropertyList &document, const PropertyListValue *tree);
    [[nodiscard]] std::vector<ItemID> _makeNodes(const PropertyList &document, const PropertyListValue &parent);
    void _fill(ItemID top, const PropertyList &document, const PropertyListValue &value);
    std::span<const PropertyListValue> _takeAttributes(ItemID item, const PropertyList &document, const PropertyListValue &value);
    [[nodiscard]] ItemID _copy(ItemID item);
    [[nodiscard]] PropertyListValue _write(Written &written, ItemID top) const;
    [[nodiscard]] PropertyListValue _writeItem(Written &written, ItemID id, const std::vector<PropertyListValue> &children) const;
    [[nodiscard]] std::optional<PropertyListValue> _writtenChildren(Written &written, const Item &item, const PropertyListValue *before,
                                                                    const std::vector<PropertyListValue> &children) const;

    // The only ways in which the document changes; used by the history's changes (PresetDocument_changes.cpp).
    void _attach(ItemID parent, std::size_t index, std::span<const ItemID> items);
    void _detach(ItemID parent, std::size_t index, std::size_t count);
    void _moveItem(ItemID id, ItemID newParent, std::size_t index);
    void _setAttribute(ItemID item, std::size_t position, std::string_view key, const std::optional<PropertyList> &value);
    void _release(std::span<const ItemID> items);
    void _touch(ItemID item);

    void _insert(ItemID parent, std::size_t index, std::vector<ItemID> items);
    void _remove(ItemID parent, std::size_t index, std::size_t count);
    void _removeAll(const std::vector<ItemID> &items);
    void _move(std::vector<ItemID> items, ItemID parent, std::size_t index);
    void _setValue(ItemID item, std::string_view key, const std::optional<PropertyList> &value);
    void _setTexts(std::span<const ItemID> nodes, std::string_view key, std::string_view text, const char *name);
    void _putText(ItemID item, std::string_view key, std::string_view text);
    void _takeOver(ItemID item, const std::vector<Attribute> &attributes);
    [[nodiscard]] std::vector<std::uint32_t> _pathOf(ItemID item) const;
    [[nodiscard]] std::size_t _positionOfKey(ItemID item, std::string_view key) const;

    EditHistory &_history;
    std::vector<Item> _items;
    std::unordered_map<ItemID, PresetState> _presets;
    std::vector<PresetDocumentObserver *> _observers;
    mutable std::size_t _visits = 0;
};

/// A text as a property list of its own.
[[nodiscard]] PropertyList propertyListOfText(std::string_view text);

} // namespace orvane
