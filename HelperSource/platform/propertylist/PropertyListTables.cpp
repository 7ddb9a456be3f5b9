#include "platform/propertylist/PropertyListTables.h"

#include <cstring>
#include <new>

namespace orvane::propertylist {

namespace {

/// Longer texts rarely repeat.
constexpr std::size_t ShortText = 24;
/// An odd number without pattern: 2^64 divided by the golden ratio.
constexpr std::uint64_t Mixer = 0x9E3779B97F4A7C15U;

std::uint64_t loadUpTo8(const char *bytes, std::size_t size) noexcept {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < size; ++i) {
        word = (word << 8U) | static_cast<unsigned char>(bytes[i]);
    }
    return word;
}

std::uint64_t load8(const char *bytes) noexcept {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

} // namespace

std::uint64_t hashOf(std::string_view text) noexcept {
    std::uint64_t hash = text.size() * Mixer;
    const char *bytes = text.data();
    std::size_t left = text.size();
    while (left >= 8) {
        hash = (hash ^ load8(bytes)) * Mixer;
        hash ^= hash >> 32U;
        bytes += 8;
        left -= 8;
    }
    if (left > 0) {
        hash = (hash ^ loadUpTo8(bytes, left)) * Mixer;
    }
    return hash ^ (hash >> 29U);
}

Key *KeyTable::intern(std::string_view text) {
    const std::uint64_t hash = hashOf(text);
    std::size_t slot = hash & (_slots.size() - 1);
    while (Key *key = _slots[slot]) {
        if (key->hash == hash && key->text == text) {
            return key;
        }
        slot = (slot + 1) & (_slots.size() - 1);
    }
    Key &key = _keys.emplace_back();
    key.text = _arena.copyText(text);
    key.hash = hash;
    _slots[slot] = &key;
    if (_keys.size() * 2 > _slots.size()) {
        _grow();
    }
    return &key;
}

void KeyTable::_grow() {
    _slots.assign(_slots.size() * 2, nullptr);
    for (Key &key : _keys) {
        std::size_t slot = key.hash & (_slots.size() - 1);
        while (_slots[slot] != nullptr) {
            slot = (slot + 1) & (_slots.size() - 1);
        }
        _slots[slot] = &key;
    }
}

std::string_view TextStore::store(std::string_view text) {
    if (text.size() > ShortText) {
        return _arena.copyText(text);
    }
    std::string_view &recent = _recent[hashOf(text) % _recent.size()];
    if (recent != text) {
        recent = _arena.copyText(text);
    }
    return recent;
}

PropertyListValue ContainerMaker::dictionary(const PendingValue *first, std::size_t count) {
    if (count == 0) {
        return PropertyListValue::viewOfDictionary({});
    }
    auto *entries = static_cast<PropertyListEntry *>(_arena.allocate(count * sizeof(PropertyListEntry)));
    std::size_t distinct = 0;
    ++_stamp;
    for (std::size_t i = 0; i < count; ++i) {
        Key &key = *first[i].key;
        if (key.stamp == _stamp) {
            entries[key.position].value = first[i].value;
            continue;
        }
        key.stamp = _stamp;
        key.position = distinct;
        ::new (static_cast<void *>(entries + distinct)) PropertyListEntry{key.text, first[i].value};
        ++distinct;
    }
    return PropertyListValue::viewOfDictionary({entries, distinct});
}

PropertyListValue ContainerMaker::array(const PendingValue *first, std::size_t count) {
    if (count == 0) {
        return PropertyListValue::viewOfArray({});
    }
    auto *items = static_cast<PropertyListValue *>(_arena.allocate(count * sizeof(PropertyListValue)));
    for (std::size_t i = 0; i < count; ++i) {
        ::new (static_cast<void *>(items + i)) PropertyListValue(first[i].value);
    }
    return PropertyListValue::viewOfArray({items, count});
}

} // namespace orvane::propertylist
