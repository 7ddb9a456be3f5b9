#pragma once

#include <string>
#include <vector>

#include <spawn.h>

// What those share who start programs.

namespace orvane {

/// A child's attributes: signals as a new program expects them, none blocked and none ignored, whatever this program does with them.
class PosixSpawnAttributes {
public:
    /// `moreFlags` are further flags of posix_spawnattr_setflags that need no value, such as POSIX_SPAWN_SETSID.
    explicit PosixSpawnAttributes(short moreFlags = 0);
    PosixSpawnAttributes(const PosixSpawnAttributes &) = delete;
    PosixSpawnAttributes &operator=(const PosixSpawnAttributes &) = delete;
    ~PosixSpawnAttributes();
    /// Null when they could not be made.
    [[nodiscard]] const posix_spawnattr_t *get() const { return _isComplete ? &_attributes : nullptr; }

private:
    posix_spawnattr_t _attributes{};
    bool _isInitialised;
    bool _isComplete = false;
};

/// Arguments or an environment in the form that posix_spawn and exec take: pointers to the texts, then null. Borrowed from the texts.
[[nodiscard]] std::vector<char *> PosixPointersTo(std::vector<std::string> &texts);

/// For a child between fork and exec: the same for its signals, and no descriptor but the standard three reaches the program. Nothing
/// but system calls, as that place wants. Descriptors are marked, not closed: QProcess tells its parent through one of them whether the
/// program could be started.
void PosixPrepareForkedChild();

} // namespace orvane
