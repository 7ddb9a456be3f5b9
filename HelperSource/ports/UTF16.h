#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Texts are UTF-8 everywhere but where a keyboard gives them or UTF-16 units are counted or cut.

namespace orvane {

/// The text's UTF-16 units. A three-byte surrogate half gives that unit; a byte that is no UTF-8 gives the unit
/// 0xDC00 plus the byte, so that `ORVTextOfUTF16` brings the same bytes back.
[[nodiscard]] std::u16string ORVUTF16OfText(std::string_view text);

/// The inverse. An unpaired surrogate is written as its three bytes, unless it stands for a byte that was no UTF-8.
[[nodiscard]] std::string ORVTextOfUTF16(std::u16string_view units);

/// Length in bytes of the character that starts at `text[at]`: 1 to 4, and 1 for a byte that is no UTF-8.
[[nodiscard]] std::size_t ORVCharacterLength(std::string_view text, std::size_t at);

} // namespace orvane
