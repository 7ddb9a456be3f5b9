#include "platform/propertylist/PropertyListText.h"

#include "platform/propertylist/PropertyListFiles.h"

#include <algorithm>
#include <optional>

namespace orvane {

namespace propertylist {

namespace {

constexpr char32_t LargestCode = 0x10FFFF;

std::size_t sequenceLength(unsigned char lead) noexcept {
    if (lead < 0x80) {
        return 1;
    }
    if (lead >= 0xC2 && lead < 0xE0) {
        return 2;
    }
    if (lead >= 0xE0 && lead < 0xF0) {
        return 3;
    }
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

} // namespace

Character firstCharacter(std::string_view text, bool surrogates) noexcept {
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (text.empty()) {
        return {};
    }
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = sequenceLength(lead);
    if (length == 0 || length > text.size()) {
        return {};
    }
    char32_t code = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80) {
            return {};
        }
        code = (code << 6U) | (next & 0x3FU);
    }
    const bool surrogate = isHighSurrogate(code) || isLowSurrogate(code);
    if (code < smallest[length] || code > LargestCode || (surrogate && !surrogates)) {
        return {};
    }
    return {code, length};
}

void appendCharacter(std::string &text, char32_t code) {
    const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6U));
        put(0x80 | (code & 0x3FU));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12U));
        put(0x80 | ((code >> 6U) & 0x3FU));
        put(0x80 | (code & 0x3FU));
    } else {
        put(0xF0 | (code >> 18U));
        put(0x80 | ((code >> 12U) & 0x3FU));
        put(0x80 | ((code >> 6U) & 0x3FU));
        put(0x80 | (code & 0x3FU));
    }
}

std::string legible(std::string_view text) {
    constexpr std::size_t Longest = 60;
    std::string line;
    while (!text.empty() && line.size() < Longest) {
        const Character character = firstCharacter(text, false);
        const bool isControl = character.code < 0x20 || (character.code >= 0x7F && character.code < 0xA0);
        line.append(character.length == 0 || isControl ? "?" : text.substr(0, character.length));
        text.remove_prefix(std::max<std::size_t>(character.length, 1));
    }
    return text.empty() ? line : line + "...";
}

bool isASCII(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isXMLText(std::string_view text) noexcept {
    while (!text.empty()) {
        const Character character = firstCharacter(text, false);
        const char32_t code = character.code;
        const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
        if (character.length == 0 || isControl || code == 0xFFFE || code == 0xFFFF) {
            return false;
        }
        text.remove_prefix(character.length);
    }
    return true;
}

bool isUTF8(std::string_view text) noexcept {
    while (!text.empty()) {
        const Character character = firstCharacter(text, false);
        if (character.length == 0) {
            return false;
        }
        text.remove_prefix(character.length);
    }
    return true;
}

} // namespace propertylist

namespace {

using namespace propertylist;

std::optional<std::string> decodedUTF16(std::string_view bytes, bool bigEndian) {
    if (bytes.size() % 2 != 0) {
        return std::nullopt;
    }
    const auto unit = [&](std::size_t at) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return static_cast<char32_t>(bigEndian ? (first << 8U) | second : (second << 8U) | first);
    };
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        char32_t code = unit(i);
        if (isHighSurrogate(code) && i + 2 < bytes.size() && isLowSurrogate(unit(i + 2))) {
            code = joinedSurrogates(code, unit(i + 2));
            i += 2;
        } else if (isHighSurrogate(code) || isLowSurrogate(code)) {
            return std::nullopt;
        }
        appendCharacter(text, code);
    }
    return text;
}

std::string decodedLatin1(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        appendCharacter(text, static_cast<unsigned char>(byte));
    }
    return text;
}

void appendUTF16(std::string &bytes, char32_t code, bool bigEndian) {
    const auto put = [&](char32_t unit) {
        const auto high = static_cast<char>(static_cast<unsigned char>(unit >> 8U));
        const auto low = static_cast<char>(static_cast<unsigned char>(unit & 0xFFU));
        bytes.push_back(bigEndian ? high : low);
        bytes.push_back(bigEndian ? low : high);
    };
    if (code < 0x10000) {
        put(code);
        return;
    }
    put(0xD800 + ((code - 0x10000) >> 10U));
    put(0xDC00 + ((code - 0x10000) & 0x3FFU));
}

bool appendEncoded(std::string &bytes, char32_t code, PropertyListEncoding encoding) {
    if (encoding == PropertyListEncoding::Latin1) {
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(code)));
        return code < 0x100;
    }
    appendUTF16(bytes, code, encoding == PropertyListEncoding::UTF16BigEndian);
    return true;
}

} // namespace

std::optional<std::string> decodedPropertyListText(std::string_view bytes, PropertyListEncoding encoding) {
    switch (encoding) {
    case PropertyListEncoding::UTF16LittleEndian:
    case PropertyListEncoding::UTF16BigEndian:
        return decodedUTF16(bytes, encoding == PropertyListEncoding::UTF16BigEndian);
    case PropertyListEncoding::Latin1:
        return decodedLatin1(bytes);
    case PropertyListEncoding::ASCII:
        return isASCII(bytes) ? std::optional(std::string(bytes)) : std::nullopt;
    case PropertyListEncoding::UTF8:
        return isUTF8(bytes) ? std::optional(std::string(bytes)) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::string> encodedPropertyListText(std::string_view text, PropertyListEncoding encoding) {
    if (encoding == PropertyListEncoding::UTF8 || encoding == PropertyListEncoding::ASCII) {
        return decodedPropertyListText(text, encoding);
    }
    std::string bytes;
    bytes.reserve(text.size() * 2);
    while (!text.empty()) {
        const Character character = firstCharacter(text, false);
        if (character.length == 0 || !appendEncoded(bytes, character.code, encoding)) {
            return std::nullopt;
        }
        text.remove_prefix(character.length);
    }
    return bytes;
}

} // namespace orvane
