#pragma once

#include <functional>

namespace orvane {

/// Starts work on a thread of its own. Any thread.
class ThreadLauncher {
public:
    virtual ~ThreadLauncher() = default;
    /// Starts `work` on a new detached thread and returns at once. Where no thread can be had, `work` does not run
    /// and the result is false.
    [[nodiscard]] virtual bool detachNewThread(std::function<void()> work) = 0;
};

} // namespace orvane
