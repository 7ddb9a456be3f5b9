#include "Options.h"

#include "Translation.h"

#include <algorithm>

namespace orvane {

namespace {

/// The rule that a name, perhaps shortened, stands for; null after an error.
const OptionRule *ruleNamed(std::string_view name, std::span<const OptionRule> rules, std::string &error) {
    const OptionRule *found = nullptr;
    for (const OptionRule &rule : rules) {
        if (rule.name == name) {
            return &rule;
        }
        if (name.empty() || rule.mustBeWhole || !rule.name.starts_with(name)) {
            continue;
        }
        if (found != nullptr) {
            error = localized("option '--%1' is ambiguous", {std::string(name)});
            return nullptr;
        }
        found = &rule;
    }
    if (found == nullptr) {
        error = localized("unknown option '%1'", {"--" + std::string(name)});
    }
    return found;
}

/// Takes the long option at `position`, and its value, which may be the next word.
void takeOption(std::span<const std::string> words, std::size_t &position, std::span<const OptionRule> rules, ParsedOptions &result) {
    const std::string_view word = std::string_view(words[position]).substr(2);
    const std::size_t equals = word.find('=');
    const std::string_view name = word.substr(0, equals);
    if (equals != std::string_view::npos && (name == "help" || name == "version")) {
        result.error = localized("option '--%1' takes no value", {std::string(name)});
        return;
    }
    const OptionRule *rule = ruleNamed(name, rules, result.error);
    if (rule == nullptr) {
        return;
    }
    GivenOption option{rule->name, {}};
    if (equals != std::string_view::npos) {
        if (!rule->takesValue) {
            result.error = localized("option '--%1' takes no value", {std::string(rule->name)});
            return;
        }
        option.value = word.substr(equals + 1);
    } else if (rule->takesValue) {
        if (position + 1 == words.size()) {
            result.error = localized("option '--%1' needs a value", {std::string(rule->name)});
            return;
        }
        option.value = words[++position];
    }
    result.options.push_back(std::move(option));
}

} // namespace

bool ParsedOptions::has(std::string_view name) const {
    return std::any_of(options.begin(), options.end(), [&](const GivenOption &option) { return option.name == name; });
}

std::optional<std::string> ParsedOptions::lastValue(std::string_view name) const {
    const auto found = std::find_if(options.rbegin(), options.rend(), [&](const GivenOption &option) { return option.name == name; });
    return found == options.rend() ? std::nullopt : std::optional(found->value);
}

ParsedOptions parseOptions(std::span<const std::string> words, std::span<const OptionRule> rules) {
    ParsedOptions result;
    bool optionsEnded = false;
    for (std::size_t position = 0; position < words.size() && result.error.empty(); ++position) {
        const std::string &word = words[position];
        if (optionsEnded || word.size() < 2 || word.front() != '-') {
            result.operands.push_back(word);
        } else if (word == "--") {
            optionsEnded = true;
        } else if (word[1] == '-') {
            takeOption(words, position, rules, result);
        } else {
            result.error = localized("unknown option '%1'", {word});
        }
    }
    return result;
}

bool asksForJSON(std::span<const std::string> words) {
    constexpr std::string_view Option = "--json";
    const auto end = std::find(words.begin(), words.end(), "--");
    return std::any_of(words.begin(), end, [&](std::string_view word) { return word.starts_with("--j") && Option.starts_with(word); });
}

GeneralOption generalOptionIn(std::span<const std::string> words, std::span<const OptionRule> rules) {
    for (std::size_t position = 0; position < words.size() && words[position] != "--"; ++position) {
        const std::string_view word = words[position];
        if (word == "--help" || word == "-h") {
            return GeneralOption::Help;
        }
        if (word == "--version") {
            return GeneralOption::Version;
        }
        if (word.starts_with("--") && word.find('=') == std::string_view::npos) {
            std::string error;
            const OptionRule *const rule = ruleNamed(word.substr(2), rules, error);
            position += rule != nullptr && rule->takesValue ? 1 : 0;
        }
    }
    return GeneralOption::None;
}

} // namespace orvane
