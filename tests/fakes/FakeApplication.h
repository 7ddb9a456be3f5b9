#pragma once

#include "ports/Application.h"

#include <functional>
#include <vector>

namespace orvane {

/// Fails to load as many times as told, then succeeds.
class FakeApplication final : public Application {
public:
    [[nodiscard]] bool load() override {
        ++loads;
        if (whileLoading) {
            whileLoading();
        }
        if (failures == 0) {
            return true;
        }
        --failures;
        return false;
    }

    void activateIgnoringOtherApps(bool ignoring) override {
        activations.push_back(ignoring);
        if (whenActivated) {
            whenActivated();
        }
    }

    std::function<void()> whileLoading;
    std::function<void()> whenActivated;
    std::vector<bool> activations; ///< what each call asked for
    int failures = 0;              ///< still to come
    int loads = 0;                 ///< calls so far
};

} // namespace orvane
