#pragma once

#include <functional>
#include <thread>

namespace orvane {

/// One piece of work on a thread of its own. No signal is delivered to that thread: they go to the one that can act on them.
class PosixSecondThread {
public:
    PosixSecondThread() = default;
    PosixSecondThread(const PosixSecondThread &) = delete;
    PosixSecondThread &operator=(const PosixSecondThread &) = delete;
    /// Waits for the work.
    ~PosixSecondThread() { join(); }

    /// Starts the work; false, with nothing done, when there are no more threads. Once.
    [[nodiscard]] bool start(std::function<void()> work);
    void join();

private:
    std::thread _thread;
};

/// Whether this process may run on more than one processor.
[[nodiscard]] bool hasSecondProcessor();

} // namespace orvane
