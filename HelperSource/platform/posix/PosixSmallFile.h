#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace orvane {

/// The bytes of an ordinary file, as configuration is kept in; links are followed. Nothing for anything else, which is not waited for
/// either, for a file of more than `most` bytes, and where it cannot be read to its end.
[[nodiscard]] std::optional<std::string> contentsOfSmallFile(const std::string &path, std::size_t most);

} // namespace orvane
