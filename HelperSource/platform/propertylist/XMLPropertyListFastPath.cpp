#include "platform/propertylist/PropertyListScan.h"
#include "platform/propertylist/XMLPropertyListReader.h"

#include <cstring>

// The fast way through the plain middle of a file: tags without blanks or attributes, text of plain ASCII, all of it
// complete in the window. It decides nothing: whatever it does not know stays unread, for the other functions to read or
// to refuse.

namespace orvane::propertylist {

namespace {

template <std::size_t Size> bool startsWith(const char *place, const char (&text)[Size]) noexcept {
    return std::memcmp(place, text, Size - 1) == 0;
}

} // namespace

/// Reads plain elements below the root until something else comes, or the container that is open at the start of the call
/// is closed down to the root's own level.
void XMLPropertyListReader::_readPlainElements() {
    constexpr std::size_t rootLevel = 1;
    while (_containers.size() > rootLevel) {
        const char *const place = skipBlanks(_input->cursor);
        if (*place != '<') {
            return;
        }
        _input->cursor = place;
        Container &container = _containers.back();
        const bool mayHaveValue = !container.dictionary || container.key != nullptr;
        switch (place[1]) {
        case 'k':
            if (!container.dictionary || container.key != nullptr || !_readPlainKey(container)) {
                return;
            }
            break;
        case '/':
            if (!_closePlainContainer(container)) {
                return;
            }
            break;
        default:
            if (!mayHaveValue || !_readPlainValue(container)) {
                return;
            }
            break;
        }
    }
}

bool XMLPropertyListReader::_readPlainKey(Container &container) {
    const char *const text = _input->cursor + 5;
    if (!startsWith(_input->cursor, "<key>")) {
        return false;
    }
    // Dictionaries of one kind have their keys in one order: the key that followed the last one will likely follow again.
    if (Key *const likely = _lastKey == nullptr ? nullptr : _lastKey->following) {
        const std::size_t size = likely->text.size();
        if (size <= static_cast<std::size_t>(_input->end - text) && likely->text == std::string_view(text, size) &&
            startsWith(text + size, "</key>")) {
            container.key = _lastKey = likely;
            _input->cursor = text + size + 6;
            return true;
        }
    }
    const char *const behind = skipPlain(text);
    if (!startsWith(behind, "</key>")) {
        return false;
    }
    container.key = _keys.intern({text, static_cast<std::size_t>(behind - text)});
    if (_lastKey != nullptr) {
        _lastKey->following = container.key;
    }
    _lastKey = container.key;
    _input->cursor = behind + 6;
    return true;
}

bool XMLPropertyListReader::_readPlainValue(Container &container) {
    const char *const place = _input->cursor;
    if (startsWith(place, "<string>")) {
        const char *const text = place + 8;
        const char *const behind = skipPlain(text);
        if (!startsWith(behind, "</string>")) {
            return false;
        }
        const std::string_view stored = _texts.store({text, static_cast<std::size_t>(behind - text)});
        _pending.push_back({container.key, PropertyListValue::viewOfString(stored)});
        _input->cursor = behind + 9;
    } else if (startsWith(place, "<true/>")) {
        _pending.push_back({container.key, PropertyListValue::ofBoolean(true)});
        _input->cursor = place + 7;
    } else if (startsWith(place, "<false/>")) {
        _pending.push_back({container.key, PropertyListValue::ofBoolean(false)});
        _input->cursor = place + 8;
    } else if (startsWith(place, "<dict>") || startsWith(place, "<array>")) {
        const bool dictionary = place[1] == 'd';
        _containers.push_back({dictionary, nullptr, _pending.size()});
        _input->cursor = place + (dictionary ? 6 : 7);
        return true;
    } else {
        return false;
    }
    container.key = nullptr;
    return true;
}

bool XMLPropertyListReader::_closePlainContainer(const Container &container) {
    const char *const place = _input->cursor;
    if (container.key != nullptr || !(container.dictionary ? startsWith(place, "</dict>") : startsWith(place, "</array>"))) {
        return false;
    }
    _input->cursor = place + (container.dictionary ? 7 : 8);
    return _finishContainer();
}

} // namespace orvane::propertylist
