#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvane {

/// A content file that can be copied, opened once and kept while any creation uses it. Opaque to the core.
class ContentSource {
public:
    virtual ~ContentSource() = default;
};

/// What a new item gets besides its name.
struct ItemAttributes {
    int label = 0;                     ///< Finder label 1 to 7; 0 sets none
    std::optional<unsigned> mode = {}; ///< permission bits 0 to 07777; absent keeps what creation gives
};

/// A folder that is made before its turn, so that several threads can work in it.
struct FolderAhead {
    static constexpr std::size_t InCurrent = SIZE_MAX;
    std::size_t parent; ///< position in the list, before this one's; or `InCurrent` for the current folder
    std::string name;
};

/// What became of work on two threads.
enum class TwoThreads {
    Done,    ///< both have returned
    Refused, ///< nothing was made or called: two could get in each other's way here or would not help, as in a folder that was
             ///< there before, on a single processor, or for a writer that works beside another one already; where both make
             ///< items, also on file systems that do not tell names apart by their bytes (ASCII letters of either case aside)
    Failed,  ///< not as one thread would have done it: nothing was called, for a folder could not be made ahead or there was no
             ///< second thread; or a file could not be finished, or memory was short in the end. What was made stays
};

/// Makes the items of one hierarchy, in the order of a walk through it, and can take away again exactly what it made.
///
/// The writer stands in a current folder, at first the base. It never follows a symbolic link below the base, never
/// overwrites or deletes anything that it did not make itself, and works whatever the length of the full path.
/// Names are single path components in UTF-8; a name that the file system refuses ("." and ".." included) fails.
/// After a failure `lastError()` tells why. One thread at a time, but for `makeOnTwoThreads` and `finishOnSecondThread`.
class HierarchyWriter {
public:
    virtual ~HierarchyWriter() = default;

    /// Makes the folder `name` in the current folder and enters it; one that exists is entered as it is.
    /// False when that is impossible; the current folder is then unchanged.
    [[nodiscard]] virtual bool enterFolder(std::string_view name) = 0;
    /// Gives the current folder its label and then its mode (failures of both are ignored) and returns to its parent.
    virtual void leaveFolder(const ItemAttributes &attributes) = 0;

    /// Makes the file `name`, a copy of `source` (contents, mode, times, extended attributes; a folder with all below it),
    /// then applies `attributes`. False when the name is taken or the copy fails; nothing of it is left then.
    [[nodiscard]] virtual bool copyItem(std::string_view name, const ContentSource &source, const ItemAttributes &attributes) = 0;
    /// Makes the file `name` empty, then applies `attributes`. A regular file of that name that this writer made
    /// earlier is emptied instead; anything else of that name makes it fail.
    [[nodiscard]] virtual bool makeEmptyFile(std::string_view name, const ItemAttributes &attributes) = 0;

    /// Makes the folders of `ahead`, each new, and then has two threads work in and below the current folder at once: calls `work`
    /// on this thread and on another at the same time, each with a writer of its own that stands in the current folder, and
    /// returns when both calls have returned. There and afterwards `enterFolder` goes into folders of `ahead` like into any
    /// other. Both calls must make different names, and come back to the folder unless something failed. What either made
    /// belongs to this writer afterwards.
    [[nodiscard]] virtual TwoThreads makeOnTwoThreads(std::span<const FolderAhead> /*ahead*/,
                                                      const std::function<void(HierarchyWriter &writer)> & /*work*/) {
        return TwoThreads::Refused;
    }

    /// Calls `work` on this thread, where it makes items with this writer and comes back to the current folder unless something
    /// failed; meanwhile another thread gives the files their contents, labels, modes and times. `copyItem` and `makeEmptyFile`
    /// may succeed before that. All is done when this returns. `finished` is called on either thread, perhaps on both at once, now
    /// and then with true, and once with false as soon as a file could not be finished: `work` may end then, and the result
    /// is `Failed`. What `work` throws is thrown on when all is done.
    [[nodiscard]] virtual TwoThreads finishOnSecondThread(const std::function<void()> & /*work*/,
                                                          const std::function<void(bool isGood)> & /*finished*/) {
        return TwoThreads::Refused;
    }

    /// Removes everything that this writer made, newest first, and nothing else: a folder that holds something
    /// foreign stays with it. Errors are ignored. The writer cannot be used for anything else afterwards.
    virtual void removeEverythingMade() = 0;

    /// `errno` of the last failed call.
    [[nodiscard]] virtual int lastError() const = 0;
};

/// Files and folders. Paths are absolute or relative to the working folder, UTF-8 bytes as they are. `fileExists` and
/// `isExecutableFile` may be called from any thread at any time; everything else belongs to the main thread,
/// `contentSource` also to the threads of `HierarchyWriter::makeOnTwoThreads`, one call at a time for one path.
class FileSystem {
public:
    virtual ~FileSystem() = default;
    /// True when something is there, symbolic links followed; a dangling link counts as nothing.
    [[nodiscard]] virtual bool fileExists(std::string_view path) = 0;
    /// True when this process has the right to execute the item, symbolic links followed; for a folder that is the right to
    /// pass through it, so one of those counts.
    [[nodiscard]] virtual bool isExecutableFile(std::string_view path) = 0;
    /// The content file at the path, symbolic links (which stand for aliases) followed to the end. Null when there is
    /// none or it is not readable, for a dangling or cyclic link, a link to a folder, a FIFO, socket or device.
    /// A folder at the path itself is a source. Owned by the file system, valid until `forgetContents()`; repeated calls
    /// for one path open it once.
    [[nodiscard]] virtual const ContentSource *contentSource(std::string_view path) = 0;
    /// Whether the answers that `contentSource` has given since a hierarchy was begun may depend on the moment: a content was made
    /// or changed since then, or stands where none was, as when it is among the items that are being made.
    [[nodiscard]] virtual bool haveContentsChanged() { return false; }
    /// Lets go of all content sources, so that those asked for next see changed files. Not while a writer copies one.
    virtual void forgetContents() = 0;
    /// Starts a hierarchy inside `basePath`; the folder and its parents are made when they do not exist.
    /// Null when that is impossible. Writers must not outlive the file system.
    [[nodiscard]] virtual std::unique_ptr<HierarchyWriter> beginHierarchy(std::string_view basePath) = 0;
};

} // namespace orvane
