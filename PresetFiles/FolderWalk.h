#pragma once

#include "ports/FinderInformation.h"
#include "ports/Sentence.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace orvane {

/// One folder or file that a walk met.
struct WalkedItem {
    std::string name;   ///< UTF-8
    std::size_t parent; ///< position of its folder; its own for the first
    bool isFolder;
    mode_t mode;                 ///< the nine permission bits
    int label = 0;               ///< Finder label, 0 to 7
    std::string contentFilename; ///< set by the user of the walk
};

/// An existing folder with everything in it, read without following symbolic links and without waiting for anything.
///
/// Items come in the order of their names, byte by byte, each folder before what is in it. Links, FIFOs, sockets, devices, and
/// names that are no UTF-8 are left out, folders that cannot be read are empty; for each there is a warning. Works at any depth,
/// with few descriptors.
class FolderWalk {
public:
    /// Told of every regular file: the folder that it is in, and its position among the items.
    using FileHandler = std::function<void(int folder, std::size_t item)>;

    explicit FolderWalk(FinderInformation &finderInformation) : _finderInformation(finderInformation) {}

    /// Has the walk ask before each item whether somebody wants it to end.
    void setShouldStop(std::function<bool()> shouldStop) { _shouldStop = std::move(shouldStop); }
    /// Walks through the folder at `path`; a symbolic link there is followed. False, with the reason in `why`, when it is not a
    /// readable folder, changes underway so that the walk loses its way, holds more than a million items, or is told to stop.
    [[nodiscard]] bool walk(const std::string &path, const std::string &name, const FileHandler &handleFile, Sentence &why);

    [[nodiscard]] std::vector<WalkedItem> &items() { return _items; }
    [[nodiscard]] const std::vector<WalkedItem> &items() const { return _items; }
    /// The item's path from the top folder's name on, for messages.
    [[nodiscard]] std::string pathOfItem(std::size_t item) const;
    /// One line each, in the order in which they came up. UTF-8 as far as the names are.
    [[nodiscard]] std::vector<Sentence> &warnings() { return _warnings; }

private:
    struct Folder;

    [[nodiscard]] bool _visit(std::vector<Folder> &open, const std::string &name, const FileHandler &handleFile);
    [[nodiscard]] bool _enter(std::vector<Folder> &open, const std::string &name, std::size_t item);
    void _warn(FixedText text, std::size_t folder, std::string_view name, Sentence why = {});

    FinderInformation &_finderInformation;
    std::vector<WalkedItem> _items;
    std::vector<Sentence> _warnings;
    std::function<bool()> _shouldStop;
};

/// Whether the bytes are UTF-8 (Unicode, table 3-7: no surrogates).
[[nodiscard]] bool isUTF8(std::string_view text);

} // namespace orvane
