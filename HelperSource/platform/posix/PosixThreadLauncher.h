#pragma once

#include "ports/ThreadLauncher.h"

#include <functional>

namespace orvane {

/// Detached threads, for programs that live until the session ends. Work must not throw.
class PosixThreadLauncher final : public ThreadLauncher {
public:
    [[nodiscard]] bool detachNewThread(std::function<void()> work) override;
};

} // namespace orvane
