#pragma once

#include "ports/Application.h"
#include "ports/MainThread.h"
#include "ports/ThreadLauncher.h"

#include <functional>
#include <memory>
#include <vector>

// Ports as a program without windows fills them, or a part that runs from its begin to its end on one thread.

namespace orvane {

/// Nothing to make ready.
class SingleThreadApplication final : public Application {
public:
    [[nodiscard]] bool load() override { return true; }
    void activateIgnoringOtherApps(bool /*ignoring*/) override {}
};

/// The program's only thread. What is to be released after the event is kept until the program is done.
class SingleMainThread final : public MainThread {
public:
    [[nodiscard]] bool isCurrent() override { return true; }
    void performAndWait(const std::function<void()> &work) override { work(); }
    void releaseAfterCurrentEvent(std::shared_ptr<const void> object) override { _kept.push_back(std::move(object)); }

private:
    std::vector<std::shared_ptr<const void>> _kept;
};

/// Puts work off until `runAll`, on the same thread: a program that waits for its script anyway needs no second
/// thread for it, whose start would take longer than making a small hierarchy.
class DeferredThreadLauncher final : public ThreadLauncher {
public:
    [[nodiscard]] bool detachNewThread(std::function<void()> work) override;
    void runAll();

private:
    std::vector<std::function<void()>> _works;
};

} // namespace orvane
