#include "presets/ORVPresetManager.h"

#include "presets/ORVPropertyListReading.h"
#include "presets/ORVUTF16.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <unordered_set>

// Bracketed variable keys: finding them in a text and in a tree, and replacing them.
//
// Rules count in UTF-16 units and texts are UTF-8. For one-unit delimiters the two agree on every position that matters,
// since no byte of a longer character is ever an ASCII character; only the length of the shortest text that is scanned
// at all is counted in units.

namespace orvane {

namespace {

constexpr std::string_view OpenTag = "{";
constexpr std::string_view CloseTag = "}";
constexpr char Escape = '\\';

bool isEscaped(std::string_view text, std::size_t at) {
    return at > 0 && text[at - 1] == Escape;
}

void replaceAll(std::string &text, std::string_view pattern, std::string_view replacement) {
    if (pattern.empty()) {
        return;
    }
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
    text = std::move(result.append(text, done));
}

/// Removes the backslash from every escaped delimiter, opening ones first.
std::string unescaped(std::string_view text, std::string_view openTag, std::string_view closeTag) {
    std::string result(text);
    if (result.find(Escape) != std::string::npos) {
        replaceAll(result, Escape + std::string(openTag), openTag);
        replaceAll(result, Escape + std::string(closeTag), closeTag);
    }
    return result;
}

/// Where the key opened at `open` ends, or where the search for its end stops.
struct KeyEnd {
    enum class Kind { Closed, Unclosed, RangeEmpty } kind;
    std::size_t at = 0; ///< of the closing delimiter
};

KeyEnd findEnd(std::string_view text, std::size_t start, std::string_view closeTag, std::size_t closeStep) {
    while (start < text.size()) {
        const std::size_t close = text.find(closeTag, start);
        if (close == std::string_view::npos) {
            return {KeyEnd::Kind::Unclosed};
        }
        if (!isEscaped(text, close)) {
            return {KeyEnd::Kind::Closed, close};
        }
        start = close + closeStep;
    }
    return {KeyEnd::Kind::RangeEmpty};
}

/// Appends the keys of `text` to `keys`. False for a text whose scan never ends: the search for the end of a key ran out
/// of text just behind a delimiter, and starting over finds the same opening delimiter again.
bool scanKeys(std::string_view text, std::string_view openTag, std::string_view closeTag, std::vector<std::string> &keys) {
    if (openTag.empty() || closeTag.empty() || ORVUTF16Length(text) < ORVUTF16Length(openTag) + ORVUTF16Length(closeTag) + 1) {
        return true;
    }
    // A key starts one position after its opening delimiter, however long that is; and so does every further search.
    const std::size_t openStep = ORVCharacterLength(openTag, 0);
    const std::size_t closeStep = ORVCharacterLength(closeTag, 0);
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t open = text.find(openTag, start);
        if (open == std::string_view::npos) {
            return true;
        }
        if (isEscaped(text, open)) {
            start = open + openStep;
            continue;
        }
        const KeyEnd end = findEnd(text, open + openStep, closeTag, closeStep);
        if (end.kind == KeyEnd::Kind::Unclosed) {
            return true;
        }
        if (end.kind == KeyEnd::Kind::RangeEmpty) {
            return false;
        }
        std::string key = unescaped(text.substr(open + openStep, end.at - open - openStep), openTag, closeTag);
        if (!key.empty()) {
            keys.push_back(std::move(key));
        }
        start = end.at + closeStep;
    }
    return true;
}

/// Names in order of appearance, each once; asks a list while it is short and an index from then on.
class NameList {
public:
    explicit NameList(std::vector<std::string> &names) : _names(names) {}
    void add(std::string name) {
        if (_contains(name)) {
            return;
        }
        _names.push_back(std::move(name));
        if (!_index.empty()) {
            _index.insert(_names.back());
        }
    }

private:
    static constexpr std::size_t LongestSearchedList = 32;
    [[nodiscard]] bool _contains(const std::string &name) {
        if (_names.size() <= LongestSearchedList) {
            return std::find(_names.begin(), _names.end(), name) != _names.end();
        }
        if (_index.empty()) {
            _index.insert(_names.begin(), _names.end());
        }
        return _index.contains(name);
    }
    std::vector<std::string> &_names;
    std::unordered_set<std::string> _index;
};

} // namespace

std::vector<std::string> ORVPresetManager::findKeysEnclosedByCloseTag(std::string_view text, std::string_view openTag,
                                                                      std::string_view closeTag) const {
    std::vector<std::string> keys;
    while (!scanKeys(text, openTag, closeTag, keys)) {
        // Starting over at the same delimiter, for ever. Kept deliberately; it costs time, but no processor.
        keys.clear();
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
    return keys;
}

std::vector<std::string> ORVPresetManager::findBracketedKeys(std::string_view text) const {
    return findKeysEnclosedByCloseTag(text, OpenTag, CloseTag);
}

bool ORVPresetManager::scanEnds(std::string_view text) {
    std::vector<std::string> keys;
    return scanKeys(text, OpenTag, CloseTag, keys);
}

std::string ORVPresetManager::replaceBracketedKeysReplace(std::string_view text, std::span<const PromptValueRow> rows) const {
    if (text.empty() || rows.empty()) {
        return std::string(text);
    }
    std::string result = unescaped(text, OpenTag, CloseTag);
    std::string pattern;
    for (const PromptValueRow &row : rows) {
        if (result.find(OpenTag) == std::string::npos) {
            break; // nothing is left that any row could replace
        }
        pattern.assign(OpenTag).append(row.key).append(CloseTag);
        replaceAll(result, pattern, row.value);
    }
    return result;
}

void ORVPresetManager::scanHierarchyForVariableNamesVariableNames(const PropertyListValue &node,
                                                                  std::vector<std::string> &variableNames) const {
    NameList names(variableNames);
    std::string storage;
    // Depth first without recursion: what is still to be visited, the next one last.
    std::vector<std::span<const PropertyListValue>> pending{{&node, 1}};
    while (!pending.empty()) {
        if (pending.back().empty()) {
            pending.pop_back();
            continue;
        }
        const PropertyListValue &current = pending.back().front();
        pending.back() = pending.back().subspan(1);
        const std::string_view filename = ORVTextView(current.find("filename"), storage);
        if (filename.find(OpenTag) != std::string_view::npos) {
            for (std::string &key : findBracketedKeys(cleanFilesystemEntities(filename))) {
                names.add(std::move(key));
            }
        }
        if (ORVBoolValue(current.find("isFolder"))) {
            if (const PropertyListValue *children = current.find("children"); children != nullptr && children->isArray()) {
                pending.push_back(children->array());
            }
        }
    }
}

} // namespace orvane
