#include "presets/ORVNameTemplate.h"

#include "ports/UTF16.h"
#include "presets/ORVUTF16.h"

#include <utility>

namespace orvane {

namespace {

constexpr char Escape = '\\';

bool isEscaped(std::string_view text, std::size_t position) {
    return position > 0 && text[position - 1] == Escape;
}

void replaceAll(std::string &text, std::string_view pattern, std::string_view replacement) {
    std::size_t found = text.find(pattern);
    if (found == std::string::npos) {
        return;
    }
    std::string result;
    std::size_t done = 0;
    for (; found != std::string::npos; found = text.find(pattern, done)) {
        result.append(text, done, found - done).append(replacement);
        done = found + pattern.size();
    }
    text = result.append(text, done, std::string::npos);
}

/// One scan on its way through a text.
class Scanner {
public:
    Scanner(std::string_view text, std::string_view openTag, std::string_view closeTag)
        : _text(text), _openTag(openTag), _closeTag(closeTag), _openStep(ORVCharacterLength(openTag, 0)),
          _closeStep(ORVCharacterLength(closeTag, 0)) {}

    ORVTemplateScan run() {
        while (_next < _text.size()) {
            const std::size_t open = _text.find(_openTag, _next);
            if (open == std::string_view::npos) {
                break;
            }
            if (isEscaped(_text, open)) {
                _next = open + _openStep;
            } else if (!_closeKey(open)) {
                break;
            }
        }
        return std::move(_scan);
    }

private:
    /// Looks for the end of the key that opens at `open`. False when the scan is over with that: no closing delimiter is
    /// left, or the text ends just behind the last one looked at; starting over would then find the same key for ever.
    bool _closeKey(std::size_t open) {
        const std::size_t begin = open + _openStep;
        std::size_t from = begin;
        _scan.ending = ORVScanEnding::OpenBraceAtEnd;
        while (from < _text.size()) {
            const std::size_t close = _text.find(_closeTag, from);
            if (close == std::string_view::npos) {
                _scan.ending = ORVScanEnding::Ends;
                _scan.hasUnclosedKey = true;
                return false;
            }
            _next = from = close + _closeStep;
            if (isEscaped(_text, close)) {
                _scan.ending = ORVScanEnding::EscapedCloseAtEnd;
                continue;
            }
            std::string name = ORVUnescapeBraces(_text.substr(begin, close - begin), _openTag, _closeTag);
            if (!name.empty()) {
                _scan.keys.push_back({open, _next, std::move(name)});
            }
            _scan.ending = ORVScanEnding::Ends;
            return true;
        }
        return false;
    }

    std::string_view _text;
    std::string_view _openTag;
    std::string_view _closeTag;
    std::size_t _openStep;
    std::size_t _closeStep;
    std::size_t _next = 0;
    ORVTemplateScan _scan;
};

} // namespace

ORVTemplateScan ORVScanTemplate(std::string_view text, std::string_view openTag, std::string_view closeTag) {
    if (openTag.empty() || closeTag.empty() || text.find(openTag) == std::string_view::npos) {
        return {};
    }
    // A scan needs room for both delimiters and one character between them; shorter texts are not looked at.
    if (ORVUTF16Length(text) < ORVUTF16Length(openTag) + ORVUTF16Length(closeTag) + 1) {
        return {};
    }
    return Scanner(text, openTag, closeTag).run();
}

std::string ORVUnescapeBraces(std::string_view text, std::string_view openTag, std::string_view closeTag) {
    std::string result(text);
    if (result.find(Escape) != std::string::npos) {
        replaceAll(result, Escape + std::string(openTag), openTag);
        replaceAll(result, Escape + std::string(closeTag), closeTag);
    }
    return result;
}

std::string ORVEscapeBraces(std::string_view text) {
    std::string result;
    for (const char character : text) {
        if (character == '{' || character == '}') {
            result += '\\';
        }
        result += character;
    }
    return result;
}

std::string ORVFillTemplate(std::string_view text, std::span<const PromptValueRow> rows) {
    if (text.empty() || rows.empty()) {
        return std::string(text);
    }
    std::string result = ORVUnescapeBraces(text);
    std::string pattern;
    for (const PromptValueRow &row : rows) {
        if (result.find(ORVOpenTag) == std::string::npos) {
            break; // nothing is left that any row could replace
        }
        pattern.assign(ORVOpenTag).append(row.key).append(ORVCloseTag);
        replaceAll(result, pattern, row.value);
    }
    return result;
}

} // namespace orvane
