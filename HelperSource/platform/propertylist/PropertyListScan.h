#pragma once

#include <cstdint>

#ifdef __SSE2__
#include <bit>
#include <emmintrin.h>
#endif

// Scanning over white space and plain text, which together are most of an XML property list. Both scans stop at NUL and
// may look at up to 63 bytes behind it, which the caller's buffer must have.

namespace orvane::propertylist {

[[nodiscard]] constexpr bool isBlank(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// Whether a byte of text stands for itself. Control characters other than tab, line feed and carriage return are no XML
/// characters, but Apple's writers emit them as they are and its readers take them, so they pass; NUL never does.
[[nodiscard]] constexpr bool isPlain(char c) noexcept {
    return c != '<' && c != '&' && c != '\r' && c != '\0' && static_cast<unsigned char>(c) < 0x80;
}

#ifdef __SSE2__

/// Skips tabs, of which the indentation of a deep hierarchy has hundreds a line. Where they end is taken from a mask of all
/// 64 places: which of them it is cannot be foreseen, and a wrongly foreseen branch costs more than the masks.
[[nodiscard]] inline const char *skipTabs(const char *place) noexcept {
    const __m128i tabs = _mm_set1_epi8('\t');
    while (true) {
        const auto equal = [&](int at) { return _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i *>(place + at)), tabs); };
        const auto mask = [](__m128i equals) { return static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm_movemask_epi8(equals))); };
        const __m128i first = equal(0);
        const __m128i second = equal(16);
        const __m128i third = equal(32);
        const __m128i fourth = equal(48);
        if (mask(_mm_and_si128(_mm_and_si128(first, second), _mm_and_si128(third, fourth))) != 0xFFFF) {
            return place + std::countr_one(mask(first) | mask(second) << 16U | mask(third) << 32U | mask(fourth) << 48U);
        }
        place += 64;
    }
}

[[nodiscard]] inline const char *skipBlanks(const char *place) noexcept {
    while (true) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(place));
        const __m128i tabs = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\t')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n')));
        const __m128i rest = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(' ')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\r')));
        const auto others = ~static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_or_si128(tabs, rest))) & 0xFFFFU;
        if (others != 0) {
            return place + std::countr_zero(others);
        }
        place = skipTabs(place + 16);
        if (*place == '<') {
            return place;
        }
    }
}

[[nodiscard]] inline const char *skipPlain(const char *place) noexcept {
    while (true) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(place));
        const __m128i markup = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('<')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('&')));
        const __m128i rest = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\r')), _mm_cmpeq_epi8(bytes, _mm_setzero_si128()));
        // The sign bits of the bytes themselves tell everything that is not ASCII.
        const auto others = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_or_si128(_mm_or_si128(markup, rest), bytes)));
        if (others != 0) {
            return place + std::countr_zero(others);
        }
        place += 16;
    }
}

#else

[[nodiscard]] inline const char *skipBlanks(const char *place) noexcept {
    while (isBlank(*place)) {
        ++place;
    }
    return place;
}

[[nodiscard]] inline const char *skipPlain(const char *place) noexcept {
    while (isPlain(*place)) {
        ++place;
    }
    return place;
}

#endif

} // namespace orvane::propertylist
