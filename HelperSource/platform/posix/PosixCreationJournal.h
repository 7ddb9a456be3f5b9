#pragma once

#include "platform/posix/FileDescriptor.h"
#include "ports/CreationJournal.h"

#include <optional>
#include <string>
#include <vector>

#include <ctime>

namespace orvane {

/// One entry of the journal as it is read.
struct PosixCreationRecord {
    struct Item {
        CreationJournal::Kind kind = CreationJournal::Kind::File;
        CreationJournal::FolderNumber parent = CreationJournal::Base;
        std::string name;
    };
    std::string basePath;
    timespec begun{};
    timespec last{};                     ///< something was begun or done then for the last time; the process may have lived a little longer
    std::vector<std::size_t> unfinished; ///< items that were not done, one for each thread that was at work
    bool anyMayBeLate = false;           ///< files were being completed, whichever of them
    bool wasTouched = false;             ///< its removal was begun, and not ended
    /// Folders are numbered from 1 in this order; `parent` is such a number.
    std::vector<Item> items;
};

/// The journal of creations as files of memory: each is mapped, so that noting an item takes no system call and no write to a
/// disk, and outlives a process that is killed. A process holds the lock of its file as long as its creation goes on.
///
/// The folder must lie in a file system in memory (tmpfs, $XDG_RUNTIME_DIR as a rule), where space that was reserved is there: on
/// others a full disk would end the process at a mere store. Anywhere else there is no journal. The files stay, to be used again.
class PosixCreationJournal final : public CreationJournal {
public:
    /// `directory` is made when it is needed, for the user alone; empty for no journal.
    explicit PosixCreationJournal(std::string directory) : _directory(std::move(directory)) {}

    [[nodiscard]] std::unique_ptr<Entry> begin(std::string_view basePath) override;

    /// Whether `begin` came across an entry whose process has ended.
    [[nodiscard]] bool hasSeenRemains() const { return _hasSeenRemains; }

    /// `orvane/creations` in $XDG_RUNTIME_DIR; empty when that is not set to an absolute path.
    [[nodiscard]] static std::string usualDirectory();

    /// Most creations that are noted at one time, those that were killed included.
    static constexpr int MostEntries = 32;
    /// Opens and locks the entry of that name, when there is one and nobody works on it.
    [[nodiscard]] static FileDescriptor openIdle(const std::string &directory, const std::string &name);
    /// Whether an open entry was not finished, as far as its first bytes tell.
    [[nodiscard]] static bool isUnfinished(int file);
    /// Reads an entry; nothing for one that was finished.
    [[nodiscard]] static std::optional<PosixCreationRecord> read(int file);
    /// Notes that what an open entry names is being removed from now on, which changes folders.
    static void beginRemoval(int file);
    /// Makes an open entry one that was finished.
    static void finish(int file);

private:
    class Mapped;

    std::string _directory;
    bool _hasSeenRemains = false;
};

} // namespace orvane
