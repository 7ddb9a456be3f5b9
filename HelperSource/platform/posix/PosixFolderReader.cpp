#include "platform/posix/PosixFolderReader.h"

#include <cerrno>
#include <cstddef>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace orvane {

namespace {

constexpr std::size_t OpenFolders = 32;
constexpr int FolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

unsigned char typeOf(int folder, const dirent &entry) {
    if (entry.d_type != DT_UNKNOWN) {
        return entry.d_type;
    }
    struct stat status {};
    return ::fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 ? static_cast<unsigned char>(IFTODT(status.st_mode))
                                                                              : static_cast<unsigned char>(DT_UNKNOWN);
}

} // namespace

bool PosixFolderReader::descend(int top, const std::string &name) {
    const int from = _frames.empty() ? top : folder();
    Frame frame;
    frame.folder = FileDescriptor(uninterrupted([&] { return ::openat(from, name.c_str(), FolderFlags | O_NOFOLLOW); }));
    struct stat status {};
    if (!frame.folder || ::fstat(frame.folder.get(), &status) != 0) {
        return false;
    }
    frame.identity = {status.st_dev, status.st_ino};
    frame.properties = {modeOfCopy(status), {status.st_atim, status.st_mtim}, readExtendedAttributes(frame.folder.get())};
    if (!_list(frame)) {
        return false;
    }
    _frames.push_back(std::move(frame));
    if (_frames.size() > OpenFolders) {
        _frames[_frames.size() - 1 - OpenFolders].folder.reset();
    }
    return true;
}

bool PosixFolderReader::ascend() {
    const FileDescriptor left = std::move(_frames.back().folder);
    _frames.pop_back();
    if (_frames.empty() || _frames.back().folder) {
        return true;
    }
    FileDescriptor above(uninterrupted([&] { return ::openat(left.get(), "..", FolderFlags); }));
    struct stat status {};
    if (!above || ::fstat(above.get(), &status) != 0) {
        return false;
    }
    if (!(PosixMadeItems::Identity{status.st_dev, status.st_ino} == _frames.back().identity)) {
        errno = ESTALE; // somebody moved the folder away while it was being copied
        return false;
    }
    _frames.back().folder = std::move(above);
    return true;
}

bool PosixFolderReader::takeFolder(std::string &name) {
    std::vector<std::string> &folders = _frames.back().folders;
    if (folders.empty()) {
        return false;
    }
    name = std::move(folders.back());
    folders.pop_back();
    return true;
}

bool PosixFolderReader::_list(Frame &frame) {
    const int folder = ::openat(frame.folder.get(), ".", FolderFlags);
    if (folder < 0) {
        return false;
    }
    const auto close = [](DIR *stream) { ::closedir(stream); };
    const std::unique_ptr<DIR, decltype(close)> stream(::fdopendir(folder), close);
    if (!stream) {
        ::close(folder);
        return false;
    }
    errno = 0;
    while (const dirent *const entry = ::readdir(stream.get())) {
        const std::string name(entry->d_name);
        if (name == "." || name == "..") {
            continue;
        }
        switch (typeOf(folder, *entry)) {
        case DT_DIR:
            frame.folders.push_back(name);
            break;
        case DT_REG:
            frame.entries.push_back({name, Type::File});
            break;
        case DT_LNK:
            frame.entries.push_back({name, Type::Link});
            break;
        default:
            frame.entries.push_back({name, Type::Other});
            break;
        }
        errno = 0;
    }
    return errno == 0;
}

} // namespace orvane
