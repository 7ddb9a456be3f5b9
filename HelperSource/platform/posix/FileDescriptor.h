#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <utility>

#include <sys/resource.h>
#include <unistd.h>

namespace orvane {

/// Owns one descriptor and closes it. -1 means none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) noexcept : _descriptor(descriptor) {}
    FileDescriptor(FileDescriptor &&other) noexcept : _descriptor(std::exchange(other._descriptor, -1)) {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept {
        if (this != &other) {
            reset();
            _descriptor = std::exchange(other._descriptor, -1);
        }
        return *this;
    }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    ~FileDescriptor() { reset(); }

    [[nodiscard]] int get() const noexcept { return _descriptor; }
    [[nodiscard]] explicit operator bool() const noexcept { return _descriptor >= 0; }
    /// Closes it; `errno` stays as it was.
    void reset() noexcept {
        if (_descriptor >= 0) {
            const int saved = errno;
            ::close(_descriptor);
            errno = saved;
            _descriptor = -1;
        }
    }
    /// Closes it and tells what closing said: false with `errno` when the file system reported a late write error.
    /// An interrupted close counts as done, because Linux has released the descriptor by then.
    [[nodiscard]] bool closeChecked() noexcept {
        const int descriptor = std::exchange(_descriptor, -1);
        return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR;
    }

private:
    int _descriptor = -1;
};

/// Calls again as long as a signal interrupts.
template <typename Call> auto uninterrupted(const Call &call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// How many descriptors one user of many may keep open so that enough are left for all others: an eighth of those that the
/// process may have, at least one and at most `most`.
[[nodiscard]] inline std::size_t shareOfDescriptors(std::size_t most) {
    constexpr rlim_t shares = 8;
    rlimit limit{};
    return ::getrlimit(RLIMIT_NOFILE, &limit) != 0 ? most : static_cast<std::size_t>(std::clamp<rlim_t>(limit.rlim_cur / shares, 1, most));
}

} // namespace orvane
