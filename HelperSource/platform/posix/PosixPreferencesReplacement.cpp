#include "platform/posix/PosixPreferencesReplacement.h"

#include "platform/posix/PosixExtendedAttributes.h"
#include "platform/posix/PosixNewFile.h"
#include "platform/posix/PosixPreferencesLock.h"
#include "platform/posix/PosixWriting.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/xattr.h>

namespace orvane {

namespace {

constexpr std::size_t CopyBuffer = std::size_t{256} * 1024;
constexpr int MostTemporaryNames = 100;

} // namespace

PosixPreferencesReplacement::~PosixPreferencesReplacement() {
    if (!_temporaryName.empty()) {
        ::unlinkat(_folder.get(), _temporaryName.c_str(), 0);
    }
}

bool PosixPreferencesReplacement::_fail(const char *what) {
    _why = std::string(what) + ": " + std::strerror(errno);
    return false;
}

bool PosixPreferencesReplacement::begin(const std::string &target) {
    const std::string folder = folderOfPreferencesPath(target);
    _name = target.substr(target.find_last_of('/') + 1); // npos + 1 is 0
    _folder = FileDescriptor(uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!_folder) {
        return _fail("its folder cannot be opened");
    }
    for (int i = 0; i < MostTemporaryNames; ++i) {
        const std::string name = ".orvane-preferences-" + std::to_string(i) + ".tmp";
        if (_create(name)) {
            return true;
        }
        if (errno != EEXIST) {
            return _fail("a temporary file cannot be made in its folder");
        }
        if (_removeLeftover(name) && _create(name)) {
            return true;
        }
    }
    return _fail("a temporary file cannot be made in its folder");
}

/// Every program locks its temporary file as long as it works on it, which tells live ones from leftovers. False with EEXIST
/// when the name is taken, be it between making and locking. A file that cannot be locked or looked at is taken
/// away again.
bool PosixPreferencesReplacement::_create(const std::string &name) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    _file = FileDescriptor(uninterrupted([&] { return ::openat(_folder.get(), name.c_str(), flags, 0600); }));
    if (!_file) {
        return false;
    }
    struct stat status {};
    const bool isLocked = uninterrupted([&] { return ::flock(_file.get(), LOCK_EX | LOCK_NB); }) == 0;
    const bool isTaken = !isLocked && errno == EWOULDBLOCK; // by somebody who holds it for a leftover and will remove it
    if (!isTaken && (!isLocked || ::fstat(_file.get(), &status) != 0)) {
        const int error = errno;
        ::unlinkat(_folder.get(), name.c_str(), 0);
        _file.reset();
        errno = error;
        return false;
    }
    if (isTaken || status.st_nlink == 0) {
        _file.reset();
        errno = EEXIST;
        return false;
    }
    _temporaryName = name;
    return true;
}

bool PosixPreferencesReplacement::_removeLeftover(const std::string &name) {
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const FileDescriptor leftover(uninterrupted([&] { return ::openat(_folder.get(), name.c_str(), flags); }));
    return leftover && ::flock(leftover.get(), LOCK_EX | LOCK_NB) == 0 && ::unlinkat(_folder.get(), name.c_str(), 0) == 0;
}

bool PosixPreferencesReplacement::write(std::string_view bytes) {
    return writeContents(_file.get(), bytes) || _fail("it cannot be written");
}

bool PosixPreferencesReplacement::copy(int file, std::uint64_t begin, std::uint64_t end) {
    const std::size_t size = std::min<std::uint64_t>(CopyBuffer, end - begin);
    const auto buffer = std::make_unique_for_overwrite<char[]>(std::max<std::size_t>(size, 1));
    while (begin < end) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, end - begin));
        const ssize_t count = uninterrupted([&] { return ::pread(file, buffer.get(), wanted, static_cast<off_t>(begin)); });
        if (count <= 0) {
            errno = count == 0 ? EAGAIN : errno; // it shrank meanwhile
            return _fail("the old file cannot be read");
        }
        if (!write({buffer.get(), static_cast<std::size_t>(count)})) {
            return false;
        }
        begin += static_cast<std::uint64_t>(count);
    }
    return true;
}

bool PosixPreferencesReplacement::takeAttributes(int oldFile) {
    struct stat old {};
    struct stat mine {};
    if (::fstat(oldFile, &old) != 0 || ::fstat(_file.get(), &mine) != 0) {
        return _fail("its attributes cannot be read");
    }
    if ((old.st_uid != mine.st_uid || old.st_gid != mine.st_gid) && ::fchown(_file.get(), old.st_uid, old.st_gid) != 0) {
        return _fail("its owner cannot be kept");
    }
    // A file system without modes gives all files the same one, and may refuse to be asked for it.
    const mode_t mode = old.st_mode & 07777U;
    if (mode != (mine.st_mode & 07777U) && ::fchmod(_file.get(), mode) != 0) {
        return _fail("its mode cannot be kept");
    }
    return _takeExtendedAttributes(oldFile);
}

/// Labels of a security module are set by the system and mostly nobody's to pass on, so they may be refused.
bool PosixPreferencesReplacement::_takeExtendedAttributes(int oldFile) {
    const auto names = extendedAttributeNames(oldFile);
    if (!names) {
        return _fail("its extended attributes cannot be read");
    }
    for (const std::string &name : *names) {
        const auto value = readExtendedAttribute(oldFile, name.c_str());
        const bool kept = value && ::fsetxattr(_file.get(), name.c_str(), value->data(), value->size(), 0) == 0;
        if (!kept && !name.starts_with("security.")) {
            return _fail("its extended attributes cannot be kept");
        }
    }
    return true;
}

bool PosixPreferencesReplacement::_isUnchanged(const std::optional<PosixPreferencesIdentity> &old) const {
    struct stat status {};
    if (::fstatat(_folder.get(), _name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno == ENOENT && !old;
    }
    return old && PosixPreferencesIdentity::of(status) == *old;
}

/// Where nothing may be replaced and the file system cannot promise that, the check just before has to do.
bool PosixPreferencesReplacement::_rename(bool mayReplace) {
    const int folder = _folder.get();
    if (!mayReplace) {
        if (::renameat2(folder, _temporaryName.c_str(), folder, _name.c_str(), RENAME_NOREPLACE) == 0) {
            return true;
        }
        if (!isUnknownToFileSystem(errno)) {
            return false;
        }
    }
    return ::renameat(folder, _temporaryName.c_str(), folder, _name.c_str()) == 0;
}

PosixPreferencesReplacement::Outcome PosixPreferencesReplacement::publish(const std::optional<PosixPreferencesIdentity> &old) {
    if (uninterrupted([&] { return ::fsync(_file.get()); }) != 0) {
        _fail("it cannot be written");
        return Outcome::Failed;
    }
    if (!_isUnchanged(old)) {
        return Outcome::TargetChanged;
    }
    if (!_rename(old.has_value())) {
        const bool appeared = errno == EEXIST && !old;
        _fail("it cannot be replaced");
        return appeared ? Outcome::TargetChanged : Outcome::Failed;
    }
    _temporaryName.clear();
    // Some file systems cannot flush a folder; the new file stands in it all the same.
    uninterrupted([&] { return ::fsync(_folder.get()); });
    return Outcome::Published;
}

} // namespace orvane
