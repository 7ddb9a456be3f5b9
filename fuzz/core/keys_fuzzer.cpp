// Keys: the scan and the substitution agree with slow versions that work on UTF-16 units, one at a time.

#include "core/Fuzz.h"
#include "core/FuzzDesk.h"
#include "ports/UTF16.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using orvane::ORVPresetManager;
using orvane::PromptValueRow;
using orvane::fuzz::manager;
using orvane::fuzz::require;
using Units = std::u16string;

Units withoutEscapes(Units text) {
    for (const char16_t brace : {u'{', u'}'}) {
        for (std::size_t i = 0; i + 1 < text.size(); ++i) {
            if (text[i] == u'\\' && text[i + 1] == brace) {
                text.erase(i, 1);
            }
        }
    }
    return text;
}

/// Position of the next brace from `at` that has no backslash before it; the text's length when there is none left, and
/// nothing when the text holds no further brace at all.
std::optional<std::size_t> nextBrace(const Units &text, char16_t brace, std::size_t at) {
    while (at < text.size()) {
        const std::size_t found = text.find(brace, at);
        if (found == Units::npos) {
            return std::nullopt;
        }
        if (found == 0 || text[found - 1] != u'\\') {
            return found;
        }
        at = found + 1;
    }
    return text.size();
}

/// Nothing for a scan that never ends.
std::optional<std::vector<Units>> slowKeys(const Units &text) {
    std::vector<Units> keys;
    std::size_t at = 0;
    while (text.size() >= 3 && at < text.size()) {
        const auto open = nextBrace(text, u'{', at);
        if (!open || *open == text.size()) {
            return keys;
        }
        const auto close = nextBrace(text, u'}', *open + 1);
        if (!close) {
            return keys;
        }
        if (*close == text.size()) {
            return std::nullopt;
        }
        if (Units key = withoutEscapes(text.substr(*open + 1, *close - *open - 1)); !key.empty()) {
            keys.push_back(std::move(key));
        }
        at = *close + 1;
    }
    return keys;
}

Units slowReplace(const Units &text, const std::vector<std::pair<Units, Units>> &rows) {
    if (text.empty() || rows.empty()) {
        return text;
    }
    Units result = withoutEscapes(text);
    for (const auto &[key, value] : rows) {
        const Units pattern = u"{" + key + u"}";
        Units next;
        for (std::size_t i = 0; i < result.size();) {
            const bool here = result.compare(i, pattern.size(), pattern) == 0;
            next += here ? value : result.substr(i, 1);
            i += here ? pattern.size() : 1;
        }
        result = std::move(next);
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);
    if (size > 4096 || text.find('\xED') != std::string::npos) { // the slow versions are quadratic; surrogate halves have no way back
        return 0;
    }
    const Units units = orvane::ORVUTF16OfText(text);
    const auto expected = slowKeys(units);
    require(ORVPresetManager::scanEnds(text) == expected.has_value(), "the scan ends when the slow one does");
    if (!expected) {
        return 0;
    }
    const std::vector<std::string> keys = manager().findBracketedKeys(text);
    require(keys.size() == expected->size(), "as many keys as the slow scan finds");
    std::vector<PromptValueRow> rows;
    std::vector<std::pair<Units, Units>> slowRows;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        require(orvane::ORVUTF16OfText(keys[i]) == (*expected)[i], "the keys of the slow scan");
        const std::string value = i % 3 == 0 ? "{" + keys[0] + "}" : i % 3 == 1 ? "v" : text.substr(0, 16);
        rows.push_back({keys[i], value});
        slowRows.emplace_back((*expected)[i], orvane::ORVUTF16OfText(value));
    }
    if (text.size() * rows.size() < 20000) {
        const std::string replaced = manager().replaceBracketedKeysReplace(text, rows);
        // As bytes: where a text is no UTF-8, what two pieces mean can change when they meet.
        require(replaced == orvane::ORVTextOfUTF16(slowReplace(units, slowRows)), "the text of the slow replacement");
    }
    return 0;
}
