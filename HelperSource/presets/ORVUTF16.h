#pragma once

#include "ports/UTF16.h"

#include <cstddef>
#include <string_view>

namespace orvane {

/// Number of UTF-16 units that the text takes; a byte that is no UTF-8 counts as one.
[[nodiscard]] std::size_t ORVUTF16Length(std::string_view text);

} // namespace orvane
