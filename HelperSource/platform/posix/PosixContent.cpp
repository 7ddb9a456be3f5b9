#include "platform/posix/PosixContent.h"

#include "platform/posix/PosixPath.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <new>

#include <fcntl.h>
#include <sys/sysmacros.h>

namespace orvane {

namespace {

constexpr std::size_t LargestCache = std::size_t{8} * 1024 * 1024;
constexpr std::size_t OpenContents = 64; ///< where the process has 512 descriptors or more
constexpr std::size_t FewContents = 4;   ///< so many may be open before anybody asks what the limit is

/// Opens without waiting for the other end of a FIFO and without making a terminal ours.
FileDescriptor openForReading(std::string_view path) {
    const PosixPath reached(path);
    return FileDescriptor(
        uninterrupted([&] { return ::openat(reached.folder(), reached.path(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
}

/// Links followed.
bool isThere(std::string_view path) {
    const PosixPath reached(path);
    struct stat status {};
    return ::fstatat(reached.folder(), reached.path(), &status, 0) == 0;
}

bool isSame(const struct stat &before, const struct statx &now) {
    const auto isSameTime = [](const timespec &one, const statx_timestamp &other) {
        return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
    };
    return before.st_dev == makedev(now.stx_dev_major, now.stx_dev_minor) && before.st_ino == now.stx_ino &&
           before.st_mode == now.stx_mode && static_cast<std::uint64_t>(before.st_size) == now.stx_size &&
           isSameTime(before.st_mtim, now.stx_mtime) && isSameTime(before.st_ctim, now.stx_ctime);
}

/// Whether a stamp lies between that moment and now, as far as file systems tell: some keep whole seconds, FAT every second one.
bool isSince(timespec moment, const statx_timestamp &stamp) {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    if (stamp.tv_nsec == 0) {
        constexpr time_t Coarsest = 2;
        moment = {moment.tv_sec - Coarsest, 0};
    }
    const auto isOrdered = [](auto earlier, auto later) {
        return earlier.tv_sec < later.tv_sec ||
               (earlier.tv_sec == later.tv_sec && static_cast<std::int64_t>(earlier.tv_nsec) <= later.tv_nsec);
    };
    return isOrdered(moment, stamp) && isOrdered(stamp, now); // a clock that is put back may leave stamps of the future
}

bool isLink(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1); // a "/" at the end would make the call follow the link
    }
    const PosixPath reached(path);
    struct stat status {};
    return ::fstatat(reached.folder(), reached.path(), &status, AT_SYMLINK_NOFOLLOW) != 0 || S_ISLNK(status.st_mode);
}

} // namespace

mode_t modeOfCopy(const struct stat &status) {
    constexpr mode_t SetIDs = S_ISUID | S_ISGID;
    const mode_t mode = status.st_mode & 07777U;
    const bool mayHaveThem = (mode & SetIDs) == 0 || (status.st_uid == ::geteuid() && status.st_gid == ::getegid());
    return mayHaveThem ? mode : mode & ~SetIDs;
}

std::unique_ptr<PosixContent> PosixContent::ofOpenItem(FileDescriptor item, std::string_view path, std::size_t cacheLeft) {
    struct stat status {};
    if (::fstat(item.get(), &status) != 0) {
        return nullptr;
    }
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
        errno = EINVAL;
        return nullptr;
    }
    std::unique_ptr<PosixContent> content(new PosixContent());
    content->_path = path;
    content->_isFolder = S_ISDIR(status.st_mode);
    content->_size = status.st_size;
    content->_status = status;
    content->_isSparse = static_cast<off_t>(status.st_blocks) * 512 < status.st_size; // st_blocks counts 512 bytes (man stat)
    content->_properties = {modeOfCopy(status), {status.st_atim, status.st_mtim}, readExtendedAttributes(item.get())};
    const auto size = static_cast<std::size_t>(status.st_size);
    if (!content->_isFolder && size <= PosixLargestCachedContent && size <= cacheLeft) {
        if (!content->_read(item.get())) {
            return nullptr;
        }
    } else {
        content->_descriptor = std::make_shared<const FileDescriptor>(std::move(item));
    }
    return content;
}

/// Asks for one byte more than the size says, so that a single call sees the end of an unchanged file.
bool PosixContent::_read(int descriptor) {
    if (_size == 0) {
        return _readMadeUp(descriptor);
    }
    _bytes.resize(static_cast<std::size_t>(_size) + 1);
    std::size_t got = 0;
    while (got < _bytes.size()) {
        const ssize_t done = uninterrupted([&] { return ::read(descriptor, _bytes.data() + got, _bytes.size() - got); });
        if (done < 0) {
            return false;
        }
        got += static_cast<std::size_t>(done);
        if (done == 0 || got == static_cast<std::size_t>(_size)) {
            break;
        }
    }
    _bytes.resize(std::min(got, static_cast<std::size_t>(_size)));
    _isInMemory = true;
    return true;
}

/// What a file has whose size is 0: nothing as a rule, but those in /proc are made up when they are read. Fails with EFBIG where
/// there seems to be no end.
bool PosixContent::_readMadeUp(int descriptor) {
    std::array<char, 4096> part;
    _isInMemory = true;
    while (true) {
        const ssize_t got = uninterrupted([&] { return ::read(descriptor, part.data(), part.size()); });
        if (got <= 0) {
            _size = static_cast<off_t>(_bytes.size());
            return got == 0;
        }
        _bytes.append(part.data(), static_cast<std::size_t>(got));
        if (_bytes.size() > LargestCache) {
            errno = EFBIG;
            return false;
        }
    }
}

PosixContent::Opened PosixContent::opened() const {
    return _store != nullptr ? _store->_opened(*this) : _descriptor;
}

const PosixContent *PosixContentStore::content(std::string_view path) {
    std::unique_lock lock(_mutex);
    const auto known = _contents.find(path);
    if (known != _contents.end()) {
        return known->second.content.get();
    }
    const std::size_t cacheLeft = LargestCache - std::min(LargestCache, _cached);
    lock.unlock();
    auto loaded = path.find('\0') == std::string_view::npos ? _load(path, cacheLeft) : nullptr;
    const bool wasThere = loaded != nullptr || isThere(path);
    lock.lock();
    const auto [kept, isNew] = _contents.try_emplace(std::string(path), Kept{std::move(loaded), wasThere});
    PosixContent *const content = kept->second.content.get();
    if (isNew && content != nullptr) {
        content->_store = this;
        _cached += content->_bytes.size();
        if (content->_descriptor) {
            _use(*content);
        }
    }
    return content;
}

void PosixContentStore::beginToWatch() {
    const std::lock_guard lock(_mutex);
    ::clock_gettime(CLOCK_REALTIME_COARSE, &_watchedSince);
}

bool PosixContentStore::haveChanged() {
    const std::lock_guard lock(_mutex);
    try {
        return std::any_of(_contents.begin(), _contents.end(), [&](const auto &each) { return _hasChanged(each.first, each.second); });
    } catch (const std::bad_alloc &) {
        return true;
    }
}

bool PosixContentStore::_hasChanged(const std::string &path, const Kept &kept) const {
    if (path.find('\0') != std::string::npos) {
        return false;
    }
    const PosixPath reached(path);
    struct statx status {};
    if (::statx(reached.folder(), reached.path(), 0, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
        return kept.content != nullptr; // as it was there
    }
    const bool knowsBirth = (status.stx_mask & STATX_BTIME) != 0;
    return !kept.wasThere || (kept.content != nullptr && !isSame(kept.content->_status, status)) ||
           isSince(_watchedSince, knowsBirth ? status.stx_btime : status.stx_ctime);
}

void PosixContentStore::forget() {
    const std::lock_guard lock(_mutex);
    _open.clear();
    _contents.clear();
    _cached = 0;
}

void PosixContentStore::closeAll() {
    const std::lock_guard lock(_mutex);
    for (const PosixContent *const content : _open) {
        content->_descriptor.reset();
    }
    _open.clear();
}

PosixContent::Opened PosixContentStore::_opened(const PosixContent &content) {
    const std::lock_guard lock(_mutex);
    if (!content._descriptor) {
        FileDescriptor item = openForReading(content._path);
        struct stat status {};
        if (!item || ::fstat(item.get(), &status) != 0) {
            return nullptr;
        }
        if (status.st_dev != content._status.st_dev || status.st_ino != content._status.st_ino) {
            errno = ESTALE; // it was replaced since: its bytes would go with the other one's size, mode and attributes
            return nullptr;
        }
        content._descriptor = std::make_shared<const FileDescriptor>(std::move(item));
    }
    _use(content);
    return content._descriptor;
}

void PosixContentStore::_use(const PosixContent &content) {
    content._lastUse = ++_uses;
    if (std::find(_open.begin(), _open.end(), &content) != _open.end()) {
        return;
    }
    if (_open.size() >= FewContents) {
        for (const std::size_t most = shareOfDescriptors(OpenContents); _open.size() >= most;) {
            _closeOldest();
        }
    }
    _open.push_back(&content);
}

std::unique_ptr<PosixContent> PosixContentStore::_load(std::string_view path, std::size_t cacheLeft) {
    FileDescriptor item = openForReading(path);
    if (!item) {
        return nullptr;
    }
    auto content = PosixContent::ofOpenItem(std::move(item), path, cacheLeft);
    return content != nullptr && content->isFolder() && isLink(path) ? nullptr : std::move(content);
}

void PosixContentStore::_closeOldest() {
    const auto oldest =
        std::min_element(_open.begin(), _open.end(), [](const auto *left, const auto *right) { return left->_lastUse < right->_lastUse; });
    (*oldest)->_descriptor.reset();
    _open.erase(oldest);
}

} // namespace orvane
