#pragma once

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixPreferencesFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// A new file that takes an old one's place, or nobody sees it: written under a temporary name in the same folder, flushed
/// to the disk, renamed, the folder flushed. Destroyed without `publish` it leaves nothing behind; what a killed program left
/// is removed by the next one.
class PosixPreferencesReplacement {
public:
    enum class Outcome : std::uint8_t { Published, TargetChanged, Failed };

    PosixPreferencesReplacement() = default;
    PosixPreferencesReplacement(const PosixPreferencesReplacement &) = delete;
    PosixPreferencesReplacement &operator=(const PosixPreferencesReplacement &) = delete;
    ~PosixPreferencesReplacement();

    /// Makes the temporary file, mode 0600, beside `target` (not a symbolic link).
    [[nodiscard]] bool begin(const std::string &target);
    [[nodiscard]] bool write(std::string_view bytes);
    /// Appends a range of another file.
    [[nodiscard]] bool copy(int file, std::uint64_t begin, std::uint64_t end);
    /// Takes owner, group, mode, access list and extended attributes over from the old file.
    [[nodiscard]] bool takeAttributes(int oldFile);
    /// Puts the file in place, provided that the target still is what `old` says (nothing: that there is none).
    [[nodiscard]] Outcome publish(const std::optional<PosixPreferencesIdentity> &old);

    /// The temporary file, open for reading and writing.
    [[nodiscard]] int file() const noexcept { return _file.get(); }
    /// Why the last call failed.
    [[nodiscard]] const std::string &why() const noexcept { return _why; }

private:
    bool _fail(const char *what);
    bool _create(const std::string &name);
    [[nodiscard]] bool _removeLeftover(const std::string &name);
    [[nodiscard]] bool _takeExtendedAttributes(int oldFile);
    [[nodiscard]] bool _isUnchanged(const std::optional<PosixPreferencesIdentity> &old) const;
    [[nodiscard]] bool _rename(bool mayReplace);

    FileDescriptor _folder;
    FileDescriptor _file;
    std::string _name;
    std::string _temporaryName; ///< empty when there is none
    std::string _why;
};

} // namespace orvane
