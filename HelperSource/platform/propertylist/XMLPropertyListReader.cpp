#include "platform/propertylist/XMLPropertyListReader.h"

#include "platform/propertylist/PropertyListScalars.h"
#include "platform/propertylist/PropertyListScan.h"
#include "platform/propertylist/PropertyListText.h"

#include <cstring>
#include <limits>
#include <utility>

namespace orvane::propertylist {

namespace {

constexpr std::size_t LargestCount = std::numeric_limits<std::uint32_t>::max();
constexpr std::string_view UIDKey = "CF$UID";

} // namespace

XMLPropertyListReader::XMLPropertyListReader(XMLPropertyListInput &input)
    : _input(&input), _arena(std::make_shared<PropertyListArena>()), _keys(*_arena), _texts(*_arena), _maker(*_arena) {}

std::optional<PropertyList> XMLPropertyListReader::read(PropertyListReport &report) {
    _wantsSites = report.wantsSites;
    if (!_readDocument()) {
        if (_input->error() != 0) {
            report.why = std::string("reading failed: ") + std::strerror(_input->error());
            return std::nullopt;
        }
        const std::optional<std::uint64_t> line = _input->lineAt(_errorOffset);
        report.why = (line ? "line " + std::to_string(*line) : "byte " + std::to_string(_errorOffset)) + ": " + _why;
        return std::nullopt;
    }
    if (_wantsSites && _root.isDictionary()) {
        report.sites = std::move(_sites);
        report.sites.encoding = _encoding;
    }
    return PropertyList(_arena, _root);
}

bool XMLPropertyListReader::_fail(std::string reason) {
    if (_why.empty()) {
        _why = std::move(reason);
        _errorOffset = _input->offsetOf(_input->cursor);
    }
    return false;
}

bool XMLPropertyListReader::_readDocument() {
    if (!_readDeclaration() || !_skipBlanks()) {
        return false;
    }
    if (_input->cursor != _input->end && *_input->cursor != '<') {
        return _fail("this is no property list");
    }
    if (!_skipMisc()) {
        return false;
    }
    if (_startsWith("<!DOCTYPE")) {
        if (!_readDoctype() || !_skipMisc()) {
            return false;
        }
    }
    if (*_input->cursor != '<') {
        return _fail("the file ends before any value");
    }
    const char behindName = _startsWith("<plist") ? _input->cursor[6] : '\0';
    const bool plist = isBlank(behindName) || behindName == '>' || behindName == '/';
    if (plist) {
        Tag tag;
        if (!_readTag(tag)) {
            return false;
        }
        if (tag.empty) {
            return _fail("the property list is empty");
        }
    }
    return _readRoot() && _readEpilogue(plist);
}

bool XMLPropertyListReader::_readRoot() {
    if (!_skipMisc()) {
        return false;
    }
    if (*_input->cursor != '<') {
        return _fail("the file ends before any value");
    }
    if (_input->cursor[1] == '/') {
        return _fail("the property list is empty");
    }
    return _readStart() && (_containers.empty() || _readContents());
}

bool XMLPropertyListReader::_readEpilogue(bool plist) {
    if (!_skipMisc()) {
        return false;
    }
    if (plist) {
        if (_input->cursor == _input->end) {
            return _fail("the file ends inside <plist>");
        }
        if (_input->cursor[1] != '/') {
            return _fail("a second value beside the root");
        }
        if (!_readClosingTag(Element::Plist) || !_skipMisc()) {
            return false;
        }
    }
    return (_input->cursor == _input->end && _input->error() == 0) || _fail("something follows the end of the property list");
}

/// Reads to the end of the outermost open container.
bool XMLPropertyListReader::_readContents() {
    do {
        _readPlainElements();
        if (!_skipMisc()) {
            return false;
        }
        if (_input->cursor == _input->end) {
            return _fail(_containers.back().dictionary ? "the file ends inside <dict>" : "the file ends inside <array>");
        }
        if (!(_input->cursor[1] == '/' ? _closeContainer() : _readStart())) {
            return false;
        }
    } while (!_containers.empty());
    return true;
}

/// Reads one start tag, and of anything but a container the whole element.
bool XMLPropertyListReader::_readStart() {
    if (_wantsSites && _containers.size() <= 1) {
        _tagBegin = _input->offsetOf(_input->cursor);
    }
    Tag tag;
    if (!_readTag(tag)) {
        return false;
    }
    switch (tag.element) {
    case Element::Key:
        return _readKey(tag);
    case Element::Dictionary:
    case Element::Array:
        return _mayHaveValue() && _openContainer(tag);
    case Element::None:
    case Element::Plist:
        return _fail("<plist> inside the property list");
    default:
        return _mayHaveValue() && _readScalar(tag);
    }
}

bool XMLPropertyListReader::_mayHaveValue() {
    if (_containers.empty()) {
        return true;
    }
    const Container &container = _containers.back();
    if (container.dictionary && container.key == nullptr) {
        return _fail("a value without a key");
    }
    return !_isFull(_pending.size() - container.firstPending);
}

bool XMLPropertyListReader::_isFull(std::size_t count) {
    return count >= LargestCount && !_fail("too many elements in one container");
}

bool XMLPropertyListReader::_openContainer(const Tag &tag) {
    const bool dictionary = tag.element == Element::Dictionary;
    _noteValueBegin();
    if (_containers.empty()) {
        _sites.rootIsEmptyTag = tag.empty;
        _sites.rootContents = _input->offsetOf(_input->cursor) - (tag.empty ? 2 : 0);
    }
    if (tag.empty) {
        return _add(dictionary ? PropertyListValue::viewOfDictionary({}) : PropertyListValue::viewOfArray({}));
    }
    _containers.push_back({dictionary, nullptr, _pending.size()});
    return true;
}

bool XMLPropertyListReader::_closeContainer() {
    const Container &container = _containers.back();
    if (!_readClosingTag(container.dictionary ? Element::Dictionary : Element::Array)) {
        return false;
    }
    if (container.key != nullptr) {
        return _fail("the key \"" + legible(container.key->text) + "\" has no value");
    }
    return _finishContainer();
}

/// Makes the value of the innermost container, whose end has been read.
bool XMLPropertyListReader::_finishContainer() {
    const Container container = _containers.back();
    const std::size_t count = _pending.size() - container.firstPending;
    const PendingValue *first = _pending.data() + container.firstPending;
    const PropertyListValue value = container.dictionary ? _closedDictionary(container) : _maker.array(first, count);
    _pending.resize(container.firstPending);
    _containers.pop_back();
    return _add(value);
}

PropertyListValue XMLPropertyListReader::_closedDictionary(const Container &container) {
    const PropertyListValue value = _maker.dictionary(_pending.data() + container.firstPending, _pending.size() - container.firstPending);
    const auto entries = value.dictionary();
    if (entries.size() == 1 && entries[0].key == UIDKey) {
        const PropertyListValue &number = entries[0].value;
        if (number.type() == PropertyListType::Integer && !number.isUnsigned() && number.integer() >= 0) {
            return PropertyListValue::ofUID(static_cast<std::uint64_t>(number.integer()));
        }
    }
    return value;
}

bool XMLPropertyListReader::_readKey(const Tag &tag) {
    if (_containers.empty() || !_containers.back().dictionary) {
        return _fail("<key> outside <dict>");
    }
    Container &container = _containers.back();
    if (container.key != nullptr) {
        return _fail("the key \"" + legible(container.key->text) + "\" has no value");
    }
    std::string_view text;
    if (!tag.empty && !_readText(Element::Key, text)) {
        return false;
    }
    if (text.size() > LargestCount) {
        return _fail("a key is too long");
    }
    container.key = _keys.intern(text);
    if (_wantsSites && _containers.size() == 1) {
        _sites.entries.push_back({container.key->text, _tagBegin, 0, 0});
    }
    return true;
}

bool XMLPropertyListReader::_readScalar(const Tag &tag) {
    _noteValueBegin();
    std::string_view text;
    if (!tag.empty && !_readText(tag.element, text)) {
        return false;
    }
    PropertyListValue value;
    return _scalarFromText(tag.element, text, value) && _add(value);
}

bool XMLPropertyListReader::_scalarFromText(Element element, std::string_view text, PropertyListValue &value) {
    std::optional<PropertyListValue> result;
    switch (element) {
    case Element::String:
        if (text.size() > LargestCount) {
            return _fail("a string is too long");
        }
        value = PropertyListValue::viewOfString(_texts.store(text));
        return true;
    case Element::True:
    case Element::False:
        value = PropertyListValue::ofBoolean(element == Element::True);
        return text.find_first_not_of(" \t\n") == std::string_view::npos || _fail("a boolean value with text");
    case Element::Data: {
        std::string bytes;
        if (!appendDecodedBase64(bytes, text) || bytes.size() > LargestCount) {
            return _fail("the text of <data> is no base64");
        }
        value = PropertyListValue::viewOfData(_arena->copyText(bytes));
        return true;
    }
    case Element::Integer:
        result = integerFromText(text);
        break;
    case Element::Real:
        result = realFromText(text);
        break;
    default:
        result = dateFromText(text);
        break;
    }
    if (!result) {
        const char *const what = element == Element::Integer ? "integer" : element == Element::Real ? "number" : "date";
        return _fail("\"" + legible(text) + "\" is no " + what + (element == Element::Integer ? " of 64 bits" : ""));
    }
    value = *result;
    return true;
}

/// Puts a finished value where it belongs. The cursor stands behind it.
bool XMLPropertyListReader::_add(const PropertyListValue &value) {
    if (_containers.empty()) {
        _root = value;
        _sites.rootEnd = _input->offsetOf(_input->cursor);
        return true;
    }
    Container &container = _containers.back();
    _pending.push_back({container.key, value});
    container.key = nullptr;
    _noteValueEnd();
    return true;
}

void XMLPropertyListReader::_noteValueBegin() {
    if (_wantsSites && _containers.size() == 1 && !_sites.entries.empty()) {
        _sites.entries.back().valueBegin = _tagBegin;
    }
}

void XMLPropertyListReader::_noteValueEnd() {
    if (_wantsSites && _containers.size() == 1 && !_sites.entries.empty()) {
        _sites.entries.back().valueEnd = _input->offsetOf(_input->cursor);
    }
}

} // namespace orvane::propertylist
