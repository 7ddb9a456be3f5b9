#include "platform/posix/PosixFileSystem.h"

#include "platform/posix/PosixPath.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

/// A folder's descriptor; as mere path where it may be passed through but not read.
FileDescriptor openFolder(int at, const char *path) {
    FileDescriptor folder(uninterrupted([&] { return ::openat(at, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!folder && errno == EACCES) {
        folder = FileDescriptor(::openat(at, path, O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
    return folder;
}

std::vector<std::string> componentsOf(std::string_view path) {
    std::vector<std::string> components;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        if (end > 0 && path.substr(0, end) != ".") {
            components.emplace_back(path.substr(0, end));
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return components;
}

/// Opens the deepest folder of the path that is there; `missing` gets the names below it. None when something on the way
/// is no folder or may not be entered.
FileDescriptor openDeepestFolder(std::string_view path, std::vector<std::string> &missing) {
    FileDescriptor folder = openFolder(AT_FDCWD, path.starts_with('/') ? "/" : ".");
    const std::vector<std::string> components = componentsOf(path);
    for (auto component = components.begin(); folder && component != components.end(); ++component) {
        FileDescriptor next = openFolder(folder.get(), component->c_str());
        if (!next && errno == ENOENT) {
            missing.assign(component, components.end());
            return folder;
        }
        folder = std::move(next);
    }
    return folder;
}

} // namespace

bool PosixFileSystem::fileExists(std::string_view path) {
    const PosixPath reached(path);
    struct stat status {};
    return ::fstatat(reached.folder(), reached.path(), &status, 0) == 0;
}

bool PosixFileSystem::isExecutableFile(std::string_view path) {
    const PosixPath reached(path);
    return ::faccessat(reached.folder(), reached.path(), X_OK, AT_EACCESS) == 0;
}

const ContentSource *PosixFileSystem::contentSource(std::string_view path) {
    return _contents.content(path);
}

bool PosixFileSystem::haveContentsChanged() {
    return _contents.haveChanged();
}

void PosixFileSystem::forgetContents() {
    _contents.forget();
}

std::unique_ptr<HierarchyWriter> PosixFileSystem::beginHierarchy(std::string_view basePath) {
    if (basePath.empty() || basePath.find('\0') != std::string_view::npos) {
        errno = EINVAL;
        return nullptr;
    }
    _contents.beginToWatch();
    std::vector<std::string> missing;
    FileDescriptor folder = openFolder(AT_FDCWD, std::string(basePath).c_str());
    if (!folder && (errno == ENOENT || errno == ENAMETOOLONG)) {
        folder = openDeepestFolder(basePath, missing);
    }
    if (!folder) {
        return nullptr;
    }
    auto writer = std::make_unique<PosixHierarchyWriter>(std::move(folder), _processTraits(), _contents);
    for (const std::string &name : missing) {
        if (!writer->enterFolder(name)) {
            const int error = writer->lastError();
            writer->removeEverythingMade();
            errno = error;
            return nullptr;
        }
    }
    writer->settle();
    return writer;
}

mode_t umaskOfSingleThread() {
    const mode_t umask = ::umask(0077);
    ::umask(umask);
    return umask;
}

/// The umask stands in /proc/self/status (Linux 4.7). Asking the system call for it means to change it for a moment, in
/// which another thread could start a program or make a file, so that is left for systems without /proc.
PosixProcessTraits PosixFileSystem::_processTraits() {
    if (_umask) {
        return {*_umask, _log};
    }
    const FileDescriptor status(::open("/proc/self/status", O_RDONLY | O_CLOEXEC));
    std::array<char, 512> text{}; // the line is the second one; names of programs have at most 15 characters
    const ssize_t length = status ? ::read(status.get(), text.data(), text.size() - 1) : -1;
    const std::string_view read(text.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    constexpr std::string_view key = "\nUmask:\t";
    const std::size_t line = read.find(key);
    if (line != std::string_view::npos) {
        _umask = static_cast<mode_t>(std::strtoul(text.data() + line + key.size(), nullptr, 8));
    } else {
        _umask = umaskOfSingleThread();
    }
    return {*_umask, _log};
}

} // namespace orvane
