#pragma once

#include "ports/FinderInformation.h"

namespace orvane {

/// Finder flags in extended attributes, see PosixFinderAttributes.h. It keeps no state, so any thread may use one object.
class PosixFinderInformation final : public FinderInformation {
public:
    [[nodiscard]] bool hasItem(std::string_view path) override;
    /// On a symbolic link 0: Linux allows no such attributes on links.
    [[nodiscard]] int readFlags(std::string_view path, std::uint16_t &flags) override;
    /// Beside the flags, the records of file servers that the item has already and its colour tag follow; what goes wrong
    /// with those is not reported. EPERM on a symbolic link.
    [[nodiscard]] int writeFlags(std::string_view path, std::uint16_t flags) override;
};

} // namespace orvane
