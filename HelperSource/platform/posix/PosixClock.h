#pragma once

#include "ports/Clock.h"

namespace orvane {

/// The monotonic clock of the system; it stands still while the machine sleeps.
class PosixClock final : public Clock {
public:
    [[nodiscard]] std::uint64_t nowInSeconds() override;
    void sleep(std::chrono::microseconds duration) override;
};

} // namespace orvane
