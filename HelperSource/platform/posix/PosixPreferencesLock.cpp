#include "platform/posix/PosixPreferencesLock.h"

#include "platform/posix/PosixOpenFile.h"
#include "platform/posix/PosixPrivateFolder.h"

#include <algorithm>
#include <cstring>

#include <ctime>
#include <fcntl.h>
#include <sys/file.h>

namespace orvane {

namespace {

constexpr int MostLost = 100; ///< lock files taken away while they are locked, before that counts as impossible

void pauseFor(std::chrono::milliseconds time) {
    timespec left{time.count() / 1000, static_cast<long>(time.count() % 1000) * 1'000'000};
    while (::nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

} // namespace

std::string folderOfPreferencesPath(const std::string &path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool PosixPreferencesLock::_open(std::string &why) {
    constexpr int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    _file = FileDescriptor(uninterrupted([&] { return ::open(_path.c_str(), flags, 0600); }));
    if (!_file && errno == ENOENT && makePrivateFolders(folderOfPreferencesPath(_path))) {
        _file = FileDescriptor(uninterrupted([&] { return ::open(_path.c_str(), flags, 0600); }));
    }
    if (!_file) {
        why = "the lock file " + _path + " cannot be opened: " + std::strerror(errno);
    }
    return static_cast<bool>(_file);
}

bool PosixPreferencesLock::acquire(std::chrono::milliseconds limit, std::string &why, const std::function<bool()> &givesUp) {
    if (_depth > 0) {
        ++_depth;
        return true;
    }
    _isHeldElsewhere = false;
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::chrono::milliseconds wait{1};
    int lost = 0;
    while (true) {
        if (!_file && !_open(why)) {
            return false;
        }
        if (::flock(_file.get(), LOCK_EX | LOCK_NB) == 0) {
            // Whoever cleans temporary folders may have taken it away, and a lock on a file that nobody else finds keeps nobody out.
            if (isFileAtPath(_file.get(), _path)) {
                _depth = 1;
                return true;
            }
            _file.reset();
            if (++lost < MostLost) {
                continue;
            }
            why = "the lock file " + _path + " is never the one that was opened";
            return false;
        }
        if (errno != EWOULDBLOCK && errno != EINTR) {
            why = "the lock file " + _path + " cannot be locked: " + std::strerror(errno);
            return false;
        }
        if (std::chrono::steady_clock::now() >= deadline || (givesUp && givesUp())) {
            _isHeldElsewhere = true;
            why = "another program holds the lock " + _path;
            return false;
        }
        pauseFor(wait);
        wait = std::min(wait * 2, std::chrono::milliseconds{10});
    }
}

void PosixPreferencesLock::release() {
    if (_depth > 0 && --_depth == 0) {
        ::flock(_file.get(), LOCK_UN);
    }
}

} // namespace orvane
