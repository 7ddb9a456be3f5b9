#include "platform/posix/UnistringTextCase.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <unicase.h>
#include <unistr.h>

namespace orvane {

namespace {

struct Free {
    void operator()(std::uint8_t *memory) const { std::free(memory); }
};

const std::uint8_t *unitsOf(std::string_view text) {
    return reinterpret_cast<const std::uint8_t *>(text.data());
}

/// Bytes at the start of `text` that are whole UTF-8 characters.
std::size_t validLength(std::string_view text) {
    const std::uint8_t *const invalid = u8_check(unitsOf(text), text.size());
    return invalid == nullptr ? text.size() : static_cast<std::size_t>(invalid - unitsOf(text));
}

void appendUppercase(std::string &result, std::string_view valid) {
    if (valid.empty()) {
        return;
    }
    std::size_t length = 0;
    constexpr const char *noLanguage = nullptr; // the mapping of no locale
    const std::unique_ptr<std::uint8_t, Free> mapped(u8_toupper(unitsOf(valid), valid.size(), noLanguage, nullptr, nullptr, &length));
    if (mapped) {
        result.append(reinterpret_cast<const char *>(mapped.get()), length);
    } else {
        result.append(valid);
    }
}

char asciiUppercase(char byte) {
    return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}

} // namespace

std::string UnistringTextCase::uppercase(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    if (std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; })) {
        std::transform(text.begin(), text.end(), std::back_inserter(result), asciiUppercase);
        return result;
    }
    while (!text.empty()) {
        const std::size_t valid = validLength(text);
        appendUppercase(result, text.substr(0, valid));
        text.remove_prefix(valid);
        if (!text.empty()) {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

} // namespace orvane
