#pragma once

#include <cstdlib>
#include <memory>

namespace orvane {

struct X11Free {
    void operator()(void *memory) const noexcept { std::free(memory); }
};

/// What xcb hands out to be freed: replies, errors, events.
template <typename Reply> using X11Reply = std::unique_ptr<Reply, X11Free>;

} // namespace orvane
