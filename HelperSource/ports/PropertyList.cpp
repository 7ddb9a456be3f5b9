#include "ports/PropertyList.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <set>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace orvane {

namespace {

constexpr std::size_t LargestChunk = 1U << 20U;
/// From this number of entries on, comparing dictionaries goes through an index instead of repeated searches.
constexpr std::size_t IndexedComparison = 16;

template <typename Element> std::span<const Element> copyInto(PropertyListArena &arena, std::span<const Element> elements) {
    if (elements.empty()) {
        return {};
    }
    void *memory = arena.allocate(elements.size_bytes());
    std::uninitialized_copy(elements.begin(), elements.end(), static_cast<Element *>(memory));
    return {static_cast<const Element *>(memory), elements.size()};
}

std::uint32_t sizeOf(std::size_t size) noexcept {
    return static_cast<std::uint32_t>(std::min<std::size_t>(size, std::numeric_limits<std::uint32_t>::max()));
}

using Pair = std::pair<PropertyListValue, PropertyListValue>;

bool pairEntries(const PropertyListValue &left, const PropertyListValue &right, std::vector<Pair> &open) {
    const auto entries = left.dictionary();
    if (entries.size() != right.dictionary().size()) {
        return false;
    }
    if (entries.size() < IndexedComparison) {
        return std::all_of(entries.begin(), entries.end(), [&](const PropertyListEntry &entry) {
            const PropertyListValue *other = right.find(entry.key);
            return other != nullptr && (open.emplace_back(entry.value, *other), true);
        });
    }
    std::unordered_map<std::string_view, const PropertyListValue *> index;
    for (const PropertyListEntry &entry : right.dictionary()) {
        index.emplace(entry.key, &entry.value);
    }
    return std::all_of(entries.begin(), entries.end(), [&](const PropertyListEntry &entry) {
        const auto other = index.find(entry.key);
        return other != index.end() && (open.emplace_back(entry.value, *other->second), true);
    });
}

bool pairItems(const PropertyListValue &left, const PropertyListValue &right, std::vector<Pair> &open) {
    const auto mine = left.array();
    const auto theirs = right.array();
    if (mine.size() != theirs.size()) {
        return false;
    }
    for (std::size_t i = 0; i < mine.size(); ++i) {
        open.emplace_back(mine[i], theirs[i]);
    }
    return true;
}

/// Compares two values but for their children, which are appended to `open`.
bool equalsShallow(const PropertyListValue &left, const PropertyListValue &right, std::vector<Pair> &open) {
    if (left.type() != right.type()) {
        return false;
    }
    switch (left.type()) {
    case PropertyListType::Null:
        return true;
    case PropertyListType::Boolean:
        return left.boolean() == right.boolean();
    case PropertyListType::Integer:
    case PropertyListType::UID:
        return left.integer() == right.integer() && left.isUnsigned() == right.isUnsigned();
    case PropertyListType::Real:
    case PropertyListType::Date:
        return std::bit_cast<std::uint64_t>(left.real()) == std::bit_cast<std::uint64_t>(right.real());
    case PropertyListType::Data:
        return left.data() == right.data();
    case PropertyListType::String:
        return left.string() == right.string();
    case PropertyListType::Array:
    case PropertyListType::Set:
        return left.storage() == right.storage() ? left.array().size() == right.array().size() : pairItems(left, right, open);
    case PropertyListType::Dictionary:
        return left.storage() == right.storage() ? left.dictionary().size() == right.dictionary().size() : pairEntries(left, right, open);
    }
    return false;
}

/// Remembers which containers were compared, once there have been more than a list without shared ones is likely to have: what a
/// small file shares again and again would otherwise take as long as everything that it stands for.
class ComparedPairs {
public:
    /// Whether the pair was asked for before; then nothing new can come of it. Always false in the beginning.
    [[nodiscard]] bool areKnown(const Pair &pair) {
        constexpr std::size_t Many = std::size_t{1} << 18U;
        const auto &[left, right] = pair;
        const std::size_t size = left.array().size() + left.dictionary().size();
        if (size == 0 || ++_containers <= Many || left.type() != right.type() || size != right.array().size() + right.dictionary().size()) {
            return false;
        }
        return !_known.emplace(left.storage(), right.storage(), size).second;
    }

private:
    std::size_t _containers = 0;
    std::set<std::tuple<const void *, const void *, std::size_t>> _known;
};

} // namespace

std::string_view PropertyListValue::string() const noexcept {
    return isString() ? std::string_view(static_cast<const char *>(_payload.pointer), _size) : std::string_view();
}

std::string_view PropertyListValue::data() const noexcept {
    return _type == PropertyListType::Data ? std::string_view(static_cast<const char *>(_payload.pointer), _size) : std::string_view();
}

std::span<const PropertyListValue> PropertyListValue::array() const noexcept {
    if (_type != PropertyListType::Array && _type != PropertyListType::Set) {
        return {};
    }
    return {static_cast<const PropertyListValue *>(_payload.pointer), _size};
}

std::span<const PropertyListEntry> PropertyListValue::dictionary() const noexcept {
    if (!isDictionary()) {
        return {};
    }
    return {static_cast<const PropertyListEntry *>(_payload.pointer), _size};
}

const PropertyListValue *PropertyListValue::find(std::string_view key) const noexcept {
    for (const PropertyListEntry &entry : dictionary()) {
        if (entry.key.size() == key.size() && (entry.key.data() == key.data() || entry.key == key)) {
            return &entry.value;
        }
    }
    return nullptr;
}

bool PropertyListValue::equals(const PropertyListValue &other) const {
    std::vector<Pair> open{{*this, other}};
    ComparedPairs compared;
    while (!open.empty()) {
        const Pair pair = open.back();
        open.pop_back();
        if (compared.areKnown(pair)) {
            continue;
        }
        if (!equalsShallow(pair.first, pair.second, open)) {
            return false;
        }
    }
    return true;
}

PropertyListValue PropertyListValue::ofBoolean(bool value) noexcept {
    PropertyListValue result;
    result._type = PropertyListType::Boolean;
    result._payload.integer = value ? 1 : 0;
    return result;
}

PropertyListValue PropertyListValue::ofInteger(std::int64_t value) noexcept {
    PropertyListValue result;
    result._type = PropertyListType::Integer;
    result._payload.integer = value;
    return result;
}

PropertyListValue PropertyListValue::ofUnsigned(std::uint64_t value) noexcept {
    PropertyListValue result = ofInteger(static_cast<std::int64_t>(value));
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
        result._flags = UnsignedFlag;
    }
    return result;
}

PropertyListValue PropertyListValue::ofReal(double value, bool singlePrecision) noexcept {
    PropertyListValue result;
    result._type = PropertyListType::Real;
    result._flags = singlePrecision ? SingleFlag : std::uint8_t{0};
    result._payload.real = value;
    return result;
}

PropertyListValue PropertyListValue::ofDate(double secondsSince2001) noexcept {
    PropertyListValue result = ofReal(secondsSince2001);
    result._type = PropertyListType::Date;
    return result;
}

PropertyListValue PropertyListValue::ofUID(std::uint64_t value) noexcept {
    PropertyListValue result = ofInteger(static_cast<std::int64_t>(value));
    result._type = PropertyListType::UID;
    return result;
}

PropertyListValue PropertyListValue::viewOfString(std::string_view text) noexcept {
    PropertyListValue result;
    result._type = PropertyListType::String;
    result._size = sizeOf(text.size());
    result._payload.pointer = text.data();
    return result;
}

PropertyListValue PropertyListValue::viewOfData(std::string_view bytes) noexcept {
    PropertyListValue result = viewOfString(bytes);
    result._type = PropertyListType::Data;
    return result;
}

PropertyListValue PropertyListValue::viewOfArray(std::span<const PropertyListValue> items) noexcept {
    PropertyListValue result;
    result._type = PropertyListType::Array;
    result._size = sizeOf(items.size());
    result._payload.pointer = items.data();
    return result;
}

PropertyListValue PropertyListValue::viewOfSet(std::span<const PropertyListValue> items) noexcept {
    PropertyListValue result = viewOfArray(items);
    result._type = PropertyListType::Set;
    return result;
}

PropertyListValue PropertyListValue::viewOfDictionary(std::span<const PropertyListEntry> entries) noexcept {
    PropertyListValue result;
    result._type = PropertyListType::Dictionary;
    result._size = sizeOf(entries.size());
    result._payload.pointer = entries.data();
    return result;
}

char *PropertyListArena::_take(std::size_t bytes, std::size_t alignment) {
    const auto gapAt = [alignment](const std::byte *at) {
        return (alignment - (reinterpret_cast<std::uintptr_t>(at) & (alignment - 1))) & (alignment - 1);
    };
    if (gapAt(_next) + bytes > _left) {
        if (bytes > _nextChunk / 4) { // its own chunk, so that the rest of the current one is not wasted
            return reinterpret_cast<char *>(_chunks.emplace_back(std::make_unique_for_overwrite<std::byte[]>(bytes)).get());
        }
        _next = _chunks.emplace_back(std::make_unique_for_overwrite<std::byte[]>(_nextChunk)).get();
        _left = _nextChunk;
        _nextChunk = std::min(_nextChunk * 2, LargestChunk);
    }
    const std::size_t taken = gapAt(_next) + bytes;
    std::byte *result = _next + (taken - bytes);
    _next += taken;
    _left -= taken;
    return reinterpret_cast<char *>(result);
}

void *PropertyListArena::allocate(std::size_t bytes) {
    return _take(bytes, alignof(std::max_align_t));
}

char *PropertyListArena::allocateText(std::size_t bytes) {
    return _take(bytes, 1);
}

std::string_view PropertyListArena::copyText(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    char *memory = allocateText(text.size());
    std::memcpy(memory, text.data(), text.size());
    return {memory, text.size()};
}

std::span<const PropertyListValue> PropertyListArena::copyValues(std::span<const PropertyListValue> values) {
    return copyInto(*this, values);
}

std::span<const PropertyListEntry> PropertyListArena::copyEntries(std::span<const PropertyListEntry> entries) {
    return copyInto(*this, entries);
}

void PropertyListArena::retain(std::shared_ptr<const PropertyListArena> other) {
    if (other && other.get() != this) {
        _retained.push_back(std::move(other));
    }
}

PropertyListValue PropertyListBuilder::string(std::string_view text) {
    return PropertyListValue::viewOfString(_arena->copyText(text));
}

PropertyListValue PropertyListBuilder::data(std::string_view bytes) {
    return PropertyListValue::viewOfData(_arena->copyText(bytes));
}

PropertyListValue PropertyListBuilder::array(std::span<const PropertyListValue> items) {
    return PropertyListValue::viewOfArray(_arena->copyValues(items));
}

PropertyListValue PropertyListBuilder::dictionary(std::span<const PropertyListEntry> entries) {
    std::vector<PropertyListEntry> own(entries.begin(), entries.end());
    for (PropertyListEntry &entry : own) {
        entry.key = _arena->copyText(entry.key);
    }
    return PropertyListValue::viewOfDictionary(_arena->copyEntries(own));
}

PropertyListValue PropertyListBuilder::adopt(const PropertyList &list) {
    _arena->retain(list.arena());
    return list.root();
}

} // namespace orvane
