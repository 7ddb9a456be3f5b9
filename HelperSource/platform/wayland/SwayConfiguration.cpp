#include "platform/wayland/SwayConfiguration.h"

#include "ports/HotKeyEvents.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <map>
#include <utility>
#include <vector>

#include <xkbcommon/xkbcommon.h>

namespace orvane {

namespace {

using Words = std::vector<std::string>;
using Variables = std::map<std::string, std::string>;

bool isSame(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    });
}

Words wordsOf(std::string_view line) {
    Words words;
    std::string word;
    for (const char character : line) {
        if (character == ' ' || character == '\t' || character == '\r') {
            if (!word.empty()) {
                words.push_back(std::exchange(word, {}));
            }
        } else if (character != '"') {
            word += character;
        }
    }
    if (!word.empty()) {
        words.push_back(word);
    }
    return words;
}

/// Puts variables' values in, the longest name first as sway does: $mod2 before $mod.
std::string withVariables(std::string text, const Variables &variables) {
    std::vector<std::string> names;
    for (const auto &[name, value] : variables) {
        names.push_back(name);
    }
    std::sort(names.begin(), names.end(), [](const auto &left, const auto &right) { return left.size() > right.size(); });
    for (const std::string &name : names) {
        const std::string &value = variables.at(name);
        for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + value.size())) {
            text.replace(at, name.size(), value);
        }
    }
    return text;
}

/// Adds the modifier of that name; false when it is none.
bool addModifier(std::string_view name, SwayModifiers &modifiers) {
    if (isSame(name, "Shift")) {
        modifiers.hasShift = true;
    } else if (isSame(name, "Ctrl") || isSame(name, "Control")) {
        modifiers.hasControl = true;
    } else if (isSame(name, "Mod1") || isSame(name, "Alt")) {
        modifiers.hasAlt = true;
    } else if (isSame(name, "Mod4") || isSame(name, "Super") || isSame(name, "Logo")) {
        modifiers.hasSuper = true;
    } else if (isSame(name, "Lock") || isSame(name, "Mod2") || isSame(name, "Mod3") || isSame(name, "Mod5")) {
        modifiers.hasOther = true;
    } else {
        return false;
    }
    return true;
}

struct Wanted {
    SwayModifiers modifiers;
    std::uint32_t keyCode;
    std::optional<std::uint32_t> keysym;
};

/// Whether the text between the command's options and what it is bound to is the combination.
bool isCombination(std::string_view text, bool isByCode, const Wanted &wanted) {
    SwayModifiers modifiers;
    std::string key;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('+'), text.size());
        const std::string_view part = text.substr(0, end);
        if (!part.empty() && !addModifier(part, modifiers)) {
            if (!key.empty()) {
                return false;
            }
            key = part;
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    if (!(modifiers == wanted.modifiers) || key.empty()) {
        return false;
    }
    if (isByCode) {
        std::uint32_t code = 0;
        const auto [rest, error] = std::from_chars(key.data(), key.data() + key.size(), code);
        return error == std::errc() && rest == key.data() + key.size() && code == wanted.keyCode;
    }
    const xkb_keysym_t symbol = xkb_keysym_from_name(key.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    return wanted.keysym && symbol != XKB_KEY_NoSymbol && xkb_keysym_to_lower(symbol) == xkb_keysym_to_lower(*wanted.keysym);
}

bool binds(const Words &words, bool isByCode, const Wanted &wanted) {
    std::size_t at = 1;
    for (; at < words.size() && words[at].starts_with("--"); ++at) {
        if (words[at] == "--release" || words[at].starts_with("--input-device") || words[at] == "--exclude-titlebar") {
            return false;
        }
    }
    return at < words.size() && isCombination(words[at], isByCode, wanted);
}

} // namespace

std::optional<SwayModifiers> SwayModifiersOfCarbon(std::uint32_t modifiers) {
    if ((modifiers & ~(EventModifierCommand | EventModifierShift | EventModifierOption | EventModifierControl)) != 0) {
        return std::nullopt;
    }
    SwayModifiers named;
    named.hasSuper = (modifiers & EventModifierCommand) != 0;
    named.hasShift = (modifiers & EventModifierShift) != 0;
    named.hasAlt = (modifiers & EventModifierOption) != 0;
    named.hasControl = (modifiers & EventModifierControl) != 0;
    return named;
}

std::string SwayNameOf(const SwayModifiers &modifiers) {
    std::string name;
    name += modifiers.hasSuper ? "Mod4+" : "";
    name += modifiers.hasControl ? "Ctrl+" : "";
    name += modifiers.hasAlt ? "Mod1+" : "";
    name += modifiers.hasShift ? "Shift+" : "";
    return name;
}

bool SwayConfigurationBinds(std::string_view text, const SwayModifiers &modifiers, std::uint32_t keyCode,
                            std::optional<std::uint32_t> keysym) {
    const Wanted wanted{modifiers, keyCode, keysym};
    Variables variables;
    Words blocks; // commands before the braces that are open
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        Words words = wordsOf(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (words.empty() || words.front().starts_with('#')) {
            continue;
        }
        if (words.front() == "}") {
            if (!blocks.empty()) {
                blocks.pop_back();
            }
            continue;
        }
        if (words.front() == "set" && words.size() >= 3) {
            variables[words[1]] = withVariables(words[2], variables);
            continue;
        }
        for (std::string &word : words) {
            word = withVariables(word, variables);
        }
        if (words.back() == "{") {
            blocks.push_back(words.front());
            continue;
        }
        // Inside "bindsym {" the lines are what follows the command elsewhere.
        if (!blocks.empty() && (blocks.back() == "bindsym" || blocks.back() == "bindcode")) {
            words.insert(words.begin(), blocks.back());
        }
        const bool isInMode = std::find(blocks.begin(), blocks.end(), "mode") != blocks.end();
        if (!isInMode && (words.front() == "bindsym" || words.front() == "bindcode") && binds(words, words.front() == "bindcode", wanted)) {
            return true;
        }
    }
    return false;
}

} // namespace orvane
