#pragma once

#include <cstddef>

namespace orvane {

/// Told how far a creation is. Called very often, from the thread that creates: an implementation only counts.
class CreationProgress {
public:
    virtual ~CreationProgress() = default;
    /// `nodes` more nodes of the hierarchy are on disk.
    virtual void advanced(std::size_t nodes) = 0;
};

} // namespace orvane
