#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::propertylist {

/// A window that moves over the bytes of a file or a text, so that neither has to be in memory whole. What is behind
/// `end` is zero for `Padding` bytes: a scan that stops at zero needs no other bound, and comparing with a short text
/// may run beyond the end.
class XMLPropertyListInput {
public:
    static constexpr std::size_t Padding = 64;
    /// Large enough to make a reading call's own cost small, small enough to stay in the processor's nearest caches.
    static constexpr std::size_t WindowSize = std::size_t{64} * 1024;

    explicit XMLPropertyListInput(std::string_view bytes) : _bytes(bytes) {}
    explicit XMLPropertyListInput(int descriptor);

    const char *cursor = nullptr; ///< the next unread byte
    const char *end = nullptr;    ///< behind the last byte of the window; *end is 0

    /// Keeps what is unread (less than `Padding` bytes, or it fails) and reads more. False at the end or when reading failed.
    bool fill();
    /// Tries to have `count` (at most `Padding`) unread bytes in the window.
    void want(std::size_t count) {
        while (static_cast<std::size_t>(end - cursor) < count && fill()) {
        }
    }
    /// Everything that is unread, to the end.
    [[nodiscard]] std::string takeAll();
    /// Offset of a place in the window from where the input began.
    [[nodiscard]] std::uint64_t offsetOf(const char *place) const noexcept {
        return _base + static_cast<std::uint64_t>(place - _window.get());
    }
    /// The error number when reading failed, else 0.
    [[nodiscard]] int error() const noexcept { return _error; }
    /// The line (counted from 1) that holds this offset; nothing when the input cannot be read a second time.
    [[nodiscard]] std::optional<std::uint64_t> lineAt(std::uint64_t offset) const;

private:
    [[nodiscard]] std::size_t _read(char *to, std::size_t room);
    void _prepare();

    std::string_view _bytes;
    int _descriptor = -1;
    std::size_t _size = 0; ///< of the window
    std::unique_ptr<char[]> _window;
    std::uint64_t _base = 0;
    int _error = 0;
    bool _isAtEnd = false; ///< a read has given nothing
};

} // namespace orvane::propertylist
