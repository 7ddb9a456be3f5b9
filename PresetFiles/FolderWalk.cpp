#include "FolderWalk.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/propertylist/PropertyListText.h"
#include "ports/FinderLabel.h"
#include "ports/UTF16.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace orvane {

namespace {

constexpr std::size_t MostItems = 1'000'000;
/// Folders from the current one upwards that are kept open. One that was closed is opened again through "..", which needs the
/// permission to search the folder below; the walk has used that permission by then.
constexpr std::size_t MostOpenFolders = 32;
constexpr mode_t PermissionBits = 0777;
constexpr int OpenFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

constexpr FixedText LeftOut = forTranslation("%1: left out: %2");
constexpr FixedText ContentsLeftOut = forTranslation("%1: its contents are left out: %2");

/// Names in an open folder, sorted byte by byte; nothing, with `errno`, when it cannot be read to its end.
std::optional<std::vector<std::string>> namesIn(int folder) {
    const int own = ::fcntl(folder, F_DUPFD_CLOEXEC, 0); // opening "." would need the permission to search the folder
    const auto close = [](DIR *stream) { ::closedir(stream); };
    const std::unique_ptr<DIR, decltype(close)> stream(own < 0 ? nullptr : ::fdopendir(own), close);
    const FileDescriptor left(stream ? -1 : own); // what no stream has taken over, none does close
    if (!stream) {
        return std::nullopt;
    }
    std::vector<std::string> names;
    errno = 0;
    while (const dirent *entry = ::readdir(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            names.emplace_back(name);
        }
        errno = 0;
    }
    if (errno != 0) {
        return std::nullopt;
    }
    std::sort(names.begin(), names.end());
    return names;
}

FixedText nameOfType(mode_t mode) {
    switch (mode & S_IFMT) {
    case S_IFLNK:
        return forTranslation("a symbolic link");
    case S_IFIFO:
        return forTranslation("a FIFO");
    case S_IFSOCK:
        return forTranslation("a socket");
    default:
        return forTranslation("a device");
    }
}

struct Identity {
    dev_t device = 0;
    ino_t inode = 0;
    bool operator==(const Identity &) const = default;
};

Identity identityOf(int folder) {
    struct stat status {};
    return ::fstat(folder, &status) == 0 ? Identity{status.st_dev, status.st_ino} : Identity{};
}

} // namespace

/// A folder that the walk is in.
struct FolderWalk::Folder {
    FileDescriptor descriptor; ///< closed while the walk is far below
    Identity identity;
    std::size_t item;
    std::vector<std::string> names;
    std::size_t next = 0;
};

bool FolderWalk::walk(const std::string &path, const std::string &name, const FileHandler &handleFile, Sentence &why) {
    FileDescriptor top(uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC); }));
    auto names = top ? namesIn(top.get()) : std::nullopt;
    struct stat status {};
    if (!names || ::fstat(top.get(), &status) != 0) {
        why = Sentence::ofError(errno);
        return false;
    }
    _items.push_back({name, 0, true, status.st_mode & PermissionBits, 0, {}});
    std::uint16_t flags = 0;
    if (_finderInformation.readFlags("/proc/self/fd/" + std::to_string(top.get()) + "/.", flags) == 0) {
        _items[0].label = finderLabelOfFlags(flags);
    }
    std::vector<Folder> open;
    open.push_back({std::move(top), {status.st_dev, status.st_ino}, 0, std::move(*names)});
    while (!open.empty()) {
        if (_shouldStop && _shouldStop()) {
            why = Sentence::ofError(ECANCELED);
            return false;
        }
        Folder &folder = open.back();
        if (folder.next < folder.names.size()) {
            const std::string child = std::move(folder.names[folder.next++]);
            if (!_visit(open, child, handleFile)) {
                why = forTranslation("it holds more than 1,000,000 items");
                return false;
            }
            continue;
        }
        const Folder left = std::move(open.back());
        open.pop_back();
        if (!open.empty() && !open.back().descriptor) {
            open.back().descriptor =
                FileDescriptor(uninterrupted([&] { return ::openat(left.descriptor.get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC); }));
            if (!open.back().descriptor || identityOf(open.back().descriptor.get()) != open.back().identity) {
                why = forTranslation("it was changed while it was read");
                return false;
            }
        }
    }
    return true;
}

/// Takes up one name of the folder that the walk is in. False when there are too many items.
bool FolderWalk::_visit(std::vector<Folder> &open, const std::string &name, const FileHandler &handleFile) {
    const int folder = open.back().descriptor.get();
    const std::size_t parent = open.back().item;
    struct stat status {};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        _warn(LeftOut, parent, name, Sentence::ofError(errno));
        return true;
    }
    if (!S_ISDIR(status.st_mode) && !S_ISREG(status.st_mode)) {
        _warn(LeftOut, parent, name, nameOfType(status.st_mode));
        return true;
    }
    if (!isUTF8(name)) {
        _warn(forTranslation("%1: left out: its name is not UTF-8"), parent, name);
        return true;
    }
    if (!propertylist::isXMLText(name)) { // as preferences are, and the files of presets
        _warn(forTranslation("%1: left out: its name holds a character that XML cannot hold"), parent, name);
        return true;
    }
    if (_items.size() > MostItems) {
        return false;
    }
    const std::size_t item = _items.size();
    const bool isFolder = S_ISDIR(status.st_mode);
    _items.push_back({name, parent, isFolder, status.st_mode & PermissionBits, 0, {}});
    std::uint16_t flags = 0;
    // The folder's descriptor stands for its path, which may be longer than any path can be.
    if (_finderInformation.readFlags("/proc/self/fd/" + std::to_string(folder) + "/" + name, flags) == 0) {
        _items.back().label = finderLabelOfFlags(flags);
    }
    if (!isFolder) {
        handleFile(folder, item);
    } else if (!_enter(open, name, item)) {
        _warn(ContentsLeftOut, parent, name, Sentence::ofError(errno));
    }
    return true;
}

bool FolderWalk::_enter(std::vector<Folder> &open, const std::string &name, std::size_t item) {
    FileDescriptor folder(uninterrupted([&] { return ::openat(open.back().descriptor.get(), name.c_str(), OpenFolderFlags); }));
    auto names = folder ? namesIn(folder.get()) : std::nullopt;
    if (!names) {
        return false;
    }
    const Identity identity = identityOf(folder.get());
    if (std::any_of(open.begin(), open.end(), [&](const Folder &each) { return each.identity == identity; })) {
        errno = ELOOP; // a folder mounted inside itself
        return false;
    }
    if (open.size() >= MostOpenFolders) {
        open[open.size() - MostOpenFolders].descriptor.reset();
    }
    open.push_back({std::move(folder), identity, item, std::move(*names)});
    return true;
}

std::string FolderWalk::pathOfItem(std::size_t item) const {
    std::vector<std::size_t> way;
    for (; item != 0; item = _items[item].parent) {
        way.push_back(item);
    }
    std::string path = _items[0].name;
    for (auto each = way.rbegin(); each != way.rend(); ++each) {
        path += "/" + _items[*each].name;
    }
    return path;
}

void FolderWalk::_warn(FixedText text, std::size_t folder, std::string_view name, Sentence why) {
    _warnings.emplace_back(text, std::vector<Sentence>{pathOfItem(folder) + "/" + std::string(name), std::move(why)});
}

bool isUTF8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = ORVCharacterLength(text, at);
        const auto lead = static_cast<unsigned char>(text[at]);
        if (length == 1 ? lead >= 0x80 : length == 3 && lead == 0xED && static_cast<unsigned char>(text[at + 1]) >= 0xA0) {
            return false;
        }
        at += length;
    }
    return true;
}

} // namespace orvane
