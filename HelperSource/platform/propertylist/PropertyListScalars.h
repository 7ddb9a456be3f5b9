#pragma once

#include "ports/PropertyList.h"

#include <optional>
#include <string>
#include <string_view>

// Numbers, dates and data as text of an XML property list. Nothing here looks at the locale.

namespace orvane::propertylist {

/// Decimal, or hexadecimal behind "0x", with an optional sign and white space around sign and digits. Nothing beyond -2^63
/// and 2^64 - 1.
[[nodiscard]] std::optional<PropertyListValue> integerFromText(std::string_view text);

/// A decimal floating-point number, or "nan", "inf", "infinity" in any case and with a sign, white space around it. What is
/// too large becomes infinite, what is too small 0.
[[nodiscard]] std::optional<PropertyListValue> realFromText(std::string_view text);

/// Exactly YYYY-MM-DDThh:mm:ssZ (ISO 8601, a day that exists); the year may have a minus and more than four digits.
[[nodiscard]] std::optional<PropertyListValue> dateFromText(std::string_view text);

/// Base64 (RFC 4648, section 4) with white space anywhere; the padding must be there. The result is appended to `bytes`.
[[nodiscard]] bool appendDecodedBase64(std::string &bytes, std::string_view text);

[[nodiscard]] std::string textOfInteger(const PropertyListValue &value);
/// The shortest text that reads back as the same number; "nan", "+infinity", "-infinity".
[[nodiscard]] std::string textOfReal(double value);
/// Whole seconds, rounded down. Nothing for a date beyond the year ±999999999 or one that is no number.
[[nodiscard]] std::optional<std::string> textOfDate(double secondsSince2001);
/// Base64 in lines of `width` characters (a multiple of 4), each behind `indent`.
void appendBase64(std::string &out, std::string_view bytes, std::size_t width, std::string_view indent);

} // namespace orvane::propertylist
