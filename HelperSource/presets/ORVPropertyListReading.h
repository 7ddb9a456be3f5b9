#pragma once

#include "ports/PropertyList.h"

#include <string>
#include <string_view>

// The lenient reading of preset records: nothing is validated when it is read, a value of another type counts as what
// its boolean value, text or elements are, and an absent value as the default.

namespace orvane {

/// Boolean value: of a Boolean; of a number, whether it is not zero; of a String, whether it starts (after blanks, a sign
/// and zeros) with one of "Y", "y", "T", "t" or a digit 1 to 9; of anything else, and of null, false.
[[nodiscard]] bool ORVBoolValue(const PropertyListValue *value);

/// Text of a String; decimal digits of an Integer or Real; bytes of a Data as they are; of anything else, and of null, "".
[[nodiscard]] std::string ORVTextValue(const PropertyListValue *value);

/// Whether there is a text at all (String, Integer, Real or Data), even an empty one.
[[nodiscard]] bool ORVHasText(const PropertyListValue *value);

/// As `ORVTextValue`, without a copy when the value is a String or Data; otherwise the text is put into `storage`,
/// which the result may borrow from.
[[nodiscard]] std::string_view ORVTextView(const PropertyListValue *value, std::string &storage);

} // namespace orvane
