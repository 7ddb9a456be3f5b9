#pragma once

#include "ports/ThreadLauncher.h"

#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace orvane {

/// Runs the work in one of three ways, or refuses it.
class FakeThreadLauncher final : public ThreadLauncher {
public:
    enum class Mode {
        Inline, ///< at once, on the calling thread
        Keep,   ///< when the test calls `runKept`
        Real    ///< on a thread, joined by `joinAll` or at the end; it must not throw
    };

    explicit FakeThreadLauncher(Mode workMode = Mode::Inline) : mode(workMode) {}
    ~FakeThreadLauncher() override { joinAll(); }

    [[nodiscard]] bool detachNewThread(std::function<void()> work) override {
        {
            const std::lock_guard lock(_mutex);
            ++_launches;
            if (refuses) {
                return false;
            }
            if (mode == Mode::Keep) {
                _kept.push_back(std::move(work));
                return true;
            }
            if (mode == Mode::Real) {
                _threads.emplace_back([this, task = std::move(work)] { _run(task); });
                ++_running; // the new thread cannot count itself down before: that takes the lock
                return true;
            }
        }
        work();
        return true;
    }

    void runKept() {
        std::vector<std::function<void()>> kept;
        {
            const std::lock_guard lock(_mutex);
            kept.swap(_kept);
        }
        for (const auto &work : kept) {
            work();
        }
    }
    /// Waits for all work on threads, what starts meanwhile included. Work that waits for the calling thread never ends: a main
    /// thread serves it first, until `isBusy` says no.
    void joinAll() {
        for (;;) {
            std::vector<std::thread> threads;
            {
                const std::lock_guard lock(_mutex);
                threads.swap(_threads);
            }
            if (threads.empty()) {
                return;
            }
            for (std::thread &thread : threads) {
                thread.join();
            }
        }
    }
    /// Whether some work on a thread has not ended yet; any thread.
    [[nodiscard]] bool isBusy() const {
        const std::lock_guard lock(_mutex);
        return _running > 0;
    }
    /// Calls so far, refused ones included.
    [[nodiscard]] std::size_t launches() const {
        const std::lock_guard lock(_mutex);
        return _launches;
    }
    [[nodiscard]] std::size_t kept() const {
        const std::lock_guard lock(_mutex);
        return _kept.size();
    }

    Mode mode;
    bool refuses = false;
    std::function<void()> onFinished; ///< called at the end of each piece of work on a thread, on that thread

private:
    void _run(const std::function<void()> &work) {
        work();
        {
            const std::lock_guard lock(_mutex);
            --_running;
        }
        if (onFinished) {
            onFinished();
        }
    }

    mutable std::mutex _mutex;
    std::size_t _launches = 0;
    std::size_t _running = 0;
    std::vector<std::function<void()>> _kept;
    std::vector<std::thread> _threads;
};

} // namespace orvane
