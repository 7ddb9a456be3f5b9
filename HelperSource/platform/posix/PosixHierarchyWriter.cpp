#include "platform/posix/PosixHierarchyWriter.h"

#include "platform/posix/PosixFinderAttributes.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/xattr.h>

namespace orvane {

namespace {

constexpr int NewFile = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t OthersMayWrite = 0022;

void setLabelOfOpenItem(int item, int label, bool isNew) {
    int error = 0;
    const PosixExtendedAttributes existing = isNew ? PosixExtendedAttributes() : readFinderAttributes(item, error);
    if (error == 0) {
        writeFinderAttributes(item, attributesForFinderLabel(existing, label));
    }
}

} // namespace

bool setModeOfOpenItem(int item, unsigned mode) {
    if (::fchmod(item, mode & 07777U) == 0) {
        return true;
    }
    // A descriptor that is a mere path (O_PATH) takes no fchmod, but its entry in /proc does take chmod.
    return errno == EBADF && ::chmod(("/proc/self/fd/" + std::to_string(item)).c_str(), mode & 07777U) == 0;
}

bool hasDefaultACL(int folder) {
    return ::fgetxattr(folder, "system.posix_acl_default", nullptr, 0) >= 0 || (errno != ENODATA && errno != EOPNOTSUPP);
}

PosixHierarchyWriter::PosixHierarchyWriter(FileDescriptor base, const PosixProcessTraits &traits, PosixContentStore &contents)
    : _traits(traits), _contents(contents), _cursor(std::move(base)) {
    _cursor.options().hasDefaultACL = hasDefaultACL(_cursor.anchor());
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

/// Names that could lead anywhere else than to an item of the current folder are refused before any call.
bool PosixHierarchyWriter::_mayUse(std::string_view name) {
    const bool isOneComponent = !name.empty() && name != "." && name != ".." && name.find('/') == name.npos && name.find('\0') == name.npos;
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
    const bool isNew = _cursor.options().isNew;
    const bool needsFolder = finish.label != 0 || finish.properties != nullptr;
    FileDescriptor folder;
    if (!_cursor.isAnchored() && (needsFolder || finish.mode)) {
        const Place at = _cursor.currentFolder();
        if (needsFolder) {
            folder = FileDescriptor(::openat(at.folder, at.path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        } else {
            // Failures of label and mode are no failures of the creation.
            [[maybe_unused]] const int result = ::fchmodat(at.folder, at.path, *finish.mode & 07777U, 0);
        }
    }
    FileDescriptor left = _cursor.leave();
    if (left) {
        folder = std::move(left);
    }
    if (!folder) {
        return;
    }
    const bool hasAttributes = finish.properties != nullptr && !finish.properties->attributes.empty();
    if (hasAttributes) {
        writeFinderAttributes(folder.get(), finish.properties->attributes);
    }
    if (finish.label != 0) {
        setLabelOfOpenItem(folder.get(), finish.label, isNew && !hasAttributes);
    }
    if (finish.mode) {
        setModeOfOpenItem(folder.get(), *finish.mode);
    }
    if (finish.properties != nullptr) {
        ::futimens(folder.get(), finish.properties->times.data());
    }
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
    if (setsModeByPath) {
        [[maybe_unused]] const int result = ::fchmodat(at.folder, at.path, plan.final, 0);
    }
    return _note(name);
}

bool PosixHierarchyWriter::_makeLabelledFile(std::string_view name, const ModePlan &plan, int label) {
    const Place at = _cursor.place(name);
    const FileDescriptor file(uninterrupted([&] { return ::openat(at.folder, at.path, NewFile, plan.create); }));
    if (!file) {
        return false;
    }
    if (label != 0) {
        setLabelOfOpenItem(file.get(), label, true);
    }
    if (plan.isSeparate) {
        setModeOfOpenItem(file.get(), plan.final);
    }
    return _note(name);
}

/// Empties a file that this writer made before. Whoever could put another file in its place must not have it emptied:
/// a symbolic link, another owner's file and one with a second name are refused.
bool PosixHierarchyWriter::_emptyAgain(std::string_view name, const ItemAttributes &attributes) {
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
        setLabelOfOpenItem(file.get(), attributes.label, false);
    }
    if (attributes.mode) {
        setModeOfOpenItem(file.get(), *attributes.mode);
    }
    return true;
}

} // namespace orvane
