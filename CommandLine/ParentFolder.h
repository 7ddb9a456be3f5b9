#pragma once

#include <optional>
#include <string>

namespace orvane {

/// Absolute path of the folder that the option --in names, or of the current one without it, without "." and ".." in it;
/// or "" with what is wrong in `problem`. A path that needs no change is taken as it stands, links included.
[[nodiscard]] std::string parentFolder(const std::optional<std::string> &in, std::string &problem);

} // namespace orvane
