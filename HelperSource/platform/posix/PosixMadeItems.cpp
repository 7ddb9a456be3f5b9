#include "platform/posix/PosixMadeItems.h"

#include <algorithm>
#include <functional>
#include <new>

namespace orvane {

PosixMadeItems::PosixMadeItems() {
    _entries.push_back({Root, 0, 0, Folder | Entered});
}

PosixMadeItems::Index PosixMadeItems::add(Index parent, std::string_view name, std::uint8_t flags) {
    if (name.size() > UINT16_MAX || !hasRoomForAnother()) {
        return None;
    }
    const auto item = static_cast<Index>(_entries.size());
    const std::size_t nameStart = _names.size();
    try {
        _names.append(name);
        _entries.push_back({parent, static_cast<std::uint32_t>(nameStart), static_cast<std::uint16_t>(name.size()), flags});
    } catch (const std::bad_alloc &) {
        _names.resize(nameStart);
        return None;
    }
    if (!_table.empty()) {
        _enterInTable(item);
    }
    return item;
}

/// The table can be built anew at any time, so that want of memory costs no more than that.
void PosixMadeItems::_enterInTable(Index item) {
    try {
        if (_entries.size() * 2 > _table.size()) {
            _buildTable(_table.size() * 2);
        } else {
            _enter(item);
        }
    } catch (const std::bad_alloc &) {
        _table.clear();
    }
}

void PosixMadeItems::append(const PosixMadeItems &other, std::span<const Index> known) {
    const auto first = static_cast<Index>(known.size());
    const Index shift = end() - first; // may be "negative", which wraps around and back
    const auto nameShift = static_cast<std::uint32_t>(_names.size());
    _entries.reserve(_entries.size() + other._entries.size());
    _names.reserve(_names.size() + other._names.size());
    _identities.reserve(_identities.size() + other._identities.size());
    for (Index item = first; item < other.end(); ++item) {
        Entry entry = other._entries[item];
        entry.parent = entry.parent < first ? known[entry.parent] : entry.parent + shift;
        entry.nameStart += nameShift;
        _entries.push_back(entry);
    }
    _names.append(other._names);
    for (const Identified &each : other._identities) {
        if (each.item >= first) {
            _identities.push_back({each.item + shift, each.identity});
        }
    }
    _table.clear(); // built anew when something asks again
}

void PosixMadeItems::truncate(Index first) {
    if (first >= end()) {
        return;
    }
    // Newest first, each leaves the table as it was before it came, because nothing younger was placed behind it.
    for (Index item = end(); !_table.empty() && item-- > first;) {
        _table[_slotOf(item)] = None;
    }
    _names.resize(_entries[first].nameStart);
    _entries.resize(first);
    while (!_identities.empty() && _identities.back().item >= first) {
        _identities.pop_back();
    }
}

std::string_view PosixMadeItems::name(Index item) const {
    const Entry &entry = _entries[item];
    return std::string_view(_names).substr(entry.nameStart, entry.nameLength);
}

PosixMadeItems::Index PosixMadeItems::find(Index parent, std::string_view name) {
    if (_table.empty()) {
        std::size_t slots = 64;
        while (slots < _entries.size() * 2) {
            slots *= 2;
        }
        _buildTable(slots);
    }
    const std::size_t mask = _table.size() - 1;
    for (std::size_t slot = _hash(parent, name) & mask; _table[slot] != None; slot = (slot + 1) & mask) {
        const Index item = _table[slot];
        if (_entries[item].parent == parent && this->name(item) == name) {
            return item;
        }
    }
    return None;
}

const PosixMadeItems::Identity *PosixMadeItems::identity(Index item) const {
    const auto found = std::lower_bound(_identities.begin(), _identities.end(), item,
                                        [](const Identified &each, Index wanted) { return each.item < wanted; });
    return found != _identities.end() && found->item == item ? &found->identity : nullptr;
}

std::size_t PosixMadeItems::_hash(Index parent, std::string_view name) {
    // 2^64 divided by the golden ratio: spreads neighbouring folder numbers over the table (Knuth, multiplicative hashing).
    return std::hash<std::string_view>()(name) ^ (static_cast<std::size_t>(parent) * 0x9E3779B97F4A7C15U);
}

void PosixMadeItems::_buildTable(std::size_t slots) {
    _table.assign(slots, None);
    for (Index item = Root + 1; item < end(); ++item) {
        _enter(item);
    }
}

void PosixMadeItems::_enter(Index item) {
    const std::size_t mask = _table.size() - 1;
    std::size_t slot = _hash(_entries[item].parent, name(item)) & mask;
    while (_table[slot] != None) {
        slot = (slot + 1) & mask;
    }
    _table[slot] = item;
}

std::size_t PosixMadeItems::_slotOf(Index item) const {
    const std::size_t mask = _table.size() - 1;
    std::size_t slot = _hash(_entries[item].parent, name(item)) & mask;
    while (_table[slot] != item) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

} // namespace orvane
