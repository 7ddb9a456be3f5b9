#pragma once

#include "ports/ThreadLauncher.h"

#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace orvane {

/// Runs the work in one of three ways, or refuses it.
class FakeThreadLauncher final : public ThreadLauncher {
public:
    enum class Mode {
        Inline, ///< at once, on the calling thread
        Keep,   ///< when the test calls `runKept`
        Real    ///< on a thread, joined by `joinAll` or at the end
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
                _threads.emplace_back(std::move(work));
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
    void joinAll() {
        std::vector<std::thread> threads;
        {
            const std::lock_guard lock(_mutex);
            threads.swap(_threads);
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
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

private:
    mutable std::mutex _mutex;
    std::size_t _launches = 0;
    std::vector<std::function<void()>> _kept;
    std::vector<std::thread> _threads;
};

} // namespace orvane
