#include "ObservedFileSystem.h"

#include "presets/ORVFileHelpers.h"

#include <cerrno>
#include <utility>

namespace orvane {

class ObservedFileSystem::Writer final : public HierarchyWriter {
public:
    Writer(ObservedFileSystem &owner, std::unique_ptr<HierarchyWriter> writer, std::string_view basePath)
        : _owner(owner), _writer(std::move(writer)), _basePath(basePath) {}

    [[nodiscard]] bool enterFolder(std::string_view name) override {
        if (_stop() || !_writer->enterFolder(name)) {
            return false;
        }
        if (_owner._topPath.empty()) {
            _owner._topPath = stringByAppendingPathComponent(_basePath, name);
        }
        return true;
    }
    void leaveFolder(const ItemAttributes &attributes) override { _writer->leaveFolder(attributes); }
    [[nodiscard]] bool copyItem(std::string_view name, const ContentSource &source, const ItemAttributes &attributes) override {
        return !_stop() && _writer->copyItem(name, source, attributes);
    }
    [[nodiscard]] bool makeEmptyFile(std::string_view name, const ItemAttributes &attributes) override {
        return !_stop() && _writer->makeEmptyFile(name, attributes);
    }
    void removeEverythingMade() override { _writer->removeEverythingMade(); }
    [[nodiscard]] int lastError() const override { return _stopped ? EINTR : _writer->lastError(); }

private:
    bool _stop() { return _stopped = _owner._isStopped(); }

    ObservedFileSystem &_owner;
    std::unique_ptr<HierarchyWriter> _writer;
    std::string _basePath;
    bool _stopped = false;
};

std::unique_ptr<HierarchyWriter> ObservedFileSystem::beginHierarchy(std::string_view basePath) {
    _topPath.clear();
    _onBegin();
    std::unique_ptr<HierarchyWriter> writer = _fileSystem.beginHierarchy(basePath);
    return writer ? std::make_unique<Writer>(*this, std::move(writer), basePath) : nullptr;
}

} // namespace orvane
