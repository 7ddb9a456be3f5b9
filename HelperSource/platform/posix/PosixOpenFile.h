#pragma once

#include <string>

namespace orvane {

/// Whether the path leads to the open file still: another program may have taken the file away, or put one in its place.
[[nodiscard]] bool isFileAtPath(int file, const std::string &path);

} // namespace orvane
