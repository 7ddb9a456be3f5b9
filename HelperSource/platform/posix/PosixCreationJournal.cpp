#include "platform/posix/PosixCreationJournal.h"

#include "platform/posix/PosixPrivateFolder.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <utility>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/vfs.h>

// A file of the journal is a header, the path of the base, and one record for each item, one behind the other. The length of
// what counts stands in the header and is moved only when a record is complete, so that a process may end at any moment.

namespace orvane {

namespace {

constexpr std::array<char, 8> Magic = {'O', 'R', 'V', 'c', 'r', 'e', 'a', '2'};
constexpr std::size_t SmallestFile = 4096;
constexpr std::size_t LargestFile = std::size_t{1} << 30U;

struct Header {
    std::array<char, 8> magic;
    std::uint64_t used; ///< bytes behind the header; 0 for a creation that is finished, or never was
    timespec begun;
    timespec last;
    std::uint32_t pathLength;
    std::uint32_t isTouched;                                     ///< 1 when the removal was begun
    std::array<std::uint64_t, CreationJournal::Workers> current; ///< how many records there are up to what that thread is at; 0 for
                                                                 ///< nothing, `AnyFile` for one that completes files
};
static_assert(sizeof(Header) % 8 == 0 && std::atomic_ref<std::uint64_t>::is_always_lock_free);

constexpr std::uint64_t AnyFile = UINT64_MAX;

struct RecordHead {
    CreationJournal::FolderNumber parent;
    std::uint16_t length;
    CreationJournal::Kind kind;
};

/// The clock that stamps files.
timespec now() {
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &time);
    return time;
}

bool isInMemory(int file) {
    struct statfs about {};
    return ::fstatfs(file, &about) == 0 && about.f_type == TMPFS_MAGIC;
}

/// Space for so many bytes. A signal ends the call early (Linux, shmem_fallocate).
bool reserve(int file, std::size_t size) {
    int error = 0;
    do {
        error = ::posix_fallocate(file, 0, static_cast<off_t>(size));
    } while (error == EINTR);
    return error == 0;
}

/// With one parent at the most: the folder of the session, which these are in, is not Orvane's to make.
bool makeFolder(const std::string &path) {
    if (makePrivateFolder(path) || errno == EEXIST) {
        return true;
    }
    const std::size_t slash = path.rfind('/');
    return errno == ENOENT && slash != std::string::npos && slash > 0 && (makePrivateFolder(path.substr(0, slash)) || errno == EEXIST) &&
           makePrivateFolder(path);
}

FileDescriptor openEntry(const std::string &directory, const std::string &name, int more) {
    const std::string path = directory + '/' + name;
    return FileDescriptor(::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | more, 0600));
}

bool takeLock(int file) {
    return uninterrupted([&] { return ::flock(file, LOCK_EX | LOCK_NB); }) == 0;
}

} // namespace

/// An entry that is being written.
class PosixCreationJournal::Mapped final : public Entry {
public:
    Mapped(FileDescriptor file, char *memory, std::size_t size) : _file(std::move(file)), _memory(memory), _size(size) {}
    Mapped(const Mapped &) = delete;
    Mapped &operator=(const Mapped &) = delete;
    ~Mapped() override {
        _used().store(0, std::memory_order_release);
        if (_size > SmallestFile) {
            [[maybe_unused]] const int result = ::ftruncate(_file.get(), SmallestFile);
        }
        ::munmap(_memory, _size); // and the closing of the file gives the lock back
    }

    [[nodiscard]] bool start(std::string_view basePath) {
        if (!_hasRoomFor(basePath.size())) {
            return false;
        }
        Header &header = *_header();
        header = {Magic, 0, now(), now(), static_cast<std::uint32_t>(basePath.size()), 0, {}};
        std::memcpy(_memory + sizeof(Header), basePath.data(), basePath.size());
        _used().store(basePath.size(), std::memory_order_release);
        return true;
    }

    FolderNumber aboutToMake(Kind kind, FolderNumber parent, std::string_view name, Worker worker) override {
        const std::lock_guard lock(_mutex);
        const FolderNumber number = kind == Kind::Folder ? ++_folders : Base;
        const std::size_t size = sizeof(RecordHead) + name.size();
        if (_isFull || name.size() > UINT16_MAX || !_hasRoomFor(_used().load(std::memory_order_relaxed) + size)) {
            _isFull = true; // folders are counted: one that is missing would give all that follow wrong numbers
            return number;
        }
        const std::uint64_t used = _used().load(std::memory_order_relaxed);
        char *const at = _memory + sizeof(Header) + used;
        const RecordHead head{parent, static_cast<std::uint16_t>(name.size()), kind};
        std::memcpy(at, &head, sizeof head);
        std::memcpy(at + sizeof head, name.data(), name.size());
        _header()->last = now();
        _header()->current[worker] = ++_records;
        _used().store(used + size, std::memory_order_release);
        return number;
    }

    void isCompleting(Worker worker) override { _isAt(worker, AnyFile); }
    void isDone(Worker worker) override { _isAt(worker, 0); }

private:
    void _isAt(Worker worker, std::uint64_t current) {
        const std::lock_guard lock(_mutex);
        _header()->last = now();
        _header()->current[worker] = current;
    }
    [[nodiscard]] Header *_header() { return reinterpret_cast<Header *>(_memory); }
    [[nodiscard]] std::atomic_ref<std::uint64_t> _used() { return std::atomic_ref(_header()->used); }

    [[nodiscard]] bool _hasRoomFor(std::size_t used) {
        const std::size_t wanted = sizeof(Header) + used;
        if (wanted <= _size) {
            return true;
        }
        const std::size_t size = std::max(_size * 2, (wanted + SmallestFile - 1) / SmallestFile * SmallestFile);
        if (size > LargestFile || !reserve(_file.get(), size)) {
            return false;
        }
        void *const moved = ::mremap(_memory, _size, size, MREMAP_MAYMOVE);
        if (moved == MAP_FAILED) {
            return false;
        }
        _memory = static_cast<char *>(moved);
        _size = size;
        return true;
    }

    std::mutex _mutex;
    FileDescriptor _file;
    char *_memory;
    std::size_t _size;
    FolderNumber _folders = Base;
    std::uint64_t _records = 0;
    bool _isFull = false;
};

std::string PosixCreationJournal::usualDirectory() {
    const char *const runtime = std::getenv("XDG_RUNTIME_DIR");
    return runtime != nullptr && *runtime == '/' ? std::string(runtime) + "/orvane/creations" : std::string();
}

std::unique_ptr<CreationJournal::Entry> PosixCreationJournal::begin(std::string_view basePath) {
    for (int number = 0; number < MostEntries && !_directory.empty(); ++number) {
        const std::string name = std::to_string(number);
        FileDescriptor file = openEntry(_directory, name, O_CREAT);
        if (!file && errno == ENOENT && makeFolder(_directory)) {
            file = openEntry(_directory, name, O_CREAT);
        }
        struct stat status {};
        const bool isLocked = file && takeLock(file.get());
        if (file && !isLocked && errno == EWOULDBLOCK) {
            continue; // somebody works on it
        }
        if (!isLocked || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
            return nullptr;
        }
        auto size = static_cast<std::size_t>(status.st_size);
        if (size < SmallestFile) {
            if (!isInMemory(file.get()) || !reserve(file.get(), SmallestFile)) {
                return nullptr;
            }
            size = SmallestFile;
        }
        void *const memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, file.get(), 0);
        if (memory == MAP_FAILED) {
            return nullptr;
        }
        const Header &header = *static_cast<const Header *>(memory);
        if (header.magic == Magic && header.used > 0) {
            _hasSeenRemains = true;
            ::munmap(memory, size);
            continue;
        }
        auto entry = std::make_unique<Mapped>(std::move(file), static_cast<char *>(memory), size);
        return entry->start(basePath) ? std::move(entry) : nullptr;
    }
    return nullptr;
}

FileDescriptor PosixCreationJournal::openIdle(const std::string &directory, const std::string &name) {
    FileDescriptor file = openEntry(directory, name, 0);
    return file && takeLock(file.get()) ? std::move(file) : FileDescriptor();
}

bool PosixCreationJournal::isUnfinished(int file) {
    Header header{};
    return ::pread(file, &header, sizeof header, 0) == static_cast<ssize_t>(sizeof header) && header.magic == Magic && header.used > 0;
}

std::optional<PosixCreationRecord> PosixCreationJournal::read(int file) {
    Header header{};
    struct stat status {};
    const auto headerSize = static_cast<ssize_t>(sizeof header);
    if (::fstat(file, &status) != 0 || ::pread(file, &header, sizeof header, 0) != headerSize || header.magic != Magic ||
        header.used == 0 || header.used > static_cast<std::uint64_t>(status.st_size) || header.pathLength > header.used) {
        return std::nullopt;
    }
    std::string text(static_cast<std::size_t>(header.used), '\0');
    if (::pread(file, text.data(), text.size(), headerSize) != static_cast<ssize_t>(text.size())) {
        return std::nullopt;
    }
    const bool completesFiles = std::find(header.current.begin(), header.current.end(), AnyFile) != header.current.end();
    PosixCreationRecord record{text.substr(0, header.pathLength), header.begun, header.last, {}, completesFiles, header.isTouched != 0, {}};
    for (std::size_t at = header.pathLength; at + sizeof(RecordHead) <= text.size();) {
        RecordHead head{};
        std::memcpy(&head, text.data() + at, sizeof head);
        at += sizeof head;
        if (head.length > text.size() - at) {
            return std::nullopt;
        }
        record.items.push_back({head.kind, head.parent, text.substr(at, head.length)});
        at += head.length;
    }
    for (const std::uint64_t records : header.current) {
        if (records > 0 && records <= record.items.size()) {
            record.unfinished.push_back(static_cast<std::size_t>(records - 1));
        }
    }
    return record;
}

void PosixCreationJournal::beginRemoval(int file) {
    constexpr std::uint32_t Touched = 1;
    [[maybe_unused]] const ssize_t written = ::pwrite(file, &Touched, sizeof Touched, offsetof(Header, isTouched));
}

void PosixCreationJournal::finish(int file) {
    constexpr std::uint64_t None = 0;
    [[maybe_unused]] const ssize_t written = ::pwrite(file, &None, sizeof None, offsetof(Header, used));
}

} // namespace orvane
