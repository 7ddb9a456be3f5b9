#pragma once

#include "platform/posix/FileDescriptor.h"
#include "platform/propertylist/PropertyListFiles.h"
#include "ports/PropertyList.h"

#include <cstdint>
#include <optional>
#include <string>

#include <sys/stat.h>

namespace orvane {

/// What tells one state of a file from another without reading it.
struct PosixPreferencesIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0; ///< nanoseconds since 1970
    std::int64_t changed = 0;  ///< the same, of the inode

    [[nodiscard]] static PosixPreferencesIdentity of(const struct stat &status) noexcept;
    bool operator==(const PosixPreferencesIdentity &) const = default;
};

/// The preferences file as it was read at one moment.
struct PosixPreferencesDocument {
    enum class State : std::uint8_t { Missing, Unreadable, Dictionary };
    State state = State::Missing;
    std::string why; ///< it is unreadable
    PosixPreferencesIdentity identity;
    /// An unchanged identity means unchanged contents. Not so for a file that was changed just before it was read: a second
    /// change within one tick of the kernel's clock leaves no trace.
    bool settled = false;
    PropertyListFormat format = PropertyListFormat::XML;
    PropertyListSites sites;
    PropertyList list;
};

/// Opens the file, following links, without ever waiting for it (a FIFO is refused). Invalid with `errno`.
[[nodiscard]] FileDescriptor openPreferencesFile(const std::string &path);

/// Reads the file whole.
[[nodiscard]] PosixPreferencesDocument readPreferencesDocument(const std::string &path);

/// Whether `document` still is what stands at `path`.
[[nodiscard]] bool isCurrentPreferencesDocument(const PosixPreferencesDocument &document, const std::string &path);

/// Where writing to `path` ends up: symbolic links at its end followed, the last of which may dangle. Nothing, with
/// `errno`, for a circle of links.
[[nodiscard]] std::optional<std::string> resolvedPreferencesPath(std::string path);

} // namespace orvane
