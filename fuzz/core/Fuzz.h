#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace orvane::fuzz {

/// Ends the fuzzer with a find when the invariant does not hold.
inline void require(bool holds, const char *invariant) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", invariant);
        std::abort();
    }
}

} // namespace orvane::fuzz
