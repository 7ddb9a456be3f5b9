#include "platform/propertylist/PropertyListScalars.h"

#include "platform/propertylist/PropertyListScan.h"
#include "platform/propertylist/PropertyListText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <system_error>

namespace orvane::propertylist {

namespace {

constexpr std::int64_t SecondsPerDay = 86400;
/// Days from 1970-01-01 to 2001-01-01, where Apple's dates begin.
constexpr std::int64_t DaysTo2001 = 11323;
constexpr std::int64_t LargestYear = 999'999'999;

bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

std::string_view trimmed(std::string_view text) noexcept {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// Takes a sign off the start of `text`; true for a minus.
bool takeSign(std::string_view &text) noexcept {
    if (text.empty() || (text.front() != '-' && text.front() != '+')) {
        return false;
    }
    const bool negative = text.front() == '-';
    text.remove_prefix(1);
    return negative;
}

/// For a decimal number that no double holds: whether it is too large (else it is too small).
bool isHuge(std::string_view digits) noexcept {
    const std::size_t exponentAt = std::min(digits.find_first_of("eE"), digits.size());
    const std::string_view mantissa = digits.substr(0, exponentAt);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = mantissa.find_first_of("123456789");
    if (first == std::string_view::npos) {
        return false;
    }
    std::string_view exponent = digits.substr(std::min(exponentAt + 1, digits.size()));
    const bool negative = takeSign(exponent);
    std::int64_t power = 0;
    for (const char digit : exponent) {
        power = std::min<std::int64_t>(power * 10 + (digit - '0'), std::int64_t{1} << 50U);
    }
    const auto magnitude = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
    return magnitude + (negative ? -power : power) > 0;
}

std::optional<double> decimalNumber(std::string_view digits) {
    double value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::general);
    if (end != digits.data() + digits.size() || error == std::errc::invalid_argument) {
        return std::nullopt;
    }
    if (error == std::errc::result_out_of_range) {
        value = isHuge(digits) ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return value;
}

/// Days from 1970-01-01 in the Gregorian calendar, extended to all years (the civil-day count over eras of 400 years,
/// each 146,097 days, that start on 1 March).
std::int64_t daysFromCivil(std::int64_t year, int month, int day) noexcept {
    year -= month <= 2 ? 1 : 0;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const std::int64_t yearOfEra = year - era * 400;
    const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

struct CivilDay {
    std::int64_t year = 0;
    int month = 0;
    int day = 0;
};

CivilDay civilFromDays(std::int64_t days) noexcept {
    days += 719468;
    const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const std::int64_t dayOfEra = days - era * 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t shifted = (5 * dayOfYear + 2) / 153;
    const int month = static_cast<int>(shifted < 10 ? shifted + 3 : shifted - 9);
    return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, static_cast<int>(dayOfYear - (153 * shifted + 2) / 5 + 1)};
}

int daysInMonth(std::int64_t year, int month) noexcept {
    constexpr std::array<int, 12> days{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return days[static_cast<std::size_t>(month - 1)] + (month == 2 && leap ? 1 : 0);
}

int twoDigits(std::string_view text, std::size_t at) noexcept {
    return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

/// Whether `text` has the form of `pattern`, in which '0' stands for any digit.
bool hasForm(std::string_view text, std::string_view pattern) noexcept {
    return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                      [](char c, char wanted) { return wanted == '0' ? isDigit(c) : c == wanted; });
}

constexpr std::string_view Base64Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<std::int8_t, 256> base64Values() {
    std::array<std::int8_t, 256> values{};
    values.fill(-1);
    for (std::size_t i = 0; i < Base64Alphabet.size(); ++i) {
        values[static_cast<unsigned char>(Base64Alphabet[i])] = static_cast<std::int8_t>(i);
    }
    return values;
}

void appendBase64Group(std::string &out, std::string_view bytes) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        bits = (bits << 8U) | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
        out.push_back(i <= bytes.size() ? Base64Alphabet[(bits >> (18 - 6 * i)) & 0x3FU] : '=');
    }
}

} // namespace

std::optional<PropertyListValue> integerFromText(std::string_view text) {
    text = trimmed(text);
    const bool negative = takeSign(text);
    text = trimmed(text);
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        text.remove_prefix(2);
        base = 16;
    }
    std::uint64_t magnitude = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    constexpr std::uint64_t LargestNegative = std::uint64_t{1} << 63U;
    if (!negative) {
        return PropertyListValue::ofUnsigned(magnitude);
    }
    return magnitude > LargestNegative ? std::nullopt
                                       : std::optional(PropertyListValue::ofInteger(static_cast<std::int64_t>(0 - magnitude)));
}

std::optional<PropertyListValue> realFromText(std::string_view text) {
    text = trimmed(text);
    const double sign = takeSign(text) ? -1.0 : 1.0;
    if (equalsIgnoringCase(text, "nan")) {
        return PropertyListValue::ofReal(std::numeric_limits<double>::quiet_NaN());
    }
    if (equalsIgnoringCase(text, "inf") || equalsIgnoringCase(text, "infinity")) {
        return PropertyListValue::ofReal(sign * std::numeric_limits<double>::infinity());
    }
    if (text.empty() || !(isDigit(text.front()) || text.front() == '.')) {
        return std::nullopt;
    }
    const std::optional<double> number = decimalNumber(text);
    return number ? std::optional(PropertyListValue::ofReal(sign * *number)) : std::nullopt;
}

std::optional<PropertyListValue> dateFromText(std::string_view text) {
    constexpr std::string_view form = "-00-00T00:00:00Z";
    const bool negative = !text.empty() && text.front() == '-';
    text.remove_prefix(negative ? 1 : 0);
    const std::size_t yearDigits = text.size() < form.size() ? 0 : text.size() - form.size();
    if (yearDigits < 4 || yearDigits > 9 || !std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(yearDigits), isDigit) ||
        !hasForm(text.substr(yearDigits), form)) {
        return std::nullopt;
    }
    std::int64_t year = 0;
    std::from_chars(text.data(), text.data() + yearDigits, year);
    year = negative ? -year : year;
    text.remove_prefix(yearDigits);
    const int month = twoDigits(text, 1);
    const int day = twoDigits(text, 4);
    const int hour = twoDigits(text, 7);
    const int minute = twoDigits(text, 10);
    const int second = twoDigits(text, 13);
    if (month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month) || hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    const std::int64_t days = daysFromCivil(year, month, day) - DaysTo2001;
    return PropertyListValue::ofDate(static_cast<double>(days * SecondsPerDay + hour * 3600L + minute * 60L + second));
}

bool appendDecodedBase64(std::string &bytes, std::string_view text) {
    static constexpr std::array<std::int8_t, 256> values = base64Values();
    std::uint32_t bits = 0;
    unsigned count = 0;
    unsigned padding = 0;
    bytes.reserve(bytes.size() + text.size() / 4 * 3);
    for (const char c : text) {
        const std::int8_t value = values[static_cast<unsigned char>(c)];
        if (value >= 0 && padding == 0) {
            bits = (bits << 6U) | static_cast<std::uint32_t>(value);
            if (++count % 4 == 0) {
                bytes.push_back(static_cast<char>(static_cast<unsigned char>(bits >> 16U)));
                bytes.push_back(static_cast<char>(static_cast<unsigned char>(bits >> 8U)));
                bytes.push_back(static_cast<char>(static_cast<unsigned char>(bits)));
            }
        } else if (c == '=') {
            ++padding;
        } else if (!isBlank(c)) {
            return false;
        }
    }
    const unsigned rest = count % 4;
    if (rest == 1 || padding != (rest == 0 ? 0 : 4 - rest)) {
        return false;
    }
    bits <<= rest == 0 ? 0 : 6 * (4 - rest);
    for (unsigned i = 1; i < rest; ++i) {
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(bits >> (24 - 8 * i))));
    }
    return true;
}

std::string textOfInteger(const PropertyListValue &value) {
    return value.isUnsigned() ? std::to_string(static_cast<std::uint64_t>(value.integer())) : std::to_string(value.integer());
}

std::string textOfReal(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-infinity" : "+infinity";
    }
    std::array<char, 32> text{}; // the longest shortest form has 24 characters
    auto *const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

std::optional<std::string> textOfDate(double secondsSince2001) {
    constexpr double farthest = 1e18; // seconds; keeps the conversion to an integer defined
    if (!(std::fabs(secondsSince2001) < farthest)) {
        return std::nullopt;
    }
    // Rounded down by hand: `floor` would make programs load the mathematical library when they start.
    auto seconds = static_cast<std::int64_t>(secondsSince2001);
    seconds -= static_cast<double>(seconds) > secondsSince2001 ? 1 : 0;
    const std::int64_t days = (seconds >= 0 ? seconds : seconds - (SecondsPerDay - 1)) / SecondsPerDay;
    const auto ofDay = static_cast<int>(seconds - days * SecondsPerDay);
    const CivilDay civil = civilFromDays(days + DaysTo2001);
    if (civil.year > LargestYear || civil.year < -LargestYear) {
        return std::nullopt;
    }
    std::array<char, 64> text{};
    const int length = std::snprintf(text.data(), text.size(), "%s%04lld-%02d-%02dT%02d:%02d:%02dZ", civil.year < 0 ? "-" : "",
                                     static_cast<long long>(civil.year < 0 ? -civil.year : civil.year), civil.month, civil.day,
                                     ofDay / 3600, ofDay / 60 % 60, ofDay % 60);
    return std::string(text.data(), static_cast<std::size_t>(length));
}

void appendBase64(std::string &out, std::string_view bytes, std::size_t width, std::string_view indent) {
    const std::size_t perLine = width / 4 * 3;
    while (!bytes.empty()) {
        out.append(indent);
        std::string_view line = bytes.substr(0, perLine);
        bytes.remove_prefix(line.size());
        while (!line.empty()) {
            appendBase64Group(out, line.substr(0, 3));
            line.remove_prefix(std::min<std::size_t>(3, line.size()));
        }
        out.push_back('\n');
    }
}

} // namespace orvane::propertylist
