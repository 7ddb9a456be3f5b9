#include "platform/posix/PosixHierarchyWriter.h"

#include "platform/posix/PosixFolderReader.h"
#include "platform/posix/PosixItemFinish.h"

#include <cerrno>
#include <climits>
#include <string>

#include <fcntl.h>
#include <unistd.h>

// Copies of whole folders of contents, through the same operations and onto the same list as everything else, so that a
// copy that fails in the middle is taken away from the list's end.

namespace orvane {

bool PosixHierarchyWriter::_copyFolder(std::string_view name, const PosixContent &content, const ItemAttributes &attributes) {
    const Index first = _items.end();
    const Index here = _cursor.item();
    const PosixContent::Opened source = content.opened();
    if (source && _copyTree(name, source->get(), attributes)) {
        return true;
    }
    const int error = errno;
    _removeAndTell(first);
    _items.truncate(first);
    static_cast<void>(_goTo(_cursor, here)); // only upwards: the folder was never left
    errno = error;
    return false;
}

bool PosixHierarchyWriter::_copyTree(std::string_view name, int source, const ItemAttributes &attributes) {
    PosixFolderReader reader;
    if (!reader.descend(source, ".") || !_makeClosedFolder(name) || !_enterMadeFolder(name)) {
        return false;
    }
    const std::size_t topDepth = _cursor.depth();
    const Place top = _cursor.currentFolder();
    struct stat made {};
    if (::fstatat(top.folder, top.path, &made, AT_EMPTY_PATH | AT_SYMLINK_NOFOLLOW) != 0 || !_copyFilesOf(reader)) {
        return false;
    }
    while (!reader.isOutside()) {
        std::string child;
        if (reader.takeFolder(child)) {
            if (!reader.descend(source, child)) {
                return false;
            }
            if (reader.identity() == PosixMadeItems::Identity{made.st_dev, made.st_ino}) {
                errno = ELOOP; // the copy lies inside its own source
                return false;
            }
            if (!_makeClosedFolder(child) || !_enterMadeFolder(child) || !_copyFilesOf(reader)) {
                return false;
            }
            continue;
        }
        const PosixItemProperties properties = reader.properties();
        const bool isTop = _cursor.depth() == topDepth;
        _finishFolder({isTop ? attributes.label : 0, isTop ? attributes.mode.value_or(properties.mode) : properties.mode, &properties});
        if (!reader.ascend()) {
            return false;
        }
    }
    return true;
}

/// New folders are closed to all others until they are complete and get the mode of their source. The umask may close them to their owner
/// as well, who could not put anything into them then, or not read them, which attributes and times take.
bool PosixHierarchyWriter::_makeClosedFolder(std::string_view name) {
    if (!_makeFolder(name, S_IRWXU)) {
        return false;
    }
    if ((_traits.umask & S_IRWXU) != 0) {
        const Place at = _cursor.place(name);
        [[maybe_unused]] const int status = openFolderToOwner(at.folder, at.path); // what is refused for it tells
    }
    return true;
}

bool PosixHierarchyWriter::_copyFilesOf(PosixFolderReader &reader) {
    for (const PosixFolderReader::Entry &entry : reader.entries()) {
        const std::string &name = entry.name;
        bool done = false;
        if (entry.type == PosixFolderReader::Type::Link) {
            done = _copyLink(name, reader.folder());
        } else if (entry.type == PosixFolderReader::Type::Other) {
            done = _makeNewEmptyFile(name, {});
        } else {
            FileDescriptor file(uninterrupted(
                [&] { return ::openat(reader.folder(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
            const auto content = file ? PosixContent::ofOpenItem(std::move(file), {}, PosixLargestCachedContent) : nullptr;
            done = content != nullptr && !content->isFolder() && _copyFile(name, *content, {});
        }
        if (!done) {
            return false;
        }
    }
    return true;
}

bool PosixHierarchyWriter::_copyLink(std::string_view name, int folder) {
    std::string target(PATH_MAX, '\0');
    const ssize_t length = ::readlinkat(folder, std::string(name).c_str(), target.data(), target.size());
    if (length < 0) {
        return false;
    }
    target.resize(static_cast<std::size_t>(length));
    const Place at = _cursor.place(name);
    return ::symlinkat(target.c_str(), at.folder, at.path) == 0 && _note(name);
}

} // namespace orvane
