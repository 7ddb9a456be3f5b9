#include "platform/posix/PosixHierarchyWriter.h"

#include <cerrno>
#include <vector>

#include <fcntl.h>

// Removal goes through the list of what was made from its end, so that a folder is empty of ours when its turn comes. It
// asks the disk nothing: no listing, no state. The items of one folder lie together on the list, so the way from one to
// the next is short, and the whole costs about one call an item.

namespace orvane {

void PosixHierarchyWriter::removeEverythingMade() {
    _removeFrom(PosixMadeItems::Root + 1);
    _items.truncate(PosixMadeItems::Root + 1);
    _isOver = true;
}

void PosixHierarchyWriter::_removeFrom(Index first) {
    for (Index item = _items.end(); item-- > first;) {
        if (_items.has(item, PosixMadeItems::Entered) || !_goTo(_items.parent(item))) {
            continue;
        }
        const Place at = _cursor.place(_items.name(item));
        const int flags = _items.has(item, PosixMadeItems::Folder) ? AT_REMOVEDIR : 0;
        static_cast<void>(::unlinkat(at.folder, at.path, flags)); // a folder with something foreign in it refuses, and stays
    }
}

/// Moves to a folder on the list. Numbers grow on the way down, so what stands deeper than the goal and has a greater
/// number is left, until the goal or one of the folders above it is reached.
bool PosixHierarchyWriter::_goTo(Index folder) {
    std::vector<Index> way;
    for (Index goal = folder; _cursor.item() != goal;) {
        if (_cursor.item() > goal) {
            _cursor.leave();
        } else {
            way.push_back(goal);
            goal = _items.parent(goal);
        }
    }
    for (; !way.empty(); way.pop_back()) {
        if (!_goInto(way.back())) {
            return false;
        }
    }
    return true;
}

bool PosixHierarchyWriter::_goInto(Index folder) {
    const std::string name(_items.name(folder));
    if (_items.has(folder, PosixMadeItems::Restricted) && !_items.has(folder, PosixMadeItems::Entered)) {
        const Place at = _cursor.place(name);
        const FileDescriptor restricted(::openat(at.folder, at.path, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (restricted) {
            setModeOfOpenItem(restricted.get(), 0700);
        }
    }
    const bool isOurs = !_items.has(folder, PosixMadeItems::Entered) && !_items.has(folder, PosixMadeItems::Shared);
    const bool isPrivate = isOurs && (_traits.umask & 0022U) == 0022U && !_cursor.options().hasDefaultACL;
    const PosixFolderCursor::Options options = {
        .isPrivate = isPrivate, .anchored = !isOurs, .hasDefaultACL = _cursor.options().hasDefaultACL};
    if (!_cursor.enter(name, folder, options)) {
        return false;
    }
    const PosixMadeItems::Identity *const identity = _items.identity(folder);
    if (identity != nullptr && _cursor.isAnchored() && !(PosixFolderCursor::identityOf(_cursor.anchor()) == *identity)) {
        _cursor.leave();
        return false;
    }
    return true;
}

} // namespace orvane
