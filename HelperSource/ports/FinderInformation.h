#pragma once

#include <cstdint>
#include <string_view>

namespace orvane {

/// Reads and writes the 16-bit Finder flags that travel with files and folders. Any thread.
class FinderInformation {
public:
    virtual ~FinderInformation() = default;
    /// True when something exists at the path itself (a symbolic link counts, whatever it points to).
    [[nodiscard]] virtual bool hasItem(std::string_view path) = 0;
    /// Stores the flags of the item at the path itself, 0 for an item that has none yet.
    /// Returns 0, or the `errno` of the failed read; `flags` is then untouched.
    [[nodiscard]] virtual int readFlags(std::string_view path, std::uint16_t &flags) = 0;
    /// Writes the flags and leaves every other byte of the item's Finder information as it is.
    /// Returns 0 or `errno`.
    [[nodiscard]] virtual int writeFlags(std::string_view path, std::uint16_t flags) = 0;
};

} // namespace orvane
