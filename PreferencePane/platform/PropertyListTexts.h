#pragma once

#include "PropertyListTextForm.h"

namespace orvane {

/// XML for people and other programs, the binary form for files of our own.
class PropertyListTexts final : public PropertyListTextForm {
public:
    [[nodiscard]] std::optional<std::string> textOf(const PropertyList &list) override;
    [[nodiscard]] std::optional<std::string> bytesOf(const PropertyList &list) override;
    [[nodiscard]] std::optional<PropertyList> read(std::string_view text) override;
};

} // namespace orvane
