#include "platform/propertylist/PropertyListFiles.h"
#include "platform/propertylist/PropertyListText.h"

#include <bit>
#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

// The objects are numbered breadth first: the list of objects is the queue as well. A container's references are noted
// while its children get their numbers, in the order in which the containers stand in that list.

namespace orvane {

namespace {

using namespace propertylist;

constexpr std::size_t TrailerSize = 32;

/// Scalars are the same when type, flags and bits are; containers when they are one and the same storage.
struct Identity {
    PropertyListType type = PropertyListType::Null;
    std::uint8_t flags = 0;
    std::uint64_t bits = 0;
    std::size_t size = 0;
    bool operator==(const Identity &) const = default;
};

struct IdentityHash {
    std::size_t operator()(const Identity &identity) const noexcept {
        const auto kind = static_cast<std::uint64_t>(identity.type) * 4 + identity.flags;
        std::uint64_t hash = (identity.bits + kind) * 0x9E3779B97F4A7C15U;
        hash = (hash ^ (hash >> 32U) ^ identity.size) * 0x9E3779B97F4A7C15U;
        return static_cast<std::size_t>(hash ^ (hash >> 29U));
    }
};

class Writer {
public:
    std::optional<std::string> write(const PropertyListValue &root, std::string *why) {
        _number(root);
        for (std::size_t i = 0; i < _objects.size(); ++i) { // NOLINT(modernize-loop-convert): there are more with each
            _numberChildren(PropertyListValue(_objects[i]));
        }
        _referenceSize = _widthOf(_objects.size() - 1);
        _out = "bplist00";
        for (const PropertyListValue &object : _objects) {
            _offsets.push_back(_out.size());
            if (!_writeObject(object)) {
                if (why != nullptr) {
                    *why = "a text is no UTF-8";
                }
                return std::nullopt;
            }
        }
        _writeTrailer();
        return std::move(_out);
    }

private:
    static std::size_t _widthOf(std::uint64_t number) noexcept {
        return number < 0x100 ? 1 : number < 0x10000 ? 2 : number < 0x100000000U ? 4 : 8;
    }

    std::size_t _number(const PropertyListValue &value) {
        const std::size_t fresh = _objects.size();
        const bool text = value.isString();
        if (text || value.type() == PropertyListType::Data) {
            const auto [place, isNew] = (text ? _strings : _data).emplace(text ? value.string() : value.data(), fresh);
            return _noted(value, place->second, isNew);
        }
        Identity identity{value.type(), 0, std::bit_cast<std::uint64_t>(value.storage()), value.array().size() + value.dictionary().size()};
        switch (value.type()) {
        case PropertyListType::Null:
        case PropertyListType::Boolean:
            identity.bits = value.boolean() ? 1 : 0;
            break;
        case PropertyListType::Integer:
        case PropertyListType::UID:
            identity.bits = std::bit_cast<std::uint64_t>(value.integer());
            identity.flags = value.isUnsigned() ? 1 : 0;
            break;
        case PropertyListType::Real:
        case PropertyListType::Date:
            identity.bits = std::bit_cast<std::uint64_t>(value.real());
            identity.flags = value.isSinglePrecision() ? 1 : 0;
            break;
        default:
            break;
        }
        const auto [place, isNew] = _others.emplace(identity, fresh);
        return _noted(value, place->second, isNew);
    }

    std::size_t _noted(const PropertyListValue &value, std::size_t number, bool isNew) {
        if (isNew) {
            _objects.push_back(value);
        }
        return number;
    }

    /// By value: the list of objects grows meanwhile.
    void _numberChildren(const PropertyListValue container) {
        for (const PropertyListEntry &entry : container.dictionary()) {
            _references.push_back(_number(PropertyListValue::viewOfString(entry.key)));
        }
        for (const PropertyListEntry &entry : container.dictionary()) {
            _references.push_back(_number(entry.value));
        }
        for (const PropertyListValue &item : container.array()) {
            _references.push_back(_number(item));
        }
    }

    void _put(std::uint64_t number, std::size_t width) {
        for (std::size_t i = width; i > 0; --i) {
            _out.push_back(static_cast<char>(static_cast<unsigned char>(number >> (8 * (i - 1)))));
        }
    }

    void _putMarker(unsigned type, std::uint64_t low) { _put((type << 4U) | low, 1); }

    void _putSized(unsigned type, std::uint64_t count) {
        _putMarker(type, count < 0xF ? count : 0xF);
        if (count >= 0xF) {
            _putInteger(count);
        }
    }

    void _putInteger(std::uint64_t number) {
        const std::size_t width = _widthOf(number);
        _putMarker(0x1, static_cast<unsigned>(std::countr_zero(width)));
        _put(number, width);
    }

    bool _writeObject(const PropertyListValue &object) {
        switch (object.type()) {
        case PropertyListType::Null:
            _put(0x00, 1);
            break;
        case PropertyListType::Boolean:
            _put(object.boolean() ? 0x09 : 0x08, 1);
            break;
        case PropertyListType::Integer:
            _writeInteger(object);
            break;
        case PropertyListType::Real:
            _writeReal(object);
            break;
        case PropertyListType::Date:
            _put(0x33, 1);
            _put(std::bit_cast<std::uint64_t>(object.real()), 8);
            break;
        case PropertyListType::UID: {
            const auto number = std::bit_cast<std::uint64_t>(object.integer());
            _putMarker(0x8, _widthOf(number) - 1);
            _put(number, _widthOf(number));
            break;
        }
        case PropertyListType::Data:
            _putSized(0x4, object.data().size());
            _out.append(object.data());
            break;
        case PropertyListType::String:
            return _writeString(object.string());
        case PropertyListType::Array:
        case PropertyListType::Set:
            _putSized(object.type() == PropertyListType::Set ? 0xC : 0xA, object.array().size());
            _writeReferences(object.array().size());
            break;
        case PropertyListType::Dictionary:
            _putSized(0xD, object.dictionary().size());
            _writeReferences(2 * object.dictionary().size());
            break;
        }
        return true;
    }

    /// Below 0 in 8 bytes, since fewer are read as unsigned; what only fits an unsigned 8 in 16.
    void _writeInteger(const PropertyListValue &object) {
        const auto number = std::bit_cast<std::uint64_t>(object.integer());
        if (!object.isUnsigned()) {
            _putInteger(number);
            return;
        }
        _putMarker(0x1, 4);
        _put(0, 8);
        _put(number, 8);
    }

    void _writeReal(const PropertyListValue &object) {
        if (object.isSinglePrecision()) {
            _put(0x22, 1);
            _put(std::bit_cast<std::uint32_t>(static_cast<float>(object.real())), 4);
            return;
        }
        _put(0x23, 1);
        _put(std::bit_cast<std::uint64_t>(object.real()), 8);
    }

    bool _writeString(std::string_view text) {
        if (isASCII(text)) {
            _putSized(0x5, text.size());
            _out.append(text);
            return true;
        }
        std::u16string units;
        while (!text.empty()) {
            const Character character = firstCharacter(text, true);
            if (character.length == 0) {
                return false;
            }
            if (character.code >= 0x10000) {
                units.push_back(static_cast<char16_t>(0xD800 + ((character.code - 0x10000) >> 10U)));
                units.push_back(static_cast<char16_t>(0xDC00 + ((character.code - 0x10000) & 0x3FFU)));
            } else {
                units.push_back(static_cast<char16_t>(character.code));
            }
            text.remove_prefix(character.length);
        }
        _putSized(0x6, units.size());
        for (const char16_t unit : units) {
            _put(unit, 2);
        }
        return true;
    }

    void _writeReferences(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            _put(_references[_nextReference++], _referenceSize);
        }
    }

    void _writeTrailer() {
        const std::uint64_t table = _out.size();
        const std::size_t offsetSize = _widthOf(table);
        _out.reserve(_out.size() + _offsets.size() * offsetSize + TrailerSize);
        for (const std::uint64_t offset : _offsets) {
            _put(offset, offsetSize);
        }
        _put(0, 6);
        _put(offsetSize, 1);
        _put(_referenceSize, 1);
        _put(_objects.size(), 8);
        _put(0, 8); // the root is the first object
        _put(table, 8);
    }

    std::vector<PropertyListValue> _objects;
    std::unordered_map<std::string_view, std::size_t> _strings;
    std::unordered_map<std::string_view, std::size_t> _data;
    std::unordered_map<Identity, std::size_t, IdentityHash> _others;
    std::vector<std::size_t> _references;
    std::size_t _nextReference = 0;
    std::size_t _referenceSize = 1;
    std::vector<std::uint64_t> _offsets;
    std::string _out;
};

} // namespace

std::optional<std::string> writeBinaryPropertyList(const PropertyListValue &root, std::string *why) {
    return Writer().write(root, why);
}

} // namespace orvane
