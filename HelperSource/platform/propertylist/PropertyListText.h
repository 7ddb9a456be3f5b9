#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

// UTF-8 by hand, as the readers and writers of property lists need it.

namespace orvane::propertylist {

/// A decoded character and the bytes that it takes; length 0 where there is none.
struct Character {
    char32_t code = 0;
    std::size_t length = 0;
};

/// The character at the start of `text`. Overlong forms, code points above U+10FFFF and cut-off sequences are refused, and
/// surrogates unless `surrogates` lets them pass as three bytes each.
[[nodiscard]] Character firstCharacter(std::string_view text, bool surrogates) noexcept;

/// Appends one code point; surrogates as three bytes.
void appendCharacter(std::string &text, char32_t code);

/// Whether `text` is UTF-8 without surrogates.
[[nodiscard]] bool isUTF8(std::string_view text) noexcept;

/// Whether XML can hold the text: UTF-8 without control characters but tab, line feed and carriage return, and without
/// U+FFFE and U+FFFF (XML 1.0, fifth edition, production 2).
[[nodiscard]] bool isXMLText(std::string_view text) noexcept;

/// About 60 bytes of a text, fit for a line of a message: three dots stand for what is too much, question marks for control
/// characters and for bytes that are no UTF-8.
[[nodiscard]] std::string legible(std::string_view text);

/// Whether a text is the other one but for the case of letters from A to Z, of which `lowerCase` has only small ones.
[[nodiscard]] inline bool equalsIgnoringCase(std::string_view text, std::string_view lowerCase) noexcept {
    return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                      [](char c, char lower) { return c == lower || (c >= 'A' && c <= 'Z' && c - 'A' + 'a' == lower); });
}

/// Whether every byte is below 0x80.
[[nodiscard]] bool isASCII(std::string_view text) noexcept;

[[nodiscard]] constexpr bool isHighSurrogate(char32_t code) noexcept {
    return code >= 0xD800 && code <= 0xDBFF;
}
[[nodiscard]] constexpr bool isLowSurrogate(char32_t code) noexcept {
    return code >= 0xDC00 && code <= 0xDFFF;
}

/// The code point of a surrogate pair (Unicode, section 3.9, table 3-5).
[[nodiscard]] constexpr char32_t joinedSurrogates(char32_t high, char32_t low) noexcept {
    return 0x10000 + ((high - 0xD800) << 10U) + (low - 0xDC00);
}

} // namespace orvane::propertylist
