#include "platform/posix/PosixHierarchyWriter.h"

#include "platform/posix/PosixItemFinish.h"
#include "platform/posix/PosixSecondThread.h"

#include <cerrno>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>

// Removal goes through the list of what was made from its end, so that a folder is empty of ours when its turn comes. It
// asks the disk nothing: no listing, no state. The items of one folder lie together on the list, so the way from one to
// the next is short, and the whole costs about one call an item. What two threads made is removed by two threads.

namespace orvane {

namespace {

/// From so many items on a second thread is worth its start.
constexpr PosixMadeItems::Index LeastForSecondThread = 500;

} // namespace

void PosixHierarchyWriter::removeEverythingMade() {
    _leaveRestrictedFolders();
    _removeAndTell(PosixMadeItems::Root + 1);
    _items.truncate(PosixMadeItems::Root + 1);
    _shared.clear();
    _isOver = true;
}

/// A folder that was entered once more after it had got its mode may keep its owner out: it is left, so that the way back into it
/// opens it.
void PosixHierarchyWriter::_leaveRestrictedFolders() {
    Index topmost = PosixMadeItems::None;
    for (Index item = _cursor.item(); item != PosixMadeItems::Root; item = _items.parent(item)) {
        if (_items.has(item, PosixMadeItems::Restricted) && !_items.has(item, PosixMadeItems::Entered)) {
            topmost = item;
        }
    }
    while (topmost != PosixMadeItems::None && _cursor.item() >= topmost) {
        _cursor.leave();
    }
}

void PosixHierarchyWriter::_removeAndTell(Index first) {
    Omissions left;
    _removeFrom(first, left);
    _logOmissions("Something that was made could not be removed", left);
}

void PosixHierarchyWriter::_removeFrom(Index first, Omissions &left) {
    Index end = _items.end();
    for (auto shared = _shared.rbegin(); shared != _shared.rend() && shared->begin >= first; ++shared) {
        _removeRange(_cursor, _pathOfRoot, shared->end, end, left);
        _removeShared(*shared, left);
        end = shared->begin;
    }
    _removeRange(_cursor, _pathOfRoot, first, end, left);
}

void PosixHierarchyWriter::_removeShared(const SharedWork &shared, Omissions &left) {
    try {
        if (shared.end - shared.middle >= LeastForSecondThread && _removeOnTwoThreads(shared, left)) {
            return;
        }
    } catch (const std::bad_alloc &) { // one thread needs less
        errno = ENOMEM;
    }
    _removeRange(_cursor, _pathOfRoot, shared.begin, shared.end, left);
}

/// False with nothing done when that cannot be.
bool PosixHierarchyWriter::_removeOnTwoThreads(const SharedWork &shared, Omissions &left) {
    if (!_goTo(_cursor, shared.folder)) {
        return false;
    }
    const Place at = _cursor.place(".");
    FileDescriptor folder(uninterrupted([&] { return ::openat(at.folder, at.path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
    if (!folder) {
        return false;
    }
    const std::string path = _pathForTelling();
    PosixFolderCursor other(std::move(folder), shared.folder, _cursor.options());
    Omissions leftByOther;
    PosixSecondThread second;
    if (!second.start([&] { _removeRange(other, path, shared.middle, shared.end, leftByOther); })) {
        return false;
    }
    _removeRange(_cursor, _pathOfRoot, shared.begin, shared.middle, left);
    second.join();
    left.add(std::move(leftByOther));
    return true;
}

void PosixHierarchyWriter::_removeRange(PosixFolderCursor &cursor, std::string_view root, Index first, Index end,
                                        Omissions &left) const noexcept {
    for (Index item = end; item-- > first;) {
        if (_items.has(item, PosixMadeItems::Entered)) {
            continue;
        }
        errno = 0;
        if (!_remove(cursor, item) && errno != 0 && errno != ENOENT) { // 0 and ENOENT: somebody else took it away, or its folder
            left.add(errno, root, cursor.pathFromRoot(), _items.name(item), _items.end());
        }
    }
}

/// What cannot be reached for want of memory stays: the others go all the same.
bool PosixHierarchyWriter::_remove(PosixFolderCursor &cursor, Index item) const noexcept {
    try {
        if (!_goTo(cursor, _items.parent(item))) {
            return false;
        }
        const Place at = cursor.place(_items.name(item));
        const int flags = _items.has(item, PosixMadeItems::Folder) ? AT_REMOVEDIR : 0;
        return ::unlinkat(at.folder, at.path, flags) == 0; // a folder with something foreign in it refuses, and stays
    } catch (const std::bad_alloc &) {
        errno = ENOMEM;
        return false;
    }
}

/// Of the current folder, from the base; shorter where memory does not do for more.
std::string PosixHierarchyWriter::_pathForTelling() const {
    std::string path;
    try {
        path.append(_pathOfRoot).append(_cursor.pathFromRoot());
    } catch (const std::bad_alloc &) {
        return path;
    }
    return path;
}

/// Moves to a folder on the list. Numbers grow on the way down, so what stands deeper than the goal and has a greater
/// number is left, until the goal or one of the folders above it is reached.
bool PosixHierarchyWriter::_goTo(PosixFolderCursor &cursor, Index folder) const {
    std::vector<Index> way;
    for (Index goal = folder; cursor.item() != goal;) {
        if (cursor.item() > goal) {
            cursor.leave();
        } else {
            way.push_back(goal);
            goal = _items.parent(goal);
        }
    }
    for (; !way.empty(); way.pop_back()) {
        if (!_goInto(cursor, way.back())) {
            return false;
        }
    }
    return true;
}

bool PosixHierarchyWriter::_goInto(PosixFolderCursor &cursor, Index folder) const {
    const std::string name(_items.name(folder));
    if (_items.has(folder, PosixMadeItems::Restricted) && !_items.has(folder, PosixMadeItems::Entered)) {
        const Place at = cursor.place(name);
        [[maybe_unused]] const int status = openFolderToOwner(at.folder, at.path);
    }
    const bool isOurs = !_items.has(folder, PosixMadeItems::Entered) && !_items.has(folder, PosixMadeItems::Shared);
    const bool isPrivate = isOurs && (_traits.umask & 0022U) == 0022U && !cursor.options().hasDefaultACL;
    const PosixFolderCursor::Options options = {
        .isPrivate = isPrivate, .anchored = !isOurs, .hasDefaultACL = cursor.options().hasDefaultACL};
    if (!cursor.enter(name, folder, options)) {
        return false;
    }
    const PosixMadeItems::Identity *const identity = _items.identity(folder);
    if (identity != nullptr && cursor.isAnchored() && !(PosixFolderCursor::identityOf(cursor.anchor()) == *identity)) {
        cursor.leave();
        return false;
    }
    return true;
}

} // namespace orvane
