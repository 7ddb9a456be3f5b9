#include "platform/posix/PosixPath.h"

#include <algorithm>
#include <climits>

#include <fcntl.h>

namespace orvane {

PosixPath::PosixPath(std::string_view path) : _path(path.find('\0') == std::string_view::npos ? path : std::string_view()) {
    std::size_t from = 0;
    while (_path.size() - from >= PATH_MAX) {
        // The longest piece that ends before a "/" and still fits, its closing zero included.
        const std::size_t slash = _path.rfind('/', from + PATH_MAX - 1);
        if (slash == std::string_view::npos || slash <= from) {
            break; // one component longer than any file system takes; the call itself will say so
        }
        const std::string piece = _path.substr(from, slash - from);
        const int at = _isLong ? _folder.get() : AT_FDCWD;
        _folder = FileDescriptor(::openat(at, piece.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        _isLong = true;
        from = std::min(_path.find_first_not_of('/', slash), _path.size());
    }
    _path.erase(0, from);
    if (_isLong && _path.empty()) {
        _path = ".";
    }
}

int PosixPath::folder() const noexcept {
    return _isLong ? _folder.get() : AT_FDCWD;
}

std::string PosixPath::text() const {
    return _isLong ? "/proc/self/fd/" + std::to_string(_folder.get()) + '/' + _path : _path;
}

} // namespace orvane
