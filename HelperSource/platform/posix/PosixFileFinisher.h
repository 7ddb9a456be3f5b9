#pragma once

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixItemFinish.h"
#include "platform/posix/PosixMadeItems.h"
#include "platform/posix/PosixSecondThread.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <vector>

namespace orvane {

/// Completes new files on a second thread while their maker makes the next ones. In one folder that gains more than two makers, of
/// whom the system lets only one at a time make something there.
///
/// The maker hands files over in batches, which grow: the first one soon, later ones seldom. The thread begins with the first batch.
/// Where it does not keep up, because it got no processor or there are no more threads, the maker completes a batch itself
/// rather than wait.
class PosixFileFinisher {
public:
    /// A new file, open for writing and empty.
    struct File {
        FileDescriptor file;
        PosixMadeItems::Index item = PosixMadeItems::None; ///< on its maker's list
        PosixFileFinish finish;                            ///< its content, in memory, gives the bytes, too
    };

    /// `finished` is borrowed, and called on either thread, perhaps on both at once: with true after a batch, and within a slow one
    /// every 100 ms; once with false as soon as a file did not get its bytes. Those that are not yet complete are given up then.
    explicit PosixFileFinisher(const std::function<void(bool isGood)> &finished);
    PosixFileFinisher(const PosixFileFinisher &) = delete;
    PosixFileFinisher &operator=(const PosixFileFinisher &) = delete;
    ~PosixFileFinisher() { end(); }

    /// Takes a file.
    void add(File file);
    /// Waits until all files that were added are complete, or given up.
    void wait();
    /// The same, and ends the thread. Nothing may be added afterwards.
    void end();

    // After the end.
    /// False when a file did not get its bytes, or there was no memory for the rest.
    [[nodiscard]] bool isGood() const { return _isGood; }
    /// Files that did not get all of the rest: how many, which was the first, and its `errno`.
    struct Unfinished {
        std::size_t count = 0;
        PosixMadeItems::Index first = PosixMadeItems::None;
        int error = 0;

        void add(const Unfinished &others);
    };
    [[nodiscard]] const Unfinished &unfinished() const { return _unfinished; }

private:
    void _handOver();
    void _run();
    void _complete(std::vector<File> &batch);
    [[nodiscard]] static bool _complete(File &file, Unfinished &unfinished);

    const std::function<void(bool isGood)> &_finished;
    std::atomic<bool> _isGood = true;
    std::vector<File> _own; ///< the maker's, until there are enough for a batch
    std::size_t _batch;     ///< files in the next one
    bool _isStarted = false;
    bool _hasThread = false;
    std::vector<File> _taken; ///< the second thread's: the batch that it is at
    std::mutex _monitor;      ///< over what follows
    std::condition_variable _isThere;
    std::condition_variable _isIdle;
    std::vector<File> _given; ///< a batch that the second thread has yet to take
    bool _isBusy = false;
    bool _isEnding = false;
    Unfinished _unfinished;
    PosixSecondThread _thread;
};

} // namespace orvane
