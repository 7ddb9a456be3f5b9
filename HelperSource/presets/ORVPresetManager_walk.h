#pragma once

#include "presets/ORVNodeEntries.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPresetSurvey.h"

#include <atomic>
#include <cstddef>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Creation of file nodes: a node and all below it, depth first, each folder finished (label, then mode) after its
// contents. The walk keeps its own stack, so that the depth of a tree is bounded by memory alone.
//
// What is in a large folder is shared out between two threads where the disk allows it. It is cut into parts, runs of
// neighbours in some folder; the folders that are cut themselves are made ahead. One thread takes the parts in the order of the tree,
// the other one from the end, so that they are seldom in the same folder, where the system lets only one of them make something at a
// time. A failure of the one ends the other, which only makes what comes later; after a failure of the other both go on with what
// comes before. So the failure in the first part that has one is the one that a single thread would have met. What can depend on who comes
// first (a full disk, no descriptors left), and a folder that cannot be made ahead, is not decided by two threads at all:
// everything is taken away and made again by one.
//
// Where most of it lies in one folder, one thread makes all of it, in the tree's order, and the other one only gives the files their
// contents, labels and modes. A file that cannot be given its contents is one of the things that two threads do not decide.

namespace orvane {

/// The reason that stands behind an `errno`, as the system words it.
[[nodiscard]] std::string ORVTextOfSystemError(int error);

/// One creation: what all its walks share.
struct ORVPresetManager::CreationRun {
    /// Of the item at that path and what is in it. Without a survey it is a creation on one thread.
    CreationRun(ORVPresetManager &owner, std::span<const PromptValueRow> rows, std::string_view path, const ORVTreeSurvey *treeSurvey)
        : manager(owner), replacePairs(rows), topPath(path), survey(treeSurvey) {}

    ORVPresetManager &manager;
    std::span<const PromptValueRow> replacePairs;
    std::string_view topPath;
    const ORVTreeSurvey *survey;

    std::atomic<bool> dependsOnOrder = false; ///< the creation has to be made again, on one thread
    bool wasShared = false;                   ///< two threads were at work
    unsigned refusals = 0;                    ///< folders that the writer would not have two threads share

    /// Files whose contents could not be copied.
    struct Emptied {
        std::string first; ///< its path and the reason
        std::size_t count = 0;
    };
    /// Keeps them for the log. One thread.
    void noteEmptied(Emptied emptied);
    /// Tells the log of them: one entry, however many they are.
    void logEmptied();

    /// The content of that name, which goes with the next one. Each is looked up once, for a preset with thousands of copies has few
    /// contents; but every time where they may be among what is made. Null for one that cannot be copied. Any thread of the creation.
    [[nodiscard]] const ContentSource *contentNamed(std::string_view contentFilename);
    /// Whether the creation has to be made again on one thread: also where a content may be one of the items that two threads have
    /// made, so that it hung on them what it was. Before the top folder is left.
    [[nodiscard]] bool isInDoubt();
    /// Whether it is made in the folder of contents, or this folder in it, so that what is made may be a content at the same time:
    /// nothing for two threads. Any thread.
    [[nodiscard]] bool isMadeAmongContents();

private:
    [[nodiscard]] const std::string &_contentFolder();

    std::mutex _monitor; ///< over `_folder` and `_contents`, but not what is in one of these
    /// A content that is looked up by whoever wants it first, while the other thread may look up another one.
    struct Content {
        std::mutex monitor;
        std::optional<const ContentSource *> source; ///< absent until it is looked up
    };
    std::string _folder;
    std::map<std::string, Content, std::less<>> _contents;
    Emptied _emptied;
};

/// One walk of a creation. The path grows and shrinks with it and serves messages only.
class ORVPresetManager::CreationWalk {
public:
    /// Begins in the folder `path`, where the writer stands.
    CreationWalk(CreationRun &run, HierarchyWriter &writer, std::string path) : _run(run), _writer(writer), _path(std::move(path)) {}

    /// Why a walk came to its end before all was made.
    struct Failure {
        std::optional<std::string> message; ///< for the user; absent for a name that is empty
        std::string logEntry = {};          ///< for the log where there is no message
        int error = 0;                      ///< `errno`, 0 where no call has failed
        [[nodiscard]] const std::string &entry() const { return message ? *message : logEntry; }
    };

    /// Makes the nodes and all below them. False at the first failure, which is then in `failure()`.
    [[nodiscard]] bool make(std::span<const PropertyListValue> nodes);
    [[nodiscard]] const Failure &failure() const { return _failure; }

private:
    /// A folder whose contents are being made.
    struct OpenFolder {
        std::span<const PropertyListValue> left; ///< children still to be made
        ItemAttributes attributes;               ///< for when they are made
        std::size_t pathLength;                  ///< of its parent, in the walk's path
        bool isLarge;                            ///< with so much below that two threads may share it
        bool wasTried = false;                   ///< whether they may share its own children
    };
    /// A run of neighbours in the folder made ahead that has this position, or in the folder that is shared.
    struct Part {
        std::size_t folder;
        std::span<const PropertyListValue> nodes;
    };
    /// What two threads share.
    struct SharedParts {
        std::vector<FolderAhead> ahead;               ///< folders before what is in them
        std::vector<ItemAttributes> attributes;       ///< of those
        std::vector<Part> parts;                      ///< in the tree's order
        std::span<const PropertyListValue> unchecked; ///< nodes whose names may be the same
        std::atomic<std::size_t> taken = 0;           ///< how many of them are, or more when none is left
        std::atomic<bool> isTakenFromFront = false;   ///< a thread takes them in the tree's order already
        std::atomic<std::size_t> firstFailed = std::numeric_limits<std::size_t>::max();
        std::mutex monitor; ///< over what follows
        Failure failure;
        std::map<std::size_t, CreationRun::Emptied> emptied; ///< of each part, for a single thread would not come to all of them
    };

    [[nodiscard]] bool _goOn();
    [[nodiscard]] bool _leave();
    [[nodiscard]] bool _makeNode(const PropertyListValue &node);
    [[nodiscard]] bool _enter(const ORVNodeEntries &entries);
    [[nodiscard]] bool _makeFile(const ORVNodeEntries &entries);
    [[nodiscard]] const ContentSource *_contentNamed(std::string_view contentFilename);
    bool _fail(std::string message);
    void _noteReason();
    void _noteEmptied();

    // Two threads.
    [[nodiscard]] bool _isBesideAnother() const { return _shared != nullptr || _isFinishedByAnother; }
    [[nodiscard]] bool _areMostlyFiles(std::span<const PropertyListValue> children) const;
    [[nodiscard]] bool _makeWhileAnotherFinishes(OpenFolder &folder);
    [[nodiscard]] bool _isLargeFolder(std::span<const PropertyListValue> children) const;
    [[nodiscard]] bool _makeOnTwoThreads(OpenFolder &folder);
    [[nodiscard]] bool _cut(std::span<const PropertyListValue> children, std::size_t folder, std::size_t wanted, SharedParts &shared);
    [[nodiscard]] bool _haveDistinctNames(std::span<const PropertyListValue> nodes);
    void _makeParts(SharedParts &shared);
    void _leaveOpenFolders();
    [[nodiscard]] bool _makePart(const SharedParts &shared, const Part &part);
    [[nodiscard]] bool _goTo(const SharedParts &shared, std::size_t folder);
    [[nodiscard]] bool _finishAhead(const SharedParts &shared);
    [[nodiscard]] bool _isInVain() const;

    CreationRun &_run;
    HierarchyWriter &_writer;
    std::string _path; ///< of the current folder
    std::vector<OpenFolder> _open;
    std::string _name; ///< of the current node
    Failure _failure;
    std::map<std::string, const ContentSource *, std::less<>> _contents; ///< those used here
    bool _isFinishedByAnother = false;                                   ///< another thread completes the files of this walk
    SharedParts *_shared = nullptr;                                      ///< those of which this walk makes some
    std::size_t _part = 0;                                               ///< the one that it is at
    std::size_t _ahead = FolderAhead::InCurrent;                         ///< the folder made ahead that it is in
};

} // namespace orvane
