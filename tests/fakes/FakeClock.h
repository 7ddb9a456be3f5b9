#pragma once

#include "ports/Clock.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>

namespace orvane {

/// A clock that only moves when told or slept on; sleeping takes no time.
class FakeClock final : public Clock {
public:
    [[nodiscard]] std::uint64_t nowInSeconds() override { return _microseconds.load() / 1'000'000; }
    void sleep(std::chrono::microseconds duration) override {
        ++_sleeps;
        _microseconds += static_cast<std::uint64_t>(duration.count());
        if (onSleep) {
            onSleep(duration);
        }
    }

    void setSeconds(std::uint64_t seconds) { _microseconds = seconds * 1'000'000; }
    void advance(std::chrono::microseconds duration) { _microseconds += static_cast<std::uint64_t>(duration.count()); }
    [[nodiscard]] std::uint64_t microseconds() const { return _microseconds.load(); }
    [[nodiscard]] std::size_t sleeps() const { return _sleeps.load(); }

    std::function<void(std::chrono::microseconds)> onSleep; ///< called in every sleep, after the clock has moved

private:
    std::atomic<std::uint64_t> _microseconds{0};
    std::atomic<std::size_t> _sleeps{0};
};

} // namespace orvane
