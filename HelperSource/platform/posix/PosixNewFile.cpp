#include "platform/posix/PosixNewFile.h"

#include "platform/posix/PosixWriting.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

constexpr int MostTemporaryNames = 100;
constexpr int NewFile = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;

/// Where a path leads in the end: the target of a link that exists, else the path.
std::string endOfLinks(const std::string &path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : path;
}

} // namespace

bool isUnknownToFileSystem(int error) {
    return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP || error == EPERM;
}

FileDescriptor makeHiddenFile(int folder, std::string &name, mode_t mode) {
    for (int attempt = 0; attempt < MostTemporaryNames; ++attempt) {
        // Those that exist are left over from killed processes of this number.
        name = ".orvane-" + std::to_string(::getpid()) + "-" + std::to_string(attempt);
        FileDescriptor file(uninterrupted([&] { return ::openat(folder, name.c_str(), NewFile, mode); }));
        if (file || errno != EEXIST) {
            return file;
        }
    }
    errno = EBUSY; // the final name may well be free
    return {};
}

bool publishHiddenFile(int folder, const std::string &hidden, const std::string &name) {
    if (::renameat2(folder, hidden.c_str(), folder, name.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (!isUnknownToFileSystem(errno)) {
        return false;
    }
    if (::linkat(folder, hidden.c_str(), folder, name.c_str(), 0) == 0) {
        ::unlinkat(folder, hidden.c_str(), 0);
        return true;
    }
    if (!isUnknownToFileSystem(errno)) {
        return false;
    }
    // The name is taken by an empty file, which the renaming then replaces; closed before, as not all can replace an open one.
    struct stat placeholder {};
    {
        const FileDescriptor file(uninterrupted([&] { return ::openat(folder, name.c_str(), NewFile, 0600); }));
        if (!file || ::fstat(file.get(), &placeholder) != 0) {
            return false;
        }
    }
    const auto isStillOurs = [&] {
        struct stat now {};
        return ::fstatat(folder, name.c_str(), &now, AT_SYMLINK_NOFOLLOW) == 0 && now.st_dev == placeholder.st_dev &&
               now.st_ino == placeholder.st_ino && now.st_size == 0;
    };
    if (!isStillOurs()) {
        errno = EEXIST; // somebody put something else there, or into it
        return false;
    }
    if (::renameat(folder, hidden.c_str(), folder, name.c_str()) == 0) {
        return true;
    }
    const int error = errno;
    if (isStillOurs()) {
        ::unlinkat(folder, name.c_str(), 0);
    }
    errno = error;
    return false;
}

bool writeWholeFile(const std::string &path, std::string_view bytes, bool replaces, mode_t mode) {
    const std::string target = replaces ? endOfLinks(path) : path;
    const std::size_t start = target.rfind('/') + 1;
    const std::string above = start == 0 ? "." : target.substr(0, start);
    const std::string name = target.substr(start);
    const FileDescriptor folder(uninterrupted([&] { return ::open(above.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
    std::string hidden;
    FileDescriptor file = folder ? makeHiddenFile(folder.get(), hidden, mode) : FileDescriptor();
    if (!file) {
        return false;
    }
    const bool written = writeContents(file.get(), bytes) && uninterrupted([&] { return ::fsync(file.get()); }) == 0 && file.closeChecked();
    const bool made = written && (replaces ? ::renameat(folder.get(), hidden.c_str(), folder.get(), name.c_str()) == 0
                                           : publishHiddenFile(folder.get(), hidden, name));
    if (!made) {
        const int error = errno;
        ::unlinkat(folder.get(), hidden.c_str(), 0);
        errno = error;
        return false;
    }
    // Some file systems cannot flush a folder, and some folders may not be read; the new file stands there all the same.
    const FileDescriptor readable(uninterrupted([&] { return ::openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (readable) {
        uninterrupted([&] { return ::fsync(readable.get()); });
    }
    return true;
}

} // namespace orvane
