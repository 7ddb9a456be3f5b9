#pragma once

#include <chrono>
#include <cstdint>

namespace orvane {

/// Time for limits. Any thread.
class Clock {
public:
    virtual ~Clock() = default;
    /// Whole seconds of a clock that never runs backwards; its zero is arbitrary.
    [[nodiscard]] virtual std::uint64_t nowInSeconds() = 0;
    /// Blocks the calling thread at least that long.
    virtual void sleep(std::chrono::microseconds duration) = 0;
};

} // namespace orvane
