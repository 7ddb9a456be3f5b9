#pragma once

#include "ports/MainThread.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace orvane {

/// The thread that runs Qt's event loop, whichever loop of it: also a modal one serves the other threads. The thread that makes
/// it is the main thread. It must outlive every thread that uses it; threads that still wait when the process ends end with it.
class QtMainThread final : public MainThread {
public:
    QtMainThread();
    QtMainThread(const QtMainThread &) = delete;
    QtMainThread &operator=(const QtMainThread &) = delete;
    ~QtMainThread() override;

    [[nodiscard]] bool isCurrent() override;
    /// Work must not throw: it would end the program.
    void performAndWait(const std::function<void()> &work) override;
    /// What work of another thread defers is let go before that thread goes on; from another thread it goes with the main
    /// thread's next event.
    void releaseAfterCurrentEvent(std::shared_ptr<const void> object) override;

    /// While one lives, work of other threads waits, though the main thread handles events. Main thread only.
    class Pause {
    public:
        explicit Pause(QtMainThread &mainThread);
        Pause(const Pause &) = delete;
        Pause &operator=(const Pause &) = delete;
        ~Pause();

    private:
        QtMainThread &_mainThread;
    };

private:
    class Receiver;
    struct Item {
        const std::function<void()> *work;
        bool done = false;
    };

    void _serveWaiting();
    void _serve(Item &item);
    void _callReceiver();

    const std::thread::id _main = std::this_thread::get_id();
    std::unique_ptr<Receiver> _receiver; ///< lives on the main thread; gets an event for each arrival
    std::mutex _mutex;
    std::condition_variable _done;
    std::deque<Item *> _queue;
    std::size_t _pauses = 0;                                       ///< main thread only
    std::vector<std::shared_ptr<const void>> *_deferred = nullptr; ///< of the work being served; main thread only
};

} // namespace orvane
