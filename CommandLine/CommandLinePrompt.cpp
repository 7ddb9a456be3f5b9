#include "CommandLinePrompt.h"

#include "Command.h"
#include "CreateOptions.h"
#include "Translation.h"

#include <algorithm>

namespace orvane {

namespace {

std::string joined(std::span<const std::string> names) {
    std::string text;
    for (const std::string &name : names) {
        text.append(text.empty() ? "" : ", ").append(localized("'%1'", {printable(name)}));
    }
    return text;
}

/// Names of the rows, each once, in order.
std::vector<std::string> namesOf(std::span<const PromptValueRow> rows) {
    std::vector<std::string> names;
    for (const PromptValueRow &row : rows) {
        if (std::find(names.begin(), names.end(), row.key) == names.end()) {
            names.push_back(row.key);
        }
    }
    return names;
}

std::string unknownNames(const std::vector<std::string> &unknown, std::span<const PromptValueRow> rows) {
    if (rows.empty()) {
        return localized("this preset has no variable %1; it has none", {joined(unknown)});
    }
    return localized("this preset has no variable %1; it has %2", {joined(unknown), joined(namesOf(rows))});
}

/// What several values of one name are good for: the first row fills every place of that name, and whatever takes the rows one after
/// the other is left with the last. Kept deliberately: "{x}-{x}" with 1 and 2 gives "1-1", and the script gets 2.
std::string noteOnRepeated(std::span<const PromptValueRow> rows, const std::vector<std::size_t> &asked) {
    std::vector<PromptValueRow> repeated;
    for (const std::size_t position : asked) {
        const auto sameName = [&](const PromptValueRow &row) { return row.key == rows[position].key; };
        if (std::count_if(rows.begin(), rows.end(), sameName) > 1) {
            repeated.push_back(rows[position]);
        }
    }
    return repeated.empty()
               ? std::string()
               : localized("%1: names take the first value, the script and counters the last", {joined(namesOf(repeated))}) + "\n";
}

/// A row's name, with its number where several rows share the name.
std::string questionFor(std::span<const PromptValueRow> rows, std::size_t position) {
    const std::string &name = rows[position].key;
    const auto sameName = [&](const PromptValueRow &row) { return row.key == name; };
    const auto all = std::count_if(rows.begin(), rows.end(), sameName);
    std::string question = printable(name);
    if (all > 1) {
        const auto number = 1 + std::count_if(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(position), sameName);
        question += " (" + localized("%1 of %2", {std::to_string(number), std::to_string(all)}) + ")";
    }
    if (!rows[position].value.empty()) {
        question += " [" + printable(rows[position].value) + "]";
    }
    return localized("%1: ", {question});
}

} // namespace

bool CommandLinePrompt::loadNibNamedOwner(std::string_view /*name*/, PromptOwner &owner) {
    _owner = &owner;
    owner.awakeFromNib(*this, *this);
    return true;
}

long CommandLinePrompt::runModalSession() {
    _outcome = _fill(_owner->promptDirectoryName(), _owner->promptRows());
    if (_outcome == Outcome::Answered) {
        _owner->finishPrompt();
    } else {
        _owner->abortPrompt();
    }
    return RunStoppedResponse;
}

int CommandLinePrompt::numberOfRows() {
    return static_cast<int>(_owner->promptRows().size());
}

std::string CommandLinePrompt::problemWithoutVariables() const {
    const AssignmentResult result = distributeAssignments(_assignments, {});
    return result.unknown.empty() ? std::string() : unknownNames(result.unknown, {});
}

void CommandLinePrompt::_noteDropped(const AssignmentResult &result, std::span<const PromptValueRow> rows) {
    if (!result.unknown.empty()) {
        _warnings.push_back(unknownNames(result.unknown, rows));
    }
    if (!result.surplus.empty()) {
        _warnings.push_back(localized("more values than places for %1: the last are not used", {joined(result.surplus)}));
    }
}

CommandLinePrompt::Outcome CommandLinePrompt::_fill(std::string_view directoryName, std::span<PromptValueRow> rows) {
    const AssignmentResult result = distributeAssignments(_assignments, rows);
    if (!_noInput && !result.unknown.empty()) {
        _problem = unknownNames(result.unknown, rows);
        return Outcome::WrongUsage;
    }
    if (!result.unknown.empty() || !result.surplus.empty()) {
        _noteDropped(result, rows);
    }
    if (_noInput || result.missing.empty()) {
        return Outcome::Answered;
    }
    if (_terminal.isAvailable()) {
        return _ask(directoryName, rows, result.missing);
    }
    std::vector<PromptValueRow> missing;
    for (const std::size_t position : result.missing) {
        missing.push_back(rows[position]);
    }
    _problem =
        localized("no value for %1; give each with --set NAME=VALUE, or take the defaults with --no-input", {joined(namesOf(missing))});
    return Outcome::WrongUsage;
}

CommandLinePrompt::Outcome CommandLinePrompt::_ask(std::string_view directoryName, std::span<PromptValueRow> rows,
                                                   const std::vector<std::size_t> &missing) {
    _terminal.write(localized("Values for %1", {printable(directoryName)}) + "\n" + noteOnRepeated(rows, missing));
    for (const std::size_t position : missing) {
        _terminal.write(questionFor(rows, position));
        std::optional<std::string> line = _terminal.readLine();
        if (!line) {
            _terminal.write("\n");
            return Outcome::Cancelled;
        }
        if (!line->empty()) { // an empty line takes what is offered
            rows[position].value = std::move(*line);
        }
    }
    return Outcome::Answered;
}

} // namespace orvane
