#pragma once

#include "ports/MainThread.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace orvane {

/// The thread that makes it is the main thread; work from others waits until the test runs it.
class FakeMainThread final : public MainThread {
public:
    [[nodiscard]] bool isCurrent() override { return std::this_thread::get_id() == _main; }

    void performAndWait(const std::function<void()> &work) override {
        if (isCurrent()) {
            work();
            return;
        }
        Item item{&work};
        std::unique_lock lock(_mutex);
        _queue.push_back(&item);
        _changed.notify_all();
        _changed.wait(lock, [&] { return item.done; });
    }

    void releaseAfterCurrentEvent(std::shared_ptr<const void> object) override {
        const std::lock_guard lock(_mutex);
        _deferred.push_back(std::move(object));
    }

    /// Ends the event being handled: lets go of all deferred objects, on the calling (main) thread.
    void endEvent() {
        for (bool mayHaveMore = true; mayHaveMore;) { // a destructor may defer others
            std::vector<std::shared_ptr<const void>> objects;
            {
                const std::lock_guard lock(_mutex);
                objects.swap(_deferred);
            }
            mayHaveMore = !objects.empty();
        }
    }

    /// Runs waiting work until `done` holds; false when it does not within the time limit. `done` is asked between pieces
    /// of work and when `wake` was called.
    bool runUntil(const std::function<bool()> &done, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        while (!done()) {
            if (!_runOne(deadline) && std::chrono::steady_clock::now() >= deadline) {
                return done();
            }
        }
        return true;
    }
    /// Lets `runUntil` ask again; any thread.
    void wake() {
        const std::lock_guard lock(_mutex);
        ++_wakes;
        _changed.notify_all();
    }
    /// Pieces of work that wait.
    [[nodiscard]] std::size_t waiting() const {
        const std::lock_guard lock(_mutex);
        return _queue.size();
    }
    [[nodiscard]] std::size_t deferred() const {
        const std::lock_guard lock(_mutex);
        return _deferred.size();
    }

private:
    struct Item {
        const std::function<void()> *work;
        bool done = false;
    };

    bool _runOne(std::chrono::steady_clock::time_point deadline) {
        std::unique_lock lock(_mutex);
        if (!_changed.wait_until(lock, deadline, [&] { return !_queue.empty() || _wakes > 0; })) {
            return false;
        }
        _wakes = 0;
        if (_queue.empty()) {
            return true;
        }
        Item *item = _queue.front();
        _queue.pop_front();
        lock.unlock();
        (*item->work)();
        endEvent();
        lock.lock();
        item->done = true;
        _changed.notify_all();
        return true;
    }

    const std::thread::id _main = std::this_thread::get_id();
    mutable std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<Item *> _queue;
    std::vector<std::shared_ptr<const void>> _deferred;
    std::size_t _wakes = 0;
};

} // namespace orvane
