#include "presets/ORVPresetManager.h"

#include <algorithm>

// A message is shown as a format to which no arguments belong. Every directive gets what an absent argument would give:
// zero, or "(null)". Nothing is read from anywhere.

namespace orvane {

namespace {

/// Wider fields than this are cut, so that a name such as "%999999999d" cannot fill the memory.
constexpr std::size_t WidestField = 1000;

struct Directive {
    bool left = false;
    bool zeros = false;
    bool plus = false;
    bool blank = false;
    bool alternate = false;
    std::size_t width = 0;
    std::optional<std::size_t> precision;
    char conversion = 0;
};

class DirectiveReader {
public:
    DirectiveReader(std::string_view text, std::size_t at) : _text(text), _at(at) {}
    /// Reads what follows a "%"; nothing when the text ends before the conversion.
    std::optional<Directive> read() {
        Directive result;
        _skipPosition();
        while (_readFlag(result)) {
        }
        result.width = _readNumber();
        if (_is('.')) {
            ++_at;
            result.precision = _readNumber();
        }
        while (_at < _text.size() && std::string_view("hlqjztL").find(_text[_at]) != std::string_view::npos) {
            ++_at;
        }
        if (_at == _text.size()) {
            return std::nullopt;
        }
        result.conversion = _text[_at++];
        return result;
    }
    [[nodiscard]] std::size_t position() const { return _at; }

private:
    [[nodiscard]] bool _is(char c) const { return _at < _text.size() && _text[_at] == c; }
    [[nodiscard]] bool _isDigit() const { return _at < _text.size() && _text[_at] >= '0' && _text[_at] <= '9'; }
    /// "2$" and the like name an argument by its position.
    void _skipPosition() {
        const std::size_t start = _at;
        while (_isDigit()) {
            ++_at;
        }
        if (_at > start && _is('$')) {
            ++_at;
        } else {
            _at = start;
        }
    }
    bool _readFlag(Directive &result) {
        if (_at == _text.size()) {
            return false;
        }
        switch (_text[_at]) {
        case '-':
            result.left = true;
            break;
        case '0':
            result.zeros = true;
            break;
        case '+':
            result.plus = true;
            break;
        case ' ':
            result.blank = true;
            break;
        case '#':
            result.alternate = true;
            break;
        case '\'':
            break;
        default:
            return false;
        }
        ++_at;
        return true;
    }
    /// Digits, or "*", whose absent argument is 0.
    std::size_t _readNumber() {
        if (_is('*')) {
            ++_at;
            return 0;
        }
        std::size_t number = 0;
        for (; _isDigit(); ++_at) {
            number = std::min(number * 10 + static_cast<std::size_t>(_text[_at] - '0'), WidestField);
        }
        return number;
    }

    std::string_view _text;
    std::size_t _at;
};

void appendPadded(std::string &result, const Directive &directive, std::string_view sign, std::string_view body, bool zerosAllowed) {
    const std::size_t length = sign.size() + body.size();
    const std::size_t padding = directive.width > length ? directive.width - length : 0;
    const bool zeros = directive.zeros && !directive.left && zerosAllowed;
    result.append(directive.left || zeros ? 0 : padding, ' ');
    result.append(sign);
    result.append(zeros ? padding : 0, '0');
    result.append(body);
    result.append(directive.left ? padding : 0, ' ');
}

std::string_view signOfZero(const Directive &directive) {
    return directive.plus ? "+" : directive.blank ? " " : "";
}

void appendInteger(std::string &result, const Directive &directive) {
    const bool isSigned = std::string_view("diD").find(directive.conversion) != std::string_view::npos;
    const bool octal = directive.conversion == 'o' || directive.conversion == 'O';
    // A precision of 0 makes zero print no digit at all, but "#" keeps the one of an octal number (C17, 7.21.6.1).
    std::string digits(directive.precision.value_or(1), '0');
    if (digits.empty() && octal && directive.alternate) {
        digits.push_back('0');
    }
    appendPadded(result, directive, isSigned ? signOfZero(directive) : "", digits, !directive.precision);
}

void appendReal(std::string &result, const Directive &directive) {
    constexpr std::size_t DefaultPrecision = 6;
    const char kind = static_cast<char>(directive.conversion | 0x20);
    std::size_t decimals = directive.precision.value_or(kind == 'a' ? 0 : DefaultPrecision);
    if (kind == 'g') { // significant digits, and without "#" no trailing zeros
        decimals = directive.alternate ? std::max<std::size_t>(decimals, 1) - 1 : 0;
    }
    const bool upper = directive.conversion != kind;
    std::string body = kind == 'a' ? (upper ? "0X0" : "0x0") : "0";
    if (decimals > 0 || directive.alternate) {
        body += '.' + std::string(decimals, '0');
    }
    if (kind == 'e') {
        body += upper ? "E+00" : "e+00";
    } else if (kind == 'a') {
        body += upper ? "P+0" : "p+0";
    }
    appendPadded(result, directive, signOfZero(directive), body, true);
}

/// Appends what the directive gives; false when there is no such directive.
bool appendDirective(std::string &result, const Directive &directive) {
    switch (directive.conversion) {
    case '%':
        result.push_back('%');
        return true;
    case 'd':
    case 'i':
    case 'D':
    case 'u':
    case 'U':
    case 'x':
    case 'X':
    case 'o':
    case 'O':
        appendInteger(result, directive);
        return true;
    case 'f':
    case 'F':
    case 'e':
    case 'E':
    case 'g':
    case 'G':
    case 'a':
    case 'A':
        appendReal(result, directive);
        return true;
    case '@':
    case 's':
    case 'S':
        appendPadded(result, directive, "", std::string_view("(null)").substr(0, directive.precision.value_or(WidestField)), false);
        return true;
    case 'p':
        appendPadded(result, directive, "", "0x0", false);
        return true;
    case 'c': // the character 0: nothing to see
    case 'C':
    case 'n': // writes nothing, and stores nothing either
        return true;
    default:
        return false;
    }
}

} // namespace

std::string ORVMessageOfFormat(std::string_view format) {
    std::string result;
    result.reserve(format.size());
    for (std::size_t at = 0; at < format.size();) {
        const std::size_t percent = std::min(format.find('%', at), format.size());
        result.append(format.substr(at, percent - at));
        at = percent;
        if (at == format.size()) {
            break;
        }
        DirectiveReader reader(format, at + 1);
        const auto directive = reader.read();
        if (directive && appendDirective(result, *directive)) {
            at = reader.position();
        } else {
            result.push_back('%');
            ++at;
        }
    }
    return result;
}

} // namespace orvane
