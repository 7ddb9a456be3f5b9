#pragma once

#include "ports/FinderInformation.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// `FinderInformation` in memory: tests put items in by path, with the flags that they carry. The journal has lines
/// like "hasItem /a", "readFlags /a" and "writeFlags /a 0x000C". One thread at a time.
class FakeFinderInformation final : public FinderInformation {
public:
    void addItem(std::string_view path, std::uint16_t flags = 0) { _flags.insert_or_assign(std::string(path), flags); }
    void removeItem(std::string_view path) { _flags.erase(std::string(path)); }
    /// The flags of an item that was put in; 0 for one that was not.
    [[nodiscard]] std::uint16_t flags(std::string_view path) const {
        const auto found = _flags.find(path);
        return found == _flags.end() ? std::uint16_t{0} : found->second;
    }
    [[nodiscard]] const std::vector<std::string> &journal() const { return _journal; }

    int readError = 0;  ///< when not 0, every read fails with it
    int writeError = 0; ///< when not 0, every write fails with it

    [[nodiscard]] bool hasItem(std::string_view path) override {
        _journal.push_back("hasItem " + std::string(path));
        return _flags.contains(path);
    }
    [[nodiscard]] int readFlags(std::string_view path, std::uint16_t &flags) override {
        _journal.push_back("readFlags " + std::string(path));
        const auto found = _flags.find(path);
        if (readError != 0 || found == _flags.end()) {
            return readError != 0 ? readError : ENOENT;
        }
        flags = found->second;
        return 0;
    }
    [[nodiscard]] int writeFlags(std::string_view path, std::uint16_t flags) override {
        _journal.push_back("writeFlags " + std::string(path) + " 0x" + _hexadecimal(flags));
        const auto found = _flags.find(path);
        if (writeError != 0 || found == _flags.end()) {
            return writeError != 0 ? writeError : ENOENT;
        }
        found->second = flags;
        return 0;
    }

private:
    static std::string _hexadecimal(std::uint16_t value) {
        std::string text(4, '0');
        for (std::size_t i = 0; i < 4; ++i) {
            text[3 - i] = "0123456789ABCDEF"[(static_cast<unsigned>(value) >> (4 * i)) & 15U];
        }
        return text;
    }

    std::map<std::string, std::uint16_t, std::less<>> _flags;
    std::vector<std::string> _journal;
};

} // namespace orvane
