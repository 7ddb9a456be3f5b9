#pragma once

#include "PresetTree.h"

#include "ports/FileSystem.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace orvane {

/// A file system that makes nothing: it looks at a real one and lists what a hierarchy would hold, with everything that
/// would go wrong beside the item concerned. What would fail is listed as well and the hierarchy goes on, so that one run
/// shows all problems.
class DryRunFileSystem final : public FileSystem {
public:
    /// `fileSystem` is borrowed and only asked.
    explicit DryRunFileSystem(FileSystem &fileSystem) : _fileSystem(fileSystem) {}

    [[nodiscard]] bool fileExists(std::string_view path) override { return _fileSystem.fileExists(path); }
    [[nodiscard]] bool isExecutableFile(std::string_view path) override { return _fileSystem.isExecutableFile(path); }
    [[nodiscard]] const ContentSource *contentSource(std::string_view path) override;
    void forgetContents() override;
    [[nodiscard]] std::unique_ptr<HierarchyWriter> beginHierarchy(std::string_view basePath) override;

    /// Everything that the last hierarchy would hold.
    [[nodiscard]] const Tree &tree() const { return _tree; }
    /// Path of its first folder; empty when there is none.
    [[nodiscard]] const std::string &topPath() const { return _topPath; }
    /// Whether some item could not be made, so that the whole creation would fail.
    [[nodiscard]] bool wouldFail() const { return !_failure.empty(); }
    /// What the first of those would make the engine say; empty when there is none.
    [[nodiscard]] const std::string &failure() const { return _failure; }

private:
    class Writer;
    struct Content {
        std::string name; ///< of its file
        bool isMissing = false;
        bool isFolder = false;
    };

    FileSystem &_fileSystem;
    Tree _tree;
    std::string _topPath;
    std::map<const ContentSource *, Content> _contents; ///< those that were asked for
    std::vector<std::unique_ptr<ContentSource>> _missing;
    std::string _failure;
};

} // namespace orvane
