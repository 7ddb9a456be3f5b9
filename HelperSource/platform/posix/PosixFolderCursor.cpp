#include "platform/posix/PosixFolderCursor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace orvane {

namespace {

/// Levels below an anchor that are reached by path. Looking a component up takes about 30 ns, an anchor costs two calls.
constexpr std::size_t LevelsByPath = 8;
/// Bytes of such a path; with a name of 255 it stays far below PATH_MAX.
constexpr std::size_t BytesByPath = 1000;
/// Anchors that stay open beside the root's, where the process has 1,024 descriptors, as it has as a rule, or more.
constexpr std::size_t OpenAnchors = 128;
/// So many may be open before anybody asks what the limit is.
constexpr std::size_t FewAnchors = 4;
/// When descriptors run out, all anchors but so many are closed before the second attempt.
constexpr std::size_t AnchorsInNeed = 1;

constexpr int FolderFlags = O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

} // namespace

PosixFolderCursor::PosixFolderCursor(FileDescriptor root) : PosixFolderCursor(std::move(root), PosixMadeItems::Root, {}) {}

PosixFolderCursor::PosixFolderCursor(FileDescriptor root, Index item, Options options) {
    options.anchored = true;
    _levels.push_back({item, 0, options});
    _anchors.push_back({std::move(root), 0, 0, {}});
}

PosixFolderCursor::Place PosixFolderCursor::place(std::string_view name) {
    _path.resize(_levels.back().pathEnd);
    _path.append(name);
    return {_anchors.back().folder.get(), _path.c_str() + _anchors.back().pathStart};
}

PosixFolderCursor::Place PosixFolderCursor::currentFolder() {
    const std::size_t start = _anchors.back().pathStart;
    const std::size_t end = _levels.back().pathEnd;
    _scratch.assign(_path, start, end > start ? end - start - 1 : 0);
    return {_anchors.back().folder.get(), _scratch.c_str()};
}

bool PosixFolderCursor::enter(std::string_view name, Index item, const Options &options) {
    const Level &parent = _levels.back();
    const Anchor &above = _anchors.back();
    const bool anchored = options.anchored || !parent.options.isPrivate || _levels.size() - above.level > LevelsByPath ||
                          parent.pathEnd - above.pathStart + name.size() > BytesByPath;
    FileDescriptor folder = anchored ? _open(name) : FileDescriptor();
    if (anchored && !folder) {
        return false;
    }
    const std::size_t parentEnd = parent.pathEnd;
    if (!_hasRoomFor(parentEnd + name.size() + 1)) {
        errno = ENOMEM;
        return false;
    }
    _path.resize(parentEnd);
    _path.append(name).push_back('/');
    _levels.push_back({item, _path.size(), options});
    _levels.back().options.anchored = anchored;
    if (anchored) {
        _anchors.push_back({std::move(folder), _levels.size() - 1, _path.size(), {}});
        if (_anchors.size() - _firstOpen > FewAnchors) {
            _mostOpen = _mostOpen != 0 ? _mostOpen : shareOfDescriptors(OpenAnchors);
            _closeAnchorsBut(_mostOpen);
        }
    }
    return true;
}

/// Sees to it that one more folder, whose path has so many bytes, needs no memory.
bool PosixFolderCursor::_hasRoomFor(std::size_t pathBytes) {
    try {
        if (_path.capacity() < pathBytes) {
            _path.reserve(2 * pathBytes);
        }
        if (_levels.size() == _levels.capacity()) {
            _levels.reserve(2 * _levels.size());
        }
        if (_anchors.size() == _anchors.capacity()) {
            _anchors.reserve(2 * _anchors.size());
        }
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

FileDescriptor PosixFolderCursor::leave() {
    FileDescriptor left;
    if (_levels.back().options.anchored) {
        left = std::move(_anchors.back().folder);
        const std::size_t level = _anchors.back().level;
        _anchors.pop_back();
        if (!_anchors.back().folder) {
            _reopenLast(left.get(), level - _anchors.back().level);
        }
        _firstOpen = std::min(_firstOpen, _anchors.size());
    }
    _levels.pop_back();
    _path.resize(_levels.back().pathEnd);
    return left;
}

PosixMadeItems::Identity PosixFolderCursor::identityOf(int folder) {
    struct stat status {};
    return ::fstat(folder, &status) == 0 ? PosixMadeItems::Identity{status.st_dev, status.st_ino} : PosixMadeItems::Identity{};
}

/// Opens for reading, which setting a label needs; a folder that may only be passed through is opened as mere path.
FileDescriptor PosixFolderCursor::_open(std::string_view name) {
    for (int attempt = 0;; ++attempt) {
        const Place at = place(name);
        FileDescriptor folder(uninterrupted([&] { return ::openat(at.folder, at.path, O_RDONLY | FolderFlags); }));
        if (!folder && errno == EACCES) {
            folder = FileDescriptor(::openat(at.folder, at.path, O_PATH | FolderFlags));
        }
        if (folder || attempt > 0 || errno != EMFILE) {
            return folder;
        }
        _closeAnchorsBut(AnchorsInNeed);
    }
}

void PosixFolderCursor::_closeAnchorsBut(std::size_t count) {
    for (; _anchors.size() - _firstOpen > count; ++_firstOpen) {
        Anchor &anchor = _anchors[_firstOpen];
        anchor.identity = identityOf(anchor.folder.get());
        anchor.folder.reset();
    }
}

/// Opens the deepest anchor again from a folder that lies `levels` below it. Where that leads to another folder (somebody
/// moved ours away) it stays closed, and every call in it fails.
void PosixFolderCursor::_reopenLast(int below, std::size_t levels) {
    // Without memory of its own: whoever leaves a folder cannot be told that there is none.
    constexpr std::string_view Up = "../";
    constexpr std::size_t MostLevels = LevelsByPath + 1;
    std::array<char, MostLevels * Up.size() + 1> up{};
    for (std::size_t i = 0; i < std::min(levels, MostLevels); ++i) {
        Up.copy(&up[i * Up.size()], Up.size());
    }
    const auto open = [&](int access) {
        return FileDescriptor(uninterrupted([&] { return ::openat(below, up.data(), access | O_DIRECTORY | O_CLOEXEC); }));
    };
    FileDescriptor folder = open(O_RDONLY);
    if (!folder && errno == EACCES) {
        folder = open(O_PATH);
    }
    if (folder && identityOf(folder.get()) == _anchors.back().identity) {
        _anchors.back().folder = std::move(folder);
    }
    _firstOpen = _anchors.size() - 1;
}

} // namespace orvane
