#pragma once

#include <functional>
#include <memory>

namespace orvane {

/// The thread that owns windows and events. All operations may be called from any thread.
class MainThread {
public:
    virtual ~MainThread() = default;
    [[nodiscard]] virtual bool isCurrent() = 0;
    /// Runs `work` on the main thread, in order of arrival, and returns when it has run. On the main thread itself it
    /// runs at once. The main thread must be handling events, else this waits until it does.
    virtual void performAndWait(const std::function<void()> &work) = 0;
    /// Keeps `object` alive until the event being handled has been handled, then lets go of it on the main thread.
    virtual void releaseAfterCurrentEvent(std::shared_ptr<const void> object) = 0;
};

} // namespace orvane
