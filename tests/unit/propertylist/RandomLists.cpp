#include "unit/propertylist/RandomLists.h"

#include <array>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {
namespace {

using namespace std::string_view_literals;

class Maker {
public:
    Maker(std::mt19937_64 &random, const RandomListKinds &kinds) : _random(random), _kinds(kinds) {}

    PropertyList make() {
        const PropertyListValue root = _container(0);
        return _builder.finish(root);
    }

private:
    std::size_t _below(std::size_t limit) { return static_cast<std::size_t>(_random() % limit); }

    std::string _text() {
        constexpr std::array<std::string_view, 16> pieces{
            "a"sv,  "Z"sv,           "{Key}"sv, " "sv,  "\n"sv,       "\r"sv,           "\t"sv,
            "&"sv,  "<"sv,           "]]>"sv,   "\""sv, "\xC3\xA9"sv, "\xE6\x9D\xB1"sv, "\xF0\x9F\x8E\xAC"sv,
            "\0"sv, "\xED\xA0\x80"sv};
        std::string text;
        for (std::size_t left = _below(10); left > 0; --left) {
            text += pieces[_below(pieces.size() - (_kinds.binaryOnly ? 0 : 2))];
        }
        return text;
    }

    PropertyListValue _integer() {
        constexpr std::array<std::int64_t, 9> values{0,
                                                     1,
                                                     -1,
                                                     255,
                                                     256,
                                                     65536,
                                                     std::int64_t{1} << 32U,
                                                     std::numeric_limits<std::int64_t>::max(),
                                                     std::numeric_limits<std::int64_t>::min()};
        if (_kinds.largeUnsigned && _below(8) == 0) {
            return PropertyListValue::ofUnsigned(std::numeric_limits<std::uint64_t>::max() - _below(1000));
        }
        return PropertyListValue::ofInteger(values[_below(values.size())]);
    }

    PropertyListValue _real() {
        const double infinite = std::numeric_limits<double>::infinity();
        const std::array<double, 9> values{0.0, -0.0, 0.1, 1e300, 5e-324, -123.456, 1.0 / 3, infinite, -infinite};
        return PropertyListValue::ofReal(values[_below(values.size() - (_kinds.infinities ? 0 : 2))]);
    }

    PropertyListValue _scalar() {
        switch (_below(_kinds.binaryOnly ? 9 : _kinds.uids ? 7 : 6)) {
        case 0:
            return PropertyListValue::ofBoolean(_below(2) == 0);
        case 1:
            return _integer();
        case 2:
            return _real();
        case 3:
            return PropertyListValue::ofDate(static_cast<double>(_below(2'000'000'000)) - 1e9 + (_kinds.binaryOnly ? 0.25 : 0.0));
        case 4: {
            std::string bytes(_below(80), '\0');
            for (char &byte : bytes) {
                byte = static_cast<char>(static_cast<unsigned char>(_below(256)));
            }
            return _builder.data(bytes);
        }
        case 6:
            return PropertyListValue::ofUID(_below(70000));
        case 7:
            return {};
        case 8:
            return PropertyListValue::ofReal(static_cast<double>(0.1F), true);
        default:
            return _builder.string(_text());
        }
    }

    PropertyListValue _value(std::size_t depth) {
        if (depth < 6 && _below(3) == 0) {
            return _container(depth);
        }
        if (!_made.empty() && _below(12) == 0) {
            return _made[_below(_made.size())];
        }
        return _scalar();
    }

    PropertyListValue _container(std::size_t depth) {
        const std::size_t count = _below(depth == 0 ? 40 : 8);
        std::vector<PropertyListValue> items;
        std::vector<std::string> keys;
        std::vector<PropertyListEntry> entries;
        for (std::size_t i = 0; i < count; ++i) {
            items.push_back(_value(depth + 1));
            keys.push_back(_text() + std::to_string(i));
        }
        for (std::size_t i = 0; i < count; ++i) {
            entries.push_back({keys[i], items[i]});
        }
        const std::size_t kind = _below(_kinds.binaryOnly ? 5 : 4);
        PropertyListValue made = kind < 2 ? _builder.array(items) : _builder.dictionary(entries);
        if (kind == 4) {
            made = PropertyListValue::viewOfSet(_builder.array(items).array());
        }
        _made.push_back(made);
        return made;
    }

    std::mt19937_64 &_random;
    RandomListKinds _kinds;
    PropertyListBuilder _builder;
    std::vector<PropertyListValue> _made;
};

} // namespace

PropertyList randomList(std::mt19937_64 &random, const RandomListKinds &kinds) {
    return Maker(random, kinds).make();
}

} // namespace orvane
