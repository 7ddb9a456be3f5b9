#pragma once

#include <functional>
#include <pthread.h>
#include <sched.h>

namespace orvane {

/// One piece of work on a thread of its own. No signal is delivered to that thread: they go to the one that can act on them.
class PosixSecondThread {
public:
    PosixSecondThread() = default;
    PosixSecondThread(const PosixSecondThread &) = delete;
    PosixSecondThread &operator=(const PosixSecondThread &) = delete;
    /// Waits for the work.
    ~PosixSecondThread() { join(); }

    /// From when on the thread may use the processor that its maker has at the start, too.
    enum class Place {
        Anywhere, ///< from when it runs
        Apart,    ///< not before it is set free: for one that sleeps in between, and would be woken on its waker's processor
    };
    /// Starts the work, at once and on another processor than the caller's where there is one; false, with nothing done, when there are
    /// no more threads. Once.
    [[nodiscard]] bool start(std::function<void()> work, Place place = Place::Anywhere);
    /// Lets it run on every processor that the process may use, as joining does first. While it works.
    void setFree();
    void join();

private:
    static void *_run(void *self) noexcept;

    std::function<void()> _work;
    Place _place = Place::Anywhere;
    cpu_set_t _processors{}; ///< those that the process may use; none when the thread begins wherever it likes
    pthread_t _thread{};
    bool _isStarted = false;
};

/// Whether this process may run on more than one processor.
[[nodiscard]] bool hasSecondProcessor();

} // namespace orvane
