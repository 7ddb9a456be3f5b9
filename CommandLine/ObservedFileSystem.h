#pragma once

#include "ports/FileSystem.h"

#include <functional>
#include <string>

namespace orvane {

/// Another file system, whose hierarchies can be stopped on the way and of which it is known where the last one stands.
class ObservedFileSystem final : public FileSystem {
public:
    /// `fileSystem` is borrowed. `onBegin` is called when a hierarchy begins. `isStopped` is asked before each item, by every
    /// thread that makes some, and when the first folder has been left; once it is true, everything that the hierarchy made is removed, and
    /// every further item fails with `errno` EINTR.
    ObservedFileSystem(FileSystem &fileSystem, std::function<void()> onBegin, bool (*isStopped)())
        : _fileSystem(fileSystem), _onBegin(std::move(onBegin)), _isStopped(isStopped) {}

    [[nodiscard]] bool fileExists(std::string_view path) override { return _fileSystem.fileExists(path); }
    [[nodiscard]] bool isExecutableFile(std::string_view path) override { return _fileSystem.isExecutableFile(path); }
    [[nodiscard]] const ContentSource *contentSource(std::string_view path) override { return _fileSystem.contentSource(path); }
    [[nodiscard]] bool haveContentsChanged() override { return _fileSystem.haveContentsChanged(); }
    void forgetContents() override { _fileSystem.forgetContents(); }
    [[nodiscard]] std::unique_ptr<HierarchyWriter> beginHierarchy(std::string_view basePath) override;

    /// Path of the first folder that the last hierarchy made; empty when it made none.
    [[nodiscard]] const std::string &topPath() const { return _topPath; }
    /// Whether the last hierarchy was stopped.
    [[nodiscard]] bool wasStopped() const { return _wasStopped; }
    /// Whether its first folder is there; after a stop that means that something could not be removed, or that the folder
    /// was there before.
    [[nodiscard]] bool topIsThere() const { return !_topPath.empty() && _fileSystem.fileExists(_topPath); }

private:
    class Writer;
    class ThreadWriter;

    FileSystem &_fileSystem;
    std::function<void()> _onBegin;
    bool (*_isStopped)();
    std::string _topPath;
    bool _wasStopped = false;
};

} // namespace orvane
