#include "platform/propertylist/BinaryPropertyListReader.h"

#include "platform/propertylist/PropertyListTables.h"
#include "platform/propertylist/PropertyListText.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

// The binary form (Apple, CFBinaryPList.c): the magic "bplist00", objects, a table of their offsets, and a trailer of 32
// bytes that says how wide the table's entries and the references between objects are. An object starts with a byte whose
// upper half is the type and whose lower half is the size, or 15 when an integer with the size follows.
//
// Objects are reached from the root only, each made once and then shared. A file of a few hundred bytes can share so much
// that, walked as a tree, it never ends; a document is refused when that tree has more than 2^26 values. Objects that
// overlap in the file are another way to make much out of little: no more bytes may be used than the file has.

namespace orvane::propertylist {

namespace {

constexpr std::size_t MagicSize = 8;
constexpr std::size_t TrailerSize = 32;
constexpr std::uint64_t LargestTree = std::uint64_t{1} << 26U;

enum Marker : unsigned { Simple = 0x0, Integer = 0x1, Real = 0x2, Date = 0x3, Data = 0x4, ASCIIString = 0x5, UTF16String = 0x6, UID = 0x8 };
enum ContainerMarker : unsigned { Array = 0xA, Set = 0xC, Dictionary = 0xD };

class Reader {
public:
    Reader(std::string_view bytes, std::string &why)
        : _bytes(bytes), _why(why), _arena(std::make_shared<PropertyListArena>()), _keys(*_arena), _texts(*_arena), _maker(*_arena) {}

    std::optional<PropertyList> read() {
        if (!_readTrailer() || !_readFrom(_top)) {
            return std::nullopt;
        }
        return PropertyList(_arena, _values[_top]);
    }

private:
    enum class State : std::uint8_t { Unread, Open, Done };
    struct Object {
        unsigned type = 0;
        unsigned low = 0;
        std::uint64_t count = 0;  ///< of elements, bytes or units
        std::size_t contents = 0; ///< offset behind marker and size
    };
    struct Frame {
        std::uint64_t index = 0;
        Object object;
        std::uint64_t references = 0; ///< of keys and values
        std::uint64_t next = 0;
    };

    bool _fail(std::string reason) {
        if (_why.empty()) {
            _why = std::move(reason);
        }
        return false;
    }

    /// A big-endian number of up to 8 bytes; the place has been checked.
    [[nodiscard]] std::uint64_t _number(std::size_t at, std::size_t size) const noexcept {
        std::uint64_t number = 0;
        for (std::size_t i = 0; i < size; ++i) {
            number = (number << 8U) | static_cast<unsigned char>(_bytes[at + i]);
        }
        return number;
    }

    /// Whether `count` units of `size` bytes at `at` lie within the objects' part of the file; counts them as used.
    bool _claim(std::size_t at, std::uint64_t count, std::size_t size) {
        const std::size_t left = at > _objectsEnd ? 0 : _objectsEnd - at;
        if (at > _objectsEnd || count > left / size) {
            return _fail("an object reaches beyond its place in the file");
        }
        _used += count * size;
        return _used <= _bytes.size() || _fail("objects overlap");
    }

    bool _readTrailer() {
        if (_bytes.size() < MagicSize + TrailerSize + 2 || _bytes.substr(0, MagicSize) != "bplist00") {
            return _fail("too short for a binary property list, or of another version");
        }
        const std::size_t trailer = _bytes.size() - TrailerSize;
        _offsetSize = _number(trailer + 6, 1);
        _referenceSize = _number(trailer + 7, 1);
        const std::uint64_t count = _number(trailer + 8, 8);
        _top = _number(trailer + 16, 8);
        const std::uint64_t table = _number(trailer + 24, 8);
        if (_offsetSize < 1 || _offsetSize > 8 || _referenceSize < 1 || _referenceSize > 8) {
            return _fail("the trailer's sizes are out of range");
        }
        if (table <= MagicSize || table >= trailer || count > (trailer - table) / _offsetSize || count > table - MagicSize) {
            return _fail("the table of offsets reaches beyond the file");
        }
        if (table + count * _offsetSize != trailer) { // as in a file that was written behind another one
            return _fail("something stands between the table of offsets and the trailer");
        }
        if (_top >= count) {
            return _fail("the root is no object of the file");
        }
        _objectsEnd = static_cast<std::size_t>(table);
        _values.resize(static_cast<std::size_t>(count));
        _sizes.resize(static_cast<std::size_t>(count));
        _states.resize(static_cast<std::size_t>(count), State::Unread);
        return true;
    }

    /// Reads an object and everything below it, with a stack of our own.
    bool _readFrom(std::uint64_t root) {
        if (!_start(root)) {
            return false;
        }
        while (!_frames.empty()) {
            Frame &frame = _frames.back();
            if (frame.next == frame.references) {
                if (!_finish()) {
                    return false;
                }
                continue;
            }
            const std::uint64_t child = _reference(frame, frame.next++);
            if (child >= _values.size()) {
                return _fail("a reference to an object that is not there");
            }
            const State state = _states[static_cast<std::size_t>(child)];
            if (state == State::Open) {
                return _fail("a container that holds itself");
            }
            if (state == State::Unread && !_start(child)) {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] std::uint64_t _reference(const Frame &frame, std::uint64_t which) const noexcept {
        return _number(frame.object.contents + static_cast<std::size_t>(which) * _referenceSize, _referenceSize);
    }

    /// Makes an object without children at once, opens a container.
    bool _start(std::uint64_t index) {
        const auto at = static_cast<std::size_t>(index);
        Object object;
        if (!_readHead(at, object)) {
            return false;
        }
        if (object.type == Array || object.type == Set || object.type == Dictionary) {
            const std::uint64_t references = object.type == Dictionary ? object.count * 2 : object.count;
            if (object.count > std::numeric_limits<std::uint32_t>::max() || !_claim(object.contents, references, _referenceSize)) {
                return _fail("a container has too many elements");
            }
            _states[at] = State::Open;
            _frames.push_back({index, object, references, 0});
            return true;
        }
        _states[at] = State::Done;
        _sizes[at] = 1;
        return _readScalar(object, _values[at]);
    }

    bool _readHead(std::size_t index, Object &object) {
        const std::size_t table = _objectsEnd + index * _offsetSize;
        const std::uint64_t offset = _number(table, _offsetSize);
        if (offset < MagicSize || offset >= _objectsEnd) {
            return _fail("an object's offset is out of range");
        }
        const auto at = static_cast<std::size_t>(offset);
        const std::uint64_t marker = _number(at, 1);
        object.type = static_cast<unsigned>(marker >> 4U);
        object.low = static_cast<unsigned>(marker & 0xFU);
        object.count = object.low;
        object.contents = at + 1;
        const bool sized = object.type == Data || object.type == ASCIIString || object.type == UTF16String || object.type >= Array;
        return !sized || object.low != 0xF || _readCount(object);
    }

    /// The size that follows the marker as an integer object.
    bool _readCount(Object &object) {
        if (!_claim(object.contents, 1, 1)) {
            return false;
        }
        const std::uint64_t marker = _number(object.contents, 1);
        const std::size_t width = std::size_t{1} << (marker & 0xFU);
        if (marker >> 4U != Integer || width > 8 || !_claim(object.contents + 1, 1, width)) {
            return _fail("an object's size is no integer");
        }
        object.count = _number(object.contents + 1, width);
        object.contents += 1 + width;
        return true;
    }

    bool _readScalar(const Object &object, PropertyListValue &value) {
        switch (object.type) {
        case Simple:
            return _readSimple(object, value);
        case Integer:
            return _readInteger(object, value);
        case Real:
        case Date:
            return _readReal(object, value);
        case Data:
        case ASCIIString:
        case UTF16String:
            return _readBytes(object, value);
        case UID: {
            const std::size_t width = object.low + 1;
            if (width > 8 || !_claim(object.contents, 1, width)) {
                return _fail("a UID is too large");
            }
            value = PropertyListValue::ofUID(_number(object.contents, width));
            return true;
        }
        default:
            return _fail("an object of an unknown type");
        }
    }

    bool _readSimple(const Object &object, PropertyListValue &value) {
        constexpr unsigned null = 0x0;
        constexpr unsigned no = 0x8;
        constexpr unsigned yes = 0x9;
        if (object.low == no || object.low == yes) {
            value = PropertyListValue::ofBoolean(object.low == yes);
        }
        return object.low == null || object.low == no || object.low == yes || _fail("an object of an unknown type");
    }

    /// Integers of 1, 2 and 4 bytes are unsigned, those of 8 signed; those of 16 hold what only fits an unsigned 8.
    bool _readInteger(const Object &object, PropertyListValue &value) {
        const std::size_t width = std::size_t{1} << object.low;
        if (width > 16 || !_claim(object.contents, 1, width)) {
            return _fail("an integer of more than 16 bytes");
        }
        if (width <= 8) {
            value = PropertyListValue::ofInteger(std::bit_cast<std::int64_t>(_number(object.contents, width)));
            return true;
        }
        const std::uint64_t high = _number(object.contents, 8);
        const std::uint64_t low = _number(object.contents + 8, 8);
        const bool negative = std::bit_cast<std::int64_t>(low) < 0;
        if (high == 0) {
            value = PropertyListValue::ofUnsigned(low);
            return true;
        }
        value = PropertyListValue::ofInteger(std::bit_cast<std::int64_t>(low));
        return (high == std::numeric_limits<std::uint64_t>::max() && negative) || _fail("an integer of more than 64 bits");
    }

    bool _readReal(const Object &object, PropertyListValue &value) {
        constexpr unsigned ofFour = 2;
        constexpr unsigned ofEight = 3;
        const bool single = object.low == ofFour && object.type == Real;
        if (!single && object.low != ofEight) {
            return _fail("a number of an unknown size");
        }
        if (!_claim(object.contents, 1, single ? 4 : 8)) {
            return false;
        }
        const std::uint64_t bits = _number(object.contents, single ? 4 : 8);
        const double number =
            single ? static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits))) : std::bit_cast<double>(bits);
        value = object.type == Date ? PropertyListValue::ofDate(number) : PropertyListValue::ofReal(number, single);
        return true;
    }

    bool _readBytes(const Object &object, PropertyListValue &value) {
        if (object.count > std::numeric_limits<std::uint32_t>::max() / 3 ||
            !_claim(object.contents, object.count, object.type == UTF16String ? 2 : 1)) {
            return _fail("a text or data is too long");
        }
        const std::string_view bytes = _bytes.substr(object.contents, static_cast<std::size_t>(object.count));
        if (object.type == Data) {
            value = PropertyListValue::viewOfData(_arena->copyText(bytes));
            return true;
        }
        if (object.type == UTF16String) {
            _decodeUTF16(object);
            value = PropertyListValue::viewOfString(_texts.store(_scratch));
            return true;
        }
        value = PropertyListValue::viewOfString(_texts.store(bytes));
        return isASCII(bytes) || _fail("a text of ASCII has other bytes");
    }

    void _decodeUTF16(const Object &object) {
        _scratch.clear();
        for (std::size_t i = 0; i < object.count; ++i) {
            auto code = static_cast<char32_t>(_number(object.contents + 2 * i, 2));
            if (isHighSurrogate(code) && i + 1 < object.count) {
                const auto low = static_cast<char32_t>(_number(object.contents + 2 * i + 2, 2));
                if (isLowSurrogate(low)) {
                    code = joinedSurrogates(code, low);
                    ++i;
                }
            }
            appendCharacter(_scratch, code);
        }
    }

    /// Makes the value of the innermost open container, whose children are all made.
    bool _finish() {
        const Frame frame = _frames.back();
        _frames.pop_back();
        const bool dictionary = frame.object.type == Dictionary;
        const auto count = static_cast<std::size_t>(frame.object.count);
        std::uint64_t size = 1;
        _pending.clear();
        for (std::size_t i = 0; i < count; ++i) {
            const auto child = static_cast<std::size_t>(_reference(frame, dictionary ? count + i : i));
            Key *key = nullptr;
            if (dictionary) {
                const PropertyListValue &name = _values[static_cast<std::size_t>(_reference(frame, i))];
                if (!name.isString()) {
                    return _fail("a key that is no text");
                }
                key = _keys.intern(name.string());
            }
            _pending.push_back({key, _values[child]});
            size += _sizes[child];
        }
        if (size > LargestTree) {
            return _fail("shared objects stand for too many values");
        }
        const auto index = static_cast<std::size_t>(frame.index);
        _states[index] = State::Done;
        _sizes[index] = static_cast<std::uint32_t>(size);
        _values[index] = dictionary ? _maker.dictionary(_pending.data(), count) : _maker.array(_pending.data(), count);
        if (frame.object.type == Set) {
            _values[index] = PropertyListValue::viewOfSet(_values[index].array());
        }
        return true;
    }

    std::string_view _bytes;
    std::string &_why;
    std::shared_ptr<PropertyListArena> _arena;
    KeyTable _keys;
    TextStore _texts;
    ContainerMaker _maker;
    std::size_t _offsetSize = 0;
    std::size_t _referenceSize = 0;
    std::size_t _objectsEnd = 0;
    std::uint64_t _top = 0;
    std::uint64_t _used = 0;
    std::vector<PropertyListValue> _values;
    std::vector<std::uint32_t> _sizes; ///< of each object as a tree, in values
    std::vector<State> _states;
    std::vector<Frame> _frames;
    std::vector<PendingValue> _pending;
    std::string _scratch;
};

} // namespace

std::optional<PropertyList> readBinaryPropertyList(std::string_view bytes, std::string &why) {
    return Reader(bytes, why).read();
}

} // namespace orvane::propertylist
