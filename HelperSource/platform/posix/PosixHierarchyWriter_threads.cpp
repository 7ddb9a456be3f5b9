#include "platform/posix/PosixHierarchyWriter.h"

#include "platform/posix/PosixFileFinisher.h"
#include "platform/posix/PosixSecondThread.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/vfs.h>

// Two threads in one folder: each has a writer with a cursor and a list of its own, so that they share nothing but the
// contents and the disk. When both are done, the second list is put behind the first. Or one makes all of it, and the other one
// completes the files.

namespace orvane {

namespace {

constexpr long XFSMagic = 0x58465342; // "XFSB" (Linux, fs/xfs/libxfs/xfs_format.h, XFS_SUPER_MAGIC)

/// File systems of this machine's own that tell all names apart by their bytes, XFS perhaps but for the case of ASCII
/// letters (its option "ascii-ci"); ext4 and tmpfs unless the folder itself says that it folds case. On any other, two names
/// might be one, and which of them comes first would matter.
bool tellsNamesApart(int folder) {
    struct statfs about {};
    if (::fstatfs(folder, &about) != 0) {
        return false;
    }
    switch (about.f_type) {
    case XFSMagic:
    case BTRFS_SUPER_MAGIC:
        return true;
    case EXT4_SUPER_MAGIC:
    case TMPFS_MAGIC: {
        int flags = 0;
        return ::ioctl(folder, FS_IOC_GETFLAGS, &flags) != 0 || (flags & FS_CASEFOLD_FL) == 0;
    }
    default:
        return false;
    }
}

/// Descriptors that have to be free for two threads: 64 contents and two cursors of up to 130 folders, or one and 192 files to be
/// completed; the rest for whatever else the program does. With fewer, one of the two could take those with which a single thread gets
/// along, and would fail where that one does not.
constexpr rlim_t FreeDescriptors = 512;

/// Hardly any number from `first` on is taken.
bool hasDescriptorsFrom(int first) {
    rlimit limit{};
    return ::getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur >= static_cast<rlim_t>(first) + FreeDescriptors;
}

/// Makes room for all that are open at once before there are two threads: afterwards the table of descriptors would grow no sooner
/// than every processor has been elsewhere for a moment, 10 to 20 ms (Linux, fs/file.c, expand_fdtable).
bool hasRoomForDescriptors(int any) {
    constexpr int Last = 255; // of a table of 256, to which that of a new process (64) grows; three batches of files are 192
    const FileDescriptor last(::fcntl(any, F_DUPFD_CLOEXEC, Last));
    return last && hasDescriptorsFrom(last.get());
}

} // namespace

PosixHierarchyWriter::PosixHierarchyWriter(FileDescriptor folder, const PosixHierarchyWriter &first)
    : _traits(first._traits), _contents(first._contents), _cursor(std::move(folder), PosixMadeItems::Root, first._cursor.options()),
      _ahead(first._ahead), _pathOfRoot(first._cursor.pathFromRoot()), _isBesideAnother(true), _hasMakeNode(first._hasMakeNode),
      _hasUnnamed(first._hasUnnamed) {
    for (AheadFolder &each : _ahead) { // the first entries of the list, which `_append` knows again
        const Index parent = each.parent == FolderAhead::InCurrent ? PosixMadeItems::Root : static_cast<Index>(each.parent + 1);
        each.item = _items.add(parent, each.name, PosixMadeItems::Folder | PosixMadeItems::Entered);
    }
}

TwoThreads PosixHierarchyWriter::makeOnTwoThreads(std::span<const FolderAhead> ahead,
                                                  const std::function<void(HierarchyWriter &writer)> &work) {
    if (_isOver || _isBesideAnother || !_cursor.options().isNew || !_items.hasRoomForAnother() || !hasSecondProcessor()) {
        return TwoThreads::Refused;
    }
    FileDescriptor folder = _openForSecondThread();
    if (!folder) {
        return TwoThreads::Refused;
    }
    if (!_makeAhead(ahead)) {
        return TwoThreads::Failed;
    }
    PosixHierarchyWriter other(std::move(folder), *this);
    SharedWork shared{_cursor.item(), _items.end(), 0, 0};
    PosixSecondThread second;
    if (!second.start([&] { work(other); })) {
        _error = EAGAIN;
        return TwoThreads::Failed;
    }
    _isBesideAnother = true;
    work(*this);
    second.join();
    _isBesideAnother = false;
    shared.middle = _items.end();
    try {
        _shared.reserve(_shared.size() + 1);
        _append(other);
    } catch (const std::bad_alloc &) { // what is not on the list could not be taken away later
        other.removeEverythingMade();
        _error = ENOMEM;
        return TwoThreads::Failed;
    }
    shared.end = _items.end();
    _shared.push_back(shared);
    return TwoThreads::Done;
}

TwoThreads PosixHierarchyWriter::finishOnSecondThread(const std::function<void()> &work, const std::function<void(bool isGood)> &finished) {
    if (_isOver || _isBesideAnother || !_cursor.options().isNew || !hasSecondProcessor() || !hasRoomForDescriptors(_cursor.anchor())) {
        return TwoThreads::Refused;
    }
    std::optional<PosixFileFinisher> finisher;
    try {
        finisher.emplace(finished);
    } catch (const std::bad_alloc &) {
        return TwoThreads::Refused;
    }
    _finisher = &*finisher;
    _isBesideAnother = true;
    try {
        work();
        finisher->end();
    } catch (...) {
        _finisher = nullptr;
        _isBesideAnother = false;
        throw;
    }
    _finisher = nullptr;
    _isBesideAnother = false;
    if (const auto &unfinished = finisher->unfinished(); unfinished.count > 0) {
        if (_omissions.count == 0 || unfinished.first < _omissions.end) { // it was made before that one was noted
            _omissions = {_omissions.count, unfinished.error, _pathBelowBase(unfinished.first), unfinished.first};
        }
        _omissions.count += unfinished.count;
    }
    return finisher->isGood() ? TwoThreads::Done : (_fail(EAGAIN), TwoThreads::Failed);
}

/// Leaves an open file, new in the current folder, to the other thread.
bool PosixHierarchyWriter::_finishLater(std::string_view name, FileDescriptor file, const PosixFileFinish &finish) {
    if (!_note(name)) {
        return false;
    }
    _finisher->add({std::move(file), _items.end() - 1, finish});
    return true;
}

FileDescriptor PosixHierarchyWriter::_openForSecondThread() {
    const Place at = _cursor.place(".");
    FileDescriptor folder(uninterrupted([&] { return ::openat(at.folder, at.path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
    return folder && hasDescriptorsFrom(folder.get()) && tellsNamesApart(folder.get()) ? std::move(folder) : FileDescriptor();
}

bool PosixHierarchyWriter::_makeAhead(std::span<const FolderAhead> ahead) {
    _ahead.clear();
    _inside.clear();
    _aheadDepth = _cursor.depth();
    _aheadIn = _cursor.item();
    for (const FolderAhead &each : ahead) {
        _leaveAheadUpTo(each.parent);
        if (!_mayUse(each.name)) {
            return false;
        }
        if (!_makeFolder(each.name, 0777) || !_enterMadeFolder(each.name)) {
            return _fail(errno);
        }
        const PosixMadeItems::Identity *const identity = _items.identity(_cursor.item());
        _inside.push_back(_ahead.size());
        _ahead.push_back(
            {each.parent, each.name, _cursor.item(), _cursor.options(), identity != nullptr ? std::optional(*identity) : std::nullopt});
    }
    _leaveAheadUpTo(FolderAhead::InCurrent);
    return true;
}

void PosixHierarchyWriter::_leaveAheadUpTo(std::size_t ahead) {
    while (!_inside.empty() && _inside.back() != ahead) {
        leaveFolder({});
    }
}

const PosixHierarchyWriter::AheadFolder *PosixHierarchyWriter::_findAhead(std::string_view name) const {
    if (_ahead.empty() || _cursor.depth() != _aheadDepth + _inside.size()) {
        return nullptr;
    }
    const std::size_t parent = _inside.empty() ? FolderAhead::InCurrent : _inside.back();
    const bool isParent = _cursor.item() == (_inside.empty() ? _aheadIn : _ahead[parent].item);
    const auto found =
        std::find_if(_ahead.begin(), _ahead.end(), [&](const AheadFolder &each) { return each.parent == parent && each.name == name; });
    return isParent && found != _ahead.end() ? &*found : nullptr;
}

bool PosixHierarchyWriter::_enterAhead(const AheadFolder &folder) {
    if (!_cursor.enter(folder.name, folder.item, folder.options)) {
        return false;
    }
    if (folder.identity && !(PosixFolderCursor::identityOf(_cursor.anchor()) == *folder.identity)) {
        _cursor.leave();
        errno = EEXIST; // somebody has put another one in its place
        return false;
    }
    _inside.push_back(static_cast<std::size_t>(&folder - _ahead.data()));
    return true;
}

/// Of an item on the list; empty where memory does not do for that.
std::string PosixHierarchyWriter::_pathBelowBase(Index item) const {
    try {
        std::string path(_items.name(item));
        for (Index folder = _items.parent(item); folder != PosixMadeItems::Root; folder = _items.parent(folder)) {
            path.insert(0, 1, '/').insert(0, _items.name(folder));
        }
        return path.insert(0, _pathOfRoot);
    } catch (const std::bad_alloc &) {
        return {};
    }
}

void PosixHierarchyWriter::_append(PosixHierarchyWriter &other) {
    std::vector<Index> known{_aheadIn};
    for (const AheadFolder &each : _ahead) {
        known.push_back(each.item);
    }
    _items.append(other._items, known);
    _omissions.add(std::move(other._omissions));
}

} // namespace orvane
