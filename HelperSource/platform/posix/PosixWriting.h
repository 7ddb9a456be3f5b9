#pragma once

#include <string_view>

namespace orvane {

/// Writes all bytes at the descriptor's position. False with `errno`; a file system that takes a part and then nothing
/// counts as full (ENOSPC).
[[nodiscard]] bool writeContents(int to, std::string_view bytes);

} // namespace orvane
