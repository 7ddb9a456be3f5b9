#include "platform/propertylist/PropertyListFiles.h"
#include "platform/propertylist/PropertyListScalars.h"
#include "platform/propertylist/PropertyListText.h"

#include <algorithm>
#include <vector>

namespace orvane {

namespace {

using namespace propertylist;

/// Deeper elements are not indented further, lest a list of a million levels take a million million tabs.
constexpr std::size_t DeepestIndent = 64;
/// Apple's tools break data into lines of 76 columns, counting a tab as 8.
constexpr std::size_t DataColumns = 76;
constexpr std::size_t TabColumns = 8;

constexpr std::string_view Heading = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                     "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                     "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                     "<plist version=\"1.0\">\n";
constexpr std::string_view Ending = "</plist>\n";

/// Writes values with a stack of its own, so that depth costs memory only.
class Writer {
public:
    Writer(std::string &out, bool asciiOnly, std::string *why) : _out(out), _asciiOnly(asciiOnly), _why(why) {}

    bool write(const PropertyListValue &root, std::size_t depth) {
        _depth = depth;
        if (!_begin(root)) {
            return false;
        }
        while (!_open.empty()) {
            Frame &frame = _open.back();
            const auto entries = frame.container.dictionary();
            const auto items = frame.container.array();
            if (frame.next == entries.size() + items.size()) {
                _end();
                continue;
            }
            const std::size_t which = frame.next++;
            if (entries.empty()) {
                _line();
                if (!_begin(items[which])) {
                    return false;
                }
            } else if (!_writeEntry(entries[which])) {
                return false;
            }
        }
        return true;
    }

private:
    struct Frame {
        PropertyListValue container;
        std::size_t next = 0;
    };

    bool _fail(const char *reason) {
        if (_why != nullptr) {
            *_why = reason;
        }
        return false;
    }

    void _line() {
        _out.push_back('\n');
        _out.append(std::min(_depth, DeepestIndent), '\t');
    }

    void _element(std::string_view name, std::string_view text) {
        _out.append("<").append(name).append(">").append(text).append("</").append(name).append(">");
    }

    bool _writeText(std::string_view name, std::string_view text) {
        if (text.find('\0') != std::string_view::npos) {
            return _fail("XML cannot hold a text with a NUL");
        }
        if (!isUTF8(text)) {
            return _fail("a text is no UTF-8");
        }
        _element(name, escapedPropertyListText(text, _asciiOnly));
        return true;
    }

    bool _writeEntry(const PropertyListEntry &entry) {
        _line();
        if (!_writeText("key", entry.key)) {
            return false;
        }
        _line();
        return _begin(entry.value);
    }

    bool _begin(const PropertyListValue &value) {
        switch (value.type()) {
        case PropertyListType::String:
            return _writeText("string", value.string());
        case PropertyListType::Boolean:
            _out.append(value.boolean() ? "<true/>" : "<false/>");
            return true;
        case PropertyListType::Integer:
            _element("integer", textOfInteger(value));
            return true;
        case PropertyListType::Real:
            _element("real", textOfReal(value.real()));
            return true;
        case PropertyListType::Date:
            return _writeDate(value);
        case PropertyListType::Data:
            _writeData(value.data());
            return true;
        case PropertyListType::UID:
            return _writeUID(value);
        case PropertyListType::Array:
        case PropertyListType::Dictionary:
            _beginContainer(value);
            return true;
        case PropertyListType::Set:
            return _fail("XML has no sets");
        case PropertyListType::Null:
            break;
        }
        return _fail("XML has no null value");
    }

    bool _writeDate(const PropertyListValue &value) {
        const std::optional<std::string> text = textOfDate(value.real());
        if (!text) {
            return _fail("a date is out of range");
        }
        _element("date", *text);
        return true;
    }

    void _writeData(std::string_view bytes) {
        const std::size_t tabs = std::min(_depth, DeepestIndent);
        const std::size_t indented = TabColumns * tabs;
        const std::size_t width = indented + 4 > DataColumns ? 4 : (DataColumns - indented) / 4 * 4;
        const std::string indent(tabs, '\t');
        _out.append("<data>\n");
        appendBase64(_out, bytes, width, indent);
        _out.append(indent).append("</data>");
    }

    bool _writeUID(const PropertyListValue &value) {
        if (value.integer() < 0) {
            return _fail("a UID is too large for XML");
        }
        _out.append("<dict>");
        ++_depth;
        _line();
        _element("key", "CF$UID");
        _line();
        _element("integer", textOfInteger(value));
        --_depth;
        _line();
        _out.append("</dict>");
        return true;
    }

    void _beginContainer(const PropertyListValue &value) {
        const std::string_view name = value.isDictionary() ? "dict" : "array";
        const bool empty = value.array().empty() && value.dictionary().empty();
        _out.append("<").append(name).append(empty ? "/>" : ">");
        if (!empty) {
            _open.push_back({value, 0});
            ++_depth;
        }
    }

    void _end() {
        const bool dictionary = _open.back().container.isDictionary();
        _open.pop_back();
        --_depth;
        _line();
        _out.append(dictionary ? "</dict>" : "</array>");
    }

    std::string &_out;
    bool _asciiOnly;
    std::string *_why;
    std::size_t _depth = 0;
    std::vector<Frame> _open;
};

void appendReference(std::string &out, char32_t code) {
    out.append("&#").append(std::to_string(static_cast<std::uint32_t>(code))).append(";");
}

} // namespace

std::string escapedPropertyListText(std::string_view text, bool asciiOnly) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const char c = text.front();
        const Character character = asciiOnly ? firstCharacter(text, false) : Character{};
        if (character.length > 1) {
            appendReference(out, character.code);
            text.remove_prefix(character.length);
            continue;
        }
        text.remove_prefix(1);
        switch (c) {
        case '&':
            out.append("&amp;");
            break;
        case '<':
            out.append("&lt;");
            break;
        case '>':
            out.append("&gt;");
            break;
        case '\r':
            out.append("&#13;"); // as it is, it would be read back as a line feed
            break;
        default:
            out.push_back(c);
        }
    }
    return out;
}

std::optional<std::string> writeXMLPropertyList(const PropertyListValue &root, std::string *why) {
    std::string out(Heading);
    if (!Writer(out, false, why).write(root, 0)) {
        return std::nullopt;
    }
    out.push_back('\n');
    out.append(Ending);
    return out;
}

std::optional<std::string> writeXMLPropertyListFragment(const PropertyListValue &value, std::size_t depth, bool asciiOnly,
                                                        std::string *why) {
    std::string out;
    if (!Writer(out, asciiOnly, why).write(value, depth)) {
        return std::nullopt;
    }
    return out;
}

} // namespace orvane
