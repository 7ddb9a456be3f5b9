#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// Writes one JSON text (RFC 8259) piece by piece, on one line. The caller keeps to the grammar: inside an object a key comes
/// before each value. Bytes that are no UTF-8 become U+FFFD, so that the result is always valid.
class JSONWriter {
public:
    JSONWriter &beginObject();
    JSONWriter &endObject();
    JSONWriter &beginArray();
    JSONWriter &endArray();
    JSONWriter &key(std::string_view name);
    JSONWriter &string(std::string_view value);
    JSONWriter &number(std::int64_t value);
    JSONWriter &boolean(bool value);
    JSONWriter &null();
    /// The text, or null.
    JSONWriter &stringOrNull(const std::optional<std::string> &value);

    /// What was written so far.
    [[nodiscard]] const std::string &text() const noexcept { return _text; }

private:
    void _beginValue();
    void _appendQuoted(std::string_view value);

    std::string _text;
    bool _needsComma = false;
};

} // namespace orvane
