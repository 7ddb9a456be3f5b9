// What scripts write: the text made of the bytes and the pairs found in it, each against a slow reference that goes byte by
// byte.

#include "presets/ORVScriptRunner.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

void require(bool holds, const char *invariant) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", invariant);
        std::abort();
    }
}

/// Length of the UTF-8 character at the start of `bytes`, 0 when there is none (RFC 3629, section 4).
std::size_t characterLength(std::string_view bytes) {
    const auto byte = [&](std::size_t i) -> std::uint32_t { return static_cast<unsigned char>(bytes[i]); };
    const std::uint32_t first = byte(0);
    const std::size_t length = first < 0x80 ? 1 : first >> 5 == 0x6 ? 2 : first >> 4 == 0xE ? 3 : first >> 3 == 0x1E ? 4 : 0;
    if (length == 0 || length > bytes.size()) {
        return 0;
    }
    constexpr std::uint32_t leadingBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    constexpr std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    std::uint32_t codePoint = first & leadingBits[length];
    for (std::size_t i = 1; i < length; ++i) {
        if (byte(i) >> 6 != 0x2) {
            return 0;
        }
        codePoint = codePoint << 6 | (byte(i) & 0x3F);
    }
    const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    return codePoint < least[length] || codePoint > 0x10FFFF || isSurrogate ? 0 : length;
}

/// The characters of the text in order; nothing for each byte that belongs to none.
std::vector<std::string> charactersOf(std::string_view bytes) {
    std::vector<std::string> characters;
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        characters.emplace_back(bytes.substr(0, length));
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    return characters;
}

void checkText(std::string_view bytes) {
    const std::string text = orvane::ORVTextOfBytes(bytes);
    std::string kept;
    std::string expectedKept;
    for (const std::string &character : charactersOf(text)) {
        require(!character.empty(), "the text is UTF-8");
        if (character != "\uFFFD") {
            kept += character;
        }
    }
    for (const std::string &character : charactersOf(bytes)) {
        if (character != "\uFFFD") {
            expectedKept += character;
        }
    }
    require(kept == expectedKept, "every character of the bytes stays, in order, and none is added but U+FFFD");
    require(orvane::ORVTextOfBytes(text) == text, "a text stays as it is");
}

std::string withoutBlanksAround(std::string text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.erase(0, 1);
    }
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
        text.pop_back();
    }
    return text;
}

std::map<std::string, std::string> pairsOf(std::string_view output) {
    std::map<std::string, std::string> pairs;
    std::string key;
    std::string value;
    bool isInValue = false;
    const auto endLine = [&] {
        if (isInValue && !key.empty() && !value.empty()) {
            pairs[withoutBlanksAround(key)] = withoutBlanksAround(value);
        }
        key.clear();
        value.clear();
        isInValue = false;
    };
    for (const char byte : output) {
        if (byte == '\n') {
            endLine();
        } else if (isInValue) {
            value += byte;
        } else if (byte == '=') {
            isInValue = true;
        } else {
            key += byte;
        }
    }
    endLine();
    return pairs;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    checkText(bytes);
    require(orvane::ORVScriptRunner::parseOutput(bytes) == pairsOf(bytes), "the pairs are those of the reference");
    return 0;
}
