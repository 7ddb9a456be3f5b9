#include "platform/propertylist/PropertyListScan.h"
#include "platform/propertylist/PropertyListText.h"
#include "platform/propertylist/XMLPropertyListReader.h"

#include <algorithm>
#include <array>
#include <cstring>

// Text, tags, comments and references of XML 1.0 (fifth edition), as far as property lists use them.

namespace orvane::propertylist {

namespace {

constexpr std::array<std::string_view, 12> Names{"",        "plist", "dict", "array", "key",  "string",
                                                 "integer", "real",  "date", "data",  "true", "false"};

bool isNameCharacter(char c) noexcept {
    const auto byte = static_cast<unsigned char>(c);
    const bool letter = (byte | 0x20U) >= 'a' && (byte | 0x20U) <= 'z';
    return letter || (byte >= '0' && byte <= '9') || byte == '_' || byte == ':' || byte == '-' || byte == '.' || byte >= 0x80;
}

/// The characters that a reference may name (XML 1.0, production 2).
bool isXMLCharacter(char32_t code) noexcept {
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code < 0xD800) || (code >= 0xE000 && code < 0xFFFE) ||
           (code >= 0x10000 && code <= 0x10FFFF);
}

char32_t namedCharacter(std::string_view name) noexcept {
    constexpr std::array<std::pair<std::string_view, char32_t>, 5> entities{
        {{"amp", U'&'}, {"lt", U'<'}, {"gt", U'>'}, {"quot", U'"'}, {"apos", U'\''}}};
    for (const auto &[entity, code] : entities) {
        if (entity == name) {
            return code;
        }
    }
    return 0;
}

char32_t numberedCharacter(std::string_view digits) noexcept {
    const bool hexadecimal = !digits.empty() && digits.front() == 'x';
    digits.remove_prefix(hexadecimal ? 1 : 0);
    char32_t code = 0;
    for (const char digit : digits) {
        const char lower = static_cast<char>(digit | 0x20);
        const bool decimalDigit = digit >= '0' && digit <= '9';
        if (!decimalDigit && !(hexadecimal && lower >= 'a' && lower <= 'f')) {
            return 0;
        }
        code = code * (hexadecimal ? 16 : 10) + static_cast<char32_t>(decimalDigit ? digit - '0' : lower - 'a' + 10);
        if (code > 0x10FFFF) {
            return 0;
        }
    }
    return isXMLCharacter(code) ? code : 0;
}

} // namespace

// --- Between elements ---

/// Skips white space. False only when reading failed.
bool XMLPropertyListReader::_skipBlanks() {
    do {
        _input->cursor = skipBlanks(_input->cursor);
    } while (_input->cursor == _input->end && _input->fill());
    return _input->error() == 0;
}

/// Skips white space, comments and processing instructions, up to a '<' or the end. Anything else is refused.
bool XMLPropertyListReader::_skipMisc() {
    while (_skipBlanks()) {
        if (_input->cursor == _input->end) {
            return true;
        }
        if (*_input->cursor != '<') {
            return _fail("text outside any value");
        }
        _input->want(Lookahead);
        const bool comment = _input->cursor[1] == '!' && _startsWith("<!--");
        if (!comment && _input->cursor[1] != '?') {
            return true;
        }
        if (!(comment ? _skipComment() : _skipInstruction())) {
            return false;
        }
    }
    return false;
}

bool XMLPropertyListReader::_skipUntil(std::string_view ending, const char *what) {
    while (true) {
        _input->want(ending.size());
        if (_startsWith(ending)) {
            _input->cursor += ending.size();
            return true;
        }
        char32_t code = 0;
        if (!_nextCharacter(code)) {
            return _fail(std::string(what) + " does not end");
        }
    }
}

bool XMLPropertyListReader::_skipComment() {
    _input->cursor += std::string_view("<!--").size();
    return _skipUntil("-->", "a comment");
}

bool XMLPropertyListReader::_skipInstruction() {
    if (!isNameCharacter(_input->cursor[2]) ||
        (equalsIgnoringCase({_input->cursor + 2, 3}, "xml") && !isNameCharacter(_input->cursor[5]))) {
        return _fail("an XML declaration that is not at the start");
    }
    _input->cursor += 2;
    return _skipUntil("?>", "a processing instruction");
}

bool XMLPropertyListReader::_skipQuoted(char32_t quote, bool insideTag) {
    char32_t code = 0;
    while (_nextCharacter(code)) {
        if (code == quote) {
            return true;
        }
        if (insideTag && code == '<') {
            return _fail("'<' inside an attribute");
        }
    }
    return _fail("a quoted text does not end");
}

// --- Tags ---

/// The plain tags, without blanks or attributes, that nearly every file is made of.
XMLPropertyListReader::Element XMLPropertyListReader::_elementAtCursor(std::size_t &length) const noexcept {
    const auto is = [&](std::string_view tag, Element element) {
        length = tag.size();
        return _startsWith(tag) ? element : Element::None;
    };
    switch (_input->cursor[1]) {
    case 'k':
        return is("<key>", Element::Key);
    case 's':
        return is("<string>", Element::String);
    case 'd':
        return is("<dict>", Element::Dictionary);
    case 'a':
        return is("<array>", Element::Array);
    case 'i':
        return is("<integer>", Element::Integer);
    case 't':
        return is("<true/>", Element::True);
    case 'f':
        return is("<false/>", Element::False);
    default:
        return Element::None;
    }
}

/// Reads a start tag or an empty one. The cursor stands on its '<', `Lookahead` bytes are in the window.
bool XMLPropertyListReader::_readTag(Tag &tag) {
    std::size_t length = 0;
    tag.element = _elementAtCursor(length);
    if (tag.element != Element::None) {
        tag.empty = tag.element == Element::True || tag.element == Element::False;
        _input->cursor += length;
        return true;
    }
    const char *const name = _input->cursor + 1;
    const char *behind = name;
    while (behind < name + Lookahead - 2 && isNameCharacter(*behind)) {
        ++behind;
    }
    const std::string_view text(name, static_cast<std::size_t>(behind - name));
    for (std::size_t i = 1; i < Names.size(); ++i) {
        if (Names[i] == text) {
            tag.element = static_cast<Element>(i);
        }
    }
    if (tag.element == Element::None) {
        return _fail("unknown element <" + legible(text) + ">");
    }
    _input->cursor = behind;
    return _readAttributes(tag);
}

bool XMLPropertyListReader::_readAttributes(Tag &tag) {
    while (true) {
        _input->want(2);
        const bool blank = isBlank(*_input->cursor);
        if (!_skipBlanks()) {
            return false;
        }
        _input->want(2);
        if (*_input->cursor == '>') {
            ++_input->cursor;
            return true;
        }
        if (_startsWith("/>")) {
            _input->cursor += 2;
            tag.empty = true;
            return true;
        }
        if (!blank || !_readAttribute()) {
            return _fail("a tag is not well-formed");
        }
    }
}

bool XMLPropertyListReader::_readAttribute() {
    std::size_t length = 0;
    char32_t code = 0;
    while (isNameCharacter(*_input->cursor)) {
        if (!_nextCharacter(code)) { // its name may hold any letters, but no bytes that are none
            return false;
        }
        ++length;
        _input->want(1);
    }
    if (length == 0 || !_skipBlanks() || *_input->cursor != '=') {
        return false;
    }
    ++_input->cursor;
    if (!_skipBlanks() || (*_input->cursor != '"' && *_input->cursor != '\'')) {
        return false;
    }
    const char quote = *_input->cursor++;
    return _skipQuoted(static_cast<unsigned char>(quote), true);
}

bool XMLPropertyListReader::_readClosingTag(Element element) {
    const std::string_view name = Names[static_cast<std::size_t>(element)];
    _input->want(Lookahead);
    if (!_startsWith("</") || std::memcmp(_input->cursor + 2, name.data(), name.size()) != 0 ||
        isNameCharacter(_input->cursor[2 + name.size()])) {
        return _fail("</" + std::string(name) + "> is wanted here");
    }
    _input->cursor += 2 + name.size();
    if (*_input->cursor != '>' && (!_skipBlanks() || *_input->cursor != '>')) {
        return _fail("a closing tag does not end");
    }
    ++_input->cursor;
    return true;
}

// --- Text ---

/// The text up to the closing tag, which is read too. It borrows from the window or from `_scratch`.
bool XMLPropertyListReader::_readText(Element element, std::string_view &text) {
    const char *const start = _input->cursor;
    const char *const place = skipPlain(start);
    // Near the window's end the padding's zeros do not match, and the slow way takes over.
    const bool key = element == Element::Key && std::memcmp(place, "</key>", 6) == 0;
    if (key || (element == Element::String && std::memcmp(place, "</string>", 9) == 0)) {
        text = {start, static_cast<std::size_t>(place - start)};
        _input->cursor = place + (key ? 6 : 9);
        return true;
    }
    if (!_readTextSlowly(element)) {
        return false;
    }
    text = _scratch;
    return true;
}

bool XMLPropertyListReader::_readTextSlowly(Element element) {
    _scratch.clear();
    for (bool closed = false; !closed;) {
        const char *const place = skipPlain(_input->cursor);
        _scratch.append(_input->cursor, place);
        _input->cursor = place;
        if (place == _input->end) {
            if (!_input->fill()) {
                return _fail("the file ends inside <" + std::string(Names[static_cast<std::size_t>(element)]) + ">");
            }
        } else if (*place == '<' ? !_readTextMarkup(element, closed) : *place == '&' ? !_readReference() : !_appendRawCharacter()) {
            return false;
        }
    }
    return true;
}

bool XMLPropertyListReader::_readTextMarkup(Element element, bool &closed) {
    _input->want(Lookahead);
    if (_input->cursor[1] == '/') {
        closed = true;
        return _readClosingTag(element);
    }
    if (_startsWith("<!--")) {
        return _skipComment();
    }
    if (_startsWith("<![CDATA[")) {
        return _readCDATA();
    }
    if (_input->cursor[1] == '?') {
        return _skipInstruction();
    }
    return _fail("an element inside <" + std::string(Names[static_cast<std::size_t>(element)]) + ">");
}

bool XMLPropertyListReader::_readCDATA() {
    _input->cursor += std::string_view("<![CDATA[").size();
    while (true) {
        _input->want(3);
        if (_startsWith("]]>")) {
            _input->cursor += 3;
            return true;
        }
        if (_input->cursor == _input->end) {
            return _fail("a CDATA section does not end");
        }
        if (!_appendRawCharacter()) {
            return false;
        }
    }
}

bool XMLPropertyListReader::_readReference() {
    constexpr std::size_t longest = XMLPropertyListInput::Padding - 4;
    _input->want(longest);
    std::string_view text(_input->cursor + 1, std::min(longest, static_cast<std::size_t>(_input->end - _input->cursor)) - 1);
    text = text.substr(0, text.find(';'));
    const bool numbered = !text.empty() && text.front() == '#';
    const char32_t code = numbered ? numberedCharacter(text.substr(1)) : namedCharacter(text);
    if (code == 0 || _input->cursor[1 + text.size()] != ';') {
        std::string shown(text.substr(0, 12)); // goes to terminals and logs
        std::replace_if(
            shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
        return _fail("\"&" + shown + "\" is no reference to a character");
    }
    appendCharacter(_scratch, code);
    _input->cursor += text.size() + 2;
    return true;
}

/// Appends one character as it stands; a carriage return, with or without a line feed behind it, is a line feed (XML 1.0,
/// section 2.11).
bool XMLPropertyListReader::_appendRawCharacter() {
    char32_t code = 0;
    if (!_nextCharacter(code)) {
        return _fail("the file ends inside a value");
    }
    if (code == '\r') {
        _input->want(1);
        _input->cursor += *_input->cursor == '\n' ? 1 : 0;
        code = '\n';
    }
    appendCharacter(_scratch, code);
    return true;
}

bool XMLPropertyListReader::_peekCharacter(char32_t &code, std::size_t &length) {
    _input->want(4);
    const auto unread = static_cast<std::size_t>(_input->end - _input->cursor);
    if (unread == 0) {
        return false;
    }
    const Character character = firstCharacter({_input->cursor, std::min<std::size_t>(unread, 4)}, false);
    if (character.length == 0 || (character.length > 1 && _encoding == PropertyListEncoding::ASCII)) {
        return _fail(_encoding == PropertyListEncoding::ASCII ? "a byte that is no ASCII" : "a byte that is no UTF-8");
    }
    if (character.code == 0) {
        return _fail("a NUL character");
    }
    code = character.code;
    length = character.length;
    return true;
}

bool XMLPropertyListReader::_nextCharacter(char32_t &code) {
    std::size_t length = 0;
    if (!_peekCharacter(code, length)) {
        return false;
    }
    _input->cursor += length;
    return true;
}

} // namespace orvane::propertylist
