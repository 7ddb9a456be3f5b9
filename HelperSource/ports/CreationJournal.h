#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Keeps what a creation has made so far where it outlives this process, so that the remains of one that was killed can be
/// told from everything else. Any thread may begin an entry.
class CreationJournal {
public:
    /// What kind of item is about to be made.
    enum class Kind : std::uint8_t {
        Folder = 'd',
        File = 'f',
        Copy = 'c', ///< of a content: a file, or a folder with all below it
    };
    /// Number of a folder within one creation.
    using FolderNumber = std::uint32_t;
    /// The folder in which the creation's top folder is made.
    static constexpr FolderNumber Base = 0;
    /// Which of the (at most two) threads of one creation notes something, in the order in which they began; a single one is 0.
    using Worker = std::size_t;
    static constexpr Worker Workers = 2;

    /// One creation. Destroying it says that the creation is over, whether it succeeded or was taken back. Any thread; failures
    /// are silent, and cost the remains their being found.
    class Entry {
    public:
        virtual ~Entry() = default;
        /// Called before this worker makes an item in a folder. Returns the number that a folder has from now on.
        virtual FolderNumber aboutToMake(Kind kind, FolderNumber parent, std::string_view name, Worker worker) = 0;
        /// Called while this worker completes files that were noted before, whichever these are, and again now and then.
        virtual void isCompleting(Worker worker) = 0;
        /// Called after this worker did something, and when it has left a folder.
        virtual void isDone(Worker worker) = 0;
    };

    virtual ~CreationJournal() = default;
    /// Begins an entry for a creation in that folder. Null when that is impossible; the creation goes on without.
    [[nodiscard]] virtual std::unique_ptr<Entry> begin(std::string_view basePath) = 0;
};

/// What a creation left that was killed.
struct CreationRemains {
    std::string topPath;              ///< of its top folder
    std::string entry;                ///< names the journal's entry; opaque
    std::size_t items = 0;            ///< on disk as the creation left them
    std::vector<std::string> changed; ///< paths of those that were changed since, or replaced; they are never removed
};

/// Finds what killed creations left, and takes it away again where the user wants that. One thread at a time.
class CreationRecovery {
public:
    virtual ~CreationRecovery() = default;
    /// The remains of all creations whose process has ended. Those of which nothing is left are forgotten.
    [[nodiscard]] virtual std::vector<CreationRemains> remains() = 0;
    /// Removes what the creation made, newest first, but for what was changed since and the folders that hold it or anything
    /// foreign, and forgets the creation. Returns how many items were removed.
    virtual std::size_t remove(const CreationRemains &remains) = 0;
    /// Forgets the creation; what it made stays.
    virtual void keep(const CreationRemains &remains) = 0;
};

} // namespace orvane
