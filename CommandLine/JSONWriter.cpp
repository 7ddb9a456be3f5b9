#include "JSONWriter.h"

#include "ports/UTF16.h"

namespace orvane {

namespace {

constexpr std::string_view ReplacementCharacter = "\xEF\xBF\xBD"; // U+FFFD

/// The two-character escape of a character that has one, else 0.
char shortEscape(char c) {
    switch (c) {
    case '"':
    case '\\':
        return c;
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

bool isInvalid(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character[0]);
    const bool isSurrogate = character.size() == 3 && lead == 0xED && static_cast<unsigned char>(character[1]) >= 0xA0;
    return isSurrogate || (character.size() == 1 && lead >= 0x80);
}

void appendASCII(std::string &text, char c) {
    constexpr char Digits[] = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(c);
    if (const char escape = shortEscape(c); escape != 0) {
        text += {'\\', escape};
    } else if (value < 0x20 || value == 0x7F) {
        text += {'\\', 'u', '0', '0', Digits[value >> 4U], Digits[value & 0xFU]};
    } else {
        text += c;
    }
}

} // namespace

void JSONWriter::_beginValue() {
    if (_needsComma) {
        _text += ',';
    }
    _needsComma = true;
}

void JSONWriter::_appendQuoted(std::string_view value) {
    _text += '"';
    for (std::size_t at = 0; at < value.size();) {
        const std::string_view character = value.substr(at, ORVCharacterLength(value, at));
        at += character.size();
        if (isInvalid(character)) {
            _text += ReplacementCharacter;
        } else if (character.size() == 1) {
            appendASCII(_text, character[0]);
        } else {
            _text += character;
        }
    }
    _text += '"';
}

JSONWriter &JSONWriter::beginObject() {
    _beginValue();
    _text += '{';
    _needsComma = false;
    return *this;
}

JSONWriter &JSONWriter::endObject() {
    _text += '}';
    _needsComma = true;
    return *this;
}

JSONWriter &JSONWriter::beginArray() {
    _beginValue();
    _text += '[';
    _needsComma = false;
    return *this;
}

JSONWriter &JSONWriter::endArray() {
    _text += ']';
    _needsComma = true;
    return *this;
}

JSONWriter &JSONWriter::key(std::string_view name) {
    _beginValue();
    _appendQuoted(name);
    _text += ':';
    _needsComma = false;
    return *this;
}

JSONWriter &JSONWriter::string(std::string_view value) {
    _beginValue();
    _appendQuoted(value);
    return *this;
}

JSONWriter &JSONWriter::number(std::int64_t value) {
    _beginValue();
    _text += std::to_string(value);
    return *this;
}

JSONWriter &JSONWriter::boolean(bool value) {
    _beginValue();
    _text += value ? "true" : "false";
    return *this;
}

JSONWriter &JSONWriter::null() {
    _beginValue();
    _text += "null";
    return *this;
}

JSONWriter &JSONWriter::stringOrNull(const std::optional<std::string> &value) {
    return value ? string(*value) : null();
}

} // namespace orvane
