#pragma once

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixExtendedAttributes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace orvane {

/// Puts files into one of the folders that presets take their resources from, such as "File Content".
///
/// Nothing there is ever overwritten. A file that is there under the wanted name (or a numbered form of it) with the same
/// bytes, mode and extended attributes is used as it is; otherwise the new file gets the first free form: "a.txt", "a 2.txt".
/// Files appear whole or not at all. What was added is removed again when the object is destroyed before `keep()`.
class ResourceFolder {
public:
    /// The folder at `path`, which is made with its parents when the first file comes. `shouldStop`, which may be empty, is asked for each
    /// file, and every few MiB of a large one, whether somebody wants an end: then nothing more is added (ECANCELED).
    explicit ResourceFolder(std::string path, std::function<bool()> shouldStop = {})
        : _path(std::move(path)), _shouldStop(std::move(shouldStop)) {}
    ResourceFolder(const ResourceFolder &) = delete;
    ResourceFolder &operator=(const ResourceFolder &) = delete;
    ~ResourceFolder();

    /// Adds a copy of an open regular file, or of bytes. `name` is a single path component. The copy's permissions are `mode`, but
    /// its owner can always read it. Returns the name that it got; nothing, with `errno`, when it cannot be added.
    [[nodiscard]] std::optional<std::string> addFile(const std::string &name, int file, mode_t mode);
    [[nodiscard]] std::optional<std::string> addBytes(const std::string &name, std::string_view bytes, mode_t mode);

    /// Brings what was added to the disk itself, before something that names it is stored. False, with `errno`, when the disk does
    /// not take it: it should not be kept then, what it was copied from is still there.
    [[nodiscard]] bool flush();
    /// What was added stays.
    void keep();

private:
    /// What a new file will be.
    struct Source {
        int file; ///< -1 when it is in memory
        std::string_view bytes;
        off_t size;
        bool isSparse;
        mode_t mode;
        PosixExtendedAttributes attributes;
    };
    /// Names that were made from one wanted name.
    struct Series {
        std::size_t next = 1;                                     ///< number of the next name to try
        std::unordered_multimap<std::uint64_t, std::string> seen; ///< those that exist, by digest of size and first bytes
    };

    [[nodiscard]] bool _open();
    [[nodiscard]] std::optional<std::string> _add(const std::string &name, const Source &source);
    [[nodiscard]] std::optional<std::string> _existing(Series &series, const std::string &name, const Source &source);
    [[nodiscard]] FileDescriptor _openExisting(const std::string &name) const;
    [[nodiscard]] bool _isSame(const std::string &name, const Source &source);
    [[nodiscard]] bool _make(const std::string &name, const Source &source);
    [[nodiscard]] bool _makeByName(const std::string &name, const Source &source);
    [[nodiscard]] bool _complete(int file, const Source &source) const;
    [[nodiscard]] bool _fill(int file, const Source &source) const;
    [[nodiscard]] bool _isToStop() const;

    std::string _path;
    std::function<bool()> _shouldStop;
    FileDescriptor _folder;
    std::vector<std::string> _madeFolders; ///< outermost first
    std::vector<std::string> _madeFiles;
    std::unordered_map<std::string, Series> _series;
};

} // namespace orvane
