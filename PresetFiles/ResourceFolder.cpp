#include "ResourceFolder.h"

#include "platform/posix/PosixContentCopy.h"
#include "platform/posix/PosixNewFile.h"
#include "platform/posix/PosixPrivateFolder.h"
#include "platform/posix/PosixWriting.h"
#include "presets/ORVPresetFile.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace orvane {

namespace {

constexpr std::size_t DigestedBytes = std::size_t{16} * 1024;
constexpr std::size_t ComparedAtOnce = std::size_t{64} * 1024;
constexpr off_t StatBlock = 512; ///< unit of `st_blocks` on Linux, stat(2)

/// Reads up to that many bytes at a place; fewer only at the end of the file, or when reading fails.
std::string readAt(int file, off_t place, std::size_t bytes) {
    std::string result(bytes, '\0');
    std::size_t done = 0;
    while (done < bytes) {
        const auto from = place + static_cast<off_t>(done);
        const ssize_t count = uninterrupted([&] { return ::pread(file, &result[done], bytes - done, from); });
        if (count <= 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    result.resize(done);
    return result;
}

/// A digest of size and first bytes by FNV-1a (Fowler, Noll, Vo; 64 bits). It only sorts candidates: equal digests prove nothing.
std::uint64_t digestOf(off_t size, std::string_view start) {
    std::uint64_t digest = 14695981039346656037U ^ static_cast<std::uint64_t>(size);
    for (const char byte : start.substr(0, DigestedBytes)) {
        digest = (digest ^ static_cast<unsigned char>(byte)) * 1099511628211U;
    }
    return digest;
}

PosixExtendedAttributes sorted(PosixExtendedAttributes attributes) {
    std::sort(attributes.begin(), attributes.end(), [](const auto &left, const auto &right) { return left.name < right.name; });
    return attributes;
}

} // namespace

ResourceFolder::~ResourceFolder() {
    for (const std::string &name : _madeFiles) {
        ::unlinkat(_folder.get(), name.c_str(), 0);
    }
    while (!_madeFolders.empty()) {
        ::rmdir(_madeFolders.back().c_str());
        _madeFolders.pop_back();
    }
}

std::optional<std::string> ResourceFolder::addFile(const std::string &name, int file, mode_t mode) {
    struct stat status {};
    if (::fstat(file, &status) != 0) {
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;
        return std::nullopt;
    }
    const bool isSparse = status.st_blocks < status.st_size / StatBlock;
    return _add(name, {file, {}, status.st_size, isSparse, (mode & 0777U) | S_IRUSR, sorted(readExtendedAttributes(file))});
}

std::optional<std::string> ResourceFolder::addBytes(const std::string &name, std::string_view bytes, mode_t mode) {
    return _add(name, {-1, bytes, static_cast<off_t>(bytes.size()), false, (mode & 0777U) | S_IRUSR, {}});
}

bool ResourceFolder::flush() {
    // One call for all, however many they are.
    if (_madeFiles.empty() || uninterrupted([&] { return ::syncfs(_folder.get()); }) == 0) {
        return true;
    }
    if (errno != ENOSYS) {
        return false;
    }
    ::sync(); // for all disks, where one alone cannot be told
    return true;
}

void ResourceFolder::keep() {
    _madeFiles.clear();
    _madeFolders.clear();
}

bool ResourceFolder::_open() {
    if (_folder) {
        return true;
    }
    if (!makePrivateFolders(_path, &_madeFolders)) {
        return false;
    }
    _folder = FileDescriptor(uninterrupted([&] { return ::open(_path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    return static_cast<bool>(_folder);
}

std::optional<std::string> ResourceFolder::_add(const std::string &name, const Source &source) {
    if (!_open()) {
        return std::nullopt;
    }
    Series &series = _series[name];
    const std::string start = source.file < 0 ? std::string() : readAt(source.file, 0, DigestedBytes);
    const std::uint64_t digest = digestOf(source.size, source.file < 0 ? source.bytes : start);
    const auto [first, last] = series.seen.equal_range(digest);
    for (auto candidate = first; candidate != last; ++candidate) {
        if (_isSame(candidate->second, source)) {
            return candidate->second;
        }
    }
    while (!_isToStop()) {
        const std::string candidate = series.next == 1 ? name : ORVNumberedFileName(name, series.next);
        if (_make(candidate, source)) {
            ++series.next;
            series.seen.emplace(digest, candidate);
            return candidate;
        }
        if (errno != EEXIST) {
            return std::nullopt;
        }
        ++series.next;
        if (auto same = _existing(series, candidate, source)) {
            return same;
        }
    }
    return std::nullopt;
}

/// Takes up a name that exists already; the name itself when it can be used for the source.
std::optional<std::string> ResourceFolder::_existing(Series &series, const std::string &name, const Source &source) {
    const FileDescriptor file = _openExisting(name);
    struct stat status {};
    if (file && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode)) {
        series.seen.emplace(digestOf(status.st_size, readAt(file.get(), 0, DigestedBytes)), name);
    }
    return _isSame(name, source) ? std::optional(name) : std::nullopt;
}

FileDescriptor ResourceFolder::_openExisting(const std::string &name) const {
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    return FileDescriptor(uninterrupted([&] { return ::openat(_folder.get(), name.c_str(), flags); }));
}

bool ResourceFolder::_isSame(const std::string &name, const Source &source) {
    const FileDescriptor file = _openExisting(name);
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size != source.size ||
        (status.st_mode & 0777U) != source.mode || sorted(readExtendedAttributes(file.get())) != source.attributes) {
        return false;
    }
    for (off_t place = 0; place < source.size;) {
        if (_isToStop()) {
            return false;
        }
        const std::string mine = readAt(file.get(), place, ComparedAtOnce);
        const std::string other = source.file < 0 ? std::string(source.bytes.substr(static_cast<std::size_t>(place), ComparedAtOnce))
                                                  : readAt(source.file, place, ComparedAtOnce);
        if (mine != other || mine.empty()) {
            return false;
        }
        place += static_cast<off_t>(mine.size());
    }
    return true;
}

/// Makes the file without a name and gives it one when it is whole. False with EEXIST when the name is taken.
bool ResourceFolder::_make(const std::string &name, const Source &source) {
    struct stat status {};
    if (::fstatat(_folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
        errno = EEXIST;
        return false;
    }
    constexpr int flags = O_TMPFILE | O_RDWR | O_CLOEXEC;
    const FileDescriptor file(uninterrupted([&] { return ::openat(_folder.get(), ".", flags, 0600); }));
    if (!file) {
        return (isUnknownToFileSystem(errno) || errno == EISDIR || errno == ENOENT) && _makeByName(name, source);
    }
    if (!_complete(file.get(), source)) {
        return false;
    }
    const std::string self = "/proc/self/fd/" + std::to_string(file.get());
    if (::linkat(AT_FDCWD, self.c_str(), _folder.get(), name.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        return (isUnknownToFileSystem(errno) || errno == ENOENT) && _makeByName(name, source);
    }
    _madeFiles.push_back(name);
    return true;
}

/// The same under a hidden name, for file systems without nameless files.
bool ResourceFolder::_makeByName(const std::string &name, const Source &source) {
    std::string hidden;
    FileDescriptor file = makeHiddenFile(_folder.get(), hidden, 0600);
    if (!file) {
        return false;
    }
    if (!_complete(file.get(), source) || !file.closeChecked() || !publishHiddenFile(_folder.get(), hidden, name)) {
        const int error = errno;
        ::unlinkat(_folder.get(), hidden.c_str(), 0);
        errno = error;
        return false;
    }
    _madeFiles.push_back(name);
    return true;
}

bool ResourceFolder::_complete(int file, const Source &source) const {
    if (!_fill(file, source)) {
        return false;
    }
    // Not every file system takes every attribute, or modes; the contents matter more, and without its mode the file is the user's alone.
    for (const PosixExtendedAttribute &each : source.attributes) {
        ::fsetxattr(file, each.name.c_str(), each.value.data(), each.value.size(), 0);
    }
    if (::fchmod(file, source.mode) == 0) {
        return true;
    }
    const int error = errno;
    struct stat status {};
    const bool canRun = ::fstat(file, &status) == 0 && (status.st_mode & S_IXUSR) != 0;
    errno = error;
    return isUnknownToFileSystem(error) && ((source.mode & S_IXUSR) == 0 || canRun); // a script that cannot be run would fail each creation
}

bool ResourceFolder::_fill(int file, const Source &source) const {
    if (source.file >= 0) {
        return ::lseek(source.file, 0, SEEK_SET) == 0 &&
               copyContents(source.file, file, source.size, source.isSparse, _shouldStop ? &_shouldStop : nullptr);
    }
    for (std::string_view left = source.bytes; !left.empty();) {
        const std::string_view some = left.substr(0, PosixMostBytesUnasked);
        if (_isToStop() || !writeContents(file, some)) {
            return false;
        }
        left.remove_prefix(some.size());
    }
    return true;
}

/// With ECANCELED in `errno` when it is.
bool ResourceFolder::_isToStop() const {
    if (!_shouldStop || !_shouldStop()) {
        return false;
    }
    errno = ECANCELED;
    return true;
}

} // namespace orvane
