#include "presets/ORVPropertyListReading.h"

#include <array>
#include <charconv>

namespace orvane {

namespace {

/// Room for the digits of any 64-bit integer or shortest double.
constexpr std::size_t NumberRoom = 32;

template <typename Number> std::string decimal(Number number) {
    std::array<char, NumberRoom> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

std::string textOfNumber(const PropertyListValue &value) {
    if (value.type() == PropertyListType::Real) {
        return value.isSinglePrecision() ? decimal(static_cast<float>(value.real())) : decimal(value.real());
    }
    return value.isUnsigned() ? decimal(static_cast<std::uint64_t>(value.integer())) : decimal(value.integer());
}

bool isNumber(const PropertyListValue &value) {
    return value.type() == PropertyListType::Integer || value.type() == PropertyListType::Real;
}

bool boolOfText(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    if (start == std::string_view::npos) {
        return false;
    }
    text.remove_prefix(start);
    if (text.front() == '-' || text.front() == '+') {
        text.remove_prefix(1);
    }
    const std::size_t digit = text.find_first_not_of('0');
    return digit != std::string_view::npos && std::string_view("YyTt123456789").find(text[digit]) != std::string_view::npos;
}

} // namespace

bool ORVBoolValue(const PropertyListValue *value) {
    if (value == nullptr) {
        return false;
    }
    switch (value->type()) {
    case PropertyListType::Boolean:
        return value->boolean();
    case PropertyListType::Integer:
        return value->integer() != 0;
    case PropertyListType::Real:
        return value->real() != 0.0;
    case PropertyListType::String:
        return boolOfText(value->string());
    default:
        return false;
    }
}

bool ORVHasText(const PropertyListValue *value) {
    return value != nullptr && (value->isString() || value->type() == PropertyListType::Data || isNumber(*value));
}

std::string_view ORVTextView(const PropertyListValue *value, std::string &storage) {
    if (value == nullptr) {
        return {};
    }
    if (value->isString()) {
        return value->string();
    }
    if (value->type() == PropertyListType::Data) {
        return value->data();
    }
    if (isNumber(*value)) {
        storage = textOfNumber(*value);
        return storage;
    }
    return {};
}

std::string ORVTextValue(const PropertyListValue *value) {
    std::string storage;
    const std::string_view text = ORVTextView(value, storage);
    return std::string(text);
}

} // namespace orvane
