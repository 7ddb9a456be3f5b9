#include "PresetDocument.h"

#include "presets/ORVPropertyListReading.h"

#include <algorithm>

// What the document is asked. Positions of siblings are counted when somebody asks for one, as far as that one, and stay right until
// rows before them move: an item view, which asks for every row that it shows, pays for the counting once.

namespace orvane {

PropertyList propertyListOfText(std::string_view text) {
    // An arena of its own would take a page for a word: the text itself takes the arena's place as what is kept alive.
    static const PropertyListArena nothing;
    auto kept = std::make_shared<const std::string>(text);
    const PropertyListValue value = PropertyListValue::viewOfString(*kept);
    return {std::shared_ptr<const PropertyListArena>(std::move(kept), &nothing), value};
}

PresetDocument::PresetDocument(EditHistory &history) : _history(history) {
    (void)_newItem(Kind::List, NoItem);
}

PresetDocument::~PresetDocument() {
    _history.clear();
}

std::uint64_t PresetDocument::revisionOfPreset(ItemID preset) const {
    const auto state = _presets.find(preset);
    return state == _presets.end() ? 0 : state->second.revision;
}

std::size_t PresetDocument::indexOf(ItemID item) const {
    const Item &found = _at(item);
    const Item &parent = _at(found.parent);
    if (found.position >= parent.counted || parent.children[found.position] != item) {
        while (parent.children[parent.counted] != item) {
            _at(parent.children[parent.counted]).position = parent.counted;
            ++parent.counted;
        }
        found.position = parent.counted++;
    }
    return found.position;
}

ItemID PresetDocument::presetOf(ItemID item) const {
    while (item != NoItem && _at(item).kind != Kind::Preset) {
        item = _at(item).parent;
    }
    return item;
}

bool PresetDocument::contains(ItemID item) const {
    if (static_cast<std::size_t>(item) >= _items.size()) {
        return false;
    }
    while (item != PresetList && item != NoItem) {
        item = _at(item).parent;
    }
    return item == PresetList;
}

bool PresetDocument::isWithin(ItemID item, ItemID ancestor) const {
    while (item != NoItem && item != ancestor) {
        item = _at(item).parent;
    }
    return item == ancestor;
}

std::vector<std::uint32_t> PresetDocument::placeOf(ItemID item) const {
    std::vector<std::uint32_t> place;
    for (; _at(item).kind == Kind::Node; item = _at(item).parent) {
        place.push_back(static_cast<std::uint32_t>(indexOf(item)));
    }
    std::reverse(place.begin(), place.end());
    return place;
}

ItemID PresetDocument::itemAtPlace(ItemID preset, std::span<const std::uint32_t> place) const {
    ItemID item = treeOf(preset);
    for (const std::uint32_t index : place) {
        if (index >= numberOfChildren(item)) {
            return NoItem;
        }
        item = childAt(item, index);
    }
    return item;
}

void PresetDocument::forEachBelow(ItemID top, const std::function<bool(ItemID item)> &visit) const {
    struct Place {
        ItemID parent;
        std::size_t next;
    };
    std::vector<Place> open{{top, 0}};
    while (!open.empty()) {
        Place &place = open.back();
        if (place.next == numberOfChildren(place.parent)) {
            open.pop_back();
            continue;
        }
        const ItemID item = childAt(place.parent, place.next++);
        if (visit(item) && numberOfChildren(item) > 0) {
            open.push_back({item, 0});
        }
    }
}

const PropertyListValue *PresetDocument::value(ItemID item, std::string_view key) const {
    for (const Attribute &attribute : _at(item).attributes) {
        if (attribute.key == key) {
            return &attribute.value.root();
        }
    }
    return nullptr;
}

std::string PresetDocument::text(ItemID item, std::string_view key) const {
    return ORVTextValue(value(item, key));
}

std::string PresetDocument::title(ItemID preset) const {
    std::string label = this->label(preset);
    return label.empty() ? text(preset, "directoryName") : label;
}

bool PresetDocument::isFolder(ItemID item) const {
    return _at(item).kind != Kind::Node || ORVBoolValue(value(item, "isFolder"));
}

bool PresetDocument::canInsert(ItemID parent) const {
    const Item &item = _at(parent);
    return !item.opaque && (item.kind == Kind::Tree || (item.kind == Kind::Node && isFolder(parent)));
}

bool PresetDocument::canMove(std::span<const ItemID> nodes, ItemID parent) const {
    return canInsert(parent) &&
           std::none_of(nodes.begin(), nodes.end(), [&](ItemID node) { return !isNode(node) || isWithin(parent, node); });
}

std::vector<std::uint32_t> PresetDocument::_pathOf(ItemID item) const {
    std::vector<std::uint32_t> path;
    for (; item != PresetList && item != NoItem; item = _at(item).parent) {
        path.push_back(static_cast<std::uint32_t>(indexOf(item)));
    }
    std::reverse(path.begin(), path.end());
    return path;
}

std::vector<ItemID> PresetDocument::outermost(std::span<const ItemID> items) const {
    std::unordered_map<ItemID, std::vector<std::uint32_t>> paths;
    for (const ItemID item : items) {
        paths.try_emplace(item);
    }
    for (auto path = paths.begin(); path != paths.end();) {
        ItemID above = _at(path->first).parent;
        while (above != NoItem && !paths.contains(above)) {
            above = _at(above).parent;
        }
        // One inside of another stays in the table until all have been looked at: what is inside of it must find it, or that other.
        if (above == NoItem) {
            path->second = _pathOf(path->first);
        }
        ++path;
    }
    std::erase_if(paths, [](const auto &path) { return path.second.empty(); });
    std::vector<ItemID> result;
    result.reserve(paths.size());
    for (const auto &path : paths) {
        result.push_back(path.first);
    }
    std::sort(result.begin(), result.end(), [&](ItemID left, ItemID right) { return paths.at(left) < paths.at(right); });
    return result;
}

std::string PresetDocument::freeLabel(std::string_view label) const {
    std::vector<std::string> labels;
    for (std::size_t index = 0; index < numberOfPresets(); ++index) {
        labels.push_back(this->label(presetAt(index)));
    }
    std::string result(label);
    for (std::size_t number = 2; std::find(labels.begin(), labels.end(), result) != labels.end(); ++number) {
        result = std::string(label) + " " + std::to_string(number);
    }
    return result;
}

} // namespace orvane
