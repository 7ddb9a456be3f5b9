#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

// Property lists as immutable documents. A document owns one arena; every value, key and text in it is a
// small, trivially copyable view into that arena, so that a preset with 100,000 nodes costs a few large
// allocations instead of half a million small ones, is freed without recursion however deep it is nested,
// and can be shared between arrays for the price of a pointer.

namespace orvane {

enum class PropertyListType : std::uint8_t { Null, Boolean, Integer, Real, Date, UID, Data, String, Array, Set, Dictionary };

struct PropertyListEntry;

/// One value of a property list: 16 bytes, copied freely. It borrows from the arena of the `PropertyList`
/// (or `PropertyListBuilder`) that it came from and is valid while that one lives.
class PropertyListValue {
public:
    /// The absent value (type Null).
    constexpr PropertyListValue() noexcept = default;

    [[nodiscard]] PropertyListType type() const noexcept { return _type; }
    [[nodiscard]] bool isString() const noexcept { return _type == PropertyListType::String; }
    [[nodiscard]] bool isArray() const noexcept { return _type == PropertyListType::Array; }
    [[nodiscard]] bool isDictionary() const noexcept { return _type == PropertyListType::Dictionary; }

    /// Text in UTF-8 of a String (unpaired surrogates, possible in binary files, as three bytes each),
    /// else empty. May hold NUL.
    [[nodiscard]] std::string_view string() const noexcept;
    /// Bytes of a Data value, else empty.
    [[nodiscard]] std::string_view data() const noexcept;
    /// Value of a Boolean, else false. For the lenient reading of presets see `ORVBoolValue`.
    [[nodiscard]] bool boolean() const noexcept { return _type == PropertyListType::Boolean && _payload.integer != 0; }
    /// Value of an Integer or UID, else 0. Where `isUnsigned()`, the bits are those of a `uint64_t` above 2^63 - 1.
    [[nodiscard]] std::int64_t integer() const noexcept { return _isInteger() ? _payload.integer : 0; }
    /// True for an Integer that only fits an unsigned 64-bit number.
    [[nodiscard]] bool isUnsigned() const noexcept { return _type == PropertyListType::Integer && (_flags & UnsignedFlag) != 0; }
    /// Value of a Real; of a Date, seconds since 2001-01-01 00:00:00 UTC (Apple, CFDate); else 0.
    [[nodiscard]] double real() const noexcept { return _isReal() ? _payload.real : 0.0; }
    /// True for a Real that its file stored in 32 bits, so that it can be written back the same.
    [[nodiscard]] bool isSinglePrecision() const noexcept { return _type == PropertyListType::Real && (_flags & SingleFlag) != 0; }
    /// Elements of an Array or Set in order, else empty.
    [[nodiscard]] std::span<const PropertyListValue> array() const noexcept;
    /// Entries of a Dictionary, keys distinct, in file order; else empty.
    [[nodiscard]] std::span<const PropertyListEntry> dictionary() const noexcept;
    /// The entry's value, or null when there is none of that name or this is no Dictionary. Exact comparison.
    [[nodiscard]] const PropertyListValue *find(std::string_view key) const noexcept;

    /// Identity of the storage behind text and containers: equal pointers mean shared, not merely equal, contents.
    [[nodiscard]] const void *storage() const noexcept { return _payload.pointer; }

    /// Deep equality of type and contents; Dictionaries compare without regard to order. Safe for any depth.
    [[nodiscard]] bool equals(const PropertyListValue &other) const;

    static PropertyListValue ofBoolean(bool value) noexcept;
    static PropertyListValue ofInteger(std::int64_t value) noexcept;
    static PropertyListValue ofUnsigned(std::uint64_t value) noexcept;
    static PropertyListValue ofReal(double value, bool singlePrecision = false) noexcept;
    static PropertyListValue ofDate(double secondsSince2001) noexcept;
    static PropertyListValue ofUID(std::uint64_t value) noexcept;
    /// Views of storage that the caller keeps alive; `PropertyListBuilder` is the usual way. At most 2^32 - 1 bytes or elements.
    static PropertyListValue viewOfString(std::string_view text) noexcept;
    static PropertyListValue viewOfData(std::string_view bytes) noexcept;
    static PropertyListValue viewOfArray(std::span<const PropertyListValue> items) noexcept;
    static PropertyListValue viewOfSet(std::span<const PropertyListValue> items) noexcept;
    static PropertyListValue viewOfDictionary(std::span<const PropertyListEntry> entries) noexcept;

private:
    static constexpr std::uint8_t UnsignedFlag = 1;
    static constexpr std::uint8_t SingleFlag = 2;
    [[nodiscard]] bool _isInteger() const noexcept { return _type == PropertyListType::Integer || _type == PropertyListType::UID; }
    [[nodiscard]] bool _isReal() const noexcept { return _type == PropertyListType::Real || _type == PropertyListType::Date; }

    union Payload {
        const void *pointer;
        std::int64_t integer;
        double real;
        constexpr Payload() noexcept : integer(0) {}
    };
    PropertyListType _type = PropertyListType::Null;
    std::uint8_t _flags = 0;
    std::uint32_t _size = 0;
    Payload _payload;
};

/// One entry of a Dictionary. The key is UTF-8 and borrows from the same arena as the value.
struct PropertyListEntry {
    std::string_view key;
    PropertyListValue value;
};

/// Memory of one document: grows only, frees everything at once. Not for several threads at a time while it grows.
class PropertyListArena {
public:
    PropertyListArena() = default;
    PropertyListArena(const PropertyListArena &) = delete;
    PropertyListArena &operator=(const PropertyListArena &) = delete;
    ~PropertyListArena() = default;

    /// `bytes` of memory aligned for any value; never null (throws std::bad_alloc). Valid as long as the arena.
    [[nodiscard]] void *allocate(std::size_t bytes);
    /// `bytes` of memory without alignment, for text.
    [[nodiscard]] char *allocateText(std::size_t bytes);
    [[nodiscard]] std::string_view copyText(std::string_view text);
    [[nodiscard]] std::span<const PropertyListValue> copyValues(std::span<const PropertyListValue> values);
    [[nodiscard]] std::span<const PropertyListEntry> copyEntries(std::span<const PropertyListEntry> entries);
    /// Keeps another arena alive as long as this one, because values here borrow from it.
    void retain(std::shared_ptr<const PropertyListArena> other);

private:
    [[nodiscard]] char *_take(std::size_t bytes, std::size_t alignment);

    std::vector<std::unique_ptr<std::byte[]>> _chunks;
    std::vector<std::shared_ptr<const PropertyListArena>> _retained;
    std::byte *_next = nullptr;
    std::size_t _left = 0;
    std::size_t _nextChunk = 4096; ///< bytes; doubles up to 1 MiB, so small documents stay small
};

/// A shared, immutable property list: a root value and the arena that it borrows from. Copies are cheap and may be
/// used from several threads.
class PropertyList {
public:
    PropertyList() = default;
    PropertyList(std::shared_ptr<const PropertyListArena> arena, PropertyListValue root) : _arena(std::move(arena)), _root(root) {}
    [[nodiscard]] const PropertyListValue &root() const noexcept { return _root; }
    [[nodiscard]] const std::shared_ptr<const PropertyListArena> &arena() const noexcept { return _arena; }
    /// The same document seen from one of its values.
    [[nodiscard]] PropertyList at(const PropertyListValue &value) const { return {_arena, value}; }

private:
    std::shared_ptr<const PropertyListArena> _arena;
    PropertyListValue _root;
};

/// Makes new property lists, which may share parts with existing ones.
class PropertyListBuilder {
public:
    PropertyListBuilder() : _arena(std::make_shared<PropertyListArena>()) {}
    [[nodiscard]] PropertyListValue string(std::string_view text);
    [[nodiscard]] PropertyListValue data(std::string_view bytes);
    [[nodiscard]] PropertyListValue array(std::span<const PropertyListValue> items);
    /// Keys must be distinct; they are copied.
    [[nodiscard]] PropertyListValue dictionary(std::span<const PropertyListEntry> entries);
    /// The root of `list`, to be used in values made here; its storage is shared, not copied.
    [[nodiscard]] PropertyListValue adopt(const PropertyList &list);
    [[nodiscard]] PropertyList finish(const PropertyListValue &root) const { return {_arena, root}; }

private:
    std::shared_ptr<PropertyListArena> _arena;
};

} // namespace orvane
