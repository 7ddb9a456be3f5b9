#pragma once

#include "ports/ThreadLauncher.h"

#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace orvane {

/// Detached threads, for programs that live until the session ends. Work must not throw.
class PosixThreadLauncher final : public ThreadLauncher {
public:
    [[nodiscard]] bool detachNewThread(std::function<void()> work) override;
};

/// Threads that somebody waits for, for programs that end when their work is done. Work must not throw.
class JoiningThreadLauncher final : public ThreadLauncher {
public:
    /// `onFinished` is called at the end of each piece of work, on its thread; it may wake a waiting main thread.
    explicit JoiningThreadLauncher(std::function<void()> onFinished = {}) : _onFinished(std::move(onFinished)) {}
    JoiningThreadLauncher(const JoiningThreadLauncher &) = delete;
    JoiningThreadLauncher &operator=(const JoiningThreadLauncher &) = delete;
    ~JoiningThreadLauncher() override { joinAll(); }

    [[nodiscard]] bool detachNewThread(std::function<void()> work) override;
    /// Whether some work has not ended yet. Any thread.
    [[nodiscard]] bool isBusy() const;
    /// Blocks until all work has ended, that started meanwhile included. Work that waits for the calling thread
    /// never ends: a main thread serves it first, until `isBusy` says no.
    void joinAll();

private:
    void _run(const std::function<void()> &work);

    mutable std::mutex _mutex;
    std::size_t _running = 0;
    std::vector<std::thread> _threads;
    std::function<void()> _onFinished;
};

} // namespace orvane
