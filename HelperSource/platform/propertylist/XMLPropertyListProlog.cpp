#include "platform/propertylist/PropertyListScan.h"
#include "platform/propertylist/PropertyListText.h"
#include "platform/propertylist/XMLPropertyListReader.h"

#include <algorithm>

// The beginning of a file: byte-order mark, XML declaration, encoding and document type (XML 1.0, fifth edition, section 2.8).

namespace orvane::propertylist {

namespace {

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

} // namespace orvane::propertylist
