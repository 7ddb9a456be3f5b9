#pragma once

#include "ports/MainThread.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace orvane {

/// Main thread of a program without an event loop of its own. The thread that makes it is the main thread; it serves the
/// others while it is in `runOnce` or `runUntil`, which sleep without polling. It must outlive every thread that uses it.
///
/// Each piece of work is one event: what was deferred during it is let go at its end. Work that itself serves others
/// nests: what the outer work deferred stays until the outer work ends. What was deferred outside of any event is let
/// go when the outermost serving begins or its next event ends, or by `endEvent`.
class PosixMainThread final : public MainThread {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    PosixMainThread() = default;
    PosixMainThread(const PosixMainThread &) = delete;
    PosixMainThread &operator=(const PosixMainThread &) = delete;
    ~PosixMainThread() override;

    [[nodiscard]] bool isCurrent() override;
    /// Work must not throw.
    void performAndWait(const std::function<void()> &work) override;
    void releaseAfterCurrentEvent(std::shared_ptr<const void> object) override;

    /// Serves one piece of work, waiting for it at most until `deadline` (absent: for ever); false when none came.
    /// `wake` ends the waiting as well. Main thread only.
    bool runOnce(std::optional<TimePoint> deadline = {});
    /// Serves until `done` holds, which is asked at first, after each piece of work and after each `wake`; false when
    /// `deadline` comes first. Main thread only.
    bool runUntil(const std::function<bool()> &done, std::optional<TimePoint> deadline = {});
    /// Ends a waiting; kept when nobody waits yet. Any thread.
    void wake();
    /// Ends the current event: lets go of what was deferred during it. Main thread only.
    void endEvent();

private:
    struct Item {
        const std::function<void()> *work;
        bool done = false;
    };
    struct Deferred {
        std::size_t depth; ///< of the event that defers it
        std::shared_ptr<const void> object;
    };

    void _serve(std::unique_lock<std::mutex> &lock);
    void _enter();

    const std::thread::id _main = std::this_thread::get_id();
    std::mutex _mutex;
    std::condition_variable _arrived; ///< work or a wake for the main thread
    std::condition_variable _done;    ///< for those who wait for their work
    std::deque<Item *> _queue;
    std::vector<Deferred> _deferred;
    std::size_t _depth = 0; ///< of nested events; 0 outside of any
    bool _woken = false;
};

} // namespace orvane
