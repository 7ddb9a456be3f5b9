#pragma once

#include "ports/PropertyList.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// Files and texts that come with the program. Main thread only.
class Resources {
public:
    virtual ~Resources() = default;
    /// The UTF-8 text of the resource of that name and type ("SGKeyCodes", "plist"); nothing when it is missing, unreadable
    /// or no UTF-8.
    [[nodiscard]] virtual std::optional<std::string> stringOfResource(std::string_view name, std::string_view type) = 0;
    /// The property list that a text holds; nothing when it holds none.
    [[nodiscard]] virtual std::optional<PropertyList> propertyListOfString(std::string_view text) = 0;
    /// The text of that key in the user's language; the key itself when there is none.
    [[nodiscard]] virtual std::string localizedString(std::string_view key) = 0;
};

} // namespace orvane
