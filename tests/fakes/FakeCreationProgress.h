#pragma once

#include "ports/CreationProgress.h"

#include <cstddef>
#include <vector>

namespace orvane {

/// Remembers what it was told.
class FakeCreationProgress final : public CreationProgress {
public:
    void advanced(std::size_t nodes) override {
        calls.push_back(nodes);
        total += nodes;
    }

    std::vector<std::size_t> calls;
    std::size_t total = 0;
};

} // namespace orvane
