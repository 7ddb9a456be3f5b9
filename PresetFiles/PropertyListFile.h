#pragma once

#include "ports/PropertyList.h"
#include "ports/Sentence.h"

#include <optional>
#include <string>

namespace orvane {

/// Reads the property list of a file, waiting for it where it is a pipe. Nothing, with the reason in `why`, when it cannot be read.
[[nodiscard]] std::optional<PropertyList> readPropertyListFile(const std::string &path, Sentence &why);
/// The same for an open file, which stays open.
[[nodiscard]] std::optional<PropertyList> readPropertyListFile(int file, Sentence &why);

} // namespace orvane
