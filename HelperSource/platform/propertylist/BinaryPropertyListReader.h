#pragma once

#include "ports/PropertyList.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane::propertylist {

/// Reads a "bplist00" file that is in memory whole. The document does not borrow from `bytes`.
[[nodiscard]] std::optional<PropertyList> readBinaryPropertyList(std::string_view bytes, std::string &why);

} // namespace orvane::propertylist
