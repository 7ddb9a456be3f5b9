#include "presets/ORVNameTemplate.h"

#include "presets/ORVUTF16.h"

namespace orvane {

namespace {

/// A scan needs room for both braces and one character between them; shorter texts, in UTF-16 units, are not looked at.
constexpr std::size_t ShortestKey = 3;

bool isEscaped(std::string_view text, std::size_t position) {
    return position > 0 && text[position - 1] == '\\';
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

/// Looks for the closing brace of the key that opens at `open`. False when the scan is over with that.
bool closeKey(std::string_view text, std::size_t open, ORVTemplateScan &scan, std::size_t &next) {
    std::size_t from = open + 1;
    scan.ending = ORVScanEnding::OpenBraceAtEnd;
    while (from < text.size()) {
        const std::size_t close = text.find('}', from);
        if (close == std::string_view::npos) {
            scan.ending = ORVScanEnding::Ends;
            scan.hasUnclosedKey = true;
            return false;
        }
        next = from = close + 1;
        if (isEscaped(text, close)) {
            scan.ending = ORVScanEnding::EscapedCloseAtEnd;
            continue;
        }
        std::string name = ORVUnescapeBraces(text.substr(open + 1, close - open - 1));
        if (!name.empty()) {
            scan.keys.push_back({open, next, std::move(name)});
        }
        scan.ending = ORVScanEnding::Ends;
        return true;
    }
    return false;
}

} // namespace

ORVTemplateScan ORVScanTemplate(std::string_view text) {
    ORVTemplateScan scan;
    if (text.size() < ShortestKey || (text.size() < ShortestKey * 3 && ORVUTF16Length(text) < ShortestKey)) {
        return scan;
    }
    std::size_t next = 0;
    while (next < text.size()) {
        const std::size_t open = text.find('{', next);
        if (open == std::string_view::npos) {
            break;
        }
        if (isEscaped(text, open)) {
            next = open + 1;
        } else if (!closeKey(text, open, scan, next)) {
            break;
        }
    }
    return scan;
}

std::string ORVUnescapeBraces(std::string_view text) {
    std::string result(text);
    replaceAll(result, "\\{", "{");
    replaceAll(result, "\\}", "}");
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
    for (const PromptValueRow &row : rows) {
        replaceAll(result, "{" + row.key + "}", row.value);
    }
    return result;
}

} // namespace orvane
