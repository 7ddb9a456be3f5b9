#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

// Permissions as people see them: nine boxes, or three octal digits.

namespace orvane {

/// Read, write, execute; for owner, group and others: `[0]` is the owner's reading, `[8]` the others' executing.
using PermissionBoxes = std::array<bool, 9>;

/// The mode of a text of exactly three octal digits; nothing for any other text.
[[nodiscard]] std::optional<unsigned> modeOfOctalText(std::string_view text);
/// Three octal digits of the lower nine bits.
[[nodiscard]] std::string octalTextOfMode(unsigned mode);
[[nodiscard]] PermissionBoxes boxesOfMode(unsigned mode);
[[nodiscard]] unsigned modeOfBoxes(const PermissionBoxes &boxes);

} // namespace orvane
