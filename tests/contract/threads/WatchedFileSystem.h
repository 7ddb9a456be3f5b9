#pragma once

#include "ports/FileSystem.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string_view>
#include <thread>
#include <vector>

namespace orvane::testing {

/// Another file system, of which it is known whether two threads worked in it, and whose disk can be made to run full.
class WatchedFileSystem final : public FileSystem {
public:
    explicit WatchedFileSystem(FileSystem &fileSystem) : _fileSystem(fileSystem) {}

    bool refusesTwoThreads = false;
    long room = 1'000'000;          ///< items that the disk takes
    long roomForCopies = 1'000'000; ///< those of them that may be copies
    int errorWhenFull = ENOSPC;
    std::atomic<int> sharings = 0; ///< pieces of work that two threads did
    int finishings = 0;            ///< pieces of work of which a second thread finished the files
    int removalsTooEarly = 0;      ///< while a second thread was finishing files
    int refusals = 0;              ///< for that reason
    int hierarchies = 0;
    std::function<void(std::string_view name)> beforeEmptyFile; ///< on whichever thread makes it
    std::function<void(std::string_view path)> beforeContent;   ///< on whichever thread looks it up
    std::size_t mostAhead = 0;                                  ///< folders made ahead for one piece of work
    std::set<std::thread::id> makers;                           ///< threads that made empty files
    std::vector<unsigned> modes; ///< of the folders that were given one, in the order in which they were left

    [[nodiscard]] bool fileExists(std::string_view path) override { return _fileSystem.fileExists(path); }
    [[nodiscard]] bool isExecutableFile(std::string_view path) override { return _fileSystem.isExecutableFile(path); }
    [[nodiscard]] const ContentSource *contentSource(std::string_view path) override {
        if (beforeContent) {
            beforeContent(path);
        }
        return _fileSystem.contentSource(path);
    }
    [[nodiscard]] bool haveContentsChanged() override { return _fileSystem.haveContentsChanged(); }
    void forgetContents() override { _fileSystem.forgetContents(); }
    [[nodiscard]] std::unique_ptr<HierarchyWriter> beginHierarchy(std::string_view basePath) override {
        ++hierarchies;
        _left = room;
        _copiesLeft = roomForCopies;
        auto writer = _fileSystem.beginHierarchy(basePath);
        return writer ? std::make_unique<Owning>(*this, std::move(writer)) : nullptr;
    }

private:
    class Writer : public HierarchyWriter {
    public:
        Writer(WatchedFileSystem &owner, HierarchyWriter &writer) : _owner(owner), _writer(writer) {}

        [[nodiscard]] bool enterFolder(std::string_view name) override { return _take() && _writer.enterFolder(name); }
        void leaveFolder(const ItemAttributes &attributes) override {
            if (attributes.mode) {
                const std::lock_guard lock(_owner._monitor);
                _owner.modes.push_back(*attributes.mode);
            }
            _writer.leaveFolder(attributes);
        }
        [[nodiscard]] bool copyItem(std::string_view name, const ContentSource &source, const ItemAttributes &attributes) override {
            return _take() && _takeCopy() && _writer.copyItem(name, source, attributes);
        }
        [[nodiscard]] bool makeEmptyFile(std::string_view name, const ItemAttributes &attributes) override {
            _noteMaker();
            if (_owner.beforeEmptyFile) {
                _owner.beforeEmptyFile(name);
            }
            return _take() && _writer.makeEmptyFile(name, attributes);
        }
        [[nodiscard]] TwoThreads makeOnTwoThreads(std::span<const FolderAhead> ahead,
                                                  const std::function<void(HierarchyWriter &writer)> &work) override {
            _owner.mostAhead = std::max(_owner.mostAhead, ahead.size());
            if (_owner.refusesTwoThreads) {
                ++_owner.refusals;
                return TwoThreads::Refused;
            }
            const TwoThreads result = _writer.makeOnTwoThreads(ahead, [&](HierarchyWriter &writer) {
                Writer watched(_owner, writer);
                work(watched);
            });
            _owner.sharings += result == TwoThreads::Done ? 1 : 0;
            return result;
        }
        [[nodiscard]] TwoThreads finishOnSecondThread(const std::function<void()> &work,
                                                      const std::function<void(bool isGood)> &finished) override {
            if (_owner.refusesTwoThreads) {
                ++_owner.refusals;
                return TwoThreads::Refused;
            }
            _owner._isFinishing = true;
            const TwoThreads result = _writer.finishOnSecondThread(work, finished);
            _owner._isFinishing = false;
            _owner.finishings += result == TwoThreads::Done ? 1 : 0;
            return result;
        }
        void removeEverythingMade() override {
            _owner.removalsTooEarly += _owner._isFinishing ? 1 : 0;
            _writer.removeEverythingMade();
        }
        [[nodiscard]] int lastError() const override { return _isFull ? _owner.errorWhenFull : _writer.lastError(); }

    private:
        void _noteMaker() {
            const std::lock_guard lock(_owner._monitor);
            _owner.makers.insert(std::this_thread::get_id());
        }
        bool _take() {
            _isFull = --_owner._left < 0;
            return !_isFull;
        }
        bool _takeCopy() {
            _isFull = --_owner._copiesLeft < 0;
            return !_isFull;
        }
        WatchedFileSystem &_owner;
        HierarchyWriter &_writer;
        bool _isFull = false;
    };
    class Owning final : public Writer {
    public:
        Owning(WatchedFileSystem &owner, std::unique_ptr<HierarchyWriter> writer) : Writer(owner, *writer), _owned(std::move(writer)) {}

    private:
        std::unique_ptr<HierarchyWriter> _owned;
    };

    FileSystem &_fileSystem;
    std::mutex _monitor; ///< over `modes` and `makers`
    bool _isFinishing = false;
    std::atomic<long> _left = 0;
    std::atomic<long> _copiesLeft = 0;
};

} // namespace orvane::testing
