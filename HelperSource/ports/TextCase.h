#pragma once

#include <string>
#include <string_view>

namespace orvane {

/// Case mapping of Unicode text. Any thread.
class TextCase {
public:
    virtual ~TextCase() = default;
    /// The text in upper case by Unicode's full, locale-independent mapping (UnicodeData and SpecialCasing), so that
    /// "straße" gives "STRASSE". UTF-8; bytes that are no UTF-8 are kept as they are.
    [[nodiscard]] virtual std::string uppercase(std::string_view text) = 0;
};

} // namespace orvane
