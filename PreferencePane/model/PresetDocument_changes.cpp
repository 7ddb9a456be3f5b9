#include "PresetDocument.h"

#include <algorithm>
#include <utility>

// The four changes that every edit is made of: items come, go, move, and get another value. Items that went stay in memory as long
// as the history can bring them back.

namespace orvane {

namespace {

template <typename Tell> void tellAll(const std::vector<PresetDocumentObserver *> &observers, const Tell &tell) {
    // They may come and go while they are told.
    const std::vector<PresetDocumentObserver *> now = observers; // NOLINT(performance-unnecessary-copy-initialization)
    for (PresetDocumentObserver *observer : now) {
        tell(*observer);
    }
}

} // namespace

class PresetDocument::InsertChange final : public EditChange {
public:
    InsertChange(PresetDocument &document, ItemID parent, std::size_t index, std::vector<ItemID> items)
        : _document(document), _parent(parent), _index(index), _items(std::move(items)) {}
    ~InsertChange() override {
        if (!_isThere) {
            _document._release(_items);
        }
    }
    void redo() override {
        _document._attach(_parent, _index, _items);
        _isThere = true;
    }
    void undo() override {
        _document._detach(_parent, _index, _items.size());
        _isThere = false;
    }

private:
    PresetDocument &_document;
    ItemID _parent;
    std::size_t _index;
    std::vector<ItemID> _items;
    bool _isThere = false;
};

class PresetDocument::RemoveChange final : public EditChange {
public:
    RemoveChange(PresetDocument &document, ItemID parent, std::size_t index, std::vector<ItemID> items)
        : _document(document), _parent(parent), _index(index), _items(std::move(items)) {}
    ~RemoveChange() override {
        if (!_isThere) {
            _document._release(_items);
        }
    }
    void redo() override {
        _document._detach(_parent, _index, _items.size());
        _isThere = false;
    }
    void undo() override {
        _document._attach(_parent, _index, _items);
        _isThere = true;
    }

private:
    PresetDocument &_document;
    ItemID _parent;
    std::size_t _index;
    std::vector<ItemID> _items;
    bool _isThere = true;
};

class PresetDocument::MoveChange final : public EditChange {
public:
    MoveChange(PresetDocument &document, ItemID item, ItemID newParent, std::size_t index)
        : _document(document), _item(item), _oldParent(document.parentOf(item)), _newParent(newParent), _oldIndex(document.indexOf(item)),
          _newIndex(index) {}
    void redo() override { _document._moveItem(_item, _newParent, _newIndex); }
    void undo() override { _document._moveItem(_item, _oldParent, _oldIndex); }

private:
    PresetDocument &_document;
    ItemID _item;
    ItemID _oldParent;
    ItemID _newParent;
    std::size_t _oldIndex;
    std::size_t _newIndex;
};

class PresetDocument::ValueChange final : public EditChange {
public:
    ValueChange(PresetDocument &document, ItemID item, std::string_view key, std::optional<PropertyList> value)
        : _document(document), _item(item), _key(key), _position(document._positionOfKey(item, key)), _after(std::move(value)) {
        const auto &attributes = document._at(item).attributes;
        if (_position < attributes.size()) {
            _before = attributes[_position].value;
        }
    }
    void redo() override { _document._setAttribute(_item, _position, _key, _after); }
    void undo() override { _document._setAttribute(_item, _position, _key, _before); }
    bool absorb(EditChange &later) override {
        auto *other = dynamic_cast<ValueChange *>(&later);
        if (other == nullptr || other->_item != _item || other->_key != _key || other->_position != _position) {
            return false;
        }
        _after = std::move(other->_after);
        return true;
    }

private:
    PresetDocument &_document;
    ItemID _item;
    std::string _key;
    std::size_t _position;
    std::optional<PropertyList> _before;
    std::optional<PropertyList> _after;
};

void PresetDocument::_touch(ItemID item) {
    const auto state = _presets.find(presetOf(item));
    if (state != _presets.end()) {
        ++state->second.revision;
        state->second.record.reset();
    }
}

void PresetDocument::_attach(ItemID parent, std::size_t index, std::span<const ItemID> items) {
    tellAll(_observers, [&](PresetDocumentObserver &each) { each.itemsWillBeInserted(parent, index, items.size()); });
    Item &folder = _at(parent);
    folder.children.insert(folder.children.begin() + static_cast<std::ptrdiff_t>(index), items.begin(), items.end());
    for (std::size_t i = 0; i < items.size(); ++i) {
        Item &item = _at(items[i]);
        item.parent = parent;
        item.position = static_cast<std::uint32_t>(index + i);
    }
    if (index <= folder.counted) {
        folder.counted = static_cast<std::uint32_t>(index + items.size());
    }
    _touch(parent);
    tellAll(_observers, [&](PresetDocumentObserver &each) { each.itemsWereInserted(parent, index, items.size()); });
}

void PresetDocument::_detach(ItemID parent, std::size_t index, std::size_t count) {
    tellAll(_observers, [&](PresetDocumentObserver &each) { each.itemsWillBeRemoved(parent, index, count); });
    Item &folder = _at(parent);
    const auto first = folder.children.begin() + static_cast<std::ptrdiff_t>(index);
    const auto last = first + static_cast<std::ptrdiff_t>(count);
    std::for_each(first, last, [this](ItemID item) { _at(item).parent = NoItem; });
    folder.counted = std::min(folder.counted, static_cast<std::uint32_t>(index));
    folder.children.erase(first, last);
    _touch(parent);
    tellAll(_observers, [&](PresetDocumentObserver &each) { each.itemsWereRemoved(parent, index, count); });
}

void PresetDocument::_moveItem(ItemID id, ItemID newParent, std::size_t index) {
    const ItemID oldParent = parentOf(id);
    const std::size_t from = indexOf(id);
    const std::size_t to = oldParent == newParent && index > from ? index + 1 : index;
    tellAll(_observers, [&](PresetDocumentObserver &each) { each.itemWillMove(oldParent, from, newParent, to); });
    Item &old = _at(oldParent);
    Item &folder = _at(newParent);
    if (oldParent == newParent) {
        const auto begin = folder.children.begin();
        const auto at = [begin](std::size_t place) { return begin + static_cast<std::ptrdiff_t>(place); };
        if (from < index) {
            std::rotate(at(from), at(from + 1), at(index + 1));
        } else {
            std::rotate(at(index), at(from), at(from + 1));
        }
        for (std::size_t place = std::min(from, index); place <= std::max(from, index); ++place) {
            _at(folder.children[place]).position = static_cast<std::uint32_t>(place);
        }
        folder.counted = std::max(folder.counted, static_cast<std::uint32_t>(std::max(from, index) + 1));
    } else {
        old.counted = std::min(old.counted, static_cast<std::uint32_t>(from));
        old.children.erase(old.children.begin() + static_cast<std::ptrdiff_t>(from));
        folder.children.insert(folder.children.begin() + static_cast<std::ptrdiff_t>(index), id);
        _at(id).parent = newParent;
        _at(id).position = static_cast<std::uint32_t>(index);
        if (index <= folder.counted) {
            folder.counted = static_cast<std::uint32_t>(index + 1);
        }
        _touch(oldParent);
    }
    _touch(newParent);
    tellAll(_observers, [&](PresetDocumentObserver &each) { each.itemDidMove(oldParent, from, newParent, to); });
}

void PresetDocument::_setAttribute(ItemID item, std::size_t position, std::string_view key, const std::optional<PropertyList> &value) {
    auto &attributes = _at(item).attributes;
    const auto place = attributes.begin() + static_cast<std::ptrdiff_t>(position);
    const bool isThere = position < attributes.size() && place->key == key;
    if (isThere && value) {
        place->value = *value;
    } else if (isThere) {
        attributes.erase(place);
    } else if (value) {
        attributes.insert(place, {std::string(key), *value});
    }
    _touch(item);
    tellAll(_observers, [&](PresetDocumentObserver &each) { each.itemDidChange(item, key); });
}

/// Lets go of what detached items hold. Their ids are never used again.
void PresetDocument::_release(std::span<const ItemID> items) {
    std::vector<ItemID> open(items.begin(), items.end());
    while (!open.empty()) {
        const ItemID id = open.back();
        open.pop_back();
        Item &item = _at(id);
        open.insert(open.end(), item.children.begin(), item.children.end());
        item.children = {};
        item.attributes = {};
        item.whole = {};
        _presets.erase(id);
    }
}

std::size_t PresetDocument::_positionOfKey(ItemID item, std::string_view key) const {
    const auto &attributes = _at(item).attributes;
    const auto found = std::find_if(attributes.begin(), attributes.end(), [key](const Attribute &each) { return each.key == key; });
    return static_cast<std::size_t>(found - attributes.begin());
}

void PresetDocument::_insert(ItemID parent, std::size_t index, std::vector<ItemID> items) {
    if (!items.empty()) {
        _history.perform(std::make_unique<InsertChange>(*this, parent, std::min(index, numberOfChildren(parent)), std::move(items)));
    }
}

void PresetDocument::_remove(ItemID parent, std::size_t index, std::size_t count) {
    const auto first = _at(parent).children.begin() + static_cast<std::ptrdiff_t>(index);
    std::vector<ItemID> items(first, first + static_cast<std::ptrdiff_t>(count));
    if (!items.empty()) {
        _history.perform(std::make_unique<RemoveChange>(*this, parent, index, std::move(items)));
    }
}

/// Removes items, which must be outermost and in the order of the document, neighbours at once. The last come first, so that
/// the places of the others stay right.
void PresetDocument::_removeAll(const std::vector<ItemID> &items) {
    struct Run {
        ItemID parent;
        std::size_t first;
        std::size_t count;
    };
    std::vector<Run> runs;
    for (const ItemID item : items) {
        const std::size_t index = indexOf(item);
        if (!runs.empty() && runs.back().parent == parentOf(item) && runs.back().first + runs.back().count == index) {
            ++runs.back().count;
        } else {
            runs.push_back({parentOf(item), index, 1});
        }
    }
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        _remove(run->parent, run->first, run->count);
    }
}

/// Moves items, which must be outermost and in the order of the document, together before the child that stands at `index` now.
/// The last comes first, which leaves the places of the others in their folders as they are.
void PresetDocument::_move(std::vector<ItemID> items, ItemID parent, std::size_t index) {
    std::size_t place = std::min(index, numberOfChildren(parent));
    for (auto item = items.rbegin(); item != items.rend(); ++item) {
        const bool isSibling = parentOf(*item) == parent;
        const std::size_t from = isSibling ? indexOf(*item) : 0;
        const std::size_t to = isSibling && from < place ? place - 1 : place;
        if (!isSibling || from != to) {
            _history.perform(std::make_unique<MoveChange>(*this, *item, parent, to));
        }
        place = to;
    }
}

void PresetDocument::_setValue(ItemID item, std::string_view key, const std::optional<PropertyList> &value) {
    const PropertyListValue *before = this->value(item, key);
    const bool isEqual = before == nullptr ? !value : value && before->equals(value->root());
    if (isEditable(item) && !isEqual) {
        _history.perform(std::make_unique<ValueChange>(*this, item, key, value));
    }
}

} // namespace orvane
