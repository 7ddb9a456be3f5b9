#include "platform/posix/PosixHierarchyWriter.h"

#include "platform/posix/PosixContentCopy.h"
#include "platform/posix/PosixFileFinisher.h"
#include "platform/posix/PosixWriting.h"

#include <cerrno>
#include <cstdio>
#include <string>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/stat.h>
#include <unistd.h>

// Copies of content files. A small one is written from memory by a single call into the new file; a process killed before
// that call leaves an empty file at worst. A large one takes several calls, so it is written under no name at all and
// gets its name when it is complete; where the file system has no files without names, under a hidden one.

namespace orvane {

namespace {

constexpr int NewFile = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;

} // namespace

bool PosixHierarchyWriter::_copyFile(std::string_view name, const PosixContent &content, const ItemAttributes &attributes) {
    const bool writesAttributes = attributes.label != 0 || !content.properties().attributes.empty();
    const ModePlan plan = _planMode(attributes.mode.value_or(content.properties().mode), writesAttributes);
    const PosixFileFinish finish{&content, attributes.label, plan.separately()};
    return content.isInMemory() ? _copySmall(name, content, plan, finish) : _copyLarge(name, content, plan, finish);
}

bool PosixHierarchyWriter::_copySmall(std::string_view name, const PosixContent &content, const ModePlan &plan,
                                      const PosixFileFinish &finish) {
    const Place at = _cursor.place(name);
    FileDescriptor file(uninterrupted([&] { return ::openat(at.folder, at.path, NewFile, plan.create); }));
    if (!file) {
        return false;
    }
    if (_finisher != nullptr && content.isKept()) {
        return _finishLater(name, std::move(file), finish);
    }
    if (writeContents(file.get(), content.bytes())) {
        _noteOmission(name, finishNewFile(file.get(), finish));
        if (file.closeChecked()) {
            return _note(name);
        }
    }
    _drop(name);
    return false;
}

bool PosixHierarchyWriter::_copyLarge(std::string_view name, const PosixContent &content, const ModePlan &plan,
                                      const PosixFileFinish &finish) {
    PosixContent::Opened source = content.opened();
    if (!source && errno == EMFILE) {
        _contents.closeAll();
        source = content.opened();
    }
    struct stat status {};
    const Place at = _cursor.place(name);
    if (!source) {
        return false;
    }
    if (::fstatat(at.folder, at.path, &status, AT_SYMLINK_NOFOLLOW) == 0) {
        errno = EEXIST; // known before gigabytes are copied; the publication itself refuses as well
        return false;
    }
    std::string hidden;
    FileDescriptor file = _openUnnamed(plan);
    if (!file) {
        file = _openHidden(plan, hidden);
    }
    bool done = file && copyContents(source->get(), file.get(), content.size(), content.isSparse());
    if (done) {
        _noteOmission(name, finishNewFile(file.get(), finish));
        done = hidden.empty() ? _publishUnnamed(file.get(), name) : file.closeChecked() && _publishHidden(hidden, name);
    }
    if (!done && !hidden.empty()) {
        _drop(hidden);
    }
    return done && _note(name);
}

/// A file that has no name yet, in the current folder. None where that is not possible.
FileDescriptor PosixHierarchyWriter::_openUnnamed(const ModePlan &plan) {
    if (!_hasUnnamed || ::access("/proc/self/fd", X_OK) != 0) { // through which such a file gets its name
        return {};
    }
    const Place at = _cursor.currentFolder();
    const char *const folder = at.path[0] == '\0' ? "." : at.path;
    FileDescriptor file(uninterrupted([&] { return ::openat(at.folder, folder, O_TMPFILE | O_WRONLY | O_CLOEXEC, plan.create); }));
    _hasUnnamed = file || (errno != EOPNOTSUPP && errno != EISDIR);
    return file;
}

FileDescriptor PosixHierarchyWriter::_openHidden(const ModePlan &plan, std::string &hiddenName) {
    constexpr int attempts = 100; // others of the same name can only be left over from a killed process of this number
    FileDescriptor file;
    for (int i = 0; i < attempts && !file && (i == 0 || errno == EEXIST); ++i) {
        hiddenName = ".orvane-" + std::to_string(::getpid()) + '-' + std::to_string(_hiddenNames++);
        const Place at = _cursor.place(hiddenName);
        file = FileDescriptor(uninterrupted([&] { return ::openat(at.folder, at.path, NewFile, plan.create); }));
    }
    if (!file) {
        hiddenName.clear();
    }
    return file;
}

bool PosixHierarchyWriter::_publishUnnamed(int file, std::string_view name) {
    const Place at = _cursor.place(name);
    const std::string path = "/proc/self/fd/" + std::to_string(file);
    return ::linkat(AT_FDCWD, path.c_str(), at.folder, at.path, AT_SYMLINK_FOLLOW) == 0;
}

/// Gives the hidden file its name unless something has it. Where the file system cannot refuse in one step, the name is
/// first taken by an empty file, which the renaming then replaces.
bool PosixHierarchyWriter::_publishHidden(const std::string &hiddenName, std::string_view name) {
    const std::string from(_cursor.place(hiddenName).path);
    const Place at = _cursor.place(name);
    if (::renameat2(at.folder, from.c_str(), at.folder, at.path, RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) {
        return false;
    }
    const FileDescriptor placeholder(::openat(at.folder, at.path, NewFile, 0600));
    if (!placeholder) {
        return false;
    }
    if (::renameat(at.folder, from.c_str(), at.folder, at.path) == 0) {
        return true;
    }
    _drop(name);
    return false;
}

} // namespace orvane
