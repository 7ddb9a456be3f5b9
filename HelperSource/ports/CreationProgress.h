#pragma once

#include <cstddef>

namespace orvane {

/// Told how far a creation is. Called very often, from one or two threads that create, also at
/// the same time: an implementation only counts.
class CreationProgress {
public:
    virtual ~CreationProgress() = default;
    /// `nodes` more nodes of the hierarchy are on disk, some of them yet to be completed.
    virtual void advanced(std::size_t nodes) = 0;
    /// Everything was taken away, and the hierarchy is being made from its beginning: none is there.
    virtual void startedOver() {}
};

} // namespace orvane
