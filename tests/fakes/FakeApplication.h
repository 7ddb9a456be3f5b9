#pragma once

#include "ports/Application.h"

namespace orvane {

/// Fails to load as many times as told, then succeeds.
class FakeApplication final : public Application {
public:
    [[nodiscard]] bool load() override {
        ++loads;
        if (failures == 0)
            return true;
        --failures;
        return false;
    }

    int failures = 0; ///< still to come
    int loads = 0;    ///< calls so far
};

} // namespace orvane
