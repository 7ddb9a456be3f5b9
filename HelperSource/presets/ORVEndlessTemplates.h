#pragma once

#include "ports/PropertyList.h"

#include <optional>
#include <string>

namespace orvane {

/// The first name template of the preset, as it stands there, whose scan for variables never ends: the folder name, then those of
/// the tree in its order. Nothing when all end. A preset of any type will do; contents that several folders share are
/// looked at once.
[[nodiscard]] std::optional<std::string> ORVFindEndlessTemplate(const PropertyListValue &preset);

} // namespace orvane
