#pragma once

#include "ports/PropertyList.h"

#include <cstdint>

namespace orvane {

/// Integer value of what a property list holds: of an Integer, the number (one that only fits 64 bits without sign comes out
/// negative); of a Real, its whole part; of a Boolean, 1 or 0; of a String, the decimal number that it starts with after
/// blanks and a sign, 0 when there is none; of anything else, and of null, 0. What is too large gives the largest number.
[[nodiscard]] std::int64_t SGIntegerValue(const PropertyListValue *value);

} // namespace orvane
