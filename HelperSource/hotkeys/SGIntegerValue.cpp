#include "hotkeys/SGIntegerValue.h"

#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>

namespace orvane {

namespace {

constexpr std::int64_t Largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t Smallest = std::numeric_limits<std::int64_t>::min();

std::int64_t integerOfReal(double real) {
    constexpr double Limit = 9223372036854775808.0; // 2 to the power of 63
    if (real != real) {
        return 0;
    }
    if (real >= Limit) {
        return Largest;
    }
    return real < -Limit ? Smallest : static_cast<std::int64_t>(real);
}

std::int64_t integerOfText(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    if (start == std::string_view::npos) {
        return 0;
    }
    text.remove_prefix(start);
    if (text.front() == '+') {
        text.remove_prefix(1);
        if (text.starts_with('-')) { // from_chars would take that sign too
            return 0;
        }
    }
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::result_out_of_range) {
        return text.front() == '-' ? Smallest : Largest;
    }
    return error == std::errc() ? number : 0;
}

} // namespace

std::int64_t SGIntegerValue(const PropertyListValue *value) {
    if (value == nullptr) {
        return 0;
    }
    switch (value->type()) {
    case PropertyListType::Integer:
        return value->integer();
    case PropertyListType::Real:
        return integerOfReal(value->real());
    case PropertyListType::Boolean:
        return value->boolean() ? 1 : 0;
    case PropertyListType::String:
        return integerOfText(value->string());
    default:
        return 0;
    }
}

} // namespace orvane
