#pragma once

#include "ports/PropertyList.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

// What keeps documents small and reading fast: every key is stored once, and short texts that repeat (modes, colours,
// names of content files) mostly are.

namespace orvane::propertylist {

[[nodiscard]] std::uint64_t hashOf(std::string_view text) noexcept;

/// A key of some dictionary of the document. The stamp tells whether the dictionary being closed has it already.
struct Key {
    std::string_view text;
    std::uint64_t hash = 0;
    std::uint64_t stamp = 0;
    std::size_t position = 0;
    Key *following = nullptr; ///< the key that came behind this one when it was last looked at
};

/// The distinct keys of one document.
class KeyTable {
public:
    explicit KeyTable(PropertyListArena &arena) : _arena(arena), _slots(64, nullptr) {}
    /// The one record of this key; its text is copied into the arena when it is new. Valid as long as the table.
    [[nodiscard]] Key *intern(std::string_view text);

private:
    void _grow();

    PropertyListArena &_arena;
    std::deque<Key> _keys;
    std::vector<Key *> _slots; ///< open addressing; a power of two, at most half full
};

/// Copies texts into the arena, and short ones that were seen lately only once.
class TextStore {
public:
    explicit TextStore(PropertyListArena &arena) : _arena(arena) {}
    [[nodiscard]] std::string_view store(std::string_view text);

private:
    PropertyListArena &_arena;
    std::array<std::string_view, 256> _recent;
};

/// The entry of a dictionary that is still open, or (without key) the element of an array.
struct PendingValue {
    Key *key = nullptr;
    PropertyListValue value;
};

/// Makes the values of closed containers. Of a key that stands there twice the last value wins, in the first one's place.
class ContainerMaker {
public:
    explicit ContainerMaker(PropertyListArena &arena) : _arena(arena) {}
    [[nodiscard]] PropertyListValue dictionary(const PendingValue *first, std::size_t count);
    [[nodiscard]] PropertyListValue array(const PendingValue *first, std::size_t count);

private:
    PropertyListArena &_arena;
    std::uint64_t _stamp = 0;
};

} // namespace orvane::propertylist
