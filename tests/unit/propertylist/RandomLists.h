#pragma once

#include "ports/PropertyList.h"

#include <random>

namespace orvane {

/// What a random list may hold.
struct RandomListKinds {
    bool binaryOnly = false; ///< sets, null, NULs and unpaired surrogates in texts, fractions of seconds
    bool uids = true;
    bool infinities = true;
    bool largeUnsigned = true;
};

/// A list that depends on the generator only: every type, nested a few levels, with repeated and shared parts.
[[nodiscard]] PropertyList randomList(std::mt19937_64 &random, const RandomListKinds &kinds);

} // namespace orvane
