#include "presets/ORVJournaledFileSystem.h"

#include <array>
#include <atomic>
#include <utility>
#include <vector>

namespace orvane {

namespace {

using Entry = CreationJournal::Entry;
using Kind = CreationJournal::Kind;
using FolderNumber = CreationJournal::FolderNumber;
using Worker = CreationJournal::Worker;

/// Notes each item and hands it on. `_way` holds the numbers of the folders that the writer is in, the base first.
class NotingWriter final : public HierarchyWriter {
public:
    /// `way` ends with the folder that the writer is in.
    NotingWriter(HierarchyWriter &writer, Entry &entry, std::vector<FolderNumber> way, Worker worker)
        : _writer(writer), _entry(entry), _worker(worker), _way(std::move(way)) {}

    [[nodiscard]] bool enterFolder(std::string_view name) override {
        const FolderNumber folder = _entry.aboutToMake(Kind::Folder, _way.back(), name, _worker);
        _way.reserve(_way.size() + 1);
        const bool entered = _writer.enterFolder(name);
        _entry.isDone(_worker);
        if (entered) {
            _way.push_back(folder);
        }
        return entered;
    }
    void leaveFolder(const ItemAttributes &attributes) override {
        _writer.leaveFolder(attributes);
        _entry.isDone(_worker);
        if (_way.size() > 1) {
            _way.pop_back();
        }
    }
    [[nodiscard]] bool copyItem(std::string_view name, const ContentSource &source, const ItemAttributes &attributes) override {
        _entry.aboutToMake(Kind::Copy, _way.back(), name, _worker);
        const bool done = _writer.copyItem(name, source, attributes);
        _entry.isDone(_worker);
        return done;
    }
    [[nodiscard]] bool makeEmptyFile(std::string_view name, const ItemAttributes &attributes) override {
        _entry.aboutToMake(Kind::File, _way.back(), name, _worker);
        const bool done = _writer.makeEmptyFile(name, attributes);
        _entry.isDone(_worker);
        return done;
    }
    [[nodiscard]] TwoThreads makeOnTwoThreads(std::span<const FolderAhead> ahead,
                                              const std::function<void(HierarchyWriter &writer)> &work) override {
        std::vector<FolderNumber> numbers;
        numbers.reserve(ahead.size());
        for (const FolderAhead &each : ahead) {
            const FolderNumber parent = each.parent == FolderAhead::InCurrent ? _way.back() : numbers[each.parent];
            numbers.push_back(_entry.aboutToMake(Kind::Folder, parent, each.name, _worker));
        }
        // Made here: on the other thread nobody could be told that there is no memory for them.
        std::array<std::vector<FolderNumber>, 2> ways{std::vector(1, _way.back()), std::vector(1, _way.back())};
        std::atomic<Worker> workers = 0;
        const TwoThreads result = _writer.makeOnTwoThreads(ahead, [&](HierarchyWriter &writer) {
            const Worker worker = workers++;
            NotingWriter noting(writer, _entry, std::move(ways.at(worker)), worker);
            work(noting);
        });
        _entry.isDone(_worker);
        return result;
    }
    [[nodiscard]] TwoThreads finishOnSecondThread(const std::function<void()> &work,
                                                  const std::function<void(bool isGood)> &finished) override {
        const Worker other = 1 - _worker;
        const TwoThreads result = _writer.finishOnSecondThread(
            [&] {
                _entry.isCompleting(other);
                work();
            },
            [&](bool isGood) {
                _entry.isCompleting(other);
                finished(isGood);
            });
        _entry.isDone(other);
        return result;
    }
    void removeEverythingMade() override { _writer.removeEverythingMade(); }
    [[nodiscard]] int lastError() const override { return _writer.lastError(); }

private:
    HierarchyWriter &_writer;
    Entry &_entry;
    Worker _worker;
    std::vector<FolderNumber> _way;
};

/// The one that stands for the whole hierarchy: its entry ends when the top folder has been left, or everything was removed.
class NotedHierarchy final : public HierarchyWriter {
public:
    NotedHierarchy(std::unique_ptr<HierarchyWriter> writer, std::unique_ptr<Entry> entry)
        : _writer(std::move(writer)), _entry(std::move(entry)), _noting(*_writer, *_entry, {CreationJournal::Base}, 0) {}

    [[nodiscard]] bool enterFolder(std::string_view name) override {
        const bool entered = _target().enterFolder(name);
        _depth += entered ? 1 : 0;
        return entered;
    }
    void leaveFolder(const ItemAttributes &attributes) override {
        _target().leaveFolder(attributes);
        if (_depth > 0 && --_depth == 0) {
            _entry.reset();
        }
    }
    [[nodiscard]] bool copyItem(std::string_view name, const ContentSource &source, const ItemAttributes &attributes) override {
        return _target().copyItem(name, source, attributes);
    }
    [[nodiscard]] bool makeEmptyFile(std::string_view name, const ItemAttributes &attributes) override {
        return _target().makeEmptyFile(name, attributes);
    }
    [[nodiscard]] TwoThreads makeOnTwoThreads(std::span<const FolderAhead> ahead,
                                              const std::function<void(HierarchyWriter &writer)> &work) override {
        return _target().makeOnTwoThreads(ahead, work);
    }
    [[nodiscard]] TwoThreads finishOnSecondThread(const std::function<void()> &work,
                                                  const std::function<void(bool isGood)> &finished) override {
        return _target().finishOnSecondThread(work, finished);
    }
    void removeEverythingMade() override {
        _writer->removeEverythingMade();
        _entry.reset();
    }
    [[nodiscard]] int lastError() const override { return _writer->lastError(); }

private:
    [[nodiscard]] HierarchyWriter &_target() { return _entry ? static_cast<HierarchyWriter &>(_noting) : *_writer; }

    std::unique_ptr<HierarchyWriter> _writer;
    std::unique_ptr<Entry> _entry;
    NotingWriter _noting;
    std::size_t _depth = 0;
};

} // namespace

std::unique_ptr<HierarchyWriter> ORVJournaledFileSystem::beginHierarchy(std::string_view basePath) {
    std::unique_ptr<HierarchyWriter> writer = _fileSystem.beginHierarchy(basePath);
    std::unique_ptr<Entry> entry = writer ? _journal.begin(basePath) : nullptr;
    return entry ? std::make_unique<NotedHierarchy>(std::move(writer), std::move(entry)) : std::move(writer);
}

} // namespace orvane
