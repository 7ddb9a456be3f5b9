#include "platform/posix/PosixCreationRecovery.h"

#include "platform/posix/PosixCreationJournal.h"
#include "platform/posix/PosixItemFinish.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

using Kind = CreationJournal::Kind;

constexpr std::int64_t Second = 1'000'000'000;
/// Two ticks of the slowest clock that stamps files (10 ms at 100 Hz).
constexpr std::int64_t Ticks = 20'000'000;
constexpr int DeepestCopy = 200; ///< levels of a folder that was copied; what lies deeper counts as changed

std::int64_t nanoseconds(const timespec &time) {
    return static_cast<std::int64_t>(time.tv_sec) * Second + time.tv_nsec;
}

std::int64_t nanoseconds(const statx_timestamp &time) {
    return time.tv_sec * Second + time.tv_nsec;
}

FileDescriptor openFolder(int at, const char *name, int follow) {
    return FileDescriptor(uninterrupted([&] { return ::openat(at, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | follow); }));
}

/// Names in an open folder.
std::vector<std::string> namesIn(int folder) {
    std::vector<std::string> names;
    const int copy = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR *)> listing(copy < 0 ? nullptr : ::fdopendir(copy), ::closedir);
    while (const dirent *const entry = listing ? ::readdir(listing.get()) : nullptr) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    return names;
}

/// The path of what was made first; empty when nothing was.
std::string topPathOf(const PosixCreationRecord &record) {
    const std::string separator = record.basePath.ends_with('/') ? "" : "/";
    return record.items.empty() ? std::string() : record.basePath + separator + record.items.front().name;
}

/// Where the folder stands that a creation began in, and did not make.
constexpr std::size_t Base = 0;

/// Looks at the items of one record, and removes them.
class Remains {
public:
    /// What may be removed may be given another mode for that, where its own keeps its owner out.
    explicit Remains(PosixCreationRecord record, bool mayBeRemoved = false)
        : _record(std::move(record)), _mayBeRemoved(mayBeRemoved), _base(openFolder(AT_FDCWD, _record.basePath.c_str(), 0)),
          _begun(nanoseconds(_record.begun) - Ticks), _ended(nanoseconds(_record.last) + Ticks) {
        _examine();
    }

    [[nodiscard]] std::string topPath() const { return topPathOf(_record); }
    [[nodiscard]] std::size_t items() const { return _items; }
    [[nodiscard]] const std::vector<std::string> &changed() const { return _changed; }

    /// Newest first, so that a folder is empty of what is ours when its turn comes.
    std::size_t remove() {
        std::size_t removed = 0;
        for (auto found = _found.rbegin(); found != _found.rend(); ++found) {
            const int folder = _open(found->parent);
            if (found->kind == Found::Kind::Tree) {
                removed += _removeTree(folder, found->name, found->ended, 0, found->parent != Base);
            } else if (found->kind == Found::Kind::Folder) {
                removed += _unlink(folder, found->name, AT_REMOVEDIR, found->parent != Base);
            } else if (_isAsLeft(folder, found->name, Kind::File, found->ended)) {
                removed += _unlink(folder, found->name, 0, found->parent != Base);
            }
        }
        for (auto opened = _modes.rbegin(); opened != _modes.rend(); ++opened) { // those that stay, the innermost first
            if (const int folder = _open(opened->folder); folder >= 0) {
                ::fchmod(folder, opened->mode);
            }
        }
        return removed;
    }

private:
    /// A folder of the record that is there as it was left.
    struct Folder {
        std::optional<std::size_t> parent; ///< in `_folders`; none for the base
        std::string name;
        std::string path;
    };
    struct Found {
        enum class Kind : std::uint8_t { File, Folder, Tree };
        std::size_t parent; ///< in `_folders`
        std::string name;
        Kind kind;
        std::int64_t ended; ///< nothing of it may have been changed later
    };

    /// A folder that was given another mode, and the one it had.
    struct Opened {
        std::size_t folder; ///< in `_folders`
        mode_t mode;
    };

    void _examine() {
        _folders.push_back({std::nullopt, {}, _record.basePath});
        std::vector<std::optional<std::size_t>> numbers{0}; // of the record's folders those in `_folders`
        // Two threads note a folder twice, and a file may have been made in two attempts: as a copy, then empty.
        std::map<std::pair<std::size_t, std::string>, std::optional<std::size_t>> known;
        for (std::size_t i = 0; _base && i < _record.items.size(); ++i) {
            const PosixCreationRecord::Item &item = _record.items[i];
            const auto parent = item.parent < numbers.size() ? numbers[item.parent] : std::nullopt;
            std::optional<std::size_t> folder;
            if (parent && _isOneComponent(item.name)) {
                const auto [place, isNew] = known.try_emplace({*parent, item.name});
                if (isNew && _look(*parent, item) && item.kind == Kind::Folder) {
                    place->second = _folders.size();
                    _folders.push_back({*parent, item.name, _folders[*parent].path + '/' + item.name});
                }
                folder = place->second;
            }
            if (item.kind == Kind::Folder) {
                numbers.push_back(folder);
            }
        }
    }

    static bool _isOneComponent(const std::string &name) {
        return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos && name.find('\0') == std::string::npos;
    }

    /// Looks at one item. True for one that is there, and not another one in its place.
    [[nodiscard]] bool _look(std::size_t parent, const PosixCreationRecord::Item &item) {
        const int folder = _open(parent);
        if (folder < 0 && errno == EACCES) { // it will show when the folder is opened for removal
            ++_items;
            return true;
        }
        struct stat status {};
        if (folder < 0 || ::fstatat(folder, item.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
            return false;
        }
        // What was not done, and the folders on the way to it, may have been changed by the calls during which the process ended.
        const auto isMeant = [&](std::size_t unfinished) { // noted a second time, perhaps: as a copy, then empty
            return item.kind == Kind::Folder || _record.items[unfinished].name == item.name;
        };
        const bool mayBeLate = (_record.anyMayBeLate && item.kind != Kind::Folder) ||
                               std::any_of(_record.unfinished.begin(), _record.unfinished.end(), isMeant);
        const std::int64_t ended = _ended + (mayBeLate ? Second : 0);
        const bool isTree = item.kind == Kind::Copy && S_ISDIR(status.st_mode);
        std::size_t inTree = 0;
        const bool isAsLeft = isTree ? _isTreeAsLeft(folder, item.name, ended, 0, inTree) : _isAsLeft(folder, item.name, item.kind, ended);
        // A removal that was killed has changed the folders out of which it took something; one that is empty by now may go.
        const bool wasTouched = _record.wasTouched && item.kind == Kind::Folder && !isAsLeft && _isSameFolder(folder, item.name);
        if (isAsLeft || wasTouched) {
            _items += isTree ? inTree : 1;
            const Found::Kind kind = isTree ? Found::Kind::Tree : item.kind == Kind::Folder ? Found::Kind::Folder : Found::Kind::File;
            _found.push_back({parent, item.name, kind, ended});
            return true;
        }
        _changed.push_back(_folders[parent].path + '/' + item.name);
        // A folder into which somebody has put something is still the one that was made, and what is in it can be as it was.
        return item.kind == Kind::Folder && _isSameFolder(folder, item.name);
    }

    [[nodiscard]] bool _isSameFolder(int folder, const std::string &name) const {
        struct statx status {};
        return ::statx(folder, name.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &status) == 0 &&
               S_ISDIR(status.stx_mode) && status.stx_uid == ::geteuid() && (status.stx_mask & STATX_BTIME) != 0 &&
               nanoseconds(status.stx_btime) >= _begun && nanoseconds(status.stx_btime) <= _ended + Second;
    }

    [[nodiscard]] bool _isAsLeft(int folder, const std::string &name, Kind kind, std::int64_t ended) const {
        struct statx status {};
        if (::statx(folder, name.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
            return false;
        }
        const bool isKind = kind == Kind::Folder ? S_ISDIR(status.stx_mode) : S_ISREG(status.stx_mode) && status.stx_nlink == 1;
        const bool isBornHere = (status.stx_mask & STATX_BTIME) == 0 || nanoseconds(status.stx_btime) >= _begun;
        const std::int64_t changed = nanoseconds(status.stx_ctime);
        return isKind && status.stx_uid == ::geteuid() && isBornHere && changed >= _begun && changed <= ended;
    }

    /// A folder that was copied: everything in it is as the copying left it.
    [[nodiscard]] bool _isTreeAsLeft(int at, const std::string &name, std::int64_t ended, int depth, std::size_t &items) const {
        const FileDescriptor folder = openFolder(at, name.c_str(), O_NOFOLLOW);
        if (!folder || depth > DeepestCopy || !_isAsLeft(at, name, Kind::Folder, ended)) {
            return false;
        }
        ++items;
        for (const std::string &each : namesIn(folder.get())) {
            struct stat status {};
            if (::fstatat(folder.get(), each.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
                return false;
            }
            if (S_ISDIR(status.st_mode) ? !_isTreeAsLeft(folder.get(), each, ended, depth + 1, items)
                                        : !_isLeafAsLeft(folder.get(), each, ended)) {
                return false;
            }
            items += S_ISDIR(status.st_mode) ? 0 : 1;
        }
        return true;
    }

    /// Copies of folders hold symbolic links as well.
    [[nodiscard]] bool _isLeafAsLeft(int folder, const std::string &name, std::int64_t ended) const {
        struct stat status {};
        if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 || status.st_uid != ::geteuid()) {
            return false;
        }
        const std::int64_t changed = nanoseconds(status.st_ctim);
        return S_ISLNK(status.st_mode) ? changed >= _begun && changed <= ended : _isAsLeft(folder, name, Kind::File, ended);
    }

    std::size_t _removeTree(int at, const std::string &name, std::int64_t ended, int depth, bool mayOpen) {
        const FileDescriptor folder = openFolder(at, name.c_str(), O_NOFOLLOW);
        std::size_t removed = 0;
        if (!folder || depth > DeepestCopy) {
            return 0;
        }
        for (const std::string &each : namesIn(folder.get())) {
            if (_isLeafAsLeft(folder.get(), each, ended)) {
                removed += _unlink(folder.get(), each, 0, true);
            } else {
                removed += _removeTree(folder.get(), each, ended, depth + 1, true);
            }
        }
        return removed + _unlink(at, name, AT_REMOVEDIR, mayOpen);
    }

    /// 1 when it is gone. A folder that is ours (`mayOpen`) may have been given a mode that keeps its owner from taking something out.
    [[nodiscard]] static std::size_t _unlink(int folder, const std::string &name, int flags, bool mayOpen) {
        if (::unlinkat(folder, name.c_str(), flags) == 0) {
            return 1;
        }
        struct stat status {};
        if (!mayOpen || errno != EACCES || ::fstat(folder, &status) != 0 || ::fchmod(folder, (status.st_mode | 0700U) & 07777U) != 0) {
            return 0;
        }
        const bool removed = ::unlinkat(folder, name.c_str(), flags) == 0;
        ::fchmod(folder, status.st_mode & 07777U);
        return removed ? 1 : 0;
    }

    /// A folder of `_folders`, reached from the base without following a link; -1 when it cannot be. Valid until the next call.
    [[nodiscard]] int _open(std::size_t folder) {
        if (_opened && _openedFolder == folder) {
            return _opened.get();
        }
        std::vector<std::size_t> way;
        for (std::size_t at = folder; _folders[at].parent; at = *_folders[at].parent) {
            way.push_back(at);
        }
        _opened = openFolder(_base.get(), ".", 0);
        for (auto each = way.rbegin(); _opened && each != way.rend(); ++each) {
            FileDescriptor next = _enter(_opened.get(), _folders[*each].name);
            if (!next && errno == EACCES && _mayBeRemoved && _letIn(_opened.get(), *each)) {
                next = _enter(_opened.get(), _folders[*each].name);
            }
            _opened = std::move(next);
        }
        _openedFolder = folder;
        return _opened.get();
    }

    /// A folder in which names can be looked up, which takes another right than reading it; none, with `errno`, otherwise.
    [[nodiscard]] static FileDescriptor _enter(int at, const std::string &name) {
        FileDescriptor folder = openFolder(at, name.c_str(), O_NOFOLLOW);
        struct stat status {};
        return folder && ::fstatat(folder.get(), ".", &status, 0) == 0 ? std::move(folder) : FileDescriptor();
    }

    /// Lets the owner into a folder that was there as it was left.
    [[nodiscard]] bool _letIn(int at, std::size_t folder) {
        const FileDescriptor closed(::openat(at, _folders[folder].name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        struct stat status {};
        if (!closed || ::fstat(closed.get(), &status) != 0 || status.st_uid != ::geteuid() ||
            setModeOfOpenItem(closed.get(), (status.st_mode | 0700U) & 07777U) != 0) {
            errno = EACCES;
            return false;
        }
        _modes.push_back({folder, status.st_mode & 07777U});
        return true;
    }

    PosixCreationRecord _record;
    bool _mayBeRemoved;
    FileDescriptor _base;
    std::int64_t _begun;
    std::int64_t _ended;
    std::vector<Folder> _folders; ///< the base first
    FileDescriptor _opened;       ///< one of them
    std::size_t _openedFolder = 0;
    std::vector<Opened> _modes;
    std::vector<Found> _found; ///< as they were made
    std::vector<std::string> _changed;
    std::size_t _items = 0;
};

} // namespace

bool PosixCreationRecovery::mayHaveRemains() const {
    bool found = false;
    const bool isThere = !_directory.empty() && ::access(_directory.c_str(), F_OK) == 0;
    for (int number = 0; isThere && !found && number < PosixCreationJournal::MostEntries; ++number) {
        const FileDescriptor file = PosixCreationJournal::openIdle(_directory, std::to_string(number));
        found = file && PosixCreationJournal::isUnfinished(file.get());
    }
    return found;
}

std::vector<CreationRemains> PosixCreationRecovery::remains() {
    std::vector<CreationRemains> result;
    for (int number = 0; number < PosixCreationJournal::MostEntries && !_directory.empty(); ++number) {
        const std::string name = std::to_string(number);
        const FileDescriptor file = PosixCreationJournal::openIdle(_directory, name);
        auto record = file ? PosixCreationJournal::read(file.get()) : std::nullopt;
        if (!record) {
            continue;
        }
        const Remains found(std::move(*record));
        if (found.items() == 0 && found.changed().empty()) {
            PosixCreationJournal::finish(file.get());
            continue;
        }
        result.push_back({found.topPath(), name, found.items(), found.changed()});
    }
    return result;
}

std::size_t PosixCreationRecovery::remove(const CreationRemains &remains) {
    const FileDescriptor file = PosixCreationJournal::openIdle(_directory, remains.entry);
    auto record = file ? PosixCreationJournal::read(file.get()) : std::nullopt;
    if (!record) {
        return 0;
    }
    Remains found(std::move(*record), true);
    if (found.topPath() != remains.topPath) {
        return 0; // another creation has used the entry meanwhile
    }
    PosixCreationJournal::beginRemoval(file.get());
    const std::size_t removed = found.remove();
    PosixCreationJournal::finish(file.get());
    return removed;
}

void PosixCreationRecovery::keep(const CreationRemains &remains) {
    const FileDescriptor file = PosixCreationJournal::openIdle(_directory, remains.entry);
    const auto record = file ? PosixCreationJournal::read(file.get()) : std::nullopt;
    if (record && !record->items.empty() && topPathOf(*record) == remains.topPath) { // else another creation has used it meanwhile
        PosixCreationJournal::finish(file.get());
    }
}

} // namespace orvane
