#include "platform/propertylist/PropertyListScan.h"
#include "platform/propertylist/PropertyListText.h"
#include "platform/propertylist/XMLPropertyListReader.h"

#include <algorithm>
#include <array>
#include <cstring>

// Text, tags, comments, references and declarations of XML 1.0 (fifth edition), as far as property lists use them.

namespace orvane::propertylist {

namespace {

/// Bytes enough to know any tag, "<![CDATA[" or a reference by its beginning.
constexpr std::size_t Lookahead = 32;

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

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

/// The value of `encoding` in an XML declaration; nothing where it is absent.
std::optional<std::string> declaredEncoding(std::string_view declaration) {
    const std::size_t at = declaration.find("encoding");
    if (at == std::string_view::npos) {
        return std::nullopt;
    }
    declaration.remove_prefix(at + 8);
    const std::size_t opening = declaration.find_first_of("\"'");
    const std::size_t closing = opening == std::string_view::npos ? opening : declaration.find(declaration[opening], opening + 1);
    if (closing == std::string_view::npos || declaration.substr(0, opening).find_first_not_of(" \t\r\n=") != std::string_view::npos) {
        return std::string();
    }
    return lowerCase(declaration.substr(opening + 1, closing - opening - 1));
}

} // namespace

bool XMLPropertyListReader::_startsWith(std::string_view text) const noexcept {
    return std::memcmp(_input->cursor, text.data(), text.size()) == 0; // the window's padding covers its end
}

// --- The beginning of a file ---

bool XMLPropertyListReader::_readDeclaration() {
    _input->want(XMLPropertyListInput::Padding);
    const auto starts = [this](std::string_view bytes) { return _startsWith(bytes); };
    const bool utf16 = starts("\xFF\xFE") || starts("\xFE\xFF") || starts(std::string_view("<\0", 2)) || starts(std::string_view("\0<", 2));
    if (starts(std::string_view("\xFF\xFE\0\0", 4)) || starts(std::string_view("\0\0", 2))) {
        return _fail(_input->cursor == _input->end ? "the file is empty" : "UTF-32 and files of NULs are not read");
    }
    if (utf16) {
        const bool big = starts("\xFE\xFF") || starts(std::string_view("\0<", 2));
        if (!_decodeRest(big ? PropertyListEncoding::UTF16BigEndian : PropertyListEncoding::UTF16LittleEndian)) {
            return false;
        }
    }
    const bool hasMark = starts("\xEF\xBB\xBF");
    _input->cursor += hasMark ? 3 : 0;
    if (!_skipBlanks()) {
        return false;
    }
    _input->want(Lookahead);
    if (!starts("<?xml") || !isBlank(_input->cursor[5])) {
        return true;
    }
    _scratch.clear();
    char32_t code = 0;
    constexpr std::size_t longest = 1024;
    while (_scratch.size() < 2 || _scratch.compare(_scratch.size() - 2, 2, "?>") != 0) {
        if (_scratch.size() >= longest || !_nextCharacter(code)) {
            return _fail("the XML declaration does not end");
        }
        appendCharacter(_scratch, code);
    }
    const std::optional<std::string> name = declaredEncoding(_scratch);
    return !name || _useEncoding(*name, utf16, hasMark);
}

bool XMLPropertyListReader::_useEncoding(std::string_view name, bool isUTF16, bool hasMark) {
    const bool saysUTF16 = name == "utf-16" || name == "utf-16le" || name == "utf-16be" || name == "ucs-2" || name == "iso-10646-ucs-2";
    const bool saysUTF8 = name == "utf-8" || name == "utf8";
    if (isUTF16) { // the byte-order mark says more than the declaration
        return saysUTF16 || saysUTF8 || _fail("the file is UTF-16 but says it is " + legible(name));
    }
    if (saysUTF8) {
        return true;
    }
    if (hasMark) {
        return _fail("the file is UTF-8 but says it is " + legible(name));
    }
    if (name == "us-ascii" || name == "ascii") {
        _encoding = PropertyListEncoding::ASCII;
        return true;
    }
    if (name == "iso-8859-1" || name == "iso_8859-1" || name == "latin1") {
        return _decodeRest(PropertyListEncoding::Latin1);
    }
    return _fail(saysUTF16 ? "the file says it is UTF-16 but is not" : "unknown encoding \"" + legible(name) + "\"");
}

/// Turns everything from the cursor on into UTF-8 and reads on from there. What was read before is ASCII, so that offsets
/// into the whole turned text are right.
bool XMLPropertyListReader::_decodeRest(PropertyListEncoding encoding) {
    const std::uint64_t before = _input->offsetOf(_input->cursor);
    if (!isASCII(_scratch) || before < _scratch.size()) {
        return _fail("the XML declaration is no ASCII");
    }
    const std::optional<std::string> rest = decodedPropertyListText(_input->takeAll(), encoding);
    if (_input->error() != 0) {
        return false;
    }
    if (!rest) {
        return _fail("the text is no UTF-16");
    }
    _encoding = encoding;
    _decoded.assign(static_cast<std::size_t>(before) - _scratch.size(), ' ');
    _decoded += _scratch;
    _decoded += *rest;
    _decodedInput = std::make_unique<XMLPropertyListInput>(_decoded);
    _input = _decodedInput.get();
    for (std::uint64_t left = before; left > 0;) {
        _input->want(1);
        const auto step = static_cast<std::ptrdiff_t>(std::min(left, static_cast<std::uint64_t>(_input->end - _input->cursor)));
        _input->cursor += step;
        left -= static_cast<std::uint64_t>(step);
    }
    _input->want(Lookahead);
    return true;
}

/// Skips the document type. Declarations of entities are refused: a few lines of them can stand for gigabytes of text.
bool XMLPropertyListReader::_readDoctype() {
    _input->cursor += std::string_view("<!DOCTYPE").size();
    char32_t code = 0;
    while (_nextCharacter(code)) {
        if (code == '>') {
            return true;
        }
        if ((code == '"' || code == '\'') && !_skipQuoted(code, false)) {
            return false;
        }
        if (code == '[' && !_readSubset()) {
            return false;
        }
        if (code == '<') {
            return _fail("the document type does not end");
        }
    }
    return _fail("the document type does not end");
}

bool XMLPropertyListReader::_readSubset() {
    while (_skipBlanks()) {
        _input->want(Lookahead);
        if (*_input->cursor == ']') {
            ++_input->cursor;
            return true;
        }
        if (_startsWith("<!ENTITY")) {
            return _fail("declarations of entities are not allowed");
        }
        const bool declaration = _startsWith("<!ELEMENT") || _startsWith("<!ATTLIST") || _startsWith("<!NOTATION");
        if (_startsWith("<!--") ? !_skipComment() : _startsWith("<?") ? !_skipInstruction() : !declaration) {
            return _fail("the document type holds what is not understood");
        }
        char32_t code = 0;
        while (declaration && code != '>') {
            if (!_nextCharacter(code) || ((code == '"' || code == '\'') && !_skipQuoted(code, false))) {
                return _fail("the document type does not end");
            }
        }
    }
    return false;
}

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
    if (!isNameCharacter(_input->cursor[2]) || (lowerCase({_input->cursor + 2, 3}) == "xml" && !isNameCharacter(_input->cursor[5]))) {
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
