#pragma once

#include <algorithm>
#include <chrono>

namespace orvane {

/// A point in time until which something may take. A value; any thread.
class Deadline {
public:
    explicit Deadline(std::chrono::milliseconds limit) : _end(std::chrono::steady_clock::now() + limit) {}

    [[nodiscard]] bool passed() const { return std::chrono::steady_clock::now() >= _end; }
    [[nodiscard]] std::chrono::steady_clock::time_point end() const { return _end; }
    /// Milliseconds that are left, rounded up; 0 once it has passed.
    [[nodiscard]] int remaining() const {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(_end - std::chrono::steady_clock::now());
        return std::max(0, static_cast<int>(left.count()));
    }

private:
    std::chrono::steady_clock::time_point _end;
};

} // namespace orvane
