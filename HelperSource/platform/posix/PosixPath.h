#pragma once

#include "platform/posix/FileDescriptor.h"

#include <string>
#include <string_view>

namespace orvane {

/// A path in the form that system calls take, whatever its length: the calls refuse paths of PATH_MAX (4,096) bytes and
/// more, so the front of a longer one is opened here, piece by piece, and the rest is relative to that descriptor.
class PosixPath {
public:
    /// Never fails; where the front cannot be opened, later calls fail with that error. A path with a NUL stands for
    /// nothing: calls fail with ENOENT.
    explicit PosixPath(std::string_view path);

    /// The folder that `path()` is relative to; AT_FDCWD for every path of ordinary length.
    [[nodiscard]] int folder() const noexcept;
    [[nodiscard]] const char *path() const noexcept { return _path.c_str(); }
    /// For calls that take no descriptor: the same place in one text, through /proc where the path is long.
    [[nodiscard]] std::string text() const;

private:
    std::string _path;
    FileDescriptor _folder;
    bool _isLong = false;
};

} // namespace orvane
