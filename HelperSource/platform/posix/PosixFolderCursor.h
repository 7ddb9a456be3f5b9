#pragma once

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixMadeItems.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Stands in a folder of a hierarchy and tells how system calls reach the items in it.
///
/// A folder is either *anchored*, held by a descriptor of its own, or reached by a short relative path from the anchored
/// folder above it. The second kind costs no call at all, but is safe only where nobody else can put a symbolic link into
/// that path: in *private* folders, which this program just made and which only its user may change. So a folder is
/// anchored when it lies in a folder that is not private, and otherwise every few levels, which keeps paths short however
/// deep the hierarchy is. Of the anchors only the deepest stay open; one that was closed is opened again through ".."
/// on the way back, and checked to be the same folder. Descriptors thus stay few at any depth.
class PosixFolderCursor {
public:
    using Index = PosixMadeItems::Index;

    /// Where an item is: arguments for the "at" calls. Valid until the next call to the cursor.
    struct Place {
        int folder;
        const char *path;
    };
    struct Options {
        bool isPrivate = false;     ///< nobody else can change what is in the folder
        bool anchored = false;      ///< open it in any case
        bool hasDefaultACL = false; ///< new items in it get permissions other than those asked for
        bool isNew = false;         ///< it was made just before it was entered, so it carries nothing yet
    };

    /// Stands in `root`, which counts as not private and stays open as long as the cursor.
    explicit PosixFolderCursor(FileDescriptor root);
    /// The same in a folder inside of a hierarchy, which is that item and of which this is known.
    PosixFolderCursor(FileDescriptor root, Index item, Options options);

    /// The place of the item `name` in the current folder.
    [[nodiscard]] Place place(std::string_view name);
    /// The current folder itself: by its descriptor and "", or by a path relative to an anchor.
    [[nodiscard]] Place currentFolder();

    /// Goes into the folder `name`, a real folder and no symbolic link. False with `errno` when it cannot be opened.
    [[nodiscard]] bool enter(std::string_view name, Index item, const Options &options);
    /// Goes back to the parent. The result is the left folder's descriptor when it was anchored. Not for the root.
    FileDescriptor leave();

    [[nodiscard]] Index item() const { return _levels.back().item; }
    [[nodiscard]] const Options &options() const { return _levels.back().options; }
    /// What turns out about the current folder once it is open. `anchored` must stay.
    [[nodiscard]] Options &options() { return _levels.back().options; }
    /// Path of the current folder from the root down, with "/" behind it; empty for the root. Borrowed until the next change.
    [[nodiscard]] std::string_view pathFromRoot() const { return std::string_view(_path).substr(0, _levels.back().pathEnd); }
    [[nodiscard]] std::size_t depth() const { return _levels.size() - 1; }
    [[nodiscard]] bool isAnchored() const { return _levels.back().options.anchored; }
    /// Descriptor of the anchored current folder, -1 when it could not be opened again.
    [[nodiscard]] int anchor() const { return _anchors.back().folder.get(); }
    /// Device and inode of an open folder.
    [[nodiscard]] static PosixMadeItems::Identity identityOf(int folder);

private:
    struct Level {
        Index item;
        std::size_t pathEnd; ///< end of the folder's path in `_path`, "/" included
        Options options;
    };
    struct Anchor {
        FileDescriptor folder;
        std::size_t level;
        std::size_t pathStart; ///< paths relative to this anchor start here in `_path`
        PosixMadeItems::Identity identity;
    };

    [[nodiscard]] FileDescriptor _open(std::string_view name);
    [[nodiscard]] bool _hasRoomFor(std::size_t pathBytes);
    void _closeAnchorsBut(std::size_t count);
    void _reopenLast(int below, std::size_t levels);

    std::string _path; ///< names from the root down, each with "/" behind it; beyond that, scratch of the last call
    std::vector<Level> _levels;
    std::vector<Anchor> _anchors;
    std::size_t _firstOpen = 1; ///< anchors from here on are open; the root's is always
    std::size_t _mostOpen = 0;  ///< anchors that may stay open; 0 as long as it does not matter
    std::string _scratch;
};

} // namespace orvane
