#pragma once

#include "ports/CreationJournal.h"
#include "ports/FileSystem.h"

namespace orvane {

/// Another file system whose hierarchies are noted in a journal, item by item, from before their top folder is made until they
/// are complete or taken back. What is on disk while no entry says so was finished.
class ORVJournaledFileSystem final : public FileSystem {
public:
    /// Both are borrowed.
    ORVJournaledFileSystem(FileSystem &fileSystem, CreationJournal &journal) : _fileSystem(fileSystem), _journal(journal) {}

    [[nodiscard]] bool fileExists(std::string_view path) override { return _fileSystem.fileExists(path); }
    [[nodiscard]] bool isExecutableFile(std::string_view path) override { return _fileSystem.isExecutableFile(path); }
    [[nodiscard]] const ContentSource *contentSource(std::string_view path) override { return _fileSystem.contentSource(path); }
    [[nodiscard]] bool haveContentsChanged() override { return _fileSystem.haveContentsChanged(); }
    void forgetContents() override { _fileSystem.forgetContents(); }
    [[nodiscard]] std::unique_ptr<HierarchyWriter> beginHierarchy(std::string_view basePath) override;

private:
    FileSystem &_fileSystem;
    CreationJournal &_journal;
};

} // namespace orvane
