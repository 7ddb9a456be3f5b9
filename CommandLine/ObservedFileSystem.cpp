#include "ObservedFileSystem.h"

#include "presets/ORVFileHelpers.h"

#include <cerrno>
#include <cstddef>
#include <utility>

namespace orvane {

/// A writer of one of two threads. What is to be stopped fails here and is taken away when both threads are done.
class ObservedFileSystem::ThreadWriter final : public HierarchyWriter {
public:
    ThreadWriter(const ObservedFileSystem &owner, HierarchyWriter &writer) : _owner(owner), _writer(writer) {}

    [[nodiscard]] bool enterFolder(std::string_view name) override { return !_stop() && _writer.enterFolder(name); }
    void leaveFolder(const ItemAttributes &attributes) override { _writer.leaveFolder(attributes); }
    [[nodiscard]] bool copyItem(std::string_view name, const ContentSource &source, const ItemAttributes &attributes) override {
        return !_stop() && _writer.copyItem(name, source, attributes);
    }
    [[nodiscard]] bool makeEmptyFile(std::string_view name, const ItemAttributes &attributes) override {
        return !_stop() && _writer.makeEmptyFile(name, attributes);
    }
    void removeEverythingMade() override {}
    [[nodiscard]] int lastError() const override { return _isStopped ? EINTR : _writer.lastError(); }

private:
    bool _stop() {
        _isStopped = _isStopped || _owner._isStopped();
        return _isStopped;
    }

    const ObservedFileSystem &_owner;
    HierarchyWriter &_writer;
    bool _isStopped = false;
};

class ObservedFileSystem::Writer final : public HierarchyWriter {
public:
    Writer(ObservedFileSystem &owner, std::unique_ptr<HierarchyWriter> writer, std::string_view basePath)
        : _owner(owner), _writer(std::move(writer)), _basePath(basePath) {}

    [[nodiscard]] bool enterFolder(std::string_view name) override {
        if (_stop() || !_writer->enterFolder(name)) {
            return false;
        }
        ++_depth;
        if (_owner._topPath.empty()) {
            _owner._topPath = stringByAppendingPathComponent(_basePath, name);
        }
        return true;
    }
    void leaveFolder(const ItemAttributes &attributes) override {
        if (_owner._wasStopped) {
            return;
        }
        _writer->leaveFolder(attributes);
        if (--_depth == 0) {
            _stop();
        }
    }
    [[nodiscard]] bool copyItem(std::string_view name, const ContentSource &source, const ItemAttributes &attributes) override {
        return !_stop() && _writer->copyItem(name, source, attributes);
    }
    [[nodiscard]] bool makeEmptyFile(std::string_view name, const ItemAttributes &attributes) override {
        return !_stop() && _writer->makeEmptyFile(name, attributes);
    }
    [[nodiscard]] TwoThreads makeOnTwoThreads(std::span<const FolderAhead> ahead,
                                              const std::function<void(HierarchyWriter &writer)> &work) override {
        if (_stop()) {
            return TwoThreads::Refused;
        }
        const TwoThreads result = _writer->makeOnTwoThreads(ahead, [&](HierarchyWriter &writer) {
            ThreadWriter observed(_owner, writer);
            work(observed);
        });
        _stop();
        return result;
    }
    [[nodiscard]] TwoThreads finishOnSecondThread(const std::function<void()> &work,
                                                  const std::function<void(bool isGood)> &finished) override {
        if (_stop()) {
            return TwoThreads::Refused;
        }
        const Finishing finishing(*this);
        return _writer->finishOnSecondThread(work, finished);
    }
    void removeEverythingMade() override {
        if (!_owner._wasStopped) {
            _writer->removeEverythingMade();
        }
    }
    [[nodiscard]] int lastError() const override { return _owner._wasStopped ? EINTR : _writer->lastError(); }

private:
    /// Files are completed by another thread: what is stopped meanwhile is taken away afterwards.
    class Finishing {
    public:
        explicit Finishing(Writer &writer) : _writer(writer) { _writer._isFinishedElsewhere = true; }
        Finishing(const Finishing &) = delete;
        Finishing &operator=(const Finishing &) = delete;
        ~Finishing() {
            _writer._isFinishedElsewhere = false;
            if (_writer._owner._wasStopped) {
                _writer._writer->removeEverythingMade();
            }
        }

    private:
        Writer &_writer;
    };

    bool _stop() {
        if (!_owner._wasStopped && _owner._isStopped()) {
            _owner._wasStopped = true;
            if (!_isFinishedElsewhere) {
                _writer->removeEverythingMade();
            }
        }
        return _owner._wasStopped;
    }

    ObservedFileSystem &_owner;
    std::unique_ptr<HierarchyWriter> _writer;
    std::string _basePath;
    std::size_t _depth = 0;            ///< of the current folder below the base
    bool _isFinishedElsewhere = false; ///< another thread is completing files, so nothing is taken away yet
};

std::unique_ptr<HierarchyWriter> ObservedFileSystem::beginHierarchy(std::string_view basePath) {
    _topPath.clear();
    _wasStopped = false;
    _onBegin();
    std::unique_ptr<HierarchyWriter> writer = _fileSystem.beginHierarchy(basePath);
    return writer ? std::make_unique<Writer>(*this, std::move(writer), basePath) : nullptr;
}

} // namespace orvane
