#pragma once

#include "ports/PropertyList.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// Property lists as text or bytes, for the clipboard and for the file of unsaved edits. Main thread only.
class PropertyListTextForm {
public:
    virtual ~PropertyListTextForm() = default;
    /// Readable text. Nothing for what the form cannot hold.
    [[nodiscard]] virtual std::optional<std::string> textOf(const PropertyList &list) = 0;
    /// Bytes in a compact form that keeps everything.
    [[nodiscard]] virtual std::optional<std::string> bytesOf(const PropertyList &list) = 0;
    /// Reads either; nothing for anything else.
    [[nodiscard]] virtual std::optional<PropertyList> read(std::string_view text) = 0;
};

} // namespace orvane
