#pragma once

#include "platform/posix/PosixContent.h"
#include "platform/posix/PosixHierarchyWriter.h"
#include "ports/FileSystem.h"

#include <memory>
#include <optional>
#include <string_view>

namespace orvane {

/// `FileSystem` on Linux system calls. Paths may be longer than PATH_MAX.
class PosixFileSystem final : public FileSystem {
public:
    PosixFileSystem() = default;

    [[nodiscard]] bool fileExists(std::string_view path) override;
    /// A folder is no executable file.
    [[nodiscard]] bool isExecutableFile(std::string_view path) override;
    [[nodiscard]] const ContentSource *contentSource(std::string_view path) override;
    void forgetContents() override;
    /// Symbolic links in the path of the base are followed, below the base none is. Null leaves `errno`.
    [[nodiscard]] std::unique_ptr<HierarchyWriter> beginHierarchy(std::string_view basePath) override;

private:
    /// Read once, when the first hierarchy begins.
    [[nodiscard]] const PosixProcessTraits &_processTraits();

    PosixContentStore _contents;
    std::optional<PosixProcessTraits> _traits;
};

} // namespace orvane
