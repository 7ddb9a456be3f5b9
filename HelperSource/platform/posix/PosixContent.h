#pragma once

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixExtendedAttributes.h"
#include "ports/FileSystem.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <sys/stat.h>

namespace orvane {

/// Contents up to this size are read once and written from memory, which beats every kernel copy for small files.
inline constexpr std::size_t PosixLargestCachedContent = std::size_t{128} * 1024;

/// What a copy takes along beside the bytes.
struct PosixItemProperties {
    mode_t mode = 0; ///< permission bits, set-ID and sticky bits among them
    std::array<timespec, 2> times{};
    PosixExtendedAttributes attributes;
};

/// The mode that a copy of an item gets. Set-ID bits are for the owner and group that they were given to: they stay only where both are
/// the process's own, as what it makes has them (much as POSIX has it for `cp -p`). Asks the system only where there are such bits.
[[nodiscard]] mode_t modeOfCopy(const struct stat &status);

/// An opened content file, or a folder of contents.
class PosixContent final : public ContentSource {
public:
    /// Looks at an open file or folder; reads the bytes of a regular file into memory when they fit in `cacheLeft`, and
    /// keeps the descriptor otherwise. Null, with `errno`, for anything but a regular file or folder and when reading
    /// fails. `path` serves to open it again.
    [[nodiscard]] static std::unique_ptr<PosixContent> ofOpenItem(FileDescriptor item, std::string_view path, std::size_t cacheLeft);

    [[nodiscard]] bool isFolder() const { return _isFolder; }
    [[nodiscard]] const PosixItemProperties &properties() const { return _properties; }
    [[nodiscard]] bool isInMemory() const { return _isInMemory; }
    /// True when a store keeps it, so that it is there until the store forgets it.
    [[nodiscard]] bool isKept() const { return _store != nullptr; }
    [[nodiscard]] const std::string &bytes() const { return _bytes; }
    [[nodiscard]] off_t size() const { return _size; }
    /// True when the file takes less room than its size, so that it has holes.
    [[nodiscard]] bool isSparse() const { return _isSparse; }
    /// A descriptor that stays open as long as anybody holds it.
    using Opened = std::shared_ptr<const FileDescriptor>;
    /// That of a content that is not in memory; opened again when it was closed meanwhile. Null with `errno` when that fails.
    [[nodiscard]] Opened opened() const;

private:
    friend class PosixContentStore;
    PosixContent() = default;
    [[nodiscard]] bool _read(int descriptor);
    [[nodiscard]] bool _readMadeUp(int descriptor);

    std::string _path;
    PosixItemProperties _properties;
    std::string _bytes;
    off_t _size = 0;
    struct stat _status {}; ///< when it was opened
    bool _isFolder = false;
    bool _isSparse = false;
    bool _isInMemory = false;
    mutable Opened _descriptor;
    class PosixContentStore *_store = nullptr; ///< null for a content that nobody keeps
    mutable std::uint64_t _lastUse = 0;
};

/// The contents of one file system object, each opened once. Keeps at most 8 MiB of bytes and 64 descriptors (or an
/// eighth of those that the process may have); of more large contents than that, the ones not used for longest are closed
/// and opened again on their next use. Any thread may use the contents while none forgets them.
class PosixContentStore {
public:
    PosixContentStore() = default;
    PosixContentStore(const PosixContentStore &) = delete;
    PosixContentStore &operator=(const PosixContentStore &) = delete;

    /// See `FileSystem::contentSource`.
    [[nodiscard]] const PosixContent *content(std::string_view path);
    /// From now on counts for `haveChanged`.
    void beginToWatch();
    /// See `FileSystem::haveContentsChanged`: whether a content differs from what was opened, was born since, or stands where
    /// nothing was. Asks the system once for each path; true when memory does not do for that.
    [[nodiscard]] bool haveChanged();
    void forget();
    /// Closes all descriptors, for want of them elsewhere.
    void closeAll();

private:
    friend class PosixContent;
    struct Hash {
        using is_transparent = void;
        [[nodiscard]] std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };

    [[nodiscard]] static std::unique_ptr<PosixContent> _load(std::string_view path, std::size_t cacheLeft);
    /// The content's descriptor, which is used now.
    [[nodiscard]] PosixContent::Opened _opened(const PosixContent &content);
    void _use(const PosixContent &content);
    void _closeOldest();

    std::mutex _mutex; ///< over everything below, and over the descriptors of the contents
    struct Kept {
        std::unique_ptr<PosixContent> content; ///< null for what cannot be copied
        bool wasThere;                         ///< something was
    };
    std::unordered_map<std::string, Kept, Hash, std::equal_to<>> _contents;
    [[nodiscard]] bool _hasChanged(const std::string &path, const Kept &kept) const;
    timespec _watchedSince{}; ///< by the clock that stamps files, or up to a tick before it
    std::vector<const PosixContent *> _open;
    std::size_t _cached = 0; ///< bytes
    std::uint64_t _uses = 0;
};

} // namespace orvane
