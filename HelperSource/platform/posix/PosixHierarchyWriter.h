#pragma once

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixContent.h"
#include "platform/posix/PosixFolderCursor.h"
#include "platform/posix/PosixItemFinish.h"
#include "platform/posix/PosixMadeItems.h"
#include "ports/FileSystem.h"
#include "ports/SystemLog.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

namespace orvane {

/// What the writer has to know about the process.
struct PosixProcessTraits {
    mode_t umask = 0;         ///< permission bits that new items do not get
    SystemLog *log = nullptr; ///< told once of labels, modes and times that cannot be set; null to tell nobody
};

/// `HierarchyWriter` on "at" system calls: one call for an ordinary folder or empty file, four for a copy from memory
/// (open, write, times, close).
///
/// The mode travels in the call that makes the item wherever the result is exactly that mode, else one more call sets it.
/// Relative paths of several components are used only in folders that nobody else can write in (see PosixFolderCursor);
/// with a umask that leaves group or others the right to write, or a default ACL, every folder is opened instead.
class PosixHierarchyWriter final : public HierarchyWriter {
public:
    /// Starts in an open folder. `contents` is asked to let go of descriptors when there are no more.
    PosixHierarchyWriter(FileDescriptor base, const PosixProcessTraits &traits, PosixContentStore &contents);

    PosixHierarchyWriter(const PosixHierarchyWriter &) = delete;
    PosixHierarchyWriter &operator=(const PosixHierarchyWriter &) = delete;
    ~PosixHierarchyWriter() override;

    /// Makes the current folder the base, which is never left; for the folders above it that had to be made first.
    void settle() { _baseDepth = _cursor.depth(); }

    [[nodiscard]] bool enterFolder(std::string_view name) override;
    void leaveFolder(const ItemAttributes &attributes) override;
    [[nodiscard]] bool copyItem(std::string_view name, const ContentSource &source, const ItemAttributes &attributes) override;
    [[nodiscard]] bool makeEmptyFile(std::string_view name, const ItemAttributes &attributes) override;
    [[nodiscard]] TwoThreads makeOnTwoThreads(std::span<const FolderAhead> ahead,
                                              const std::function<void(HierarchyWriter &writer)> &work) override;
    [[nodiscard]] TwoThreads finishOnSecondThread(const std::function<void()> &work,
                                                  const std::function<void(bool isGood)> &finished) override;
    void removeEverythingMade() override;
    [[nodiscard]] int lastError() const override { return _error; }

private:
    using Index = PosixMadeItems::Index;
    using Place = PosixFolderCursor::Place;

    /// How an item gets its mode: `create` in the call that makes it, then `final` in a call of its own if `isSeparate`.
    struct ModePlan {
        mode_t create;
        mode_t final;
        bool isSeparate;
        [[nodiscard]] std::optional<mode_t> separately() const { return isSeparate ? std::optional(final) : std::nullopt; }
    };
    /// What a folder gets when it is left.
    struct FolderFinish {
        int label = 0;
        std::optional<unsigned> mode;
        const PosixItemProperties *properties = nullptr; ///< times and attributes of the folder that it is a copy of
    };

    /// What could not be done, and is no failure of the creation: labels, modes and times that were not set, items not taken away.
    struct Omissions {
        std::size_t count = 0;
        int error = 0;     ///< of the first
        std::string first; ///< its path from the base
        Index end = 0;     ///< of the list of what was made, when it was noted

        /// One more of them.
        void add(int why, std::string_view root, std::string_view folder, std::string_view name, Index listEnd);
        void add(Omissions &&others);
    };

    bool _fail(int error);
    /// Takes note of an omission in the current folder unless `error` is 0.
    void _noteOmission(std::string_view name, int error);
    void _logOmissions(std::string_view what, const Omissions &omissions) const;
    [[nodiscard]] bool _mayUse(std::string_view name);
    [[nodiscard]] ModePlan _planMode(std::optional<unsigned> mode, bool writesAttributes) const;
    [[nodiscard]] bool _note(std::string_view name);
    /// Takes a file away that could not be finished; `errno` stays.
    void _drop(std::string_view name);

    // Folders. These leave `errno`.
    [[nodiscard]] bool _makeFolder(std::string_view name, mode_t mode);
    [[nodiscard]] bool _enterMadeFolder(std::string_view name);
    [[nodiscard]] bool _enterExistingFolder(std::string_view name);
    void _lookAtOpenFolder(Index item);
    void _finishFolder(const FolderFinish &finish);
    [[nodiscard]] static int _finishOpenFolder(int folder, const FolderFinish &finish, bool isNew);
    void _rememberMode(Index item, unsigned mode);

    // Files. These leave `errno`.
    [[nodiscard]] bool _makeNewEmptyFile(std::string_view name, const ItemAttributes &attributes);
    [[nodiscard]] bool _makeLabelledFile(std::string_view name, const ModePlan &plan, int label);
    [[nodiscard]] bool _emptyAgain(std::string_view name, const ItemAttributes &attributes);
    [[nodiscard]] bool _copyFile(std::string_view name, const PosixContent &content, const ItemAttributes &attributes);
    [[nodiscard]] bool _copySmall(std::string_view name, const PosixContent &content, const ModePlan &plan, const PosixFileFinish &finish);
    [[nodiscard]] bool _copyLarge(std::string_view name, const PosixContent &content, const ModePlan &plan, const PosixFileFinish &finish);
    [[nodiscard]] bool _finishLater(std::string_view name, FileDescriptor file, const PosixFileFinish &finish);
    [[nodiscard]] FileDescriptor _openUnnamed(const ModePlan &plan);
    [[nodiscard]] FileDescriptor _openHidden(const ModePlan &plan, std::string &hiddenName);
    [[nodiscard]] bool _publishUnnamed(int file, std::string_view name);
    [[nodiscard]] bool _publishHidden(const std::string &hiddenName, std::string_view name);

    // Folders of contents. These leave `errno`.
    [[nodiscard]] bool _copyFolder(std::string_view name, const PosixContent &content, const ItemAttributes &attributes);
    [[nodiscard]] bool _copyTree(std::string_view name, int source, const ItemAttributes &attributes);
    [[nodiscard]] bool _makeClosedFolder(std::string_view name);
    [[nodiscard]] bool _copyFilesOf(class PosixFolderReader &reader);
    [[nodiscard]] bool _copyLink(std::string_view name, int folder);

    // Two threads.
    /// What two threads made in a folder at once: this one from `begin`, the other from `middle` to `end`.
    struct SharedWork {
        Index folder;
        Index begin;
        Index middle;
        Index end;
    };
    /// A folder made ahead, and what entering it again needs.
    struct AheadFolder {
        std::size_t parent; ///< as in `FolderAhead`
        std::string name;
        Index item;
        PosixFolderCursor::Options options;
        std::optional<PosixMadeItems::Identity> identity; ///< where somebody else could put another in its place
    };
    /// The second writer of a folder, which `folder` holds open.
    PosixHierarchyWriter(FileDescriptor folder, const PosixHierarchyWriter &first);
    [[nodiscard]] bool _makeAhead(std::span<const FolderAhead> ahead);
    /// The folder of that name that was made ahead in the current one; null when there is none.
    [[nodiscard]] const AheadFolder *_findAhead(std::string_view name) const;
    [[nodiscard]] bool _enterAhead(const AheadFolder &folder);
    /// Leaves folders made ahead until the current one is that one, or the one in which they were made.
    void _leaveAheadUpTo(std::size_t ahead);
    void _append(PosixHierarchyWriter &other);
    /// A second descriptor of the current folder for a second thread; none where two threads must not work in it.
    [[nodiscard]] FileDescriptor _openForSecondThread();
    [[nodiscard]] std::string _pathBelowBase(Index item) const;

    // Removal. It changes nothing but the cursor, so two threads can be at it with a cursor each.
    void _leaveRestrictedFolders();
    void _removeAndTell(Index first);
    void _removeFrom(Index first, Omissions &left);
    [[nodiscard]] std::string _pathForTelling() const;
    void _removeShared(const SharedWork &shared, Omissions &left);
    [[nodiscard]] bool _removeOnTwoThreads(const SharedWork &shared, Omissions &left);
    /// The cursor's root lies below the base at the path `root`.
    void _removeRange(PosixFolderCursor &cursor, std::string_view root, Index first, Index end, Omissions &left) const noexcept;
    [[nodiscard]] bool _remove(PosixFolderCursor &cursor, Index item) const noexcept;
    [[nodiscard]] bool _goTo(PosixFolderCursor &cursor, Index folder) const;
    [[nodiscard]] bool _goInto(PosixFolderCursor &cursor, Index folder) const;

    PosixProcessTraits _traits;
    PosixContentStore &_contents;
    PosixMadeItems _items;
    PosixFolderCursor _cursor;
    class PosixFileFinisher *_finisher = nullptr; ///< to which files are handed over for what they get besides their names
    std::vector<SharedWork> _shared;              ///< in order, one behind the other
    std::vector<AheadFolder> _ahead;              ///< of the last work on two threads
    std::vector<std::size_t> _inside;             ///< those of them that the writer is in
    std::size_t _aheadDepth = 0;                  ///< of the folder in which they are
    Index _aheadIn = PosixMadeItems::Root;
    std::size_t _baseDepth = 0;
    std::string _pathOfRoot; ///< where the cursor's root lies below the base; with a "/" at its end, or empty
    Omissions _omissions;
    int _error = 0;
    bool _isOver = false;
    bool _isBesideAnother = false; ///< another thread works beside this one, so that neither may have a third
    bool _hasMakeNode = true;      ///< mknodat makes regular files here
    bool _hasUnnamed = true;       ///< O_TMPFILE works here
    unsigned _hiddenNames = 0;     ///< hidden names used so far
};

/// True when new items in the open folder get permissions from a default ACL, and when that cannot be found out.
[[nodiscard]] bool hasDefaultACL(int folder);

} // namespace orvane
