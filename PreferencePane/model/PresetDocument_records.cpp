#include "PresetDocument.h"

// Records into items and items into records. Both ways go through the tree with a stack of their own, so that no depth of nesting
// is too deep.
//
// An item keeps every entry of its dictionary. The entry that holds its children (`children`, and `fileHierarchy` of a preset) stays
// among them with an empty container as its value, to keep its place; where its value is of another type, that one stays, and is
// written until there are children to be written.

namespace orvane {

namespace {

constexpr std::string_view ChildrenKey = "children";
constexpr std::string_view TreeKey = "fileHierarchy";

/// A binary property list can name one array as the contents of many folders, and so hold more items in a kilobyte than fit into
/// memory. A preset beyond this size (the checker's limit) is kept as it is and not taken apart.
constexpr std::size_t MostItems = 2'000'000;

const PropertyListValue EmptyArray = PropertyListValue::viewOfArray({});
const PropertyListValue EmptyDictionary = PropertyListValue::viewOfDictionary({});

std::span<const PropertyListValue> childrenOf(const PropertyListValue &value) {
    const PropertyListValue *children = value.find(ChildrenKey);
    return children != nullptr && children->isArray() ? children->array() : std::span<const PropertyListValue>();
}

bool hasSoundSize(const PropertyListValue &tree) {
    std::vector<std::span<const PropertyListValue>> open{childrenOf(tree)};
    std::size_t items = 0;
    while (!open.empty()) {
        if (open.back().empty()) {
            open.pop_back();
            continue;
        }
        const auto children = childrenOf(open.back().front());
        open.back() = open.back().subspan(1);
        if (++items > MostItems) {
            return false;
        }
        open.push_back(children);
    }
    return true;
}

} // namespace

/// A property list in the making that borrows from what the items hold.
struct PresetDocument::Written {
    PropertyListBuilder builder;
    const PropertyListArena *last = nullptr; ///< neighbours mostly come from one document, which is kept once then

    PropertyListValue add(const PropertyList &list) {
        if (list.root().isString()) {
            return builder.string(list.root().string());
        }
        if (list.arena() != nullptr && list.arena().get() != last) {
            last = list.arena().get();
            return builder.adopt(list);
        }
        return list.root();
    }
};

ItemID PresetDocument::_newItem(Kind kind, ItemID parent) {
    Item &item = _items.emplace_back();
    item.kind = kind;
    item.parent = parent;
    return static_cast<ItemID>(_items.size() - 1);
}

/// Takes the entries over and returns the children's values.
std::span<const PropertyListValue> PresetDocument::_takeAttributes(ItemID item, const PropertyList &document,
                                                                   const PropertyListValue &value) {
    Item &made = _at(item);
    if (!value.isDictionary()) {
        made.opaque = true;
        made.whole = document.at(value);
        return {};
    }
    made.attributes.reserve(value.dictionary().size());
    for (const PropertyListEntry &entry : value.dictionary()) {
        PropertyListValue kept = entry.value;
        if (made.kind == Kind::Preset ? entry.key == TreeKey && kept.isDictionary() : entry.key == ChildrenKey && kept.isArray()) {
            kept = made.kind == Kind::Preset ? EmptyDictionary : EmptyArray;
        }
        made.attributes.push_back({std::string(entry.key), document.at(kept)});
    }
    return made.kind == Kind::Preset ? std::span<const PropertyListValue>() : childrenOf(value);
}

void PresetDocument::_fill(ItemID top, const PropertyList &document, const PropertyListValue &value) {
    struct Place {
        ItemID item;
        std::span<const PropertyListValue> left;
    };
    std::vector<Place> open{{top, _takeAttributes(top, document, value)}};
    _at(top).children.reserve(open.back().left.size());
    while (!open.empty()) {
        Place &place = open.back();
        if (place.left.empty()) {
            open.pop_back();
            continue;
        }
        const PropertyListValue &child = place.left.front();
        place.left = place.left.subspan(1);
        const ItemID made = _newItem(Kind::Node, place.item);
        _at(place.item).children.push_back(made);
        const auto children = _takeAttributes(made, document, child);
        if (!children.empty()) {
            _at(made).children.reserve(children.size());
            open.push_back({made, children});
        }
    }
}

ItemID PresetDocument::_makeTree(ItemID preset, const PropertyList &document, const PropertyListValue *tree) {
    const ItemID made = _newItem(Kind::Tree, preset);
    _at(preset).children.push_back(made);
    if (tree != nullptr && tree->isDictionary()) {
        _fill(made, document, *tree);
    }
    return made;
}

ItemID PresetDocument::_makePreset(const PropertyList &record) {
    const ItemID preset = _newItem(Kind::Preset, NoItem);
    const PropertyListValue *tree = record.root().find(TreeKey);
    if (record.root().isDictionary() && (tree == nullptr || hasSoundSize(*tree))) {
        (void)_takeAttributes(preset, record, record.root());
        (void)_makeTree(preset, record, tree);
    } else {
        _at(preset).opaque = true;
        _at(preset).whole = record;
        _at(_makeTree(preset, record, nullptr)).opaque = true;
    }
    _presets[preset].record = record;
    return preset;
}

ItemID PresetDocument::_makeNode(const PropertyList &node) {
    const ItemID made = _newItem(Kind::Node, NoItem);
    _fill(made, node, node.root());
    return made;
}

std::vector<ItemID> PresetDocument::_makeNodes(const PropertyList &document, const PropertyListValue &parent) {
    std::vector<ItemID> made;
    if (!hasSoundSize(parent)) {
        return made;
    }
    for (const PropertyListValue &node : childrenOf(parent)) {
        made.push_back(_makeNode(document.at(node)));
    }
    return made;
}

ItemID PresetDocument::_copy(ItemID item) {
    struct Place {
        ItemID original;
        ItemID copy;
        std::size_t next = 0;
    };
    const auto copyOne = [this](ItemID original, ItemID parent) {
        const ItemID copy = _newItem(_at(original).kind, parent);
        _at(copy).opaque = _at(original).opaque;
        _at(copy).attributes = _at(original).attributes;
        _at(copy).whole = _at(original).whole;
        if (parent != NoItem) {
            _at(parent).children.push_back(copy);
        }
        if (_at(copy).kind == Kind::Preset) {
            _presets[copy].record = record(original);
        }
        return copy;
    };
    const ItemID top = copyOne(item, NoItem);
    std::vector<Place> open{{item, top}};
    while (!open.empty()) {
        Place &place = open.back();
        if (place.next == numberOfChildren(place.original)) {
            open.pop_back();
            continue;
        }
        const ItemID child = childAt(place.original, place.next++);
        const ItemID copy = copyOne(child, place.copy);
        open.push_back({child, copy});
    }
    return top;
}

void PresetDocument::load(const PropertyList &presets) {
    const auto tell = [this](void (PresetDocumentObserver::*what)()) {
        const std::vector<PresetDocumentObserver *> observers = _observers;
        for (PresetDocumentObserver *observer : observers) {
            (observer->*what)();
        }
    };
    _history.clear();
    tell(&PresetDocumentObserver::documentWillBeReplaced);
    _items.clear();
    _presets.clear();
    const ItemID list = _newItem(Kind::List, NoItem);
    const auto records = presets.root().isArray() ? presets.root().array() : std::span<const PropertyListValue>();
    for (const PropertyListValue &record : records) {
        const ItemID preset = _makePreset(presets.at(record));
        _at(preset).parent = list;
        _at(list).children.push_back(preset);
    }
    tell(&PresetDocumentObserver::documentWasReplaced);
}

/// What stands in the place of the children; nothing where nothing does.
std::optional<PropertyListValue> PresetDocument::_writtenChildren(Written &written, const Item &item, const PropertyListValue *before,
                                                                  const std::vector<PropertyListValue> &children) const {
    if (item.kind == Kind::Preset) {
        const Item &tree = _at(item.children.front());
        const bool isThere = (before != nullptr && before->isDictionary()) || !tree.attributes.empty() || !tree.children.empty();
        return isThere ? std::optional(children.front()) : std::nullopt;
    }
    return children.empty() ? std::nullopt : std::optional(written.builder.array(children));
}

PropertyListValue PresetDocument::_writeItem(Written &written, ItemID id, const std::vector<PropertyListValue> &children) const {
    const Item &item = _at(id);
    if (item.opaque) {
        return written.add(item.whole);
    }
    const std::string_view container = item.kind == Kind::Preset ? TreeKey : ChildrenKey;
    const auto inside = _writtenChildren(written, item, value(id, container), children);
    std::vector<PropertyListEntry> entries;
    entries.reserve(item.attributes.size() + 2);
    bool isPlaced = false;
    for (const Attribute &attribute : item.attributes) {
        const bool isContainer = attribute.key == container;
        isPlaced = isPlaced || isContainer;
        entries.push_back({attribute.key, isContainer && inside ? *inside : written.add(attribute.value)});
    }
    if (item.kind == Kind::Tree && item.attributes.empty() && value(item.parent, TreeKey) == nullptr) {
        entries.push_back({"isFolder", PropertyListValue::ofBoolean(true)});
    }
    if (inside && !isPlaced) {
        entries.push_back({container, *inside});
    }
    return written.builder.dictionary(entries);
}

PropertyListValue PresetDocument::_write(Written &written, ItemID top) const {
    struct Place {
        ItemID item;
        std::vector<PropertyListValue> done = {};
    };
    std::vector<Place> open{{top}};
    while (true) {
        Place &place = open.back();
        if (place.done.size() < numberOfChildren(place.item)) {
            open.push_back({childAt(place.item, place.done.size())});
            continue;
        }
        const PropertyListValue made = _writeItem(written, place.item, place.done);
        open.pop_back();
        if (open.empty()) {
            return made;
        }
        open.back().done.push_back(made);
    }
}

PropertyList PresetDocument::record(ItemID preset) {
    if (!_presets[preset].record) {
        Written written;
        const PropertyListValue made = _write(written, preset);
        _presets[preset].record = written.builder.finish(made);
    }
    return *_presets[preset].record;
}

PropertyList PresetDocument::propertyList() {
    Written written;
    std::vector<PropertyListValue> records;
    for (std::size_t index = 0; index < numberOfPresets(); ++index) {
        records.push_back(written.add(record(presetAt(index))));
    }
    return written.builder.finish(written.builder.array(records));
}

PropertyList PresetDocument::nodes(std::span<const ItemID> nodes) const {
    Written written;
    std::vector<PropertyListValue> values;
    for (const ItemID node : outermost(nodes)) {
        values.push_back(_write(written, node));
    }
    return written.builder.finish(written.builder.array(values));
}

} // namespace orvane
