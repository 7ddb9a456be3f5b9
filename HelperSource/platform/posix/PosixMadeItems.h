#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace orvane {

/// The list of what one hierarchy writer made, in the order of making, so that exactly that can be taken away again.
/// A hundred thousand items take a few megabytes: an entry is 12 bytes and its name; names lie one after another in one
/// text. A look-up table by folder and name is built only when something asks, which only duplicate names do.
class PosixMadeItems {
public:
    /// Number of an entry; a folder's number is always smaller than those of the items in it.
    using Index = std::uint32_t;
    /// The folder that the hierarchy starts from.
    static constexpr Index Root = 0;
    static constexpr Index None = UINT32_MAX;

    enum Flags : std::uint8_t {
        Folder = 1,     ///< else a file or a symbolic link
        Entered = 2,    ///< was there before; on the list as the way to other items, and never removed
        Restricted = 4, ///< was given a mode that keeps its owner from working in it
        Shared = 8,     ///< was given a mode that lets others write in it
    };

    struct Identity {
        dev_t device = 0;
        ino_t inode = 0;
        bool operator==(const Identity &) const = default;
    };

    PosixMadeItems();

    /// Adds an item; `name` at most 65,535 bytes (file systems take 255). None when two billion bytes of
    /// names are full, or memory is.
    Index add(Index parent, std::string_view name, std::uint8_t flags);
    /// Adds the entries of another list behind its own, but for the first ones: its root and those that follow stand for the
    /// entries `known` here, at least one.
    void append(const PosixMadeItems &other, std::span<const Index> known);
    /// Whether another list, which holds at most half of what fits, could still be appended.
    [[nodiscard]] bool hasRoomForAnother() const noexcept { return _names.size() < MostNames && _entries.size() < MostEntries; }
    /// Forgets the entries from that one on.
    void truncate(Index first);
    /// One more than the last entry's number; 1 when nothing was made.
    [[nodiscard]] Index end() const noexcept { return static_cast<Index>(_entries.size()); }

    [[nodiscard]] Index parent(Index item) const { return _entries[item].parent; }
    [[nodiscard]] std::string_view name(Index item) const;
    [[nodiscard]] bool has(Index item, Flags flag) const { return (_entries[item].flags & flag) != 0; }
    void mark(Index item, Flags flag) { _entries[item].flags = static_cast<std::uint8_t>(_entries[item].flags | flag); }

    /// The entry of that name in that folder, or None. The first call costs one pass over the list.
    [[nodiscard]] Index find(Index parent, std::string_view name);

    /// Keeps which folder an entry really is, for places where somebody else could put another in its place.
    void identify(Index item, const Identity &identity) { _identities.push_back({item, identity}); }
    /// The kept identity, or null. Borrowed until the next change.
    [[nodiscard]] const Identity *identity(Index item) const;

private:
    static constexpr std::size_t MostNames = UINT32_MAX / 2;
    static constexpr std::size_t MostEntries = None / 2;

    struct Entry {
        Index parent;
        std::uint32_t nameStart;
        std::uint16_t nameLength;
        std::uint8_t flags;
    };
    struct Identified {
        Index item;
        Identity identity;
    };

    [[nodiscard]] static std::size_t _hash(Index parent, std::string_view name);
    void _buildTable(std::size_t slots);
    void _enter(Index item);
    void _enterInTable(Index item);
    [[nodiscard]] std::size_t _slotOf(Index item) const;

    std::vector<Entry> _entries;
    std::string _names;
    std::vector<Identified> _identities; ///< by item, ascending
    std::vector<Index> _table;           ///< open addressing, a power of two slots, None where free; empty until asked for
};

} // namespace orvane
