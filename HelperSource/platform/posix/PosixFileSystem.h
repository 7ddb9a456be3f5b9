#pragma once

#include "platform/posix/PosixContent.h"
#include "platform/posix/PosixHierarchyWriter.h"
#include "ports/FileSystem.h"
#include "ports/SystemLog.h"

#include <memory>
#include <optional>
#include <string_view>

#include <sys/types.h>

namespace orvane {

/// `FileSystem` on Linux system calls. Paths may be longer than PATH_MAX.
class PosixFileSystem final : public FileSystem {
public:
    PosixFileSystem() = default;
    /// For a program that knows its umask (see `umaskOfSingleThread`), which is then not looked up.
    explicit PosixFileSystem(mode_t umask) : _umask(umask) {}

    /// Has the log told of labels, modes and times that cannot be set, one entry a hierarchy. Borrowed; for hierarchies begun later.
    void setLog(SystemLog &log) { _log = &log; }

    [[nodiscard]] bool fileExists(std::string_view path) override;
    /// A folder is no executable file.
    [[nodiscard]] bool isExecutableFile(std::string_view path) override;
    [[nodiscard]] const ContentSource *contentSource(std::string_view path) override;
    [[nodiscard]] bool haveContentsChanged() override;
    void forgetContents() override;
    /// Symbolic links in the path of the base are followed, below the base none is. Null leaves `errno`.
    [[nodiscard]] std::unique_ptr<HierarchyWriter> beginHierarchy(std::string_view basePath) override;

private:
    /// Read once, when the first hierarchy begins.
    [[nodiscard]] PosixProcessTraits _processTraits();

    PosixContentStore _contents;
    std::optional<mode_t> _umask;
    SystemLog *_log = nullptr;
};

/// The process's umask, asked for in the only way that the system call knows: by changing it for a moment. For the start of a
/// program alone, before anything could make a file or start a program on another thread meanwhile.
[[nodiscard]] mode_t umaskOfSingleThread();

} // namespace orvane
