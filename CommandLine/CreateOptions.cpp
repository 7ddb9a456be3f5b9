#include "CreateOptions.h"

#include "Options.h"
#include "Translation.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

namespace orvane {

namespace {

constexpr std::array<OptionRule, 6> Rules = {
    {{"in", true}, {"set", true}, {"no-input", false}, {"no-open", false}, {"dry-run", false}, {"json", false}}};

/// Values given for one variable, and how many of its rows have been served.
struct ValuesOfName {
    std::vector<std::string_view> values;
    std::size_t served = 0;
};
using ValuesByName = std::map<std::string_view, ValuesOfName>;

/// Length of the name in an assignment, the longest that fits; npos when no row has such a name.
std::size_t lengthOfKnownName(std::string_view assignment, const ValuesByName &names) {
    std::size_t equals = assignment.rfind('=');
    while (equals != std::string_view::npos && !names.contains(assignment.substr(0, equals))) {
        equals = assignment.substr(0, equals).rfind('=');
    }
    return equals;
}

} // namespace

std::span<const OptionRule> createCommandOptions() {
    return Rules;
}

CreateOptions CreateOptions::parse(const CommandArguments &arguments, std::string &error) {
    ParsedOptions parsed = parseOptions(arguments, Rules);
    CreateOptions result;
    result.in = parsed.lastValue("in");
    result.noInput = parsed.has("no-input");
    result.noOpen = parsed.has("no-open");
    result.dryRun = parsed.has("dry-run");
    result.json = parsed.has("json");
    error = parsed.error;
    for (GivenOption &option : parsed.options) {
        if (option.name != "set") {
            continue;
        }
        if (error.empty() && option.value.find('=', 1) == std::string::npos) {
            error = localized("option '--set' needs NAME=VALUE, not '%1'", {option.value});
        }
        result.assignments.push_back(std::move(option.value));
    }
    if (error.empty() && parsed.operands.size() != 1) {
        error = parsed.operands.empty() ? localized("which preset?")
                                        : localized("one preset at a time, not '%1' as well", {parsed.operands[1]});
    }
    if (!parsed.operands.empty()) {
        result.preset = std::move(parsed.operands.front());
    }
    result.json = result.json || (!error.empty() && asksForJSON(arguments)); // whatever the words behind a wrong one mean
    return result;
}

AssignmentResult distributeAssignments(std::span<const std::string> assignments, std::span<PromptValueRow> rows) {
    AssignmentResult result;
    ValuesByName names;
    for (const PromptValueRow &row : rows) {
        names[row.key];
    }
    for (const std::string_view assignment : assignments) {
        const std::size_t length = lengthOfKnownName(assignment, names);
        if (length != std::string_view::npos) {
            names[assignment.substr(0, length)].values.push_back(assignment.substr(length + 1));
            continue;
        }
        std::string name(assignment.substr(0, assignment.find('=')));
        if (std::find(result.unknown.begin(), result.unknown.end(), name) == result.unknown.end()) {
            result.unknown.push_back(std::move(name));
        }
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        ValuesOfName &given = names[rows[i].key];
        if (given.values.empty()) {
            result.missing.push_back(i);
        } else {
            rows[i].value = given.values[std::min(given.served++, given.values.size() - 1)];
        }
    }
    if (assignments.size() > 1) { // a single one is never too many
        for (const auto &[name, given] : names) {
            if (given.served < given.values.size()) {
                result.surplus.emplace_back(name);
            }
        }
    }
    return result;
}

} // namespace orvane
