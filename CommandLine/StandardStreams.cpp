#include "StandardStreams.h"

#include "platform/posix/PosixWriting.h"
#include "ports/UTF16.h"

#include <array>
#include <cstddef>
#include <unistd.h>

namespace orvane {

namespace {

char hexDigit(unsigned value) {
    return "0123456789abcdef"[value & 0xFU];
}

/// Whether the bytes of one character may not go to a terminal: control characters (C0, DEL, C1) and what is no UTF-8.
bool isUnprintable(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character[0]);
    if (character.size() == 1) {
        return lead < 0x20 || lead >= 0x7F;
    }
    const auto second = static_cast<unsigned char>(character[1]);
    const bool isC1 = character.size() == 2 && lead == 0xC2 && second < 0xA0;
    const bool isSurrogate = character.size() == 3 && lead == 0xED && second >= 0xA0;
    return isC1 || isSurrogate;
}

/// `text` with everything unprintable written as \xNN, but for the characters in `kept`.
std::string printableBut(std::string_view text, std::string_view kept) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view character = text.substr(at, ORVCharacterLength(text, at));
        at += character.size();
        if (!isUnprintable(character) || kept.find(character) != std::string_view::npos) {
            result += character;
            continue;
        }
        for (const char byte : character) {
            const auto value = static_cast<unsigned char>(byte);
            result += {'\\', 'x', hexDigit(value >> 4U), hexDigit(value)};
        }
    }
    return result;
}

} // namespace

bool isTerminal(int descriptor) {
    constexpr std::size_t StandardStreams = 3;
    enum class Known : char { Not, Yes, No };
    static std::array<Known, StandardStreams> known{};
    const auto stream = static_cast<std::size_t>(descriptor);
    if (stream >= StandardStreams) {
        return ::isatty(descriptor) != 0;
    }
    if (known[stream] == Known::Not) {
        known[stream] = ::isatty(descriptor) != 0 ? Known::Yes : Known::No;
    }
    return known[stream] == Known::Yes;
}

void writeStandardError(std::string_view text) {
    // A name in a message may hold what would move a terminal's cursor or more; other readers get it as it is.
    // Who does not get it cannot be told that either.
    static_cast<void>(writeContents(STDERR_FILENO, isTerminal(STDERR_FILENO) ? printableBut(text, "\n\t") : std::string(text)));
}

std::string printable(std::string_view text) {
    return printableBut(text, "");
}

} // namespace orvane
