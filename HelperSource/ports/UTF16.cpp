#include "ports/UTF16.h"

namespace orvane {

namespace {

constexpr char16_t StrayByte = 0xDC00; ///< plus 0x80 to 0xFF; the same escape as Python's "surrogateescape" (PEP 383)

bool isContinuation(std::string_view text, std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
}

char32_t decode(std::string_view text, std::size_t at, std::size_t length) {
    const auto lead = static_cast<unsigned char>(text[at]);
    char32_t code = length == 1 ? lead : length == 2 ? lead & 0x1FU : length == 3 ? lead & 0x0FU : lead & 0x07U;
    for (std::size_t i = 1; i < length; ++i) {
        code = (code << 6U) | (static_cast<unsigned char>(text[at + i]) & 0x3FU);
    }
    return code;
}

void append(std::string &text, char32_t code) {
    if (code < 0x80U) {
        text.push_back(static_cast<char>(code));
        return;
    }
    const unsigned extra = code < 0x800U ? 1 : code < 0x10000U ? 2 : 3;
    constexpr unsigned char Leads[] = {0, 0xC0, 0xE0, 0xF0};
    text.push_back(static_cast<char>(Leads[extra] | (code >> (6U * extra))));
    for (unsigned i = extra; i-- > 0;) {
        text.push_back(static_cast<char>(0x80U | ((code >> (6U * i)) & 0x3FU)));
    }
}

bool isHigh(char16_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLow(char16_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

} // namespace

std::size_t ORVCharacterLength(std::string_view text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    const std::size_t length = lead < 0xC2U ? 1 : lead < 0xE0U ? 2 : lead < 0xF0U ? 3 : lead < 0xF5U ? 4 : 1;
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text, at + i)) {
            return 1;
        }
    }
    const char32_t code = decode(text, at, length);
    const bool overlong = (length == 3 && code < 0x800U) || (length == 4 && (code < 0x10000U || code > 0x10FFFFU));
    return overlong ? 1 : length;
}

std::u16string ORVUTF16OfText(std::string_view text) {
    std::u16string units;
    units.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = ORVCharacterLength(text, at);
        const char32_t code = decode(text, at, length);
        if (length == 1 && code >= 0x80U) {
            units.push_back(static_cast<char16_t>(StrayByte + code));
        } else if (code >= 0x10000U) {
            units.push_back(static_cast<char16_t>(0xD800U + ((code - 0x10000U) >> 10U)));
            units.push_back(static_cast<char16_t>(0xDC00U + ((code - 0x10000U) & 0x3FFU)));
        } else {
            units.push_back(static_cast<char16_t>(code));
        }
        at += length;
    }
    return units;
}

std::string ORVTextOfUTF16(std::u16string_view units) {
    std::string text;
    text.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        const char16_t unit = units[i];
        if (isHigh(unit) && i + 1 < units.size() && isLow(units[i + 1])) {
            append(text, 0x10000U + ((static_cast<char32_t>(unit) - 0xD800U) << 10U) + (static_cast<char32_t>(units[i + 1]) - 0xDC00U));
            ++i;
        } else if (unit >= StrayByte + 0x80 && unit <= StrayByte + 0xFF) {
            text.push_back(static_cast<char>(unit - StrayByte));
        } else {
            append(text, unit);
        }
    }
    return text;
}

} // namespace orvane
