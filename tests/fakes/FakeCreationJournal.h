#pragma once

#include "ports/CreationJournal.h"

#include <string>
#include <vector>

namespace orvane {

/// Keeps the lines of what it is told: "begin BASE", "KIND PARENT/NAME" (with " = NUMBER" for folders), "completes", "done", "end"; those
/// of the second worker with "2: " before them. One thread at a time.
class FakeCreationJournal final : public CreationJournal {
public:
    [[nodiscard]] std::unique_ptr<Entry> begin(std::string_view basePath) override {
        if (!works) {
            return nullptr;
        }
        lines.push_back("begin " + std::string(basePath));
        return std::make_unique<FakeEntry>(*this);
    }

    std::vector<std::string> lines;
    bool works = true;

private:
    class FakeEntry final : public Entry {
    public:
        explicit FakeEntry(FakeCreationJournal &journal) : _journal(journal) {}
        FakeEntry(const FakeEntry &) = delete;
        FakeEntry &operator=(const FakeEntry &) = delete;
        ~FakeEntry() override { _journal.lines.emplace_back("end"); }

        FolderNumber aboutToMake(Kind kind, FolderNumber parent, std::string_view name, Worker worker) override {
            const bool isFolder = kind == Kind::Folder;
            const FolderNumber number = isFolder ? ++_folders : Base;
            _journal.lines.push_back(_prefix(worker) + static_cast<char>(kind) + ' ' + std::to_string(parent) + '/' + std::string(name) +
                                     (isFolder ? " = " + std::to_string(number) : ""));
            return number;
        }
        void isCompleting(Worker worker) override { _journal.lines.push_back(_prefix(worker) + "completes"); }
        void isDone(Worker worker) override { _journal.lines.push_back(_prefix(worker) + "done"); }

    private:
        static std::string _prefix(Worker worker) { return worker == 0 ? "" : std::to_string(worker + 1) + ": "; }

        FakeCreationJournal &_journal;
        FolderNumber _folders = Base;
    };
};

} // namespace orvane
