#include "platform/propertylist/XMLPropertyListInput.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace orvane::propertylist {

XMLPropertyListInput::XMLPropertyListInput(int descriptor) : _descriptor(descriptor) {}

/// Small inputs get a small window.
void XMLPropertyListInput::_prepare() {
    std::uint64_t expected = _bytes.size();
    if (_descriptor >= 0) {
        struct stat status {};
        const bool known = ::fstat(_descriptor, &status) == 0 && S_ISREG(status.st_mode);
        expected = known ? static_cast<std::uint64_t>(status.st_size) : WindowSize;
    }
    _size = static_cast<std::size_t>(std::clamp<std::uint64_t>(expected + 1, 2 * Padding, WindowSize));
    _window = std::make_unique_for_overwrite<char[]>(_size + Padding);
    cursor = end = _window.get();
    std::memset(_window.get(), 0, Padding);
}

std::size_t XMLPropertyListInput::_read(char *to, std::size_t room) {
    if (_descriptor < 0) {
        const std::size_t count = _bytes.copy(to, room);
        _bytes.remove_prefix(count);
        return count;
    }
    ssize_t count = 0;
    do {
        count = ::read(_descriptor, to, room);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        _error = errno;
        return 0;
    }
    return static_cast<std::size_t>(count);
}

bool XMLPropertyListInput::fill() {
    if (_window == nullptr) {
        _prepare();
    }
    const auto unread = static_cast<std::size_t>(end - cursor);
    if (unread >= Padding || _error != 0 || _isAtEnd) {
        return false;
    }
    char *window = _window.get();
    std::memmove(window, cursor, unread);
    _base += static_cast<std::uint64_t>(cursor - window);
    const std::size_t added = _read(window + unread, _size - unread);
    cursor = window;
    char *newEnd = window + unread + added;
    std::memset(newEnd, 0, Padding);
    end = newEnd;
    _isAtEnd = added == 0;
    return added > 0;
}

std::string XMLPropertyListInput::takeAll() {
    std::string all;
    do {
        all.append(cursor, end);
        cursor = end;
    } while (fill());
    return all;
}

std::optional<std::uint64_t> XMLPropertyListInput::lineAt(std::uint64_t offset) const {
    if (_descriptor < 0) {
        // The view moved on as it was read; its start is as far back as the window's end is into the input.
        const char *start = _bytes.data() - offsetOf(end);
        return 1 + static_cast<std::uint64_t>(std::count(start, start + offset, '\n'));
    }
    const off_t here = ::lseek(_descriptor, 0, SEEK_CUR);
    if (here < 0) {
        return std::nullopt;
    }
    const auto start = static_cast<std::int64_t>(here) - static_cast<std::int64_t>(offsetOf(end));
    std::uint64_t lines = 1;
    std::uint64_t at = 0;
    const auto buffer = std::make_unique_for_overwrite<char[]>(WindowSize);
    while (at < offset) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(WindowSize, offset - at));
        const ssize_t count = ::pread(_descriptor, buffer.get(), wanted, static_cast<off_t>(start + static_cast<std::int64_t>(at)));
        if (count <= 0) {
            return std::nullopt;
        }
        lines += static_cast<std::uint64_t>(std::count(buffer.get(), buffer.get() + count, '\n'));
        at += static_cast<std::uint64_t>(count);
    }
    return lines;
}

} // namespace orvane::propertylist
