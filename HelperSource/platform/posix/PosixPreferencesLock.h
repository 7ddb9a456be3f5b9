#pragma once

#include "platform/posix/FileDescriptor.h"

#include <chrono>
#include <functional>
#include <string>

namespace orvane {

/// An advisory lock between programs: flock on a file that exists for nothing else and is kept open. One thread.
class PosixPreferencesLock {
public:
    explicit PosixPreferencesLock(std::string path) : _path(std::move(path)) {}

    /// Takes the lock; in a program that has it already, once more. Waits up to `limit` for other programs. The file's
    /// folder is made with its parents, for the user alone. False, and `why` says so, when it cannot be had. `givesUp`, which may be
    /// empty, is asked while it waits: true ends that as the limit does.
    [[nodiscard]] bool acquire(std::chrono::milliseconds limit, std::string &why, const std::function<bool()> &givesUp = {});
    /// Whether the last `acquire` failed because another program had the lock all the time.
    [[nodiscard]] bool isHeldElsewhere() const { return _isHeldElsewhere; }
    /// Undoes one `acquire`.
    void release();

private:
    [[nodiscard]] bool _open(std::string &why);

    std::string _path;
    FileDescriptor _file;
    int _depth = 0;
    bool _isHeldElsewhere = false;
};

/// The folder that holds `path`, "." for a bare name.
[[nodiscard]] std::string folderOfPreferencesPath(const std::string &path);

} // namespace orvane
