#include "platform/posix/PosixHierarchyWriter.h"

#include "platform/posix/PosixFileFinisher.h"
#include "platform/posix/PosixFinderAttributes.h"
#include "platform/posix/PosixItemFinish.h"

#include <cerrno>
#include <new>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/xattr.h>

namespace orvane {

namespace {

constexpr int NewFile = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t OthersMayWrite = 0022;

} // namespace

bool hasDefaultACL(int folder) {
    return ::fgetxattr(folder, "system.posix_acl_default", nullptr, 0) >= 0 || (errno != ENODATA && errno != EOPNOTSUPP);
}

PosixHierarchyWriter::PosixHierarchyWriter(FileDescriptor base, const PosixProcessTraits &traits, PosixContentStore &contents)
    : _traits(traits), _contents(contents), _cursor(std::move(base)) {
    _cursor.options().hasDefaultACL = hasDefaultACL(_cursor.anchor());
}

PosixHierarchyWriter::~PosixHierarchyWriter() {
    if (!_isOver) {
        _logOmissions("A label, permissions or times could not be set", _omissions);
    }
}

bool PosixHierarchyWriter::enterFolder(std::string_view name) {
    if (!_mayUse(name)) {
        return false;
    }
    if (const AheadFolder *const ahead = _findAhead(name)) {
        return _enterAhead(*ahead) || _fail(errno);
    }
    if (_makeFolder(name, 0777)) {
        return _enterMadeFolder(name) || _fail(errno);
    }
    return (errno == EEXIST && _enterExistingFolder(name)) || _fail(errno);
}

void PosixHierarchyWriter::leaveFolder(const ItemAttributes &attributes) {
    if (!_ahead.empty() && _cursor.depth() == _aheadDepth + _inside.size()) {
        if (_inside.empty()) {
            _ahead.clear(); // the folder that two threads shared is complete
        } else {
            _inside.pop_back();
        }
    }
    if (_cursor.depth() > _baseDepth) {
        _finishFolder({attributes.label, attributes.mode, nullptr});
    }
}

bool PosixHierarchyWriter::copyItem(std::string_view name, const ContentSource &source, const ItemAttributes &attributes) {
    if (!_mayUse(name)) {
        return false;
    }
    const auto &content = static_cast<const PosixContent &>(source);
    const bool done = content.isFolder() ? _copyFolder(name, content, attributes) : _copyFile(name, content, attributes);
    return done || _fail(errno);
}

bool PosixHierarchyWriter::makeEmptyFile(std::string_view name, const ItemAttributes &attributes) {
    if (!_mayUse(name)) {
        return false;
    }
    if (_makeNewEmptyFile(name, attributes)) {
        return true;
    }
    return (errno == EEXIST && _emptyAgain(name, attributes)) || _fail(errno);
}

bool PosixHierarchyWriter::_fail(int error) {
    _error = error;
    return false;
}

void PosixHierarchyWriter::_noteOmission(std::string_view name, int error) {
    if (error != 0) {
        _omissions.add(error, _pathOfRoot, _cursor.pathFromRoot(), name, _items.end());
    }
}

void PosixHierarchyWriter::Omissions::add(int why, std::string_view root, std::string_view folder, std::string_view name, Index listEnd) {
    if (count++ > 0) {
        return;
    }
    error = why;
    end = listEnd;
    try {
        first.assign(root).append(folder).append(name);
    } catch (const std::bad_alloc &) { // the item has yet to get on the list: nothing may keep it from that
        return;
    }
}

void PosixHierarchyWriter::Omissions::add(Omissions &&others) {
    if (count == 0) {
        *this = std::exchange(others, {});
    } else {
        count += std::exchange(others.count, 0);
    }
}

void PosixHierarchyWriter::_logOmissions(std::string_view what, const Omissions &omissions) const {
    if (_traits.log == nullptr || omissions.count == 0) {
        return;
    }
    try {
        const std::string others = omissions.count > 1 ? " (" + std::to_string(omissions.count - 1) + " more like it)" : "";
        _traits.log->log(std::string(what) + ": '" + omissions.first + "': " + std::generic_category().message(omissions.error) + others);
    } catch (const std::bad_alloc &) { // what is only told need not be
        return;
    }
}

/// Names that could lead anywhere else than to an item of the current folder are refused before any call.
bool PosixHierarchyWriter::_mayUse(std::string_view name) {
    const bool isOneComponent = !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos &&
                                name.find('\0') == std::string_view::npos;
    return (isOneComponent && !_isOver) || _fail(EINVAL);
}

/// The umask and a default ACL take bits away from the mode in a call that makes an item; the three bits above the
/// permissions are left to a call of their own on every file system. Extended attributes can be written only while the
/// owner may write.
PosixHierarchyWriter::ModePlan PosixHierarchyWriter::_planMode(std::optional<unsigned> mode, bool writesAttributes) const {
    if (!mode) {
        return {0666, 0, false};
    }
    const mode_t final = *mode & 07777U;
    const mode_t create = (final & 0777U) | (writesAttributes ? 0600U : 0U);
    return {create, final, create != final || (create & _traits.umask) != 0 || _cursor.options().hasDefaultACL};
}

/// Puts a file or link on the list of what was made. What does not fit there is taken away again.
bool PosixHierarchyWriter::_note(std::string_view name) {
    if (_items.add(_cursor.item(), name, 0) != PosixMadeItems::None) {
        return true;
    }
    errno = ENOMEM;
    _drop(name);
    return false;
}

void PosixHierarchyWriter::_drop(std::string_view name) {
    const int error = errno;
    const Place at = _cursor.place(name);
    ::unlinkat(at.folder, at.path, 0);
    errno = error;
}

bool PosixHierarchyWriter::_makeFolder(std::string_view name, mode_t mode) {
    const Place at = _cursor.place(name);
    return ::mkdirat(at.folder, at.path, mode) == 0;
}

bool PosixHierarchyWriter::_enterMadeFolder(std::string_view name) {
    const PosixFolderCursor::Options parent = _cursor.options();
    const Index item = _items.add(_cursor.item(), name, PosixMadeItems::Folder);
    errno = ENOMEM;
    const PosixFolderCursor::Options options = {.isPrivate = (_traits.umask & OthersMayWrite) == OthersMayWrite && !parent.hasDefaultACL,
                                                .hasDefaultACL = parent.hasDefaultACL,
                                                .isNew = true};
    if (item == PosixMadeItems::None || !_cursor.enter(name, item, options)) {
        const int error = errno;
        const Place at = _cursor.place(name);
        ::unlinkat(at.folder, at.path, AT_REMOVEDIR);
        _items.truncate(item);
        errno = error;
        return false;
    }
    if (!parent.isPrivate) {
        _lookAtOpenFolder(item);
    }
    return true;
}

/// A folder that was there before may hold anything and belong to anyone, so nothing is taken for granted in it; one that
/// this writer made and left is treated the same, as its mode may have opened it to others.
bool PosixHierarchyWriter::_enterExistingFolder(std::string_view name) {
    Index item = _items.find(_cursor.item(), name);
    const bool isNoted = item != PosixMadeItems::None;
    if (!isNoted) {
        item = _items.add(_cursor.item(), name, PosixMadeItems::Folder | PosixMadeItems::Entered);
    }
    errno = ENOMEM;
    if (item == PosixMadeItems::None || !_cursor.enter(name, item, {.anchored = true})) {
        const int error = errno;
        if (!isNoted) {
            _items.truncate(item);
        }
        errno = error;
        return false;
    }
    _cursor.options().hasDefaultACL = hasDefaultACL(_cursor.anchor());
    return true;
}

/// A folder just made in a place where others can write: it is ours only if nobody put another in its place meanwhile.
void PosixHierarchyWriter::_lookAtOpenFolder(Index item) {
    struct stat status {};
    const bool known = ::fstat(_cursor.anchor(), &status) == 0;
    if (known) {
        _items.identify(item, {status.st_dev, status.st_ino});
    }
    if (!known || status.st_uid != ::geteuid() || (status.st_mode & OthersMayWrite) != 0) {
        _cursor.options().isPrivate = false;
        _items.mark(item, PosixMadeItems::Shared);
    }
}

void PosixHierarchyWriter::_rememberMode(Index item, unsigned mode) {
    if ((mode & 0700U) != 0700U) {
        _items.mark(item, PosixMadeItems::Restricted);
    }
    if ((mode & OthersMayWrite) != 0) {
        _items.mark(item, PosixMadeItems::Shared);
    }
}

/// Label first and mode last, because a folder without the owner's right to write takes no label.
void PosixHierarchyWriter::_finishFolder(const FolderFinish &finish) {
    if (finish.mode) {
        _rememberMode(_cursor.item(), *finish.mode);
    }
    const Index item = _cursor.item();
    const bool isNew = _cursor.options().isNew;
    const bool needsFolder = finish.label != 0 || finish.properties != nullptr;
    FileDescriptor folder;
    int error = 0;
    if (!_cursor.isAnchored() && (needsFolder || finish.mode)) {
        const Place at = _cursor.currentFolder();
        if (needsFolder) {
            folder = FileDescriptor(::openat(at.folder, at.path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
            error = folder ? 0 : errno;
        }
        if (!folder && finish.mode) { // also where it could not be opened: then it has its mode at least
            const int status = ::fchmodat(at.folder, at.path, *finish.mode & 07777U, 0) == 0 ? 0 : errno;
            error = error != 0 ? error : status;
        }
    }
    FileDescriptor left = _cursor.leave();
    if (left) {
        folder = std::move(left);
    }
    if (folder) {
        error = _finishOpenFolder(folder.get(), finish, isNew);
    }
    // Failures of label and mode are no failures of the creation.
    _noteOmission(_items.name(item), error);
}

/// 0, or the first failure's `errno`.
int PosixHierarchyWriter::_finishOpenFolder(int folder, const FolderFinish &finish, bool isNew) {
    int error = 0;
    const auto note = [&error](int status) { error = error != 0 ? error : status; };
    const bool hasAttributes = finish.properties != nullptr && !finish.properties->attributes.empty();
    if (hasAttributes) {
        note(writeFinderAttributes(folder, finish.properties->attributes));
    }
    if (finish.label != 0) {
        note(setLabelOfOpenItem(folder, finish.label, isNew && !hasAttributes));
    }
    if (finish.mode) {
        note(setModeOfOpenItem(folder, *finish.mode));
    }
    if (finish.properties != nullptr) {
        note(::futimens(folder, finish.properties->times.data()) == 0 ? 0 : errno);
    }
    return error;
}

bool PosixHierarchyWriter::_makeNewEmptyFile(std::string_view name, const ItemAttributes &attributes) {
    const ModePlan plan = _planMode(attributes.mode, attributes.label != 0);
    const bool setsModeByPath = plan.isSeparate && _cursor.options().isPrivate;
    if (!_hasMakeNode || attributes.label != 0 || (plan.isSeparate && !setsModeByPath)) {
        return _makeLabelledFile(name, plan, attributes.label);
    }
    const Place at = _cursor.place(name);
    if (::mknodat(at.folder, at.path, S_IFREG | plan.create, 0) != 0) {
        if (errno == EPERM || errno == EINVAL || errno == EOPNOTSUPP || errno == ENOSYS) {
            _hasMakeNode = false;
            return _makeLabelledFile(name, plan, 0);
        }
        return false;
    }
    if (setsModeByPath && ::fchmodat(at.folder, at.path, plan.final, 0) != 0) {
        _noteOmission(name, errno);
    }
    return _note(name);
}

bool PosixHierarchyWriter::_makeLabelledFile(std::string_view name, const ModePlan &plan, int label) {
    const Place at = _cursor.place(name);
    FileDescriptor file(uninterrupted([&] { return ::openat(at.folder, at.path, NewFile, plan.create); }));
    if (!file) {
        return false;
    }
    const PosixFileFinish finish{nullptr, label, plan.separately()};
    if (_finisher != nullptr) {
        return _finishLater(name, std::move(file), finish);
    }
    _noteOmission(name, finishNewFile(file.get(), finish));
    return _note(name);
}

/// Empties a file that this writer made before. Whoever could put another file in its place must not have it emptied:
/// a symbolic link, another owner's file and one with a second name are refused.
bool PosixHierarchyWriter::_emptyAgain(std::string_view name, const ItemAttributes &attributes) {
    if (_finisher != nullptr) {
        _finisher->wait(); // it may be about to get contents
    }
    const Index item = _items.find(_cursor.item(), name);
    if (item == PosixMadeItems::None || _items.has(item, PosixMadeItems::Folder)) {
        errno = EEXIST;
        return false;
    }
    const Place at = _cursor.place(name);
    const FileDescriptor file(
        uninterrupted([&] { return ::openat(at.folder, at.path, O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        return false;
    }
    if (!S_ISREG(status.st_mode) || status.st_nlink != 1 || status.st_uid != ::geteuid()) {
        errno = EEXIST;
        return false;
    }
    if (::ftruncate(file.get(), 0) != 0) {
        return false;
    }
    if (attributes.label != 0) {
        _noteOmission(name, setLabelOfOpenItem(file.get(), attributes.label, false));
    }
    if (attributes.mode) {
        _noteOmission(name, setModeOfOpenItem(file.get(), *attributes.mode));
    }
    return true;
}

} // namespace orvane
